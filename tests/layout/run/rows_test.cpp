// Items of fixed width side by side: each is made and read as it is alone, whatever its neighbours are.
#include <algorithm>
#include <random>

#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

using tRandom = std::mt19937_64;

std::uint64_t below(tRandom& random, std::uint64_t end)
{
    return random() % end;
}

/// One leaf of a row: expression with value, rules, and values that it may be given.
struct tLeafCase
{
    std::string m_strExpression;
    std::string m_strRules;
    std::vector<std::string> m_vValues;
};

/// A number with that many digits, in which nines and zeros are frequent.
std::string digits(tRandom& random, std::size_t length)
{
    std::string text(1, static_cast<char>('1' + below(random, 9)));
    while (text.size() < length)
        text += "0099999123456789"[below(random, 16)];
    return text;
}

tLeafCase digitLeaf(tRandom& random)
{
    const std::size_t width = 1 + below(random, 18);
    tLeafCase leaf{"(ANF" + std::to_string(width) + ") 0", "", {"0", "\"0\"", "0.5", "true", "\"x\""}};
    for (std::size_t length = 1; length <= width + 1; ++length)
    {
        leaf.m_vValues.push_back(digits(random, length));
        leaf.m_vValues.push_back("-" + digits(random, length));
    }
    return leaf;
}

tLeafCase binaryLeaf(tRandom& random)
{
    const std::size_t width = 1 + below(random, 8);
    tLeafCase leaf{"(BNF" + std::to_string(width) + ") 0", below(random, 2) == 0 ? "little" : "", {"0", "-1", "\"7\""}};
    const std::uint64_t most = ~std::uint64_t{0} >> (64 - 8 * width);
    for (const std::uint64_t value : {most, most / 2, most / 2 + 1, most >> 8, most + 1, random() & most})
        leaf.m_vValues.push_back(std::to_string(value));
    return leaf;
}

tLeafCase textLeaf(tRandom& random)
{
    const std::size_t width = 1 + below(random, 20);
    const bool isBinary = below(random, 3) == 0;
    tLeafCase leaf{
        std::string(isBinary ? "(BCF" : "(ACF") + std::to_string(width) + ") \"\"", "", {"\"\"", "1", "\" \""}};
    for (std::size_t length = 1; length <= width + 1; ++length)
        leaf.m_vValues.push_back("\"" + std::string(length, 'a') + "\"");
    leaf.m_vValues.push_back("\"" + std::string(width - 1, 'b') + " \"");
    return leaf;
}

tLeafCase anyLeaf(tRandom& random)
{
    switch (below(random, 4))
    {
    case 0: return textLeaf(random);
    case 1: return binaryLeaf(random);
    case 2: return {"(ANF6) 0", "decimals 2", {"\"1.25\"", "12", "\"0.00\"", "\"1234.56\"", "\"x\""}};
    default: return digitLeaf(random);
    }
}

std::string membersOf(const tLeafCase& leaf, const std::string& name)
{
    const std::string rules = leaf.m_strRules.empty() ? "" : ", \"@" + name + "\" = \"" + leaf.m_strRules + "\"";
    return "\"" + name + "\" = " + leaf.m_strExpression + rules;
}

/// A row of leaves, each with a value that may be missing.
struct tRow
{
    std::vector<tLeafCase> m_vLeaves;
    std::vector<std::string> m_vGiven;  // empty: missing

    explicit tRow(tRandom& random)
    {
        for (std::size_t count = 1 + below(random, 12); count != 0; --count)
        {
            m_vLeaves.push_back(anyLeaf(random));
            const std::vector<std::string>& values = m_vLeaves.back().m_vValues;
            m_vGiven.push_back(below(random, 12) == 0 ? "" : values[below(random, values.size())]);
        }
    }
    CLayout layout() const
    {
        std::string text;
        for (std::size_t i = 0; i < m_vLeaves.size(); ++i)
            text += (i == 0 ? "" : ", ") + membersOf(m_vLeaves[i], "f" + std::to_string(i));
        return layout4(text);
    }
    std::string data(const std::vector<std::size_t>& order) const
    {
        std::string text;
        for (const std::size_t i : order)
        {
            if (!m_vGiven[i].empty())
                text += (text.empty() ? "\"f" : ",\"f") + std::to_string(i) + "\"=" + m_vGiven[i];
        }
        return "{" + text + "}";
    }
    /// What making gives when each leaf is a layout of its own.
    std::string madeOneByOne() const
    {
        std::string packet;
        for (std::size_t i = 0; i < m_vLeaves.size(); ++i)
        {
            const std::string name = "f" + std::to_string(i);
            const std::string made = make(layout4(membersOf(m_vLeaves[i], name)),
                                          m_vGiven[i].empty() ? "{}" : "{\"" + name + "\"=" + m_vGiven[i] + "}");
            if (made.ends_with(" at " + name))
                return made;
            packet += made;
        }
        return packet;
    }
};

std::vector<std::size_t> anyOrder(tRandom& random, std::size_t count)
{
    std::vector<std::size_t> order(count);
    for (std::size_t i = 0; i < count; ++i)
        order[i] = i;
    if (below(random, 2) == 0)
        std::swap(order[below(random, count)], order[below(random, count)]);
    return order;
}

/// The text of an item that a view finds.
std::string viewed(CPacketView& view, unsigned int part)
{
    tPacketValue value;
    const E_PacketFault fault = view.getValue(part, value);
    if (fault != PF_none)
        return "fault";
    return value.m_eType == DT_codelist ? std::string(value.m_strvText)
           : value.m_eType == DT_sint   ? std::to_string(value.m_llValue)
                                        : std::to_string(value.m_ullValue);
}

}  // namespace

TEST(Rows, eachItemIsMadeAsItIsAlone)
{
    tRandom random(1);
    std::size_t whole = 0;
    for (int i = 0; i < 3000; ++i)
    {
        const tRow row(random);
        const std::string data = row.data(anyOrder(random, row.m_vLeaves.size()));
        const std::string made = make(row.layout(), data);
        ASSERT_EQ(made, row.madeOneByOne()) << data;
        whole += made.find(" at f") == std::string::npos ? 1 : 0;
    }
    EXPECT_GT(whole, 200U);
    EXPECT_LT(whole, 2800U);
}

TEST(Rows, eachItemIsReadAsItIsAlone)
{
    tRandom random(2);
    std::size_t whole = 0;
    for (int i = 0; i < 3000; ++i)
    {
        const tRow row(random);
        const CLayout layout = row.layout();
        std::string bytes = make(layout, "{}");
        for (char& c : bytes)
        {
            if (below(random, 2) == 0)
                c = "0123456789123456789- a"[below(random, 19 + below(random, 4))];
        }
        CPacketView view(layout);
        ASSERT_TRUE(view.open(bytes));
        CPacketReader reader(layout);
        CFields tree;
        const bool isRead = reader.read(bytes, tree);
        bool isViewed = true;
        for (unsigned int part = 1; part < layout.getPartCount(); ++part)
        {
            const CLayout alone = layout4(membersOf(row.m_vLeaves[part - 1], "f"));
            const tByteRange place = view.getPlace(part);
            const std::string item = bytes.substr(place.m_ullOffset, place.m_ullLength);
            CPacketReader one(alone);
            CFields single;
            const std::string expected = one.read(item, single) ? single[0].asString() : "fault";
            ASSERT_EQ(viewed(view, part), expected) << bytes << " at " << part;
            isViewed = isViewed && expected != "fault";
            if (isRead)
            {
                ASSERT_EQ(tree[part - 1].asString(), expected) << bytes << " at " << part;
            }
        }
        ASSERT_EQ(isViewed, isRead) << bytes;
        whole += isRead ? 1 : 0;
    }
    EXPECT_GT(whole, 200U);
}

TEST(Rows, aTreeOfTheSameShapeTakesTheNewValues)
{
    tRandom random(3);
    CFields tree;
    for (int i = 0; i < 2000; ++i)
    {
        const tRow row(random);
        const CLayout layout = row.layout();
        CPacketReader reader(layout);
        for (int packet = 0; packet < 3; ++packet)
        {
            tRow other = row;
            for (std::size_t leaf = 0; leaf < row.m_vLeaves.size(); ++leaf)
                other.m_vGiven[leaf] =
                    row.m_vLeaves[leaf].m_vValues[below(random, row.m_vLeaves[leaf].m_vValues.size())];
            const std::string bytes = make(layout, other.data(anyOrder(random, row.m_vLeaves.size())));
            CFields fresh;
            ASSERT_EQ(reader.read(bytes, tree), reader.read(bytes, fresh));
            ASSERT_TRUE(tree == fresh) << bytes;
        }
    }
}

TEST(Rows, manyItemsAreMadeInPieces)
{
    std::string text;
    std::string data;
    std::string expected;
    for (int i = 0; i < 700; ++i)
    {
        text += (i == 0 ? "\"f" : ", \"f") + std::to_string(i) + "\" = (ANF5) 0";
        data += (i == 0 ? "\"f" : ",\"f") + std::to_string(i) +
                "\"=" + (i % 7 == 3 ? "\"" + std::to_string(i) + "\"" : std::to_string(i));
        expected += std::string(5 - std::to_string(i).size(), '0') + std::to_string(i);
    }
    EXPECT_EQ(make(layout4(text), "{" + data + "}"), expected);
}

}  // namespace murv::tests

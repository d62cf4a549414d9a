// tests/core/field_index_model_test.cpp - finding by name is always the plain scan from the front.
//
// Whatever happened to the members before must not matter. Large field sets have a name index. Random operations with
// few different names, so that many are equal, run across the size at which the index appears and goes; after each one
// every name is looked for.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "murv/fields.h"
#include "tests/support/tree_text.h"

namespace
{

using namespace murv;

std::string_view name(const CFields& node)
{
    return {node.getName(), node.getNameLen()};
}

/// What a scan from the front finds, or -1.
int scan(const CFields& set, std::string_view wanted)
{
    int index = 0;
    for (const CFields& member : set)
    {
        if (name(member) == wanted)
            return index;
        ++index;
    }
    return -1;
}

/// A set, a list of what its members should be, and random changes of both.
class CIndexModel
{
public:
    CIndexModel(unsigned int seed, int names, int size) : m_tRandom(seed), m_iSize(size)
    {
        for (int i = 0; i < names; ++i)
            m_vNames.push_back(i % 7 == 3 ? std::string("n\0", 2) + std::to_string(i) : "name" + std::to_string(i));
        m_tSet.setValue(DT_fields);
    }

    void step()
    {
        const int count = static_cast<int>(m_vModel.size());
        // Grows towards the wanted size and shrinks above it.
        const bool grow = pick(m_iSize * 2) >= count;
        const int action = pick(20);
        if (count == 0 || (grow && action < 9))
            add();
        else if (!grow && action < 9)
            remove();
        else
            change(action);
        if (pick(400) == 0)
            replaceAll();
    }

    void expectFound()
    {
        ASSERT_EQ(m_vModel.size(), m_tSet.getChildCount());
        for (std::size_t i = 0; i < m_vModel.size(); ++i)
        {
            ASSERT_EQ(m_vModel[i].first, name(m_tSet[i]));
            ASSERT_EQ(m_vModel[i].second, m_tSet[i].asSint64());
        }
        for (const std::string& wanted : m_vNames)
        {
            const int expected = scan(m_tSet, wanted);
            const auto length = static_cast<unsigned int>(wanted.size());
            ASSERT_EQ(expected, m_tSet.getChildIdx4Name(wanted.data(), length)) << wanted;
            const CFields* const found = m_tSet.findChildAt(wanted.data(), length);
            ASSERT_EQ(expected < 0 ? nullptr : &m_tSet[expected], found) << wanted;
        }
        ASSERT_EQ(nullptr, m_tSet.findChildAt("nobody", 6));
    }

private:
    using tRow = std::pair<std::string, long long>;

    int pick(int below)
    {
        return static_cast<int>(m_tRandom() % static_cast<std::uint32_t>(below));
    }
    std::size_t pickMember()
    {
        return static_cast<std::size_t>(pick(static_cast<int>(m_vModel.size())));
    }
    const std::string& pickName()
    {
        return m_vNames[static_cast<std::size_t>(pick(static_cast<int>(m_vNames.size())))];
    }

    void add()
    {
        const std::string& wanted = pickName();
        const int kind = pick(4);
        if (kind == 0)
        {
            CFields& member = m_tSet.addChildRef(wanted);
            const int expected = scan(m_tSet, wanted);
            ASSERT_EQ(&m_tSet[expected], &member);
            if (static_cast<std::size_t>(expected) == m_vModel.size())
                append(member, wanted);
        }
        else if (kind == 1)
            append(m_tSet.addChildRef("", 0, true), "");
        else
            append(m_tSet.addChildRef(wanted, 0, true), wanted);
    }
    void append(CFields& member, const std::string& wanted)
    {
        member = ++m_llNext;
        m_vModel.emplace_back(wanted, m_llNext);
    }

    void remove()
    {
        const std::size_t at = pickMember();
        const auto offset = static_cast<std::ptrdiff_t>(at);
        if (pick(2) == 0 && !m_vModel[at].first.empty())
        {
            const std::string wanted = m_vModel[at].first;
            const int expected = scan(m_tSet, wanted);
            CFields out;
            ASSERT_TRUE(m_tSet.removeChildAt(wanted, &out));
            ASSERT_EQ(wanted, name(out));
            m_vModel.erase(m_vModel.begin() + expected);
            return;
        }
        ASSERT_TRUE(m_tSet.removeChildAt(at));
        m_vModel.erase(m_vModel.begin() + offset);
    }

    void change(int action)
    {
        const std::size_t at = pickMember();
        const std::size_t other = pickMember();
        CFields& member = m_tSet[at];
        tRow& row = m_vModel[at];
        const std::string wanted = pickName();
        switch (action)
        {
        case 9:
            member.clearName();
            row.first.clear();
            break;
        case 10:
            if (at != other)
            {
                member.swapField(m_tSet[other], pick(2) == 0);
                swapRows(at, other);
            }
            break;
        case 11:
        {
            CFields outside(++m_llNext);
            outside.setName(wanted);
            if (pick(2) == 0)
                member = outside;
            else
                member = std::move(outside);
            row = {wanted, m_llNext};
            break;
        }
        case 12:
            member = CFields(++m_llNext);
            row.second = m_llNext;
            break;
        case 13:
        {
            CFields outside(++m_llNext);
            outside.setName(wanted);
            const tRow before = row;
            if (pick(2) == 0)
                member.swapField(outside, true);
            else
            {
                outside.swapField(member, true);
                if (before.first.empty())
                {
                    // The member has no name, so both keep theirs.
                    row.second = m_llNext;
                    break;
                }
            }
            ASSERT_EQ(before.first, name(outside));
            row = {wanted, m_llNext};
            break;
        }
        case 14:
            ASSERT_EQ(true, member.setField(m_tSet[other]));
            row = m_vModel[other];
            break;
        case 15:
        {
            const CFields gone(std::move(member));
            ASSERT_EQ(row.first, name(gone));
            member = ++m_llNext;
            row = {"", m_llNext};
            break;
        }
        case 16: member.setComment("// gives it a side record", CP_before); break;
        case 17:
            if (m_tSet[0].setID(1) && m_tSet.setChildName4ID(1, "renamed"))
                m_vModel[0].first = "renamed";
            m_tSet[0].setID(0);
            break;
        default:
            ASSERT_TRUE(member.setName(wanted));
            row.first = wanted;
            break;
        }
    }
    void swapRows(std::size_t a, std::size_t b)
    {
        std::swap(m_vModel[a].second, m_vModel[b].second);
        if (!m_vModel[b].first.empty())
            std::swap(m_vModel[a].first, m_vModel[b].first);
    }

    /// The set as a whole goes through copying, moving and swapping.
    void replaceAll()
    {
        switch (pick(6))
        {
        case 0:
        {
            CFields copy(m_tSet);
            m_tSet = CFields(std::move(copy));
            break;
        }
        case 1:
        {
            CFields moved(std::move(m_tSet));
            m_tSet.swapValue(moved, false);
            break;
        }
        case 2:
        {
            CFields holder;
            holder.addChildRef("inner").setValue(m_tSet);
            m_tSet = holder["inner"];
            m_tSet.clearName();
            break;
        }
        case 3:
            m_tSet.removeChildAll();
            m_vModel.clear();
            break;
        case 4:
            m_tSet.removeAll(DT_null);
            m_tSet.setValue(DT_fields);
            m_vModel.clear();
            break;
        default:
        {
            CFields array;
            array.addArrayAt(std::move(m_tSet));
            m_tSet.swapValue(array[0], false);
            break;
        }
        }
    }

    std::mt19937 m_tRandom;
    int m_iSize;
    std::vector<std::string> m_vNames;
    CFields m_tSet;
    std::vector<tRow> m_vModel;
    long long m_llNext = 0;
};

void run(unsigned int seed, int names, int size, int steps)
{
    CIndexModel model(seed, names, size);
    for (int i = 0; i < steps; ++i)
    {
        model.step();
        model.expectFound();
        if (testing::Test::HasFatalFailure())
            FAIL() << "seed " << seed << " step " << i;
    }
}

TEST(NameIndexRandom, fewNamesAroundTheThreshold)
{
    run(1, 9, 64, 12000);
}

TEST(NameIndexRandom, manyNamesAroundTheThreshold)
{
    run(2, 90, 70, 12000);
}

TEST(NameIndexRandom, largerSets)
{
    run(3, 150, 300, 6000);
}

TEST(NameIndexRandom, oneName)
{
    run(4, 1, 80, 6000);
}

TEST(NameIndexRandom, smallSets)
{
    run(5, 6, 10, 12000);
}

TEST(NameIndexRandom, otherSeeds)
{
    for (unsigned int seed = 10; seed < 20; ++seed)
        run(seed, 20, 66, 1500);
}

TEST(NameIndex, followsARenameByReference)
{
    CFields set;
    for (int i = 0; i < 100; ++i)
        set.addChildRef("n" + std::to_string(i)) = i;
    CFields& member = set["n50"];
    ASSERT_TRUE(member.setName("other"));
    EXPECT_EQ(&member, set.findChildAt("other", 5));
    EXPECT_EQ(nullptr, set.findChildAt("n50", 3));
    EXPECT_EQ(101u, (set.addChildRef("n50"), set.getChildCount()));
    member.clearName();
    EXPECT_EQ(nullptr, set.findChildAt("other", 5));
}

TEST(NameIndex, findsTheFirstOfEqualNamesAgainWhenItGoes)
{
    CFields set;
    for (int i = 0; i < 200; ++i)
        set.addChildRef("n" + std::to_string(i % 50), 0, true) = i;
    for (int i = 0; i < 200; ++i)
    {
        ASSERT_EQ(i % 50, set["n" + std::to_string(i % 50)].asSint32() % 50);
        ASSERT_TRUE(set.removeChildAt(set["n" + std::to_string(i % 50)].getName()));
    }
    EXPECT_EQ(0u, set.getChildCount());
}

/// Renames, adds and removes members of few names at random, nearly all of them renames.
void renameAtRandom(unsigned int seed, int names, int steps)
{
    std::mt19937 random(seed);
    const auto pick = [&random](int below) { return static_cast<int>(random() % static_cast<std::uint32_t>(below)); };
    const auto name = [&] { return "n" + std::to_string(pick(names)); };
    CFields set(DT_fields);
    for (int i = 0; i < 150; ++i)
        set.addChildRef(name(), 0, true) = i;
    for (int step = 0; step < steps; ++step)
    {
        const int count = static_cast<int>(set.getChildCount());
        CFields& member = set[pick(count)];
        switch (pick(40))
        {
        case 0: set.addChildRef(name(), 0, true) = step; break;
        case 1: ASSERT_TRUE(set.removeChildAt(count - 1)); break;
        case 2: ASSERT_TRUE(set.removeChildAt(pick(count))); break;
        case 3: set.addChildRef("", 0, true) = step; break;
        case 4: member.clearName(); break;
        case 5: member.swapField(set[pick(count)], false); break;
        case 6: set[name()].setName("gone"); break;
        default: ASSERT_TRUE(member.setName(name())); break;
        }
        CFields::freeNull.clearName();
        for (int i = 0; i < names; ++i)
        {
            const std::string wanted = "n" + std::to_string(i);
            ASSERT_EQ(scan(set, wanted), set.getChildIdx4Name(wanted.c_str())) << "seed " << seed << " step " << step;
        }
    }
}

TEST(NameIndexRandom, equalNamesAreRenamedInEveryOrder)
{
    for (unsigned int seed = 0; seed < 12; ++seed)
        renameAtRandom(seed, 1 + static_cast<int>(seed % 5) * 6, 1500);
}

TEST(NameIndex, findsTheFirstOfEqualNamesAfterRenamesFromTheBackAndTheMiddle)
{
    CFields set;
    for (int i = 0; i < 100; ++i)
        set.addChildRef("same", 0, true) = i;
    ASSERT_TRUE(set[0].setName("other"));
    for (int i = 99; i > 50; --i)
        ASSERT_TRUE(set[i].setName("other"));
    for (int i = 10; i < 20; ++i)
        ASSERT_TRUE(set[i].setName("other"));
    EXPECT_EQ(1, set["same"].asSint32());
    for (int i = 1; i < 10; ++i)
        ASSERT_TRUE(set[i].setName("other"));
    EXPECT_EQ(20, set["same"].asSint32());
    ASSERT_TRUE(set[5].setName("same"));
    EXPECT_EQ(5, set["same"].asSint32());
    EXPECT_EQ(0, set["other"].asSint32());
}

TEST(NameIndex, aSetThatHasShrunkFindsWhatIsAddedThen)
{
    CFields set;
    for (int i = 0; i < 70; ++i)
        set.addChildRef("n" + std::to_string(i)) = i;
    while (set.getChildCount() > 50)
        ASSERT_TRUE(set.removeChildAt(50));
    CFields& added = set.addChildRef("added");
    EXPECT_EQ(&added, set.findChildAt("added", 5));
    EXPECT_EQ(&added, &set.addChildRef("added"));
    EXPECT_EQ(51u, set.getChildCount());
}

TEST(NameIndex, aMemberMovedOutIsNotFoundAndCanBeNamedFreely)
{
    CFields set;
    for (int i = 0; i < 100; ++i)
        set.addChildRef("n" + std::to_string(i)) = i;
    CFields out(std::move(set["n50"]));
    EXPECT_EQ(nullptr, set.findChildAt("n50", 3));
    set = CFields();
    EXPECT_TRUE(out.setName("after the set is gone"));
    EXPECT_EQ(50, out.asSint32());
}

TEST(NameIndex, swappingASetWithAnArrayKeepsBothRight)
{
    CFields a;
    for (int i = 0; i < 100; ++i)
        a.addChildRef("n" + std::to_string(i)) = i;
    CFields b(DT_array);
    for (int i = 0; i < 100; ++i)
        b.addArrayAt(i);
    a.swapValue(b, false);
    EXPECT_TRUE(b["n7"].setName("seven"));
    EXPECT_EQ(7, b["seven"].asSint32());
    EXPECT_EQ(7, a[7].asSint32());
    EXPECT_TRUE(a[7].setName("seven"));
    EXPECT_EQ(-1, a.getChildIdx4Name("seven")) << "elements of arrays are not found by name";
}

}  // namespace

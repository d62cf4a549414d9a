// tests/layout/stock/itch_test.cpp - a feed of orders, and the file form it is recorded in.
//
// The answer is the text that another library printed for each message: a title, then some of its members.
#include "murv/records.h"
#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

struct tMessage
{
    std::string m_strTitle;
    std::map<std::string, std::string> m_tMembers;
};

std::vector<tMessage> expectedMessages()
{
    std::vector<tMessage> messages;
    for (const std::string& line : linesOf(sample("itch50/sample.expected.txt")))
    {
        if (line.empty())
            continue;
        const std::size_t colon = line.find(':');
        if (line[0] != ' ')
            messages.push_back({line.substr(0, colon), {}});
        else
            messages.back().m_tMembers[line.substr(2, colon - 2)] = line.substr(colon + 2);
    }
    return messages;
}

/// What a member of the answer is called in the layout.
const std::map<std::string, std::string> s_ctNames = {
    {"Timestamp", "time"},   {"Event Code", "event"},    {"Stock", "stock"},
    {"State", "state"},      {"Side", "side"},           {"Shares", "shares"},
    {"Price", "price"},      {"Ref#", "order"},          {"Cancelled Shares", "shares"},
    {"MPID", "participant"}, {"Original Ref#", "order"}, {"New Ref#", "new order"},
};

/// And a message.
const std::map<std::string, std::string> s_ctTitles = {
    {"System Event", "system event"},
    {"Stock Directory", "stock directory"},
    {"Stock Trading Action", "trading action"},
    {"Add Order", "add order"},
    {"Add Order (MPID)", "add order with participant"},
    {"Order Executed", "order executed"},
    {"Order Cancel", "order cancelled"},
    {"Order Delete", "order deleted"},
    {"Order Replace", "order replaced"},
    {"Non-Cross Trade", "trade"},
};

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return text;
}

}  // namespace

TEST(ITCH, sampleComesBackWithTheValuesOfTheAnswer)
{
    const CFields tree = thereAndBack(installed("itch50"), sample("itch50/sample-length-prefixed.bin"));
    const std::vector<tMessage> expected = expectedMessages();
    const CFields& messages = *nodeAt(tree, "messages");
    ASSERT_EQ(messages.getChildCount(), expected.size());
    for (unsigned int i = 0; i < messages.getChildCount(); ++i)
    {
        const CFields& message = messages.getChildAt(i).getChildAt(0U);
        EXPECT_EQ(message.getName(), s_ctTitles.at(expected[i].m_strTitle)) << i;
        for (const auto& [name, value] : expected[i].m_tMembers)
        {
            const std::string& member = s_ctNames.at(name);
            if (member == "price")
            {
                EXPECT_EQ(std::stod(at(message, member)), std::stod(value)) << i;
            }
            else
            {
                EXPECT_EQ(at(message, member), value) << i << " " << name;
            }
        }
    }
}

TEST(ITCH, everyTypeHasTheLengthOfTheSpecification)
{
    // Bytes of a message with its type, as the public specification of version 5.0 lists them.
    const std::map<std::string, std::size_t> lengths = {
        {"S", 12}, {"R", 39}, {"H", 25}, {"Y", 20}, {"L", 26}, {"V", 35}, {"W", 12}, {"K", 28},
        {"J", 35}, {"h", 21}, {"A", 36}, {"F", 40}, {"E", 31}, {"C", 36}, {"X", 23}, {"D", 19},
        {"U", 35}, {"P", 44}, {"Q", 40}, {"B", 19}, {"I", 50}, {"N", 20}, {"O", 48}};
    const CLayout layout = installed("itch50");
    for (const auto& [type, length] : lengths)
    {
        std::string bytes(length + 2, '\0');
        bytes[1] = static_cast<char>(length);
        bytes[2] = type[0];
        EXPECT_TRUE(reading(layout, bytes).m_bRead) << type;
        bytes.pop_back();
        --bytes[1];
        EXPECT_FALSE(reading(layout, bytes).m_bRead) << type;
    }
}

TEST(ITCH, sampleWithoutLengthsComesBackByAVariantOfTheLayout)
{
    // This recording has two zero bytes where the length belongs: no BinaryFILE, and refused as one.
    const std::string bytes = sample("itch50/sample-zero-length-prefix.bin");
    EXPECT_EQ(reading(installed("itch50"), bytes).m_tFault.m_ullOffset, 0u);

    std::string text = replaced(layoutText("itch50"), "layout 1; prefixed BNF2", "layout 1");
    text = replaced(text, "\"type\" = (ACF1fix)", "\"zero\" = (BNF2fix) 0, \"type\" = (ACF1fix)");
    const CFields tree = thereAndBack(compiled(text), bytes);
    EXPECT_EQ(countAt(tree, "messages"), expectedMessages().size());
}

TEST(ITCH, recordsComeOneAtATime)
{
    const std::string bytes = sample("itch50/sample-length-prefixed.bin");
    const CLayout layout = installed("itch50");
    CRecordReader records(layout);
    records.open();
    std::size_t given = 0;
    E_RecordResult result = RR_more;
    while (result == RR_more || result == RR_record)
    {
        result = records.next();
        if (result != RR_more)
            continue;
        if (given == bytes.size())
            records.end();
        records.put(std::string_view(bytes).substr(given, 7));
        given = std::min(given + 7, bytes.size());
    }
    EXPECT_EQ(result, RR_end);
    EXPECT_EQ(records.getCounts().m_ullRecords, expectedMessages().size());
}

TEST(BinaryFILE, sampleComesBack)
{
    const CFields tree = thereAndBack(installed("binaryfile"), sample("binaryfile/binaryfile.dat"));
    EXPECT_EQ(countAt(tree, "packets"), 5u);
    expectValues(tree, {{"packets.0.payload", "foo"},
                        {"packets.1.payload", "bar"},
                        {"packets.2.payload", "baz"},
                        {"packets.3.payload", "quux"},
                        {"packets.3.length", "4"},
                        {"packets.4.length", "0"}});
}

TEST(BinaryFILE, fileThatWasCutOffIsTold)
{
    const std::string bytes = sample("binaryfile/binaryfile.dat");
    const tReading result = reading(installed("binaryfile"), bytes.substr(0, bytes.size() - 2));
    EXPECT_EQ(result.m_tFault.m_eCode, PF_more);
    EXPECT_EQ(result.m_tFault.m_ullMissing, 2u);
}

}  // namespace murv::tests

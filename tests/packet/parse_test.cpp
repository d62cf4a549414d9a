// tests/packet/parse_test.cpp - values and results of parsing, for whole, short and hostile packets.

#include "packet_helpers.h"
#include "packet_model.h"

#include "murv/text.h"

#include <gtest/gtest.h>

#include <climits>
#include <random>

namespace
{

using namespace murv;
using namespace murv::tests;

/// The value that an item gives to a fresh leaf, with the result.
struct tOutcome
{
    int m_iResult;
    CFields m_tValue;
    unsigned int m_uiLength;
};

tOutcome outcome(const tPacketExpInfo& pei, std::string_view bytes)
{
    CFields leaf = leaf4(CFields(), pei);
    const int result = parsed(leaf, bytes);
    return {result, leaf, recorded4(leaf)};
}

TEST(PacketParse, fixedBytesBecomeAByteString)
{
    for (const char* letters : {"ACF", "BCF", "ACD", "BCD"})
    {
        const tOutcome got = outcome(pei4(letters, 4),
                                     "AB\xFF"
                                     "DE");
        EXPECT_EQ(got.m_iResult, 1);
        EXPECT_EQ(got.m_tValue, CFields("AB\xFF"
                                        "D"));
    }
}

TEST(PacketParse, fixedTextBecomesANumberOfTheFittingType)
{
    struct tCase
    {
        const char* m_pText;
        CFields m_tValue;
    };
    const tCase cases[] = {
        {"0042", 42},
        {"-005", -5},
        {"0", 0},
        {"2147483647", 2147483647},
        {"2147483648", 2147483648u},
        {"9999999999999999", 9999999999999999ULL},
        {"99999999999999999", 99999999999999999ULL},
        {"-9999999999999999", -9999999999999999LL},
        {"18446744073709551615", ULLONG_MAX},
        {"-9223372036854775808", LLONG_MIN},
        {"18446744073709551616", 18446744073709551616.0},
        {"1.5", 1.5},
        {"0001.5", 1.5},
        {" 42", 42.0},
        {"42 ", 42.0},
        {"+7", 7},
        {"-.5", -0.5},
        {"1e3", 1000.0},
        {"12ab", 12.0},
        {"-0", 0},
    };
    for (const tCase& row : cases)
    {
        for (const char* letters : {"ANF", "AND"})
        {
            const tOutcome got =
                outcome(pei4(letters, static_cast<unsigned int>(std::strlen(row.m_pText))), row.m_pText);
            EXPECT_EQ(got.m_iResult, 0) << row.m_pText;
            EXPECT_EQ(got.m_tValue, row.m_tValue) << row.m_pText;
        }
    }
}

TEST(PacketParse, digitsOfAnyCountReadLikeTheNumberHelper)
{
    std::string digits;
    for (unsigned int count = 1; count <= 24; ++count)
    {
        digits += static_cast<char>('0' + count % 10);
        for (const std::string& text : {digits, "-" + digits, digits + "x", "0" + digits})
        {
            CFields expected;
            atonInField(text.data(), static_cast<unsigned int>(text.size()), expected);
            EXPECT_EQ(outcome(pei4("ANF", static_cast<unsigned int>(text.size())), text).m_tValue, expected) << text;
        }
    }
}

TEST(PacketParse, textWithoutANumberIsRefusedAndStoresNothing)
{
    for (const char* text : {"abc", "   ", "-", "+", ".", "- 5", "null", "--5", "-.", "inf", "x42"})
    {
        CFields leaf = leaf4("before", pei4("ANF", static_cast<unsigned int>(std::strlen(text))));
        EXPECT_EQ(parsed(leaf, text), -1) << text;
        EXPECT_EQ(leaf, CFields("before"));
        EXPECT_EQ(parsed(leaf, text, false), 0) << text;
    }
}

TEST(PacketParse, fixedBinaryNumberHasNoSignExtension)
{
    EXPECT_EQ(outcome(pei4("BNF", 2), "\xFF\xFF").m_tValue, CFields(65535));
    EXPECT_EQ(outcome(pei4("BNF", 1), "\x80").m_tValue, CFields(128));
    EXPECT_EQ(outcome(pei4("BNF", 7), bytes4("\0\0\0\0\0\1\2")).m_tValue, CFields(258));
    EXPECT_EQ(outcome(pei4("BNF", 8), "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFE").m_tValue, CFields(-2));
    EXPECT_EQ(outcome(pei4("BND", 2), bytes4("\1\0")).m_tValue, CFields(256));
}

TEST(PacketParse, binaryNumberOfNineBytesOrMoreIsADouble)
{
    EXPECT_EQ(outcome(pei4("BNF", 9), bytes4("\xAD\x3F\xF8\0\0\0\0\0\0")).m_tValue, CFields(1.5));
    EXPECT_EQ(outcome(pei4("BNF", 12), bytes4("abcd\xBF\xF0\0\0\0\0\0\0")).m_tValue, CFields(-1.0));
}

TEST(PacketParse, shortFixedItemTellsWhatIsMissing)
{
    for (const char* letters : {"ACF", "ANF", "BCF", "BNF", "ACD"})
    {
        CFields leaf = leaf4("before", pei4(letters, 4));
        EXPECT_EQ(parsed(leaf, "123"), -1) << letters;
        EXPECT_EQ(parsed(leaf, ""), -4) << letters;
        EXPECT_EQ(parsed(leaf, "123", false), -1) << letters;
        EXPECT_EQ(leaf, CFields("before")) << letters;
    }
}

TEST(PacketParse, itemWithoutLengthLeavesAllBytes)
{
    for (const char* letters : {"ACF", "ANV", "BND", "BCV"})
    {
        CFields leaf = leaf4("before", pei4(letters, 0));
        EXPECT_EQ(parsed(leaf, "123"), 3) << letters;
        EXPECT_EQ(parsed(leaf, ""), 0) << letters;
        EXPECT_EQ(leaf, CFields("before")) << letters;
    }
}

TEST(PacketParse, unknownLengthCodeIsSkipped)
{
    tPacketExpInfo pei = pei4("ACF", 2);
    pei.m_eLengthExp = static_cast<E_LengthExpCode>(3);
    CFields tree(DT_fields);
    addLeaf(tree, "skipped", "before", pei);
    addLeaf(tree, "read", CFields(), pei4("ACF", 2));
    EXPECT_EQ(parsedTree(tree, "ab"), 0);
    EXPECT_EQ(tree["skipped"], CFields("before"));
    EXPECT_EQ(tree["read"], CFields("ab"));
}

TEST(PacketParse, containerLeavesAllBytes)
{
    CFields tree = leaf4(CFields(DT_fields), pei4("ACF", 2));
    EXPECT_EQ(parsed(tree, "abc"), 3);
    EXPECT_EQ(parsedTree(tree, "abc"), 3);
}

TEST(PacketParse, nullPacketGivesTheNeed)
{
    CFields fixed = leaf4("before", pei4("ACF", 4));
    CFields variable = leaf4("before", pei4("ACV", 3));
    EXPECT_EQ(fixed.pkt_Parse4OneSelf(nullptr, 10, true), -4);
    EXPECT_EQ(variable.pkt_Parse4OneSelf(nullptr, 10, true), -3);
    EXPECT_EQ(fixed.pkt_Parse4OneSelf(nullptr, 10, false), 6);
    EXPECT_EQ(fixed.pkt_Parse4OneSelf(nullptr, 3, false), -1);
    EXPECT_EQ(variable.pkt_Parse4OneSelf(nullptr, 10, false), -3);
    EXPECT_EQ(fixed.pkt_Parse4OneSelf(nullptr, 0, false), -4);
}

TEST(PacketParse, variableBytesFollowTheirPrefix)
{
    tOutcome got = outcome(pei4("ACV", 3), "006abc+");
    EXPECT_EQ(got.m_iResult, 1);
    EXPECT_EQ(got.m_tValue, CFields("abc"));
    EXPECT_EQ(got.m_uiLength, 6u);
    got = outcome(pei4("BCV", 2, -1), bytes4("\0\6abc"));
    EXPECT_EQ(got.m_iResult, 0);
    EXPECT_EQ(got.m_tValue, CFields("abc"));
    EXPECT_EQ(got.m_uiLength, 5u);
    got = outcome(pei4("ACV", 2), "02");
    EXPECT_EQ(got.m_iResult, 0);
    EXPECT_EQ(got.m_tValue, CFields(""));
}

TEST(PacketParse, variableTextBecomesANumber)
{
    tOutcome got = outcome(pei4("ANV", 3), "00542rest");
    EXPECT_EQ(got.m_iResult, 4);
    EXPECT_EQ(got.m_tValue, CFields(42));
    EXPECT_EQ(outcome(pei4("ANV", 3, 3), "00242").m_tValue, CFields(42));
    got = outcome(pei4("ANV", 2), "05abc");
    EXPECT_EQ(got.m_iResult, -1);
    EXPECT_TRUE(got.m_tValue.isNull());
    EXPECT_EQ(got.m_uiLength, 0u);
    EXPECT_EQ(outcome(pei4("ANV", 2), "02").m_iResult, -1);
}

TEST(PacketParse, variableBinaryNumberIsCountedFromItsPrefix)
{
    // Two value bytes: the first two bytes of the item, which are the prefix.
    EXPECT_EQ(outcome(pei4("BNV", 2), bytes4("\0\4\1\2")).m_tValue, CFields(4));
    // Eight value bytes after one of prefix: the prefix and the first seven.
    EXPECT_EQ(outcome(pei4("BNV", 1), bytes4("\x09\0\0\0\0\0\0\0\5")).m_tValue, CFields(0x0900000000000000LL));
    // Nine value bytes: the eight that end nine bytes after the start.
    EXPECT_EQ(outcome(pei4("BNV", 1), bytes4("\x0A\x3F\xF8\0\0\0\0\0\0xx")).m_tValue, CFields(1.5));
    EXPECT_EQ(outcome(pei4("BNV", 1), bytes4("\1")).m_tValue, CFields(0));
}

TEST(PacketParse, prefixTextIsReadLeniently)
{
    struct tCase
    {
        const char* m_pPrefix;
        int m_iTotal;  // 0: all bytes remain
    };
    const tCase cases[] = {
        {"0006", 6}, {"   6", 6}, {" \t\r6", 6}, {"\n+06", 6}, {"6   ", 6}, {"6abc", 6},  {"06.9", 6}, {"-006", 0},
        {"abcd", 0}, {"    ", 0}, {"- 06", 0},   {"0000", 0},  {"0003", 0}, {"\v006", 0}, {"+ 06", 0},
    };
    for (const tCase& row : cases)
    {
        const std::string packet = std::string(row.m_pPrefix) + "xyz!";
        const tOutcome got = outcome(pei4("ACV", 4), packet);
        EXPECT_EQ(got.m_iResult, row.m_iTotal == 0 ? 8 : 8 - row.m_iTotal) << row.m_pPrefix;
        EXPECT_EQ(got.m_tValue, row.m_iTotal == 0 ? CFields() : CFields("xy")) << row.m_pPrefix;
    }
}

TEST(PacketParse, prefixTextEndsAfterTenSignificantDigits)
{
    CFields leaf = leaf4(CFields(), pei4("ACV", 30));
    EXPECT_EQ(parsed(leaf,
                     "0000000000"
                     "00000000000000000032"
                     "ab"),
              0);
    EXPECT_EQ(leaf, CFields("ab"));
    leaf.pkt_SetExp(pei4("ACV", 11));
    EXPECT_EQ(parsed(leaf, "12345678901"), 11 - 1234567890);
}

TEST(PacketParse, totalBelowItsPrefixIsNoItem)
{
    EXPECT_EQ(outcome(pei4("ACV", 3), "002xyz").m_iResult, 6);
    EXPECT_EQ(outcome(pei4("ACV", 3, -1), "003xyz").m_iResult, 6);
    EXPECT_EQ(outcome(pei4("ACV", 3, -100), "050xyz").m_iResult, 6);
    EXPECT_EQ(outcome(pei4("BCV", 2, 127), bytes4("\0\0x")).m_iResult, 3 - 127);
}

TEST(PacketParse, hostilePrefixesAreClamped)
{
    const std::string ones(9, '\xFF');
    EXPECT_EQ(outcome(pei4("BCV", 8), ones).m_iResult, 9 - INT_MAX);
    EXPECT_EQ(outcome(pei4("BCV", 8, 127), ones).m_iResult, 9 - INT_MAX);
    EXPECT_EQ(outcome(pei4("BNV", 9, -128), ones).m_iResult, 9 - INT_MAX);
    EXPECT_EQ(outcome(pei4("BCV", 4), "\x80" + bytes4("\0\0\0")).m_iResult, 4 - INT_MAX);
    EXPECT_EQ(outcome(pei4("BCV", 4, -128), "\x80" + bytes4("\0\0\x10")).m_iResult, 4 - (INT_MAX - 111));
    EXPECT_EQ(outcome(pei4("ACV", 10), "9999999999").m_iResult, 10 - INT_MAX);
}

TEST(PacketParse, widePrefixIsReadFromItsOwnLastEightBytes)
{
    const tOutcome got = outcome(pei4("BCV", 10), bytes4("\xFF\xFF\0\0\0\0\0\0\0\x0Cxy"));
    EXPECT_EQ(got.m_iResult, 0);
    EXPECT_EQ(got.m_tValue, CFields("xy"));
}

TEST(PacketParse, hugeLengthsAreClampedInTheResult)
{
    EXPECT_EQ(outcome(pei4("ACF", 0x7FFFFFFF), "abc").m_iResult, 3 - INT_MAX);
    EXPECT_EQ(outcome(pei4("ACF", 0x7FFFFFFF), "").m_iResult, -INT_MAX);
    EXPECT_EQ(outcome(pei4("ACF", 0xFFFFFFFF), "abc").m_iResult, INT_MIN);
    EXPECT_EQ(outcome(pei4("BNF", 0xFFFFFFFF), "").m_iResult, INT_MIN);
    CFields leaf = leaf4(CFields(), CFields::nullPktExp);
    EXPECT_EQ(leaf.pkt_Parse4OneSelf("", 0xFFFFFFFF, false), INT_MAX);
}

TEST(PacketParse, measuringStoresNothing)
{
    for (const char* letters : {"ACF", "ANF", "BNF", "ACV", "BNV"})
    {
        const std::string packet = letters[0] == 'A' ? "00005" : bytes4("\0\0\0\0\5");
        CFields leaf = leaf4("before", pei4(letters, 5));
        EXPECT_EQ(parsed(leaf, packet, false), 0) << letters;
        EXPECT_EQ(leaf, CFields("before"));
        EXPECT_EQ(recorded4(leaf), letters[2] == 'F' ? 5u : 0u);
    }
}

TEST(PacketParse, stringOfTheSameLengthKeepsItsBlock)
{
    CFields leaf = leaf4("abcd", pei4("ACF", 4));
    const void* const block = leaf.getValuePtr();
    EXPECT_EQ(parsed(leaf, "wxyz"), 0);
    EXPECT_EQ(leaf, CFields("wxyz"));
    EXPECT_EQ(leaf.getValuePtr(), block);
}

TEST(PacketParse, borrowedTextIsNotWrittenTo)
{
    const char text[] = "abcd";
    CFields leaf = leaf4(CFields(CStaticString(text)), pei4("ACF", 4));
    EXPECT_EQ(parsed(leaf, "wxyz"), 0);
    EXPECT_STREQ(text, "abcd");
    EXPECT_EQ(leaf, CFields("wxyz"));
}

TEST(PacketParse, numberReplacesAnyValue)
{
    for (const CFields& before : {CFields("text"), CFields(true), CFields(1.5), CFields()})
    {
        CFields leaf = leaf4(before, pei4("ANF", 2));
        EXPECT_EQ(parsed(leaf, "42"), 0);
        EXPECT_EQ(leaf, CFields(42));
    }
}

TEST(PacketParse, secondValueStays)
{
    CFields leaf = leaf4("ab", pei4("ACF", 2));
    leaf.setVK(VK_fix);
    EXPECT_EQ(parsed(leaf, "xy"), 0);
    EXPECT_EQ(leaf.asString(), "xy");
    EXPECT_EQ(leaf.asString(VK_fix), "ab");
    EXPECT_EQ(leaf.getVK(), VK_fix);
}

CFields pairTree(const tPacketExpInfo& first, const tPacketExpInfo& second)
{
    CFields tree(DT_fields);
    addLeaf(tree, "a", CFields(), first);
    addLeaf(tree, "b", CFields(), second);
    return tree;
}

TEST(PacketParse, treeIsFilledInOrder)
{
    CFields tree(DT_fields);
    addLeaf(tree, "a", CFields(), pei4("ANF", 2));
    CFields& list = tree.addChildRef("list");
    list.setValue(DT_array);
    for (int i = 0; i < 3; ++i)
        addLeaf(list, "", CFields(), pei4("ACF", 1));
    tree.addChildRef("none").setValue(DT_array);
    addLeaf(tree, "z", CFields(), pei4("BNF", 2));
    EXPECT_EQ(parsedTree(tree, bytes4("42xyz\1\2more")), 4);
    EXPECT_EQ(tree["a"], CFields(42));
    EXPECT_EQ(list[0u], CFields("x"));
    EXPECT_EQ(list[2u], CFields("z"));
    EXPECT_EQ(tree["z"], CFields(258));
    EXPECT_EQ(parsedTree(list, "pqr"), 0);
    EXPECT_EQ(CFields().pkt_Parse4Children("stu", 3, true, &list), 0);
    EXPECT_EQ(list[1u], CFields("t"));
}

TEST(PacketParse, walkOverAShortPacketTellsTheSumOfWhatIsMissing)
{
    CFields tree = pairTree(pei4("ACF", 2), pei4("ACF", 5));
    addLeaf(tree, "c", CFields(), pei4("ACV", 3));
    EXPECT_EQ(parsedTree(tree, "abcd"), -3 - 3);
    EXPECT_EQ(tree["a"], CFields("ab"));
    EXPECT_TRUE(tree["b"].isNull());
    EXPECT_EQ(parsedTree(tree, ""), -2 - 5 - 3);
    EXPECT_EQ(parsedTree(tree, "abcd", false), -3 - 3);
}

TEST(PacketParse, shortSecondLeafEndsTheWalkNegative)
{
    CFields tree = pairTree(pei4("ACF", 2), pei4("ACF", 2));
    EXPECT_EQ(parsedTree(tree, "abc"), -1);
}

TEST(PacketParse, shortagesOfInnerContainersAreAdded)
{
    CFields tree(DT_fields);
    CFields& inner = tree.addChildRef("inner");
    inner.setValue(DT_fields);
    addLeaf(inner, "a", CFields(), pei4("ACF", 4));
    addLeaf(inner, "b", CFields(), pei4("ACF", 5));
    addLeaf(tree, "c", CFields(), pei4("ACF", 6));
    EXPECT_EQ(parsedTree(tree, "ab"), -2 - 5 - 6);
}

TEST(PacketParse, sumOfShortagesIsClamped)
{
    CFields tree = pairTree(pei4("ACF", 0x7FFFFFFF), pei4("ACF", 0x7FFFFFFF));
    addLeaf(tree, "c", CFields(), pei4("ACF", 0xFFFFFFFF));
    EXPECT_EQ(parsedTree(tree, ""), INT_MIN);
}

TEST(PacketParse, leafWithoutLengthAfterAShortageEndsItsSum)
{
    CFields tree = pairTree(pei4("ACF", 5), CFields::nullPktExp);
    EXPECT_EQ(parsedTree(tree, "abc"), 0);
}

TEST(PacketParse, unreadableNumberEndsTheReading)
{
    CFields tree = pairTree(pei4("ANF", 2), pei4("ACF", 2));
    EXPECT_EQ(parsedTree(tree, "xxab"), -1 - 2);
    EXPECT_TRUE(tree["b"].isNull());
}

TEST(PacketParse, offsetAdvancesByTheRecordedLength)
{
    // Nothing recorded: the next item is read from the same place.
    CFields tree = pairTree(pei4("ACV", 2), pei4("ACF", 2));
    EXPECT_EQ(parsedTree(tree, "04ab99"), 4);
    EXPECT_EQ(tree["a"], CFields("ab"));
    EXPECT_EQ(tree["b"], CFields("04"));
    // The first pass has recorded it.
    EXPECT_EQ(parsedTree(tree, "04ab99"), 0);
    EXPECT_EQ(tree["b"], CFields("99"));
}

TEST(PacketParse, walkStopsWhenAnItemIsShorterThanRecorded)
{
    CFields tree = pairTree(pei4("ACV", 2), pei4("ACF", 1));
    EXPECT_EQ(parsedTree(tree, "06abcd9"), 6);
    EXPECT_EQ(parsedTree(tree, "06abcd9"), 0);
    // Recorded 6, now 4: more bytes remain than there are after the recorded length.
    EXPECT_EQ(parsedTree(tree, "04xy567"), 7);
    EXPECT_EQ(tree["a"], CFields("xy"));
    EXPECT_EQ(tree["b"], CFields("9"));
}

TEST(PacketParse, stoppedInnerWalkStopsTheOuterOne)
{
    CFields tree(DT_fields);
    CFields& inner = tree.addChildRef("inner");
    inner.setValue(DT_fields);
    tPacketExpInfo recorded = pei4("ACV", 2);
    recorded.m_uiLength = 100;
    addLeaf(inner, "a", CFields(), recorded);
    addLeaf(tree, "b", "before", pei4("ACF", 1));
    EXPECT_EQ(parsedTree(tree, "04xy5"), 5);
    EXPECT_EQ(inner["a"], CFields("xy"));
    EXPECT_EQ(tree["b"], CFields("before"));
}

TEST(PacketParse, walkStartsWithTheNumberOfBytesGiven)
{
    tPacketExpInfo recorded = pei4("ACV", 2);
    recorded.m_uiLength = 50;
    CFields tree = pairTree(recorded, pei4("ACF", 1));
    EXPECT_EQ(parsedTree(tree, "04xy5"), 5);
}

TEST(PacketParse, packetJustMadeIsReadBackByTheSameTree)
{
    CFields tree = pairTree(pei4("ANV", 2, 1), pei4("ACV", 3));
    tree["a"] = -17;
    tree["b"] = "some text";
    addLeaf(tree, "c", 5, pei4("ANF", 4));
    CFields copy;
    copy.setField(tree);
    const std::string packet = tree.pkt_Make4Children(false);
    EXPECT_EQ(packet, "04-17012some text0005");
    tree["a"] = CFields();
    tree["b"] = CFields();
    tree["c"] = CFields();
    EXPECT_EQ(parsedTree(tree, packet), 0);
    EXPECT_EQ(tree, copy);
}

TEST(PacketParse, everyPrefixOfAPacketStaysWithinItsBytes)
{
    const char* kinds[] = {"ACF", "ACV", "ACD", "ANF", "ANV", "AND", "BCF", "BCV", "BCD", "BNF", "BNV", "BND"};
    std::mt19937 random(11);
    for (const char* letters : kinds)
    {
        for (unsigned int size : {0u, 1u, 2u, 7u, 8u, 9u, 12u, 255u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        {
            for (int calibration : {-128, -1, 0, 1, 5, 127})
            {
                for (std::size_t length = 0; length <= 20; ++length)
                {
                    std::string packet(length, '\0');
                    for (char& byte : packet)
                        byte = random() % 3 == 0 ? static_cast<char>(random()) : static_cast<char>('0' + random() % 10);
                    if (random() % 4 == 0)
                        packet.assign(length, '\0');
                    CFields leaf = leaf4(CFields(), pei4(letters, size, calibration));
                    const int measured = parsed(leaf, packet, false);
                    const int stored = parsed(leaf, packet, true);
                    EXPECT_LE(measured, static_cast<int>(length));
                    EXPECT_TRUE(stored == measured || (stored == -1 && letters[1] == 'N')) << letters << size;
                    CFields tree = pairTree(pei4(letters, size, calibration), pei4(letters, size, calibration));
                    EXPECT_LE(parsedTree(tree, packet), static_cast<int>(length));
                    EXPECT_LE(parsedTree(tree, packet), static_cast<int>(length));
                }
            }
        }
    }
}

TEST(PacketParse, everyValueMadeIsReadBackAsTheRulesSay)
{
    std::mt19937_64 random(3);
    for (int i = 0; i < 3000; ++i)
    {
        const auto number = static_cast<long long>(random() >> (random() % 64)) * (i % 2 == 0 ? 1 : -1);
        const auto text = std::to_string(number);
        const auto width = static_cast<unsigned int>(text.size() + random() % 4);
        CFields read = leaf4(CFields(), pei4("ANF", width));
        EXPECT_EQ(parsed(read, made(number, pei4("ANF", width))), 0);
        CFields expected;
        atonInField(text.data(), static_cast<unsigned int>(text.size()), expected);
        EXPECT_EQ(read, expected) << number;

        read = leaf4(CFields(), pei4("ANV", 3, 2));
        EXPECT_EQ(parsed(read, made(number, pei4("ANV", 3, 2))), 0);
        EXPECT_EQ(read, expected) << number;

        const auto bytes = static_cast<unsigned int>(1 + random() % 7);
        read = leaf4(CFields(), pei4("BNF", bytes));
        EXPECT_EQ(parsed(read, made(number, pei4("BNF", bytes))), 0);
        EXPECT_EQ(static_cast<std::uint64_t>(read.asSint64()),
                  static_cast<std::uint64_t>(number) & ((std::uint64_t{1} << (8 * bytes)) - 1));

        const double real = static_cast<double>(number) / 128;
        read = leaf4(CFields(), pei4("BNF", 9 + bytes));
        EXPECT_EQ(parsed(read, made(real, pei4("BNF", 9 + bytes))), 0);
        EXPECT_EQ(read, CFields(real));
        if (number >= 0)
        {
            read = leaf4(CFields(), pei4("ANF", 40));
            EXPECT_EQ(parsed(read, made(real, pei4("ANF", 40))), 0);
            EXPECT_EQ(read.asDouble(), real);
        }

        const std::string raw = modelBigEndian(random()).substr(0, static_cast<std::size_t>(random() % 9));
        read = leaf4(CFields(), pei4("BCV", 2, -7));
        EXPECT_EQ(parsed(read, made(raw, pei4("BCV", 2, -7))), 0);
        EXPECT_EQ(read, CFields(raw));
        read = leaf4(CFields(), pei4("ACF", 8));
        EXPECT_EQ(parsed(read, made(raw, pei4("ACF", 8))), 0);
        EXPECT_EQ(read, CFields((raw + "        ").substr(0, 8)));
    }
}

}  // namespace

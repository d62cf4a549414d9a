// tests/packet/size_keyword_test.cpp - items that give the length of others: making, reading back, limits.

#include "packet_helpers.h"

#include "packet/pending_sizes.h"
#include "tests/support/processor_seconds.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using namespace murv;
using namespace murv::tests;

constexpr unsigned int s_cuiDef = 3;
constexpr unsigned int s_cuiSet = 4;

/// "len" of that kind and width, "body" of run-time length; both with option 1.
CFields sizedTree(const char* sizeLetters, unsigned int width, const CFields& body, const char* bodyLetters = "ACD")
{
    CFields tree(DT_fields);
    addLeaf(tree, "len", CFields(), withKeyword(pei4(sizeLetters, width), 0, s_cuiSet, 1));
    addLeaf(tree, "body", body, withKeyword(pei4(bodyLetters, 0), 0, s_cuiDef, 1));
    return tree;
}

CFields& addSized(CFields& tree, const char* name, const CFields& value, unsigned int option,
                  const char* letters = "ACD")
{
    return addLeaf(tree, name, value, withKeyword(pei4(letters, 0), 0, s_cuiDef, option));
}

CFields& addSize(CFields& tree, const char* name, unsigned int option, const tPacketExpInfo& pei = pei4("ANF", 2))
{
    return addLeaf(tree, name, CFields(), withKeyword(pei, 0, s_cuiSet, option));
}

TEST(PacketSize, memoRecordIsElevenBytes)
{
    EXPECT_EQ(sizeof(tMemoFieldInfo), 11u);
}

TEST(PacketSize, sizeItemTellsTheNaturalLength)
{
    CFields tree = sizedTree("ANF", 4, "text");
    EXPECT_EQ(tree.pkt_Make4Children(true), "0004text");
    EXPECT_EQ(tree["len"], CFields(4u));
    EXPECT_EQ(recorded4(tree["body"]), 4u);
    tree["body"] = "longer text";
    EXPECT_EQ(tree.pkt_Make4Children(true), "0011longer text");
    tree["body"] = "";
    EXPECT_EQ(tree.pkt_Make4Children(true), "0000");
    tree["body"] = -125;
    EXPECT_EQ(tree.pkt_Make4Children(true), "0004-125");
}

TEST(PacketSize, bothKeywordsDoTheSameOnBothSides)
{
    for (unsigned int size : {s_cuiDef, s_cuiSet})
    {
        for (unsigned int sized : {s_cuiDef, s_cuiSet})
        {
            CFields tree(DT_fields);
            addLeaf(tree, "len", 0, withKeyword(pei4("ANF", 2), 0, size, 3));
            addLeaf(tree, "body", "abc", withKeyword(pei4("ACD", 0), 0, sized, 3));
            EXPECT_EQ(tree.pkt_Make4Children(true), "03abc");
        }
    }
}

TEST(PacketSize, sizeItemMayBeBinary)
{
    CFields tree = sizedTree("BNF", 2, std::string(300, 'x'), "BCD");
    EXPECT_EQ(tree.pkt_Make4Children(true), "\x01\x2C" + std::string(300, 'x'));
    tree = sizedTree("BCF", 10, "ab", "BCD");
    EXPECT_EQ(tree.pkt_Make4Children(true), bytes4("\0\0\0\0\0\0\0\0\0\2ab"));
    // A binary number in exactly eight bytes gives nothing, a size too.
    tree = sizedTree("BCF", 8, "ab", "BCD");
    EXPECT_EQ(tree.pkt_Make4Children(true), "ab");
}

TEST(PacketSize, variableSizeItemGrowsWithItsNumber)
{
    CFields tree(DT_fields);
    addSize(tree, "outer", 2, pei4("ANV", 2));
    addSize(tree, "len", 1, pei4("ANV", 2));
    addSized(tree, "body", "twelve bytes", 1);
    addSized(tree, "tail", "0123456789", 2);
    EXPECT_EQ(tree.pkt_Make4Children(true), "04100412twelve bytes0123456789");
    EXPECT_EQ(recorded4(tree["len"]), 4u);
    CFields binary = sizedTree("BNV", 1, "ab");
    EXPECT_EQ(binary.pkt_Make4Children(true), bytes4("\x09\0\0\0\0\0\0\0\2ab"));
}

TEST(PacketSize, waitingItemsAfterAGrownOneAreFound)
{
    CFields tree(DT_fields);
    addSize(tree, "first", 1, pei4("ANV", 1));
    addSize(tree, "second", 2, pei4("ANF", 3));
    addSized(tree, "one", "0123456789", 1);
    addSized(tree, "two", "abc", 2);
    EXPECT_EQ(tree.pkt_Make4Children(true), "3100030123456789abc");
}

TEST(PacketSize, itemsOfTwoNumbersBetweenEachOtherGrowAlike)
{
    CFields tree(DT_fields);
    for (const char* const name : {"a", "b", "c"})
    {
        addSize(tree, name, 1, pei4("ANV", 1));
        addLeaf(tree, "", CFields("-"), pei4("ACF", 1));
        addSize(tree, (std::string(name) + "2").c_str(), 2, pei4("ANV", 1));
    }
    addSize(tree, "fixed", 1, pei4("ANF", 3));
    addSized(tree, "one", "0123456789", 1);
    addSized(tree, "two", std::string(123, 'x'), 2);
    EXPECT_EQ(tree.pkt_Make4Children(true),
              "310-4123310-4123310-4123010"
              "0123456789" +
                  std::string(123, 'x'));
    EXPECT_EQ(recorded4(tree["b"]), 3u);
    EXPECT_EQ(recorded4(tree["b2"]), 4u);
    EXPECT_EQ(tree["c2"], CFields(123u));
}

TEST(PacketSize, laterItemsOfTheNumberTakeTheSameLength)
{
    CFields tree(DT_fields);
    addSize(tree, "len", 1);
    addSized(tree, "a", "abc", 1);
    addSized(tree, "b", "x", 1);
    addSized(tree, "c", "longer", 1);
    EXPECT_EQ(tree.pkt_Make4Children(true), "03abcx  lon");
    EXPECT_EQ(recorded4(tree["c"]), 3u);
}

TEST(PacketSize, numbersArePairedByTheOption)
{
    CFields tree(DT_fields);
    addSize(tree, "len1", 1);
    addSize(tree, "len2", 2);
    addSized(tree, "two", "ab", 2);
    addSized(tree, "one", "abcde", 1);
    EXPECT_EQ(tree.pkt_Make4Children(true), "0502ababcde");
}

TEST(PacketSize, sizeItemsOfOneNumberAllTellIt)
{
    CFields tree(DT_fields);
    addSize(tree, "len1", 1);
    addSize(tree, "len2", 1, pei4("ANF", 3));
    addSized(tree, "body", "abcd", 1);
    EXPECT_EQ(tree.pkt_Make4Children(true), "04004abcd");
}

TEST(PacketSize, newSizeItemBeginsAnew)
{
    CFields tree(DT_fields);
    addSize(tree, "len1", 1);
    addSized(tree, "a", "abc", 1);
    addSize(tree, "len2", 1);
    addSized(tree, "b", "x", 1);
    EXPECT_EQ(tree.pkt_Make4Children(true), "03abc01x");
}

TEST(PacketSize, sizeItemWithoutSizedItemStaysZero)
{
    CFields tree(DT_fields);
    addSize(tree, "len", 1) = 77;
    EXPECT_EQ(tree.pkt_Make4Children(true), "00");
    EXPECT_EQ(tree["len"], CFields(0u));
}

TEST(PacketSize, unannouncedItemIsSkippedWhileNothingIsRemembered)
{
    CFields tree(DT_fields);
    addSized(tree, "body", "abc", 1);
    addSize(tree, "len", 1);
    EXPECT_EQ(tree.pkt_Make4Children(true), "00");
    tPacketExpInfo pei = tree["body"].pkt_GetExp();
    pei.m_uiLength = 2;
    tree["body"].pkt_SetExp(pei);
    EXPECT_EQ(tree.pkt_Make4Children(true), "ab00");
}

TEST(PacketSize, unannouncedItemTakesItsNaturalLengthOnceSomethingIsRemembered)
{
    CFields tree(DT_fields);
    addSize(tree, "len", 1);
    addSized(tree, "other", "abcde", 2);
    addSized(tree, "body", "xy", 1);
    EXPECT_EQ(tree.pkt_Make4Children(true), "02abcdexy");
    EXPECT_EQ(recorded4(tree["other"]), 5u);
}

TEST(PacketSize, withoutKeywordsItemsAreLaidOutAsTheyStand)
{
    CFields tree = sizedTree("ANF", 2, "abc");
    tree["len"] = 9;
    EXPECT_EQ(tree.pkt_Make4Children(false), "09");
    tree.pkt_Make4Children(true);
    EXPECT_EQ(tree.pkt_Make4Children(false), "03abc");
}

TEST(PacketSize, sizeItemWithoutLengthIsSkipped)
{
    CFields tree = sizedTree("ANF", 0, "abc");
    EXPECT_EQ(tree.pkt_Make4Children(true), "");
}

TEST(PacketSize, sizeThatDoesNotFitThrows)
{
    struct tCase
    {
        const char* m_pLetters;
        unsigned int m_uiWidth;
        std::size_t m_nBody;
        bool m_bFits;
    };
    const tCase cases[] = {
        {"ANF", 1, 9, true},     {"ANF", 1, 10, false},    {"ANF", 2, 99, true},
        {"ACF", 2, 100, false},  {"BNF", 1, 255, true},    {"BNF", 1, 256, false},
        {"BCF", 2, 65535, true}, {"BCF", 2, 65536, false}, {"BNF", 9, 70000, true},
    };
    for (const tCase& row : cases)
    {
        const CFields tree = sizedTree(row.m_pLetters, row.m_uiWidth, std::string(row.m_nBody, 'x'));
        EXPECT_EQ(thrown([&tree] { tree.pkt_Make4Children(true); }),
                  row.m_bFits ? "(nothing was thrown)"
                              : "[murv::CFields::pkt_allotValue4SKI#0] Size(" + std::to_string(row.m_nBody) +
                                    ") does not fit its size item");
    }
}

TEST(PacketSize, sizedBinaryNumberOfEightBytesGivesNothing)
{
    CFields tree = sizedTree("BNF", 1, 1.5, "BND");
    EXPECT_EQ(tree.pkt_Make4Children(true), "\x08");
}

TEST(PacketSize, sizedItemIsReadWithTheLengthTold)
{
    CFields tree = sizedTree("ANF", 4, CFields());
    EXPECT_EQ(parsedTree(tree, "0005abcdefg"), 2);
    EXPECT_EQ(tree["len"], CFields(5));
    EXPECT_EQ(tree["body"], CFields("abcde"));
    EXPECT_EQ(recorded4(tree["body"]), 5u);
}

TEST(PacketSize, lengthIsTakenAlsoWhenMeasuringButNotStored)
{
    CFields tree = sizedTree("BNF", 2, "before");
    EXPECT_EQ(parsedTree(tree, bytes4("\0\3abcd"), false), 1);
    EXPECT_EQ(parsedTree(tree, bytes4("\0\3a"), false), -2);
    EXPECT_EQ(recorded4(tree["body"]), 0u);
    EXPECT_EQ(tree["body"], CFields("before"));
}

TEST(PacketSize, sizeOfZeroEmptiesTheByteString)
{
    CFields tree = sizedTree("ANF", 1, "before");
    EXPECT_EQ(parsedTree(tree, "0"), 0);
    EXPECT_EQ(tree["body"], CFields(""));
    EXPECT_EQ(recorded4(tree["body"]), 0u);
    CFields number = sizedTree("ANF", 1, 5, "AND");
    EXPECT_EQ(parsedTree(number, "0"), 0);
    EXPECT_EQ(number["body"], CFields(5));
}

TEST(PacketSize, severalSizesAreReadByTheirNumbers)
{
    CFields tree(DT_fields);
    addSize(tree, "len1", 1);
    addSize(tree, "len2", 2);
    addSized(tree, "two", CFields(), 2);
    addSized(tree, "one", CFields(), 1, "AND");
    addSized(tree, "again", CFields(), 2);
    EXPECT_EQ(parsedTree(tree, "0402ab1234cd"), 0);
    EXPECT_EQ(tree["two"], CFields("ab"));
    EXPECT_EQ(tree["one"], CFields(1234));
    EXPECT_EQ(tree["again"], CFields("cd"));
}

TEST(PacketSize, shortSizedItemTellsWhatIsMissing)
{
    CFields tree = sizedTree("ANF", 2, "before");
    EXPECT_EQ(parsedTree(tree, "05abc"), -2);
    EXPECT_EQ(tree["body"], CFields("before"));
    EXPECT_EQ(recorded4(tree["body"]), 0u);
    EXPECT_EQ(parsedTree(tree, "05"), -5);
}

TEST(PacketSize, hostileSizesAreClamped)
{
    CFields tree = sizedTree("BNF", 8, CFields());
    EXPECT_EQ(parsedTree(tree, std::string(8, '\xFF') + "ab"), 2 - 0x7FFFFFFF);
    tree = sizedTree("ANF", 12, CFields());
    EXPECT_EQ(parsedTree(tree, "999999999999ab"), 2 - 0x7FFFFFFF);
}

TEST(PacketSize, unreadableSizeLeavesTheItemItsOwnLength)
{
    for (const char* size : {"abcd", "-003", "    "})
    {
        CFields tree = sizedTree("ACF", 4, "before");
        EXPECT_EQ(parsedTree(tree, std::string(size) + "xyz"), 3) << size;
        tPacketExpInfo pei = tree["body"].pkt_GetExp();
        pei.m_uiLength = 2;
        tree["body"].pkt_SetExp(pei);
        EXPECT_EQ(parsedTree(tree, std::string(size) + "xyz"), 1) << size;
        EXPECT_EQ(tree["body"], CFields("xy"));
    }
}

TEST(PacketSize, paddedSizeTextIsRead)
{
    CFields tree = sizedTree("ACF", 4, CFields());
    EXPECT_EQ(parsedTree(tree, "  3 abc"), 0);
    EXPECT_EQ(tree["body"], CFields("abc"));
}

TEST(PacketSize, packetMadeIsReadBack)
{
    struct tKind
    {
        const char* m_pLetters;
        unsigned int m_uiWidth;
    };
    for (const tKind& size : {tKind{"ANF", 3},
                              {"ACF", 4},
                              {"BNF", 1},
                              {"BCF", 3},
                              {"BNF", 9},
                              {"ACV", 2},
                              {"ANV", 3},
                              {"BCV", 1},
                              {"BNV", 2}})
    {
        for (std::size_t length : {0u, 1u, 9u, 10u, 63u, 200u})
        {
            const std::string body(length, 'b');
            CFields tree = sizedTree(size.m_pLetters, size.m_uiWidth, body);
            addSized(tree, "again", std::string(length, 'c'), 1);
            addLeaf(tree, "end", "END", pei4("ACF", 3));
            const std::string packet = tree.pkt_Make4Children(true);
            EXPECT_EQ(parsedTree(tree, packet, false), 0) << size.m_pLetters << length;
            EXPECT_EQ(failedLeaves(tree, packet), 0u) << size.m_pLetters << length;
            for (const char* name : {"body", "again", "end"})
                tree[name] = "?";
            EXPECT_EQ(parsedTree(tree, packet), 0) << size.m_pLetters << length;
            EXPECT_EQ(tree["body"], CFields(body)) << size.m_pLetters << length;
            EXPECT_EQ(tree["again"], CFields(std::string(length, 'c')));
            EXPECT_EQ(tree["end"], CFields("END"));
        }
    }
}

TEST(PacketSize, manySizeItemsCostLinearTime)
{
    // Each waits for a number of its own round; quadratic work would not end in time.
    CFields tree(DT_array);
    std::string expected;
    for (int i = 0; i < 100000; ++i)
        addSize(tree, "", 1 + static_cast<unsigned int>(i) % 9);
    for (unsigned int option = 1; option <= 9; ++option)
        addSized(tree, "", std::string(option, 'x'), option);
    for (int i = 0; i < 100000; ++i)
        expected += "0" + std::to_string(1 + i % 9);
    for (unsigned int option = 1; option <= 9; ++option)
        expected += std::string(option, 'x');
    EXPECT_EQ(tree.pkt_Make4Children(true), expected);
}

/// The packet of many size items that grow: first all of them and then the items they size, or each before its own.
std::string makeGrowing(unsigned int count, bool waiting)
{
    CFields tree(DT_array);
    for (unsigned int i = 0; i < count; ++i)
    {
        addSize(tree, "", waiting ? 1 + i % 9 : 1, pei4("ANV", 1));
        if (!waiting)
            addSized(tree, "", "0123456789", 1);
    }
    for (unsigned int option = 1; waiting && option <= 9; ++option)
        addSized(tree, "", std::string(10 + option, 'x'), option);
    return tree.pkt_Make4Children(true);
}

TEST(PacketSize, manySizeItemsThatGrowAreAllTold)
{
    constexpr unsigned int count = 1000;
    std::string waiting;
    std::string pairs;
    for (unsigned int i = 0; i < count; ++i)
    {
        waiting += "3" + std::to_string(11 + i % 9);
        pairs += "3100123456789";
    }
    for (unsigned int option = 1; option <= 9; ++option)
        waiting += std::string(10 + option, 'x');
    EXPECT_EQ(makeGrowing(count, true), waiting);
    EXPECT_EQ(makeGrowing(count, false), pairs);
}

TEST(PacketSize, manySizeItemsThatGrowCostLinearTime)
{
    // Sixteen times the items: sixteen times the time is right, 256 times would be a cost that grows with the square.
    const auto seconds = [](unsigned int count, bool waiting) {
        return processorSeconds(3, [&] { EXPECT_GT(makeGrowing(count, waiting).size(), count); });
    };
    for (const bool waiting : {true, false})
        EXPECT_TRUE(costsLessThan(
            80, [&] { return seconds(4000, waiting); }, [&] { return seconds(64000, waiting); }))
            << waiting;
}

TEST(SizeKeyword, aSizeThatTheVariablePrefixWouldCutIsRefused)
{
    CFields tree(DT_fields);
    addSize(tree, "", 1);
    CFields& size = tree[0];
    tPacketExpInfo pei = size.pkt_GetExp();
    pei.m_eLengthExp = LEC_V;
    pei.m_ucPrefixSize = 1;
    pei.m_cCalibration = -5;
    pei.m_uiLength = 0;
    size.pkt_SetExp(pei);
    addSized(tree, "", std::string(1000, 'x'), 1);
    EXPECT_EQ(thrown([&] { tree.pkt_Make4Children(true); }),
              "[murv::CFields::pkt_allotValue4SKI#0] Size(1000) does not fit its size item");
}

}  // namespace

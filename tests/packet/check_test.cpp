// tests/packet/check_test.cpp - comparing a leaf's two values, and checking packets against the keywords of a tree.

#include "packet_helpers.h"

#include "packet/time_value.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using namespace murv;
using namespace murv::tests;

CFields dualLeaf(const CFields& first, const CFields& second, unsigned int index)
{
    CFields leaf = leaf4(second, withKeyword(pei4("ACF", 4), 0, index));
    leaf.setVK(static_cast<E_ValueKind>(index));
    const CFields copy = first;
    const tPacketExpInfo pei = leaf.pkt_GetExp();
    switch (copy.getDT())
    {
    case DT_codelist: leaf.setValue(copy.asString()); break;
    default: leaf.setValue(copy.asSint64()); break;
    }
    leaf.pkt_SetExp(pei);
    return leaf;
}

bool passes(const tPacketExpInfo& pei, std::string_view bytes)
{
    CFields leaf = leaf4(CFields(), pei);
    const CExactBytes exact(bytes);
    return leaf.pkt_DetailCheck4OneSelf(exact.data(), exact.size());
}

TEST(PacketCheck, fixComparesWithFalseAndValidWithTrue)
{
    EXPECT_TRUE(dualLeaf("ab", "ab", 1).pkt_Check4OneSelf(false));
    EXPECT_FALSE(dualLeaf("ab", "xy", 1).pkt_Check4OneSelf(false));
    EXPECT_TRUE(dualLeaf("ab", "xy", 1).pkt_Check4OneSelf(true));
    EXPECT_TRUE(dualLeaf(5, 5, 2).pkt_Check4OneSelf(true));
    EXPECT_FALSE(dualLeaf(5, 6, 2).pkt_Check4OneSelf(true));
    EXPECT_TRUE(dualLeaf(5, 6, 2).pkt_Check4OneSelf(false));
    EXPECT_FALSE(dualLeaf(5, "5", 2).pkt_Check4OneSelf(true));
}

TEST(PacketCheck, othersPass)
{
    for (const bool valid : {false, true})
    {
        EXPECT_TRUE(CFields(1).pkt_Check4OneSelf(valid));
        EXPECT_TRUE(leaf4(1, withKeyword(pei4("ACF", 4), 3, 1)).pkt_Check4OneSelf(valid));
        EXPECT_TRUE(leaf4(1, withKeyword(pei4("ACF", 4), 3, 2)).pkt_Check4OneSelf(valid));
        EXPECT_TRUE(leaf4(1, withKeyword(pei4("ACF", 4), 0, 31)).pkt_Check4OneSelf(valid));
        EXPECT_TRUE(leaf4(CFields(DT_fields), withKeyword(pei4("ACF", 4), 0, 1)).pkt_Check4OneSelf(valid));
    }
    EXPECT_FALSE(leaf4(1, withKeyword(pei4("ACF", 4), 0, 1)).pkt_Check4OneSelf(false));
}

TEST(PacketCheck, treePassesWhenEveryLeafDoes)
{
    CFields tree(DT_fields);
    CFields& inner = tree.addChildRef("inner");
    inner.setValue(DT_array);
    inner.addArrayAt(dualLeaf("ab", "ab", 1));
    inner.addArrayAt(dualLeaf("ab", "ab", 2));
    EXPECT_TRUE(tree.pkt_Check4Children(false));
    EXPECT_TRUE(tree.pkt_Check4Children(true));
    inner[1u].setValue("xy");
    EXPECT_TRUE(tree.pkt_Check4Children(false));
    EXPECT_FALSE(tree.pkt_Check4Children(true));
    EXPECT_TRUE(tree.pkt_Check4Children(true, &inner[0u]));
    EXPECT_FALSE(CFields().pkt_Check4Children(true, &tree));
}

TEST(PacketDetailCheck, leafWithoutKeywordPasses)
{
    EXPECT_TRUE(passes(pei4("ACF", 4), "ab"));
    EXPECT_TRUE(passes(pei4("ANV", 4), ""));
    EXPECT_TRUE(leaf4(CFields(DT_array), withKeyword(pei4("ACF", 4), 0, 1)).pkt_DetailCheck4OneSelf("", 0));
}

TEST(PacketDetailCheck, leafOfUnknownLengthCodeIsSkippedAsInMaking)
{
    tPacketExpInfo pei = pei4("ACF", 2);
    pei.m_eLengthExp = static_cast<E_LengthExpCode>(3);
    CFields tree(DT_fields);
    addLeaf(tree, "skipped", "before", pei);
    tree.addChildRef("checked") = dualLeaf("abcd", "abcd", 1);
    const std::string packet = tree.pkt_Make4Children(true);
    EXPECT_EQ(packet, "abcd");
    EXPECT_EQ(tree.pkt_DetailCheck4Children(packet.data(), 4), 0u);
}

TEST(PacketDetailCheck, dualItemMustEqualTheSecondValue)
{
    CFields leaf = dualLeaf("first", "abcd", 1);
    EXPECT_TRUE(leaf.pkt_DetailCheck4OneSelf("abcdef", 6));
    EXPECT_FALSE(leaf.pkt_DetailCheck4OneSelf("abxd", 4));
    EXPECT_FALSE(leaf.pkt_DetailCheck4OneSelf("abc", 3));
    EXPECT_FALSE(leaf.pkt_DetailCheck4OneSelf(nullptr, 4));
    EXPECT_EQ(leaf.asString(), "first");
    CFields number = dualLeaf(1, 42, 2);
    number.pkt_SetExp(withKeyword(pei4("ANF", 4), 0, 2));
    EXPECT_TRUE(number.pkt_DetailCheck4OneSelf("0042", 4));
    EXPECT_FALSE(number.pkt_DetailCheck4OneSelf("0043", 4));
    EXPECT_FALSE(number.pkt_DetailCheck4OneSelf("abcd", 4));
    number.pkt_SetExp(withKeyword(pei4("BNF", 2), 0, 2));
    EXPECT_TRUE(number.pkt_DetailCheck4OneSelf("\0\x2A", 2));
    number.pkt_SetExp(withKeyword(pei4("ANV", 2), 0, 2));
    EXPECT_TRUE(number.pkt_DetailCheck4OneSelf("0442", 4));
    EXPECT_FALSE(number.pkt_DetailCheck4OneSelf("0142", 4));
    EXPECT_FALSE(number.pkt_DetailCheck4OneSelf("0942", 4));
    EXPECT_EQ(recorded4(number), 0u);
}

TEST(PacketDetailCheck, dualItemWithoutSecondValueFails)
{
    EXPECT_FALSE(passes(withKeyword(pei4("ACF", 2), 0, 1), "ab"));
}

TEST(PacketDetailCheck, timeItemMustBeInRange)
{
    struct tCase
    {
        unsigned int m_uiIndex;
        const char* m_pText;
        bool m_bPasses;
    };
    const tCase cases[] = {
        {11, "001", true},
        {11, "366", true},
        {11, "000", false},
        {11, "367", false},
        {12, "0", true},
        {12, "6", true},
        {12, "7", false},
        {13, "0000", true},
        {13, "9999", true},
        {13, "10000", false},
        {14, "00", true},
        {14, "99", true},
        {14, "100", false},
        {15, "01", true},
        {15, "12", true},
        {15, "00", false},
        {15, "13", false},
        {16, "31", true},
        {16, "00", false},
        {16, "32", false},
        {17, "23", true},
        {17, "24", false},
        {18, "59", true},
        {18, "60", false},
        {19, "60", true},
        {19, "61", false},
        {20, "999", true},
        {20, "1000", false},
        {31, "20240229", true},
        {31, "20230229", false},
        {31, "19000229", false},
        {31, "20000229", true},
        {31, "20240431", false},
        {31, "20240430", true},
        {31, "20241301", false},
        {31, "20240100", false},
        {31, "120240101", false},
        {32, "240229", true},
        {32, "230229", false},
        {32, "000229", true},
        {33, "235960", true},
        {33, "240000", false},
        {34, "235959999", true},
        {35, "240229235959", true},
        {36, "240229235959999", true},
        {37, "20240229235959", true},
        {37, "20240229236059", false},
        {38, "20240229235959999", true},
        {38, "20240230235959999", false},
        {15, "1a", false},
        {15, " 1", false},
        {15, "-1", false},
        {15, "ab", false},
        {17, "-0", true},
        {15, "+1", true},
        {15, "1.", false},
    };
    for (const tCase& row : cases)
    {
        const auto length = static_cast<unsigned int>(std::strlen(row.m_pText));
        for (const char* letters : {"ACF", "ANF", "AND"})
            EXPECT_EQ(passes(withKeyword(pei4(letters, length), 0, row.m_uiIndex), row.m_pText), row.m_bPasses)
                << row.m_uiIndex << " " << row.m_pText;
        EXPECT_FALSE(passes(withKeyword(pei4("ACF", length + 1), 0, row.m_uiIndex), row.m_pText));
    }
}

TEST(PacketDetailCheck, timeItemMayBeBinaryOrVariable)
{
    EXPECT_TRUE(passes(withKeyword(pei4("BNF", 1), 0, 15), "\x0C"));
    EXPECT_FALSE(passes(withKeyword(pei4("BCF", 1), 0, 15), "\x0D"));
    EXPECT_TRUE(passes(withKeyword(pei4("ACV", 2), 0, 15), "0412"));
    EXPECT_FALSE(passes(withKeyword(pei4("ACV", 2), 0, 15), "0413"));
    EXPECT_FALSE(passes(withKeyword(pei4("ACV", 2), 0, 15), "02"));
    EXPECT_TRUE(passes(withKeyword(pei4("BCF", 9), 0, 17), bytes4("\0\0\0\0\0\0\0\0\x17")));
}

TEST(PacketDetailCheck, sizeItemsPassWhenReadableAndSizedOnesWhenTheyFit)
{
    CFields tree(DT_fields);
    addLeaf(tree, "len", 0, withKeyword(pei4("ANF", 2), 0, 4, 1));
    addLeaf(tree, "body", "", withKeyword(pei4("ACD", 0), 0, 3, 1));
    addLeaf(tree, "end", "", withKeyword(pei4("ACF", 2), 0, 15));
    EXPECT_EQ(failedLeaves(tree, "03abc12"), 0u);
    EXPECT_EQ(failedLeaves(tree, "03abc13"), 1u);
    EXPECT_EQ(failedLeaves(tree, "09abc12"), 2u);
    EXPECT_EQ(failedLeaves(tree, "xx12"), 1u);
    EXPECT_EQ(failedLeaves(tree, ""), 2u);
}

TEST(PacketDetailCheck, unknownInternalKeywordFails)
{
    EXPECT_FALSE(passes(withKeyword(pei4("ACF", 2), 0, 5), "ab"));
    EXPECT_FALSE(passes(withKeyword(pei4("ACF", 2), 0, 39), "ab"));
}

TEST(PacketDetailCheck, itemWithoutLengthPasses)
{
    EXPECT_TRUE(passes(withKeyword(pei4("ACF", 0), 0, 15), ""));
    EXPECT_TRUE(passes(withKeyword(pei4("ANV", 0), 0, 1), ""));
}

TEST(PacketDetailCheck, failedLeavesAreCounted)
{
    CFields tree(DT_array);
    for (int i = 0; i < 3; ++i)
        addLeaf(tree, "", 0, withKeyword(pei4("ACF", 2), 0, 15));
    addLeaf(tree, "", 0, pei4("ACF", 2));
    EXPECT_EQ(failedLeaves(tree, "011200xx"), 1u);
    EXPECT_EQ(failedLeaves(tree, "001399xx"), 3u);
    EXPECT_EQ(failedLeaves(tree, "0112"), 1u);
    EXPECT_EQ(tree.pkt_DetailCheck4Children("13", 2, &tree[0u]), 1u);
    EXPECT_EQ(tree.pkt_DetailCheck4Children(nullptr, 8), 3u);
}

TEST(PacketDetailCheck, hugeLengthsStayOutsideThePacket)
{
    CFields tree(DT_array);
    for (int i = 0; i < 4; ++i)
        addLeaf(tree, "", 0, pei4("ACF", 0xFFFFFFFF));
    addLeaf(tree, "", 0, withKeyword(pei4("ACF", 2), 0, 15));
    addLeaf(tree, "", 0, withKeyword(pei4("BCV", 8), 0, 15));
    EXPECT_EQ(failedLeaves(tree, "01"), 2u);
}

}  // namespace

// tests/packet/keyword_test.cpp - the internal keywords: their table, the time they fill in, setting all leaves of one.

#include "packet_helpers.h"

#include "packet/clock.h"
#include "packet/keyword_table.h"
#include "packet/time_value.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

namespace
{

using namespace murv;
using namespace murv::tests;

int s_iReadings = 0;

/// Saturday, 3 February 2024, 04:05:06.078.
detail::tClockReading fixedClock()
{
    ++s_iReadings;
    return {2024, 2, 3, 4, 5, 6, 78, 34, 6};
}

/// The fixed time as long as it lives.
struct tFixedClock
{
    tFixedClock()
    {
        detail::setClock(&fixedClock);
        s_iReadings = 0;
    }
    tFixedClock(const tFixedClock&) = delete;
    tFixedClock& operator=(const tFixedClock&) = delete;
    ~tFixedClock()
    {
        detail::setClock(nullptr);
    }
};

struct tTimeCase
{
    unsigned int m_uiIndex;
    const char* m_pName;
    unsigned long long m_ullValue;
};

constexpr tTimeCase s_ctTimes[] = {
    {11, "DOY", 34},
    {12, "DOW", 6},
    {13, "YYYY", 2024},
    {14, "YY", 24},
    {15, "MM", 2},
    {16, "DD", 3},
    {17, "hh", 4},
    {18, "mm", 5},
    {19, "SS", 6},
    {20, "sss", 78},
    {31, "YYYYMMDD", 20240203},
    {32, "YYMMDD", 240203},
    {33, "hhmmSS", 40506},
    {34, "hhmmSSsss", 40506078},
    {35, "YYMMDDhhmmSS", 240203040506},
    {36, "YYMMDDhhmmSSsss", 240203040506078},
    {37, "YYYYMMDDhhmmSS", 20240203040506},
    {38, "YYYYMMDDhhmmSSsss", 20240203040506078},
};

TEST(PacketKeyword, tableHoldsTheNames)
{
    EXPECT_STREQ(detail::findKeyword(1u)->m_pName, "fix");
    EXPECT_STREQ(detail::findKeyword(2u)->m_pName, "valid");
    EXPECT_STREQ(detail::findKeyword(3u)->m_pName, "sizedef_");
    EXPECT_STREQ(detail::findKeyword(4u)->m_pName, "sizeset_");
    for (const tTimeCase& row : s_ctTimes)
    {
        EXPECT_STREQ(detail::findKeyword(row.m_uiIndex)->m_pName, row.m_pName);
        EXPECT_EQ(detail::findKeyword(std::string_view(row.m_pName))->m_usIndex, row.m_uiIndex);
    }
}

TEST(PacketKeyword, reservedIndexesHaveNone)
{
    for (unsigned int index : {0u, 5u, 6u, 7u, 8u, 9u, 10u, 21u, 25u, 30u, 39u, 65535u})
        EXPECT_EQ(detail::findKeyword(index), nullptr) << index;
    EXPECT_EQ(detail::findKeyword(std::string_view("yyyy")), nullptr);
    EXPECT_EQ(detail::findKeyword(std::string_view("")), nullptr);
}

TEST(PacketKeyword, timeIsFilledInAsOneNumber)
{
    const tFixedClock clock;
    for (const tTimeCase& row : s_ctTimes)
    {
        CFields leaf = leaf4("before", withKeyword(pei4("ACF", 17), 0, row.m_uiIndex));
        std::string digits = std::to_string(row.m_ullValue);
        EXPECT_EQ(leaf.pkt_Make4OneSelf(true), std::string(17 - digits.size(), '0') + digits) << row.m_pName;
        EXPECT_EQ(leaf, CFields(row.m_ullValue)) << row.m_pName;
        EXPECT_TRUE(leaf.getDT() == DT_uint);
    }
}

TEST(PacketKeyword, timeIsNotFilledInWithoutKeywords)
{
    const tFixedClock clock;
    CFields leaf = leaf4("text", withKeyword(pei4("ACF", 8), 0, 31));
    EXPECT_EQ(leaf.pkt_Make4OneSelf(false), "text    ");
    EXPECT_EQ(s_iReadings, 0);
}

TEST(PacketKeyword, oneReadingServesOneItem)
{
    const tFixedClock clock;
    CFields tree(DT_array);
    addLeaf(tree, "", 0, withKeyword(pei4("ACF", 17), 0, 38));
    addLeaf(tree, "", 0, withKeyword(pei4("ACF", 8), 0, 31));
    addLeaf(tree, "", 0, withKeyword(pei4("ACF", 0), 0, 31));
    EXPECT_EQ(tree.pkt_Make4Children(true), "2024020304050607820240203");
    EXPECT_EQ(s_iReadings, 2);
}

TEST(PacketKeyword, timeKeepsTheSecondValue)
{
    const tFixedClock clock;
    CFields leaf = leaf4(7, withKeyword(pei4("ACF", 4), 0, 13));
    leaf.setVK(VK_valid);
    EXPECT_EQ(leaf.pkt_Make4OneSelf(true), "2024");
    EXPECT_EQ(leaf.asSint64(VK_valid), 7);
    EXPECT_EQ(leaf.getVK(), VK_valid);
}

TEST(PacketKeyword, systemClockIsInRangeAndLeavesErrnoAlone)
{
    errno = 4711;
    const detail::tClockReading now = detail::readClock();
    EXPECT_EQ(errno, 4711);
    EXPECT_GE(now.m_iYear, 2024);
    for (const detail::tTimePart& part : detail::s_ctTimeParts)
    {
        const int value = now.*part.m_pValue;
        EXPECT_GE(part.m_iModulo ? value % part.m_iModulo : value, part.m_iMin) << part.m_strvLetters;
        EXPECT_LE(part.m_iModulo ? value % part.m_iModulo : value, part.m_iMax) << part.m_strvLetters;
    }
    CFields leaf = leaf4(0, withKeyword(pei4("ACF", 8), 0, 31));
    const std::string item = leaf.pkt_Make4OneSelf(true);
    EXPECT_EQ(leaf.pkt_DetailCheck4OneSelf(item.data(), 8), true);
}

TEST(PacketKeyword, dualKeywordsChangeNothingWhileMaking)
{
    for (unsigned int index : {1u, 2u})
        EXPECT_EQ(made("ab", withKeyword(pei4("ACF", 3), 0, index), true), "ab ");
}

TEST(PacketKeyword, unknownInternalIndexThrowsWhileMaking)
{
    for (unsigned int index : {5u, 10u, 21u, 30u, 39u, 65535u})
    {
        EXPECT_EQ(thrown([index] { made(1, withKeyword(pei4("ACF", 3), 0, index), true); }),
                  "[murv::CFields::pkt_allotValue4SKI#0] Unknown internal SKI(supporting keyword index)");
        EXPECT_EQ(made(1, withKeyword(pei4("ACF", 3), 0, index), false), "001");
        EXPECT_EQ(made(1, withKeyword(pei4("ACF", 0), 0, index), true), "");
    }
}

TEST(PacketKeyword, valuesOfAllLeavesOfAKeywordAreSet)
{
    CFields tree(DT_fields);
    addLeaf(tree, "a", 1, withKeyword(pei4("ACF", 3), 3, 7));
    CFields& inner = tree.addChildRef("inner");
    inner.setValue(DT_fields);
    inner.pkt_SetExp(withKeyword(pei4("ACF", 3), 3, 7));
    addLeaf(inner, "b", 2, withKeyword(pei4("ACF", 3), 3, 7, 5));
    addLeaf(inner, "c", 3, withKeyword(pei4("ACF", 3), 2, 7));
    EXPECT_EQ(tree.pkt_SetValue4SKI(3, 7, "new"), 2);
    EXPECT_EQ(tree["a"], CFields("new"));
    EXPECT_EQ(inner["b"], CFields("new"));
    EXPECT_EQ(inner["c"], CFields(3));
    EXPECT_EQ(tree["a"].getName(), std::string("a"));
    EXPECT_EQ(tree.pkt_SetValue4SKI(3, 7, 9, &inner), 1);
    EXPECT_EQ(tree["a"], CFields("new"));
    EXPECT_EQ(tree.pkt_SetValue4SKI(3, 8, 9), 0);
    EXPECT_EQ(tree["a"].pkt_SetValue4SKI(3, 7, 1), 1);
}

TEST(PacketKeyword, valueMayComeFromTheTreeItself)
{
    CFields tree(DT_fields);
    addLeaf(tree, "a", "first", withKeyword(pei4("ACF", 3), 1, 1));
    addLeaf(tree, "b", "second", withKeyword(pei4("ACF", 3), 1, 1));
    EXPECT_EQ(tree.pkt_SetValue4SKI(1, 1, tree["b"]), 2);
    EXPECT_EQ(tree["a"], CFields("second"));
    EXPECT_EQ(tree.pkt_SetValue4SKI(1, 1, tree), 2);
    EXPECT_EQ(tree["a"]["b"], CFields("second"));
    EXPECT_EQ(tree["b"]["a"], CFields("second"));
}

TEST(PacketKeyword, settingRefusesKeywordsThatCannotBe)
{
    CFields tree(DT_fields);
    EXPECT_EQ(tree.pkt_SetValue4SKI(16, 1, 1), -1);
    EXPECT_EQ(tree.pkt_SetValue4SKI(255, 1, 1), -1);
    EXPECT_EQ(tree.pkt_SetValue4SKI(3, 0, 1), -1);
    EXPECT_EQ(tree.pkt_SetValue4SKI(0, 0, 1), -1);
    EXPECT_EQ(tree.pkt_SetValue4SKI(0, 39, 1), -2);
    EXPECT_EQ(tree.pkt_SetValue4SKI(0, 38, 1), 0);
    EXPECT_EQ(tree.pkt_SetValue4SKI(15, 65535, 1), 0);
    EXPECT_EQ(tree.pkt_SetOSA4SKI(16, 1, nullptr), -1);
    EXPECT_EQ(tree.pkt_SetOSA4SKI(1, 0, nullptr), -1);
    EXPECT_EQ(tree.pkt_SetOSA4SKI(0, 39, nullptr), -2);
}

TEST(PacketKeyword, userPointersOfAllLeavesOfAKeywordAreSet)
{
    CFields tree(DT_array);
    addLeaf(tree, "", 1, withKeyword(pei4("ACF", 3), 0, 31));
    addLeaf(tree, "", 1, withKeyword(pei4("ACF", 3), 0, 32));
    const int mine = 0;
    EXPECT_EQ(tree.pkt_SetOSA4SKI(0, 31, &mine), 1);
    EXPECT_EQ(tree[0u].pkt_GetOSA4User(), &mine);
    EXPECT_EQ(tree[1u].pkt_GetOSA4User(), nullptr);
    EXPECT_EQ(CFields().pkt_SetOSA4SKI(0, 31, nullptr, &tree), 1);
    EXPECT_EQ(tree[0u].pkt_GetOSA4User(), nullptr);
}

TEST(PacketKeyword, userPointerIsKeptAsItIs)
{
    CFields node;
    EXPECT_EQ(node.pkt_GetOSA4User(), nullptr);
    const int mine = 0;
    node.pkt_SetOSA4User(&mine);
    EXPECT_EQ(node.pkt_GetOSA4User(), &mine);
}

}  // namespace

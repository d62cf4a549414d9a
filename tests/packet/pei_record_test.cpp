// tests/packet/pei_record_test.cpp - the rules for packet expressions that come from outside.

#include "packet_helpers.h"

#include "packet/pei_rules.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using namespace murv;
using namespace murv::tests;

std::string fault4(const tPacketExpInfo& pei)
{
    const char* const fault = detail::findPeiFault(pei);
    return fault == nullptr ? "" : fault;
}

tPacketExpInfo keyword4(unsigned int kind, unsigned int index, unsigned int option = 0)
{
    return withKeyword(pei4("ACF", 4), kind, index, option);
}

TEST(PacketRules, nullExpressionIsAccepted)
{
    EXPECT_EQ(fault4(CFields::nullPktExp), "");
}

TEST(PacketRules, prefixIsAtMostNine)
{
    EXPECT_EQ(fault4(pei4("ACV", 9)), "");
    EXPECT_EQ(fault4(pei4("ACV", 10)), "Packet variable length must be little than 10");
    EXPECT_EQ(fault4(pei4("BNV", 255)), "Packet variable length must be little than 10");
}

TEST(PacketRules, optionIsAtMostNine)
{
    EXPECT_EQ(fault4(keyword4(0, 3, 9)), "");
    EXPECT_EQ(fault4(keyword4(0, 3, 10)), "Supporting-keyword option value must be little than 10");
    EXPECT_EQ(fault4(keyword4(0, 0, 15)), "Supporting-keyword option value must be little than 10");
}

TEST(PacketRules, kindDoesNotMatterWithoutIndex)
{
    EXPECT_EQ(fault4(keyword4(15, 0)), "");
}

TEST(PacketRules, internalIndexMustHaveAName)
{
    for (unsigned int index = 1; index <= 45; ++index)
    {
        const bool named = index <= 4 || (index >= 11 && index <= 20) || (index >= 31 && index <= 38);
        EXPECT_EQ(fault4(keyword4(0, index, 1)), named ? "" : "Invalid internal supporting-keyword index") << index;
    }
    EXPECT_EQ(fault4(keyword4(0, 65535)), "Invalid internal supporting-keyword index");
}

TEST(PacketRules, sizeKeywordsNeedAnOption)
{
    for (unsigned int index : {3u, 4u})
        EXPECT_EQ(fault4(keyword4(0, index)), "Supporting-keyword option value must be bigger than 0");
    EXPECT_EQ(fault4(keyword4(0, 31)), "");
}

TEST(PacketRules, externalKeywordIsPutToItsCallback)
{
    const tCleanRegistries clean;
    EXPECT_EQ(fault4(keyword4(5, 7)), "Not exist supporting-keyword kind");
    CFields::setCheckIdxFP4ESK(
        5, [](unsigned short index, unsigned char option) { return index == 7 ? static_cast<int>(option) - 4 : 0; });
    EXPECT_EQ(fault4(keyword4(5, 7, 5)), "");
    EXPECT_EQ(fault4(keyword4(5, 7, 4)), "Not exist supporting-keyword index");
    EXPECT_EQ(fault4(keyword4(5, 8, 5)), "Not exist supporting-keyword index");
    EXPECT_EQ(fault4(keyword4(5, 7, 3)), "Invalid index or option for supporting-keyword");
    EXPECT_EQ(fault4(keyword4(6, 7, 5)), "Not exist supporting-keyword kind");
}

}  // namespace

// tests/packet/length_test.cpp - the packet expression record and the lengths that follow from it.

#include "packet_helpers.h"

#include "packet/item_make.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

namespace
{

using namespace murv;
using namespace murv::tests;

unsigned int word4(const tPacketExpInfo& pei, bool keywords = false)
{
    return leaf4(1, pei).pkt_Len4OneSelf(keywords).m_uiValue;
}

unsigned int natural4(const CFields& value, const char* letters)
{
    return leaf4(value, pei4(letters, 0)).pkt_Len4PEI();
}

TEST(PacketLength, freshNodeHasNoExpression)
{
    EXPECT_TRUE(CFields::pkt_IsNullExp(CFields(5).pkt_GetExp()));
    EXPECT_TRUE(CFields::pkt_IsNullExp(CFields::nullPktExp));
}

TEST(PacketLength, anyBitOfTheTenBytesMakesAnExpression)
{
    for (std::size_t byte = 0; byte < sizeof(tPacketExpInfo); ++byte)
    {
        for (int bit = 0; bit < 8; ++bit)
        {
            unsigned char raw[sizeof(tPacketExpInfo)] = {};
            raw[byte] = static_cast<unsigned char>(1 << bit);
            tPacketExpInfo pei{};
            std::memcpy(&pei, raw, sizeof pei);
            EXPECT_FALSE(CFields::pkt_IsNullExp(pei)) << "byte " << byte << " bit " << bit;
        }
    }
}

TEST(PacketLength, expressionIsStoredByteForByte)
{
    unsigned char raw[sizeof(tPacketExpInfo)];
    std::memset(raw, 0xA7, sizeof raw);
    tPacketExpInfo pei{};
    std::memcpy(&pei, raw, sizeof pei);
    const tPacketExpInfo kept = leaf4(1, pei).pkt_GetExp();
    EXPECT_EQ(std::memcmp(&kept, raw, sizeof raw), 0);
}

TEST(PacketLength, fieldsLieWhereFilesExpectThem)
{
    tPacketExpInfo pei = withKeyword(pei4("BNV", 9, -1), 5, 0x1234, 6);
    pei.m_uiLength = 0x0A0B0C0D;
    unsigned char raw[sizeof pei];
    std::memcpy(raw, &pei, sizeof raw);
    EXPECT_EQ(raw[0], 0x07);
    EXPECT_EQ(raw[1], 9);
    EXPECT_EQ(raw[2], 0xFF);
    EXPECT_EQ(raw[3], 0x65);
    std::uint16_t index = 0;
    std::uint32_t length = 0;
    std::memcpy(&index, raw + 4, sizeof index);
    std::memcpy(&length, raw + 6, sizeof length);
    EXPECT_EQ(index, 0x1234);
    EXPECT_EQ(length, 0x0A0B0C0Du);
}

TEST(PacketLength, lengthWordIsTwiceTheLengthWithTheFlag)
{
    const uPacketLengthExpression length = leaf4(1, pei4("ACV", 4)).pkt_Len4OneSelf(false);
    EXPECT_EQ(length.m_uiValue, 9u);
    EXPECT_EQ(length.m_uiLength31, 4u);
    EXPECT_EQ(length.m_bVariable, 1u);
}

TEST(PacketLength, fixedItemCountsItsLengthUpTo31Bits)
{
    EXPECT_EQ(word4(pei4("ACF", 5)), 10u);
    EXPECT_EQ(word4(pei4("BNF", 0)), 0u);
    EXPECT_EQ(word4(pei4("ACF", 0x7FFFFFFF)), 0xFFFFFFFEu);
    EXPECT_EQ(word4(pei4("ACF", 0xFFFFFFFF)), 0xFFFFFFFEu);
}

TEST(PacketLength, variableItemCountsItsRecordedTotalOrItsPrefix)
{
    tPacketExpInfo pei = pei4("ANV", 4);
    EXPECT_EQ(word4(pei), 9u);
    pei.m_uiLength = 12;
    EXPECT_EQ(word4(pei), 25u);
}

TEST(PacketLength, runTimeItemCountsOnlyWithoutKeywords)
{
    EXPECT_EQ(word4(pei4("ACD", 10), false), 20u);
    EXPECT_EQ(word4(pei4("ACD", 10), true), 0u);
    EXPECT_EQ(word4(pei4("ACD", 0xFFFFFFFF), false), 0xFFFFFFFEu);
}

TEST(PacketLength, unknownLengthCodeCountsNothing)
{
    tPacketExpInfo pei = pei4("ACF", 10);
    pei.m_eLengthExp = static_cast<E_LengthExpCode>(3);
    EXPECT_EQ(word4(pei), 0u);
}

TEST(PacketLength, containerHasNoLengthOfItsOwn)
{
    for (const E_DataType type : {DT_array, DT_fields})
    {
        CFields container = leaf4(CFields(type), pei4("ACF", 10));
        EXPECT_EQ(container.pkt_Len4OneSelf(false).m_uiValue, 0u);
        EXPECT_EQ(container.pkt_Len4Children(false).m_uiValue, 0u);
        EXPECT_EQ(container.pkt_Len4PEI(), 0u);
        addLeaf(container, "", 1, pei4("ACF", 3));
        EXPECT_EQ(container.pkt_Len4OneSelf(false).m_uiValue, 0u);
        EXPECT_EQ(container.pkt_Len4Children(false).m_uiValue, 6u);
    }
}

TEST(PacketLength, subtreeAddsLengthsAndKeepsTheFlag)
{
    CFields tree(DT_fields);
    addLeaf(tree, "a", 1, pei4("ACF", 5));
    addLeaf(tree, "b", 1, pei4("ACV", 2));
    EXPECT_EQ(tree.pkt_Len4Children(false).m_uiValue, 15u);
    CFields outer(DT_fields);
    outer.addChildRef("inner").setValue(tree);
    addLeaf(outer, "c", 1, pei4("ACF", 1));
    EXPECT_EQ(outer.pkt_Len4Children(false).m_uiValue, 17u);
    EXPECT_EQ(outer.pkt_Len4Children(false, &tree).m_uiValue, 15u);
    EXPECT_EQ(CFields().pkt_Len4Children(false, &tree["b"]).m_uiValue, 5u);
}

TEST(PacketLength, subtreeCountsModulo31Bits)
{
    CFields tree(DT_array);
    for (int i = 0; i < 3; ++i)
        addLeaf(tree, "", 1, pei4("ACF", 0x7FFFFFFF));
    EXPECT_EQ(tree.pkt_Len4Children(false).m_uiLength31, 0x7FFFFFFDu);
}

TEST(PacketLength, naturalAsciiLengthIsThatOfTheText)
{
    EXPECT_EQ(natural4(CFields(), "ACF"), 0u);
    EXPECT_EQ(natural4(true, "ACF"), 1u);
    EXPECT_EQ(natural4(false, "ACF"), 1u);
    EXPECT_EQ(natural4(-5, "ACF"), 2u);
    EXPECT_EQ(natural4(LLONG_MIN, "ANF"), 20u);
    EXPECT_EQ(natural4(ULLONG_MAX, "ANV"), 20u);
    EXPECT_EQ(natural4(0.1, "ACF"), 19u);
    EXPECT_EQ(natural4(1.5, "ANF"), 3u);
    EXPECT_EQ(natural4("abc", "ACD"), 3u);
    EXPECT_EQ(natural4(CFields("a\0b", 3), "ACF"), 3u);
    EXPECT_EQ(natural4(CFields(DT_codelist), "ACF"), 0u);
}

TEST(PacketLength, naturalBinaryLengthIsTheSmallestWidth)
{
    struct tCase
    {
        CFields m_tValue;
        unsigned int m_uiLength;
    };
    const tCase cases[] = {
        {CFields(), 0},  {true, 1},  {127, 1},    {-128, 1},    {-129, 2},    {128, 2},          {32767, 2},
        {-32768, 2},     {32768, 4}, {-32769, 4}, {INT_MAX, 4}, {INT_MIN, 4}, {2147483648LL, 8}, {-2147483649LL, 8},
        {LLONG_MIN, 8},  {255u, 1},  {256u, 2},   {65535u, 2},  {65536u, 4},  {4294967295u, 4},  {4294967296ULL, 8},
        {ULLONG_MAX, 8}, {0.0, 8},   {"abcd", 4}, {0, 1},
    };
    for (const tCase& row : cases)
    {
        EXPECT_EQ(natural4(row.m_tValue, "BCF"), row.m_uiLength) << row.m_tValue.asString();
        EXPECT_EQ(natural4(row.m_tValue, "BNV"), row.m_uiLength) << row.m_tValue.asString();
    }
}

TEST(PacketLength, naturalLengthIgnoresTheLengthFields)
{
    EXPECT_EQ(leaf4("abc", pei4("ACF", 99)).pkt_Len4PEI(), 3u);
    EXPECT_EQ(leaf4("abc", pei4("BCV", 9, 7)).pkt_Len4PEI(), 3u);
}

TEST(PacketLength, nodeThatIsNoLeafIsReported)
{
    EXPECT_EQ(thrown([] { detail::naturalLength(CFields(DT_array), PEC_A); }),
              "[murv::CFields::pkt_lengthToAC#0] Unknown data type(1)");
    EXPECT_EQ(thrown([] { detail::naturalLength(CFields(DT_fields), PEC_B); }),
              "[murv::CFields::pkt_lengthToBC#0] Unknown data type");
}

TEST(PacketLength, deepTreesAreWalkedWithoutRecursion)
{
    CFields tree(DT_array);
    CFields* innermost = &tree;
    for (int i = 0; i < 1000000; ++i)
    {
        innermost = &innermost->addChildRef("");
        innermost->setValue(DT_array);
    }
    addLeaf(*innermost, "", 7, pei4("ACF", 3));
    EXPECT_EQ(tree.pkt_Len4Children(false).m_uiValue, 6u);
    EXPECT_EQ(tree.pkt_Make4Children(true), "007");
    EXPECT_EQ(parsedTree(tree, "123"), 0);
    EXPECT_EQ(failedLeaves(tree, "123"), 0u);
    EXPECT_TRUE(tree.pkt_Check4Children(true));
}

}  // namespace

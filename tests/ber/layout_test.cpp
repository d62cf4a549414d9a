// tests/ber/layout_test.cpp - numbers and packet expressions as bytes.
#include "ber/layout.h"

#include <gtest/gtest.h>

#include <random>

#include "tests/ber/murf_bytes.h"

namespace murv::tests
{

using namespace murv::detail;

TEST(Layout, numbersAreWrittenLittleEndian)
{
    char bytes[8] = {};
    EXPECT_EQ(writeNumber<std::uint16_t>(bytes, 0x0102), bytes + 2);
    EXPECT_EQ(hex({bytes, 2}), "0201");
    EXPECT_EQ(writeNumber<std::uint32_t>(bytes, 0x01020304), bytes + 4);
    EXPECT_EQ(hex({bytes, 4}), "04030201");
    EXPECT_EQ(writeNumber<std::uint64_t>(bytes, 0x0102030405060708), bytes + 8);
    EXPECT_EQ(hex({bytes, 8}), "0807060504030201");
}

TEST(Layout, numbersAreReadInBothOrders)
{
    const char bytes[] = "\x01\x02\x03\x04\x05\x06\x07\x08";
    EXPECT_EQ(readNumber<std::uint16_t>(bytes, true), 0x0201u);
    EXPECT_EQ(readNumber<std::uint16_t>(bytes, false), 0x0102u);
    EXPECT_EQ(readNumber<std::uint32_t>(bytes, true), 0x04030201u);
    EXPECT_EQ(readNumber<std::uint32_t>(bytes, false), 0x01020304u);
    EXPECT_EQ(readNumber<std::uint64_t>(bytes, true), 0x0807060504030201u);
    EXPECT_EQ(readNumber<std::uint64_t>(bytes, false), 0x0102030405060708u);
}

TEST(Layout, packetExpressionHasItsPartsInTheirBits)
{
    tPacketExpInfo pei{};
    pei.m_ePacketExp = PEC_B;
    pei.m_eLengthExp = LEC_D;
    pei.m_ucPrefixSize = 7;
    pei.m_cCalibration = -2;
    pei.m_ucSkKind = 3;
    pei.m_ucSkOption = 9;
    pei.m_usSkIndex = 0x0102;
    pei.m_uiLength = 0x03040506;
    char bytes[10];
    EXPECT_EQ(writeExpression(bytes, pei), bytes + 10);
    EXPECT_EQ(hex({bytes, 10}), "0907FE93020106050403");
}

TEST(Layout, packetExpressionsAreReadAsTheyAreWritten)
{
    std::mt19937 random(1);
    for (int i = 0; i < 10000; ++i)
    {
        char bytes[10];
        for (char& byte : bytes)
            byte = static_cast<char>(random());
        bytes[0] = static_cast<char>(bytes[0] & 15);
        char again[10];
        writeExpression(again, readExpression(bytes, true));
        EXPECT_EQ(hex({again, 10}), hex({bytes, 10}));
    }
}

TEST(Layout, packetExpressionOfABigEndianFileHasTwoNumbersSwapped)
{
    const std::string bytes("\x05\x01\x02\x13\x01\x02\x03\x04\x05\x06", 10);
    const tPacketExpInfo pei = readExpression(bytes.data(), false);
    EXPECT_EQ(pei.m_ePacketExp, PEC_B);
    EXPECT_EQ(pei.m_eLengthExp, LEC_V);
    EXPECT_EQ(pei.m_ucPrefixSize, 1);
    EXPECT_EQ(pei.m_cCalibration, 2);
    EXPECT_EQ(pei.m_ucSkKind, 3);
    EXPECT_EQ(pei.m_ucSkOption, 1);
    EXPECT_EQ(+pei.m_usSkIndex, 0x0102);
    EXPECT_EQ(+pei.m_uiLength, 0x03040506u);
}

TEST(Layout, reservedBitsOfAPacketExpressionAreReadAsZero)
{
    const std::string bytes("\xF0\0\0\0\0\0\0\0\0\0", 10);
    EXPECT_TRUE(CFields::pkt_IsNullExp(readExpression(bytes.data(), true)));
}

}  // namespace murv::tests

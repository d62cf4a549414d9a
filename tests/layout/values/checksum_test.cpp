// tests/layout/values/checksum_test.cpp - checksums against their published check values.
#include "layout/values/checksum.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

namespace
{

using namespace murv::detail;

std::uint64_t checksum(E_Checksum kind, std::string_view bytes)
{
    CChecksum sum(kind);
    sum.add(bytes);
    return sum.get();
}

/// Bit by bit: the definition of a CRC whose lowest bit comes first.
std::uint64_t reflectedByBits(std::uint64_t polynomial, std::uint64_t remainder, std::string_view bytes)
{
    for (const char byte : bytes)
    {
        remainder ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit)
            remainder = remainder >> 1 ^ (remainder % 2 != 0 ? polynomial : 0);
    }
    return remainder;
}

std::string randomBytes(std::size_t size)
{
    std::mt19937 random(static_cast<unsigned int>(size));
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

TEST(Checksum, theCheckValuesOfTheCrcs)
{
    EXPECT_EQ(0xBB3DU, checksum(CK_crc16Arc, "123456789"));
    EXPECT_EQ(0x4B37U, checksum(CK_crc16Modbus, "123456789"));
    EXPECT_EQ(0x29B1U, checksum(CK_crc16Ibm3740, "123456789"));
    EXPECT_EQ(0x31C3U, checksum(CK_crc16Xmodem, "123456789"));
    EXPECT_EQ(0x2189U, checksum(CK_crc16Kermit, "123456789"));
    EXPECT_EQ(0xCBF43926U, checksum(CK_crc32, "123456789"));
    EXPECT_EQ(0xE3069283U, checksum(CK_crc32Iscsi, "123456789"));
}

TEST(Checksum, eightBytesAStepGiveWhatSingleBitsGive)
{
    for (std::size_t size = 0; size < 70; ++size)
    {
        const std::string bytes = randomBytes(size);
        ASSERT_EQ(reflectedByBits(0xA001, 0, bytes), checksum(CK_crc16Arc, bytes)) << size;
        ASSERT_EQ(reflectedByBits(0xEDB88320, 0xFFFFFFFF, bytes) ^ 0xFFFFFFFF, checksum(CK_crc32, bytes)) << size;
    }
}

TEST(Checksum, theInternetChecksumIsTheComplementOfASum)
{
    const std::string_view header("\x45\x00\x00\x73\x00\x00\x40\x00\x40\x11\x00\x00\xC0\xA8\x00\x01\xC0\xA8\x00\xC7",
                                  20);
    EXPECT_EQ(0xB861U, checksum(CK_inet, header));
    EXPECT_EQ(0xFFFFU, checksum(CK_inet, ""));
    EXPECT_EQ(0xFEFFU, checksum(CK_inet, "\x01")) << "a last byte alone is the upper half of a word";
    EXPECT_EQ(0xFFFEU, checksum(CK_inet, std::string_view("\xFF\xFF\x00\x01", 4))) << "carries come back in";
}

TEST(Checksum, plainSumsAndExclusiveOr)
{
    EXPECT_EQ(0x31U, checksum(CK_xor, "123456789"));
    EXPECT_EQ(0xDDU, checksum(CK_sum8, "123456789"));
    EXPECT_EQ(477U, checksum(CK_sum32, "123456789"));
    EXPECT_EQ(4 * 255U, checksum(CK_sum32, "\xFF\xFF\xFF\xFF"));
}

TEST(Checksum, luhnCompletesACardNumber)
{
    EXPECT_EQ(3U, checksum(CK_luhn, "7992739871"));
    EXPECT_EQ(1U, checksum(CK_luhn, "411111111111111"));
    EXPECT_EQ(3U, checksum(CK_luhn, "79 92-73 98 71 ")) << "other characters do not count";
    EXPECT_EQ(0U, checksum(CK_luhn, ""));
}

TEST(Checksum, mod97CompletesANumber)
{
    EXPECT_EQ(44U, checksum(CK_mod97, "794"));
    EXPECT_EQ(82U, checksum(CK_mod97, "WEST12345698765432GB"));
    EXPECT_EQ(82U, checksum(CK_mod97, "WEST 1234 5698 7654 32GB  "));
}

TEST(Checksum, mod10SumsDigitsAndCountsMinusSigns)
{
    EXPECT_EQ(7U, checksum(CK_mod10, "1 25544U 98067A   08264.51782528 -.00002182  00000-0 -11606-4 0  292"));
    EXPECT_EQ(7U, checksum(CK_mod10, "2 25544  51.6416 247.4627 0006703 130.5360 325.0288 15.72125391 56353"));
    EXPECT_EQ(0U, checksum(CK_mod10, "abc +."));
}

TEST(Checksum, bytesMayComeInPieces)
{
    const std::string bytes = "-7992739871 ABC" + randomBytes(100);
    for (unsigned int kind = 0; kind < s_cuiChecksums; ++kind)
    {
        const std::uint64_t whole = checksum(static_cast<E_Checksum>(kind), bytes);
        for (std::size_t cut = 0; cut <= bytes.size(); ++cut)
        {
            CChecksum sum(static_cast<E_Checksum>(kind));
            sum.add(std::string_view(bytes).substr(0, cut));
            sum.add(std::string_view(bytes).substr(cut));
            ASSERT_EQ(whole, sum.get()) << kind << " cut at " << cut;
        }
    }
}

TEST(Checksum, fillIsTheSameByteManyTimes)
{
    for (const std::size_t count : {0U, 1U, 2U, 63U, 64U, 65U, 300U})
    {
        for (unsigned int kind = 0; kind < s_cuiChecksums; ++kind)
        {
            CChecksum sum(static_cast<E_Checksum>(kind));
            sum.add("12");
            sum.addFill('7', count);
            sum.add("3");
            ASSERT_EQ(checksum(static_cast<E_Checksum>(kind), "12" + std::string(count, '7') + "3"), sum.get())
                << kind << " " << count;
        }
    }
}

TEST(Checksum, kindsAreFoundByTheirWords)
{
    E_Checksum kind = CK_mod97;
    EXPECT_TRUE(findChecksum("crc16", "", kind));
    EXPECT_EQ(CK_crc16Arc, kind);
    EXPECT_TRUE(findChecksum("crc16", "ibm-3740", kind));
    EXPECT_EQ(CK_crc16Ibm3740, kind);
    EXPECT_TRUE(findChecksum("crc32", "iscsi", kind));
    EXPECT_EQ(CK_crc32Iscsi, kind);
    EXPECT_TRUE(findChecksum("luhn", "", kind));
    EXPECT_EQ(CK_luhn, kind);
    EXPECT_FALSE(findChecksum("crc32", "modbus", kind));
    EXPECT_FALSE(findChecksum("crc", "", kind));
    EXPECT_EQ(CK_luhn, kind);
}

}  // namespace

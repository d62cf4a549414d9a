// tests/layout/values/binary_values_test.cpp - binary integers, floats, packed digits and digits of other radixes.
#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "tests/layout/values/item_helpers.h"

namespace
{

using namespace murv;
using namespace murv::tests;

std::string_view bytes4(const char* literal, std::size_t size)
{
    return {literal, size};
}

template <std::size_t s_cnSize>
std::string_view raw(const char (&literal)[s_cnSize])
{
    return bytes4(literal, s_cnSize - 1);
}

TEST(BinaryValues, integersAreUnsignedUnlessSigned)
{
    EXPECT_EQ("255", readBack(fixedItem(IF_binary, 1), "\xFF"));
    EXPECT_EQ("-1", readBack(signedItem(fixedItem(IF_binary, 1)), "\xFF"));
    EXPECT_EQ("65531", readBack(fixedItem(IF_binary, 2), "\xFF\xFB"));
    EXPECT_EQ("-5", readBack(signedItem(fixedItem(IF_binary, 2)), "\xFF\xFB"));
    EXPECT_EQ("18446744073709551615u", readBack(fixedItem(IF_binary, 8), raw("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF")));
    EXPECT_EQ("5", readBack(fixedItem(IF_binary, 8), raw("\0\0\0\0\0\0\0\5")));
}

TEST(BinaryValues, eitherByteOrder)
{
    EXPECT_EQ("66051", readBack(fixedItem(IF_binary, 3), "\x01\x02\x03"));
    EXPECT_EQ("197121", readBack(littleItem(fixedItem(IF_binary, 3)), "\x01\x02\x03"));
    EXPECT_EQ("\x01\x02\x03", made(fixedItem(IF_binary, 3), 66051));
    EXPECT_EQ("\x03\x02\x01", made(littleItem(fixedItem(IF_binary, 3)), 66051));
}

TEST(BinaryValues, allWidthsAreWhole)
{
    std::mt19937_64 random(5);
    for (unsigned int width = 1; width <= 8; ++width)
    {
        const std::uint64_t most = ~std::uint64_t{0} >> (64 - 8 * width);
        for (int round = 0; round < 200; ++round)
        {
            const std::uint64_t number = round == 0 ? most : random() & most;
            std::string big;
            for (unsigned int i = width; i-- > 0;)
                big += static_cast<char>(number >> (8 * i));
            const std::string little(big.rbegin(), big.rend());
            ASSERT_EQ(shown(makeScalar(false, number)), readBack(fixedItem(IF_binary, width), big));
            ASSERT_EQ(shown(makeScalar(false, number)), readBack(littleItem(fixedItem(IF_binary, width)), little));
            ASSERT_EQ(big, made(fixedItem(IF_binary, width), unsignedScalar(number)));
            ASSERT_EQ(little, made(littleItem(fixedItem(IF_binary, width)), unsignedScalar(number)));
        }
    }
}

TEST(BinaryValues, whatDoesNotFitIsRefused)
{
    for (unsigned int width = 1; width <= 8; ++width)
    {
        const tItem plain = fixedItem(IF_binary, width);
        const tItem twos = signedItem(plain);
        const std::uint64_t top = std::uint64_t{1} << (8 * width - 1);
        EXPECT_EQ("!negative", made(plain, -1));
        EXPECT_EQ("!tooLong", made(twos, unsignedScalar(top)));
        EXPECT_EQ(std::string("\x80") + std::string(width - 1, '\0'), made(twos, static_cast<long long>(~(top - 1))));
        if (width == 8)
            continue;
        EXPECT_EQ("!tooLong", made(plain, unsignedScalar(2 * top)));
        EXPECT_EQ("!tooLong", made(twos, -1 - static_cast<long long>(top)));
    }
    EXPECT_EQ("!tooLong", made(fixedItem(IF_binary, 8), "18446744073709551616"));
    EXPECT_EQ("!tooLong", made(signedItem(fixedItem(IF_binary, 8)), "-9223372036854775809"));
}

TEST(BinaryValues, kindsOfValues)
{
    const tItem two = fixedItem(IF_binary, 2);
    EXPECT_EQ("\x01\x02", made(two, "258"));
    EXPECT_EQ("\x01\x02", made(two, 258.0));
    EXPECT_EQ("!lossy", made(two, 0.5));
    EXPECT_EQ("!type", made(two, boolScalar(true)));
    EXPECT_EQ("!digits", made(two, "\x01\x02"));
    EXPECT_EQ("!null", made(two, tScalar()));
    EXPECT_EQ("!width", readBack(two, ""));
    EXPECT_EQ("!range", readBack(fixedItem(IF_binary, 9), "123456789"));
}

TEST(BinaryValues, decimalsAreImplied)
{
    const tItem milli = signedItem(decimalItem(fixedItem(IF_binary, 2), 3));
    EXPECT_EQ("\"1.000\"", readBack(milli, "\x03\xE8"));
    EXPECT_EQ("\"-0.001\"", readBack(milli, "\xFF\xFF"));
    EXPECT_EQ("1000", readBack(milli, "\x03\xE8", VO_unscaled));
    EXPECT_EQ("\x03\xE8", made(milli, 1));
    EXPECT_EQ("\xFF\xFF", made(milli, "-0.001"));
    EXPECT_EQ("!lossy", made(milli, "0.0001"));
    EXPECT_EQ("!tooLong", made(milli, 33));
}

TEST(BinaryValues, zeroIsNullForDates)
{
    const tItem date = zeroNullItem(timeItem(fixedItem(IF_binary, 4), "YYYYMMDD"));
    EXPECT_EQ("null", readBack(date, raw("\0\0\0\0")));
    EXPECT_EQ(std::string(4, '\0'), made(date, tScalar()));
    EXPECT_EQ("\x01\x34\xFE\x03", made(date, 20250115));
    EXPECT_EQ("20250115", readBack(date, "\x01\x34\xFE\x03"));
    EXPECT_EQ("20251315!date", readBack(date, made(fixedItem(IF_binary, 4), 20251315)));
}

TEST(FloatValues, eightBytesAreTheDouble)
{
    const tItem wide = fixedItem(IF_float, 8);
    EXPECT_EQ("1.5d", readBack(wide, raw("\x3F\xF8\0\0\0\0\0\0")));
    EXPECT_EQ("1.5d", readBack(littleItem(wide), raw("\0\0\0\0\0\0\xF8\x3F")));
    EXPECT_EQ(raw("\x3F\xF8\0\0\0\0\0\0"), made(wide, 1.5));
    EXPECT_EQ(raw("\x80\0\0\0\0\0\0\0"), made(wide, -0.0));
    EXPECT_EQ(raw("\x7F\xF0\0\0\0\0\0\0"), made(wide, std::numeric_limits<double>::infinity()));
}

TEST(FloatValues, fourBytesRound)
{
    const tItem narrow = fixedItem(IF_float, 4);
    EXPECT_EQ(raw("\x3D\xCC\xCC\xCD"), made(narrow, 0.1));
    EXPECT_EQ("0.10000000149011612d", readBack(narrow, "\x3D\xCC\xCC\xCD"));
    EXPECT_EQ(raw("\x7F\x7F\xFF\xFF"), made(narrow, 3.4028235e38));
    EXPECT_EQ("!tooLong", made(narrow, 3.4028236e38));
    EXPECT_EQ("!tooLong", made(narrow, -1e300));
    EXPECT_EQ(raw("\xFF\x80\0\0"), made(narrow, -std::numeric_limits<double>::infinity()));
}

TEST(FloatValues, theOnlyNotANumberIsTheQuietOne)
{
    EXPECT_EQ("!float", readBack(fixedItem(IF_float, 8), raw("\x7F\xF0\0\0\0\0\0\1")));
    EXPECT_EQ("!float", readBack(fixedItem(IF_float, 8), raw("\xFF\xF8\0\0\0\0\0\0")));
    EXPECT_EQ("!float", readBack(fixedItem(IF_float, 4), raw("\x7F\xC0\0\1")));
    tScalar value;
    std::string scratch;
    ASSERT_EQ(PF_none, readValue(fixedItem(IF_float, 4), raw("\x7F\xC0\0\0"), VO_none, value, scratch));
    EXPECT_TRUE(std::isnan(value.m_dValue));
    EXPECT_EQ(raw("\x7F\xC0\0\0"), made(fixedItem(IF_float, 4), value));
    EXPECT_EQ(raw("\x7F\xF8\0\0\0\0\0\0"), made(fixedItem(IF_float, 8), -value.m_dValue));
}

TEST(FloatValues, integersAndTextsAreTakenWhenTheyComeBack)
{
    const tItem wide = fixedItem(IF_float, 8);
    EXPECT_EQ(made(wide, 9007199254740992.0), made(wide, 9007199254740992));
    EXPECT_EQ("!lossy", made(wide, 9007199254740993));
    EXPECT_EQ(made(wide, -9223372036854775808.0), made(wide, std::numeric_limits<long long>::min()));
    EXPECT_EQ(made(wide, 0.1), made(wide, "0.1"));
    EXPECT_EQ(made(wide, 12.0), made(wide, "12"));
    EXPECT_EQ(made(wide, -12.5), made(wide, "-12.500"));
    EXPECT_EQ(made(wide, -0.0), made(wide, "-0"));
    EXPECT_EQ("!lossy", made(wide, "0.1000000000000000000001"));
    EXPECT_EQ("!digits", made(wide, "1e3"));
    EXPECT_EQ("!digits", made(wide, "nan"));
    EXPECT_EQ("!tooLong", made(wide, std::string(400, '9').c_str()));
    EXPECT_EQ("!type", made(wide, boolScalar(true)));
    EXPECT_EQ("!null", made(wide, tScalar()));
}

TEST(PackedValues, theSignIsInTheLastHalf)
{
    const tItem packed = signedItem(fixedItem(IF_packed, 3));
    EXPECT_EQ("12345", readBack(packed, "\x12\x34\x5C"));
    EXPECT_EQ("-12345", readBack(packed, "\x12\x34\x5D"));
    EXPECT_EQ("12345!oldSign", readBack(packed, "\x12\x34\x5F"));
    EXPECT_EQ("!sign", readBack(packed, "\x12\x34\x5A"));
    EXPECT_EQ("!sign", readBack(packed, raw("\0\0\x0D")));
    EXPECT_EQ("!digits", readBack(packed, "\x1A\x34\x5C"));
    EXPECT_EQ("\x12\x34\x5C", made(packed, 12345));
    EXPECT_EQ("\x12\x34\x5D", made(packed, -12345));
    EXPECT_EQ(raw("\0\0\x0C"), made(packed, 0));
    EXPECT_EQ("!tooLong", made(packed, 123456));
}

TEST(PackedValues, withoutSignTheLastHalfIsF)
{
    const tItem packed = fixedItem(IF_packed, 2);
    EXPECT_EQ("123", readBack(packed, "\x12\x3F"));
    EXPECT_EQ("!sign", readBack(packed, "\x12\x3C"));
    EXPECT_EQ("\x12\x3F", made(packed, 123));
    EXPECT_EQ("!negative", made(packed, -123));
}

TEST(PackedValues, twoDigitsAByteWithoutSign)
{
    const tItem bcd = fixedItem(IF_bcd, 2);
    EXPECT_EQ("1234", readBack(bcd, "\x12\x34"));
    EXPECT_EQ("!digits", readBack(bcd, "\x12\x3F"));
    EXPECT_EQ("\x12\x34", made(bcd, 1234));
    EXPECT_EQ(raw("\0\x05"), made(bcd, 5));
    EXPECT_EQ("!tooLong", made(bcd, 12345));
    EXPECT_EQ("!negative", made(bcd, -1));
    EXPECT_EQ("\"00\"", readBack(exactItem(fixedItem(IF_bcd, 1)), raw("\0")));
    EXPECT_EQ(raw("\0\x12"), made(exactItem(bcd), "0012"));
    EXPECT_EQ("!width", made(exactItem(bcd), "12"));
}

TEST(PackedValues, decimalsAndDigitsBeyond64Bits)
{
    EXPECT_EQ("\"-123.45\"", readBack(decimalItem(signedItem(fixedItem(IF_packed, 3)), 2), "\x12\x34\x5D"));
    EXPECT_EQ("\x12\x34\x5D", made(decimalItem(signedItem(fixedItem(IF_packed, 3)), 2), "-123.45"));
    const tItem wide = signedItem(fixedItem(IF_packed, 12));
    const std::string_view bytes("\x12\x34\x56\x78\x90\x12\x34\x56\x78\x90\x12\x3D");
    EXPECT_EQ("\"-12345678901234567890123\"", readBack(wide, bytes));
    EXPECT_EQ(bytes, made(wide, "-12345678901234567890123"));
    EXPECT_EQ("18446744073709551615u",
              readBack(fixedItem(IF_bcd, 10), raw("\x18\x44\x67\x44\x07\x37\x09\x55\x16\x15")));
}

TEST(PackedValues, datesAreChecked)
{
    const tItem date = timeItem(fixedItem(IF_bcd, 3), "YYMMDD");
    EXPECT_EQ("250131", readBack(date, "\x25\x01\x31"));
    EXPECT_EQ("250231!date", readBack(date, "\x25\x02\x31"));
    EXPECT_EQ("\x25\x02\x31!date", made(date, 250231));
    EXPECT_EQ("null", readBack(zeroNullItem(date), raw("\0\0\0")));
    EXPECT_EQ(raw("\0\0\0"), made(zeroNullItem(date), tScalar()));
    EXPECT_EQ("!lossy", made(zeroNullItem(date), 0));
}

TEST(RadixValues, octalDigits)
{
    const tItem octal = tailedItem(fixedItem(IF_octal, 8), raw("\0"));
    EXPECT_EQ("420", readBack(octal, raw("0000644\0")));
    EXPECT_EQ("!digits", readBack(octal, raw("0000648\0")));
    EXPECT_EQ("!sign", readBack(octal, raw("-000644\0")));
    EXPECT_EQ("!literal", readBack(octal, "0000644 "));
    EXPECT_EQ(raw("0000644\0"), made(octal, 420));
    EXPECT_EQ("!tooLong", made(octal, 2097152));
    EXPECT_EQ("!negative", made(octal, -1));
}

TEST(RadixValues, hexadecimalDigitsHaveOneCase)
{
    const tItem hex = fixedItem(IF_hex, 4);
    EXPECT_EQ("43981", readBack(hex, "ABCD"));
    EXPECT_EQ("!digits", readBack(hex, "ABcD"));
    EXPECT_EQ("43981", readBack(lowerItem(hex), "abcd"));
    EXPECT_EQ("00FF", made(hex, 255));
    EXPECT_EQ("00ff", made(lowerItem(hex), "255"));
    EXPECT_EQ("!tooLong", made(hex, 65536));
    EXPECT_EQ("18446744073709551615u", readBack(fixedItem(IF_hex, 16), "FFFFFFFFFFFFFFFF"));
    EXPECT_EQ("!range", readBack(fixedItem(IF_hex, 17), "1FFFFFFFFFFFFFFFF"));
    EXPECT_EQ("\"1FFFFFFFFFFFFFFFF\"", readBack(exactItem(fixedItem(IF_hex, 17)), "1FFFFFFFFFFFFFFFF"));
    EXPECT_EQ("1FFFFFFFFFFFFFFFF", made(exactItem(fixedItem(IF_hex, 17)), "1FFFFFFFFFFFFFFFF"));
    EXPECT_EQ("FF", made(varyingItem(IF_hex), 255));
    EXPECT_EQ("!zeros", readBack(varyingItem(IF_hex), "0F"));
}

TEST(RadixValues, octalNumbersOf64Bits)
{
    const tItem wide = fixedItem(IF_octal, 22);
    EXPECT_EQ("18446744073709551615u", readBack(wide, "1777777777777777777777"));
    EXPECT_EQ("!range", readBack(wide, "2000000000000000000000"));
    EXPECT_EQ("1777777777777777777777", made(wide, unsignedScalar(18446744073709551615U)));
}

}  // namespace

// tests/core/text/double_text_test.cpp - doubles as text of 17 significant digits.
//
// The reference is printf's "%.17g" in the "C" locale, which the C library computes exactly.
#include "core/text/double_text.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <memory>
#include <random>
#include <string>

#include "core/text/bit_cast.h"
#include "core/text/decimal_scale.h"

namespace
{

using namespace murv::detail;

std::string textOf(double value)
{
    const std::unique_ptr<char[]> room(new char[s_cnDoubleTextRoom]);
    return std::string(room.get(), writeDouble(room.get(), value));
}

std::string printed(double value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

std::string shortTextOf(double value)
{
    const std::unique_ptr<char[]> room(new char[s_cnDoubleTextRoom]);
    return std::string(room.get(), writeShortestDouble(room.get(), value));
}

/// The number of digits without the zeros around them.
std::size_t digitCount(const std::string& text)
{
    std::string digits;
    for (const char c : text.substr(0, text.find('e')))
    {
        if (c >= '0' && c <= '9')
            digits += c;
    }
    const std::size_t first = digits.find_first_not_of('0');
    return first == std::string::npos ? 0 : digits.find_last_not_of('0') - first + 1;
}

/// Judged by the C library: the text gives the same bits, is not that of a whole number, and the nearest number of one
/// digit less is another double.
testing::AssertionResult isShortest(double value)
{
    if (!std::isfinite(value))
        return testing::AssertionSuccess();
    const std::string text = shortTextOf(value);
    if (bitCast<std::uint64_t>(std::strtod(text.c_str(), nullptr)) != bitCast<std::uint64_t>(value))
        return testing::AssertionFailure() << text << " reads as another number";
    if (text.find_first_of(".e") == std::string::npos)
        return testing::AssertionFailure() << text << " reads as an integer";
    const std::size_t digits = digitCount(text);
    if (digits < 2)
        return testing::AssertionSuccess();
    char shorter[64];
    std::snprintf(shorter, sizeof shorter, "%.*e", static_cast<int>(digits) - 2, value);
    if (std::strtod(shorter, nullptr) == value)
        return testing::AssertionFailure() << text << " is longer than " << shorter;
    char nearest[64];
    std::snprintf(nearest, sizeof nearest, "%.*e", static_cast<int>(digits) - 1, value);
    // Where printf's text of as many digits reads back equal, ours must be that number.
    if (std::strtod(nearest, nullptr) == value && std::strtold(nearest, nullptr) != std::strtold(text.c_str(), nullptr))
        return testing::AssertionFailure() << text << " is not as near as " << nearest;
    return testing::AssertionSuccess();
}

/// Whether the value, its negative and its neighbours print as printf prints them.
testing::AssertionResult printsLikePrintf(double value)
{
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double v : {value, -value, std::nextafter(value, infinity), std::nextafter(value, -infinity)})
    {
        if (std::isfinite(v) && textOf(v) != printed(v))
            return testing::AssertionFailure() << textOf(v) << " instead of " << printed(v);
    }
    return testing::AssertionSuccess();
}

}  // namespace

TEST(DoubleText, knownTexts)
{
    const struct
    {
        double m_dValue;
        const char* m_pText;
    } cases[] = {
        {0.0, "0"},
        {-0.0, "-0"},
        {1.0, "1"},
        {-1.5, "-1.5"},
        {0.1, "0.10000000000000001"},
        {0.5, "0.5"},
        {100.0, "100"},
        {-65.613616999999977, "-65.613616999999977"},
        {0.0001, "0.0001"},
        {0.00012345, "0.00012344999999999999"},
        {0.00001, "1.0000000000000001e-05"},
        {0x1p-20, "9.5367431640625e-07"},
        {9007199254740993.0, "9007199254740992"},
        {4503599627370495.5, "4503599627370495.5"},
        {12345678.25, "12345678.25"},
        {123456789.25, "123456789.25"},
        {99999999999999984.0, "99999999999999984"},
        {1e17, "1e+17"},
        {1e22, "1e+22"},
        {1e23, "9.9999999999999992e+22"},
        {1e100, "1e+100"},
        {1.5e300, "1.5000000000000001e+300"},
        {DBL_MAX, "1.7976931348623157e+308"},
        {DBL_MIN, "2.2250738585072014e-308"},
        {4.9406564584124654e-324, "4.9406564584124654e-324"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(textOf(c.m_dValue), c.m_pText);
}

TEST(DoubleText, notFiniteValuesHaveFixedTexts)
{
    EXPECT_EQ(textOf(std::numeric_limits<double>::quiet_NaN()), "null");
    EXPECT_EQ(textOf(-std::numeric_limits<double>::quiet_NaN()), "null");
    EXPECT_EQ(textOf(std::numeric_limits<double>::infinity()), "1e+9999");
    EXPECT_EQ(textOf(-std::numeric_limits<double>::infinity()), "-1e+9999");
}

TEST(DoubleText, exactHalvesGoToEven)
{
    // 17 digits and a half: the double holds it exactly, so the tie is real.
    EXPECT_EQ(textOf(0x1.0000000000001p+56), "72057594037927952");
    for (int exponent = -60; exponent <= 120; ++exponent)
    {
        for (const double odd : {1.0, 3.0, 5.0, 123456789.0, 9007199254740991.0, 4503599627370497.0})
            EXPECT_TRUE(printsLikePrintf(std::ldexp(odd, exponent)));
    }
    EXPECT_EQ(textOf(152115202441699.125 + 0.0078125), printed(152115202441699.1328125));
}

TEST(DoubleText, closestToAHalfWithoutBeingOne)
{
    // What follows the 17th digit differs from a half by less than 2^-61: no double comes closer than these.
    EXPECT_TRUE(printsLikePrintf(std::ldexp(5592117679628511.0, 163)));
    EXPECT_TRUE(printsLikePrintf(std::ldexp(5592117679628511.0, 164)));
    EXPECT_TRUE(printsLikePrintf(std::ldexp(6080469016670379.0, -381)));
    EXPECT_TRUE(printsLikePrintf(std::ldexp(6685530990800801.0, -866)));
    EXPECT_TRUE(printsLikePrintf(std::ldexp(6685530990800801.0, -867)));
}

TEST(DoubleText, everyPowerOfTwoAndOfTenWithNeighbours)
{
    for (int exponent = -1074; exponent <= 1023; ++exponent)
        EXPECT_TRUE(printsLikePrintf(std::ldexp(1.0, exponent)));
    for (int exponent = -323; exponent <= 308; ++exponent)
        EXPECT_TRUE(printsLikePrintf(std::strtod(("1e" + std::to_string(exponent)).c_str(), nullptr)));
}

TEST(DoubleText, everyPlaceOfThePointAndEveryCountOfDigits)
{
    double power = 1e-8;
    for (int exponent = -8; exponent <= 20; ++exponent, power *= 10)
    {
        for (const double digits : {1.0, 1.25, 1.2345678, 1.23456789, 9.875, 9.9999999999999982, 1.0000000000000002})
            EXPECT_TRUE(printsLikePrintf(digits * power));
    }
}

TEST(DoubleText, aMillionRandomBitPatternsMatchPrintf)
{
    std::mt19937_64 random(20240101);
    for (int i = 0; i < 1000000; ++i)
    {
        const auto value = bitCast<double>(random());
        if (!std::isfinite(value))
            continue;
        char text[s_cnDoubleTextRoom];
        ASSERT_EQ(std::string(text, writeDouble(text, value)), printed(value));
    }
}

TEST(DoubleText, aMillionOrdinaryNumbersMatchPrintf)
{
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> degrees(-180, 180);
    for (int i = 0; i < 500000; ++i)
    {
        const double cents = static_cast<double>(random() % 100000000) / 100;
        for (const double value : {degrees(random), cents})
        {
            char text[s_cnDoubleTextRoom];
            ASSERT_EQ(std::string(text, writeDouble(text, value)), printed(value));
        }
    }
}

TEST(WideMath, halvesGiveTheFullProduct)
{
    std::mt19937_64 random(3);
    const std::uint64_t ends[] = {0, 1, 0xFFFFFFFFU, 0x100000000U, ~std::uint64_t{0}};
    for (const std::uint64_t a : ends)
    {
        for (const std::uint64_t b : ends)
        {
            EXPECT_EQ(multiplyHalves(a, b).m_ullHigh, multiplyWide(a, b).m_ullHigh);
            EXPECT_EQ(multiplyHalves(a, b).m_ullLow, a * b);
        }
    }
    EXPECT_EQ(multiplyHalves(~std::uint64_t{0}, ~std::uint64_t{0}).m_ullHigh, ~std::uint64_t{1});
    for (int i = 0; i < 10000; ++i)
    {
        const std::uint64_t a = random();
        const std::uint64_t b = random();
        ASSERT_EQ(multiplyHalves(a, b).m_ullHigh, multiplyWide(a, b).m_ullHigh);
        ASSERT_EQ(multiplyHalves(a, b).m_ullLow, multiplyWide(a, b).m_ullLow);
    }
}

TEST(ShortestDouble, knownTexts)
{
    const struct
    {
        double m_dValue;
        const char* m_pText;
    } cases[] = {
        {0.0, "0.0"},
        {-0.0, "-0.0"},
        {25.0, "25.0"},
        {-1.5, "-1.5"},
        {0.1, "0.1"},
        {100000.0, "100000.0"},
        {0.0001, "0.0001"},
        {0.00001, "1e-05"},
        {4503599627370495.5, "4503599627370495.5"},
        {9007199254740992.0, "9007199254740992.0"},
        {9100000000000000.0, "9100000000000000.0"},
        {1e16, "1e+16"},
        {12345678901234568.0, "1.2345678901234568e+16"},
        {1e20, "1e+20"},
        {1e22, "1e+22"},
        {1e23, "1e+23"},
        {5e-324, "5e-324"},
        {1e-323, "1e-323"},
        {2.2250738585072014e-308, "2.2250738585072014e-308"},
        {1.7976931348623157e308, "1.7976931348623157e+308"},
        {5.684341886080802e-14, "5.684341886080802e-14"},  // a power of two: fewer digits fit above than below
        {9.5367431640625e-07, "9.5367431640625e-07"},
    };
    for (const auto& row : cases)
        EXPECT_EQ(shortTextOf(row.m_dValue), row.m_pText);
}

TEST(ShortestDouble, readsBackToTheSameBitsAndNoShorterTextDoes)
{
    std::mt19937_64 random(5);
    for (int field = 0; field < 2047; ++field)
    {
        for (const std::uint64_t fraction : {std::uint64_t{0}, std::uint64_t{1}, (std::uint64_t{1} << 52) - 1})
            ASSERT_TRUE(isShortest(bitCast<double>(std::uint64_t(field) << 52 | fraction)));
    }
    for (std::uint64_t bits = 0; bits < 1000; ++bits)
        ASSERT_TRUE(isShortest(bitCast<double>(bits)));
    for (int power = -323; power <= 308; ++power)
    {
        const double value = std::strtod(("1e" + std::to_string(power)).c_str(), nullptr);
        ASSERT_TRUE(isShortest(value));
        ASSERT_TRUE(isShortest(std::nextafter(value, 0.0)));
    }
    for (int i = 0; i < 20000; ++i)
    {
        ASSERT_TRUE(isShortest(bitCast<double>(random())));
        ASSERT_TRUE(isShortest(static_cast<double>(random() % 100000000) / 100));
        ASSERT_TRUE(isShortest(std::ldexp(static_cast<double>(random() >> 11), -static_cast<int>(random() % 64))));
    }
}

TEST(DecimalScale, everyPowerIsFiveTimesTheOneBefore)
{
    // Five times the entry, cut again, differs from the next by no more than what both cuts lose.
    for (int power = s_cnFirstPower; power < s_cnLastPower; ++power)
    {
        const tWide192 five = multiplyWide(5, s_ctPowers[power]);
        const int bits = log2OfPower(power + 1) - log2OfPower(power);
        const std::uint64_t high = (five.m_ullHigh << (64 - bits)) | (five.m_ullMiddle >> bits);
        const std::uint64_t low = (five.m_ullMiddle << (64 - bits)) | (five.m_ullLow >> bits);
        const tWide128& next = s_ctPowers[power + 1];
        ASSERT_LE(next.m_ullLow - low, 2U) << power;
        ASSERT_EQ(next.m_ullHigh, high + (next.m_ullLow < low ? 1U : 0U)) << power;
    }
}

// tests/core/text/number_scan_test.cpp - decimal text as a typed number.
//
// Integers are given by their limits; doubles are compared with the C library's strtod, which rounds exactly.
#include "core/text/number_scan.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cfloat>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <string_view>

#include "core/text/bit_cast.h"
#include "tests/core/text_helpers.h"

namespace
{

using namespace murv;
using namespace murv::detail;
using murv::tests::CExactText;

tScannedNumber scan(std::string_view text)
{
    const CExactText exact(text);
    return scanNumber(exact.begin(), static_cast<unsigned int>(exact.size()));
}

testing::AssertionResult isSint(std::string_view text, long long expected)
{
    const tScannedNumber number = scan(text);
    if (number.m_eType == DT_sint && number.m_uValue.m_llValue == expected)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << text << ": type " << number.m_eType;
}

testing::AssertionResult isUint(std::string_view text, unsigned long long expected)
{
    const tScannedNumber number = scan(text);
    if (number.m_eType == DT_uint && number.m_uValue.m_ullValue == expected)
        return testing::AssertionSuccess();
    return testing::AssertionFailure() << text << ": type " << number.m_eType;
}

/// Compares bits, so that the sign of a zero counts.
testing::AssertionResult isDouble(std::string_view text, double expected)
{
    const tScannedNumber number = scan(text);
    if (number.m_eType != DT_double)
        return testing::AssertionFailure() << text << ": type " << number.m_eType;
    const double value = number.m_uValue.m_dValue;
    if (bitCast<std::uint64_t>(value) == bitCast<std::uint64_t>(expected))
        return testing::AssertionSuccess();
    char both[80];
    std::snprintf(both, sizeof both, "%.17g instead of %.17g", value, expected);
    return testing::AssertionFailure() << text.substr(0, 100) << ": " << both;
}

testing::AssertionResult readsLikeStrtod(const std::string& text)
{
    return isDouble(text, std::strtod(text.c_str(), nullptr));
}

std::string randomDigits(std::mt19937_64& random, std::uint64_t count)
{
    std::string digits;
    while (digits.size() < count)
        digits += static_cast<char>('0' + random() % 10);
    return digits;
}

/// The product of a row of digits and a small number, in as many digits; there must be room for it.
std::string times(std::string digits, long long factor)
{
    long long carry = 0;
    for (std::size_t i = digits.size(); i-- > 0;)
    {
        carry += (digits[i] - '0') * factor;
        digits[i] = static_cast<char>('0' + carry % 10);
        carry /= 10;
    }
    EXPECT_EQ(carry, 0);
    return digits;
}

/// All 1074 digits after the point.
std::string smallestDoubleFraction()
{
    char text[1100];
    std::snprintf(text, sizeof text, "%.1074f", DBL_TRUE_MIN);
    return text + 2;
}

}  // namespace

TEST(NumberScan, smallIntegersAreSigned)
{
    EXPECT_TRUE(isSint("0", 0));
    EXPECT_TRUE(isSint("7", 7));
    EXPECT_TRUE(isSint("+5", 5));
    EXPECT_TRUE(isSint("-5", -5));
    EXPECT_TRUE(isSint("2147483647", 2147483647));
    EXPECT_TRUE(isSint("000000000000000000000000000012", 12));
    EXPECT_TRUE(isSint("-000000000000000000000000000012", -12));
}

TEST(NumberScan, integersAbove2147483647AreUnsigned)
{
    EXPECT_TRUE(isUint("2147483648", 2147483648));
    EXPECT_TRUE(isUint("+9223372036854775807", LLONG_MAX));
    EXPECT_TRUE(isUint("9223372036854775808", 9223372036854775808U));
    EXPECT_TRUE(isUint("18446744073709551609", 18446744073709551609U));
    EXPECT_TRUE(isUint("18446744073709551610", 18446744073709551610U));
    EXPECT_TRUE(isUint("18446744073709551615", ULLONG_MAX));
    EXPECT_TRUE(isUint("0018446744073709551615", ULLONG_MAX));
}

TEST(NumberScan, negativeIntegersAreSignedDownToTheLast)
{
    EXPECT_TRUE(isSint("-2147483649", -2147483649));
    EXPECT_TRUE(isSint("-9223372036854775807", -9223372036854775807));
    EXPECT_TRUE(isSint("-9223372036854775808", LLONG_MIN));
    EXPECT_TRUE(isDouble("-9223372036854775809", -9223372036854775808.0));
    EXPECT_TRUE(isDouble("-92233720368547758080", -92233720368547758080.0));
    EXPECT_TRUE(isDouble("-18446744073709551615", -18446744073709551616.0));
}

TEST(NumberScan, integersBeyond64BitsAreDoubles)
{
    EXPECT_TRUE(isDouble("18446744073709551616", 18446744073709551616.0));
    EXPECT_TRUE(isDouble("18446744073709551620", 18446744073709551620.0));
    EXPECT_TRUE(isDouble("184467440737095516150", 184467440737095516150.0));
    EXPECT_TRUE(isDouble("100000000000000000000", 1e20));
    EXPECT_TRUE(isDouble("184467440737095516.1", 184467440737095516.1));
}

TEST(NumberScan, nothingAfterTheSignIsZero)
{
    EXPECT_TRUE(isSint("", 0));
    EXPECT_TRUE(isSint("-", 0));
    EXPECT_TRUE(isSint("+", 0));
    EXPECT_TRUE(isSint("-0", 0));
    const tScannedNumber number = scanNumber(nullptr, 5);
    EXPECT_EQ(number.m_eType, DT_sint);
    EXPECT_EQ(number.m_uValue.m_llValue, 0);
}

TEST(NumberScan, fractionOrExponentMakesADouble)
{
    EXPECT_TRUE(isDouble("1.5", 1.5));
    EXPECT_TRUE(isDouble("1e3", 1000));
    EXPECT_TRUE(isDouble("1E3", 1000));
    EXPECT_TRUE(isDouble("1.", 1));
    EXPECT_TRUE(isDouble(".5", 0.5));
    EXPECT_TRUE(isDouble("-.5", -0.5));
    EXPECT_TRUE(isDouble("+.5e1", 5));
    EXPECT_TRUE(isDouble("+5.5", 5.5));
    EXPECT_TRUE(isDouble("-65.613616999999977", -65.613616999999977));
    EXPECT_TRUE(isDouble("1e-3", 0.001));
    EXPECT_TRUE(isDouble("1e+3", 1000));
    EXPECT_TRUE(isDouble("1e00000000000000000003", 1000));
}

TEST(NumberScan, theLongestPrefixCounts)
{
    EXPECT_TRUE(isDouble("1e", 1));
    EXPECT_TRUE(isDouble("1e+", 1));
    EXPECT_TRUE(isDouble("1e-", 1));
    EXPECT_TRUE(isDouble("1ex", 1));
    EXPECT_TRUE(isDouble("1.5.5", 1.5));
    EXPECT_TRUE(isDouble("1.e2", 100));
    EXPECT_TRUE(isDouble("12abc", 12));
    EXPECT_TRUE(isDouble("12 ", 12));
    EXPECT_TRUE(isDouble("1,5", 1));
    EXPECT_TRUE(isDouble("123456789012345678901x", 123456789012345678901.0));
    EXPECT_TRUE(isDouble(std::string_view("7\0008", 3), 7));
}

TEST(NumberScan, textWithoutADigitIsZero)
{
    for (const char* text : {".", "-.", "+.e5", "e5", "-e5", "x", "-x", "--5", "+-5", "-+5", "++5", "- 5", " ", "  -"})
        EXPECT_TRUE(isDouble(text, 0.0));
}

TEST(NumberScan, onlyDecimalTextIsKnown)
{
    EXPECT_TRUE(isDouble("0x10", 0.0));
    EXPECT_TRUE(isDouble("-0x10", -0.0));
    for (const char* text : {"inf", "-inf", "+inf", "infinity", "INF", "nan", "-nan", "NaN", "nan(1)", " inf", "- nan"})
        EXPECT_TRUE(isDouble(text, 0.0));
}

TEST(NumberScan, leadingBlanksMakeADouble)
{
    EXPECT_TRUE(isDouble("  7", 7));
    EXPECT_TRUE(isDouble("\t\n\v\f\r -7", -7));
    EXPECT_TRUE(isDouble(" +7.5", 7.5));
    EXPECT_TRUE(isDouble(" -0", -0.0));
    EXPECT_TRUE(isDouble("\b7", 0));
}

TEST(NumberScan, zeroKeepsItsSign)
{
    EXPECT_TRUE(isDouble("0.0", 0.0));
    EXPECT_TRUE(isDouble("-0.0", -0.0));
    EXPECT_TRUE(isDouble("-0e5", -0.0));
    EXPECT_TRUE(isDouble("-0.000000000000000000000000000000", -0.0));
    EXPECT_TRUE(isDouble("0e99999999999999999999", 0.0));
}

TEST(NumberScan, beyondTheRangeIsInfinite)
{
    EXPECT_TRUE(isDouble("1e+9999", HUGE_VAL));
    EXPECT_TRUE(isDouble("-1e+9999", -HUGE_VAL));
    EXPECT_TRUE(isDouble("1e309", HUGE_VAL));
    EXPECT_TRUE(isDouble("1e99999999999999999999999", HUGE_VAL));
    EXPECT_TRUE(isDouble("1.7976931348623157e308", DBL_MAX));
    EXPECT_TRUE(isDouble("1.7976931348623158e308", DBL_MAX));
    EXPECT_TRUE(isDouble("1.7976931348623159e308", HUGE_VAL));
    EXPECT_TRUE(isDouble(std::string(400, '9'), HUGE_VAL));
    EXPECT_TRUE(isDouble("-" + std::string(400, '9'), -HUGE_VAL));
}

TEST(NumberScan, belowTheRangeIsSubnormalOrZero)
{
    EXPECT_TRUE(isDouble("1e-9999", 0.0));
    EXPECT_TRUE(isDouble("-1e-9999", -0.0));
    EXPECT_TRUE(isDouble("1e-99999999999999999999999", 0.0));
    EXPECT_TRUE(isDouble("4.9406564584124654e-324", DBL_TRUE_MIN));
    EXPECT_TRUE(isDouble("-4.9406564584124654e-324", -DBL_TRUE_MIN));
    EXPECT_TRUE(isDouble("2.4703282292062328e-324", DBL_TRUE_MIN));
    EXPECT_TRUE(isDouble("2.4703282292062327e-324", 0.0));
    EXPECT_TRUE(isDouble("2.2250738585072014e-308", DBL_MIN));
    EXPECT_TRUE(isDouble("2.2250738585072011e-308", std::nextafter(DBL_MIN, 0)));
    EXPECT_TRUE(isDouble("2.2250738585072012e-308", DBL_MIN));
    EXPECT_TRUE(isDouble("1e-320", 1e-320));
    EXPECT_TRUE(isDouble("-0." + std::string(400, '0') + "1", -0.0));
}

TEST(NumberScan, longDigitsAndExponentsOutweighEachOther)
{
    EXPECT_TRUE(isDouble("0." + std::string(5000, '0') + "1e5001", 1.0));
    EXPECT_TRUE(isDouble("1" + std::string(5000, '0') + "e-5000", 1.0));
    EXPECT_TRUE(isDouble("1" + std::string(5000, '0') + ".5e-5000", 1.0));
    EXPECT_TRUE(isDouble(std::string(3000, '0') + ".25", 0.25));
}

/// The middle between a double and the next, exactly, followed by more digits.
TEST(NumberScan, tiesAreDecidedByTheLastDigit)
{
    const struct
    {
        const char* m_pTie;
        double m_dEven;
        double m_dAbove;
    } cases[] = {
        {"9007199254740993.", 9007199254740992.0, 9007199254740994.0},
        {"1.00000000000000011102230246251565404236316680908203125", 1.0, 1.0000000000000002},
        {"0.500000000000000055511151231257827021181583404541015625", 0.5, 0.50000000000000011},
    };
    for (const auto& c : cases)
    {
        EXPECT_TRUE(isDouble(c.m_pTie, c.m_dEven));
        EXPECT_TRUE(isDouble(std::string(c.m_pTie) + std::string(1000, '0'), c.m_dEven));
        EXPECT_TRUE(isDouble(std::string(c.m_pTie) + std::string(1000, '0') + "1", c.m_dAbove));
    }
}

TEST(NumberScan, halfOfTheSmallestDoubleIsTheLastZero)
{
    const std::string half = "0." + times(smallestDoubleFraction(), 5);
    EXPECT_TRUE(isDouble(half + "e-1", 0.0));
    EXPECT_TRUE(isDouble("-" + half + "e-1", -0.0));
    EXPECT_TRUE(isDouble(half + "1e-1", DBL_TRUE_MIN));
    EXPECT_TRUE(isDouble("-" + half + "1e-1", -DBL_TRUE_MIN));
}

TEST(NumberScan, middleOfTheTwoSmallestDoublesGoesToEven)
{
    std::string middle = "0." + times(smallestDoubleFraction(), 15);
    EXPECT_TRUE(isDouble(middle + "e-1", 2 * DBL_TRUE_MIN));
    EXPECT_TRUE(isDouble(middle + "1e-1", 2 * DBL_TRUE_MIN));
    ASSERT_EQ(middle.back(), '5');
    middle.back() = '4';
    EXPECT_TRUE(isDouble(middle + "9e-1", DBL_TRUE_MIN));
}

TEST(NumberScan, middleAfterTheLargestDoubleIsTheFirstInfinity)
{
    // The largest double is (2^54 - 2) * 2^970; the middle after it is one more step of 2^970.
    char step[400];
    std::snprintf(step, sizeof step, "%.0f", std::ldexp(1.0, 970));
    std::string middle = times("0" + times(std::string(20, '0') + step, 1 << 27), 1 << 27);
    for (std::size_t i = middle.size(), back = 0, borrow = 0; i-- > 0; ++back)  // minus one step
    {
        const std::size_t size = std::string_view(step).size();
        const int digit = back < size ? step[size - 1 - back] - '0' : 0;
        const int value = middle[i] - '0' - digit - static_cast<int>(borrow);
        borrow = value < 0 ? 1 : 0;
        middle[i] = static_cast<char>('0' + (value + 10) % 10);
    }
    EXPECT_TRUE(isDouble(middle + ".", HUGE_VAL));
    EXPECT_TRUE(isDouble("-" + middle + "." + std::string(1000, '0'), -HUGE_VAL));
    middle.back() = static_cast<char>(middle.back() - 1);
    EXPECT_TRUE(isDouble(middle + ".", DBL_MAX));
    EXPECT_TRUE(isDouble("-" + middle + ".999", -DBL_MAX));
}

TEST(NumberScan, everyPrefixReadsLikeStrtod)
{
    for (const std::string text : {"-1234567890.12345678901234567e-123", "0.00000012345678901234567890e+45",
                                   "98765432109876543210.5e9", " +3.25e5"})
    {
        for (std::size_t size = 1; size <= text.size(); ++size)
        {
            const std::string prefix = text.substr(0, size);
            const tScannedNumber number = scan(prefix);
            if (number.m_eType == DT_double)
                EXPECT_TRUE(readsLikeStrtod(prefix));
            else
                EXPECT_TRUE(prefix.find_first_not_of("+-0123456789") == std::string::npos) << prefix;
        }
    }
}

TEST(NumberScan, everyCountOfFractionDigits)
{
    for (std::size_t whole = 1; whole <= 20; ++whole)
    {
        for (std::size_t fraction = 1; fraction <= 40; ++fraction)
        {
            const std::string digits = std::string("1234567890987654321012345").substr(0, whole) + "." +
                                       std::string("9081726354453627180990817263544536271809").substr(0, fraction);
            EXPECT_TRUE(readsLikeStrtod(digits));
            EXPECT_TRUE(readsLikeStrtod(digits + "x"));
            EXPECT_TRUE(readsLikeStrtod(digits.substr(0, digits.size() - 1) + ":"));
        }
    }
}

TEST(NumberScan, thousandDigitsReadLikeStrtod)
{
    std::mt19937_64 random(11);
    for (int i = 0; i < 300; ++i)
    {
        const std::string whole = randomDigits(random, 1 + random() % 1500);
        const std::string fraction = randomDigits(random, random() % 1500);
        EXPECT_TRUE(readsLikeStrtod(whole + "." + fraction + "e-" + std::to_string(random() % 1900)));
    }
}

/// Reads a token with and without something after it, where the fast path and the general path of reading part.
void expectTokenLikeText(const std::string& token, const std::string& after)
{
    const CExactText exact(token + after);
    tScannedNumber number{};
    const char* const end = scanNumberToken(exact.begin(), exact.begin() + exact.size(), number);
    const tScannedNumber alone = scan(token);
    ASSERT_EQ(token.size(), static_cast<std::size_t>(end - exact.begin())) << token << after;
    ASSERT_EQ(alone.m_eType, number.m_eType) << token << after;
    ASSERT_EQ(alone.m_uValue.m_ullValue, number.m_uValue.m_ullValue) << token << after;
}

TEST(NumberScan, tokensReadLikeTheirTextAlone)
{
    const std::string digits = "92233720368547758079";
    for (const char* const sign : {"", "-"})
    {
        for (std::size_t whole = 0; whole <= digits.size(); ++whole)
        {
            for (std::size_t places = 0; places <= digits.size() + 1; ++places)
            {
                for (const char* const exponent : {"", "e", "E5", "e-7", "e+"})
                {
                    std::string token = sign + digits.substr(0, whole);
                    if (places != 0)
                        token += "." + digits.substr(0, places - 1);
                    token += exponent;
                    if (token.empty() || token[0] == '.' || token[0] == 'e' || token[0] == 'E')
                        continue;
                    for (const std::size_t room : {0u, 1u, 20u, 33u, 34u, 35u, 60u})
                        expectTokenLikeText(token, std::string(room, ' '));
                    expectTokenLikeText(token, ",1234567890123456789012345678901234567890");
                }
            }
        }
    }
}

// Numbers without exponent and of at most 19 digits have a way of their own: here beside the tie, or on it.
TEST(NumberScan, plainTokensNearTheMiddleOfTwoDoublesReadLikeStrtod)
{
    std::mt19937_64 random(12);
    for (int i = 0; i < 500000; ++i)
    {
        const int places = 1 + static_cast<int>(random() % 16);
        const double value = std::ldexp(static_cast<double>(random() >> 11 | 1), -static_cast<int>(random() % 106));
        const double next = std::nextafter(value, HUGE_VAL);
        char text[160];
        const long double middle = (static_cast<long double>(value) + static_cast<long double>(next)) / 2;
        const int size = std::snprintf(text, sizeof text, "%.*Lf%40s", places, middle, "");
        tScannedNumber number{};
        const char* const end = scanNumberToken(text, text + size, number);
        ASSERT_EQ(end, text + size - 40) << text;
        ASSERT_EQ(number.m_eType, DT_double) << text;
        ASSERT_EQ(number.m_uValue.m_dValue, std::strtod(text, nullptr)) << text;
    }
}

TEST(NumberScan, errnoIsLeftAlone)
{
    errno = 17;
    EXPECT_TRUE(isDouble("1e999", HUGE_VAL));
    EXPECT_TRUE(isDouble("1e-999", 0.0));
    EXPECT_EQ(errno, 17);
}

TEST(NumberScan, aMillionPrintedDoublesReadBack)
{
    std::mt19937_64 random(5);
    for (int i = 0; i < 1000000; ++i)
    {
        const auto value = bitCast<double>(random());
        if (!std::isfinite(value))
            continue;
        char text[40];
        const int size = std::snprintf(text, sizeof text, "%.17g", value);
        const tScannedNumber number = scanNumber(text, static_cast<unsigned int>(size));
        if (number.m_eType != DT_double)
            continue;
        ASSERT_EQ(bitCast<std::uint64_t>(number.m_uValue.m_dValue), bitCast<std::uint64_t>(value)) << text;
    }
}

TEST(NumberScan, aMillionRandomTextsReadLikeStrtod)
{
    std::mt19937_64 random(6);
    for (int i = 0; i < 1000000; ++i)
    {
        std::string text = random() % 2 != 0 ? "-" : "";
        text += randomDigits(random, 1 + random() % 25);
        text += "." + randomDigits(random, random() % 25);
        if (random() % 2 != 0)
            text += "e" + std::to_string(static_cast<int>(random() % 700) - 350);
        const tScannedNumber number = scanNumber(text.data(), static_cast<unsigned int>(text.size()));
        ASSERT_EQ(number.m_eType, DT_double);
        ASSERT_EQ(bitCast<std::uint64_t>(number.m_uValue.m_dValue),
                  bitCast<std::uint64_t>(std::strtod(text.c_str(), nullptr)))
            << text;
    }
}

TEST(NumberScan, aMillionTextsNearTheMiddleOfTwoDoubles)
{
    // The middle of two neighbours printed with 19 to 40 digits lies just beside the tie, or on it.
    std::mt19937_64 random(8);
    for (int i = 0; i < 1000000; ++i)
    {
        const double value = std::ldexp(static_cast<double>(random() >> 11), static_cast<int>(random() % 120) - 90);
        const double next = std::nextafter(value, HUGE_VAL);
        char text[96];
        const long double middle = (static_cast<long double>(value) + static_cast<long double>(next)) / 2;
        const int size = std::snprintf(text, sizeof text, "%.*Le", static_cast<int>(18 + random() % 22), middle);
        const tScannedNumber number = scanNumber(text, static_cast<unsigned int>(size));
        ASSERT_EQ(number.m_eType, DT_double);
        ASSERT_EQ(number.m_uValue.m_dValue, std::strtod(text, nullptr)) << text;
    }
}

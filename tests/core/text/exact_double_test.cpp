// Tests of the double nearest to a text where the standard library reads no doubles.
//
// The C library's strtod, which reads the text as it stands, says what is right.
#include "core/text/exact_double.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cfenv>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

namespace
{

using namespace murv::detail;

/// \param exponent  of the first digit of the text other than 0
void expectNearest(const std::string& text, int exponent)
{
    ASSERT_EQ(bitCast<std::uint64_t>(std::strtod(text.c_str(), nullptr)),
              nearest4Digits(text.data(), text.data() + text.size(), exponent))
        << text;
}

/// The digits of 2^power, which has none after the point.
std::string powerOfTwo(int power)
{
    std::string digits = "1";
    for (; power > 0; --power)
    {
        int carry = 0;
        for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit)
        {
            const int twice = (*digit - '0') * 2 + carry;
            *digit = static_cast<char>('0' + twice % 10);
            carry = twice / 10;
        }
        if (carry != 0)
            digits.insert(digits.begin(), '1');
    }
    return digits;
}

TEST(ExactDouble, ofAnyDigitsAndExponent)
{
    std::mt19937_64 random(5);
    for (int exponent = -340; exponent <= 320; ++exponent)
    {
        std::string text = "1.";
        for (std::uint64_t count = random() % 30; count > 0; --count)
            text += static_cast<char>('0' + random() % 10);
        expectNearest(text + "e" + std::to_string(exponent), exponent);
    }
}

TEST(ExactDouble, zerosAndThePointMayStandAnywhere)
{
    expectNearest("0.000125", -4);
    expectNearest("000125.5", 2);
    expectNearest(".5", -1);
    expectNearest("0.00000", 0);
    expectNearest("12500000000000000000000000", 25);
}

TEST(ExactDouble, theLastOfManyDigitsDecidesATie)
{
    const std::string tie = "9007199254740993";  // 2^53 + 1
    expectNearest(tie, 15);
    expectNearest(tie + "." + std::string(2000, '0'), 15);
    expectNearest(tie + "." + std::string(2000, '0') + "1", 15);

    // Just between the largest double and what would follow it: the first digits of 2^1024 - 2^970.
    std::string last = powerOfTwo(1024);
    const std::string half = powerOfTwo(970);
    int borrow = 0;
    for (std::size_t back = 1; back <= last.size(); ++back)
    {
        const int taken = back <= half.size() ? half[half.size() - back] - '0' : 0;
        const int digit = last[last.size() - back] - '0' - taken - borrow;
        borrow = digit < 0 ? 1 : 0;
        last[last.size() - back] = static_cast<char>('0' + (digit + 10) % 10);
    }
    expectNearest(last, 308);
    last.back() = static_cast<char>(last.back() - 1);
    expectNearest(last, 308);
}

TEST(ExactDouble, theMiddleBelowTheSmallestDoubleIsReadToItsLastDigit)
{
    // 2^-1075 is 5^1075 / 10^1075. Zero and the smallest double are equally near, and zero is even.
    std::string digits = "1";
    for (int power = 0; power < 1075; ++power)
    {
        int carry = 0;
        for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit)
        {
            const int product = (*digit - '0') * 5 + carry;
            *digit = static_cast<char>('0' + product % 10);
            carry = product / 10;
        }
        if (carry != 0)
            digits.insert(digits.begin(), static_cast<char>('0' + carry));
    }
    const int exponent = static_cast<int>(digits.size()) - 1 - 1075;
    const std::string tail = "e-1075";
    EXPECT_EQ(0U, nearest4Digits(digits.data(), digits.data() + digits.size(), exponent));
    expectNearest(digits + tail, exponent);
    digits.back() = '6';
    EXPECT_EQ(1U, nearest4Digits(digits.data(), digits.data() + digits.size(), exponent));
    expectNearest(digits + tail, exponent);
}

TEST(ExactDouble, roundingModeAndErrorNumberMakeNoDifferenceAndStay)
{
    const std::string text = "0.1";
    ASSERT_EQ(0, std::fesetround(FE_UPWARD));
    errno = EDOM;
    const std::uint64_t tenth = nearest4Digits(text.data(), text.data() + text.size(), -1);
    const std::uint64_t infinite = nearest4Digits(text.data(), text.data() + text.size(), 400);
    EXPECT_EQ(FE_UPWARD, std::fegetround());
    EXPECT_EQ(EDOM, errno);
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(bitCast<std::uint64_t>(0.1), tenth);
    EXPECT_EQ(std::uint64_t{0x7FF} << 52, infinite);
}

}  // namespace

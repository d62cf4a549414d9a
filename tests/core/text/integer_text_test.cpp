// tests/core/text/integer_text_test.cpp - integers as decimal text.
//
// Digit counts change at powers of ten, so both sides of each are looked at.
#include "core/text/integer_text.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <memory>
#include <random>
#include <string>

namespace
{

using namespace murv::detail;

std::string unsignedText(unsigned long long value)
{
    const std::unique_ptr<char[]> room(new char[digits4Unsigned(value)]);
    return std::string(room.get(), writeUnsigned(room.get(), value));
}

std::string signedText(long long value)
{
    const std::unique_ptr<char[]> room(new char[s_cnIntegerTextRoom]);
    return std::string(room.get(), writeSigned(room.get(), value));
}

}  // namespace

TEST(IntegerText, zeroHasOneDigit)
{
    EXPECT_EQ(digits4Unsigned(0), 1U);
    EXPECT_EQ(unsignedText(0), "0");
    EXPECT_EQ(signedText(0), "0");
}

TEST(IntegerText, bothSidesOfEveryPowerOfTen)
{
    unsigned long long power = 1;
    for (unsigned int digits = 1; digits <= 20; ++digits)
    {
        EXPECT_EQ(digits4Unsigned(power), digits);
        EXPECT_EQ(unsignedText(power), "1" + std::string(digits - 1, '0'));
        if (digits > 1)
        {
            EXPECT_EQ(digits4Unsigned(power - 1), digits - 1);
            EXPECT_EQ(unsignedText(power - 1), std::string(digits - 1, '9'));
        }
        power *= 10;
    }
}

TEST(IntegerText, extremeValues)
{
    EXPECT_EQ(unsignedText(ULLONG_MAX), "18446744073709551615");
    EXPECT_EQ(signedText(LLONG_MAX), "9223372036854775807");
    EXPECT_EQ(signedText(LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(signedText(-1), "-1");
}

TEST(IntegerText, valuesOfEveryLengthMatchPrintf)
{
    std::mt19937_64 random(7);
    for (int i = 0; i < 20000; ++i)
    {
        const unsigned long long value = random() >> (random() % 64);
        char expected[32];
        std::snprintf(expected, sizeof expected, "%llu", value);
        ASSERT_EQ(unsignedText(value), expected);
        std::snprintf(expected, sizeof expected, "%lld", static_cast<long long>(value));
        ASSERT_EQ(signedText(static_cast<long long>(value)), expected);
    }
}

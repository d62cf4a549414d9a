// Tests of the double nearest to a decimal number.
//
// The C library's strtod, which rounds exactly, says what is right.
#include "core/text/nearest_double.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

#include "core/text/bit_cast.h"

namespace
{

using namespace murv::detail;

/// `cut` digits follow the mantissa.
void expectNearest(std::uint64_t mantissa, int exponent, const std::string& cut = "")
{
    const bool isCut = cut.find_first_not_of('0') != std::string::npos;
    const std::string text =
        std::to_string(mantissa) + cut + "e" + std::to_string(exponent - static_cast<int>(cut.size()));
    const char* const begin = text.c_str();
    const std::uint64_t bits = nearest4Decimal({mantissa, exponent, isCut}, begin, begin + text.size());
    ASSERT_EQ(bitCast<std::uint64_t>(std::strtod(begin, nullptr)), bits) << text;
}

TEST(NearestDouble, ofAnyMantissaAndExponent)
{
    std::mt19937_64 random(3);
    for (int exponent = -350; exponent <= 320; ++exponent)
    {
        for (unsigned int bits = 1; bits <= 64; ++bits)
            expectNearest(random() >> (64 - bits), exponent);
        for (const std::uint64_t mantissa : {0ULL, 1ULL, 5ULL, 9007199254740993ULL, 18446744073709551615ULL})
            expectNearest(mantissa, exponent);
    }
}

TEST(NearestDouble, digitsAfterTheMantissaDecideATie)
{
    expectNearest(9007199254740993, 0);
    expectNearest(9007199254740993, 0, "0000");
    expectNearest(9007199254740993, 0, "0001");
    expectNearest(1801439850948198599, -3, "9999");
}

TEST(NearestDouble, theFastPathOfFractionsLeavesTiesOpen)
{
    std::uint64_t bits = 0;
    EXPECT_FALSE(nearest4Fraction(5, -1, bits));
    EXPECT_FALSE(nearest4Fraction(90071992547409930, -1, bits));
    EXPECT_TRUE(nearest4Fraction(1, -1, bits));
    EXPECT_EQ(0.1, bitCast<double>(bits));
}

}  // namespace

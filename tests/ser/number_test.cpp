// tests/ser/number_test.cpp - the type and value of numbers in text.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;

namespace
{
/// As the root, as an element, as a member and as a value after a packet expression.
std::string everywhere(std::string_view number)
{
    const std::string text(number);
    std::string value = loaded(text);
    EXPECT_EQ(loaded("[" + text + "]"), "[" + value + "]");
    EXPECT_EQ(loaded("{\"a\"=" + text + "}"), "{a=" + value + "}");
    EXPECT_EQ(loaded("{" + text + "}"), "{" + value + "}");
    EXPECT_EQ(loaded("[(ACF4)" + text + "]"), "[" + value + "]");
    EXPECT_EQ(loaded("{\"a\"=0,\n\"a\"= /**/ " + text + "\n}"), "{a=" + value + "<0:/**/>}");
    return value;
}
}  // namespace

TEST(Number, wholeUpTo2147483647IsSigned)
{
    EXPECT_EQ(everywhere("0"), "0");
    EXPECT_EQ(everywhere("2147483647"), "2147483647");
    EXPECT_EQ(everywhere("0000000000000000000000000000000007"), "7");
}

TEST(Number, wholeBeyond2147483647IsUnsigned)
{
    EXPECT_EQ(everywhere("2147483648"), "2147483648u");
    EXPECT_EQ(everywhere("9223372036854775808"), "9223372036854775808u");
    EXPECT_EQ(everywhere("18446744073709551615"), "18446744073709551615u");
}

TEST(Number, negativeWholeIsSigned)
{
    EXPECT_EQ(everywhere("-1"), "-1");
    EXPECT_EQ(everywhere("-9223372036854775808"), "-9223372036854775808");
}

TEST(Number, beyond64BitsIsADouble)
{
    EXPECT_EQ(tLoad("18446744073709551616").m_tTree.asDouble(), 18446744073709551616.0);
    EXPECT_EQ(tLoad("-9223372036854775809").m_tTree.getDT(), DT_double);
    EXPECT_EQ(tLoad("-9223372036854775809").m_tTree.asDouble(), -9223372036854775808.0);
    EXPECT_EQ(tLoad("99999999999999999999").m_tTree.getDT(), DT_double);
}

TEST(Number, withFractionOrExponentIsADouble)
{
    EXPECT_EQ(everywhere("1.5"), "1.5d");
    EXPECT_EQ(everywhere("1e3"), "1000d");
    EXPECT_EQ(everywhere("1E+3"), "1000d");
    EXPECT_EQ(everywhere("25e-1"), "2.5d");
    EXPECT_EQ(everywhere("-0.25"), "-0.25d");
}

TEST(Number, mayLackDigits)
{
    EXPECT_EQ(everywhere("-"), "0");
    EXPECT_EQ(everywhere("-0"), "0");
    EXPECT_EQ(tLoad("1.").m_tTree.getDT(), DT_double);
    EXPECT_EQ(tLoad("1.").m_tTree.asDouble(), 1.0);
    EXPECT_EQ(tLoad("1e").m_tTree.asDouble(), 1.0);
    EXPECT_EQ(tLoad("1e+").m_tTree.asDouble(), 1.0);
    EXPECT_EQ(tLoad("-.5").m_tTree.asDouble(), -0.5);
    EXPECT_EQ(tLoad("-e5").m_tTree.asDouble(), 0.0);
    EXPECT_EQ(tLoad("-.").m_tTree.getDT(), DT_double);
}

TEST(Number, negativeZeroWithFractionKeepsItsSign)
{
    const tLoad load("-0.0");
    EXPECT_EQ(load.m_tTree.getDT(), DT_double);
    EXPECT_TRUE(std::signbit(load.m_tTree.asDouble()));
}

TEST(Number, beyondTheRangeOfDoublesIsInfinite)
{
    EXPECT_EQ(tLoad("1e999").m_tTree.asDouble(), std::numeric_limits<double>::infinity());
    EXPECT_EQ(tLoad("-1e999").m_tTree.asDouble(), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(tLoad("1e-999").m_tTree.asDouble(), 0.0);
    EXPECT_EQ(tLoad("[1e999999999999999999999]").m_tTree.getChildAt(0).asDouble(),
              std::numeric_limits<double>::infinity());
}

TEST(Number, isReadExactly)
{
    EXPECT_EQ(tLoad("[0.1]").m_tTree.getChildAt(0).asDouble(), 0.1);
    EXPECT_EQ(tLoad("[1.7976931348623157e308]").m_tTree.getChildAt(0).asDouble(), std::numeric_limits<double>::max());
    EXPECT_EQ(tLoad("[4.9406564584124654e-324]").m_tTree.getChildAt(0).asDouble(),
              std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(tLoad("[9007199254740993.0]").m_tTree.getChildAt(0).asDouble(), 9007199254740992.0);
}

TEST(Number, maySpanTheWholeData)
{
    for (unsigned int length = 1; length <= 40; ++length)
    {
        const std::string digits(length, '1');
        EXPECT_EQ(tLoad(digits).m_tTree.asDouble(), std::stod(digits));
        EXPECT_EQ(tLoad(digits + "." + digits).m_tTree.asDouble(), std::stod(digits + "." + digits));
        EXPECT_EQ(tLoad("[" + digits + "." + digits + "]").m_tTree.getChildAt(0).asDouble(),
                  std::stod(digits + "." + digits));
        EXPECT_EQ(tLoad("[" + digits).m_bDone, false);
    }
}

TEST(Number, fastAndSlowWayAgree)
{
    for (const char* const number : {"0",
                                     "7",
                                     "-7",
                                     "12345678901234567",
                                     "123456789012345678",
                                     "1234567890123456789",
                                     "12345678901234567890",
                                     "123456789012345678901",
                                     "1.0",
                                     "-1.25e-7",
                                     "3.141592653589793",
                                     "0.30000000000000004",
                                     "1e22",
                                     "1e23",
                                     "123456789.123456789e-100",
                                     "-",
                                     "-.",
                                     "-.e",
                                     "1.e5",
                                     "00",
                                     "-00012",
                                     "2147483647.0"})
        everywhere(number);
}

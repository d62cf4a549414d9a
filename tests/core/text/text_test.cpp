// tests/core/text/text_test.cpp - the exported text functions.
//
// Quoting, numbers and the like have tests of their own; here are the overloads, and what each promises at its edges.
#include "murv/text.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

#include "tests/core/text_helpers.h"

namespace
{

using namespace murv;
using murv::tests::CExactText;

template <class T>
struct tResult
{
    bool m_bOk;
    T m_tValue;
    bool operator==(const tResult&) const = default;
};

template <class T>
std::ostream& operator<<(std::ostream& os, const tResult<T>& result)
{
    return os << (result.m_bOk ? "true " : "false ") << result.m_tValue;
}

using tSigned = tResult<long long>;
using tUnsigned = tResult<unsigned long long>;

/// The value begins as something that no case expects.
template <class T>
tResult<T> convert(std::string_view text)
{
    const CExactText exact(text);
    T value = 123456789;
    const bool ok = aton64(exact.begin(), static_cast<unsigned int>(exact.size()), value);
    return {ok, value};
}

template <class T, class = void>
struct tHasText : std::false_type
{
};

template <class T>
struct tHasText<T, std::void_t<decltype(ToString(std::declval<T>()))>> : std::true_type
{
};

}  // namespace

TEST(ToString, integersOfEveryType)
{
    EXPECT_EQ(ToString(-7), "-7");
    EXPECT_EQ(ToString(7U), "7");
    EXPECT_EQ(ToString(INT_MIN), "-2147483648");
    EXPECT_EQ(ToString(UINT_MAX), "4294967295");
    EXPECT_EQ(ToString(-7L), "-7");
    EXPECT_EQ(ToString(7UL), "7");
    EXPECT_EQ(ToString(LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(ToString(LLONG_MAX), "9223372036854775807");
    EXPECT_EQ(ToString(ULLONG_MAX), "18446744073709551615");
    EXPECT_EQ(ToString(std::int64_t{-1}), "-1");
    EXPECT_EQ(ToString(std::size_t{1}), "1");
    EXPECT_EQ(ToString(static_cast<short>(-3)), "-3");
}

TEST(ToString, doublesHave17Digits)
{
    EXPECT_EQ(ToString(0.1), "0.10000000000000001");
    EXPECT_EQ(ToString(0.5F), "0.5");
    EXPECT_EQ(ToString(-0.0), "-0");
    EXPECT_EQ(ToString(std::numeric_limits<double>::infinity()), "1e+9999");
    EXPECT_EQ(ToString(-std::numeric_limits<double>::infinity()), "-1e+9999");
    EXPECT_EQ(ToString(std::numeric_limits<double>::quiet_NaN()), "null");
}

TEST(ToString, decimalPointDoesNotFollowTheLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"})
    {
        if (std::setlocale(LC_ALL, name) != nullptr)
            break;
    }
    EXPECT_EQ(ToString(1.5), "1.5");
    std::setlocale(LC_ALL, before.c_str());
}

TEST(ToString, boolsAreWords)
{
    EXPECT_EQ(ToString(true), "true");
    EXPECT_EQ(ToString(false), "false");
}

TEST(ToString, pointersAreNoBools)
{
    EXPECT_TRUE(tHasText<bool>::value);
    EXPECT_TRUE(tHasText<char>::value);
    EXPECT_FALSE(tHasText<const char*>::value);
    EXPECT_FALSE(tHasText<int*>::value);
}

TEST(ToQuotedEscapeString, nullAndEmptyGiveTwoQuotes)
{
    EXPECT_EQ(ToQuotedEscapeString(static_cast<const char*>(nullptr)), "\"\"");
    EXPECT_EQ(ToQuotedEscapeString(nullptr, 5), "\"\"");
    EXPECT_EQ(ToQuotedEscapeString(""), "\"\"");
    EXPECT_EQ(ToQuotedEscapeString(std::string_view()), "\"\"");
}

TEST(ToQuotedEscapeString, everyFormOfCallGivesTheSame)
{
    EXPECT_EQ(ToQuotedEscapeString("x"), "\"x\"");
    EXPECT_EQ(ToQuotedEscapeString("xyz", 1), "\"x\"");
    EXPECT_EQ(ToQuotedEscapeString("xyz", 1U), "\"x\"");
    EXPECT_EQ(ToQuotedEscapeString(std::string("x")), "\"x\"");
    EXPECT_EQ(ToQuotedEscapeString(std::string_view("x")), "\"x\"");
}

TEST(ToQuotedEscapeString, bytesThatAreEscaped)
{
    EXPECT_EQ(ToQuotedEscapeString("\x7F"), "\"\\x7F\"");
    EXPECT_EQ(ToQuotedEscapeString("a\tb"), "\"a\\tb\"");
    EXPECT_EQ(ToQuotedEscapeString("\b\n\f\r\"\\/"), "\"\\b\\n\\f\\r\\\"\\\\/\"");
    EXPECT_EQ(ToQuotedEscapeString("\xE2\x82\xAC"), "\"\\xE2\\x82\\xAC\"");
    EXPECT_EQ(ToQuotedEscapeString("a\0b", 3), "\"a\\x00b\"");
    EXPECT_EQ(ToQuotedEscapeString("clean for a while, then\x01"), "\"clean for a while, then\\x01\"");
}

TEST(ToUnescapeString, nullAndEmptyGiveAnEmptyString)
{
    EXPECT_EQ(ToUnescapeString(static_cast<const char*>(nullptr), true), "");
    EXPECT_EQ(ToUnescapeString("", false), "");
    EXPECT_EQ(ToUnescapeString(std::string_view(), false), "");
}

TEST(ToUnescapeString, theFlagSelectsWhatUnicodeGives)
{
    EXPECT_EQ(ToUnescapeString("\\u0041", true), "A");
    EXPECT_EQ(ToUnescapeString("\\u0041", false), std::string("\0A", 2));
    EXPECT_EQ(ToUnescapeString("\\ud83d\\ude00", true), "\xF0\x9F\x98\x80");
}

TEST(ToUnescapeString, everyEscape)
{
    EXPECT_EQ(ToUnescapeString("\\\"\\/\\\\\\b\\f\\n\\r\\t\\x41", false), "\"/\\\b\f\n\r\tA");
}

TEST(ToUnescapeString, malformedEscapeEndsTheText)
{
    EXPECT_EQ(ToUnescapeString("abc\\qdef", true), "abc");
    EXPECT_EQ(ToUnescapeString("abc\\", true), "abc");
    EXPECT_EQ(ToUnescapeString("\\n\\x4", true), "\n");
    EXPECT_EQ(ToUnescapeString("a\\ud83d", true), "a");
}

TEST(Aton64, signedText)
{
    EXPECT_EQ(convert<long long>("0"), (tSigned{true, 0}));
    EXPECT_EQ(convert<long long>("+12"), (tSigned{true, 12}));
    EXPECT_EQ(convert<long long>("-12"), (tSigned{true, -12}));
    EXPECT_EQ(convert<long long>("9223372036854775807"), (tSigned{true, LLONG_MAX}));
    EXPECT_EQ(convert<long long>("-9223372036854775807"), (tSigned{true, -LLONG_MAX}));
    EXPECT_EQ(convert<long long>("-9223372036854775808"), (tSigned{true, LLONG_MIN}));
    EXPECT_EQ(convert<long long>("-00000000000000000000000000001"), (tSigned{true, -1}));
}

TEST(Aton64, signedOverflowStopsWithoutTheSign)
{
    EXPECT_EQ(convert<long long>("9223372036854775808"), (tSigned{true, 922337203685477580}));
    EXPECT_EQ(convert<long long>("-9223372036854775809"), (tSigned{true, 922337203685477580}));
    EXPECT_EQ(convert<long long>("92233720368547758070"), (tSigned{true, 922337203685477580}));
    EXPECT_EQ(convert<long long>("-92233720368547758080"), (tSigned{true, 922337203685477580}));
    EXPECT_EQ(convert<long long>("9300000000000000000"), (tSigned{true, 930000000000000000}));
    EXPECT_EQ(convert<long long>("9300000000000000000 and the rest"), (tSigned{true, 930000000000000000}));
    EXPECT_EQ(convert<long long>("9223372036854775807x"), (tSigned{true, 922337203685477580}));
    EXPECT_EQ(convert<long long>("-9223372036854775800x"), (tSigned{true, 922337203685477580}));
    EXPECT_EQ(convert<long long>("9223372036854775799x"), (tSigned{false, 0}));
}

TEST(Aton64, unsignedText)
{
    EXPECT_EQ(convert<unsigned long long>("0"), (tUnsigned{true, 0}));
    EXPECT_EQ(convert<unsigned long long>("+12"), (tUnsigned{true, 12}));
    EXPECT_EQ(convert<unsigned long long>("18446744073709551615"), (tUnsigned{true, ULLONG_MAX}));
}

TEST(Aton64, unsignedOverflowStops)
{
    EXPECT_EQ(convert<unsigned long long>("18446744073709551616"), (tUnsigned{true, 1844674407370955161}));
    EXPECT_EQ(convert<unsigned long long>("184467440737095516150"), (tUnsigned{true, 1844674407370955161}));
    EXPECT_EQ(convert<unsigned long long>("99999999999999999999"), (tUnsigned{true, 9999999999999999999U}));
    EXPECT_EQ(convert<unsigned long long>("99999999999999999999x"), (tUnsigned{true, 9999999999999999999U}));
}

TEST(Aton64, unsignedRefusesMinus)
{
    EXPECT_EQ(convert<unsigned long long>("-"), (tUnsigned{false, 0}));
    EXPECT_EQ(convert<unsigned long long>("-0"), (tUnsigned{false, 0}));
    EXPECT_EQ(convert<unsigned long long>("-12"), (tUnsigned{false, 0}));
}

TEST(Aton64, emptyTextOrSignAloneIsZero)
{
    EXPECT_EQ(convert<long long>(""), (tSigned{true, 0}));
    EXPECT_EQ(convert<long long>("-"), (tSigned{true, 0}));
    EXPECT_EQ(convert<long long>("+"), (tSigned{true, 0}));
    EXPECT_EQ(convert<unsigned long long>(""), (tUnsigned{true, 0}));
    EXPECT_EQ(convert<unsigned long long>("+"), (tUnsigned{true, 0}));
}

TEST(Aton64, nullTextIsFalse)
{
    long long signedValue = 5;
    unsigned long long unsignedValue = 5;
    EXPECT_FALSE(aton64(nullptr, 3, signedValue));
    EXPECT_FALSE(aton64(nullptr, 0, unsignedValue));
    EXPECT_EQ(signedValue, 0);
    EXPECT_EQ(unsignedValue, 0U);
}

TEST(Aton64, otherBytesAreFalse)
{
    for (const char* text : {"x", "1x", "1.5", " 1", "1 ", "--1", "+-1", "-+1", "0x10", "1e3", "922337203685477580x"})
    {
        EXPECT_EQ(convert<long long>(text), (tSigned{false, 0})) << text;
        EXPECT_EQ(convert<unsigned long long>(text), (tUnsigned{false, 0})) << text;
    }
    EXPECT_EQ(convert<unsigned long long>("12345678901234567890x"), (tUnsigned{false, 0}));
}

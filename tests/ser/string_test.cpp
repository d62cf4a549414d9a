// tests/ser/string_test.cpp - strings, their escapes, and every message about a bad one.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;

namespace
{
constexpr unsigned int s_cuiUtf8 = s_cuiUsual | LCBC_UNICODE_UTF8;

/// The escape as the third byte of a string in an array on the second line: the string begins at line 2, column 2.
std::string inArray(std::string_view escape, unsigned int flags = s_cuiUsual)
{
    return loaded("[1,\n \"ab" + std::string(escape) + "\"]", flags);
}

std::string refused(const char* message)
{
    return errorAt(2, 2, message, 2, 5);
}
}  // namespace

TEST(String, keepsItsBytes)
{
    EXPECT_EQ(loaded("\"\""), "\"\"");
    EXPECT_EQ(loaded("\"plain text\""), "\"plain text\"");
    EXPECT_EQ(loaded("\"a\nb\tc\""), "\"a\\10b\\9c\"");
    EXPECT_EQ(loaded("\"// /* {}[]#=,\""), "\"// /* {}[]#=,\"");
}

TEST(String, emptyOneIsAnOwnedString)
{
    const tLoad load("[\"\"]");
    const char* data = nullptr;
    EXPECT_EQ(load.m_tTree.getChildAt(0).getCodePoint(&data), 0u);
    EXPECT_NE(data, nullptr);
}

TEST(String, everyEscapeOfOneLetter)
{
    EXPECT_EQ(inArray("\\\"\\/\\\\\\b\\f\\n\\r\\t"), "[1,\"ab\"/\\\\8\\12\\10\\13\\9\"]");
}

TEST(String, hexEscapeIsOneByte)
{
    EXPECT_EQ(inArray("\\x41\\x00\\xfF\\xAb"), "[1,\"abA\\0\\255\\171\"]");
}

TEST(String, unicodeEscapeIsTwoBytesHighFirst)
{
    EXPECT_EQ(inArray("\\u0041\\uD83D\\uabCD"), "[1,\"ab\\0A\\216=\\171\\205\"]");
}

TEST(String, unicodeEscapeIsUtf8WhenSoConfigured)
{
    EXPECT_EQ(inArray("\\u0041\\u007f\\u0080\\u07ff\\u0800\\uffff", s_cuiUtf8),
              "[1,\"abA\\127\\194\\128\\223\\191\\224\\160\\128\\239\\191\\191\"]");
    EXPECT_EQ(inArray("\\u0000", s_cuiUtf8), "[1,\"ab\\0\"]");
}

TEST(String, surrogatePairsAreJoined)
{
    EXPECT_EQ(inArray("\\ud83d\\ude00", s_cuiUtf8), "[1,\"ab\\240\\159\\152\\128\"]");
    EXPECT_EQ(inArray("\\ud800\\udc00", s_cuiUtf8), "[1,\"ab\\240\\144\\128\\128\"]");
    EXPECT_EQ(inArray("\\udbff\\udfff", s_cuiUtf8), "[1,\"ab\\244\\143\\191\\191\"]");
}

TEST(String, secondHalfOfAPairIsNotChecked)
{
    EXPECT_EQ(inArray("\\ud800\\u0041", s_cuiUtf8), "[1,\"ab\\240\\144\\129\\129\"]");
}

TEST(String, lowSurrogateAloneIsACodePoint)
{
    EXPECT_EQ(inArray("\\udc00", s_cuiUtf8), "[1,\"ab\\237\\176\\128\"]");
}

TEST(String, aBackslashTakesTheClosingQuoteAlong)
{
    EXPECT_EQ(loaded("[1,\n \"ab\\\"]"), errorAt(2, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[1,\n \"ab\\"), errorAt(2, 2, s_cpNoValue));
}

TEST(String, unknownEscapeIsRefused)
{
    for (int code = 0; code < 256; ++code)
    {
        const char letter = static_cast<char>(code);
        if (std::string_view("\"\\/bfnrtxu").find(letter) != std::string_view::npos)
            continue;
        EXPECT_EQ(inArray("\\" + std::string(1, letter)), refused("Bad escape sequence in string")) << code;
    }
}

TEST(String, escapeLettersMindCase)
{
    EXPECT_EQ(inArray("\\N"), refused("Bad escape sequence in string"));
    EXPECT_EQ(inArray("\\X41"), refused("Bad escape sequence in string"));
    EXPECT_EQ(inArray("\\U0041"), refused("Bad escape sequence in string"));
}

TEST(String, hexEscapeNeedsTwoDigits)
{
    const char* const message = "Bad hexa escape sequence in string : two digits expected.";
    EXPECT_EQ(inArray("\\x"), refused(message));
    EXPECT_EQ(inArray("\\x4"), refused(message));
    EXPECT_EQ(inArray("\\xg"), refused(message));
}

TEST(String, hexEscapeNeedsHexDigits)
{
    const char* const message = "Bad hexa escape sequence in string";
    EXPECT_EQ(inArray("\\x4g"), refused(message));
    EXPECT_EQ(inArray("\\xg4"), refused(message));
    EXPECT_EQ(inArray("\\x 1"), refused(message));
    EXPECT_EQ(inArray("\\x-1"), refused(message));
}

TEST(String, unicodeEscapeNeedsFourDigits)
{
    const char* const message = "Bad unicode escape sequence in string : four digits expected.";
    EXPECT_EQ(inArray("\\u"), refused(message));
    EXPECT_EQ(inArray("\\u1"), refused(message));
    EXPECT_EQ(inArray("\\u12"), refused(message));
    EXPECT_EQ(inArray("\\u123"), refused(message));
}

TEST(String, unicodeEscapeNeedsHexDigits)
{
    const char* const message = "Bad unicode escape sequence in string";
    EXPECT_EQ(inArray("\\u123g"), refused(message));
    EXPECT_EQ(inArray("\\ug123"), refused(message));
    EXPECT_EQ(inArray("\\u12 4"), refused(message));
}

TEST(String, codePointNeedsFourDigits)
{
    const char* const message = "Bad unicode escape sequence in string: four digits expected.";
    EXPECT_EQ(inArray("\\u", s_cuiUtf8), refused(message));
    EXPECT_EQ(inArray("\\u123", s_cuiUtf8), refused(message));
}

TEST(String, codePointNeedsHexDigits)
{
    const char* const message = "Bad unicode escape sequence in string: hexadecimal digit expected.";
    EXPECT_EQ(inArray("\\u123g", s_cuiUtf8), refused(message));
    EXPECT_EQ(inArray("\\u:123", s_cuiUtf8), refused(message));
    EXPECT_EQ(inArray("\\ud83d\\uzz00", s_cuiUtf8), refused(message));
}

TEST(String, highSurrogateNeedsSixMoreBytes)
{
    const char* const message = "additional six characters expected to parse unicode surrogate pair.";
    EXPECT_EQ(inArray("\\ud83d", s_cuiUtf8), refused(message));
    EXPECT_EQ(inArray("\\ud83d\\ude0", s_cuiUtf8), refused(message));
    EXPECT_EQ(inArray("\\ud83dxxxxx", s_cuiUtf8), refused(message));
}

TEST(String, highSurrogateNeedsASecondEscape)
{
    const char* const message = "expecting another \\u token to begin the second half of a unicode surrogate pair";
    EXPECT_EQ(inArray("\\ud83dxxxxxx", s_cuiUtf8), refused(message));
    EXPECT_EQ(inArray("\\ud83d\\n12345", s_cuiUtf8), refused(message));
}

TEST(String, placeOfABadEscapeIsItsBackslash)
{
    EXPECT_EQ(loaded("[\"\\q\"]"), errorAt(1, 2, "Bad escape sequence in string", 1, 3));
    EXPECT_EQ(loaded("[\"line\nline\\n\\q\"]"), errorAt(1, 2, "Bad escape sequence in string", 2, 7));
    EXPECT_EQ(loaded("{\"a\"=\"\\ud83d\\uzzzz\"}", s_cuiUtf8),
              errorAt(1, 6, "Bad unicode escape sequence in string: hexadecimal digit expected.", 1, 7));
    EXPECT_EQ(loaded("\"\\q\""), errorAt(1, 1, "Bad escape sequence in string", 1, 2));
}

TEST(String, firstBadEscapeIsTheOneNamed)
{
    EXPECT_EQ(loaded("[\"\\q\\xzz\",\"\\w\"]"), errorAt(1, 2, "Bad escape sequence in string", 1, 3));
}

TEST(String, aBadEscapeDoesNotTouchTheNode)
{
    tLoad load("\"\\q\"");
    EXPECT_TRUE(load.m_tTree.isNull());
    load.m_tTree.setValue("before");
    load.load("\"new\\q\"");
    EXPECT_EQ(show(load.m_tTree), "\"before\"");
}

TEST(String, escapesAtEveryDistanceFromEachOther)
{
    for (unsigned int gap = 0; gap <= 40; ++gap)
    {
        const std::string text(gap, 'y');
        EXPECT_EQ(loaded("\"" + text + "\\n" + text + "\\x41" + text + "\""),
                  "\"" + text + "\\10" + text + "A" + text + "\"");
    }
}

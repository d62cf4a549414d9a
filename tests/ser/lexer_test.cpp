// tests/ser/lexer_test.cpp - tokens: blanks, words, punctuation, and the lines and columns of messages.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;
using namespace std::string_view_literals;

TEST(Lexer, blanksAreSpaceTabCarriageReturnAndLineFeed)
{
    EXPECT_EQ(loaded(" \t\r\n{ \t\r\n\"a\" \t\r\n= \t\r\n1 \t\r\n, \t\r\n\"b\"=[ 1 , 2 ] } \t\r\n"), "{a=1,b=[1,2]}");
}

TEST(Lexer, verticalTabAndFormFeedAreNoBlanks)
{
    EXPECT_EQ(loaded("[\v1]"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[\f1]"), errorAt(1, 2, s_cpNoValue));
}

TEST(Lexer, wordsAreTrueFalseAndNull)
{
    EXPECT_EQ(loaded("[true,false,null]"), "[true,false,null]");
}

TEST(Lexer, wordsMindCase)
{
    EXPECT_EQ(loaded("[True]"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[NULL]"), errorAt(1, 2, s_cpNoValue));
}

TEST(Lexer, aWordNeedsNoBoundaryAfterIt)
{
    EXPECT_EQ(loaded("[truex]"), errorAt(1, 6, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("[nulll]"), errorAt(1, 6, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("{\"a\"=falsetrue}"), errorAt(1, 11, s_cpNoFieldsEnd));
}

TEST(Lexer, aWordCutShortIsAnErrorAtItsFirstLetter)
{
    EXPECT_EQ(loaded("[nul]"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[tru"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[fals,1]"), errorAt(1, 2, s_cpNoValue));
}

TEST(Lexer, aColonIsAnErrorAtTheColon)
{
    EXPECT_EQ(loaded("{\"a\":1}"), errorAt(1, 5, s_cpNoFieldsEnd));
    EXPECT_EQ(loaded("{\"a\"=:1}"), errorAt(1, 6, s_cpNoValue));
}

TEST(Lexer, bytesFrom126OnBeginNoToken)
{
    for (int byte = 126; byte <= 255; ++byte)
        EXPECT_EQ(loaded("[" + std::string(1, static_cast<char>(byte)) + "]"), errorAt(1, 2, s_cpNoValue)) << byte;
}

TEST(Lexer, bytesThatBeginNoTokenAreErrors)
{
    for (const char byte : std::string_view("!$%&'*+.:;<>?@ABCXYZ\\^_`abcdegxyz|\x01\x1F\x7F"))
        EXPECT_EQ(loaded("[" + std::string(1, byte) + "]"), errorAt(1, 2, s_cpNoValue)) << byte;
}

TEST(Lexer, bytesFrom126OnAreFineInStringsAndComments)
{
    EXPECT_EQ(loaded("\"\x7E\x7F\x80\xFF\" // \xFE\n"), "\"~\\127\\128\\255\"<1:// \\254>");
}

TEST(Lexer, aByteOfZeroEndsTheData)
{
    EXPECT_EQ(loaded("[1]\0[2"sv), "[1]");
    EXPECT_EQ(loaded("[1\0]"sv), errorAt(1, 3, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("[\0]"sv), errorAt(1, 2, s_cpNoValue));
}

TEST(Lexer, aByteOfZeroWithinAStringIsKept)
{
    EXPECT_EQ(loaded("\"a\0b\""sv), "\"a\\0b\"");
}

TEST(Lexer, anUnclosedStringIsAnErrorAtItsQuote)
{
    EXPECT_EQ(loaded("[\"abc]"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[\"abc\\\"]"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[\"abc\\"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[\""), errorAt(1, 2, s_cpNoValue));
}

TEST(Lexer, aBackslashTakesTheByteAfterItWithIt)
{
    EXPECT_EQ(loaded("\"\\\\\""), "\"\\\"");
    EXPECT_EQ(loaded("[\"\\\\\",\"\\\"\",\"\\\\\\\"\"]"), "[\"\\\",\"\"\",\"\\\"\"]");
}

TEST(Lexer, stringsEndAtTheRightPlaceAtEveryLength)
{
    for (unsigned int length = 0; length <= 70; ++length)
    {
        const std::string text(length, 'x');
        EXPECT_EQ(loaded("[\"" + text + "\",1]"), "[\"" + text + "\",1]");
        EXPECT_EQ(loaded("[\"" + text + "\\\\\",1]"), "[\"" + text + "\\\",1]");
        EXPECT_EQ(loaded("[\"" + text), errorAt(1, 2, s_cpNoValue));
        EXPECT_EQ(loaded("[\"" + text + "\\"), errorAt(1, 2, s_cpNoValue));
    }
}

TEST(Lexer, runsOfBlanksEndAtTheRightPlaceAtEveryLength)
{
    for (unsigned int length = 0; length <= 70; ++length)
        EXPECT_EQ(loaded("[" + std::string(length, ' ') + "1" + std::string(length, '\t') + "]"), "[1]") << length;
}

TEST(Lexer, aNumberTokenStopsAtTheFirstByteThatDoesNotFit)
{
    EXPECT_EQ(loaded("[1 2]"), errorAt(1, 4, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("[1.2.3]"), errorAt(1, 5, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("[1e2e3]"), errorAt(1, 5, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("[1-2]"), errorAt(1, 3, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("[--1]"), errorAt(1, 3, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("[0x10]"), errorAt(1, 3, s_cpNoArrayEnd));
}

TEST(Lexer, aNumberDoesNotBeginWithAPlusOrAPoint)
{
    EXPECT_EQ(loaded("[+1]"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[.5]"), errorAt(1, 2, s_cpNoValue));
}

TEST(Lexer, linesEndWithCarriageReturnLineFeedOrBoth)
{
    EXPECT_EQ(loaded("[1,\n@]"), errorAt(2, 1, s_cpNoValue));
    EXPECT_EQ(loaded("[1,\r@]"), errorAt(2, 1, s_cpNoValue));
    EXPECT_EQ(loaded("[1,\r\n@]"), errorAt(2, 1, s_cpNoValue));
    EXPECT_EQ(loaded("[1,\n\r@]"), errorAt(3, 1, s_cpNoValue));
    EXPECT_EQ(loaded("[1,\r\r\n\n  @]"), errorAt(4, 3, s_cpNoValue));
}

TEST(Lexer, columnsCountBytes)
{
    EXPECT_EQ(loaded("[\"\xC3\xA9\",@]"), errorAt(1, 7, s_cpNoValue));
    EXPECT_EQ(loaded("[\t\t@]"), errorAt(1, 4, s_cpNoValue));
}

TEST(Lexer, lineBreaksInStringsAndCommentsCount)
{
    EXPECT_EQ(loaded("[\"a\nb\",/*\r\n*/ // x\n@]"), errorAt(4, 1, s_cpNoValue));
}

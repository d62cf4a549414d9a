// tests/ser/error_test.cpp - what is left to read after a failed load, and that one error is one record.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;

namespace
{
std::string ranges(const tLoad& load)
{
    std::string text;
    for (const tErrorRange& range : load.m_tLoader.getErrorRanges())
        text += std::to_string(range.m_uiStart) + ".." + std::to_string(range.m_uiEnd) + " " + range.m_strMessage + ";";
    return text;
}
}  // namespace

TEST(Error, messageHasLocationAndText)
{
    EXPECT_EQ(loaded("{\n\"a\"=1,\n  \"b\"=@}"),
              "* Line 3, Column 7\n  Syntax error: value, field or array expected.\n");
}

TEST(Error, messageWithASecondPlaceHasThreeLines)
{
    EXPECT_EQ(loaded("\n \"ab\\xzz\""),
              "* Line 2, Column 2\n  Bad hexa escape sequence in string\n"
              "See Line 2, Column 5 for detail.\n");
}

TEST(Error, onTheFirstLineNamesTheTokensFirstByte)
{
    EXPECT_EQ(loaded("  @").substr(0, 20), "* Line 1, Column 3\n ");
}

TEST(Error, codeStaysZero)
{
    const tLoad load("@");
    EXPECT_FALSE(load.m_bDone);
    EXPECT_EQ(load.m_tLoader.getLastErrCode(), 0);
    EXPECT_FALSE(load.m_tLoader.getStatus());
    EXPECT_TRUE(load.m_tLoader.isError());
}

TEST(Error, successLeavesNone)
{
    tLoad load("@");
    load.load("{\"a\"=1}");
    EXPECT_TRUE(load.m_bDone);
    EXPECT_EQ(load.m_tLoader.getLastErrMsg(), "");
    EXPECT_EQ(load.m_tLoader.getLastErrCode(), 0);
    EXPECT_TRUE(load.m_tLoader.getStatus());
    EXPECT_TRUE(load.m_tLoader.getErrorRanges().empty());
}

TEST(Error, rangeIsThatOfTheToken)
{
    EXPECT_EQ(ranges(tLoad("[1, nul]")), "4..5 Syntax error: value, field or array expected.;");
    EXPECT_EQ(ranges(tLoad("[\"open")), "1..6 Syntax error: value, field or array expected.;");
    EXPECT_EQ(ranges(tLoad("{#99999999999 1}")), "1..13 Failed to loading for the #ID syntax;");
    EXPECT_EQ(ranges(tLoad("[\"\\q\"]")), "1..5 Bad escape sequence in string;");
    EXPECT_EQ(ranges(tLoad("[1 \"two\"]")), "3..8 Missing ',' or ']' in array declaration;");
    EXPECT_EQ(ranges(tLoad("")), "0..0 Missing '}' or field member name;");
}

TEST(Error, isOneHoweverDeepItLies)
{
    EXPECT_EQ(loaded("{\"a\"=[{\"b\"=[@]}]}"), errorAt(1, 13, s_cpNoValue));
    EXPECT_EQ(loaded("[[[[{\"a\"=[1 2]}]]]]"), errorAt(1, 13, s_cpNoArrayEnd));
    EXPECT_EQ(loaded(repeated("[", 900) + "@"), errorAt(1, 901, s_cpNoValue));
    EXPECT_EQ(loaded(repeated("{\"a\"=", 900) + "@"), errorAt(1, 4501, s_cpNoValue));
}

TEST(Error, whatIsSkippedIsNotReported)
{
    EXPECT_EQ(loaded("[@ \"open \\q\" ( #0 ]"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("{\"a\"=@, \"b\"=\"\\q\", \"c\"=()}"), errorAt(1, 6, s_cpNoValue));
    EXPECT_EQ(loaded("[@ \"open"), errorAt(1, 2, s_cpNoValue));
}

TEST(Error, commentsInWhatIsSkippedAreKept)
{
    EXPECT_EQ(show(tLoad("[@ /*c*/ ] /*d*/").m_tTree), "[]<1:/*d*/><2:/*c*/>");
    EXPECT_EQ(show(tLoad("{-2=1, \"b\"=\"\\xzz\",\"c\"\n//d\n=nul\n}").m_tTree), "{}<2://d>");
    EXPECT_EQ(show(tLoad("[1, @ /*of the number*/ ]").m_tTree), "[]");
}

TEST(Error, commentsAfterAPacketExpressionThatIsNotClosedAreKept)
{
    EXPECT_EQ(show(tLoad("/*c*/(ACF8 note\n// d\n5").m_tTree), "null<0:/*c*/\\10// d>");
}

TEST(Error, commentsAfterARootWithoutValueFollowTheDocument)
{
    EXPECT_EQ(show(tLoad("\"n\" = @ // x").m_tTree), "n=null<2:// x>");
    EXPECT_EQ(show(tLoad("#0 // z\n// y").m_tTree), "null<2:// z\\10// y>");
    EXPECT_EQ(show(tLoad("(ACV2+129) /*f*/ /*g*/ false").m_tTree), "null<2:/*f*//*g*/>");
}

TEST(Error, commentsAfterARootOfBadEscapesTrailIt)
{
    EXPECT_EQ(show(tLoad("\"\\q\" // z").m_tTree), "null<1:// z>");
}

TEST(Error, commentsAfterAFailedContainerTrailIt)
{
    EXPECT_EQ(show(tLoad("{1 /*q*/ \"x\" // z").m_tTree), "{}<1:// z>");
}

TEST(Error, aBlockThatSpansLinesCountsThem)
{
    EXPECT_EQ(loaded("/*\n\n*/ [\n@"), errorAt(4, 1, s_cpNoValue));
}

TEST(Error, aLongOneIsNotCut)
{
    const std::string message = loaded(repeated("\n", 100000) + "@");
    EXPECT_EQ(message, errorAt(100001, 1, s_cpNoName));
}

TEST(Error, dataThatIsTooBigIsRefusedUnread)
{
    CLoader4SER loader;
    CFields tree(7);
    const char byte = '1';
    EXPECT_FALSE(loader.loadit(&byte, 2147483648u, tree));
    EXPECT_EQ(loader.getLastErrCode(), -991);
    EXPECT_NE(loader.getLastErrMsg().find("] Too big data size(2147483648)"), std::string::npos);
    EXPECT_EQ(loader.getLastErrMsg().substr(0, 31),
              "[murv::CLoader4SER::loadit#" + loader.getLastErrMsg().substr(27, 4));
    EXPECT_EQ(tree.asSint32(), 7);
}

TEST(Error, nullDataIsAnEmptyDocument)
{
    CLoader4SER loader;
    CFields tree;
    EXPECT_FALSE(loader.loadit(nullptr, 5, tree));
    EXPECT_EQ(loader.getLastErrMsg(), errorAt(1, 1, s_cpNoName));
}

// tests/ser/comment_test.cpp - where comments go, and that none gets lost or is kept twice.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;
using namespace std::string_view_literals;

TEST(Comment, beforeTheRootGoesBeforeIt)
{
    EXPECT_EQ(loaded("/*c*/ {\"a\"=1}"), "{a=1}<0:/*c*/>");
    EXPECT_EQ(loaded("// c\n[1]"), "[1]<0:// c>");
    EXPECT_EQ(loaded("/*c*/5"), "5<0:/*c*/>");
}

TEST(Comment, onTheLineOfTheRootTrailsIt)
{
    EXPECT_EQ(loaded("5 // x"), "5<1:// x>");
    EXPECT_EQ(loaded("\"t\" /* x */"), "\"t\"<1:/* x */>");
    EXPECT_EQ(loaded("[1] // x\n"), "[1]<1:// x>");
    EXPECT_EQ(loaded("{\"a\"=1} /*x*/"), "{a=1}<1:/*x*/>");
}

TEST(Comment, onALaterLineThanTheRootGoesAfterIt)
{
    EXPECT_EQ(loaded("5\n// x\n// y\n"), "5<2:// x\\10// y>");
    EXPECT_EQ(loaded("[1]\n/* x */"), "[1]<2:/* x */>");
}

TEST(Comment, trailingAndAfterTheRootAreBothKept)
{
    EXPECT_EQ(loaded("5 // x\n// y"), "5<1:// x><2:// y>");
}

TEST(Comment, afterTextThatIsIgnoredIsNotRead)
{
    EXPECT_EQ(loaded("5 6 // x"), "5");
}

TEST(Comment, beforeAMemberGoesBeforeIt)
{
    EXPECT_EQ(loaded("{\n// c\n\"a\"=1}"), "{a=1<0:// c>}");
    EXPECT_EQ(loaded("{\"a\"=1,\n/*c*/ \"b\"=2}"), "{a=1,b=2<0:/*c*/>}");
}

TEST(Comment, inEverySpotOfAMemberGoesBeforeIt)
{
    EXPECT_EQ(loaded("{/*c*/\"a\"=1}"), "{a=1<0:/*c*/>}");
    EXPECT_EQ(loaded("{/*c*/#7 \"a\"=1}"), "{#7 a=1<0:/*c*/>}");
    EXPECT_EQ(loaded("{#7 /*c*/\"a\"=1}"), "{#7 a=1<0:/*c*/>}");
    EXPECT_EQ(loaded("{\"a\"/*c*/=1}"), "{a=1<0:/*c*/>}");
    EXPECT_EQ(loaded("{\"a\"=/*c*/1}"), "{a=1<0:/*c*/>}");
    EXPECT_EQ(loaded("{\"a\"=/*c*/{\"b\"=1}}"), "{a={b=1}<0:/*c*/>}");
    EXPECT_EQ(loaded("{\"a\"=/*c*/[1]}"), "{a=[1]<0:/*c*/>}");
    EXPECT_EQ(loaded("{/*c*/1}"), "{1<0:/*c*/>}");
    EXPECT_EQ(loaded("{/*c*/\"t\"}"), "{\"t\"<0:/*c*/>}");
    EXPECT_EQ(loaded("{/*c*/[1]}"), "{[1]<0:/*c*/>}");
    EXPECT_EQ(loaded("{#7/*c*/5}"), "{#7 5<0:/*c*/>}");
    EXPECT_EQ(loaded("{\"a\"=(ACF4)/*c*/5}"), "{a=5<0:/*c*/>}");
}

TEST(Comment, inEverySpotOfTheRootsHeadGoesBeforeTheRoot)
{
    EXPECT_EQ(loaded("#7/*c*/\"a\"=1"), "#7 a=1<0:/*c*/>");
    EXPECT_EQ(loaded("#7 \"a\"/*c*/=1"), "#7 a=1<0:/*c*/>");
    EXPECT_EQ(loaded("#7 \"a\"=/*c*/1"), "#7 a=1<0:/*c*/>");
    EXPECT_EQ(loaded("#7 \"a\"=(ACF4)/*c*/1"), "#7 a=1<0:/*c*/>");
}

TEST(Comment, beforeAnElementGoesBeforeIt)
{
    EXPECT_EQ(loaded("[/*c*/1]"), "[1<0:/*c*/>]");
    EXPECT_EQ(loaded("[1,\n// c\n2]"), "[1,2<0:// c>]");
    EXPECT_EQ(loaded("[/*c*/]"), "[null<0:/*c*/>]");
    EXPECT_EQ(loaded("[/*c*/[/*d*/1]]"), "[[1<0:/*d*/>]<0:/*c*/>]");
}

TEST(Comment, severalInARowAreJoined)
{
    EXPECT_EQ(loaded("{// c\n// d\n/*e*/ /*f*/ \"a\"=1}"), "{a=1<0:// c\\10// d\\10/*e*/\\10/*f*/>}");
}

TEST(Comment, beforeDifferentPartsOfOneNodeAreJoinedByLineFeeds)
{
    EXPECT_EQ(loaded("// License header\n\"config\" = // main\n{ \"a\" = 1 }"),
              "config={a=1}<0:// License header\\10// main>");
    EXPECT_EQ(loaded("{ /*a*/ \"x\" = (ANF4) /*c*/ 5 }"), "{x=5<0:/*a*/\\10/*c*/>}");
    EXPECT_EQ(loaded("{ /*a*/ #7 /*b*/ \"x\" /*c*/ = /*d*/ (ANF4) /*e*/ 5 }"),
              "{#7 x=5<0:/*a*/\\10/*b*/\\10/*c*/\\10/*d*/\\10/*e*/>}");
    EXPECT_EQ(loaded("/*a*/ #7 /*b*/ \"x\" /*c*/ = /*d*/ (ANF4) /*e*/ 5"),
              "#7 x=5<0:/*a*/\\10/*b*/\\10/*c*/\\10/*d*/\\10/*e*/>");
    EXPECT_EQ(loaded("[ /*a*/ (ANF4) // b\n 5 ]"), "[5<0:/*a*/\\10// b>]");
    EXPECT_EQ(loaded("/*a*/ \"x\" = //\n{}"), "x={null}<0:/*a*/\\10//>");
}

TEST(Comment, beforeANodeTakesThePlaceOfWhatTheTargetHad)
{
    tLoad load("/*old*/ 1");
    load.load("/*a*/ \"x\" = /*b*/ 2");
    EXPECT_EQ(load.result(), "x=2<0:/*a*/\\10/*b*/>");
    load.load("3");
    EXPECT_EQ(load.result(), "x=3<0:/*a*/\\10/*b*/>");
}

TEST(Comment, afterTheRootIsNotDividedIntoLines)
{
    EXPECT_EQ(loaded("5\n/*x*/\n/*y*/ // z"), "5<2:/*x*//*y*/// z>");
    EXPECT_EQ(loaded("/*a*/ /*b*/ 5\n/*x*/ /*y*/"), "5<0:/*a*/\\10/*b*/><2:/*x*//*y*/>");
}

TEST(Comment, afterAMemberOnItsLineTrailsIt)
{
    EXPECT_EQ(loaded("{\"a\"=1 // c\n,\"b\"=2}"), "{a=1<1:// c>,b=2}");
    EXPECT_EQ(loaded("{\"a\"=1, // c\n\"b\"=2}"), "{a=1<1:// c>,b=2}");
    EXPECT_EQ(loaded("{\"a\"=1 /*c*/,\"b\"=2}"), "{a=1<1:/*c*/>,b=2}");
    EXPECT_EQ(loaded("{\"a\"=1}// c"), "{a=1}<1:// c>");
    EXPECT_EQ(loaded("{\"a\"=1/*c*/}"), "{a=1<1:/*c*/>}");
    EXPECT_EQ(loaded("{\"a\"={\"b\"=1} // c\n}"), "{a={b=1}<1:// c>}");
    EXPECT_EQ(loaded("{\"a\"=[1] // c\n}"), "{a=[1]<1:// c>}");
}

TEST(Comment, afterAnElementOnItsLineTrailsIt)
{
    EXPECT_EQ(loaded("[1 // c\n,2, // d\n3 /*e*/]"), "[1<1:// c>,2<1:// d>,3<1:/*e*/>]");
    EXPECT_EQ(loaded("[true /*c*/,\"t\" /*d*/,null /*e*/,[] /*f*/]"),
              "[true<1:/*c*/>,\"t\"<1:/*d*/>,null<1:/*e*/>,[null]<1:/*f*/>]");
}

TEST(Comment, afterAMissingValueTrailsItsMember)
{
    EXPECT_EQ(loaded("{\"a\"= , // c\n\"b\"=2}"), "{a=null<1:// c>,b=2}");
    EXPECT_EQ(loaded("{\"a\"= // c\n,\"b\"=2}"), "{a=null<0:// c>,b=2}");
}

TEST(Comment, afterAFirstMemberWithoutNameIsFoundAfterLookingAhead)
{
    EXPECT_EQ(loaded("{1 // x\n}"), "{1<1:// x>}");
    EXPECT_EQ(loaded("{\"t\" // x\n,2}"), "{\"t\"<1:// x>,2}");
    EXPECT_EQ(loaded("{\"t\"\n// x\n,2}"), "{\"t\",2<0:// x>}");
}

TEST(Comment, onTheLineOfAnEarlierValueGoesThereWhateverFollows)
{
    EXPECT_EQ(loaded("{\"a\"=1,\"b\" /*c*/ =2}"), "{a=1<1:/*c*/>,b=2}");
    EXPECT_EQ(loaded("{\"a\"=1,\"b\"={ /*c*/\n\"d\"=2}}"), "{a=1<1:/*c*/>,b={d=2}}");
    EXPECT_EQ(loaded("[1,[[ // c\n2]]]"), "[1<1:// c>,[[2]]]");
}

TEST(Comment, aBlockOfSeveralLinesDoesNotTrail)
{
    EXPECT_EQ(loaded("{\"a\"=1, /*c\n*/ \"b\"=2}"), "{a=1,b=2<0:/*c\\10*/>}");
    EXPECT_EQ(loaded("{\"a\"=1, /*c\r*/ \"b\"=2}"), "{a=1,b=2<0:/*c\\10*/>}");
    EXPECT_EQ(loaded("5 /*c\n*/"), "5<2:/*c\\10*/>");
}

TEST(Comment, afterABlockOfSeveralLinesItIsANewLine)
{
    EXPECT_EQ(loaded("5 /*c\n*/ /*d*/"), "5<2:/*c\\10*//*d*/>");
    EXPECT_EQ(loaded("[1 /*c\n*/ // d\n,2]"), "[1,2<0:/*c\\10*/\\10// d>]");
}

TEST(Comment, ofSeveralThatTrailTheLastIsKept)
{
    EXPECT_EQ(loaded("5 /*c*/ /*d*/ // e"), "5<1:// e>");
}

TEST(Comment, anyLineEndSeparatesLines)
{
    EXPECT_EQ(loaded("[1,\r// c\r2]"), "[1,2<0:// c>]");
    EXPECT_EQ(loaded("[1,\r\n// c\r\n2]"), "[1,2<0:// c>]");
    EXPECT_EQ(loaded("[1 // c\r,2 // d\r\n,3 // e\n]"), "[1<1:// c>,2<1:// d>,3<1:// e>]");
}

TEST(Comment, lineEndsWithinAreKeptAsLineFeeds)
{
    EXPECT_EQ(loaded("/*a\r\nb\rc\nd\r\r\n*/5"), "5<0:/*a\\10b\\10c\\10d\\10\\10*/>");
}

TEST(Comment, theEndOfTheDataEndsALineComment)
{
    EXPECT_EQ(loaded("5 //"), "5<1://>");
    EXPECT_EQ(loaded("5 //x\r"), "5<1://x>");
}

TEST(Comment, ofTheShortestFormIsOne)
{
    EXPECT_EQ(loaded("/**/5"), "5<0:/**/>");
    EXPECT_EQ(loaded("/***/5"), "5<0:/***/>");
    EXPECT_EQ(loaded("//\n5"), "5<0://>");
}

TEST(Comment, isNotEndedByItsOwnBeginning)
{
    EXPECT_EQ(loaded("[1,/*/2]"), errorAt(1, 4, s_cpNoValue));
    EXPECT_EQ(loaded("/*/*/5"), "5<0:/*/*/>");
}

TEST(Comment, unclosedOrHalfIsAnErrorAtItsSlash)
{
    EXPECT_EQ(loaded("[1,/*2]"), errorAt(1, 4, s_cpNoValue));
    EXPECT_EQ(loaded("[1,/*2*"), errorAt(1, 4, s_cpNoValue));
    EXPECT_EQ(loaded("[1,/"), errorAt(1, 4, s_cpNoValue));
    EXPECT_EQ(loaded("[/1]"), errorAt(1, 2, s_cpNoValue));
}

TEST(Comment, isSkippedWhenTheCallerDoesNotWantIt)
{
    EXPECT_EQ(tLoad("/*a*/{\"a\"/*b*/=/*c*/1/*d*/,/*e*/\"b\"=[1/*f*/]}/*g*/", s_cuiUsual, false).result(),
              "{a=1,b=[1]}");
}

TEST(Comment, isASyntaxErrorForAValueWhereNotTolerated)
{
    EXPECT_EQ(loadedWithout(LCBC_COMMENT, "[/*c*/1]"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loadedWithout(LCBC_COMMENT, "{\"a\"=/*c*/1}"), errorAt(1, 6, s_cpNoValue));
    EXPECT_EQ(loadedWithout(LCBC_COMMENT, "/*c*/1"), errorAt(1, 1, s_cpNoName));
    EXPECT_EQ(loadedWithout(LCBC_COMMENT, "{\"a\"/*c*/=1}"), errorAt(1, 10, s_cpNoComma));
}

TEST(Comment, isSkippedBetweenMembersWhateverTheConfiguration)
{
    EXPECT_EQ(loadedWithout(LCBC_COMMENT, "{/*a*/\"a\"=1/*b*/,/*c*/#1/*d*/\"b\"=2/*e*/}/*f*/"), "{a=1,#1 b=2}");
    EXPECT_EQ(loadedWithout(LCBC_COMMENT, "[1/*a*/,2/*b*/]"), "[1,2]");
}

TEST(Comment, standsBesideAllOtherPartsOfItsMember)
{
    EXPECT_EQ(loaded("// r\n{\n  // a\n  #3 \"a\" = 1, // t\n  \"b\" = 2 // u\n}\n// z\n"),
              "{#3 a=1<0:// a><1:// t>,b=2<1:// u>}<0:// r><2:// z>");
}

// A member may be found by its ID deep in another one that is then replaced: the comment on that line cannot go to it.
TEST(Comment, isNotGivenToANodeThatIsGone)
{
    EXPECT_EQ(loaded("{\"r\"={#1 5}, #1 6, \"r\"={ // c\n \"x\"=1}}"), "{r={x=1<0:// c>}}");
    EXPECT_EQ(loaded("{\"r\"=[{#1 5}], #1 6, \"r\"= /*c*/ [7]}"), "{r=[7]<0:/*c*/>}");
    EXPECT_EQ(loaded("{#9 {#1 5}, #1 6, #9 = /*c*/ 8}"), "{#9 8<0:/*c*/>}");
}

TEST(Comment, ofANodeReadAgainStaysUnlessThereIsANewOne)
{
    EXPECT_EQ(loaded("{\"a\"=1 /*c*/,\n\"a\"=2\n}"), "{a=2<1:/*c*/>}");
    EXPECT_EQ(loaded("{\"a\"=1 /*c*/,\n\"a\"=2 /*d*/}"), "{a=2<1:/*d*/>}");
    EXPECT_EQ(loaded("{/*c*/ \"a\"=1,\n\"a\"=2}"), "{a=2<0:/*c*/>}");
    EXPECT_EQ(loaded("{/*c*/ \"a\"=1,\n/*d*/ \"a\"=2}"), "{a=2<0:/*d*/>}");
}

// Members of small containers are moved when their container ends; what follows must still find the last value.
TEST(Comment, findsItsValueWhereverThatWasMovedTo)
{
    for (unsigned int count = 1; count < 200; ++count)
    {
        const std::string members = repeated("1,", count - 1);
        const std::string text = "[" + members + "2 /*c*/]";
        EXPECT_EQ(loaded(text), "[" + members + "2<1:/*c*/>]") << count;
        EXPECT_EQ(loaded("[" + members + "[3],{#5 4 // c\n,7}]"), "[" + members + "[3],{#5 4<1:// c>,7}]") << count;
    }
}

// Its text would end there, and a comment without its end would swallow what a saver writes after it.
TEST(Comment, hasBlanksForBytesOfZero)
{
    EXPECT_EQ(loaded("/*a\0b\0*/5 // c\0"sv), "5<0:/*a b */><1:// c >");
    EXPECT_EQ(loaded("/**\0/ */5"sv), "5<0:/** / */>");
}

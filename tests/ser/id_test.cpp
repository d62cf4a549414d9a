// tests/ser/id_test.cpp - IDs of members, and what happens when one is given again.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;

TEST(Id, standsBeforeNameAndValue)
{
    EXPECT_EQ(loaded("{#1 \"a\"=1,#2 2,#3{3},#4[4],#5 \"t\",#6 true}"), "{#1 a=1,#2 2,#3 {3},#4 [4],#5 \"t\",#6 true}");
}

TEST(Id, mustBeIn1To2147483647)
{
    EXPECT_EQ(loaded("{#2147483647 1}"), "{#2147483647 1}");
    EXPECT_EQ(loaded("{#0000000000000000000000000000000001 1}"), "{#1 1}");
    EXPECT_EQ(loaded("{#0 1}"), errorAt(1, 2, s_cpBadId));
    EXPECT_EQ(loaded("{# 1}"), errorAt(1, 2, s_cpBadId));
    EXPECT_EQ(loaded("{#x 1}"), errorAt(1, 2, s_cpBadId));
    EXPECT_EQ(loaded("{#2147483648 1}"), errorAt(1, 2, s_cpBadId));
    EXPECT_EQ(loaded("{#4294967297 1}"), errorAt(1, 2, s_cpBadId));
    EXPECT_EQ(loaded("{#18446744073709551617 1}"), errorAt(1, 2, s_cpBadId));
    EXPECT_EQ(loaded("{#" + std::string(40, '1') + " 1}"), errorAt(1, 2, s_cpBadId));
}

TEST(Id, givenAgainReadsTheSameMember)
{
    EXPECT_EQ(loaded("{#1 1,#2 2,#1 3}"), "{#1 3,#2 2}");
    EXPECT_EQ(loaded("{#1 \"a\"=1,#1 \"b\"=2}"), "{#1 a=2}");
    EXPECT_EQ(loaded("{#1 1,#1 {\"x\"=1},#1 [2]}"), "{#1 [2]}");
}

TEST(Id, givenAgainReadsANodeAnywhereBelow)
{
    EXPECT_EQ(loaded("{\"a\"={\"b\"={#1 1}},#1 2}"), "{a={b={#1 2}}}");
    EXPECT_EQ(loaded("{\"a\"=[[{#1 1}],5],#1 2}"), "{a=[[{#1 2}],5]}");
    EXPECT_EQ(loaded("{\"a\"={#1 {\"x\"=1}},#1 {\"y\"=2},\"b\"=3}"), "{a={#1 {y=2}},b=3}");
}

TEST(Id, isNotSoughtAboveOrBeside)
{
    EXPECT_EQ(loaded("{#1 1,\"a\"={#1 2}}"), "{#1 1,a={#1 2}}");
    EXPECT_EQ(loaded("[{#1 1},{#1 2},{#1 3,#1 4}]"), "[{#1 1},{#1 2},{#1 4}]");
}

TEST(Id, ofSeveralBelowTheFirstInTheDocumentIsRead)
{
    EXPECT_EQ(loaded("{\"a\"={#1 1},\"b\"={#1 2},#1 3}"), "{a={#1 3},b={#1 2}}");
    EXPECT_EQ(loaded("{\"a\"=[{#1 1},{#1 2},{#1 3}],#1 4,#1 5}"), "{a=[{#1 5},{#1 2},{#1 3}]}");
    EXPECT_EQ(loaded("{\"x\"={#1 0},\"y\"={\"a\"={#1 1},\"b\"={#1 2},#1 3},#1 4}"), "{x={#1 4},y={a={#1 3},b={#1 2}}}");
}

TEST(Id, aContainerComesBeforeWhatItHolds)
{
    EXPECT_EQ(loaded("{#1 {\"a\"={#1 2}},#1 3}"), "{#1 3}");
}

TEST(Id, aNameThatIsKnownComesFirst)
{
    EXPECT_EQ(loaded("{\"a\"=1,#2 \"b\"=2,#2 \"a\"=3}"), "{a=3,#2 b=2}");
}

TEST(Id, isNotGivenToAMemberThatWasThereBefore)
{
    EXPECT_EQ(loaded("{\"a\"=1,#2 \"a\"=3,#2 4}"), "{a=3,#2 4}");
}

TEST(Id, ofTheContainerItselfIsAnError)
{
    EXPECT_EQ(loaded("{#1 {#1 2}}"), errorAt(1, 9, s_cpNotAdded));
    EXPECT_EQ(loaded("#1 {\"a\"=1,#1 2}"), errorAt(1, 14, s_cpNotAdded));
    EXPECT_EQ(loaded("#1 {#1 \"b\"=2}"), errorAt(1, 8, s_cpNotAdded));
    EXPECT_EQ(loaded("#1 {#1}"), errorAt(1, 7, s_cpNotAdded));
}

TEST(Id, ofAContainerFurtherUpIsNone)
{
    EXPECT_EQ(loaded("#1 {\"a\"={#1 2}}"), "#1 {a={#1 2}}");
}

TEST(Id, isFoundOnlyWhileItsNodeIsThere)
{
    EXPECT_EQ(loaded("{\"a\"={#1 1},\"a\"={\"x\"=2},#1 3}"), "{a={x=2},#1 3}");
    EXPECT_EQ(loaded("{\"a\"={#1 1},\"a\"=5,#1 3}"), "{a=5,#1 3}");
    EXPECT_EQ(loaded("{#9 [[{#1 1}],{#2 2}],#9 {#2 3},#1 4,#2 5}"), "{#9 {#2 5},#1 4}");
    EXPECT_EQ(loaded("{#1 1,\"a\"={#2 2},\"a\"={#2 3},\"a\"={#2 4},#2 5,#1 6}"), "{#1 6,a={#2 5}}");
}

TEST(Id, inAContainerReadAgainComesWhereTheContainerLies)
{
    // #5 is made last but lies first.
    EXPECT_EQ(loaded("{\"a\"={\"x\"=1},\"b\"={#5 2},\"a\"={#5 3},#5 4}"), "{a={#5 4},b={#5 2}}");
    EXPECT_EQ(loaded("{\"a\"=1,\"b\"={#5 2},\"a\"={#5 3},#5 4}"), "{a={#5 4},b={#5 2}}");
    // Two levels down, reached by another ID.
    EXPECT_EQ(loaded("{\"a\"={#1 {\"x\"=1}},\"b\"={#5 2},#1 {\"y\"={#5 3}},#5 4}"), "{a={#1 {y={#5 4}}},b={#5 2}}");
    // And one that lies last.
    EXPECT_EQ(loaded("{\"b\"={#5 2},\"a\"={#1 {\"x\"=1}},#1 {#5 3},#5 4}"), "{b={#5 4},a={#1 {#5 3}}}");
}

TEST(Id, firstOfSeveralIsFoundAgainWhenTheFirstIsGone)
{
    EXPECT_EQ(loaded("{\"a\"={#1 1},\"b\"={#1 2},\"c\"={#1 3},#1 4,\"a\"=0,#1 5,\"b\"=0,#1 6,\"c\"=0,#1 7}"),
              "{a=0,b=0,c=0,#1 7}");
}

// The members of "o" are read a second time, more than a few of them and at two depths.
TEST(Id, firstOfManyIsFoundInAContainerReadAgain)
{
    const std::string nine = "{#1}" + repeated(",{#1}", 8);
    const tLoad load("{\"o\"=[[[[" + nine + "]]]],#1 0,\"o\"=[[[{#1}]" + repeated(",[{#1}]", 4) + repeated(",{#1}", 5) +
                     "]],#1 9}");
    EXPECT_EQ(load.result(), "{o=[[[{#1 9}]" + repeated(",[{#1 null}]", 4) + repeated(",{#1 null}", 5) + "]]}");
}

TEST(Id, isAddedEachTimeWhereDuplicatesAreAllowed)
{
    EXPECT_EQ(loaded("{#1 1,#1 2,\"a\"={#1 3}}", s_cuiUsual | LCBC_DUPLICATE), "{#1 1,#1 2,a={#1 3}}");
    EXPECT_EQ(loaded("#1 {#1 1}", s_cuiUsual | LCBC_DUPLICATE), "#1 {#1 1}");
}

TEST(Id, belongsToOneLoadOnly)
{
    tLoad load("{#1 {#2 3}}");
    load.load("{#2 4,#1 5}");
    EXPECT_EQ(load.result(), "{#2 4,#1 5}");
}

TEST(Id, isFoundAmongMany)
{
    std::string text = "{";
    std::string expected = "{";
    for (int i = 1; i <= 3000; ++i)
    {
        text += "#" + std::to_string(i) + " " + std::to_string(i) + ",";
        expected += "#" + std::to_string(i) + " " + std::to_string(-i) + (i == 3000 ? "}" : ",");
    }
    for (int i = 3000; i >= 1; --i)
        text += "#" + std::to_string(i) + " " + std::to_string(-i) + (i == 1 ? "}" : ",");
    EXPECT_EQ(loaded(text), expected);
}

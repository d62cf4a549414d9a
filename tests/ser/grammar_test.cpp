// tests/ser/grammar_test.cpp - field sets, arrays, what may be left out, and how deep they nest.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"
#include "tests/support/thrown.h"

using namespace murv;
using namespace murv::tests;

TEST(Grammar, aFieldSetHoldsMembersInOrder)
{
    EXPECT_EQ(loaded("{\"b\"=1,\"a\"=\"x\",\"c\"={\"d\"=[true]}}"), "{b=1,a=\"x\",c={d=[true]}}");
}

TEST(Grammar, anArrayHoldsElementsInOrder)
{
    EXPECT_EQ(loaded("[1,\"x\",[2,3],{\"a\"=4},null]"), "[1,\"x\",[2,3],{a=4},null]");
}

TEST(Grammar, membersNeedNoName)
{
    EXPECT_EQ(loaded("{1,\"t\",true,null,[2],{3}}"), "{1,\"t\",true,null,[2],{3}}");
}

TEST(Grammar, anEmptyContainerHoldsOneNullMember)
{
    EXPECT_EQ(loaded("{}"), "{null}");
    EXPECT_EQ(loaded("[]"), "[null]");
    EXPECT_EQ(loaded(" { } "), "{null}");
}

TEST(Grammar, aMissingValueIsNull)
{
    EXPECT_EQ(loaded("{\"a\"=,\"b\"=}"), "{a=null,b=null}");
    EXPECT_EQ(loaded("[,]"), "[null,null]");
    EXPECT_EQ(loaded("[1,,2]"), "[1,null,2]");
    EXPECT_EQ(loaded("{,}"), "{null,null}");
    EXPECT_EQ(loaded("{#1,#2 \"a\"=}"), "{#1 null,#2 a=null}");
}

TEST(Grammar, aTrailingCommaGivesOneMoreNullMember)
{
    EXPECT_EQ(loaded("{\"a\"=1,}"), "{a=1,null}");
    EXPECT_EQ(loaded("[1,]"), "[1,null]");
}

TEST(Grammar, aMissingValueIsAnErrorWhereNotAllowed)
{
    EXPECT_EQ(loadedWithout(LCBC_EMPTY_NULL, "{}"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loadedWithout(LCBC_EMPTY_NULL, "[]"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loadedWithout(LCBC_EMPTY_NULL, "{\"a\"=}"), errorAt(1, 6, s_cpNoValue));
    EXPECT_EQ(loadedWithout(LCBC_EMPTY_NULL, "[1,]"), errorAt(1, 4, s_cpNoValue));
    EXPECT_EQ(loadedWithout(LCBC_EMPTY_NULL, "{\"a\"=1,}"), errorAt(1, 8, s_cpNoValue));
    EXPECT_EQ(loadedWithout(LCBC_EMPTY_NULL, ","), errorAt(1, 1, s_cpNoValue));
}

TEST(Grammar, aMissingValueTakesEvenTheWrongBracketForItsEnd)
{
    EXPECT_EQ(loaded("[}"), errorAt(1, 2, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("{\"a\"=]"), errorAt(1, 6, s_cpNoFieldsEnd));
}

TEST(Grammar, membersAreSeparatedByCommas)
{
    EXPECT_EQ(loaded("{\"a\"=1 \"b\"=2}"), errorAt(1, 8, s_cpNoFieldsEnd));
    EXPECT_EQ(loaded("[1 2]"), errorAt(1, 4, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("{\"a\"=1]"), errorAt(1, 7, s_cpNoFieldsEnd));
    EXPECT_EQ(loaded("[1}"), errorAt(1, 3, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("[1"), errorAt(1, 3, s_cpNoArrayEnd));
    EXPECT_EQ(loaded("{1"), errorAt(1, 3, s_cpNoFieldsEnd));
}

TEST(Grammar, afterACommentAMissingCommaIsNamedAlone)
{
    EXPECT_EQ(loaded("{\"a\"=1 /*c*/ \"b\"=2}"), errorAt(1, 14, s_cpNoComma));
    EXPECT_EQ(loaded("{\"a\"=1 // c\n"), errorAt(2, 1, s_cpNoComma));
}

TEST(Grammar, whatBeginsNoMemberIsAnError)
{
    EXPECT_EQ(loaded("{"), errorAt(1, 2, s_cpNoName));
    EXPECT_EQ(loaded("{]"), errorAt(1, 2, s_cpNoName));
    EXPECT_EQ(loaded("{)"), errorAt(1, 2, s_cpNoName));
    EXPECT_EQ(loaded("{@"), errorAt(1, 2, s_cpNoName));
    EXPECT_EQ(loaded("{#1#2 3}"), errorAt(1, 4, s_cpNoName));
    EXPECT_EQ(loaded("{\"a\"=1,"), errorAt(1, 8, s_cpNoName));
}

TEST(Grammar, whatBeginsNoValueIsAnError)
{
    EXPECT_EQ(loaded("["), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[="), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[)"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("[#1 2]"), errorAt(1, 2, s_cpNoValue));
    EXPECT_EQ(loaded("{\"a\"==1}"), errorAt(1, 6, s_cpNoValue));
    EXPECT_EQ(loaded("{\"a\"=#1 2}"), errorAt(1, 6, s_cpNoValue));
    EXPECT_EQ(loaded("{\"a\"="), errorAt(1, 6, s_cpNoValue));
}

TEST(Grammar, anElementHasNoName)
{
    EXPECT_EQ(loaded("[\"a\"=1]"), errorAt(1, 5, s_cpNoArrayEnd));
}

TEST(Grammar, textAfterTheRootIsIgnored)
{
    EXPECT_EQ(loaded("[1]]]"), "[1]");
    EXPECT_EQ(loaded("{\"a\"=1} {"), "{a=1}");
    EXPECT_EQ(loaded("5 \"unclosed"), "5");
    EXPECT_EQ(loaded("5 ("), "5");
    EXPECT_EQ(loaded("5 (ACF4) (ACF4)"), "5");
}

TEST(Grammar, aThousandLevelsLoad)
{
    const std::string arrays = repeated("[", 999) + "7" + repeated("]", 999);
    EXPECT_EQ(loaded(arrays), arrays);
    const std::string sets = repeated("{\"a\"=", 999) + "7" + repeated("}", 999);
    EXPECT_EQ(loaded(sets), repeated("{a=", 999) + "7" + repeated("}", 999));
}

TEST(Grammar, oneLevelMoreThrows)
{
    const std::string message = "[murv::CLoader4SER::loadFieldInfo#0] Exceeded s_cnStackDepthLimit";
    EXPECT_EQ(thrown([] { loaded(repeated("[", 1000) + "7" + repeated("]", 1000)); }), message);
    EXPECT_EQ(thrown([] { loaded(repeated("{", 1000) + repeated("}", 1000)); }), message);
    EXPECT_EQ(thrown([] { loaded(repeated("[", 1000) + "\"t\""); }), message);
    EXPECT_EQ(thrown([] { loaded(repeated("[", 1000) + "[]"); }), message);
    EXPECT_EQ(thrown([] { loaded(repeated("{\"a\"=", 1000) + "{}"); }), message);
    EXPECT_EQ(thrown([] { loaded(repeated("[{\"a\"=", 500) + "true"); }), message);
    EXPECT_EQ(thrown([] { loaded(repeated("[", 1000000)); }), message);
}

TEST(Grammar, depthIsCountedPerBranch)
{
    const std::string branch = repeated("[", 998) + "1" + repeated("]", 998);
    EXPECT_EQ(loaded("[" + branch + "," + branch + "]"), "[" + branch + "," + branch + "]");
}

TEST(Grammar, aContainerMayHoldManyMembers)
{
    for (const unsigned int count : {3u, 4u, 5u, 63u, 64u, 65u, 4095u, 4096u, 4097u, 40000u})
    {
        tLoad load("[" + repeated("1,", count - 1) + "1]");
        ASSERT_TRUE(load.m_bDone);
        EXPECT_EQ(load.m_tTree.getChildCount(), count);
        EXPECT_EQ(load.m_tTree.getChildAt(count - 1).asSint32(), 1);
    }
}

TEST(Grammar, largeContainersMayNest)
{
    const std::string inner = "[" + repeated("1,", 5000) + "1]";
    const tLoad load("[" + repeated("2,", 5000) + inner + "," + repeated("3,", 5000) + inner + "]");
    ASSERT_TRUE(load.m_bDone);
    ASSERT_EQ(load.m_tTree.getChildCount(), 10002u);
    EXPECT_EQ(load.m_tTree.getChildAt(5000).getChildCount(), 5001u);
    EXPECT_EQ(load.m_tTree.getChildAt(10001).getChildAt(5000).asSint32(), 1);
    EXPECT_EQ(load.m_tTree.getChildAt(10000).asSint32(), 3);
}

TEST(Grammar, aLoadedTreeCanGrow)
{
    tLoad load("{\"a\"=[1,2],\"b\"=3}");
    load.m_tTree["a"].addArrayAt(4);
    load.m_tTree.addChildRef("c") = 5;
    EXPECT_EQ(show(load.m_tTree), "{a=[1,2,4],b=3,c=5}");
}

// tests/ser/duplicate_test.cpp - a member whose name was there before.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;

namespace
{
constexpr unsigned int s_cuiDuplicate = s_cuiUsual | LCBC_DUPLICATE;
}

TEST(Duplicate, aRepeatedNameReadsTheFirstMemberAgain)
{
    EXPECT_EQ(loaded("{\"a\"=1,\"b\"=2,\"a\"=3}"), "{a=3,b=2}");
}

TEST(Duplicate, theNewValueReplacesTheOldOneWhole)
{
    EXPECT_EQ(loaded("{\"a\"=1,\"a\"=\"t\"}"), "{a=\"t\"}");
    EXPECT_EQ(loaded("{\"a\"=\"t\",\"a\"=true}"), "{a=true}");
    EXPECT_EQ(loaded("{\"a\"=1,\"a\"={\"x\"=1}}"), "{a={x=1}}");
    EXPECT_EQ(loaded("{\"a\"={\"x\"=1},\"a\"=2}"), "{a=2}");
    EXPECT_EQ(loaded("{\"a\"={\"x\"=1},\"a\"={\"y\"=2}}"), "{a={y=2}}");
    EXPECT_EQ(loaded("{\"a\"={\"x\"=1},\"a\"=[3,4]}"), "{a=[3,4]}");
    EXPECT_EQ(loaded("{\"a\"=[1,2,3],\"a\"=\"t\"}"), "{a=\"t\"}");
    EXPECT_EQ(loaded("{\"a\"=[1,2,3],\"a\"=null}"), "{a=null}");
    EXPECT_EQ(loaded("{\"a\"=[1,2,3],\"a\"=}"), "{a=null}");
    EXPECT_EQ(loaded("{\"a\"=1.5,\"a\"=2,\"a\"=3.5}"), "{a=3.5d}");
}

TEST(Duplicate, membersWithoutNameNeverRepeat)
{
    EXPECT_EQ(loaded("{1,1,\"\"=1,=1}"), "{1,1,1,1}");
}

TEST(Duplicate, namesAreComparedAsBytesAfterUnescaping)
{
    EXPECT_EQ(loaded("{\"a\"=1,\"A\"=2,\"\\x61\"=3}"), "{a=3,A=2}");
}

TEST(Duplicate, namesCountPerContainer)
{
    EXPECT_EQ(loaded("{\"a\"={\"a\"={\"a\"=1}},\"b\"={\"a\"=2}}"), "{a={a={a=1}},b={a=2}}");
}

TEST(Duplicate, areAllAddedWhereAllowed)
{
    EXPECT_EQ(loaded("{\"a\"=1,\"a\"=2,#3 \"a\"=3,#3 \"a\"=4}", s_cuiDuplicate), "{a=1,a=2,#3 a=3,#3 a=4}");
}

TEST(Duplicate, ofManyAllowedTheFirstIsFound)
{
    std::string text = "{";
    for (int i = 0; i < 300; ++i)
        text += "\"n" + std::to_string(i % 100) + "\"=" + std::to_string(i) + (i == 299 ? "}" : ",");
    tLoad load(text, s_cuiDuplicate);
    ASSERT_EQ(load.m_tTree.getChildCount(), 300u);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(load.m_tTree["n" + std::to_string(i)].asSint32(), i);
}

TEST(Duplicate, areFoundAmongAnyNumberOfMembers)
{
    for (const unsigned int count : {1u, 7u, 8u, 9u, 10u, 60u, 63u, 64u, 65u, 66u, 100u, 4095u, 4096u, 4097u, 9000u})
    {
        std::string text = "{";
        std::string expected = "{";
        for (unsigned int i = 0; i < count; ++i)
        {
            text += "\"n" + std::to_string(i) + "\"=1,";
            expected += "n" + std::to_string(i) + "=2" + (i + 1 == count ? "}" : ",");
        }
        for (unsigned int i = count; i-- > 0;)
            text += "\"n" + std::to_string(i) + "\"=2" + (i == 0 ? "}" : ",");
        EXPECT_EQ(loaded(text), expected) << count;
    }
}

TEST(Duplicate, areFoundBetweenMembersWithoutNames)
{
    for (const unsigned int count : {1u, 8u, 9u, 63u, 64u, 65u, 1000u})
    {
        const std::string unnamed = repeated("0,", count);
        EXPECT_EQ(loaded("{" + unnamed + "\"a\"=1,\"b\"=2,\"a\"=3}"), "{" + unnamed + "a=3,b=2}") << count;
        EXPECT_EQ(loaded("{\"a\"=1," + unnamed + "\"b\"=2,\"a\"=3,\"b\"=4}"), "{a=3," + unnamed + "b=4}") << count;
        EXPECT_EQ(loaded("{#5 1," + unnamed + "#5 \"a\"=2,\"a\"=3}"), "{#5 2," + unnamed + "a=3}") << count;
    }
}

TEST(Duplicate, aMemberReadAgainKeepsItsIdAndPlace)
{
    EXPECT_EQ(loaded("{#1 \"a\"=1,\"b\"=2,\"a\"=3,#9 \"a\"=4}"), "{#1 a=4,b=2}");
}

TEST(Duplicate, aCommentAfterItGoesToTheMemberReadAgain)
{
    EXPECT_EQ(loaded("{\"a\"=1,\n\"b\"=2,\n\"a\"=3 // c\n}"), "{a=3<1:// c>,b=2}");
    EXPECT_EQ(loaded("{\"a\"={\"x\"=1},\n\"b\"=2,\n\"a\"={\"y\"=3} // c\n,\"d\"=4}"), "{a={y=3}<1:// c>,b=2,d=4}");
    EXPECT_EQ(loaded("{\"a\"=[1],\n\"b\"=2,\n\"a\"=3, // c\n\"d\"=4}"), "{a=3<1:// c>,b=2,d=4}");
}

TEST(Duplicate, aContainerReadAgainMayHoldManyMembers)
{
    const std::string many = "[" + repeated("1,", 9000) + "1]";
    tLoad load("{\"a\"=" + many + ",\"b\"=2,\"a\"=" + many + ",\"a\"=[5,6]}");
    EXPECT_EQ(load.result(), "{a=[5,6],b=2}");
}

TEST(Duplicate, aContainerDeepBelowIsReadAgain)
{
    EXPECT_EQ(loaded("{\"a\"=[[{#1 {\"x\"=1}}]],#1 {\"y\"={\"z\"=2}},\"a\"=[{#1 3}],#1 4}"), "{a=[{#1 4}]}");
}

TEST(Duplicate, aPacketExpressionForAContainerReadAgainIsRefused)
{
    const char* const message = "Packet expression type has not field or array";
    EXPECT_EQ(loaded("{\"a\"={1},\"a\"=(ACF4) 2}"), errorAt(1, 14, message));
    EXPECT_EQ(loaded("{\"a\"=[1],\"a\"=(ACF4) 2}"), errorAt(1, 14, message));
    EXPECT_EQ(loaded("{\"a\"=1,\"a\"=(ACF4) 2}"), "{a=2}");
}

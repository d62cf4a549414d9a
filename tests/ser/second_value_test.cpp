// tests/ser/second_value_test.cpp - the keywords "fix" and "valid" give what was read a second value.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;

TEST(SecondValue, beginsAsACopyOfTheFirst)
{
    EXPECT_EQ(loaded("[(ACF4fix) 7,(ACF4valid) \"t\",(ACF4fix) true,(ACF4fix) 1.5,(ACF4valid) 3000000000]"),
              "[7|7,\"t\"|\"t\",true|true,1.5d|1.5d,3000000000u|3000000000u]");
}

TEST(SecondValue, hasTheKindOfItsKeyword)
{
    EXPECT_EQ(tLoad("(ACF4fix) 7").m_tTree.getVK(), VK_fix);
    EXPECT_EQ(tLoad("(ACF4valid) 7").m_tTree.getVK(), VK_valid);
    EXPECT_EQ(tLoad("(ACF4DOY) 7").m_tTree.getVK(), VK_actual);
    EXPECT_EQ(tLoad("(ACF4) 7").m_tTree.getVK(), VK_actual);
}

TEST(SecondValue, isThereForNullAndMissingValuesToo)
{
    EXPECT_EQ(tLoad("(ACF4fix) null").m_tTree.getVK(), VK_fix);
    EXPECT_EQ(loaded("[(ACF4fix),(ACF4valid) null]"), "[null|null,null|null]");
}

TEST(SecondValue, isNoneForContainers)
{
    const tLoad load("{\"a\"=(ACF4fix) [1]}");
    ASSERT_TRUE(load.m_bDone);
    EXPECT_EQ(load.result(), "{a=[1]}");
    EXPECT_EQ(+load.m_tTree["a"].pkt_GetExp().m_usSkIndex, 1);
}

TEST(SecondValue, isACopyOfItsOwn)
{
    tLoad load("(ACF4fix) \"text\"");
    load.m_tTree.setValue("other");
    EXPECT_EQ(show(load.m_tTree), "\"other\"|\"text\"");
}

TEST(SecondValue, isReadAgainWithItsMember)
{
    EXPECT_EQ(loaded("{\"a\"=(ACF4fix) 1,\"a\"=2}"), "{a=2|2}");
    EXPECT_EQ(loaded("{\"a\"=(ACF4fix) 1,\"a\"=(ACF4) 2}"), "{a=2}");
    EXPECT_EQ(loaded("{\"a\"=1,\"a\"=(ACF4valid) \"t\"}"), "{a=\"t\"|\"t\"}");
    EXPECT_EQ(loaded("{\"a\"=(ACF4fix) 1,\"a\"=[2]}"), "{a=[2]}");
}

TEST(SecondValue, ofTheTargetFollowsItsPacketExpression)
{
    tLoad load("(ACF4fix) 7");
    load.load("8");
    EXPECT_EQ(load.result(), "8|8");
}

TEST(SecondValue, isFreshWhereTheTargetHeldAnother)
{
    tLoad load("(ACF4fix) 7");
    load.m_tTree.setValue("old", VK_fix);
    load.m_tTree.setVK(VK_fix);
    load.load("8");
    EXPECT_EQ(load.result(), "8|8");
}

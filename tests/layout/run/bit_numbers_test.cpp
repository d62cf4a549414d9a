// Numbers about other parts that are a part of bits.
#include <gtest/gtest.h>

#include <string>

#include "murv/layout.h"
#include "murv/murv.h"

namespace
{

std::string made(const std::string& layoutMembers, const std::string& data)
{
    murv::CLayout layout;
    EXPECT_TRUE(layout.compile("{ \"@\" = \"layout 1\", " + layoutMembers + " }"));
    murv::CFields tree;
    murv::CLoader4SER loader;
    EXPECT_TRUE(loader.loading(data, tree)) << loader.getLastErrMsg();
    murv::CPacketMaker maker(layout);
    std::string packet;
    EXPECT_TRUE(maker.make(tree, packet)) << maker.getFault().m_strMessage;
    return packet;
}

const std::string s_strCounted = R"("flags" = (BNF1) 128, "@flags" = "bits 1 alarm, 3 level, 4 count", )"
                                 R"("@flags.count" = "count of list", "list" = [ (BNF1) 0 ])";

TEST(BitNumbers, aCountIsFilledInBesideTheBitsOfTheData)
{
    EXPECT_EQ(made(s_strCounted, R"({ "flags" = { "alarm" = 0, "level" = 2 }, "list" = [7, 8] })"), "\x22\x07\x08");
    EXPECT_EQ(made(s_strCounted, R"({ "flags" = { "alarm" = 1, "level" = 2, "count" = 9 }, "list" = [7] })"),
              "\xA1\x07");
}

TEST(BitNumbers, theOtherBitsAreThoseOfTheLayoutWhenTheDataLacksThem)
{
    EXPECT_EQ(made(s_strCounted, R"({ "list" = [7, 8] })"), "\x82\x07\x08");
}

TEST(BitNumbers, aBitThatTheDataLacksIsThatOfTheLayout)
{
    EXPECT_EQ(made(R"("f" = (BNF1) 130, "@f" = "bits 1 a, 5 b, 2 c")", R"({ "f" = { "b" = 1 } })"), "\x86");
}

TEST(BitNumbers, whatACountDecidesFollowsTheData)
{
    const std::string layout = R"("f" = (BNF1) 0, "@f" = "bits 4 a, 4 n", "@f.n" = "count of l", )"
                               R"("x" = (BNF1) 9, "@x" = "if f.n = 2", "l" = [ (BNF1) 0 ])";
    EXPECT_EQ(made(layout, R"({ "x" = 9, "l" = [1, 2] })"), "\x02\x09\x01\x02");
    EXPECT_EQ(made(layout, R"({ "l" = [1] })"), "\x01\x01");
}

TEST(BitNumbers, aSizeIsFilledInAfterAnotherNumber)
{
    EXPECT_EQ(made(R"("n" = (BNF1) 0, "@n" = "count of list", "flags" = (BNF1) 0, "@flags" = "bits 4 a, 4 size", )"
                   R"("@flags.size" = "size of text", "list" = [ (BNF1) 0 ], "text" = (ACF0) "")",
                   R"({ "flags" = { "a" = 5 }, "list" = [1], "text" = "abc" })"),
              "\x01\x53\x01"
              "abc");
}

TEST(BitNumbers, aCountThatDoesNotFitItsBitsIsRefused)
{
    murv::CLayout layout;
    ASSERT_TRUE(layout.compile(R"({ "@" = "layout 1", "f" = (BNF1) 0, "@f" = "bits 7 a, 1 n", "@f.n" = "count of l", )"
                               R"("l" = [ (BNF1) 0 ] })"));
    murv::CFields tree;
    tree.addChildRef("l").addArrayAt(1);
    tree["l"].addArrayAt(2);
    murv::CPacketMaker maker(layout);
    std::string packet;
    EXPECT_FALSE(maker.make(tree, packet));
    EXPECT_EQ(maker.getFault().m_eCode, murv::PF_tooLong);
    EXPECT_EQ(maker.getFault().m_strPath, "f.n");
}

}  // namespace

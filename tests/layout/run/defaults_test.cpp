// What making takes when the data lacks something, and what data it refuses.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

TEST(Defaults, theLayoutsValueMayEndInPaddingDataMayNot)
{
    const CLayout layout = layout4(R"("a" = (ACF4) "x ", "b" = (BCF3) "y", "c" = (ACF3) "z", "@c" = "keep")");
    EXPECT_EQ(make(layout, "{}"), bytes("x   y\0\0z  "));
    EXPECT_EQ(read(layout, bytes("x   y\0\0z  ")), R"({"a"="x","b"="y\x00\x00","c"="z  "})");
    EXPECT_EQ(make(layout, R"({"a"="x "})"), "lossy at a");
    EXPECT_EQ(make(layout, R"({"b"="y"})"), "width at b");
    EXPECT_EQ(make(layout, R"({"c"="z"})"), "width at c");
}

TEST(Defaults, theSecondValueIsTheLiteral)
{
    expectBoth(layout4(R"("a" = (ACF2fix) "ab")"), "ab", R"({"a"="ab"})");
}

TEST(Defaults, unknownMembersAreRefusedWithASuggestion)
{
    const CLayout layout = layout4(R"("amount" = (ANF1) 0, "s" = { "text" = (ACF1) "" })");
    EXPECT_EQ(make(layout, R"({"amuont"=1})"), "unknown at ");
    EXPECT_EQ(makingFault(layout, R"({"amuont"=1})"),
              "The layout has no part \"amuont\" here; did you mean \"amount\"?");
    EXPECT_EQ(makingFault(layout, R"({"s"={"zzzz"=1}})"), "The layout has no part \"zzzz\" here");
    EXPECT_EQ(makingFault(layout, R"({"@amount"=1})"),
              "The layout has no part \"@amount\" here; did you mean \"amount\"?");
}

TEST(Defaults, aSuggestionIsNotKeptForAnotherFault)
{
    const CLayout layout = layout4(R"("amount" = (ANF1) 0, "f" = (BNF1) 0, "@f" = "bits 8 x", #7 = (ANF1) 0)");
    CPacketMaker maker(layout);
    std::string packet;
    EXPECT_FALSE(maker.make(tree4(R"({"amuont"=1})"), packet));
    EXPECT_FALSE(maker.make(tree4(R"({"f"={"y"=1}})"), packet));
    EXPECT_EQ(maker.getFault().m_strMessage, "The layout has no part \"y\" here; did you mean \"x\"?");
    EXPECT_FALSE(maker.make(tree4(R"({#8=1})"), packet));
    EXPECT_EQ(maker.getFault().m_strMessage, "The layout does not know this part");
}

TEST(Defaults, repeatedMembersAreRefused)
{
    EXPECT_EQ(make(layout4(R"("a" = (ANF1) 0, "b" = (ANF1) 0)"), R"({"a"=1,"b"=2,"a"=1})"), "repeated at a");
    EXPECT_EQ(make(layout4(R"(#7 "a" = (ANF1) 0)"), R"({"a"=1,#7=1})"), "repeated at a");
}

TEST(Defaults, idsCountOnlyWhereNamesAreMissing)
{
    const CLayout layout = layout4(R"(#7 "a" = (ANF1) 0, #8 "b" = (ANF1) 0)");
    EXPECT_EQ(make(layout, R"({#8=2,#7=1})"), "12");
    EXPECT_EQ(make(layout, R"({#8 "a"=1})"), "10");
}

TEST(Defaults, membersMayComeInAnyOrder)
{
    EXPECT_EQ(make(layout4(R"("a" = (ANF1) 0, "b" = (ANF1) 0, "c" = (ANF1) 0)"), R"({"c"=3,"a"=1,"b"=2})"), "123");
}

TEST(Defaults, aFieldSetTakesNoValue)
{
    EXPECT_EQ(make(layout4(R"("s" = { "a" = (ANF1) 0 })"), R"({"s"=1})"), "type at s");
    EXPECT_EQ(make(layout4(R"("s" = { "a" = (ANF1) 0 })"), R"({"s"=[1]})"), "type at s");
    EXPECT_EQ(make(layout4(R"("a" = (ANF1) 0)"), "[1]"), "type at ");
}

TEST(Defaults, booleansAreNoNumbersAsReadingGivesNone)
{
    EXPECT_EQ(make(layout4(R"("a" = (ANF1) 0)"), R"({"a"=true})"), "type at a");
    EXPECT_EQ(make(layout4(R"("b" = (BNF1) 0)"), R"({"b"=false})"), "type at b");
    EXPECT_EQ(make(layout4(R"("b" = (BNF1) 0, "@b" = "bits 1 on, 7 rest")"), R"({"b"={"on"=true}})"), "type at b.on");
}

TEST(Defaults, partsOfBitsAreRefusedAtTheirPaths)
{
    const CLayout layout = layout4(R"("l" = [ { "b" = (BNF1) 0, "@b" = "bits 1 on, 4 level, 3 \"a.b\"" } ])");
    EXPECT_EQ(make(layout, R"({"l"=[{},{"b"={"level"=16}}]})"), "tooLong at l[1].b.level");
    EXPECT_EQ(makingFault(layout, R"({"l"=[{"b"={"level"=16}}]})"), "The value does not fit the item");
    EXPECT_EQ(make(layout, R"({"l"=[{"b"={"a.b"=-1}}]})"), R"(negative at l[0].b."a.b")");
    EXPECT_EQ(make(layout, R"({"l"=[{"b"={"level"="1"}}]})"), "type at l[0].b.level");
    EXPECT_EQ(make(layout, R"({"l"=[{"b"={"level"=1.5}}]})"), "type at l[0].b.level");
    EXPECT_EQ(make(layout, R"({"l"=[{"b"={"level"=null}}]})"), "type at l[0].b.level");
    EXPECT_EQ(make(layout, R"({"l"=[{"b"={"on"=1,"on"=0}}]})"), "repeated at l[0].b.on");
    EXPECT_EQ(make(layout, R"({"l"=[{"b"={"levle"=1}}]})"), "unknown at l[0].b");
    EXPECT_EQ(makingFault(layout, R"({"l"=[{"b"={"levle"=1}}]})"),
              "The layout has no part \"levle\" here; did you mean \"level\"?");
}

TEST(Defaults, aTreeIsReplacedByReading)
{
    const CLayout layout = layout4(R"("a" = (ANF1) 0)");
    CPacketReader reader(layout);
    CFields tree = tree4(R"({"old"=1,"more"={"x"=2}})");
    ASSERT_TRUE(reader.read("5", tree));
    EXPECT_EQ(text4Tree(tree), R"({"a"=5})");
    EXPECT_FALSE(reader.read("x", tree));
    EXPECT_EQ(text4Tree(tree), "{}");
}

TEST(Defaults, afterAFaultTheTreeHasWhatWasReadBefore)
{
    const CLayout layout = layout4(R"("a" = (ANF1) 0, "s" = { "b" = (ANF1) 0, "c" = (ANF1) 0 }, "d" = (ANF1) 0)");
    CPacketReader reader(layout);
    CFields tree;
    EXPECT_FALSE(reader.read("12x4", tree));
    EXPECT_EQ(text4Tree(tree), R"({"a"=1,"s"={"b"=2}})");
    EXPECT_FALSE(reader.read("12", tree));
    EXPECT_EQ(text4Tree(tree), R"({"a"=1,"s"={"b"=2}})");
}

TEST(Defaults, treesHaveNamesAndIdsButNoExpressions)
{
    const CLayout layout = layout4(R"(#7 "a" = (ANF1) 0)");
    CFields tree;
    ASSERT_TRUE(CPacketReader(layout).read("1", tree));
    EXPECT_EQ(tree["a"].getID(), 7u);
    EXPECT_TRUE(CFields::pkt_IsNullExp(tree["a"].pkt_GetExp()));
}

}  // namespace murv::tests

// How arrays end: by count, size, "until", "ends", the heads of their elements, or what encloses them.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

const char* const s_cpPairs = R"([ { "k" = (ACF1) "", "v" = (ANF2) 0 } ])";

std::string pairs(const std::string& before, const std::string& after)
{
    return before + "\"a\" = " + s_cpPairs + after;
}

}  // namespace

TEST(Arrays, aCountEndsThem)
{
    const CLayout layout = layout4(pairs(R"("n" = (ANF2) 0, "@n" = "count of a", )", R"(, "z" = (ACF1) "")"));
    expectBoth(layout, "02x01y02z", R"({"n"=2,"a"=[{"k"="x","v"=1},{"k"="y","v"=2}],"z"="z"})");
    expectBoth(layout, "00z", R"({"n"=0,"a"=[],"z"="z"})");
    EXPECT_EQ(make(layout, R"({"z"="z"})"), "00z");
    EXPECT_EQ(read(layout, "02x01y0"), "more at a[1].v @6+1");
}

TEST(Arrays, aNullCountCountsNothing)
{
    const CLayout layout = layout4(pairs(R"("n" = (ANF2) 0, "@n" = "count of a; blank is null", )", ""));
    EXPECT_EQ(read(layout, "  "), R"({"n"=null,"a"=[]})");
}

TEST(Arrays, aSizeEndsThem)
{
    const CLayout layout = layout4(pairs(R"("n" = (ANF2) 0, "@n" = "size of a", )", R"(, "z" = (ACF1) "")"));
    expectBoth(layout, "06x01y02z", R"({"n"=6,"a"=[{"k"="x","v"=1},{"k"="y","v"=2}],"z"="z"})");
    expectBoth(layout, "00z", R"({"n"=0,"a"=[],"z"="z"})");
    EXPECT_EQ(read(layout, "05x01y02z"), "size at a[1].v @6+1");
}

TEST(Arrays, untilKeepsTheLastElement)
{
    const CLayout layout = layout4(pairs("", R"(, "@a" = "until k = E | F", "z" = (ACF1) "")"));
    expectBoth(layout, "x01E02z", R"({"a"=[{"k"="x","v"=1},{"k"="E","v"=2}],"z"="z"})");
    expectBoth(layout, "F02z", R"({"a"=[{"k"="F","v"=2}],"z"="z"})");
    EXPECT_EQ(read(layout, "x01"), "more at a[1].k @3+0");
    EXPECT_EQ(makingFault(layout, R"({"a"=[{"k"="x"}]})"), "The last element is not the one that ends the array");
    EXPECT_EQ(makingFault(layout, R"({"a"=[{"k"="E"},{"k"="E"}]})"), "An element before the last one ends the array");
    EXPECT_EQ(makingFault(layout, R"({"a"=[]})"), "The array needs a last element");
    EXPECT_EQ(make(layout, "{}"), "missing at a");
}

TEST(Arrays, untilLooksAtALeafElementItself)
{
    const CLayout layout = layout4(R"("a" = [ (BNF1) 0 ], "@a" = "until . = 0")");
    expectBoth(layout, bytes("\2\1\0"), R"({"a"=[2,1,0]})");
}

TEST(Arrays, aMarkEndsThemBetweenElementsOnly)
{
    const CLayout layout =
        layout4(R"("a" = [ { "k" = (ACF2) "", "v" = (ANF1) 0 } ], "@a" = "ends \"|\"", "z" = (ACF1) "")");
    expectBoth(layout, "x|1yy2|z", R"({"a"=[{"k"="x|","v"=1},{"k"="yy","v"=2}],"z"="z"})");
    expectBoth(layout, "|z", R"({"a"=[],"z"="z"})");
    EXPECT_EQ(read(layout, "xx1"), "more at a[1].k @3+0");
}

TEST(Arrays, noElementMayBeginWithTheMarkThatEndsThem)
{
    const CLayout layout = layout4(R"("a" = [ (ACF2) "" ], "@a" = "ends \"|\"", "z" = (ACF1) "")");
    EXPECT_EQ(make(layout, R"({"a"=["x","|y"],"z"="z"})"), "ambiguous at a");
}

TEST(Arrays, headsOfTheirElementsEndThem)
{
    const CLayout layout =
        layout4(R"("a" = [ { "t" = (ACF1fix) "6", "v" = (ANF1) 0 } ], "z" = { "t" = (ACF1fix) "9" })");
    expectBoth(layout, "61629", R"({"a"=[{"t"="6","v"=1},{"t"="6","v"=2}],"z"={"t"="9"}})");
    expectBoth(layout, "9", R"({"a"=[],"z"={"t"="9"}})");
    EXPECT_EQ(read(layout, "617"), "literal at z.t @2+1");
}

TEST(Arrays, theEnclosingPartEndsThem)
{
    expectBoth(layout4(pairs("", "")), "x01y02", R"({"a"=[{"k"="x","v"=1},{"k"="y","v"=2}]})");
    expectBoth(layout4(pairs("", "")), "", R"({"a"=[]})");
    EXPECT_EQ(read(layout4(pairs("", "")), "x01y"), "more at a[1].v @4+0");
}

TEST(Arrays, toEndLeavesTheFixedPartsAfterThem)
{
    const CLayout layout = layout4(pairs("", R"(, "@a" = "to end", "z" = (ANF2) 0)"));
    expectBoth(layout, "x0199", R"({"a"=[{"k"="x","v"=1}],"z"=99})");
    expectBoth(layout, "99", R"({"a"=[],"z"=99})");
    EXPECT_EQ(read(layout, "x01y99"), "more at z @6+0");
}

TEST(Arrays, arraysNestAndCountAtHand)
{
    const CLayout layout = layout4(R"("a" = [ { "n" = (ANF1) 0, "@n" = "count of b", "b" = [ (ANF1) 0 ] } ])");
    expectBoth(layout, "212013", R"({"a"=[{"n"=2,"b"=[1,2]},{"n"=0,"b"=[]},{"n"=1,"b"=[3]}]})");
}

TEST(Arrays, elementsMustBeOfTheRightKind)
{
    const CLayout layout = layout4(R"("a" = [ (ANF1) 0 ])");
    EXPECT_EQ(make(layout, R"({"a"=[1,{"x"=1}]})"), "type at a[1]");
    EXPECT_EQ(make(layout, R"({"a"=1})"), "type at a");
    EXPECT_EQ(make(layout4(pairs("", "")), R"({"a"=[1]})"), "type at a[0]");
    EXPECT_EQ(make(layout4(pairs("", "")), R"({"a"=[{"k"="x","w"=1}]})"), "unknown at a[0]");
}

TEST(Arrays, theLastElementMayBeAnAlternative)
{
    const CLayout layout = layout4(R"("l" = [ { "@" = "one of", "a" = { "k" = (ACF1fix) "a", "m" = (ANF1) 0 },
        "b" = { "k" = (ACF1fix) "b", "m" = (ANF1) 0 } } ], "@l" = "until a.m = 0", "t" = (ACF1) "")");
    expectBoth(layout, "a1b0a0x",
               R"({"l"=[{"a"={"k"="a","m"=1}},{"b"={"k"="b","m"=0}},{"a"={"k"="a","m"=0}}],"t"="x"})");
    EXPECT_EQ(make(layout, R"({"l"=[{"b"={"m"=0}}],"t"="x"})"), "count at l");
}

}  // namespace murv::tests

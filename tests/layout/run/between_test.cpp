// Parts and elements with marks between them.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

CLayout row(const std::string& more = "")
{
    return layout4(
        R"("r" = { "@" = "between \",\"", "a" = (ACF0) "", "b" = (ANF0) 0, "@b" = "blank is null", "c" = (ACF3) "" )" +
        more + " }");
}

}  // namespace

TEST(Between, marksStandBetweenTheParts)
{
    expectBoth(row(), "x,12,yyy", R"({"r"={"a"="x","b"=12,"c"="yyy"}})");
    expectBoth(row(), ",,", R"({"r"={"a"="","b"=null,"c"=""}})");
}

TEST(Between, partsAtTheEndMayBeMissingWithTheirMarks)
{
    expectBoth(row(), "x,12", R"({"r"={"a"="x","b"=12}})");
    expectBoth(row(), "x,", R"({"r"={"a"="x","b"=null}})");
    expectBoth(row(), "x", R"({"r"={"a"="x"}})");
    expectBoth(row(), "", R"({"r"={"a"=""}})");
    EXPECT_EQ(make(row(), "{}"), "");
    EXPECT_EQ(make(row(), R"({"r"={"c"="z"}})"), ",0,z") << "what is missing before takes the layout's value";
}

TEST(Between, requiredPartsAreWritten)
{
    const CLayout layout = layout4(
        R"("r" = { "@" = "between \",\"", "a" = (ACF0) "", "b" = (ACF0) "", "@b" = "required", "c" = (ACF0) "" })");
    EXPECT_EQ(make(layout, R"({"r"={"a"="x"}})"), "missing at r.b");
    EXPECT_EQ(read(layout, "x"), "missing at r.b @1+0");
    expectBoth(layout, "x,", R"({"r"={"a"="x","b"=""}})");
}

TEST(Between, tooManyPartsAreAnError)
{
    EXPECT_EQ(read(row(), "x,1,y,z"), "leftOver at  @5+2");
}

TEST(Between, fixedPartsHaveTheirWidth)
{
    EXPECT_EQ(read(row(), "x,12,yyyz"), "size at r.c @5+4");
    const CLayout layout = layout4(R"("r" = { "@" = "between \",\"", "a" = (ACF2) "", "b" = (ACF2) "" })");
    EXPECT_EQ(read(layout, "x,yy"), R"({"r"={"a"="x","b"="yy"}})") << "an item between marks varies";
    EXPECT_EQ(make(layout, R"({"r"={"a"="xyz"}})"), "tooLong at r.a");
}

TEST(Between, aValueThatHoldsTheMarkIsRefused)
{
    EXPECT_EQ(make(row(), R"({"r"={"a"="x,y"}})"), "mark at r.a");
}

TEST(Between, anArrayThatComesLastTakesAllPartsLeft)
{
    const CLayout layout = layout4(R"("r" = { "@" = "between \",\"", "a" = (ACF0) "", "l" = [ (ACF0) "" ] })");
    expectBoth(layout, "x,y,z", R"({"r"={"a"="x","l"=["y","z"]}})");
    expectBoth(layout, "x,,z", R"({"r"={"a"="x","l"=["","z"]}})");
    expectBoth(layout, "x,", R"({"r"={"a"="x","l"=[]}})");
    expectBoth(layout, "x", R"({"r"={"a"="x"}})");
    EXPECT_NE(make(layout, R"({"r"={"a"="x","l"=[""]}})").substr(0, 2), "x,") << "an array of one empty element";
}

TEST(Between, anArrayWithItsOwnMarkIsOnePart)
{
    const CLayout layout =
        layout4(R"("r" = { "@" = "between \",\"", "a" = (ACF0) "", "l" = [ (ACF0) "" ], "@l" = "between \"+\"" })");
    expectBoth(layout, "x,y+z", R"({"r"={"a"="x","l"=["y","z"]}})");
    EXPECT_EQ(read(layout, "x,y+z,w"), "leftOver at  @5+2");
    EXPECT_EQ(make(layout, R"({"r"={"l"=["y+z"]}})"), "mark at r.l[0]");
    EXPECT_EQ(make(layout, R"({"r"={"l"=["y,z"]}})"), "mark at r.l[0]");
}

TEST(Between, fieldSetsNestWithMarksOfTheirOwn)
{
    const CLayout layout = layout4(R"("r" = { "@" = "between \"|\"", "a" = (ACF0) "",
        "s" = { "@" = "between \"^\"", "x" = (ACF0) "", "y" = (ACF0) "" }, "z" = (ACF0) "" })");
    expectBoth(layout, "a|x^y|z", R"({"r"={"a"="a","s"={"x"="x","y"="y"},"z"="z"}})");
    expectBoth(layout, "a|x|z", R"({"r"={"a"="a","s"={"x"="x"},"z"="z"}})");
    EXPECT_EQ(read(layout, "a|x^y^w|z"), "leftOver at r.s @5+2");
}

TEST(Between, anEmptyFieldSetIsThereWithoutMembers)
{
    const CLayout layout =
        layout4(R"("r" = { "@" = "between \"|\"", "a" = (ACF0) "", "s" = { "x" = (ACF2) "" }, "z" = (ACF0) "" })");
    expectBoth(layout, "a||z", R"({"r"={"a"="a","s"={},"z"="z"}})");
    expectBoth(layout, "a|xy|z", R"({"r"={"a"="a","s"={"x"="xy"},"z"="z"}})");
}

TEST(Between, theLineEndsTheRow)
{
    const CLayout layout = layout4(R"("l" = [ { "@" = "between \",\"", "a" = (ACF0) "", "b" = (ACF0) "" } ])", "lines");
    expectBoth(layout, "x,y\nz\n", R"({"l"=[{"a"="x","b"="y"},{"a"="z"}]})");
    EXPECT_EQ(make(layout, R"({"l"=[{"a"="x\ny"}]})"), "mark at l[0].a");
}

}  // namespace murv::tests

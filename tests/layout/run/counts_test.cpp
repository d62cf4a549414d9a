// Numbers that count arrays.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

TEST(Counts, areMovedByTheirConstant)
{
    const CLayout layout = layout4(R"("n" = (BNF1) 0, "@n" = "count of a + 2", "a" = [ (ANF1) 0 ])");
    expectBoth(layout,
               "\3"
               "5",
               R"({"n"=3,"a"=[5]})");
    EXPECT_EQ(refusal(layout, "\1"), "count at a @1+0: The count is less than what it always includes");
    const CLayout less = layout4(R"("n" = (BNF1) 0, "@n" = "count of a - 1", "a" = [ (ANF1) 0 ])");
    expectBoth(less,
               bytes("\0"
                     "5"),
               R"({"n"=0,"a"=[5]})");
    EXPECT_EQ(make(less, R"({"a"=[]})"), "count at n");
    const CLayout wide = layout4(R"("n" = (BNF8) 0, "@n" = "count of a - 1", "a" = [ (ANF1) 0 ])");
    EXPECT_EQ(make(wide, R"({"a"=[]})"), "count at n");
    EXPECT_EQ(read(wide, std::string(8, '\xFF')), "count at a @8+0");
}

TEST(Counts, theNumberMustHoldThem)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "count of a", "a" = [ (ANF1) 0 ])");
    EXPECT_EQ(make(layout, R"({"a"=[1,2,3,4,5,6,7,8,9,0]})"), "tooLong at n");
}

TEST(Counts, aSecondCountMustAgree)
{
    const CLayout layout =
        layout4(R"("n" = (ANF1) 0, "@n" = "count of a", "m" = (ANF1) 0, "@m" = "count of a", "a" = [ (ANF1) 0 ])");
    expectBoth(layout, "2256", R"({"n"=2,"m"=2,"a"=[5,6]})");
    EXPECT_EQ(refusal(layout, "2356"), "count at m @1+1: The count does not agree with the elements");
}

TEST(Counts, aCountOfASizedArrayMustAgree)
{
    const CLayout layout =
        layout4(R"("s" = (ANF1) 0, "@s" = "size of a", "n" = (ANF1) 0, "@n" = "count of a", "a" = [ (ANF2) 0 ])");
    expectBoth(layout, "420506", R"({"s"=4,"n"=2,"a"=[5,6]})");
    EXPECT_NE(read(layout, "410506").substr(0, 1), "{");
    EXPECT_NE(read(layout, "430506").substr(0, 1), "{");
}

TEST(Counts, aCountAfterItsArrayIsATotal)
{
    const CLayout layout =
        layout4(R"("s" = (ANF1) 0, "@s" = "size of a", "a" = [ (ANF2) 0 ], "n" = (ANF1) 0, "@n" = "count of a")");
    expectBoth(layout, "405062", R"({"s"=4,"a"=[5,6],"n"=2})");
    EXPECT_EQ(read(layout, "405063"), R"({"s"=4,"a"=[5,6],"n"=3} ! total at n @5+1)");
}

TEST(Counts, absentArraysHaveCountZero)
{
    const CLayout layout =
        layout4(R"("k" = (ANF1) 0, "n" = (ANF1) 0, "@n" = "count of a", "a" = [ (ANF1) 0 ], "@a" = "if k = 1")");
    expectBoth(layout,
               "125"
               "6",
               R"({"k"=1,"n"=2,"a"=[5,6]})");
    expectBoth(layout, "00", R"({"k"=0,"n"=0})");
    EXPECT_EQ(read(layout, "02"), "count at n @1+1");
}

TEST(Counts, bitsMaySayThem)
{
    const CLayout layout =
        layout4(R"("f" = (BNF1) 0, "@f" = "bits 4 v, 4 n", "@f.n" = "count of a", "a" = [ (ANF1) 0 ])");
    expectBoth(layout,
               "\x32"
               "12",
               R"({"f"={"v"=3,"n"=2},"a"=[1,2]})");
    EXPECT_EQ(make(layout, R"({"f"={"v"=3,"n"=9},"a"=[1]})"),
              "\x31"
              "1");
}

TEST(Counts, aHugeCountLacksBytesSoon)
{
    const CLayout layout = layout4(R"("n" = (BNF8) 0, "@n" = "count of a", "a" = [ (ANF1) 0 ])");
    EXPECT_EQ(read(layout, std::string(8, '\xFF') + "12"), "more at a[2] @10+0");
}

TEST(Counts, theOptionAgreeComparesTheData)
{
    tMakeOptions options;
    options.m_bAgree = true;
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "count of a", "a" = [ (ANF1) 0 ])");
    EXPECT_EQ(make(layout, R"({"n"=1,"a"=[5]})", options), "15");
    EXPECT_EQ(make(layout, R"({"n"=2,"a"=[5]})", options), "count at n");
}

}  // namespace murv::tests

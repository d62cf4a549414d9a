// Bytes that are skipped to a multiple.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

TEST(Align, zerosAreSkippedAfterThePart)
{
    const CLayout layout = layout4(R"("a" = (ACV1+1) "", "@a" = "align 4", "b" = (ACF1) "")");
    expectBoth(layout, bytes("1x\0\0b"), R"({"a"="x","b"="b"})");
    expectBoth(layout, "3xyzb", R"({"a"="xyz","b"="b"})");
    expectBoth(layout, bytes("4wxyz\0\0\0b"), R"({"a"="wxyz","b"="b"})");
    EXPECT_EQ(refusal(layout, bytes("1x\0_b")),
              "skipped at a @3+1: Other bytes than the fill stand between aligned parts");
    EXPECT_EQ(read(layout, bytes("1x\0")), "more at a @2+1");
}

TEST(Align, theFillMayBeQuoted)
{
    expectBoth(layout4(R"("a" = (ACF1) "", "@a" = "align 2 \"\n\"")"), "x\n", R"({"a"="x"})");
    expectBoth(layout4(R"("a" = (ACF1) "", "@a" = "align 6 \"ab\"")"), "xababa", R"({"a"="x"})");
}

TEST(Align, countsFromTheRecordsStart)
{
    const CLayout layout =
        layout4(R"("l" = [ { "a" = (ACF1) "", "@a" = "align 2", "b" = (ACF1) "" } ])", "prefixed BNF1");
    expectBoth(layout, bytes("\3x\0y\3z\0w"), R"({"l"=[{"a"="x","b"="y"},{"a"="z","b"="w"}]})");
}

TEST(Align, inElementsToo)
{
    const CLayout layout = layout4(R"("h" = (ACF1) "", "l" = [ { "@" = "align 4", "a" = (ACV1+1) "" } ])");
    expectBoth(layout,
               bytes("h1x\0"
                     "1y\0\0"),
               R"({"h"="h","l"=[{"a"="x"},{"a"="y"}]})");
}

TEST(Align, sizesAroundCountSkippedBytesInside)
{
    const CLayout layout =
        layout4(R"("n" = (BNF1) 0, "@n" = "size of s", "s" = { "a" = (ACF2) "", "@a" = "align 4", "b" = (ACF1) "" })");
    expectBoth(layout, bytes("\4xy\0z"), R"({"n"=4,"s"={"a"="xy","b"="z"}})");
}

TEST(Align, theSkippedBytesStayInsideTheEnclosingPart)
{
    const CLayout layout =
        layout4(R"("n" = (BNF1) 0, "@n" = "size of s", "s" = { "a" = (ACF2) "", "@a" = "align 4" }, "z" = (ACF1) "")");
    EXPECT_EQ(read(layout, bytes("\2xy\0z")), "size at s.a @3+0");
}

}  // namespace murv::tests

// Numbers that say sizes: what they rule, what they must agree with, and how they are filled in.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

/// One byte of size about "b", which has any bytes, and a byte after it.
CLayout sized(const std::string& rule)
{
    return layout4("\"n\" = (BNF1) 0, \"@n\" = \"size of b" + rule +
                   "\", \"b\" = (BCF0) \"\", \"@b\" = \"to end\", \"z\" = (ACF1) \"z\"");
}

}  // namespace

TEST(Sizes, aNumberBeforeThePartRulesAndIsFilledIn)
{
    expectBoth(sized(""), bytes("\2xyz"), R"({"n"=2,"b"="xy","z"="z"})");
    EXPECT_EQ(make(sized(""), R"({"b"="xyx"})"), "\3xyxz");
    EXPECT_EQ(make(sized(""), "{}"), bytes("\0z"));
}

TEST(Sizes, areDividedThenMoved)
{
    expectBoth(sized(" / 4 + 1"), "\2wxyzz", R"({"n"=2,"b"="wxyz","z"="z"})");
    expectBoth(sized(" - 2"), bytes("\1xyxz"), R"({"n"=1,"b"="xyx","z"="z"})");
    EXPECT_EQ(makingFault(sized(" / 4"), R"({"b"="xyx"})"),
              "The size of the part is no whole number of the units of this number");
    EXPECT_EQ(makingFault(sized(" - 2"), R"({"b"="x"})"), "The size of the part is less than this number can say");
    EXPECT_EQ(read(sized(" + 2"), "\1z"), "size at n @0+1");
}

TEST(Sizes, theNumberMustHoldTheSize)
{
    EXPECT_EQ(make(sized(""), "{\"b\"=\"" + std::string(256, 'x') + "\"}"), "tooLong at n");
    EXPECT_EQ(make(sized(" - 2"), "{\"b\"=\"" + std::string(257, 'x') + "\"}").substr(0, 3), "\xFFxx");
}

TEST(Sizes, bytesLeftInsideAreAnError)
{
    const CLayout layout = layout4(R"("n" = (BNF1) 0, "@n" = "size of s", "s" = { "x" = (ACF2) "" }, "z" = (ACF1) "")");
    expectBoth(layout, "\2xyz", R"({"n"=2,"s"={"x"="xy"},"z"="z"})");
    EXPECT_EQ(refusal(layout, "\3xy_z"), "leftOver at s @3+1: Bytes are left inside the size of the part");
    EXPECT_EQ(refusal(layout, "\1xyz"), "size at s.x @1+1: The enclosing part ends within this part");
}

TEST(Sizes, theyMayIncludeTheirNumber)
{
    const CLayout layout =
        layout4(R"("h" = { "a" = (ACF1) "", "n" = (BNF1) 0, "@n" = "size of .", "b" = (ACF0) "", "@b" = "to end" },
        "z" = (ACF1) "")");
    expectBoth(layout, "a\4xyz", R"({"h"={"a"="a","n"=4,"b"="xy"},"z"="z"})");
    EXPECT_EQ(refusal(layout, "a\1xyz"), "size at h.n @1+1: The size is less than what was read of the part");
}

TEST(Sizes, theyMayNameARowOfParts)
{
    const CLayout layout = layout4(R"("n" = (ANF2) 0, "@n" = "size of a..c", "a" = (ACV1+1) "", "b" = (ACF1) "",
        "c" = (ACF0) "", "@c" = "to end", "z" = (ACF1) "")");
    expectBoth(layout, "051ab23z", R"({"n"=5,"a"="a","b"="b","c"="23","z"="z"})");
    EXPECT_EQ(read(layout, "059ab23z"), "size at a @2+5");
}

TEST(Sizes, prefixesAndMarksCountSkippedBytesDoNot)
{
    const CLayout layout = layout4(R"("n" = (BNF1) 0, "@n" = "size of a", "a" = (ACV1+1) "", "m" = (BNF1) 0,
        "@m" = "size of b", "b" = (ACF0) "", "@b" = "ends \"|\"; align 4", "z" = (ACF1) "")");
    expectBoth(layout,
               bytes("\3"
                     "2xx\3yy|z"),
               R"({"n"=3,"a"="xx","m"=3,"b"="yy","z"="z"})");
    expectBoth(layout,
               bytes("\2"
                     "1x\2y|\0\0z"),
               R"({"n"=2,"a"="x","m"=2,"b"="y","z"="z"})");
}

TEST(Sizes, absentPartsHaveSizeZero)
{
    const CLayout layout = layout4(R"("k" = (ANF1) 0, "n" = (ANF1) 0, "@n" = "size of b", "b" = (ACF0) "",
        "@b" = "if k = 1; to end", "z" = (ACF1) "")");
    expectBoth(layout, "12xyz", R"({"k"=1,"n"=2,"b"="xy","z"="z"})");
    expectBoth(layout, "00z", R"({"k"=0,"n"=0,"z"="z"})");
    EXPECT_EQ(read(layout, "02z"), "more at n @2+1");
    EXPECT_EQ(read(layout, "02zzz").substr(0, 8), "leftOver");
}

TEST(Sizes, partsOfAnAlternativeThatIsNotThereHaveSizeZero)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "size of c.a", "m" = (ANF1) 0, "@m" = "count of c.b.l",
        "c" = { "@" = "one of", "a" = { "t" = (ACF1fix) "A", "x" = (ACF0) "", "@x" = "to end" },
                "b" = { "t" = (ACF1fix) "B", "l" = [ (ANF1) 0 ] } })");
    expectBoth(layout, "30Axy", R"({"n"=3,"m"=0,"c"={"a"={"t"="A","x"="xy"}}})");
    expectBoth(layout, "02B12", R"({"n"=0,"m"=2,"c"={"b"={"t"="B","l"=[1,2]}}})");
    EXPECT_EQ(read(layout, "32B12"), "size at n @0+1");
    EXPECT_EQ(read(layout, "32Axy"), "count at m @1+1");
}

TEST(Sizes, ofElementsAreForgottenWithTheElement)
{
    const CLayout layout = layout4(R"("a" = [ { "k" = (ANF1) 0, "n" = (ANF1) 0, "@n" = "size of b",
        "b" = (ACF0) "", "@b" = "if k = 1; to end" } ])");
    expectBoth(layout, "12xy0011z", R"({"a"=[{"k"=1,"n"=2,"b"="xy"},{"k"=0,"n"=0},{"k"=1,"n"=1,"b"="z"}]})");
    EXPECT_EQ(read(layout, "12xy02"), "more at a[1].n @6+0");
    EXPECT_EQ(read(layout, "12xy0201").substr(0, 8), "leftOver");
}

TEST(Sizes, ofARowWhoseFirstPartIsAbsent)
{
    const CLayout layout = layout4(R"("k" = (ANF1) 0, "n" = (ANF1) 0, "@n" = "size of a..b", "a" = (ACF1) "",
        "@a" = "if k = 1", "b" = (ACF1) "", "z" = (ACF1) "")");
    expectBoth(layout, "12abz", R"({"k"=1,"n"=2,"a"="a","b"="b","z"="z"})");
    expectBoth(layout, "01bz", R"({"k"=0,"n"=1,"b"="b","z"="z"})");
    EXPECT_NE(read(layout, "02bz").substr(0, 1), "{");
}

TEST(Sizes, ofARowWhoseLastPartIsAbsent)
{
    const CLayout layout = layout4(R"("k" = (ANF1) 0, "n" = (ANF1) 0, "@n" = "size of a..b", "a" = (ACF1) "",
        "b" = (ACF1) "", "@b" = "if k = 1", "z" = (ACF1) "")");
    expectBoth(layout, "12abz", R"({"k"=1,"n"=2,"a"="a","b"="b","z"="z"})");
    expectBoth(layout, "01az", R"({"k"=0,"n"=1,"a"="a","z"="z"})");
    EXPECT_NE(read(layout, "02az").substr(0, 1), "{");
}

TEST(Sizes, anOptionalPartOfSizeZeroIsAbsent)
{
    const CLayout layout =
        layout4(R"("n" = (ANF1) 0, "@n" = "size of b", "b" = { "@" = "optional", "x" = (ACF2) "" }, "z" = (ACF1) "")");
    expectBoth(layout, "0z", R"({"n"=0,"z"="z"})");
    expectBoth(layout, "2xyz", R"({"n"=2,"b"={"x"="xy"},"z"="z"})");
}

TEST(Sizes, aSecondNumberMustAgree)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "size of b", "m" = (ANF1) 0, "@m" = "size of b",
        "b" = (ACF0) "", "@b" = "to end")");
    expectBoth(layout, "22xy", R"({"n"=2,"m"=2,"b"="xy"})");
    EXPECT_EQ(refusal(layout, "23xy"), "size at m @1+1: The size does not agree with the part");
}

TEST(Sizes, aNumberAfterThePartMustAgree)
{
    const CLayout layout = layout4(R"("b" = (ACV1+1) "", "n" = (ANF1) 0, "@n" = "size of b")");
    expectBoth(layout, "2xy3", R"({"b"="xy","n"=3})");
    EXPECT_EQ(read(layout, "2xy4"), "size at n @3+1");
}

TEST(Sizes, bitsMaySayThem)
{
    const CLayout layout =
        layout4(R"("h" = { "f" = (BNF1) 0, "@f" = "bits 4 version, 4 words", "@f.words" = "size of . / 4",
        "x" = (ACF3) "", "o" = (BCF0) "", "@o" = "to end" })");
    expectBoth(layout, "\x42xyzabcd", R"({"h"={"f"={"version"=4,"words"=2},"x"="xyz","o"="abcd"}})");
    EXPECT_EQ(make(layout, R"({"h"={"f"={"version"=4}}})"), "\x41   ");
    EXPECT_EQ(make(layout, "{\"h\"={\"o\"=\"" + std::string(60, 'x') + "\"}}"), "tooLong at h.f.words");
    EXPECT_EQ(read(layout, "\x42xyz"), "more at h.f @1+3");
}

TEST(Sizes, nestedNumbersOfVaryingWidthSettle)
{
    const CLayout layout =
        layout4(R"("n" = (ANV1+1) 0, "@n" = "size of s", "s" = { "m" = (ANV1+1) 0, "@m" = "size of b",
        "b" = (BCF0) "", "@b" = "to end" })");
    expectBoth(layout,
               "13"
               "11x",
               R"({"n"=3,"s"={"m"=1,"b"="x"}})");
    const std::string b(98, 'x');
    expectBoth(layout,
               "3101"
               "298" +
                   b,
               "{\"n\"=101,\"s\"={\"m\"=98,\"b\"=\"" + b + "\"}}");
    EXPECT_EQ(read(layout,
                   "14"
                   "11x_"),
              "leftOver at s @5+1");
}

TEST(Sizes, aNumberThatIsNullRulesNothing)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "size of b; blank is null", "b" = (ACF2) "")");
    EXPECT_EQ(read(layout, " xy"), R"({"n"=null,"b"="xy"})");
}

TEST(Sizes, hugeNumbersLackBytesAndNeverOverflow)
{
    const CLayout layout = layout4(R"("n" = (BNF8) 0, "@n" = "size of b / 8 + 4", "b" = (BCF0) "", "@b" = "to end")");
    for (const std::string& n : {bytes("\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"), bytes("\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"),
                                 bytes("\0\0\0\0\0\0\0\3"), bytes("\x20\0\0\0\0\0\0\4")})
        EXPECT_EQ(read(layout, n + "xxxxxxxx").substr(0, 10), "size at n ") << n;
    EXPECT_EQ(read(layout, bytes("\0\1\0\0\0\0\0\4")), "more at n @8+0");
}

TEST(Sizes, aSizeBeyondTheEnclosingPartIsAFaultOfTheNumber)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "size of s", "s" = { "m" = (ANF1) 0, "@m" = "size of b",
        "b" = (BCF0) "", "@b" = "to end" })");
    EXPECT_EQ(refusal(layout, "38xy"), "size at s.m @1+1: The size is more than the enclosing part has");
    EXPECT_EQ(read(layout, "38x"), "more at n @1+2");
}

TEST(Sizes, theOptionAgreeComparesTheData)
{
    tMakeOptions options;
    options.m_bAgree = true;
    EXPECT_EQ(make(sized(""), R"({"n"=9,"b"="xy"})"), "\2xyz") << "without it, the data does not matter";
    EXPECT_EQ(make(sized(""), R"({"n"=2,"b"="xy"})", options), "\2xyz");
    EXPECT_EQ(make(sized(""), R"({"b"="xy"})", options), "\2xyz");
    EXPECT_EQ(make(sized(""), R"({"n"=9,"b"="xy"})", options), "size at n");
    EXPECT_EQ(make(sized(""), R"({"n"="two","b"="xy"})", options), "size at n");
    const CLayout nested = layout4(R"("a" = [ { "f" = (BNF1) 0, "@f" = "bits 4 v, 4 n", "@f.n" = "size of b",
        "b" = (ACF0) "", "@b" = "to end" } ], "@a" = "to end")");
    EXPECT_EQ(make(nested, R"({"a"=[{"f"={"v"=1},"b"="x"},{"f"={"v"=1,"n"=2},"b"="x"}]})", options), "size at a[1].f");
    EXPECT_EQ(make(nested, R"({"a"=[{"f"={"v"=1},"b"="x"},{"f"={"v"=1,"n"=1},"b"="x"}]})", options), "\x11x\x11x");
}

}  // namespace murv::tests

// Bitmaps: each bit says whether the part with its number as ID is there.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

CLayout flat()
{
    return layout4(
        R"("m" = (BCF1) "", "@m" = "bits of d", "d" = { #1 "a" = (ANF1) 0, #3 "c" = (ACF1) "",
        #8 "h" = (ACV1+1) "" })");
}

/// A second bitmap inside the part of the first.
CLayout nested()
{
    return layout4(
        R"("m" = (ACF2) "", "@m" = "hex; bits of d", "d" = { #1 "more" = (ACF2) "", "@more" = "hex; bits of d from 9",
        #2 "b" = (ANF1) 0, #10 "j" = (ANF1) 0 })");
}

}  // namespace

TEST(Bitmaps, bitOneIsTheHighestOfTheFirstByte)
{
    expectBoth(flat(),
               "\xA1"
               "5x1y",
               R"({"m"="\xA1","d"={"a"=5,"c"="x","h"="y"}})");
    expectBoth(flat(), "\x20x", R"({"m"=" ","d"={"c"="x"}})");
    expectBoth(flat(), bytes("\0"), R"({"m"="\x00","d"={}})");
}

TEST(Bitmaps, areSetFromWhatTheDataHas)
{
    EXPECT_EQ(make(flat(), R"({"d"={"h"="y"}})"),
              "\1"
              "1y");
    EXPECT_EQ(make(flat(), "{}"), bytes("\0"));
    EXPECT_EQ(make(flat(), R"({"m"="\xFF","d"={"a"=1}})"),
              "\x80"
              "1")
        << "the data for the bitmap does not matter";
}

TEST(Bitmaps, aBitWithoutAPartIsAnError)
{
    EXPECT_EQ(refusal(flat(), "\x40x"), "bit at m @0+1: A bit is set for a part that the layout does not have");
    EXPECT_EQ(read(nested(), "04"), "bit at m @0+2");
}

TEST(Bitmaps, aBitmapInsideItsPartIsThereWhenNeeded)
{
    expectBoth(nested(), "405", R"({"m"="@","d"={"b"=5}})");
    expectBoth(nested(), "C04056", R"({"m"="\xC0","d"={"more"="@","b"=5,"j"=6}})");
    EXPECT_EQ(make(nested(), R"({"d"={"b"=5,"j"=6}})"), "C04056");
    EXPECT_EQ(make(nested(), R"({"d"={"more"="","b"=5}})"), "C0005");
    EXPECT_EQ(read(nested(), "C0005"), R"({"m"="\xC0","d"={"more"="\x00","b"=5}})");
    EXPECT_EQ(read(nested(), "C0105"), "bit at d.more @2+2");
}

TEST(Bitmaps, hexadecimalDigitsHaveTheirCase)
{
    EXPECT_EQ(read(nested(), "c0405"), "digits at m @0+2");
}

TEST(Bitmaps, elementsHaveBitmapsOfTheirOwn)
{
    const CLayout layout =
        layout4(R"("l" = [ { "m" = (BCF1) "", "@m" = "bits of d", "d" = { #1 "a" = (ANF1) 0, #2 "b" = (ANF1) 0 } } ])");
    expectBoth(layout,
               bytes("\xC0"
                     "12\x40"
                     "3\0"),
               R"({"l"=[{"m"="\xC0","d"={"a"=1,"b"=2}},{"m"="@","d"={"b"=3}},{"m"="\x00","d"={}}]})");
}

TEST(Bitmaps, theOptionAgreeComparesTheData)
{
    tMakeOptions options;
    options.m_bAgree = true;
    EXPECT_EQ(make(flat(), R"({"m"="\x80","d"={"a"=1}})", options),
              "\x80"
              "1");
    EXPECT_EQ(make(flat(), R"({"m"="\xC0","d"={"a"=1}})", options), "bit at m");
    EXPECT_EQ(make(nested(), R"({"d"={"more"="\x40","b"=5,"j"=6}})", options), "C04056");
    EXPECT_EQ(make(nested(), R"({"d"={"more"="\x00","b"=5,"j"=6}})", options), "bit at d.more");
}

}  // namespace murv::tests

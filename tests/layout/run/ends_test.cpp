// How the end of a leaf is found: length prefixes, marks, and the end of what encloses it.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

TEST(Ends, prefixesSayTheLength)
{
    const CLayout layout = layout4(R"("a" = (ACV2+2) "", "b" = (BCV1+1) "", "c" = (BCV2+2) "", "@c" = "little")");
    expectBoth(layout, bytes("03abc\1x\2\0yz"), R"({"a"="abc","b"="x","c"="yz"})");
    expectBoth(layout, bytes("00\0\0\0"), R"({"a"="","b"="","c"=""})");
}

TEST(Ends, prefixesMayCountThemselves)
{
    expectBoth(layout4(R"("a" = (ACV2+2) "")"), "03abc", R"({"a"="abc"})");
    expectBoth(layout4(R"("a" = (ACV2) "")"), "05abc", R"({"a"="abc"})");
    expectBoth(layout4(R"("a" = (ACV2+1) "")"), "04abc", R"({"a"="abc"})");
    EXPECT_EQ(read(layout4(R"("a" = (ACV2) "")"), "01abc"), "size at a @0+2");
}

TEST(Ends, ofTwoPrefixedItemsTheSecondMustBeThere)
{
    const CLayout layout = layout4(R"("a" = (ACV2+2) "", "b" = (ACV2+2) "")");
    EXPECT_EQ(read(layout, "03abc"), "more at b @5+0");
    EXPECT_EQ(read(layout, "03abc0"), "more at b @5+1");
    EXPECT_EQ(read(layout, "03abc02x"), "more at b @5+3");
}

TEST(Ends, prefixesAreStrict)
{
    const CLayout layout = layout4(R"("a" = (ACV2+2) "")");
    EXPECT_EQ(refusal(layout, " 3abc"), "digits at a @0+2: The length prefix cannot be read");
    EXPECT_EQ(read(layout, "-1abc"), "digits at a @0+2");
    EXPECT_EQ(read(layout, "3 abc"), "digits at a @0+2");
}

TEST(Ends, aTextThatItsPrefixCannotSayIsRefused)
{
    EXPECT_EQ(make(layout4(R"("a" = (ACV1+1) "")"), R"({"a"="0123456789"})"), "tooLong at a");
    EXPECT_EQ(make(layout4(R"("a" = (BCV1+1) "")"), "{\"a\"=\"" + std::string(256, 'x') + "\"}"), "tooLong at a");
    EXPECT_EQ(make(layout4(R"("a" = (BCV1+1) "")"), "{\"a\"=\"" + std::string(255, 'x') + "\"}").size(), 256u);
}

TEST(Ends, blanksOfAVaryingTextBelongToIt)
{
    expectBoth(layout4(R"("a" = (ACV1+1) "")"), "3a  ", R"({"a"="a  "})");
}

TEST(Ends, numbersOfVaryingWidthHaveNoZerosInFront)
{
    const CLayout layout = layout4(R"("n" = (ANV1+1) 0)");
    expectBoth(layout, "3-12", R"({"n"=-12})");
    expectBoth(layout, "10", R"({"n"=0})");
    EXPECT_EQ(read(layout, "212"), R"({"n"=12})");
    EXPECT_EQ(read(layout, "3012"), "zeros at n @1+3");
}

TEST(Ends, datesOfVaryingWidthHaveAllTheirDigits)
{
    const CLayout layout = layout4(R"("d" = (ANF6YYMMDD) 0, "@d" = "ends \";\"")");
    expectBoth(layout, "000229;", R"({"d"=229})");
    EXPECT_NE(read(layout, "229;").substr(0, 1), "{");
}

TEST(Ends, numbersWithoutBytesAreNullByRule)
{
    EXPECT_EQ(read(layout4(R"("n" = (ANV1+1) 0)"), "0"), "blank at n @1+0");
    expectBoth(layout4(R"("n" = (ANV1+1) 0, "@n" = "blank is null")"), "0", R"({"n"=null})");
}

TEST(Ends, aMarkEndsTheLeaf)
{
    const CLayout layout = layout4(R"("a" = (ACF0) "", "@a" = "ends \"\r\n\"", "b" = (ANF2) 0)");
    expectBoth(layout, "x\ry\r\n12", R"({"a"="x\x0Dy","b"=12})");
    expectBoth(layout, "\r\n12", R"({"a"="","b"=12})");
    EXPECT_EQ(make(layout, R"({"a"="x\r\ny"})"), "mark at a");
}

TEST(Ends, aValueMustNotMakeTheMarkBeginEarlier)
{
    EXPECT_EQ(make(layout4(R"("a" = (ACF0) "", "@a" = "ends \"||\"")"), R"({"a"="x|"})"), "ambiguous at a");
}

TEST(Ends, aLeafWithoutItsMarkLacksBytes)
{
    const CLayout layout = layout4(R"("a" = (ACF0) "", "@a" = "ends \"\x00\"")");
    EXPECT_EQ(read(layout, "abc"), "more at a @0+3");
    const CLayout sized = layout4(R"("n" = (BNF1) 0, "@n" = "size of a", "a" = (ACF0) "", "@a" = "ends \"|\"")");
    EXPECT_EQ(refusal(sized, "\2ab|"), "missing at a @1+2: The mark after the item is missing");
}

TEST(Ends, theLengthOfAMarkedLeafIsTheMost)
{
    const CLayout layout = layout4(R"("a" = (ACF3) "", "@a" = "ends \"|\"")");
    expectBoth(layout, "abc|", R"({"a"="abc"})");
    EXPECT_EQ(refusal(layout, "abcd|"), "size at a @0+4: The item is longer than it may be");
    EXPECT_EQ(make(layout, R"({"a"="abcd"})"), "tooLong at a");
}

TEST(Ends, beforeLeavesTheMark)
{
    const CLayout layout = layout4(
        R"("a" = (ACF0) "", "@a" = "before \"-:\" | \"-\"", "b" = (ACF2fix) "-:", "c" = (ACF0) "", "@c" = "to end")");
    expectBoth(layout, "xy-:z", R"({"a"="xy","b"="-:","c"="z"})");
    EXPECT_EQ(make(layout, R"({"a"="x-y"})"), "mark at a");
    EXPECT_EQ(read(layout, "xy-z"), "literal at b @2+2");
}

TEST(Ends, beforeTakesTheFirstOfTheMarks)
{
    const CLayout layout =
        layout4(R"("a" = (ACF0) "", "@a" = "before \"bcd\" | \"c\"", "b" = (ACF0) "", "@b" = "to end")");
    expectBoth(layout, "abcd", R"({"a"="a","b"="bcd"})");
    expectBoth(layout, "abce", R"({"a"="ab","b"="ce"})");
    expectBoth(layout, "ab", R"({"a"="ab","b"=""})");
}

TEST(Ends, whatFollowsBeginsWithOneOfTheMarks)
{
    const CLayout layout = layout4(R"("a" = (ACF0) "", "@a" = "before \"|\"", "b" = (ACF0) "", "@b" = "to end")");
    EXPECT_EQ(make(layout, R"({"a"="x","b"="y"})"), "ambiguous at a");
}

TEST(Ends, toEndTakesWhatIsLeftLessThePartsAfterIt)
{
    const CLayout layout = layout4(R"("a" = (BCF0) "", "@a" = "to end", "crc" = (BNF2) 0, "z" = (ACF1) "")");
    expectBoth(layout, bytes("ab\0\1z"), R"({"a"="ab","crc"=1,"z"="z"})");
    expectBoth(layout, bytes("\0\1z"), R"({"a"="","crc"=1,"z"="z"})");
    EXPECT_EQ(read(layout, "ab"), "more at a @0+2");
}

TEST(Ends, toEndStopsAtTheEnclosingPart)
{
    const CLayout layout =
        layout4(R"("n" = (BNF1) 0, "@n" = "size of s", "s" = { "a" = (ACF0) "", "@a" = "to end" }, "b" = (ACF1) "")");
    expectBoth(layout, "\2xyz", R"({"n"=2,"s"={"a"="xy"},"b"="z"})");
}

TEST(Ends, theLengthOfALeafToTheEndIsTheMost)
{
    const CLayout layout = layout4(R"("a" = (ACF3) "", "@a" = "to end")");
    expectBoth(layout, "abc", R"({"a"="abc"})");
    EXPECT_EQ(read(layout, "abcd"), "size at a @0+4");
    EXPECT_EQ(make(layout, R"({"a"="abcd"})"), "tooLong at a");
}

TEST(Ends, binaryNumbersHaveNoEnd)
{
    EXPECT_EQ(mistake4(R"("n" = (BNF8) 0, "@n" = "to end")"), "A binary number has a fixed width, not an end");
}

TEST(Ends, bytesAfterTheLastPartAreLeft)
{
    EXPECT_EQ(refusal(layout4(R"("a" = (ACF1) "")"), "abc"), "leftOver at  @1+2: Bytes are left after the last part");
}

TEST(Ends, marksOfPrefixesAndNumbersAreSeenToo)
{
    // The prefix 10 is a line feed.
    const CLayout layout = layout4(R"("a" = (BCV1+1) "")", "lines");
    EXPECT_EQ(make(layout, R"({"a"="0123456789"})"), "mark at a");
    EXPECT_EQ(make(layout4(R"("n" = (BNF1) 0)", "lines"), R"({"n"=10})"), "mark at n");
    EXPECT_EQ(make(layout4(R"("n" = (BNF1) 0)", R"(lines \"ab\")"), R"({"n"=10})"), "\nab");
}

TEST(Ends, aMarkMustNotBeginInTheItemAndEndInItself)
{
    // The line would end one byte too early.
    EXPECT_EQ(make(layout4(R"("t" = (ACF2) "", "@t" = "keep")", R"(lines \"aab\")"), R"({"t"="xa"})"), "xaaab");
    EXPECT_EQ(make(layout4(R"("t" = (ACF1) "")", R"(lines \"aa\")"), R"({"t"="a"})"), "ambiguous at t");
}

TEST(Ends, literalsMayEndInAMark)
{
    const CLayout layout = layout4(R"("e" = (ACF0fix) "z", "@e" = "ends \";\"", "x" = (ACF1) "")");
    expectBoth(layout, "z;y", R"({"e"="z","x"="y"})");
    EXPECT_EQ(make(layout, R"({"x"="y"})"), "z;y");
    EXPECT_EQ(make(layout, R"({"e"="a","x"="y"})"), "literal at e");
    EXPECT_EQ(refusal(layout, "a;y"), R"(literal at e @0+2: The layout demands "z;", but "a;" stands here)");
    const CLayout choice = layout4(R"("v" = { "@" = "one of", "a" = { "t" = (ACF0fix) "a", "@t" = "ends \";\"",
        "n" = (ANF1) 0 }, "b" = { "t" = (ACF0fix) "b", "@t" = "ends \";\"", "x" = (ACF1) "" } })");
    expectBoth(choice, "b;y", R"({"v"={"b"={"t"="b","x"="y"}}})");
}

}  // namespace murv::tests

// How records lie in the input: on lines, up to a mark, of one length, after their length.
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

const char* const s_cpList = R"("l" = [ { "a" = (ACF2) "" } ])";

CLayout list(const std::string& rules)
{
    return layout4(s_cpList, rules);
}

}  // namespace

TEST(Frames, linesEndRecords)
{
    expectBoth(list("lines"), "ab\ncd\n", R"({"l"=[{"a"="ab"},{"a"="cd"}]})");
    expectBoth(list("lines"), "", R"({"l"=[]})");
    EXPECT_EQ(refusal(list("lines"), "abc\n"), "frame at l[0] @2+1: Bytes are left at the end of the record");
    EXPECT_EQ(refusal(list("lines"), "ab\nc\n"), "frame at l[1].a @3+1: The record ends within this part");
    EXPECT_EQ(read(list("lines"), "\nab\n"), "frame at l[0].a @0+0");
}

TEST(Frames, lineEndsComeBackAsTheyWere)
{
    for (const std::string file : {"ab\ncd\n", "ab\r\ncd\r\n", "ab\ncd", "ab\r\ncd"})
    {
        const CLayout layout = list("lines");
        CPacketReader reader(layout);
        CFields tree;
        ASSERT_TRUE(reader.read(file, tree));
        EXPECT_TRUE(reader.getFindings().empty());
        EXPECT_EQ(make(layout, text4Tree(tree), reader.getMakeOptions()), file);
    }
}

TEST(Frames, mixedLineEndsAreFindings)
{
    EXPECT_EQ(read(list("lines"), "ab\r\ncd\nef\r\n"),
              R"({"l"=[{"a"="ab"},{"a"="cd"},{"a"="ef"}]} ! lineEnd at l @6+1)");
    EXPECT_EQ(read(list("lines"), "ab\ncd\r\n"), R"({"l"=[{"a"="ab"},{"a"="cd"}]} ! lineEnd at l @5+2)");
}

TEST(Frames, linesMayHaveOneLength)
{
    const CLayout layout = layout4(R"("l" = [ { "a" = (ACV1+1) "" } ])", "lines 3");
    expectBoth(layout, "2ab\n2cd\n", R"({"l"=[{"a"="ab"},{"a"="cd"}]})");
    EXPECT_EQ(refusal(layout, "1a\n"), "frame at l @0+2: The line is shorter than the records are");
    EXPECT_EQ(refusal(layout, "3abc\n"), "frame at l @0+4: The line is longer than the records are");
    EXPECT_EQ(make(layout, R"({"l"=[{"a"="abc"}]})"), "frame at l[0]");
}

TEST(Frames, anyMarkMayEndRecords)
{
    const CLayout layout = layout4(s_cpList, "lines \\\"\\r\\\"");
    expectBoth(layout, "ab\rcd\r", R"({"l"=[{"a"="ab"},{"a"="cd"}]})");
    EXPECT_EQ(make(layout, R"({"l"=[{"a"="a\r"}]})"), "mark at l[0].a");
}

TEST(Frames, recordsMayHaveOneLength)
{
    expectBoth(list("fixed 2"), "abcd", R"({"l"=[{"a"="ab"},{"a"="cd"}]})");
    EXPECT_EQ(read(list("fixed 2"), "abc"), "more at l @2+1");
    const CLayout layout = layout4(R"("l" = [ { "a" = (ACV1+1) "" } ])", "fixed 3");
    EXPECT_EQ(read(layout, "2ab1a_"), "frame at l[1] @5+1");
    EXPECT_EQ(make(layout, R"({"l"=[{"a"="ab"},{"a"="a"}]})"), "frame at l[1]");
}

TEST(Frames, recordsMayFollowTheirLength)
{
    const CLayout layout = layout4(R"("l" = [ { "a" = (ACF0) "", "@a" = "to end" } ])", "prefixed BNF2");
    expectBoth(layout, bytes("\0\3abc\0\1d"), R"({"l"=[{"a"="abc"},{"a"="d"}]})");
    expectBoth(layout, bytes("\0\0"), R"({"l"=[{"a"=""}]})");
    EXPECT_EQ(read(layout, bytes("\0")), "more at l @0+1");
    EXPECT_EQ(read(layout, bytes("\0\3a")), "more at l @0+3");
    EXPECT_EQ(make(layout, "{\"l\"=[{\"a\"=\"" + std::string(65536, 'x') + "\"}]}"), "frame at l[0]");
}

TEST(Frames, theLengthMayCountItself)
{
    const CLayout layout = layout4(R"("l" = [ { "a" = (ACF0) "", "@a" = "to end" } ])", "prefixed ANF4 + 4");
    expectBoth(layout, "0007abc0005d", R"({"l"=[{"a"="abc"},{"a"="d"}]})");
    EXPECT_EQ(refusal(layout, "0003abc"), "frame at l @0+4: The length before the record cannot be right");
    EXPECT_EQ(refusal(layout, "00x7abc"), "frame at l @0+4: The length before the record cannot be read");
    EXPECT_EQ(refusal(layout, "-007abc"), "frame at l @0+4: The length before the record cannot be right");
}

TEST(Frames, aHugeLengthLacksBytes)
{
    const CLayout layout = layout4(R"("l" = [ { "a" = (ACF0) "", "@a" = "to end" } ])", "prefixed BNF8");
    EXPECT_EQ(read(layout, bytes("\0\0\1\0\0\0\0\0abc")), "more at l @0+11");
    EXPECT_EQ(read(layout, std::string(8, '\xFF') + "abc").substr(0, 15), "frame at l @0+8");
    CPacketReader reader(layout);
    ASSERT_FALSE(reader.check(bytes("\0\0\0\0\0\0\0\5ab")));
    EXPECT_EQ(reader.getFault().m_ullMissing, 3u);
}

TEST(Frames, theRootMayBeTheRecord)
{
    expectBoth(layout4(R"("a" = (ACF2) "")", "lines"), "ab\n", R"({"a"="ab"})");
    EXPECT_EQ(read(layout4(R"("a" = (ACF2) "")", "lines"), "ab\ncd\n"), "leftOver at  @3+3");
    EXPECT_EQ(read(layout4(R"("a" = (ACF2) "")", "lines"), ""), "more at  @0+0");
}

TEST(Frames, headsStayInTheirRecord)
{
    const CLayout layout =
        layout4(R"("l" = [ { "@" = "one of", "long" = { "t" = (ACF3fix) "AB\n" }, "short" = { "any" = (ACF2) "" } } ])",
                "prefixed BNF1");
    expectBoth(layout, "\2AB\3AB\n", "{\"l\"=[{\"short\"={\"any\"=\"AB\"}},{\"long\"={\"t\"=\"AB\\x0A\"}}]}");
}

TEST(Frames, recordsOfSeveralKindsFollowEachOther)
{
    const CLayout layout = layout4(
        R"("h" = { "t" = (ACF1fix) "1" }, "l" = [ { "t" = (ACF1fix) "6", "x" = (ANF1) 0 } ],
        "z" = { "t" = (ACF1fix) "9" })",
        "lines");
    expectBoth(layout, "1\n65\n66\n9\n", R"({"h"={"t"="1"},"l"=[{"t"="6","x"=5},{"t"="6","x"=6}],"z"={"t"="9"}})");
    EXPECT_EQ(read(layout, "1\n65\n"), "more at z @5+0");
    EXPECT_EQ(read(layout, "1\n7\n9\n"), "literal at z.t @2+1");
    EXPECT_EQ(read(layout, "1\n9\n9\n"), "leftOver at  @4+2");
}

TEST(Frames, leavesMayBeRecords)
{
    expectBoth(layout4(R"("l" = [ (ACV1+1) "" ])", "lines"), "1a\n0\n1b\n", R"({"l"=["a","","b"]})");
}

}  // namespace murv::tests

// Totals: sums, counts of records and elements, which must equal what was counted.
#include "murv/records.h"
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

/// `path #record @offset in @offset in the record "bytes"`
std::string record4(const std::vector<tPacketFault>& findings)
{
    std::string text;
    for (const tPacketFault& finding : findings)
        text += (text.empty() ? "" : "; ") + finding.m_strPath + " #" + std::to_string(finding.m_ullRecord) + " @" +
                std::to_string(finding.m_ullOffset) + " in @" + std::to_string(finding.m_ullRecordOffset) + " " +
                quotedText(finding.m_strBytes);
    return text;
}

}  // namespace

namespace
{

/// Batches of entries with a control record each, and one for the file.
CLayout batches()
{
    return layout4(R"("batches" = [ {
            "head" = { "t" = (ACF1fix) "5" },
            "entries" = [ { "t" = (ACF1fix) "6", "amount" = (ANF3) 0, "@amount" = "decimals 1" } ],
            "control" = { "t" = (ACF1fix) "8", "count" = (ANF1) 0, "@count" = "records of entries",
                "total" = (ANF4) 0, "@total" = "decimals 1; sum of entries.amount" } } ],
        "end" = { "t" = (ACF1fix) "9", "blocks" = (ANF1) 0, "@blocks" = "count of batches",
            "records" = (ANF2) 0, "@records" = "records of batches + 1",
            "total" = (ANF4) 0, "@total" = "decimals 1; sum of batches.control.total" })",
                   "lines");
}

const char* const s_cpFile = "5\n6010\n6020\n820030\n5\n6005\n810005\n92080035\n";

}  // namespace

TEST(Totals, areFilledIn)
{
    EXPECT_EQ(
        make(batches(), R"({"batches"=[{"entries"=[{"amount"="1.0"},{"amount"=2}]},{"entries"=[{"amount"=0.5}]}]})"),
        s_cpFile);
}

TEST(Totals, agreeWithWhatWasCounted)
{
    EXPECT_EQ(read(batches(), s_cpFile).find('!'), std::string::npos) << read(batches(), s_cpFile);
}

TEST(Totals, findingsNameTheNumberItsRecordAndItsElements)
{
    std::string file = s_cpFile;
    file.replace(file.find("810005"), 6, "820006");
    CPacketReader reader(batches());
    ASSERT_TRUE(reader.check(file));
    EXPECT_EQ(findings4(reader.getFindings()),
              " ! total at batches[1].control.count @27+1 ! total at batches[1].control.total @28+4"
              " ! total at end.total @37+4");
    ASSERT_EQ(reader.getFindings().size(), 3u);
    EXPECT_EQ(reader.getFindings()[0].m_ullRecord, 7u);
    EXPECT_EQ(reader.getFindings()[0].m_ullRecordOffset, 1u);
    EXPECT_EQ(reader.getFindings()[0].m_strBytes, "2");
    EXPECT_EQ(reader.getFindings()[2].m_ullRecord, 8u);
    EXPECT_EQ(reader.getFindings()[2].m_ullRecordOffset, 4u);
}

TEST(Totals, withoutDecimalsKeepTheLowestDigits)
{
    const CLayout layout =
        layout4(R"("n" = (ANF1) 0, "@n" = "count of a", "a" = [ (ANF2) 0 ], "s" = (ANF2) 0, "@s" = "sum of a")");
    EXPECT_EQ(make(layout, R"({"a"=[99,99]})"), "2999998");
    EXPECT_EQ(read(layout, "2999998"), R"({"n"=2,"a"=[99,99],"s"=98})");
}

TEST(Totals, withoutDecimalsKeepTheLowestBits)
{
    const CLayout layout =
        layout4(R"("n" = (ANF1) 0, "@n" = "count of a", "a" = [ (BNF1) 0 ], "s" = (BNF1) 0, "@s" = "sum of a + 1")");
    EXPECT_EQ(make(layout, R"({"a"=[255,3]})"), "2\xFF\3\3");
}

TEST(Totals, withDecimalsMustFit)
{
    const CLayout layout = layout4(
        R"("n" = (ANF1) 0, "@n" = "count of a", "a" = [ { "v" = (ANF2) 0, "@v" = "decimals 1" } ], "s" = (ANF2) 0,
        "@s" = "decimals 1; sum of a.v")",
        "");
    EXPECT_EQ(make(layout, R"({"a"=[{"v"="9.9"},{"v"="9.9"}]})"), "tooLong at s");
}

TEST(Totals, countNumbersBelowZero)
{
    const CLayout layout = layout4(
        R"("n" = (ANF1) 0, "@n" = "count of a", "a" = [ (ANF2) 0 ], "s" = (ANF3) 0, "@s" = "sum of a; decimals 0")");
    EXPECT_EQ(make(layout, R"({"a"=[5,-9]})"), "205-9-04");
    EXPECT_EQ(read(layout, "205-9-04"), R"({"n"=2,"a"=[5,-9],"s"="-4"})");
}

TEST(Totals, nullsAndAbsentPartsCountNothing)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "count of a", "a" = [ { "k" = (ANF1) 0, "v" = (ANF1) 0,
        "@v" = "if k = 1; blank is null" } ], "s" = (ANF1) 0, "@s" = "sum of a.v")");
    expectBoth(layout, "30141 4", R"({"n"=3,"a"=[{"k"=0},{"k"=1,"v"=4},{"k"=1,"v"=null}],"s"=4})");
}

TEST(Totals, mayStandBeforeWhatTheyCount)
{
    const CLayout layout = layout4(R"("s" = (ANF2) 0, "@s" = "sum of a.v", "a" = [ { "v" = (ANF1) 0 } ])");
    expectBoth(layout,
               "0612"
               "3",
               R"({"s"=6,"a"=[{"v"=1},{"v"=2},{"v"=3}]})");
    EXPECT_EQ(read(layout, "07123"), R"({"s"=7,"a"=[{"v"=1},{"v"=2},{"v"=3}]} ! total at s @0+2)");
}

TEST(Totals, inElementsCountTheElementAtHand)
{
    const CLayout layout = layout4(
        R"("a" = [ { "n" = (ANF1) 0, "@n" = "count of b", "b" = [ (ANF1) 0 ], "s" = (ANF1) 0, "@s" = "sum of b" } ])");
    expectBoth(layout, "212311100", R"({"a"=[{"n"=2,"b"=[1,2],"s"=3},{"n"=1,"b"=[1],"s"=1},{"n"=0,"b"=[],"s"=0}]})");
}

TEST(Totals, inAnArrayOverAnotherNameEachTheirElement)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "count of a", "a" = [ (ANF1) 0 ],
        "m" = (ANF1) 0, "@m" = "count of t", "t" = [ { "s" = (ANF1) 0, "@s" = "sum of a" } ])");
    EXPECT_EQ(read(layout,
                   "21222"
                   "4"),
              "{\"n\"=2,\"a\"=[1,2],\"m\"=2,\"t\"=[{\"s\"=2},{\"s\"=4}]}"
              " ! total at t[0].s @4+1 ! total at t[1].s @5+1");
}

TEST(Totals, overAnArrayAroundTheNumberCountAllOfIt)
{
    const CLayout layout = layout4(R"("a" = [ { "v" = (ANF1) 0, "s" = (ANF1) 0, "@s" = "sum of a.v" } ])");
    expectBoth(layout, "1323", R"({"a"=[{"v"=1,"s"=3},{"v"=2,"s"=3}]})");
    EXPECT_EQ(read(layout, "1322"), R"({"a"=[{"v"=1,"s"=3},{"v"=2,"s"=2}]} ! total at a[1].s @3+1)");
}

TEST(Totals, overBatchesCountRecordsBelow)
{
    const CLayout layout = layout4(R"("b" = [ { "h" = { "t" = (ACF1fix) "H" }, "e" = [ { "t" = (ACF1fix) "E" } ] } ],
        "z" = { "t" = (ACF1fix) "Z", "r" = (ANF1) 0, "@r" = "records of b - 1",
        "c" = (ANF1) 0, "@c" = "count of b.e + 2" })",
                                   "lines");
    EXPECT_EQ(make(layout, R"({"b"=[{"e"=[{},{}]},{}]})"), "H\nE\nE\nH\nZ34\n");
}

TEST(Totals, theOptionAgreeComparesTheData)
{
    tMakeOptions options;
    options.m_bAgree = true;
    const CLayout layout = layout4(
        R"("n" = (ANF1) 0, "@n" = "count of a", "a" = [ { "v" = (ANF1) 0, "@v" = "decimals 1" } ], "s" = (ANF3) 0,
        "@s" = "decimals 1; sum of a.v")");
    EXPECT_EQ(make(layout, R"({"a"=[{"v"="0.1"},{"v"="0.2"}],"s"="0.3"})", options), "212003");
    EXPECT_EQ(make(layout, R"({"a"=[{"v"="0.1"},{"v"="0.2"}],"s"="0.4"})", options), "total at s");
}

TEST(Totals, findingsSayTheRecordOfTheNumber)
{
    const CLayout packet = layout4(R"("l" = [ { "k" = (ACF1fix) "-", "n" = (ANF1) 0 } ],
        "t" = (ANF1) 0, "@t" = "sum of l.n", "x" = (ACF1) "")");
    CPacketReader reader(packet);
    ASSERT_TRUE(reader.check("-1-25x"));
    EXPECT_EQ(record4(reader.getFindings()), "t #1 @4 in @4 \"5\"");
    CRecordReader one(packet);
    one.open("-1-25x-36x");
    EXPECT_EQ(one.next(), RR_record);
    EXPECT_EQ(record4(one.getFindings()), "t #1 @4 in @4 \"5\"");
    EXPECT_EQ(one.next(), RR_record);
    EXPECT_EQ(record4(one.getFindings()), "t #2 @8 in @2 \"6\"");
}

TEST(Totals, findingsSayTheRecordInFilesToo)
{
    const CLayout file = layout4(R"("h" = { "k" = (ACF1fix) "h", "all" = (ANF1) 0, "@all" = "sum of b.e.n" },
        "b" = [ { "e" = [ { "k" = (ACF1fix) "-", "n" = (ANF1) 0 } ],
        "t" = { "k" = (ACF1fix) "=", "n" = (ANF1) 0, "@n" = "sum of e.n" } } ])",
                                 "lines");
    const std::string bytes = "h9\n-1\n-2\n=4\n-1\n=2\n";
    const std::string expected = "h.all #1 @1 in @1 \"9\"; b[0].t.n #4 @10 in @1 \"4\"; b[1].t.n #6 @16 in @1 \"2\"";
    CPacketReader reader(file);
    ASSERT_TRUE(reader.check(bytes));
    EXPECT_EQ(record4(reader.getFindings()), expected);
    for (const std::size_t piece : {bytes.size(), std::size_t{1}})
    {
        CRecordReader records(file);
        records.open();
        std::string found;
        for (std::size_t at = 0; at < bytes.size(); at += piece)
        {
            records.put(std::string_view(bytes).substr(at, piece));
            for (E_RecordResult result = records.next(); result != RR_more; result = records.next())
                found += found.empty() || records.getFindings().empty() ? "" : "; ",
                    found += record4(records.getFindings());
        }
        records.end();
        for (E_RecordResult result = records.next(); result == RR_record; result = records.next())
            found += "; " + record4(records.getFindings());
        found += "; end " + record4(records.getFindings());
        EXPECT_EQ(found, "b[0].t.n #4 @10 in @1 \"4\"; end h.all #1 @1 in @1 \"9\"; b[1].t.n #6 @16 in @1 \"2\"")
            << piece;
    }
}

TEST(Totals, findingsAtTheEndOfAStreamShowBytesThatAreGone)
{
    const CLayout file = layout4(R"("h" = { "k" = (ACF1fix) "h", "all" = (ANF1) 0, "@all" = "sum of e.n",
        "pin" = (ANF4) 0, "@pin" = "mask 1; sum of e.n" },
        "e" = [ { "k" = (ACF1fix) "-", "n" = (ANF1) 0, "x" = (ACF1000) "" } ])",
                                 "lines");
    CRecordReader records(file);
    records.open();
    records.put("h90007\n");
    EXPECT_EQ(records.next(), RR_record);
    for (int i = 0; i < 200; ++i)
    {
        records.put("-0" + std::string(1000, 'x') + "\n");
        ASSERT_EQ(records.next(), RR_record);
    }
    records.end();
    EXPECT_EQ(records.next(), RR_end);
    EXPECT_EQ(record4(records.getFindings()), "h.all #1 @1 in @1 \"9\"; h.pin #1 @2 in @2 \"***7\"");
}

TEST(Totals, findingsSayTheRecordWhileWriting)
{
    const CLayout file = layout4(R"("e" = [ { "k" = (ACF1fix) "-", "n" = (ANF1) 0 } ],
        "t" = [ { "k" = (ACF1fix) "=", "n" = (ANF1) 0, "@n" = "sum of e.n" } ])",
                                 "lines");
    CRecordWriter writer(file);
    std::string out;
    EXPECT_TRUE(writer.write(file.findPart("e"), tree4(R"({"n"=1})"), out));
    EXPECT_TRUE(writer.write(file.findPart("t"), tree4(R"({"n"=2})"), out));
    EXPECT_TRUE(writer.write(file.findPart("t"), tree4(R"({"n"=3})"), out));
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(record4(writer.getFindings()), "t[0].n #2 @4 in @1 \"2\"; t[1].n #3 @7 in @1 \"3\"");
}

}  // namespace murv::tests

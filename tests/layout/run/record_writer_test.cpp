// Records made one at a time.
#include "murv/records.h"
#include "tests/layout/run/run_helpers.h"

namespace murv::tests
{

namespace
{

CLayout batches(const std::string& rules = "lines")
{
    return layout4(
        R"("head" = { "t" = (ACF1fix) "1" }, "entries" = [ { "t" = (ACF1fix) "6", "v" = (ANF2) 0, "n" = (ANF1) 0,
        "@n" = "size of b", "b" = (ACF0) "", "@b" = "to end" } ],
        "end" = { "t" = (ACF1fix) "9", "count" = (ANF1) 0, "@count" = "count of entries" })",
        rules);
}

/// Writes records in turn, each by its path and tree; tells what was made, or the fault.
class CWriting
{
public:
    explicit CWriting(const CLayout& layout, const tMakeOptions& options = {})
        : m_tLayout(layout), m_tWriter(layout, options)
    {
    }
    std::string write(const char* path, const std::string& tree)
    {
        std::string out = ">";
        const bool isMade = m_tWriter.write(m_tLayout.findPart(path), tree4(tree), out);
        EXPECT_EQ(isMade, m_tWriter.getFault().m_eCode == PF_none);
        EXPECT_TRUE(isMade || out == ">") << out;
        return (isMade ? out.substr(1) : place4(m_tWriter.getFault())) + findings4(m_tWriter.getFindings());
    }
    std::string finish()
    {
        const bool isDone = m_tWriter.finish();
        return (isDone ? "done" : place4(m_tWriter.getFault())) + findings4(m_tWriter.getFindings());
    }
    const tPacketFault& fault() const
    {
        return m_tWriter.getFault();
    }

private:
    CLayout m_tLayout;
    CRecordWriter m_tWriter;
};

}  // namespace

TEST(RecordWriter, makesEachRecordWithItsFrame)
{
    CWriting lines(batches());
    EXPECT_EQ(lines.write("head", "{}"), "1\n");
    EXPECT_EQ(lines.write("entries", R"({"v"=5,"b"="xy"})"), "6052xy\n");
    EXPECT_EQ(lines.write("entries", "{}"), "6000\n");
    EXPECT_EQ(lines.write("end", R"({"count"=2})"), "92\n");
    EXPECT_EQ(lines.finish(), "done");
    CWriting prefixed(batches("prefixed BNF2"));
    EXPECT_EQ(prefixed.write("head", "{}"), bytes("\0\1"
                                                  "1"));
    EXPECT_EQ(prefixed.write("entries", R"({"b"="x"})"), bytes("\0\5"
                                                               "6001x"));
}

TEST(RecordWriter, linesMayEndInReturns)
{
    tMakeOptions options;
    options.m_bReturns = true;
    CWriting writing(batches(), options);
    EXPECT_EQ(writing.write("head", "{}"), "1\r\n");
    EXPECT_EQ(writing.write("end", R"({"count"=0})"), "90\r\n");
    EXPECT_EQ(writing.finish(), "done");
}

TEST(RecordWriter, theLastLineMayLackItsMark)
{
    for (const bool returns : {false, true})
    {
        tMakeOptions options;
        options.m_bOpenEnd = true;
        options.m_bReturns = returns;
        const std::string end = returns ? "\r\n" : "\n";
        CWriting writing(batches(), options);
        EXPECT_EQ(writing.write("head", "{}"), "1");
        EXPECT_EQ(writing.write("entries", R"({"v"=100})"), "tooLong at entries.v @1+0");
        EXPECT_EQ(writing.write("entries", R"({"b"="x"})"), end + "6001x");
        EXPECT_EQ(writing.write("end", R"({"count"=1})"), end + "91");
        EXPECT_EQ(writing.finish(), "done");
    }
    tMakeOptions options;
    options.m_bOpenEnd = true;
    CWriting marks(batches("lines \\\";\\\""), options);
    EXPECT_EQ(marks.write("head", "{}"), "1");
    EXPECT_EQ(marks.write("end", R"({"count"=0})"), ";90");
    CWriting fixed(layout4(R"("l" = [ { "a" = (ACF2) "" } ])", "fixed 2"), options);
    EXPECT_EQ(fixed.write("l", R"({"a"="ab"})"), "ab");
    EXPECT_EQ(fixed.write("l", R"({"a"="cd"})"), "cd");
}

TEST(RecordWriter, aLastRecordWithoutBytesNeedsItsMark)
{
    tMakeOptions options;
    options.m_bOpenEnd = true;
    CWriting writing(layout4(R"("l" = [ { "a" = (ACF0) "", "@a" = "to end" } ])", "lines"), options);
    EXPECT_EQ(writing.write("l", R"({"a"=""})"), "");
    EXPECT_EQ(writing.finish(), "ambiguous at l[0] @0+0");
    EXPECT_EQ(writing.fault().m_strMessage, "A last record without bytes needs its mark");
    EXPECT_EQ(writing.write("l", R"({"a"="x"})"), "\nx");
    EXPECT_EQ(writing.finish(), "done");
}

TEST(RecordWriter, recordsComeInTheirOrder)
{
    CWriting writing(batches());
    EXPECT_EQ(writing.write("entries", "{}"), "ambiguous at entries @0+5");
    EXPECT_EQ(writing.fault().m_strMessage, "Such a record cannot come here, or reading would take it for another");
    EXPECT_EQ(writing.write("head", "{}"), "1\n") << "nothing has happened";
    EXPECT_EQ(writing.write("head", "{}"), "ambiguous at head @2+2");
    EXPECT_EQ(writing.write("end", R"({"count"=0})"), "90\n");
    EXPECT_EQ(writing.write("entries", "{}").substr(0, 9), "ambiguous");
    EXPECT_EQ(writing.finish(), "done");
}

TEST(RecordWriter, whatReadingWouldTakeForSomethingElseIsRefused)
{
    CWriting writing(layout4(R"("l" = [ { "s" = { "@" = "optional", (ACF1fix) "#", "n" = (ANF1) 0 },
        "b" = (ACF0) "", "@b" = "to end" } ])",
                             "lines"));
    EXPECT_EQ(writing.write("l", R"({"s"={"n"=1},"b"="x"})"), "#1x\n");
    EXPECT_EQ(writing.write("l", R"({"b"="#1x"})"), "ambiguous at l[1].b @4+3");
    EXPECT_EQ(writing.fault().m_ullRecord, 2u);
    EXPECT_EQ(writing.fault().m_ullRecordOffset, 0u);
    EXPECT_EQ(writing.fault().m_strBytes, "#1x");
    EXPECT_EQ(writing.write("l", R"({"b"="x"})"), "x\n") << "nothing has happened";
}

TEST(RecordWriter, aFaultyRecordLeavesTheWriterWhereItWas)
{
    CWriting writing(batches());
    EXPECT_EQ(writing.write("head", "{}"), "1\n");
    EXPECT_EQ(writing.write("entries", R"({"v"=100})"), "tooLong at entries.v @1+0");
    EXPECT_EQ(writing.write("entries", R"({"w"=100})").substr(0, 10), "unknown at");
    EXPECT_EQ(writing.fault().m_strMessage.substr(0, 36), "The layout has no part \"w\" here; did");
    EXPECT_EQ(writing.write("entries", R"({"v"=10})"), "6100\n");
    EXPECT_EQ(writing.write("end", R"({"count"=1})"), "91\n");
    EXPECT_EQ(writing.finish(), "done");
}

TEST(RecordWriter, numbersAboutOtherRecordsMustBeInTheData)
{
    CWriting writing(batches());
    EXPECT_EQ(writing.write("head", "{}"), "1\n");
    EXPECT_EQ(writing.write("end", "{}"), "missing at end.count @1+0");
    EXPECT_EQ(writing.write("end", R"({"count"=3})"), "93\n");
    EXPECT_EQ(writing.finish(), "done ! total at end.count @3+1");
}

TEST(RecordWriter, numbersInTheirRecordAreFilledIn)
{
    CWriting writing(batches());
    EXPECT_EQ(writing.write("head", "{}"), "1\n");
    EXPECT_EQ(writing.write("entries", R"({"n"=9,"b"="x"})"), "6001x\n");
    tMakeOptions options;
    options.m_bAgree = true;
    CWriting agreeing(batches(), options);
    EXPECT_EQ(agreeing.write("head", "{}"), "1\n");
    EXPECT_EQ(agreeing.write("entries", R"({"n"=9,"b"="x"})"), "size at entries.n @3+1");
}

TEST(RecordWriter, finishTellsWhatIsMissing)
{
    CWriting writing(batches());
    EXPECT_EQ(writing.finish(), "more at head @0+0");
    EXPECT_EQ(writing.write("head", "{}"), "1\n");
    EXPECT_EQ(writing.finish(), "more at end @2+0");
}

TEST(RecordWriter, messagesWithoutFramesFollowEachOther)
{
    CWriting writing(layout4(R"("n" = (ANF1) 0, "@n" = "size of b", "b" = (BCF0) "", "@b" = "to end")"));
    EXPECT_EQ(writing.finish(), "done");
    EXPECT_EQ(writing.write("", R"({"b"="xy"})"), "2xy");
    EXPECT_EQ(writing.write("", R"({"b"="z"})"), "1z");
    EXPECT_EQ(writing.finish(), "done");
}

TEST(RecordWriter, aRecordThatEndsWithTheInputIsTheLast)
{
    CWriting writing(layout4(R"("a" = (ACF1) "", "b" = (BCF0) "", "@b" = "to end")"));
    EXPECT_EQ(writing.write("", R"({"a"="x","b"="yz"})"), "xyz");
    EXPECT_EQ(writing.write("", R"({"a"="x","b"="yz"})"), "ambiguous at  @3+3");
    EXPECT_EQ(writing.finish(), "done");
}

TEST(RecordWriter, whatItWritesIsWhatIsMadeAsAWhole)
{
    CWriting writing(batches());
    std::string file = writing.write("head", "{}");
    file += writing.write("entries", R"({"v"=1,"b"="x"})");
    file += writing.write("end", R"({"count"=1})");
    EXPECT_EQ(file, make(batches(), R"({"entries"=[{"v"=1,"b"="x"}]})"));
}

TEST(RecordWriter, noSuchRecordIsMisuse)
{
    const CLayout layout = batches();
    CRecordWriter writer(layout);
    std::string out;
    EXPECT_THROW(writer.write(0, CFields(), out), CLogicError);
    EXPECT_THROW(writer.write(1000, CFields(), out), CLogicError);
    EXPECT_THROW(CRecordWriter{CLayout()}, CLogicError);
}

}  // namespace murv::tests

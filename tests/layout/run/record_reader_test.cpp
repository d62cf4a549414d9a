// Records one at a time: from memory, pieces and streams, with damaged ones among them.
#include <sstream>

#include "murv/records.h"
#include "tests/layout/run/run_helpers.h"
#include "tests/support/breaking_buffer.h"

namespace murv::tests
{

namespace
{

CLayout batches()
{
    return layout4(R"("head" = { "t" = (ACF1fix) "1" }, "batches" = [ { "open" = { "t" = (ACF1fix) "5" },
        "entries" = [ { "t" = (ACF1fix) "6", "v" = (ANF2) 0 } ], "close" = { "t" = (ACF1fix) "8", "n" = (ANF1) 0,
        "@n" = "count of entries" } } ],
        "end" = { "t" = (ACF1fix) "9" })",
                   "lines");
}

const char* const s_cpFile = "1\n5\n601\n602\n82\n5\n80\n9\n";

/// `path #number @offset+length {tree} ! findings; ...`, then how it ended.
std::string readAll(CRecordReader& reader, bool skips = false)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
    {
        CFields record;
        const E_RecordResult result = reader.next(record);
        const tRecordInfo& info = reader.getRecord();
        const std::string place = " #" + std::to_string(info.m_ullNumber) + " @" + std::to_string(info.m_ullOffset) +
                                  "+" + std::to_string(info.m_ullLength);
        if (result == RR_record)
            text += reader.getPath() + place + " " + text4Tree(record) + findings4(reader.getFindings()) + "; ";
        else if (result == RR_fault)
        {
            text += "(" + place4(reader.getFault()) + place + "); ";
            if (!skips || !reader.skip())
                return text + "stopped";
        }
        else
            return text + findings4(reader.getFindings()) + (result == RR_end ? "end" : "more");
    }
    return text + "without end";
}

std::string readAll(const CLayout& layout, std::string_view file, bool skips = false,
                    const tRecordOptions& options = {})
{
    CRecordReader reader(layout, options);
    reader.open(file);
    return readAll(reader, skips);
}

/// The same from pieces of a size.
std::string readPieces(const CLayout& layout, std::string_view file, std::size_t size, bool skips = false)
{
    CRecordReader reader(layout);
    reader.open();
    std::string text;
    for (std::size_t at = 0;; at += size)
    {
        text += readAll(reader, skips);
        if (text.size() < 4 || text.compare(text.size() - 4, 4, "more") != 0)
            return text;
        text.resize(text.size() - 4);
        if (at < file.size())
            reader.put(file.substr(at, size));
        else
            reader.end();
    }
}

std::string counts4(const CRecordReader& reader)
{
    const tRecordCounts& counts = reader.getCounts();
    return std::to_string(counts.m_ullRecords) + " read, " + std::to_string(counts.m_ullDamaged) + " damaged, " +
           std::to_string(counts.m_ullFindings) + " findings, " + std::to_string(counts.m_ullBytes) + " bytes";
}

}  // namespace

TEST(RecordReader, givesEachRecordWithPathNumberAndPlace)
{
    EXPECT_EQ(readAll(batches(), s_cpFile),
              R"(head #1 @0+1 {"t"="1"}; batches[0].open #2 @2+1 {"t"="5"}; )"
              R"(batches[0].entries[0] #3 @4+3 {"t"="6","v"=1}; batches[0].entries[1] #4 @8+3 {"t"="6","v"=2}; )"
              R"(batches[0].close #5 @12+2 {"t"="8","n"=2}; batches[1].open #6 @15+1 {"t"="5"}; )"
              R"(batches[1].close #7 @17+2 {"t"="8","n"=0}; end #8 @20+1 {"t"="9"}; end)");
}

TEST(RecordReader, givesTheBytesOfEachRecord)
{
    const CLayout layout = batches();
    CRecordReader reader(layout);
    reader.open(s_cpFile);
    EXPECT_EQ(reader.getBytes(), "");
    EXPECT_EQ(reader.getPath(), "");
    for (const char* const expected : {"1", "5", "601", "602", "82"})
    {
        ASSERT_EQ(reader.next(), RR_record);
        EXPECT_EQ(reader.getBytes(), expected);
    }
}

TEST(RecordReader, piecesOfAnySizeGiveTheSame)
{
    const std::string whole = readAll(batches(), s_cpFile);
    for (const std::size_t size :
         {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{5}, std::size_t{7}, std::size_t{100}})
        EXPECT_EQ(readPieces(batches(), s_cpFile, size), whole) << size;
}

TEST(RecordReader, aStreamGivesTheSame)
{
    const CLayout layout = batches();
    CRecordReader reader(layout);
    std::istringstream stream(s_cpFile);
    reader.open(stream);
    EXPECT_EQ(readAll(reader), readAll(layout, s_cpFile));
}

TEST(RecordReader, longStreamsAreReadInPieces)
{
    const CLayout layout = layout4(R"("l" = [ { "v" = (ANF7) 0 } ])", "lines");
    std::string file;
    for (int i = 0; i < 50000; ++i)
        file += std::to_string(1000000 + i) + "\n";
    std::istringstream stream(file);
    CRecordReader reader(layout);
    reader.open(stream);
    long long expected = 1000000;
    CFields record;
    while (reader.next(record) == RR_record)
    {
        ASSERT_EQ(record["v"].asSint64(), expected);
        ASSERT_EQ(reader.getBytes(), std::to_string(expected));
        ++expected;
    }
    EXPECT_EQ(expected, 1050000);
    EXPECT_EQ(counts4(reader), "50000 read, 0 damaged, 0 findings, 400000 bytes");
}

TEST(RecordReader, aStreamThatFailsIsAFaultNotTheEnd)
{
    const CLayout layout = layout4(R"("l" = [ { "v" = (ANF1) 0 } ])", "lines");
    CBreakingBuffer buffer("1\n2\n");
    std::istream stream(&buffer);
    CRecordReader reader(layout);
    reader.open(stream);
    EXPECT_EQ(readAll(reader, true), R"((input at  @0+0 #1 @0+0); stopped)");
    EXPECT_EQ(reader.next(), RR_fault);
    EXPECT_EQ(reader.getFault().m_strMessage, "The input cannot be read");
}

TEST(RecordReader, saysHowManyBytesAreMissing)
{
    const CLayout layout = layout4(R"("l" = [ { "v" = (ACF0) "", "@v" = "to end" } ])", "prefixed BNF1");
    CRecordReader reader(layout);
    reader.open();
    EXPECT_EQ(reader.next(), RR_more);
    EXPECT_EQ(reader.getFault().m_eCode, PF_more);
    EXPECT_EQ(reader.getFault().m_ullMissing, 1u);
    reader.put("\5ab");
    EXPECT_EQ(reader.next(), RR_more);
    EXPECT_EQ(reader.getFault().m_ullMissing, 3u);
    reader.put("cde");
    EXPECT_EQ(reader.next(), RR_record);
    EXPECT_EQ(reader.getBytes(), "abcde");
    EXPECT_EQ(reader.next(), RR_more);
    reader.end();
    EXPECT_EQ(reader.next(), RR_end);
    EXPECT_EQ(reader.next(), RR_end) << "the end stays";
}

TEST(RecordReader, aCutInputIsAFaultAtItsEnd)
{
    const CLayout layout = layout4(R"("l" = [ { "v" = (ACF0) "", "@v" = "to end" } ])", "prefixed BNF1");
    EXPECT_EQ(readAll(layout, "\1a\5b"), R"(l[0] #1 @1+1 {"v"="a"}; (more at l @2+2 #2 @2+0); stopped)");
    EXPECT_EQ(readPieces(layout, "\1a\5b", 1), readAll(layout, "\1a\5b"));
}

TEST(RecordReader, aLineWithoutItsMarkWaitsForTheEnd)
{
    const CLayout layout = layout4(R"("l" = [ { "v" = (ANF1) 0 } ])", "lines");
    CRecordReader reader(layout);
    reader.open();
    reader.put("1\n2");
    EXPECT_EQ(readAll(reader), R"(l[0] #1 @0+1 {"v"=1}; more)");
    reader.end();
    EXPECT_EQ(readAll(reader), R"(l[1] #2 @2+1 {"v"=2}; end)");
}

TEST(RecordReader, damagedRecordsAreSkipped)
{
    const CLayout layout = batches();
    CRecordReader reader(layout);
    const std::string file = "1\n5\n601\n6x2\n603\n84\n9\n";
    reader.open(file);
    EXPECT_EQ(
        readAll(reader, true),
        R"(head #1 @0+1 {"t"="1"}; batches[0].open #2 @2+1 {"t"="5"}; batches[0].entries[0] #3 @4+3 {"t"="6","v"=1}; )"
        R"((digits at batches[0].entries[1].v @9+2 #4 @8+3); batches[0].entries[2] #5 @12+3 {"t"="6","v"=3}; )"
        R"(batches[0].close #6 @16+2 {"t"="8","n"=4}; end #7 @19+1 {"t"="9"}; end)");
    EXPECT_EQ(counts4(reader), "6 read, 1 damaged, 0 findings, 21 bytes") << "the total is not compared";
}

TEST(RecordReader, totalsOverOtherRecordsAreCompared)
{
    EXPECT_NE(readAll(batches(), "1\n5\n601\n84\n9\n").find("! total at batches[0].close.n @9+1"), std::string::npos)
        << readAll(batches(), "1\n5\n601\n84\n9\n");
}

TEST(RecordReader, findingsComeWithTheirRecord)
{
    const CLayout layout = layout4(
        R"("n" = (ANF1) 0, "@n" = "sum of a; valid 1..5", "a" = [ (ANF1) 0 ], "@a" = "until . = 0",
        "d" = (ANF6YYMMDD) 0)");
    EXPECT_EQ(readAll(layout,
                      "8120230229"
                      "310240229"),
              R"( #1 @0+10 {"n"=8,"a"=[1,2,0],"d"=230229} ! total at n @0+1 ! invalid at n @0+1 ! date at d @4+6; )"
              R"( #2 @10+9 {"n"=3,"a"=[1,0],"d"=240229} ! total at n @10+1; end)");
}

TEST(RecordReader, recordsOfAnotherLengthAreSkipped)
{
    const CLayout layout = layout4(R"("l" = [ { "v" = (ANF2) 0 } ])", "lines 2");
    EXPECT_EQ(
        readAll(layout, "01\n2\n003\n04\n", true),
        R"(l[0] #1 @0+2 {"v"=1}; (frame at l @3+1 #2 @3+1); (frame at l @5+3 #3 @5+3); l[1] #4 @9+2 {"v"=4}; end)");
}

TEST(RecordReader, unknownRecordsAreSkipped)
{
    EXPECT_EQ(readAll(batches(), "1\n5\n7\n601\n81\n9\n", true),
              R"(head #1 @0+1 {"t"="1"}; batches[0].open #2 @2+1 {"t"="5"}; )"
              R"((literal at batches[0].close.t @4+1 #3 @4+1); batches[0].entries[0] #4 @6+3 {"t"="6","v"=1}; )"
              R"(batches[0].close #5 @10+2 {"t"="8","n"=1}; end #6 @13+1 {"t"="9"}; end)");
}

TEST(RecordReader, anEndThatIsNotKnownYetIsWaitedFor)
{
    const CLayout tail = layout4(R"("a" = [ { "k" = (ACF1) "", "v" = (ANF2) 0 } ], "@a" = "to end", "z" = (ANF2) 0)");
    const CLayout size = layout4(R"("m" = (ACF2) "", "n" = (ANF1) 0, "@n" = "size of .", "x" = (ACF1) "")");
    for (const std::size_t piece : {std::size_t{1}, std::size_t{2}, std::size_t{3}})
    {
        EXPECT_EQ(readPieces(tail, "x01y0299", piece), readAll(tail, "x01y0299")) << piece;
        for (const char* const packet : {"a", "ab", "ab4", "ab4x", "ab5x"})
            EXPECT_EQ(readPieces(size, packet, piece), readAll(size, packet)) << packet << piece;
    }
    EXPECT_EQ(readAll(size, "a"), "(more at m @0+1 #1 @0+0); stopped");
}

TEST(RecordReader, whereItGoesOnDoesNotDependOnPieces)
{
    for (const char* const file : {"1\n5\n7\n601\n81\n9\n", "1\n5x\n601\n81\n9\n", "1\n5\n8xx\n5\n80\n9\n", "7\n7\n5\n",
                                   "1\n5\n6x2\n7\n81\n7\n9\n"})
    {
        const std::string whole = readAll(batches(), file, true);
        for (const std::size_t size : {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{5}})
            EXPECT_EQ(readPieces(batches(), file, size, true), whole) << size;
    }
}

TEST(RecordReader, aFaultStaysUntilItIsSkipped)
{
    const CLayout layout = layout4(R"("l" = [ { "v" = (ANF1) 0 } ])", "lines 1");
    CRecordReader reader(layout);
    for (const char* const file : {"x\n2\n", "xx\n2\n"})
    {
        reader.open(file);
        EXPECT_EQ(reader.next(), RR_fault);
        const std::string first = place4(reader.getFault());
        EXPECT_EQ(reader.next(), RR_fault);
        EXPECT_EQ(place4(reader.getFault()), first);
        EXPECT_TRUE(reader.skip());
        EXPECT_FALSE(reader.skip()) << "only once";
        EXPECT_EQ(reader.next(), RR_record);
        EXPECT_EQ(reader.getBytes(), "2");
        EXPECT_EQ(counts4(reader),
                  "1 read, 1 damaged, 0 findings, " + std::to_string(std::string(file).size()) + " bytes");
    }
}

TEST(RecordReader, theDamagedRecordIsAtHand)
{
    const CLayout layout = batches();
    CRecordReader reader(layout);
    reader.open("1\n5\n6x2\n81\n");
    ASSERT_EQ(reader.next(), RR_record);
    ASSERT_EQ(reader.next(), RR_record);
    ASSERT_EQ(reader.next(), RR_fault);
    EXPECT_EQ(reader.getBytes(), "6x2");
    EXPECT_EQ(reader.getPath(), "batches[0].entries[0]");
    EXPECT_EQ(reader.getRecord().m_ullNumber, 3u);
    reader.open("1\n7__\n");
    ASSERT_EQ(reader.next(), RR_record);
    ASSERT_EQ(reader.next(), RR_fault);
    EXPECT_EQ(reader.getBytes(), "7__");
    EXPECT_EQ(reader.getRecord().m_ullNumber, 2u);
}

TEST(RecordReader, aBadLengthEndsTheStream)
{
    const CLayout layout = layout4(R"("l" = [ { "v" = (ANF1) 0 } ])", "prefixed ANF2");
    EXPECT_EQ(readAll(layout, "011x11", true), R"(l[0] #1 @2+1 {"v"=1}; (frame at l @3+2 #2 @3+0); stopped)");
    EXPECT_EQ(readAll(layout, "02xx011", true), R"((digits at l[0].v @2+1 #1 @2+2); l[1] #2 @6+1 {"v"=1}; end)");
}

TEST(RecordReader, withoutFramesTheEndOfADamagedRecordIsNotKnown)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "size of b", "b" = (BCF0) "", "@b" = "to end")");
    CRecordReader reader(layout);
    reader.open("x");
    EXPECT_EQ(reader.next(), RR_fault);
    EXPECT_FALSE(reader.skip());
    EXPECT_EQ(counts4(reader), "0 read, 0 damaged, 0 findings, 0 bytes");
}

TEST(RecordReader, withoutFramesMessagesFollowEachOther)
{
    const CLayout layout = layout4(R"("n" = (ANF1) 0, "@n" = "size of b", "b" = (BCF0) "", "@b" = "to end")");
    const std::string all = R"( #1 @0+3 {"n"=2,"b"="xy"};  #2 @3+1 {"n"=0,"b"=""};  #3 @4+2 {"n"=1,"b"="z"}; end)";
    EXPECT_EQ(readAll(layout, "2xy01z"), all);
    EXPECT_EQ(readPieces(layout, "2xy01z", 1), all);
    EXPECT_EQ(readAll(layout, ""), "end");
}

TEST(RecordReader, aRecordWithoutBytesDoesNotRepeat)
{
    const CLayout layout = layout4(R"("a" = (ACF1fix) "x", "@a" = "optional")");
    EXPECT_EQ(readAll(layout, "xxy"),
              R"( #1 @0+1 {"a"="x"};  #2 @1+1 {"a"="x"}; (leftOver at  @2+1 #3 @2+0); stopped)");
}

TEST(RecordReader, recordsHaveALongest)
{
    tRecordOptions options;
    options.m_ullLongest = 3;
    const CLayout lines = layout4(R"("l" = [ { "v" = (ACF0) "", "@v" = "to end" } ])", "lines");
    EXPECT_EQ(readAll(lines, "abc\nabcd\nx\n", true, options),
              R"(l[0] #1 @0+3 {"v"="abc"}; (limit at l @4+4 #2 @4+4); l[1] #3 @9+1 {"v"="x"}; end)");
    const CLayout prefixed = layout4(R"("l" = [ { "v" = (ACF0) "", "@v" = "to end" } ])", "prefixed BNF1");
    EXPECT_EQ(readAll(prefixed, "\3abc\4abcd\1x", true, options),
              R"(l[0] #1 @1+3 {"v"="abc"}; (limit at l @4+1 #2 @4+0); stopped)");
    const CLayout plain = layout4(R"("v" = (ACF0) "", "@v" = "ends \";\"")");
    EXPECT_EQ(readAll(plain, "ab;abc;x;", true, options), R"( #1 @0+3 {"v"="ab"}; (limit at  @3+4 #2 @3+0); stopped)");
}

TEST(RecordReader, aLongestRecordIsRefusedBeforeItIsWhole)
{
    tRecordOptions options;
    options.m_ullLongest = 3;
    for (const CLayout& layout : {layout4(R"("l" = [ { "v" = (ACF0) "", "@v" = "to end" } ])", "lines"),
                                  layout4(R"("v" = (ACF0) "", "@v" = "ends \";\"")"),
                                  layout4(R"("a" = (ACF2) "", "b" = (ACF2) "", "v" = (ACF0) "", "@v" = "ends \";\"")")})
    {
        CRecordReader reader(layout, options);
        reader.open();
        E_RecordResult result = RR_more;
        int given = 0;
        for (; result == RR_more && given < 100; ++given)
        {
            reader.put("x");
            result = reader.next();
        }
        EXPECT_EQ(result, RR_fault);
        EXPECT_EQ(reader.getFault().m_eCode, PF_limit);
        EXPECT_EQ(reader.getFault().m_strMessage, "A limit that the caller set is passed");
        EXPECT_LE(given, 6);
        EXPECT_FALSE(reader.skip());
    }
}

TEST(RecordReader, bytesCountOnlyWholeRecords)
{
    const CLayout layout = layout4(R"("a" = (ACF1) "", "b" = (ACV1+1) "")");
    CRecordReader reader(layout);
    reader.open();
    reader.put("a1xa");
    EXPECT_EQ(reader.next(), RR_record);
    EXPECT_EQ(reader.next(), RR_more);
    EXPECT_EQ(counts4(reader), "1 read, 0 damaged, 0 findings, 3 bytes");
}

TEST(RecordReader, openBeginsAnew)
{
    const CLayout layout = batches();
    CRecordReader reader(layout);
    reader.open("1\n5\n6x");
    while (reader.next() == RR_record)
    {
    }
    reader.open(s_cpFile);
    EXPECT_EQ(readAll(reader), readAll(layout, s_cpFile));
    EXPECT_EQ(counts4(reader), "8 read, 0 damaged, 0 findings, 22 bytes");
}

TEST(RecordReader, afterAnExceptionOnlyOpenHelps)
{
    class CThrowing : public IPacketVisitor
    {
    public:
        void onLeaf(unsigned int, const tPacketValue&, const tByteRange&) override
        {
            throw 5;
        }
    };
    const CLayout layout = batches();
    CRecordReader reader(layout);
    reader.open(s_cpFile);
    CThrowing visitor;
    EXPECT_THROW(reader.next(visitor), int);
    EXPECT_EQ(reader.next(), RR_fault);
    EXPECT_FALSE(reader.skip());
    reader.open(s_cpFile);
    EXPECT_EQ(reader.next(), RR_record);
}

TEST(RecordReader, anEmptyInputHasNoRecords)
{
    EXPECT_EQ(readAll(layout4(R"("l" = [ { "v" = (ANF1) 0 } ])", "lines"), ""), "end");
    EXPECT_EQ(readAll(batches(), ""), "(more at head @0+0 #1 @0+0); stopped");
}

TEST(RecordReader, theLayoutMustBeCompiled)
{
    EXPECT_THROW(CRecordReader{CLayout()}, CLogicError);
}

}  // namespace murv::tests

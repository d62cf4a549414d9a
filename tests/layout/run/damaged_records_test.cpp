// tests/layout/run/damaged_records_test.cpp - what a record reader says of damaged records, and how it goes on.
#include <gtest/gtest.h>

#include "murv/records.h"

namespace murv::tests
{

namespace
{
CLayout compiled(const char* text)
{
    CLayout layout;
    EXPECT_TRUE(layout.compile(text)) << layout.getMistakes().front().m_strMessage;
    return layout;
}

const CLayout& sales()
{
    static const CLayout layout = compiled(
        "{ \"@\" = \"layout 1; lines 5\","
        " \"sales\" = [ { \"t\" = (ACF1fix) \"S\", \"a\" = (ANF2) 0, \"c\" = (ACF2) \"\", \"@c\" = \"mask 1\" } ],"
        " \"end\" = { \"t\" = (ACF1fix) \"E\", \"n\" = (ANF4) 0, \"@n\" = \"count of sales\" } }");
    return layout;
}

/// Names of the leaves that are seen.
class CNames : public IPacketVisitor
{
public:
    explicit CNames(const CLayout& layout) : m_tLayout(layout)
    {
    }
    void onLeaf(unsigned int part, const tPacketValue&, const tByteRange&) override
    {
        m_strNames += m_tLayout.getPart(part).m_strvName;
    }
    std::string m_strNames;

private:
    const CLayout& m_tLayout;
};
}  // namespace

TEST(DamagedRecords, lineOfAnotherLengthIsSkipped)
{
    CRecordReader reader(sales());
    reader.open("S01ab\nS02abcd\nS03ab\nE0003\n");
    EXPECT_EQ(reader.next(), RR_record);
    EXPECT_EQ(reader.next(), RR_fault);
    EXPECT_EQ(reader.getFault().m_strMessage, "The line is longer than the records are");
    EXPECT_TRUE(reader.skip());
    EXPECT_EQ(reader.next(), RR_record);
    EXPECT_EQ(reader.getRecord().m_ullOffset, 14U);
    EXPECT_EQ(reader.getPath(), "sales[1]");
    EXPECT_EQ(reader.next(), RR_record);
    EXPECT_EQ(reader.next(), RR_end);
    EXPECT_EQ(reader.getCounts().m_ullDamaged, 1U);
}

TEST(DamagedRecords, lineOfAnotherLengthStaysAFaultUntilItIsSkipped)
{
    CRecordReader reader(sales());
    reader.open("S01abc\nE0000\n");
    EXPECT_EQ(reader.next(), RR_fault);
    EXPECT_EQ(reader.next(), RR_fault);
}

TEST(DamagedRecords, bytesOfARecordAreStarsWhereItemsAreMasked)
{
    CRecordReader reader(sales());
    reader.open("S01abc\n");
    EXPECT_EQ(reader.next(), RR_fault);
    EXPECT_EQ(reader.getFault().m_strBytes, "******");
}

TEST(DamagedRecords, visitorSeesWhatIsBeforeTheFault)
{
    CNames names(sales());
    CRecordReader reader(sales());
    reader.open("S0xab\nE0000\n");
    EXPECT_EQ(reader.next(names), RR_fault);
    EXPECT_EQ(names.m_strNames, "t");
    EXPECT_EQ(reader.getFault().m_strPath, "sales[0].a");
}

TEST(DamagedRecords, visitorSeesWhatIsBeforeALiteralThatDiffers)
{
    const CLayout layout =
        compiled("{ \"@\" = \"layout 1; lines\", \"a\" = (ANF2) 0, \"b\" = (ACF1fix) \";\", \"c\" = (ACF1) \"\" }");
    CNames names(layout);
    CRecordReader reader(layout);
    reader.open("12,x\n34;y\n");
    EXPECT_EQ(reader.next(names), RR_fault);
    EXPECT_EQ(names.m_strNames, "a");
    EXPECT_EQ(reader.getRecord().m_uiPart, 0U);
    EXPECT_EQ(reader.getRecord().m_ullNumber, 1U);
    EXPECT_TRUE(reader.skip());
    EXPECT_EQ(reader.next(names), RR_record);
}

TEST(DamagedRecords, findingsOfTheWholeComeWithTheEndHoweverTheBytesCome)
{
    const std::string file = "S01ab\nE0007\n";
    for (std::size_t piece = 1; piece <= file.size(); ++piece)
    {
        CRecordReader reader(sales());
        reader.open();
        std::size_t findings = 0;
        std::size_t at = 0;
        for (E_RecordResult result = RR_record; result != RR_end;)
        {
            result = reader.next();
            ASSERT_NE(result, RR_fault);
            findings += result == RR_more ? 0 : reader.getFindings().size();
            if (result != RR_more)
                continue;
            if (at == file.size())
                reader.end();
            else
                reader.put(std::string_view(file).substr(at, piece));
            at = std::min(at + piece, file.size());
        }
        EXPECT_EQ(findings, 1U) << piece;
        EXPECT_EQ(reader.getCounts().m_ullFindings, 1U) << piece;
    }
}

TEST(DamagedRecords, recordBeyondTheLongestIsAFault)
{
    const CLayout layout = compiled("{ \"@\" = \"layout 1; lines\", \"a\" = (ACF0) \"\", \"@a\" = \"to end\" }");
    tRecordOptions options;
    options.m_ullLongest = 10;
    CRecordReader reader(layout, options);
    reader.open();
    reader.put("01234567890123456789");
    EXPECT_EQ(reader.next(), RR_fault);
    EXPECT_EQ(reader.getFault().m_eCode, PF_limit);
}

TEST(LayoutParts, tellMasksAndSmallNumbers)
{
    const CLayout layout = compiled(
        "{ \"@\" = \"layout 1\", \"a\" = (BNF1) 0, \"@a\" = \"bits 5 high, 3 low\", \"b\" = (ACF4) \"\","
        " \"@b\" = \"mask 3\" }");
    const std::vector<tLayoutBits> bits = layout.getBits(1);
    ASSERT_EQ(bits.size(), 2U);
    EXPECT_EQ(bits[0].m_strvName, "high");
    EXPECT_EQ(bits[0].m_uiWidth, 5U);
    EXPECT_EQ(bits[0].m_uiShift, 3U);
    EXPECT_EQ(bits[1].m_uiShift, 0U);
    EXPECT_TRUE(layout.getBits(2).empty());
    EXPECT_TRUE(layout.getPart(2).m_bMasked);
    EXPECT_EQ(layout.getPart(2).m_uiShown, 3U);
}

}  // namespace murv::tests

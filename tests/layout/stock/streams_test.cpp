// tests/layout/stock/streams_test.cpp - samples record by record, in pieces of any size, give what the whole gives.
#include "murv/records.h"
#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

struct tSample
{
    const char* m_pLayout;
    const char* m_pFile;
};

constexpr tSample s_ctSamples[] = {
    {"ach", "ach/20110805A.ach"},
    {"ach", "ach/iat-mixedCreditDebit.ach"},
    {"iso8583", "iso8583/iso_reversal_message.dat"},
    {"itch50", "itch50/sample-length-prefixed.bin"},
    {"binaryfile", "binaryfile/binaryfile.dat"},
    {"tar", "archives/ustar.tar"},
    {"tar", "archives/v7.tar"},
    {"cpio", "archives/newc.cpio"},
    {"cpio-odc", "archives/odc.cpio"},
    {"ar", "archives/longname.a"},
    {"pcap", "captures/HSRP_coup.pcap"},
    {"cobol", "cobol/bookings.ebc"},
    {"git-index", "unix/git.index"},
    {"sqlite-header", "unix/sqlite-header.bin"},
};

/// Counts records and values.
class CCounter : public IPacketVisitor
{
public:
    void onRecord(unsigned int, std::uint64_t, std::uint64_t offset) override
    {
        m_vOffsets.push_back(offset);
    }
    void onLeaf(unsigned int, const tPacketValue&, const tByteRange&) override
    {
        ++m_nLeaves;
    }

    std::vector<std::uint64_t> m_vOffsets;
    std::size_t m_nLeaves = 0;
};

/// Records of the bytes, given in pieces of that size; a fault ends them.
CCounter inPieces(const CLayout& layout, const std::string& bytes, std::size_t size, std::string& fault)
{
    CCounter counter;
    CRecordReader records(layout);
    records.open();
    std::size_t given = 0;
    bool isOver = false;
    for (;;)
    {
        const E_RecordResult result = records.next(counter);
        if (result == RR_end)
            return counter;
        if (result == RR_fault || (result == RR_more && isOver))
        {
            fault = place(records.getFault()) + ": " + records.getFault().m_strMessage;
            return counter;
        }
        if (result != RR_more)
            continue;
        isOver = given == bytes.size();
        if (isOver)
            records.end();
        records.put(std::string_view(bytes).substr(given, size));
        given = std::min(given + size, bytes.size());
    }
}

}  // namespace

TEST(Streams, piecesGiveWhatTheWholeGives)
{
    for (const tSample& sampled : s_ctSamples)
    {
        SCOPED_TRACE(sampled.m_pFile);
        const CLayout layout = installed(sampled.m_pLayout);
        const std::string bytes = sample(sampled.m_pFile);
        CPacketReader reader(layout);
        CCounter whole;
        ASSERT_TRUE(reader.visit(bytes, whole)) << place(reader.getFault());
        for (const std::size_t size : {std::size_t{1}, std::size_t{7}, std::size_t{100}, bytes.size()})
        {
            std::string fault;
            const CCounter pieces = inPieces(layout, bytes, size, fault);
            EXPECT_EQ(fault, "") << size;
            EXPECT_EQ(pieces.m_vOffsets, whole.m_vOffsets) << size;
            EXPECT_EQ(pieces.m_nLeaves, whole.m_nLeaves) << size;
        }
    }
}

TEST(Streams, recordsThatAreReadCanBeWritten)
{
    for (const tSample& sampled : s_ctSamples)
    {
        SCOPED_TRACE(sampled.m_pFile);
        const CLayout layout = installed(sampled.m_pLayout);
        const std::string bytes = sample(sampled.m_pFile);
        CRecordReader records(layout);
        CRecordWriter writer(layout);
        records.open(bytes);
        std::string out;
        CFields record;
        while (records.next(record) == RR_record)
            ASSERT_TRUE(writer.write(records.getRecord().m_uiPart, record, out))
                << records.getPath() << ": " << place(writer.getFault()) << " " << writer.getFault().m_strMessage;
        EXPECT_TRUE(writer.finish()) << place(writer.getFault());
        // A writer ends every line, as it cannot know which is the last.
        const bool isOpen = std::string_view(sampled.m_pLayout) == "ach" && bytes.back() != '\n';
        EXPECT_EQ(out, bytes + (isOpen ? "\n" : ""));
    }
}

}  // namespace murv::tests

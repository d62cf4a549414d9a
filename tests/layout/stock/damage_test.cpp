// tests/layout/stock/damage_test.cpp - samples with one byte changed, or cut off: nothing wrong passes without a word.
//
// A damaged sample is refused at a place, has a finding, or comes back byte for byte; there is no fourth outcome.
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
    {"ach", "ach/cor-read.ach"},
    {"ach", "ach/ppd-mixedDebitCredit.ach"},
    {"iso8583", "iso8583/iso_reversal_message.dat"},
    {"itch50", "itch50/sample-length-prefixed.bin"},
    {"binaryfile", "binaryfile/binaryfile.dat"},
    {"tar", "archives/gnu.tar"},
    {"tar", "archives/pax.tar"},
    {"cpio", "archives/newc.cpio"},
    {"cpio", "archives/crc.cpio"},
    {"cpio-odc", "archives/odc.cpio"},
    {"ar", "archives/longname.a"},
    {"pcap", "captures/ntp.pcap"},
    {"cobol", "cobol/bookings.ebc"},
    {"git-index", "unix/git.index"},
    {"sqlite-header", "unix/sqlite-header.bin"},
    {"ssh-public-key", "unix/ssh-rsa-public.bin"},
};

/// Whether the bytes have one of the outcomes that are allowed.
testing::AssertionResult isHonest(const CLayout& layout, CPacketReader& reader, const std::string& bytes)
{
    CFields tree;
    if (!reader.read(bytes, tree))
    {
        const tPacketFault& fault = reader.getFault();
        const bool hasPlace = fault.m_ullOffset <= bytes.size() && !fault.m_strMessage.empty();
        return (hasPlace ? testing::AssertionSuccess() : testing::AssertionFailure()) << place(fault);
    }
    if (!reader.getFindings().empty())
        return testing::AssertionSuccess();
    CPacketMaker maker(layout, reader.getMakeOptions());
    std::string made;
    if (!maker.make(tree, made))
        return testing::AssertionFailure() << "not made: " << place(maker.getFault());
    return made == bytes ? testing::AssertionSuccess() : testing::AssertionFailure() << "other bytes";
}

}  // namespace

TEST(Damage, oneChangedByteIsToldOrComesBack)
{
    for (const tSample& sampled : s_ctSamples)
    {
        SCOPED_TRACE(sampled.m_pFile);
        const CLayout layout = installed(sampled.m_pLayout);
        const std::string whole = sample(sampled.m_pFile);
        CPacketReader reader(layout);
        const std::size_t step = whole.size() / 100 + 1;
        for (std::size_t at = 0; at < whole.size(); at += step)
        {
            for (const char byte : {'\0', ' ', '0', '9', 'A', '-', '\n', '\x80', '\xFF'})
            {
                std::string bytes = whole;
                bytes[at] = byte;
                ASSERT_TRUE(isHonest(layout, reader, bytes)) << at << " " << static_cast<int>(byte);
            }
        }
    }
}

TEST(Damage, cutOffSamplesAreToldOrComeBack)
{
    for (const tSample& sampled : s_ctSamples)
    {
        SCOPED_TRACE(sampled.m_pFile);
        const CLayout layout = installed(sampled.m_pLayout);
        const std::string whole = sample(sampled.m_pFile);
        CPacketReader reader(layout);
        const std::size_t step = whole.size() / 100 + 1;
        for (std::size_t length = 0; length < whole.size(); length += step)
        {
            const std::string bytes = whole.substr(0, length);
            ASSERT_TRUE(isHonest(layout, reader, bytes)) << length;
        }
    }
}

}  // namespace murv::tests

// Offsets and lengths that layouts state, held against the places at which reading finds the parts.
#include <filesystem>
#include <utility>

#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

/// Compares each leaf with what the layout says of it.
class CPlaceChecker : public IPacketVisitor
{
public:
    explicit CPlaceChecker(const CLayout& layout) : m_tLayout(layout), m_vBegins(layout.getPartCount(), s_cullNone)
    {
    }
    void onFields(unsigned int part) override
    {
        m_vBegins[part] = s_cullNone;
    }
    void onElement(unsigned int part, std::uint64_t) override
    {
        m_vBegins[part + 1] = s_cullNone;
    }
    void onRecord(unsigned int part, std::uint64_t, std::uint64_t offset) override
    {
        m_vBegins[part] = offset;
    }
    void onLeaf(unsigned int number, const tPacketValue&, const tByteRange& place) override
    {
        const tLayoutPart part = m_tLayout.getPart(number);
        EXPECT_LE(place.m_ullLength, part.m_ullMost) << m_tLayout.getPath(number);
        if (part.m_ullLeast != part.m_ullMost || part.m_strvExpression.substr(2, 1) != "F" ||
            part.m_strvRules.find("ends") != std::string_view::npos)
            return;
        EXPECT_EQ(place.m_ullLength, part.m_ullLeast) << m_tLayout.getPath(number);
        if (part.m_uiBase == CLayout::s_cuiNoPart)
            return;
        std::uint64_t& begin = m_vBegins[part.m_uiBase];
        if (begin == s_cullNone)
            begin = place.m_ullOffset - part.m_ullOffset;
        EXPECT_EQ(place.m_ullOffset - begin, part.m_ullOffset) << m_tLayout.getPath(number);
        ++m_uiCompared;
    }

    unsigned int m_uiCompared = 0;

private:
    static constexpr std::uint64_t s_cullNone = ~std::uint64_t{0};

    const CLayout& m_tLayout;
    std::vector<std::uint64_t> m_vBegins;  // by part: of the instance at hand
};

}  // namespace

TEST(Places, areWhereReadingFindsTheParts)
{
    const std::pair<const char*, const char*> samples[] = {
        {"ach", "ach/ppd-mixedDebitCredit.ach"},
        {"ach", "ach/cor-read.ach"},
        {"ar", "archives/plain.a"},
        {"binaryfile", "itch50/sample-length-prefixed.bin"},
        {"cpio", "archives/newc.cpio"},
        {"cpio-odc", "archives/odc.cpio"},
        {"git-index", "unix/git.index"},
        {"iso8583", "iso8583/iso_reversal_message.dat"},
        {"itch50", "itch50/sample-length-prefixed.bin"},
        {"pcap", "captures/ntp.pcap"},
        {"tar", "archives/ustar.tar"},
    };
    for (const auto& [name, file] : samples)
    {
        SCOPED_TRACE(file);
        const CLayout layout = installed(name);
        CPacketReader reader(layout);
        CPlaceChecker checker(layout);
        reader.visit(sample(file), checker);
        EXPECT_GE(checker.m_uiCompared, 3u) << place(reader.getFault());
    }
}

}  // namespace murv::tests

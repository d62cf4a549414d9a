// tests/tools/gen_samples_stock_test.cpp - samples of every installed layout, judged by the codec itself.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "murv/layout.h"
#include "tests/tools/sample_lines.h"

namespace murv::tests
{

namespace
{
constexpr std::size_t s_cnSamples = 300;

std::vector<std::string> installedNames()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(MURV_SOURCE_DIR "/share/murv/layouts"))
        names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

CLayout installed(const std::string& name)
{
    std::ostringstream text;
    text << std::ifstream(MURV_SOURCE_DIR "/share/murv/layouts/" + name + ".murv").rdbuf();
    CLayout layout;
    EXPECT_TRUE(layout.compile(text.str())) << name;
    return layout;
}

/// Notes which values were there.
class CSeenParts : public IPacketVisitor
{
public:
    void onLeaf(unsigned int part, const tPacketValue&, const tByteRange&) override
    {
        m_tSeen.insert(part);
    }

    std::set<unsigned int> m_tSeen;
};

/// What a line must say of a fault or finding.
std::string words4Fault(const tPacketFault& fault)
{
    std::string words = "{\"path\":\"" + fault.m_strPath + "\",\"code\":\"" + getFaultName(fault.m_eCode) + "\"";
    if (fault.m_ullRecord != 0)
        words += ",\"record\":" + std::to_string(fault.m_ullRecord) +
                 ",\"record_offset\":" + std::to_string(fault.m_ullRecordOffset);
    return words + ",\"offset\":" + std::to_string(fault.m_ullOffset);
}

void expectSaid(const std::string& line, const CPacketReader& reader, bool isRead)
{
    EXPECT_FALSE(isRead && reader.getFindings().empty()) << line;
    EXPECT_EQ(isRead, line.find("\"fault\":") == std::string::npos) << line;
    if (!isRead)
    {
        EXPECT_NE(line.find("\"fault\":" + words4Fault(reader.getFault())), std::string::npos) << line;
    }
    for (const tPacketFault& finding : reader.getFindings())
        EXPECT_NE(line.find(words4Fault(finding)), std::string::npos) << line;
}
}  // namespace

TEST(GenSamplesOfInstalledLayouts, areReadWithoutFindingAndMadeAgainByteForByte)
{
    ASSERT_EQ(installedNames().size(), 22U);
    for (const std::string& name : installedNames())
    {
        SCOPED_TRACE(name);
        const CLayout layout = installed(name);
        CPacketReader reader(layout);
        CPacketMaker maker(layout);
        const std::vector<std::string> lines = samples(name, {"-n", "100"});
        EXPECT_EQ(lines.size(), 100U);
        for (const std::string& line : lines)
        {
            const std::string bytes = bytesOf(line);
            CFields tree;
            ASSERT_TRUE(reader.read(bytes, tree)) << reader.getFault().m_strMessage << "\n" << line;
            EXPECT_TRUE(reader.getFindings().empty()) << line;
            std::string again;
            ASSERT_TRUE(maker.make(tree, again)) << maker.getFault().m_strMessage << "\n" << line;
            EXPECT_EQ(again, bytes);
        }
    }
}

TEST(GenSamplesOfInstalledLayouts, haveEveryAlternativeAndOptionalPart)
{
    for (const std::string& name : installedNames())
    {
        const CLayout layout = installed(name);
        CPacketReader reader(layout);
        CSeenParts seen;
        for (const std::string& line : samples(name, {"-n", std::to_string(s_cnSamples)}))
            EXPECT_TRUE(reader.visit(bytesOf(line), seen)) << line;
        for (unsigned int part = 0; part < layout.getPartCount(); ++part)
        {
            if (layout.getPart(part).m_eKind == LP_leaf)
            {
                EXPECT_EQ(seen.m_tSeen.count(part), 1U) << name << ": " << layout.getPath(part);
            }
        }
    }
}

TEST(GenSamplesOfInstalledLayouts, differFromEachOther)
{
    for (const std::string& name : installedNames())
    {
        std::set<std::string> different;
        for (const std::string& line : samples(name, {"-n", "50"}))
            different.insert(bytesOf(line));
        EXPECT_GT(different.size(), 30U) << name;
    }
}

TEST(GenSamplesOfInstalledLayouts, damagedOnesGiveWhatIsSaidOfThem)
{
    std::set<std::string> changes;
    for (const std::string& name : installedNames())
    {
        const CLayout layout = installed(name);
        CPacketReader reader(layout);
        const std::vector<std::string> lines = samples(name, {"-n", "100", "--damaged"});
        EXPECT_EQ(lines.size(), 100U);
        for (const std::string& line : lines)
        {
            const bool isRead = reader.check(bytesOf(line));
            expectSaid(line, reader, isRead);
            const std::size_t at = line.find("\"change\":\"") + 10;
            changes.insert(line.substr(at, line.find('"', at) - at));
        }
    }
    EXPECT_EQ(changes, (std::set<std::string>{"added", "bits", "check", "cut", "date", "digit", "flipped", "literal",
                                              "lost", "repeated", "size", "total", "valid"}));
}

}  // namespace murv::tests

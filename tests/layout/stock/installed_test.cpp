// tests/layout/stock/installed_test.cpp - rules that hold for every installed layout.
#include <filesystem>

#include "murv/loader.h"
#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

std::vector<std::string> installedNames()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(MURV_SOURCE_DIR "/share/murv/layouts"))
        names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

/// The least data that a layout can make a packet of: nothing, or where one of several must be chosen, the choice.
CFields defaultsOf(const std::string& name)
{
    static const std::map<std::string, std::string> data = {
        {"binaryfile", R"({ "packets" = [ {} ] })"},
        {"cpio", R"({ "members" = [ {} ] })"},
        {"cpio-odc", R"({ "members" = [ {} ] })"},
        {"hsrp", R"({ "body" = { "state" = {} } })"},
        {"pcap", R"({ "little" = {} })"},
        {"ssh-public-key", R"({ "ed25519" = {} })"},
    };
    const auto found = data.find(name);
    CLoaders loader;
    loader.setLCBC(loader.getLCBC() | LCBC_LOSSLESS);
    CFields tree;
    EXPECT_TRUE(loader.loading(found != data.end() ? found->second : "{}", tree)) << loader.getLastErrMsg();
    return tree;
}

}  // namespace

TEST(Installed, layoutsCompileWithoutMistakes)
{
    const std::vector<std::string> names = installedNames();
    ASSERT_EQ(names.size(), 22u);
    for (const std::string& name : names)
    {
        SCOPED_TRACE(name);
        EXPECT_TRUE(installed(name).isCompiled());
    }
}

TEST(Installed, layoutsSayFirstWhatTheyAreFor)
{
    for (const std::string& name : installedNames())
    {
        const CLayout layout = installed(name);
        ASSERT_TRUE(layout.isCompiled()) << name;
        EXPECT_GT(layout.getPart(0).m_strvComment.size(), 60u) << name;
    }
}

TEST(Installed, defaultsMakeAPacketThatReadsBack)
{
    for (const std::string& name : installedNames())
    {
        SCOPED_TRACE(name);
        const CLayout layout = installed(name);
        if (!layout.isCompiled())
            continue;
        const std::string packet = making(layout, defaultsOf(name));
        const tReading back = reading(layout, packet);
        EXPECT_TRUE(back.m_bRead) << place(back.m_tFault) << ": " << back.m_tFault.m_strMessage;
        EXPECT_EQ(making(layout, back.m_tTree), packet);
    }
}

TEST(Installed, pageListsEveryLayout)
{
    const std::string page = contentOf("docs/layouts-installed.md");
    for (const std::string& name : installedNames())
        EXPECT_NE(page.find("`" + name + "`"), std::string::npos) << name;
}

}  // namespace murv::tests

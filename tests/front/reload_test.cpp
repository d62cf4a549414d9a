// tests/front/reload_test.cpp - what a failed load leaves, and how a tree that is in use is replaced.
#include <gtest/gtest.h>

#include <sstream>

#include "murv/murv.h"
#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;

namespace
{
constexpr const char* s_cpRunning = "{\"port\"=1,\"host\"=\"h\"}";

CFields running()
{
    CFields tree;
    EXPECT_TRUE(CLoaders().loading(s_cpRunning, tree));
    tree.setName("config");
    tree.setID(5);
    return tree;
}

/// As docs/text.md says it is done.
bool reload(CLoaders& loader, const std::string& document, CFields& config)
{
    CFields fresh;
    if (!loader.loading(document, fresh))
        return false;
    config = std::move(fresh);
    return true;
}
}  // namespace

TEST(FailedLoad, ofTextEmptiesAContainerAndKeepsNameAndId)
{
    CFields tree = running();
    CLoaders loader;
    EXPECT_FALSE(loader.loading("{\"port\"=2, :}", tree));
    EXPECT_EQ(tree.getChildCount(), 0u);
    EXPECT_STREQ(tree.getName(), "config");
    EXPECT_EQ(tree.getID(), 5u);
}

TEST(FailedLoad, ofABinaryFileLeavesWhatWasRead)
{
    CFields source;
    source.addChildRef("port") = 2;
    source.addChildRef("host") = "other";
    const std::string file = source.toMURV(ER_BER);
    CFields tree = running();
    CLoaders loader;
    EXPECT_FALSE(loader.loading(file.substr(0, file.size() - 4), tree));
    ASSERT_EQ(tree.getChildCount(), 1u);
    EXPECT_EQ(tree["port"].asSint32(), 2);
}

TEST(FailedLoad, beforeTheFirstByteLeavesTheTargetAlone)
{
    const std::string before = show(running());
    const std::string secret = CFields("text").toMURV(ER_BER, SAVE_ALL, "secret");
    for (const std::string& document : {std::string("{ }"), std::string("MURF12345678"), secret, secret.substr(0, 13)})
    {
        CFields tree = running();
        EXPECT_FALSE(CLoaders().loading(document, tree));
        EXPECT_EQ(show(tree), before);
    }
    CFields tree = running();
    std::istringstream in("[1, 2]");
    in.setstate(std::ios_base::badbit);
    EXPECT_FALSE(CLoaders().loading(in, tree));
    EXPECT_EQ(show(tree), before);
}

TEST(Reload, throughASecondTreeReplacesAllOrNothing)
{
    CFields config;
    CLoaders loader;
    ASSERT_TRUE(reload(loader, s_cpRunning, config));
    const std::string before = show(config);
    EXPECT_FALSE(reload(loader, "{\"port\"=2, :}", config));
    EXPECT_EQ(show(config), before);
    EXPECT_EQ(loader.getErrorPlaces().at(0).m_uiColumn, 12u);
    EXPECT_TRUE(reload(loader, "{\"port\"=2, // new\n\"user\"=\"u\"}", config));
    EXPECT_EQ(show(config), "{port=2<1:// new>,user=\"u\"}");
}

TEST(Reload, intoTheTreeInUseReplacesItsMembersToo)
{
    CFields config;
    ASSERT_TRUE(CLoaders().loading(s_cpRunning, config));
    ASSERT_TRUE(CLoaders().loading("{\"port\"=2}", config));
    EXPECT_EQ(show(config), "{port=2}");
}

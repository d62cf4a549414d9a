// tests/tools/help_test.cpp - help, version, and calls that are wrong.
#include <gtest/gtest.h>

#include "tests/tools/tool.h"

namespace murv::tests
{

TEST(Help, namesEveryVerbAndExitCode)
{
    const tRun run = murvOn("", {"--help"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strError, "");
    for (const char* part : {"\n  fmt ", "\n  check ", "\n  get ", "\n  stat ", "\n  help ", "\n  0   done",
                             "\n  1   the answer is no", "\n  2   wrong call", "\n  3   malformed document",
                             "\n  5   reading or writing failed", "\n  70  internal error"})
        EXPECT_NE(run.m_strOutput.find(part), std::string::npos) << part;
}

TEST(Help, verbAndOptionGiveTheSameText)
{
    EXPECT_EQ(murvOn("", {"help"}).m_strOutput, murvOn("", {"--help"}).m_strOutput);
    for (const char* verb : {"fmt", "check", "get", "stat"})
    {
        const tRun run = murvOn("", {"help", verb});
        EXPECT_EQ(run.m_iExit, 0);
        EXPECT_EQ(run.m_strOutput, murvOn("", {verb, "--help"}).m_strOutput);
        EXPECT_NE(run.m_strOutput.find("Usage: murv " + std::string(verb) + " [OPTIONS] FILE"), std::string::npos)
            << run.m_strOutput;
    }
}

TEST(Help, ofAnUnknownVerbIsAWrongCall)
{
    const tRun run = murvOn("", {"help", "cook"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError, "murv: error: no verb is called cook\n");
}

TEST(Help, versionIsOneLine)
{
    const tRun run = murvOn("", {"--version"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput, "murv " MURV_TOOL_VERSION "\n");
}

TEST(Help, wrongCallsEndWithTwo)
{
    const std::vector<std::vector<std::string>> calls = {{},
                                                         {"cook"},
                                                         {"fmt"},
                                                         {"check"},
                                                         {"get"},
                                                         {"get", "a"},
                                                         {"stat"},
                                                         {"fmt", "--cook", "a"},
                                                         {"--cook"},
                                                         {"check", "a", "--json=x"},
                                                         {"get", "a", "b", "c"}};
    for (const std::vector<std::string>& call : calls)
    {
        const tRun run = murvOn("", call);
        EXPECT_EQ(run.m_iExit, 2) << (call.empty() ? "" : call.front());
        EXPECT_EQ(run.m_strOutput, "");
        EXPECT_EQ(run.m_strError.rfind("murv: error: ", 0), 0U) << run.m_strError;
    }
}

}  // namespace murv::tests

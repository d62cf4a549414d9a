// tests/tools/help_test.cpp - help, version, and calls that are wrong.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/tools/tool.h"

namespace murv::tests
{

TEST(Help, namesEveryVerbAndExitCode)
{
    const tRun run = murvOn("", {"--help"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strError, "");
    for (const char* part :
         {"\n  fmt ", "\n  check ", "\n  get ", "\n  diff ", "\n  merge ", "\n  stat ", "\n  unpack ", "\n  pack ",
          "\n  explain ", "\n  layouts ", "\n  help ", "\n  0   done", "\n  1   the answer is no", "\n  2   wrong call",
          "\n  3   malformed document", "\n  4   the packet or tree does not fit", "\n  5   reading or writing failed",
          "\n  70  internal error"})
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

TEST(Help, speaksOfVerbsAndNamesEachOptionOnce)
{
    for (const char* const verb : {"", "fmt", "check", "get", "diff", "merge", "stat", "convert", "info", "unpack",
                                   "pack", "explain", "layout", "picture", "doc", "gen", "layouts", "help"})
    {
        const std::string help =
            *verb == '\0' ? murvOn("", {"--help"}).m_strOutput : murvOn("", {"help", verb}).m_strOutput;
        EXPECT_EQ(help.find("SUBCOMMAND"), std::string::npos) << help;
        EXPECT_EQ(help.find("Subcommand"), std::string::npos) << help;
        EXPECT_EQ(help.find("TEXT"), std::string::npos) << help;
        std::vector<std::string> seen;
        const std::size_t begin = help.find("\nOptions:");
        const std::string options = help.substr(begin, help.find("\n\n", begin) - begin);
        for (std::size_t at = options.find("--"); at != std::string::npos; at = options.find("--", at + 2))
            seen.push_back(options.substr(at, options.find_first_of(" \n,", at) - at));
        for (const std::string& option : seen)
            EXPECT_EQ(std::count(seen.begin(), seen.end(), option), 1) << verb << " " << option;
    }
    EXPECT_NE(murvOn("", {"--help"}).m_strOutput.find("\nUsage: murv [OPTIONS] VERB\n"), std::string::npos);
    EXPECT_NE(murvOn("", {"--help"}).m_strOutput.find("\nVerbs:\n  fmt "), std::string::npos);
}

TEST(Help, saysWhichValuesAnOptionTakes)
{
    EXPECT_NE(murvOn("", {"help", "convert"}).m_strOutput.find("  --to text|compact|binary|json (required)\n"),
              std::string::npos);
    EXPECT_NE(murvOn("", {"help", "fmt"}).m_strOutput.find("  --indent N|tab (2) "), std::string::npos);
}

TEST(Help, wrongCallsNameTheWordAndWhatIsNearIt)
{
    const std::pair<std::vector<std::string>, const char*> calls[] = {
        {{}, "a verb is required (see murv --help)"},
        {{"frm", "x"}, "no verb is called frm; did you mean fmt? (see murv --help)"},
        {{"chekc", "x"}, "no verb is called chekc; did you mean check? (see murv --help)"},
        {{"conv", "x"}, "no verb is called conv; did you mean convert? (see murv --help)"},
        {{"cook", "x"}, "no verb is called cook (see murv --help)"},
        {{"x", "fmt", "a"}, "no verb is called x (see murv --help)"},
        {{"f\x1b[2J", "x"}, "no verb is called f?[2J (see murv --help)"},
        {{std::string(100000, 'f')}, nullptr},
        {{"help", "frm"}, "no verb is called frm; did you mean fmt?"},
        {{"--versoin"}, "no option is called --versoin; did you mean --version? (see murv --help)"},
        {{"fmt", "--chekc", "a"}, "no option is called --chekc; did you mean --check? (see murv help fmt)"},
        {{"fmt", "--chekc"}, "no option is called --chekc; did you mean --check? (see murv help fmt)"},
        {{"fmt", "--chekc=5", "a"}, "no option is called --chekc; did you mean --check? (see murv help fmt)"},
        {{"fmt", "--cook", "a"}, "no option is called --cook (see murv help fmt)"},
        {{"fmt", "-x", "a"}, "no option is called -x (see murv help fmt)"},
        {{"get", "a", "b", "c"}, "unexpected argument c (see murv help get)"},
        {{"get", "a"}, "PATH is required (see murv help get)"},
        {{"fmt", "--check", "-i", "a"}, "--in-place excludes --check (see murv help fmt)"},
        {{"gen"}, "a verb is required (see murv help gen)"},
        {{"gen", "wireshrak"}, "no verb is called wireshrak; did you mean wireshark? (see murv help gen)"},
        {{"gen", "wireshark", "--laoyut"},
         "no option is called --laoyut; did you mean --layout? (see murv gen wireshark --help)"},
    };
    for (const auto& [call, message] : calls)
    {
        const tRun run = murvOn("", call);
        EXPECT_EQ(run.m_iExit, 2);
        if (message != nullptr)
            EXPECT_EQ(run.m_strError, "murv: error: " + std::string(message) + "\n");
        else
            EXPECT_EQ(run.m_strError.rfind("murv: error: no verb is called fff", 0), 0U);
    }
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

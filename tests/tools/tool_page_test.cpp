// tests/tools/tool_page_test.cpp - the examples of docs/tool.md print what the page says.
//
// Blocks of the sections listed here begin with "$ ": "$ cat FILE" shows a file of the example, which is made here;
// other commands are run by a shell, in the order of the section, and must print the lines that follow them.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
constexpr std::string_view s_svIndent = "    ";
constexpr std::string_view s_svPrompt = "$ ";
constexpr std::string_view s_svShow = "cat ";

struct tExample
{
    std::string m_strCommand;
    std::string m_strOutput;
};

/// Commands of a section, with the lines after them.
std::vector<tExample> examplesOf(const std::string& section)
{
    std::ifstream page(MURV_SOURCE_DIR "/docs/tool.md");
    std::vector<tExample> examples;
    bool isInside = false;
    bool isAfterCommand = false;
    for (std::string line; std::getline(page, line);)
    {
        if (line.rfind("## ", 0) == 0)
            isInside = line == "## " + section;
        if (line.rfind(s_svIndent, 0) != 0)
            isAfterCommand = false;
        if (!isInside || line.rfind(s_svIndent, 0) != 0)
            continue;
        line.erase(0, s_svIndent.size());
        if (line.rfind(s_svPrompt, 0) == 0)
        {
            examples.push_back({line.substr(s_svPrompt.size()), {}});
            isAfterCommand = true;
        }
        else if (isAfterCommand)
            examples.back().m_strOutput += line + "\n";
    }
    return examples;
}

void runExamples(const std::string& section)
{
    const CTemporaryDirectory files;
    tSurroundings around;
    around.m_strDirectory = files.path();
    const std::string tool = MURV_TOOL_PATH;
    const std::string path = "PATH=" + tool.substr(0, tool.rfind('/')) + ":$PATH; ";
    unsigned int runs = 0;
    for (const tExample& example : examplesOf(section))
    {
        if (example.m_strCommand.rfind(s_svShow, 0) == 0 && example.m_strCommand.find('|') == std::string::npos)
        {
            files.write(example.m_strCommand.substr(s_svShow.size()), example.m_strOutput);
            continue;
        }
        const tRun run = runProgram({"/bin/sh", "-c", path + "(" + example.m_strCommand + ") 2>&1"}, around);
        EXPECT_EQ(run.m_strOutput, example.m_strOutput) << example.m_strCommand;
        ++runs;
    }
    EXPECT_GE(runs, 2U);
}
}  // namespace

TEST(ToolPage, examplesOfGet)
{
    runExamples("get");
}

TEST(ToolPage, examplesOfDiff)
{
    runExamples("diff");
}

TEST(ToolPage, examplesOfMerge)
{
    runExamples("merge");
}

TEST(ToolPage, examplesOfConvert)
{
    runExamples("convert");
}

}  // namespace murv::tests

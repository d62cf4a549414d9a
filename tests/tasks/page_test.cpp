// tests/tasks/page_test.cpp - what docs/ten-tasks.md shows is what the tests beside this one compile and expect.
//
// Each block of the page stands after the name of its library. Code is compared line by line without indentation, which
// is deeper in the tests; documents and outputs are raw strings there.
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/source_file.h"

namespace murv::tests
{

namespace
{
struct tBlock
{
    std::string m_strSection;
    std::string m_strLibrary;
    std::string m_strMark;
    unsigned int m_uiLine;
    std::string m_strText;
};

const std::vector<std::string> s_cvLibraries = {"murv", "nlohmann/json", "toml++", "pugixml"};

std::string withoutIndentation(const std::string& text)
{
    std::istringstream lines(text);
    std::string all = "\n";
    for (std::string line; std::getline(lines, line);)
        all += line.substr(std::min(line.find_first_not_of(' '), line.size())) + "\n";
    return all;
}

/// The tests of a library; long texts in one piece. Kept, for valgrind's sake: each of many blocks asks.
const std::string& testsOf(const std::string& library)
{
    static std::map<std::string, std::string> kept;
    std::string& tests = kept[library];
    if (!tests.empty())
        return tests;
    static const std::map<std::string, std::string> s_cmFiles = {
        {"murv", "murv"}, {"nlohmann/json", "json"}, {"toml++", "toml"}, {"pugixml", "xml"}};
    const std::string text = contentOf("tests/tasks/" + s_cmFiles.at(library) + "_test.cpp");
    tests = std::regex_replace(text, std::regex("\\)\"\\s+R\"\\("), "");
    return tests;
}

std::vector<tBlock> blocks()
{
    std::istringstream lines(contentOf("docs/ten-tasks.md"));
    std::vector<tBlock> all;
    tBlock next;
    bool inside = false;
    for (std::string line; std::getline(lines, line);)
    {
        ++next.m_uiLine;
        if (line.compare(0, 3, "```") == 0)
        {
            inside = !inside;
            next.m_strMark = line.substr(3);
            if (inside)
                all.push_back(next);
        }
        else if (inside)
            all.back().m_strText += line + "\n";
        else if (line.compare(0, 3, "## ") == 0)
            next = {line, "", "", next.m_uiLine, ""};
        else if (line.compare(0, 2, "**") == 0)
            next.m_strLibrary = line.substr(2, line.find("**", 2) - 2);
    }
    return all;
}
}  // namespace

TEST(TasksPage, snippetsAreCompiled)
{
    for (const tBlock& block : blocks())
    {
        if (block.m_strMark == "cpp")
        {
            EXPECT_NE(withoutIndentation(testsOf(block.m_strLibrary)).find(withoutIndentation(block.m_strText)),
                      std::string::npos)
                << "line " << block.m_uiLine;
        }
    }
}

TEST(TasksPage, documentsAndOutputsAreExpected)
{
    unsigned int count = 0;
    for (const tBlock& block : blocks())
    {
        if (block.m_strMark == "cpp")
            continue;
        const std::string text = "R\"(" + block.m_strText.substr(0, block.m_strText.size() - 1);
        const std::string& tests = testsOf(block.m_strLibrary);
        const bool isThere =
            tests.find(text + ")\"") != std::string::npos || tests.find(text + "\n)\"") != std::string::npos;
        EXPECT_TRUE(isThere) << "line " << block.m_uiLine;
        ++count;
    }
    EXPECT_GT(count, 4U);
}

TEST(TasksPage, eachOfTenTasksIsShownWithEachLibrary)
{
    std::map<std::string, std::vector<std::string>> tasks;
    for (const tBlock& block : blocks())
    {
        std::vector<std::string>& libraries = tasks[block.m_strSection];
        if (block.m_strMark == "cpp" && (libraries.empty() || libraries.back() != block.m_strLibrary))
            libraries.push_back(block.m_strLibrary);
    }
    tasks.erase("");  // the documents
    EXPECT_EQ(tasks.size(), 10U);
    for (const auto& [task, libraries] : tasks)
        EXPECT_EQ(libraries, s_cvLibraries) << task;
}

}  // namespace murv::tests

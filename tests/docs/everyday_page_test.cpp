// tests/docs/everyday_page_test.cpp - the snippets of docs/everyday.md are parts of a program that is run.
//
// Lines are compared without their indentation, which is deeper in the program.
#include <gtest/gtest.h>

#include <algorithm>
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
    std::string m_strMark;
    unsigned int m_uiLine;
    std::string m_strText;
};

std::string withoutIndentation(const std::string& text)
{
    std::istringstream lines(text);
    std::string all;
    for (std::string line; std::getline(lines, line);)
        all += line.substr(std::min(line.find_first_not_of(' '), line.size())) + "\n";
    return all;
}

std::vector<tBlock> blocks()
{
    std::istringstream lines(contentOf("docs/everyday.md"));
    std::vector<tBlock> all;
    bool inside = false;
    unsigned int number = 0;
    for (std::string line; std::getline(lines, line);)
    {
        ++number;
        if (line.compare(0, 3, "```") == 0)
        {
            inside = !inside;
            if (inside)
                all.push_back({line.substr(3), number, ""});
        }
        else if (inside)
            all.back().m_strText += line + "\n";
    }
    return all;
}
}  // namespace

TEST(EverydayPage, snippetsAreThoseOfTheExample)
{
    const std::string program = withoutIndentation(contentOf("examples/everyday.cpp"));
    unsigned int count = 0;
    for (const tBlock& block : blocks())
    {
        if (block.m_strMark != "cpp")
            continue;
        EXPECT_NE(program.find(withoutIndentation(block.m_strText)), program.npos) << block.m_uiLine;
        ++count;
    }
    EXPECT_GT(count, 0U);
}

TEST(EverydayPage, documentIsThatOfTheExample)
{
    ASSERT_EQ(blocks().at(0).m_strMark, "murv");
    const std::string document = blocks()[0].m_strText;
    EXPECT_NE(contentOf("examples/everyday.cpp").find("R\"(" + document.substr(0, document.size() - 1) + ")\""),
              std::string::npos);
}

TEST(EverydayPage, outputsAreAllThatTheExamplePrints)
{
    std::string printed;
    for (const tBlock& block : blocks())
        printed += block.m_strMark == "text" ? block.m_strText : "";
    EXPECT_EQ(printed, contentOf("examples/everyday.expected"));
}

TEST(EverydayPage, everyHeaderHasItsSection)
{
    std::istringstream lines(contentOf("include/murv/everyday.h"));
    const std::string page = contentOf("docs/everyday.md");
    unsigned int count = 0;
    for (std::string line; std::getline(lines, line);)
    {
        if (line.compare(0, 10, "#include \"") != 0)
            continue;
        const std::string name = line.substr(10, line.size() - 11);
        EXPECT_NE(page.find(": `" + name + "`\n"), page.npos) << name;
        ++count;
    }
    EXPECT_GT(count, 0U);
}

}  // namespace murv::tests

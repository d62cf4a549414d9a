// tests/docs/documents_page_test.cpp - docs/documents.md shows parts of an example that is run, and what it prints.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "tests/support/source_file.h"

namespace murv::tests
{

namespace
{
/// The block of the page with that mark.
std::string block(const std::string& mark)
{
    const std::string page = contentOf("docs/documents.md");
    const std::string begin = "```" + mark + "\n";
    const std::size_t at = page.find(begin);
    if (at == std::string::npos)
        return "(there is none)";
    return page.substr(at + begin.size(), page.find("```", at + begin.size()) - at - begin.size());
}

std::string indented(const std::string& text)
{
    std::istringstream lines(text);
    std::string all;
    for (std::string line; std::getline(lines, line);)
        all += "    " + line + "\n";
    return all;
}
}  // namespace

TEST(DocumentsPage, snippetsAreThoseOfTheExample)
{
    const std::string program = contentOf("examples/keep_comments.cpp");
    EXPECT_NE(program.find("R\"(" + block("murv") + ")\""), std::string::npos);
    EXPECT_NE(program.find(indented(block("cpp"))), std::string::npos);
}

TEST(DocumentsPage, outputIsThatOfTheExample)
{
    EXPECT_EQ(block("text") + "8443\n", contentOf("examples/keep_comments.expected"));
}

}  // namespace murv::tests

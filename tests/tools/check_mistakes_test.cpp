// murv check shows every mistake of a document, not only the one at which loading stops.
#include <gtest/gtest.h>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
tRun check(const std::string& text, std::vector<std::string> options = {})
{
    const CTemporaryDirectory files;
    files.write("in", text);
    options.insert(options.begin(), {"check", "in"});
    return murv(files, options);
}
}  // namespace

TEST(CheckMistakes, allAreShownAtTheirPlaces)
{
    const tRun run = check("{\n  \"a\" = ?,\n  \"b\" = 1 \"c\" = 2,\n  \"d\" = \"\\q\"\n}\n");
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError,
              "in:2:9: error: Syntax error: value, field or array expected.\n"
              "  \"a\" = ?,\n"
              "        ^\n"
              "in:3:11: error: Missing ',' or '}' in field declaration\n"
              "  \"b\" = 1 \"c\" = 2,\n"
              "          ^~~\n"
              "in:4:9: error: Bad escape sequence in string\n"
              "  \"d\" = \"\\q\"\n"
              "        ^~~~\n"
              "in:4:10: note: see here for detail\n"
              "  \"d\" = \"\\q\"\n"
              "         ^\n");
}

TEST(CheckMistakes, noMoreAreShownThanWanted)
{
    const tRun run = check("[?, ?, ?, ?]\n", {"--max-errors", "2"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError,
              "in:1:2: error: Syntax error: value, field or array expected.\n"
              "[?, ?, ?, ?]\n"
              " ^\n"
              "in:1:5: error: Syntax error: value, field or array expected.\n"
              "[?, ?, ?, ?]\n"
              "    ^\n"
              "in: note: 2 more mistakes are not shown\n");
}

}  // namespace murv::tests

// murv check warns of what loads but may be meant otherwise, and explains mistakes that many make.
#include <gtest/gtest.h>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
tRun check(const std::string& text, std::vector<std::string> options)
{
    const CTemporaryDirectory files;
    files.write("in", text);
    options.insert(options.begin(), {"check", "in"});
    return murv(files, options);
}

constexpr const char* s_cpText = "{ \"a\" = 0, \"b\" = [1,],\n  \"a\" = (ANF0) 2 } x\n";
constexpr const char* s_cpComma =
    "in:1:20: warning: a comma before a closing bracket adds a null [-Wtrailing-comma]\n"
    "{ \"a\" = 0, \"b\" = [1,],\n"
    "                   ^\n";
constexpr const char* s_cpName =
    "in:2:3: warning: this name is taken; the first member of that name is filled again [-Wduplicate-name]\n"
    "  \"a\" = (ANF0) 2 } x\n"
    "  ^~~\n"
    "in:1:3: note: first seen here\n"
    "{ \"a\" = 0, \"b\" = [1,],\n"
    "  ^\n";
constexpr const char* s_cpZero =
    "in:2:9: warning: an item of length 0 is left out of packets [-Wzero-length]\n"
    "  \"a\" = (ANF0) 2 } x\n"
    "        ^~~~~~\n";
constexpr const char* s_cpAfter =
    "in:2:20: warning: text after the document is ignored [-Wtext-after]\n"
    "  \"a\" = (ANF0) 2 } x\n"
    "                   ^\n";
}  // namespace

TEST(CheckWarnings, allAreShownAtTheirPlacesAndTheDocumentIsAccepted)
{
    const tRun run = check(s_cpText, {"-Wall"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput, "in: accepted, 4 warnings\n");
    EXPECT_EQ(run.m_strError, std::string(s_cpComma) + s_cpName + s_cpZero + s_cpAfter);
}

TEST(CheckWarnings, namesChooseAndTheLastOneCounts)
{
    EXPECT_EQ(check(s_cpText, {"-W", "trailing-comma,zero-length", "-Wno-text-after"}).m_strError,
              std::string(s_cpComma) + s_cpZero);
    EXPECT_EQ(check(s_cpText, {"-Wall", "-Wno-all", "--warn=duplicate-name"}).m_strError, s_cpName);
    const tRun quiet = check(s_cpText, {"-W", "no-text-after"});
    EXPECT_EQ(quiet.m_strOutput, "in: accepted\n");
    EXPECT_EQ(quiet.m_strError, "");
}

TEST(CheckWarnings, onlyTextAfterTheDocumentIsWarnedOfWithoutBeingAsked)
{
    EXPECT_EQ(check(s_cpText, {}).m_strError,
              "in:2:20: warning: text after the document is ignored\n"
              "  \"a\" = (ANF0) 2 } x\n"
              "                   ^\n");
}

TEST(CheckWarnings, asErrorsTheyGiveTheExitCodeOne)
{
    const tRun run = check("[1,]", {"-Wall,error"});
    EXPECT_EQ(run.m_iExit, 1);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(run.m_strError,
              "in:1:3: error: a comma before a closing bracket adds a null [-Werror, -Wtrailing-comma]\n[1,]\n  ^\n");
    EXPECT_EQ(check("[1]", {"-Wall", "-Werror"}).m_strOutput, "in: accepted\n");
    EXPECT_EQ(check("[1,]", {"-Wall", "-Werror", "-Wno-error"}).m_iExit, 0);
    EXPECT_EQ(check("[1,", {"-Wall", "-Werror"}).m_iExit, 3);
}

TEST(CheckWarnings, jsonGivesTheSameFacts)
{
    const tRun run = check("{ \"a\" = 1, \"A\" = 2 }", {"-Wall", "--json"});
    EXPECT_EQ(run.m_strOutput, "{\"file\":\"in\",\"accepted\":true,\"warnings\":1}\n");
    EXPECT_EQ(run.m_strError,
              "{\"severity\":\"warning\",\"file\":\"in\",\"line\":1,\"column\":12,\"begin\":11,\"end\":14,"
              "\"warning\":\"similar-name\",\"message\":\"this name differs from another one in upper and lower case "
              "only\",\"notes\":[{\"severity\":\"note\",\"file\":\"in\",\"line\":1,\"column\":3,\"begin\":2,\"end\":3,"
              "\"message\":\"first seen here\"}]}\n");
    EXPECT_EQ(check("[1]", {"--json"}).m_strOutput, "{\"file\":\"in\",\"accepted\":true}\n");
}

TEST(CheckWarnings, noMoreAreShownThanWanted)
{
    const tRun run = check("[[], [], []]", {"-Wall", "--max-errors", "1"});
    EXPECT_EQ(run.m_strOutput, "in: accepted, 3 warnings\n");
    EXPECT_EQ(run.m_strError,
              "in:1:2: warning: an empty container is loaded as one that holds a null [-Wempty-container]\n"
              "[[], [], []]\n"
              " ^~\n"
              "in: note: 2 more warnings are not shown\n");
}

TEST(CheckWarnings, packetExpressionsOfLayoutsHaveTheirOwnRules)
{
    const tRun run = check(R"({ "@" = "layout 1", "a" = (ACF0) "", "@a" = "to end", })", {"-Wall"});
    EXPECT_EQ(run.m_strError.rfind("in:1:53: warning: a comma before", 0), 0U) << run.m_strError;
    EXPECT_EQ(run.m_strError.find("zero-length"), std::string::npos);
}

TEST(CheckWarnings, theListNeedsNoFile)
{
    const tRun run = murvOn("", {"check", "--list-warnings"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput.rfind("NAME             ON   WARNS OF\n"
                                    "duplicate-name   no   two members of one field set have the same name\n",
                                    0),
              0U);
    EXPECT_NE(run.m_strOutput.find("\ntext-after       yes  text after the document, which is ignored\n"),
              std::string::npos);
    EXPECT_EQ(
        murvOn("", {"check", "--list-warnings", "--json"})
            .m_strOutput.rfind("{\"name\":\"duplicate-name\",\"on\":false,\"description\":\"two members of one field "
                               "set have the same name\"}\n",
                               0),
        0U);
}

TEST(CheckWarnings, wrongNamesAreWrongCalls)
{
    const tRun run = check("[1]", {"-Wtrailing-coma"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError,
              "murv: error: --warn: no warning is called trailing-coma; did you mean trailing-comma? (see murv help "
              "check)\n");
    EXPECT_EQ(check("[1]", {"-Wall", "-l", "x"}).m_iExit, 2);
}

TEST(CheckExplanations, followTheErrorOnceInEveryVerb)
{
    const std::string text = "{ a: 1, b: 2 }";
    const std::string first =
        "<stdin>:1:3: error: Missing '}' or field member name\n"
        "{ a: 1, b: 2 }\n"
        "  ^\n"
        "<stdin>: note: names stand in double quotes: \"name\" = value\n";
    const std::string second =
        "<stdin>:1:9: error: Missing '}' or field member name\n"
        "{ a: 1, b: 2 }\n"
        "        ^\n";
    EXPECT_EQ(murvOn(text, {"check", "-"}).m_strError, first + second);
    EXPECT_EQ(murvOn(text, {"fmt", "-"}).m_strError, first + second);
    for (const std::vector<std::string>& call :
         {std::vector<std::string>{"get", "-", "."}, {"stat", "-"}, {"convert", "-", "--to", "text"}})
        EXPECT_EQ(murvOn(text, call).m_strError, first) << call[0];
}

TEST(CheckExplanations, areNotesForPrograms)
{
    EXPECT_EQ(murvOn("# x", {"check", "--json", "-"}).m_strError,
              "{\"severity\":\"error\",\"file\":\"<stdin>\",\"line\":1,\"column\":1,\"begin\":0,\"end\":1,\"message\":"
              "\"Failed to loading for the #ID syntax\",\"notes\":[{\"severity\":\"note\",\"file\":\"<stdin>\","
              "\"message\":\"a comment begins with // or stands between /* and */; # begins an ID, such as #7\"}]}\n");
}

TEST(CheckExplanations, aByteOrderMarkIsSeenAndMovesNoMark)
{
    const tRun run = murvOn("\xEF\xBB\xBF{\"a\"=1}", {"convert", "-", "--from", "json", "--to", "text"});
    EXPECT_NE(run.m_strError.find("\n?{\"a\"=1}\n     ^\n"), std::string::npos) << run.m_strError;
}

TEST(CheckExplanations, ofTextsThatEditorsHideTheirFaultOf)
{
    const auto note = [](const std::string& text) {
        const std::string error = murvOn(text, {"check", "-"}).m_strError;
        const std::size_t begin = error.find("<stdin>: note: ");
        return begin == std::string::npos ? error : error.substr(begin + 15);
    };
    EXPECT_EQ(note(""), "the document is empty; the shortest ones are {} and []\n");
    EXPECT_EQ(note("\xEF\xBB\xBF[1]"),
              "the text begins with a byte order mark (EF BB BF); save it as UTF-8 without one\n");
    EXPECT_EQ(note(std::string("\xFF\xFE[\0]\0", 6)),
              "the text seems to be UTF-16; save it as UTF-8 without a byte order mark\n");
}

}  // namespace murv::tests

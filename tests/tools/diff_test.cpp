// tests/tools/diff_test.cpp - murv diff: values, types, IDs, comments, and how it ends.
#include <gtest/gtest.h>

#include <limits>

#include "murv/murv.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
tRun diffRun(const std::string& a, const std::string& b, std::vector<std::string> options = {})
{
    const CTemporaryDirectory files;
    files.write("a", a);
    files.write("b", b);
    options.insert(options.begin(), {"diff", "a", "b"});
    return murv(files, options);
}

std::string differences(const std::string& a, const std::string& b, const std::vector<std::string>& options = {})
{
    const tRun run = diffRun(a, b, options);
    EXPECT_EQ(run.m_iExit, run.m_strOutput.empty() ? 0 : 1) << a << b;
    EXPECT_EQ(run.m_strError, "");
    return run.m_strOutput;
}
}  // namespace

TEST(Diff, showsWhatChangedCameAndWent)
{
    EXPECT_EQ(
        differences("{ \"a\" = 1, \"b\" = [1, 2, 3], \"c\" = { \"d\" = \"x\" }, \"e\" = 5 }",
                    "{ \"a\" = 2, \"b\" = [1, 4], \"c\" = { \"f\" = \"y\" }, \"e\" = 5, #7 \"g\" = { \"h\" = [] } }"),
        "~ a: 1 -> 2\n"
        "~ b[1]: 2 -> 4\n"
        "- b[2]: 3\n"
        "- c.d: \"x\"\n"
        "+ c.f: \"y\"\n"
        "+ g: #7{\"h\"=[]}\n");
    EXPECT_EQ(differences("1", "\"1\""), "~ .: 1 -> \"1\"\n");
    EXPECT_EQ(differences("{\"a.b\"={\"\xC3\xA9\"=1}}", "{\"a.b\"={\"\xC3\xA9\"=[]}}"),
              "~ \"a.b\".\"\xC3\xA9\": 1 -> []\n");
}

TEST(Diff, formAndOrderOfMembersDoNotCount)
{
    EXPECT_EQ(differences("{ \"a\" = 1.50, \"b\" = [\"\\x41\"] }", "// c\n{\"b\"=[ \"A\" ],\n\"a\"=15e-1}"), "");
    const CTemporaryDirectory files;
    files.write("a.murv", "{ #7 \"a\" = (ACF3) \"abc\" }");
    EXPECT_EQ(murv(files, {"convert", "a.murv", "--to", "binary", "-o", "a.murf"}).m_iExit, 0);
    const tRun run = murv(files, {"diff", "a.murv", "a.murf"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput, "");
}

TEST(Diff, typesNamesIdsAndExpressionsCount)
{
    EXPECT_EQ(differences("[5, 1, \"\"]", "[05, 1.0, null]"), "~ [0]: 5 -> 05\n~ [1]: 1 -> 1.0\n~ [2]: \"\" -> null\n");
    EXPECT_EQ(differences("\"r\"={#1 \"a\"=5,\"b\"=(ACF1)6,#3 \"c\"=7,\"d\"={}}",
                          "{\"a\"=5,\"b\"=(ACF2)6,#4 \"c\"=8,#5 \"d\"={9}}"),
              "~ .: name \"r\" -> none\n"
              "~ a: ID 1 -> none\n"
              "~ b: expression (ACF1) -> (ACF2)\n"
              "~ c: ID 3 -> 4\n"
              "~ c: 7 -> 8\n"
              "~ d: ID none -> 5\n"
              "+ d[0]: 9\n");
    EXPECT_EQ(differences("{\"a\"=1,\"a\"=2}", "{\"a\"=1,\"a\"=3,\"a\"=4}"), "~ [1]: 2 -> 3\n+ [2]: 4\n");
}

TEST(Diff, commentsCountWhenAsked)
{
    const std::string a = "// one\n{ \"a\" = 1, // x\n \"b\" = 2 }";
    const std::string b = "{ \"a\" = 1, // y\n \"b\" = 2 }\n// end\n";
    EXPECT_EQ(differences(a, b), "");
    EXPECT_EQ(differences(a, b, {"--comments"}),
              "~ .: comment \"// one\" -> none\n"
              "~ .: comment after it none -> \"// end\"\n"
              "~ a: comment on the line \"// x\" -> \"// y\"\n");
}

TEST(Diff, jsonIsAnObjectALine)
{
    EXPECT_EQ(differences("// c\n{ #1 \"a\" = 5, \"b\" = (ACF1) \"x\", \"c\" = { \"d\" = 1 } }",
                          "{ \"a\" = 05, \"b\" = \"x\", #2 \"e\" = [1] }", {"--json", "--comments"}),
              "{\"path\":\".\",\"change\":\"changed\",\"what\":\"comment\",\"old\":\"// c\",\"new\":null}\n"
              "{\"path\":\"a\",\"change\":\"changed\",\"what\":\"id\",\"old\":1,\"new\":null}\n"
              "{\"path\":\"a\",\"change\":\"changed\",\"what\":\"value\",\"old\":5,\"new\":{\"$uint\":5}}\n"
              "{\"path\":\"b\",\"change\":\"changed\",\"what\":\"expression\",\"old\":\"ACF1\",\"new\":null}\n"
              "{\"path\":\"c\",\"change\":\"removed\",\"old\":{\"d\":1}}\n"
              "{\"path\":\"e\",\"change\":\"added\",\"new\":{\"$id\":2,\"$value\":[1]}}\n");
    EXPECT_EQ(differences("[]", "[/*c*/ \"\\xFF\"]", {"--json"}),
              "{\"path\":\"[0]\",\"change\":\"added\",\"new\":{\"$hex\":\"FF\"}}\n");
    EXPECT_EQ(differences("[]", "[/*c*/ 1]", {"--json", "--comments"}),
              "{\"path\":\"[0]\",\"change\":\"added\",\"new\":{\"$comment\":\"/*c*/\",\"$value\":1}}\n");
}

TEST(Diff, whatTextCannotHoldIsShownAsJson)
{
    CFields tree(DT_array);
    tree.addArrayAt(CFields(std::numeric_limits<double>::quiet_NaN()));
    const std::string file = CSavers(SCBC_LOSSLESS).saving(tree, ER_BER);
    EXPECT_EQ(differences(file, "[1]"), "~ [0]: {\"$double\":\"NaN\"} -> 1\n");
    EXPECT_EQ(differences(file, file), "");
}

TEST(Diff, quietSaysItByTheExitCode)
{
    const tRun run = diffRun("[1]", "[2]", {"-q"});
    EXPECT_EQ(run.m_iExit, 1);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(diffRun("[1]", "[1]", {"-q"}).m_iExit, 0);
}

TEST(Diff, oneDocumentMayComeFromTheStandardInput)
{
    const CTemporaryDirectory files;
    files.write("a", "[1]");
    tSurroundings around;
    around.m_strInput = "[2]";
    EXPECT_EQ(murv(files, {"diff", "a", "-"}, around).m_strOutput, "~ [0]: 1 -> 2\n");
    EXPECT_EQ(murv(files, {"diff", "-", "a"}, around).m_strOutput, "~ [0]: 2 -> 1\n");
    const tRun run = murv(files, {"diff", "-", "-"}, around);
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError, "murv: error: the standard input cannot hold both documents\n");
}

TEST(Diff, whatCannotBeReadIsNoDifference)
{
    EXPECT_EQ(diffRun("[1]", "[1").m_iExit, 3);
    EXPECT_EQ(diffRun("[", "[1]").m_iExit, 3);
    const CTemporaryDirectory files;
    files.write("a", "[1]");
    EXPECT_EQ(murv(files, {"diff", "a", "none"}).m_iExit, 5);
    EXPECT_EQ(murv(files, {"diff", "a"}).m_iExit, 2);
}

TEST(Diff, coloursAreForTerminals)
{
    const CTemporaryDirectory files;
    files.write("a", "{\"a\"=1,\"b\"=2}");
    files.write("b", "{\"a\"=2,\"c\"=3}");
    const std::string call = std::string(MURV_TOOL_PATH) + " diff a b >&2";
    tSurroundings around;
    around.m_strDirectory = files.path();
    around.m_bTerminal = true;
    around.m_vEnvironment = {"TERM=xterm"};
    EXPECT_EQ(runProgram({"/bin/sh", "-c", call}, around).m_strError,
              "\x1b[33m~ a: 1 -> 2\x1b[0m\n\x1b[31m- b: 2\x1b[0m\n\x1b[32m+ c: 3\x1b[0m\n");
    around.m_vEnvironment = {"TERM=xterm", "NO_COLOR=1"};
    EXPECT_EQ(runProgram({"/bin/sh", "-c", call}, around).m_strError, "~ a: 1 -> 2\n- b: 2\n+ c: 3\n");
}

}  // namespace murv::tests

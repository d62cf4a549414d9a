// tests/tools/merge_test.cpp - murv merge: patches of RFC 7386, and what they leave alone.
#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "murv/murv.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
/// The result of a patch that is a document.
std::string merged(const std::string& document, const std::string& patch)
{
    const CTemporaryDirectory files;
    files.write("a", document);
    files.write("p", patch);
    const tRun run = murv(files, {"merge", "a", "p"});
    EXPECT_EQ(run.m_iExit, 0) << document << patch;
    EXPECT_EQ(run.m_strError, "");
    return run.m_strOutput;
}

/// The same on one line, of a patch that is JSON.
std::string mergedJson(const std::string& document, const std::string& patch)
{
    const CTemporaryDirectory files;
    files.write("a", document);
    files.write("p.json", patch);
    const tRun run = murv(files, {"merge", "a", "p.json", "-o", "out"});
    EXPECT_EQ(run.m_strError, "");
    const std::string text = murv(files, {"convert", "out", "--to", "compact"}).m_strOutput;
    return text.substr(0, text.size() - 1);
}
}  // namespace

TEST(Merge, patchesAreThoseOfRfc7386)
{
    const char* const cases[][3] = {
        {"{\"a\"=\"b\"}", "{\"a\":\"c\"}", "{\"a\"=\"c\"}"},
        {"{\"a\"=\"b\"}", "{\"b\":\"c\"}", "{\"a\"=\"b\",\"b\"=\"c\"}"},
        {"{\"a\"=\"b\"}", "{\"a\":null}", "{}"},
        {"{\"a\"=\"b\",\"b\"=\"c\"}", "{\"a\":null}", "{\"b\"=\"c\"}"},
        {"{\"a\"=[\"b\"]}", "{\"a\":\"c\"}", "{\"a\"=\"c\"}"},
        {"{\"a\"=\"c\"}", "{\"a\":[\"b\"]}", "{\"a\"=[\"b\"]}"},
        {"{\"a\"={\"b\"=\"c\"}}", "{\"a\":{\"b\":\"d\",\"c\":null}}", "{\"a\"={\"b\"=\"d\"}}"},
        {"{\"a\"=[{\"b\"=\"c\"}]}", "{\"a\":[1]}", "{\"a\"=[1]}"},
        {"[\"a\",\"b\"]", "[\"c\",\"d\"]", "[\"c\",\"d\"]"},
        {"{\"a\"=\"b\"}", "[\"c\"]", "[\"c\"]"},
        {"{\"a\"=\"foo\"}", "null", "null"},
        {"{\"a\"=\"foo\"}", "\"bar\"", "\"bar\""},
        {"{\"e\"=null}", "{\"a\":1}", "{\"e\"=null,\"a\"=1}"},
        {"[1,2]", "{\"a\":\"b\",\"c\":null}", "{\"a\"=\"b\"}"},
        {"{}", "{\"a\":{\"bb\":{\"ccc\":null}}}", "{\"a\"={\"bb\"={}}}"},
    };
    for (const auto& [document, patch, result] : cases)
        EXPECT_EQ(mergedJson(document, patch), result) << document << patch;
}

TEST(Merge, keepsCommentsIdsAndSpellingsOfWhatStays)
{
    EXPECT_EQ(merged("// shop\n"
                     "{\n"
                     "  #7 \"port\" = 8080, // main\n"
                     "  \"rate\" = 1.50,\n"
                     "  // gone\n"
                     "  \"old\" = 1,\n"
                     "  \"weight\" = 2e3\n"
                     "}\n"
                     "// end\n",
                     "{ \"port\" = 8443, \"old\" = null, \"weight\" = 2.50,\n/* new */\n#9 \"fee\" = 0.10 }"),
              "// shop\n"
              "{\n"
              "  #7 \"port\" = 8443, // main\n"
              "  \"rate\" = 1.50,\n"
              "  \"weight\" = 2.5,\n"
              "  /* new */\n"
              "  #9 \"fee\" = 0.1\n"
              "}\n"
              "// end\n");
}

TEST(Merge, everyByteStaysThatThePatchDoesNotChange)
{
    EXPECT_EQ(merged("[1e3, 2e3]", "[1.5, 2.5, 3.5]"), "[1.5, 2.5, 3.5]");
    EXPECT_EQ(merged("{ \"a\" = 1e3 }", "{ \"b\" = 2.5 }"), "{ \"a\" = 1e3, \"b\" = 2.5 }");
}

TEST(Merge, severalPatchesAreAppliedInTurn)
{
    const CTemporaryDirectory files;
    files.write("a", "{\"a\"=1}");
    files.write("p", "{\"b\"=2}");
    files.write("q.json", "{\"a\":null,\"b\":3}");
    EXPECT_EQ(murv(files, {"merge", "a", "p", "q.json"}).m_strOutput, "{\"b\"=3}");
}

TEST(Merge, warnsOfALaterMemberOfTheSameName)
{
    const CTemporaryDirectory files;
    files.write("a",
                "{ \"a\" = 1, \"b\" = { \"c\" = 1 },\n  \"a\" = 2, \"b\" = { \"c\" = 3 }, \"d\" = {}, \"d\" = 1 }\n");
    files.write("p.json", "{\"a\":5}");
    const tRun run = murv(files, {"merge", "a", "p.json"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strError,
              "a:2:9: warning: this later member has the name a, too: programs that load the document take its value\n"
              "  \"a\" = 2, \"b\" = { \"c\" = 3 }, \"d\" = {}, \"d\" = 1 }\n"
              "        ^\n");
    files.write("inner.json", "{\"b\":{\"c\":2}}");
    EXPECT_NE(murv(files, {"merge", "a", "inner.json"}).m_strError.find("a:2:18: warning: "), std::string::npos);
    // Null removes all of that name, and what is not there is appended.
    files.write("none.json", "{\"a\":null,\"d\":null,\"e\":1}");
    EXPECT_EQ(murv(files, {"merge", "a", "none.json"}).m_strError, "");
}

TEST(Merge, warnsOfALaterMemberOfTheSameId)
{
    const CTemporaryDirectory files;
    files.write("a", "{ \"in\" = { #7 \"x\" = 1, \"y\" = 2, #7 = 2 } }\n");
    files.write("p.json", "{\"in\":{\"x\":5}}");
    EXPECT_EQ(murv(files, {"merge", "a", "p.json"}).m_strError,
              "a:1:38: warning: this later member has the ID 7, too: programs that load the document take its value\n"
              "{ \"in\" = { #7 \"x\" = 1, \"y\" = 2, #7 = 2 } }\n"
              "                                     ^\n");
    files.write("q.json", "{\"in\":{\"y\":5}}");
    EXPECT_EQ(murv(files, {"merge", "a", "q.json"}).m_strError, "");
}

// Its place in a text that nobody sees would only mislead.
TEST(Merge, warnsWithThePathInsteadOfAPlaceOnceTheTextHasChanged)
{
    const CTemporaryDirectory files;
    files.write("a", "{ \"a\" = { \"b c\" = 1, \"b c\" = 2 } }\n");
    files.write("p.json", "{\"x\":5}");
    files.write("q.json", "{\"a\":{\"b c\":5}}");
    const std::string warning =
        "a: warning: a.\"b c\": a later member has the name \"b c\", too: "
        "programs that load the document take its value\n";
    EXPECT_EQ(murv(files, {"merge", "a", "p.json", "q.json"}).m_strError, warning);
}

TEST(Merge, warnsOnceOfAMemberThatAPatchChangesTwice)
{
    const CTemporaryDirectory files;
    files.write("a", "{ \"a\" = { \"x\" = 1, \"x\" = 2 } }\n");
    files.write("p", "{\"a\"={\"x\"=5},\"a\"={\"x\"=6}}");
    EXPECT_EQ(murv(files, {"merge", "a", "p"}).m_strError,
              "a:1:26: warning: this later member has the name x, too: programs that load the document take its value\n"
              "{ \"a\" = { \"x\" = 1, \"x\" = 2 } }\n"
              "                         ^\n");
}

TEST(Merge, doesNotWarnOfMembersThatItRemovesOrReplaces)
{
    const char* const cases[][2] = {
        {"{\"a\"={\"x\"=1,\"x\"=2}}", "{\"a\"=null,\"a\"={\"x\"=9}}"},
        {"{\"a\"={\"x\"=1,\"x\"=2}}", "{\"a\"={\"x\"=9},\"a\"=null}"},
        {"{\"a\"={\"x\"=1,\"x\"=2}}", "{\"a\"={\"x\"=null},\"a\"={\"x\"=9}}"},
        {"{\"a\"={\"x\"=1,\"x\"=2}}", "{\"a\"={\"x\"=9},\"a\"={\"x\"=null}}"},
        {"{\"a\"={\"x\"=1,\"x\"=2}}", "{\"a\"=5,\"a\"={\"x\"=9}}"},
        {"{\"a\"={\"x\"=1,\"x\"=2}}", "{\"a\"={\"x\"=9},\"a\"=5}"},
        {"{#7 \"x\"=1,#7 \"y\"=2}", "{\"x\"=5,\"y\"=null}"},
    };
    for (const auto& [document, patch] : cases)
    {
        const CTemporaryDirectory files;
        files.write("a", document);
        files.write("p", patch);
        const tRun run = murv(files, {"merge", "a", "p"});
        EXPECT_EQ(run.m_iExit, 0) << document << patch;
        EXPECT_EQ(run.m_strError, "") << document << patch;
    }
}

TEST(Merge, warnsInTheOrderOfThePatch)
{
    const CTemporaryDirectory files;
    files.write("a", "{\n\"b\"={\"x\"=1,\n\"x\"=2},\n\"c\"={\"x\"=1,\n\"x\"=2}}\n");
    files.write("p", "{\"b\"={\"x\"=5},\"c\"={\"x\"=5},\"b\"={\"x\"=6}}");
    const std::string error = murv(files, {"merge", "a", "p"}).m_strError;
    EXPECT_EQ(error.find("a:3:5: warning: "), 0U);
    EXPECT_LT(error.find("a:5:5: warning: "), error.size());
}

// Takes a fraction of a second, and minutes when all members of the target are looked at for each one of the patch.
TEST(Merge, costsNoMoreThanTargetAndPatchAreLarge)
{
    constexpr int count = 40000;
    std::string target = "{\"a\"={";
    std::string patch = "{";
    for (int i = 0; i < count; ++i)
    {
        target += (i == 0 ? "\"" : ",\"") + std::to_string(i) + "\"=1";
        patch += i == 0 ? "\"a\"={}" : ",\"a\"={}";
    }
    target += "}}";
    patch += "}";
    const CTemporaryDirectory files;
    files.write("a", target);
    files.write("p", patch);
    tSurroundings around;
    around.m_uiMostSeconds = 20;
    const tRun run = murv(files, {"merge", "a", "p"}, around);
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strError, "");
    EXPECT_TRUE(run.m_strOutput == target);  // too long to be shown
}

TEST(Merge, inPlaceReplacesTheFileWhenItChanges)
{
    const CTemporaryDirectory files;
    const std::string before = "{\"a\"=1,\n   \"b\"=2}";
    files.write("a", before);
    files.write("same.json", "{\"a\":1}");
    files.write("other.json", "{\"a\":5}");
    EXPECT_EQ(murv(files, {"merge", "-i", "a", "same.json"}).m_iExit, 0);
    EXPECT_EQ(files.read("a"), before);
    const tRun run = murv(files, {"merge", "-i", "a", "other.json"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(files.read("a"), "{\"a\"=5,\n   \"b\"=2}");
    EXPECT_EQ(files.names(), "a other.json same.json");
}

TEST(Merge, nothingIsReplacedWhenSomethingIsWrong)
{
    const CTemporaryDirectory files;
    const std::string before = "{\"a\"=1}";
    files.write("a", before);
    files.write("nameless", "{\"a\"=2,{5}}");
    files.write("broken.json", "{\"a\":2");
    const tRun nameless = murv(files, {"merge", "-i", "a", "nameless"});
    EXPECT_EQ(nameless.m_iExit, 3);
    EXPECT_EQ(nameless.m_strError, "nameless: error: Cannot merge: the member [1] of the patch has no name\n");
    EXPECT_EQ(murv(files, {"merge", "-i", "a", "broken.json"}).m_iExit, 3);
    EXPECT_EQ(murv(files, {"merge", "-i", "a", "missing"}).m_iExit, 5);
    EXPECT_EQ(files.read("a"), before);
}

TEST(Merge, binaryDocumentsBecomeText)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "{ \"a\" = 1.50 }");
    files.write("p.json", "{\"b\":2}");
    EXPECT_EQ(murv(files, {"convert", "a.murv", "--to", "binary", "-o", "a.murf"}).m_iExit, 0);
    EXPECT_EQ(murv(files, {"merge", "a.murf", "p.json"}).m_strOutput, "{\n  \"a\" = 1.5,\n  \"b\" = 2\n}\n");
    EXPECT_EQ(murv(files, {"merge", "a.murv", "a.murf"}).m_strOutput, "{ \"a\" = 1.50 }");
    const tRun run = murv(files, {"merge", "-i", "a.murf", "p.json"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError, "a.murf: error: is binary; --in-place is for text\n");
}

TEST(Merge, whatTextCannotHoldIsNamedByItsPath)
{
    const CTemporaryDirectory files;
    files.write("a", "{}");
    files.write("p.json", "{\"a\":[{\"$double\":\"NaN\"}]}");
    const tRun run = murv(files, {"merge", "a", "p.json"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError, "p.json: error: a: The value cannot be written: [0]: text cannot hold NaN\n");
}

TEST(Merge, oneOfThemMayComeFromTheStandardInput)
{
    const CTemporaryDirectory files;
    files.write("a", "{\"a\"=1}");
    tSurroundings around;
    around.m_strInput = "{\"a\"=2}";
    EXPECT_EQ(murv(files, {"merge", "a", "-"}, around).m_strOutput, "{\"a\"=2}");
    EXPECT_EQ(murv(files, {"merge", "-", "a"}, around).m_strOutput, "{\"a\"=1}");
    EXPECT_EQ(murv(files, {"merge", "-", "-"}, around).m_strError,
              "murv: error: the standard input cannot hold several documents\n");
    EXPECT_EQ(murv(files, {"merge", "-i", "-", "a"}, around).m_iExit, 2);
    EXPECT_EQ(murv(files, {"merge", "-i", "a", "a", "-o", "b"}).m_iExit, 2);
    EXPECT_EQ(murv(files, {"merge", "a"}).m_iExit, 2);
}

}  // namespace murv::tests

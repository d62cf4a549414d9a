// tests/tools/edit_test.cpp - murv set and murv del: one member changes, and the rest stays byte for byte.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpDocument = "// head\n{\n  \"a\" = 007, // one\n\n  // two\n  \"b\" = [ 1.50,2 ]\n}\n";

tRun edited(std::vector<std::string> call)
{
    call.insert(call.begin() + 1, "-");
    return murvOn(s_cpDocument, call);
}

std::string replaced(std::string text, const std::string& old, const std::string& fresh)
{
    return text.replace(text.find(old), old.size(), fresh);
}
}  // namespace

TEST(Set, changesOneValueAndKeepsTheRest)
{
    const tRun run = edited({"set", "a", "8"});
    EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
    EXPECT_EQ(run.m_strOutput, replaced(s_cpDocument, "007", "8"));
    EXPECT_EQ(run.m_strError, "");
}

TEST(Set, takesTheNotationWhenItReadsAsOneValue)
{
    EXPECT_EQ(edited({"set", "a", "1.50"}).m_strOutput, replaced(s_cpDocument, "007", "1.50"));
    EXPECT_EQ(edited({"set", "a", "[true, null]"}).m_strOutput, replaced(s_cpDocument, "007", "[true, null]"));
    EXPECT_EQ(edited({"set", "a", "\"x\""}).m_strOutput, replaced(s_cpDocument, "007", "\"x\""));
}

TEST(Set, takesOtherValuesAsText)
{
    EXPECT_EQ(edited({"set", "a", "two words"}).m_strOutput, replaced(s_cpDocument, "007", "\"two words\""));
    EXPECT_EQ(edited({"set", "a", ""}).m_strOutput, replaced(s_cpDocument, "007", "\"\""));
    EXPECT_EQ(edited({"set", "a", "1 2"}).m_strOutput, replaced(s_cpDocument, "007", "\"1 2\""));
    EXPECT_EQ(edited({"set", "a", "8", "--text"}).m_strOutput, replaced(s_cpDocument, "007", "\"8\""));
}

TEST(Set, makesWhatIsMissing)
{
    EXPECT_EQ(edited({"set", "b[2]", "3"}).m_strOutput, replaced(s_cpDocument, "1.50,2 ", "1.50,2, 3 "));
    EXPECT_EQ(edited({"set", "c.d", "-1"}).m_strOutput,
              replaced(s_cpDocument, "2 ]\n", "2 ],\n  \"c\" = { \"d\" = -1 }\n"));
}

TEST(Set, whatCannotBeMadeIsAnAnswer)
{
    const tRun run = edited({"set", "a.x", "1"});
    EXPECT_EQ(run.m_iExit, 1);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(run.m_strError,
              "<stdin>: error: Cannot set the value, step 2 of the path: a name adds to field sets only\n");
}

TEST(Set, aPathThatIsNoneIsAWrongCall)
{
    const tRun run = edited({"set", "a[", "1"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError, "PATH:1:3: error: an index is needed\na[\n  ^\n");
}

TEST(Set, showsEveryMistakeOfTheDocument)
{
    const tRun run = murvOn("{ \"a\" = ], \"b\" = # }", {"set", "-", "a", "1"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_NE(run.m_strError.find("<stdin>:1:9: error: "), std::string::npos) << run.m_strError;
    EXPECT_NE(run.m_strError.find("<stdin>:1:18: error: "), std::string::npos) << run.m_strError;
}

TEST(Set, binaryFilesAreRefused)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "{ \"a\" = 1 }");
    ASSERT_EQ(murv(files, {"convert", "a.murv", "--to", "binary", "-o", "a.murf"}).m_iExit, 0);
    const tRun run = murv(files, {"set", "a.murf", "a", "2"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError, "a.murf: error: is no text; murv convert --to text makes one\n");
}

TEST(Set, inPlaceReplacesAFileThatChanges)
{
    const CTemporaryDirectory files;
    const std::string path = files.write("a.murv", s_cpDocument);
    std::filesystem::permissions(path, std::filesystem::perms(0640));
    EXPECT_EQ(murv(files, {"set", "-i", "a.murv", "a", "8"}).m_iExit, 0);
    EXPECT_EQ(files.read("a.murv"), replaced(s_cpDocument, "007", "8"));
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0640));
    const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1000);
    std::filesystem::last_write_time(path, longAgo);
    const auto before = std::filesystem::last_write_time(path);
    EXPECT_EQ(murv(files, {"set", "-i", "a.murv", "a", "8"}).m_iExit, 0);
    EXPECT_EQ(std::filesystem::last_write_time(path), before);
}

TEST(Set, inPlaceNeedsAFile)
{
    const tRun run = edited({"set", "a", "8", "-i"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError, "murv: error: the standard input cannot be replaced: --in-place needs a file\n");
}

TEST(Set, warnsOfALaterMemberOfTheSameName)
{
    const std::string text = "{ \"a\" = 1, \"b\" = { \"c\" = 1 },\n  \"a\" = 2, \"b\" = { \"c\" = 3 } }\n";
    const std::string warning =
        "<stdin>:2:9: warning: this later member has the name a, too: programs that load the document take its value\n"
        "  \"a\" = 2, \"b\" = { \"c\" = 3 } }\n"
        "        ^\n";
    const tRun run = murvOn(text, {"set", "-", "a", "5"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strError, warning);
    EXPECT_EQ(murvOn(text, {"del", "-", "/a"}).m_strError, warning);
    EXPECT_EQ(murvOn(text, {"set", "-", "[2]", "5"}).m_strError, "");
    EXPECT_EQ(murvOn(text, {"set", "-", "[0]", "5"}).m_strError, warning);
    EXPECT_NE(murvOn(text, {"set", "-", "b.c", "5"}).m_strError.find("<stdin>:2:18: warning: "), std::string::npos);
}

TEST(Set, warnsOfALaterMemberOfTheSameId)
{
    EXPECT_EQ(
        murvOn("{ #7 \"x\" = 1, #7 = 2 }\n", {"set", "-", "x", "5"}).m_strError,
        "<stdin>:1:20: warning: this later member has the ID 7, too: programs that load the document take its value\n"
        "{ #7 \"x\" = 1, #7 = 2 }\n"
        "                   ^\n");
}

TEST(Del, removesAMemberWithItsComments)
{
    EXPECT_EQ(edited({"del", "a"}).m_strOutput, "// head\n{\n\n  // two\n  \"b\" = [ 1.50,2 ]\n}\n");
    EXPECT_EQ(edited({"del", "b"}).m_strOutput, "// head\n{\n  \"a\" = 007 // one\n}\n");
    EXPECT_EQ(edited({"del", "b[0]"}).m_strOutput, replaced(s_cpDocument, " 1.50,2 ", " 2 "));
}

TEST(Del, whatIsNotThereIsAnAnswer)
{
    const tRun run = edited({"del", "x.y"});
    EXPECT_EQ(run.m_iExit, 1);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(run.m_strError, "<stdin>: note: nothing at x.y\n");
    EXPECT_EQ(edited({"del", "."}).m_strError, "<stdin>: error: The root cannot be removed\n");
}

TEST(Del, inPlaceReplacesTheFile)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "[1, 2]");
    EXPECT_EQ(murv(files, {"del", "-i", "a.murv", "[0]"}).m_iExit, 0);
    EXPECT_EQ(files.read("a.murv"), "[2]");
}

}  // namespace murv::tests

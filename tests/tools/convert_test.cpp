// tests/tools/convert_test.cpp - murv convert: text to binary files and back, with and without a password.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpDocument =
    "{\n"
    "  #7 \"port\" = 8080, // main\n"
    "  \"date\" = (ACF8YYYYMMDD) 20240101,\n"
    "  \"host\" = \"db\"\n"
    "}\n";
}

TEST(Convert, textBecomesBinaryAndTextAgain)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    EXPECT_EQ(murv(files, {"convert", "--to", "binary", "-o", "a.bin", "a.murv"}).m_iExit, 0);
    EXPECT_EQ(files.read("a.bin").substr(0, 4), "MURF");
    const tRun run = murv(files, {"convert", "--to", "text", "a.bin"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput, s_cpDocument);
    EXPECT_EQ(run.m_strError, "");
}

TEST(Convert, compactIsOneLine)
{
    EXPECT_EQ(murvOn(s_cpDocument, {"convert", "--to", "compact", "-"}).m_strOutput,
              "{#7\"port\"=8080,\"date\"=(ACF8YYYYMMDD)20240101,\"host\"=\"db\"}\n");
}

TEST(Convert, binaryResultGoesToAPipe)
{
    const tRun run = murvOn(s_cpDocument, {"convert", "--to", "binary", "-"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(murvOn(run.m_strOutput, {"convert", "--to", "text", "-"}).m_strOutput, s_cpDocument);
}

TEST(Convert, passwordComesFromAFile)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    files.write("password", "secret\n");
    EXPECT_EQ(
        murv(files, {"convert", "--to", "binary", "--password-file", "password", "-o", "a.bin", "a.murv"}).m_iExit, 0);
    EXPECT_EQ(files.read("a.bin")[11], 1);
    EXPECT_EQ(murv(files, {"convert", "--to", "text", "--password-file", "password", "a.bin"}).m_strOutput,
              s_cpDocument);
}

TEST(Convert, passwordOfTheDocumentIsKeptChangedOrTakenAway)
{
    struct tCase
    {
        std::vector<std::string> m_vOptions;
        const char* m_pOpens;  // the password of the result; null for none
    };
    const tCase cases[] = {
        {{}, "old"},
        {{"--output-password-file", "new"}, "new"},
        {{"--no-output-password"}, nullptr},
    };
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    files.write("old", "old\n");
    files.write("new", "new\n");
    murv(files, {"convert", "--to", "binary", "--password-file", "old", "-o", "a.bin", "a.murv"});
    for (const tCase& row : cases)
    {
        std::vector<std::string> words{"convert", "--to", "binary", "--password-file", "old", "-o", "b.bin", "a.bin"};
        words.insert(words.end(), row.m_vOptions.begin(), row.m_vOptions.end());
        const tRun run = murv(files, words);
        EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
        EXPECT_EQ(murv(files, {"fmt", "b.bin"}).m_iExit, row.m_pOpens == nullptr ? 0 : 6);
        for (const char* const password : {"old", "new"})
        {
            const bool opens = row.m_pOpens == nullptr || std::string(password) == row.m_pOpens;
            const tRun opened = murv(files, {"fmt", "--password-file", password, "b.bin"});
            EXPECT_EQ(opened.m_iExit, opens ? 0 : 6) << password;
            EXPECT_EQ(opened.m_strOutput, opens ? s_cpDocument : "") << password;
        }
    }
}

TEST(Convert, outputPasswordIsPutOnADocumentWithoutOne)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    files.write("new", "new\n");
    EXPECT_EQ(
        murv(files, {"convert", "--to", "binary", "--output-password-file", "new", "-o", "a.bin", "a.murv"}).m_iExit,
        0);
    EXPECT_EQ(murv(files, {"fmt", "a.bin"}).m_iExit, 6);
    EXPECT_EQ(murv(files, {"fmt", "--password-file", "new", "a.bin"}).m_strOutput, s_cpDocument);
}

TEST(Convert, outputPasswordIsForBinaryResultsAndOneAtATime)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    files.write("new", "new\n");
    files.write("empty", "\n");
    const tRun text = murv(files, {"convert", "--to", "text", "--output-password-file", "new", "a.murv"});
    EXPECT_EQ(text.m_iExit, 2);
    EXPECT_EQ(text.m_strError, "murv: error: only a binary result has a password\n");
    EXPECT_EQ(murv(files, {"convert", "--to", "binary", "--output-password-file", "new", "--no-output-password", "-o",
                           "a.bin", "a.murv"})
                  .m_iExit,
              2);
    const tRun empty =
        murv(files, {"convert", "--to", "binary", "--output-password-file", "empty", "-o", "a.bin", "a.murv"});
    EXPECT_EQ(empty.m_iExit, 6);
    EXPECT_EQ(empty.m_strError, "empty: error: holds no password\n");
    EXPECT_FALSE(std::filesystem::exists(files.path() + "/a.bin"));
}

TEST(Convert, passwordComesFromTheStandardInput)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    tSurroundings around;
    around.m_strInput = "secret";
    EXPECT_EQ(murv(files, {"convert", "--to", "binary", "--password-stdin", "-o", "a.bin", "a.murv"}, around).m_iExit,
              0);
    EXPECT_EQ(murv(files, {"convert", "--to", "text", "--password-stdin", "a.bin"}, around).m_strOutput, s_cpDocument);
    EXPECT_EQ(murv(files, {"fmt", "--password-stdin", "a.bin"}, around).m_strOutput, s_cpDocument);
}

TEST(Convert, missingOrWrongPasswordHasItsOwnExitCode)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    files.write("right", "secret");
    files.write("wrong", "Secret");
    murv(files, {"convert", "--to", "binary", "--password-file", "right", "-o", "a.bin", "a.murv"});
    const tRun missing = murv(files, {"convert", "--to", "text", "a.bin"});
    EXPECT_EQ(missing.m_iExit, 6);
    EXPECT_EQ(missing.m_strError, "a.bin: error: Input the password\n");
    const tRun wrong = murv(files, {"convert", "--to", "text", "--password-file", "wrong", "a.bin"});
    EXPECT_EQ(wrong.m_iExit, 6);
    EXPECT_EQ(wrong.m_strError, "a.bin: error: Mismatched password\n");
    for (const char* verb : {"check", "stat", "fmt"})
        EXPECT_EQ(murv(files, {verb, "a.bin"}).m_iExit, 6) << verb;
}

TEST(Convert, passwordFileWithoutAPasswordIsRefused)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    files.write("empty", "\n");
    const tRun run = murv(files, {"convert", "--to", "binary", "--password-file", "empty", "-o", "a.bin", "a.murv"});
    EXPECT_EQ(run.m_iExit, 6);
    EXPECT_EQ(run.m_strError, "empty: error: holds no password\n");
    EXPECT_FALSE(std::filesystem::exists(files.path() + "/a.bin"));
}

TEST(Convert, standardInputHoldsOneThing)
{
    const tRun run = murvOn(s_cpDocument, {"convert", "--to", "binary", "--password-stdin", "-"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError, "murv: error: the standard input cannot hold both document and password\n");
}

TEST(Convert, malformedFileLeavesNoResult)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "MURF but not really");
    const tRun run = murv(files, {"convert", "--to", "text", "-o", "out", "a.murv"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_FALSE(std::filesystem::exists(files.path() + "/out"));
}

TEST(Convert, resultReplacesAFileAndKeepsItsMode)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    const std::string out = files.write("out", "before");
    std::filesystem::permissions(out, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(murv(files, {"convert", "--to", "text", "--output", "out", "a.murv"}).m_iExit, 0);
    EXPECT_EQ(files.read("out"), s_cpDocument);
    EXPECT_EQ(std::filesystem::status(out).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(files.path()), {}), 2);
}

TEST(Convert, outputThatCannotBeWrittenIsAnOutputFailure)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    const tRun run = murv(files, {"convert", "--to", "text", "-o", "no/such/place", "a.murv"});
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strError, "no/such/place: error: not written: No such file or directory\n");
    EXPECT_EQ(murv(files, {"convert", "--to", "text", "-o", "/dev/full", "a.murv"}).m_iExit, 5);
}

TEST(Convert, otherEncodingIsAWrongCall)
{
    EXPECT_EQ(murvOn("[1]", {"convert", "--to", "xml", "-"}).m_iExit, 2);
    EXPECT_EQ(murvOn("[1]", {"convert", "-"}).m_iExit, 2);
}

}  // namespace murv::tests

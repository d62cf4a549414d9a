// tests/tools/io_test.cpp - files, pipes and terminals that do not play along.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/sanitized.h"
#include "tests/tools/sales.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
/// A file of that size that takes no room on the disk; it holds zeros after its first bytes.
void writeSparse(const CTemporaryDirectory& files, const std::string& name, std::uintmax_t size)
{
    std::filesystem::resize_file(files.write(name, "[1]"), size);
}

/// What is said by a call that cannot write its output, and must have the exit code 5 then.
std::string outputFailure(const std::vector<std::string>& call, const tSurroundings& around)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "[1, 2]");
    const tRun run = murv(files, call, around);
    EXPECT_EQ(run.m_iExit, 5) << call.front();
    return run.m_strError;
}
}  // namespace

TEST(InputOutput, missingFileIsAnInputFailure)
{
    const CTemporaryDirectory files;
    for (const char* verb : {"fmt", "check", "stat"})
    {
        const tRun run = murv(files, {verb, "missing.murv"});
        EXPECT_EQ(run.m_iExit, 5);
        EXPECT_EQ(run.m_strOutput, "");
        EXPECT_EQ(run.m_strError, "missing.murv: error: cannot be read: No such file or directory\n");
    }
}

TEST(InputOutput, failuresAreJsonLinesToo)
{
    const CTemporaryDirectory files;
    const tRun run = murv(files, {"stat", "--json", "missing \"x\".murv"});
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strError,
              "{\"severity\":\"error\",\"file\":\"missing \\\"x\\\".murv\","
              "\"message\":\"cannot be read: No such file or directory\"}\n");
}

TEST(InputOutput, directoryIsNotAFile)
{
    const CTemporaryDirectory files;
    const tRun run = murv(files, {"check", "."});
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strError, ".: error: cannot be read: Is a directory\n");
}

TEST(InputOutput, fileWithoutPermissionIsAnInputFailure)
{
    const CTemporaryDirectory files;
    std::filesystem::permissions(files.write("a.murv", "[1]"), std::filesystem::perms::none);
    tSurroundings around;
    around.m_bNobody = true;
    const tRun run = murv(files, {"check", "a.murv"}, around);
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strError, "a.murv: error: cannot be read: Permission denied\n");
}

TEST(InputOutput, pipesAndDevicesAreReadToTheirEnd)
{
    const CTemporaryDirectory files;
    EXPECT_EQ(murv(files, {"check", "/dev/null"}).m_iExit, 3);
    std::string document = "[0";
    for (int i = 0; i < 100000; ++i)
        document += ", " + std::to_string(i);
    tSurroundings around;
    around.m_strInput = document + "]";
    const tRun run = murv(files, {"get", "/dev/stdin", "[100000]"}, around);
    EXPECT_EQ(run.m_strOutput, "99999\n");
}

TEST(InputOutput, resultsWithoutANameAreWrongCalls)
{
    const CTemporaryDirectory files;
    files.write("sales.murv", s_cpSalesLayout);
    files.write("day.txt", s_cpSales);
    const std::pair<std::vector<std::string>, const char*> calls[] = {
        {{"unpack", "-l", "sales.murv", "day.txt", "-o", ""}, "--output: names no file (see murv help unpack)"},
        {{"pack", "-l", "sales.murv", "day.murv", "--output", ""}, "--output: names no file (see murv help pack)"},
        {{"gen", "samples", "-l", "sales.murv", "-o", ""}, "--output: names no file (see murv gen samples --help)"},
        {{"gen", "samples", "-l", "sales.murv", "-d", ""},
         "--directory: names no directory (see murv gen samples --help)"},
        {{"gen", "wireshark", "sales.murv", "-o", ""}, "--output: names no file (see murv gen wireshark --help)"},
        {{"unpack", "-l", "sales.murv", "day.txt", "--on-fault", "collect", ""},
         "--on-fault collect needs the name of a file"},
    };
    for (const auto& [call, message] : calls)
    {
        const tRun run = murv(files, call);
        EXPECT_EQ(run.m_iExit, 2) << call[0];
        EXPECT_EQ(run.m_strOutput, "") << call[0];
        EXPECT_EQ(run.m_strError, "murv: error: " + std::string(message) + "\n");
    }
    EXPECT_EQ(files.names(), "day.txt sales.murv");
}

TEST(InputOutput, fullDiskIsAnOutputFailure)
{
    tSurroundings around;
    around.m_strOutputFile = "/dev/full";
    const std::vector<std::vector<std::string>> calls = {
        {"fmt", "a.murv"}, {"check", "a.murv"}, {"get", "a.murv", "[0]"}, {"stat", "a.murv"}, {"--help"}, {"--version"},
        {"help"}};
    for (const std::vector<std::string>& call : calls)
        EXPECT_EQ(outputFailure(call, around),
                  "murv: error: cannot write to the standard output: No space left on device\n");
}

TEST(InputOutput, readerThatWentAwayIsNoNews)
{
    tSurroundings around;
    around.m_bReaderGone = true;
    EXPECT_EQ(outputFailure({"fmt", "a.murv"}, around), "");
}

TEST(InputOutput, closedOutputIsAnOutputFailure)
{
    tSurroundings around;
    around.m_bClosedOutput = true;
    EXPECT_EQ(outputFailure({"fmt", "a.murv"}, around),
              "murv: error: cannot write to the standard output: Bad file descriptor\n");
}

TEST(InputOutput, closedStreamsAreNotTakenForFiles)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "[1,2]");
    tSurroundings around;
    around.m_bClosedInput = around.m_bClosedOutput = true;
    EXPECT_EQ(murv(files, {"fmt", "-i", "a.murv"}, around).m_iExit, 0);
    EXPECT_EQ(files.read("a.murv"), "[1, 2]\n");
    EXPECT_EQ(murv(files, {"check", "-"}, around).m_iExit, 5);
}

TEST(InputOutput, documentsAboveTheLimitAreRefusedUnread)
{
    const CTemporaryDirectory files;
    writeSparse(files, "big.murv", 2147483648);
    files.write("a.murv", "{}");
    const std::vector<std::vector<std::string>> calls = {{"check", "big.murv"},
                                                         {"fmt", "-i", "big.murv"},
                                                         {"set", "big.murv", "a", "1"},
                                                         {"del", "-i", "big.murv", "a"},
                                                         {"get", "big.murv", "a"},
                                                         {"diff", "a.murv", "big.murv"},
                                                         {"merge", "-i", "big.murv", "a.murv"},
                                                         {"merge", "a.murv", "big.murv"},
                                                         {"convert", "big.murv", "--to", "text"},
                                                         {"convert", "big.murv", "--from", "json", "--to", "binary"}};
    for (const std::vector<std::string>& call : calls)
    {
        const tRun run = murv(files, call);
        EXPECT_EQ(run.m_iExit, 3) << call[0];
        EXPECT_EQ(run.m_strError, "big.murv: error: Too big data size(2147483648)\n") << call[0];
    }
}

#ifndef MURV_TEST_SANITIZED
TEST(InputOutput, exhaustedMemoryEndsWithAClearText)
{
    const CTemporaryDirectory files;
    writeSparse(files, "big.murv", 200'000'000);
    tSurroundings around;
    around.m_ullMostMemory = 100'000'000;
    const tRun run = murv(files, {"check", "big.murv"}, around);
    EXPECT_EQ(run.m_iExit, 70);
    EXPECT_EQ(run.m_strError, "murv: error: out of memory\n");
}
#endif

TEST(InputOutput, coloursAreForTerminals)
{
    tSurroundings around;
    around.m_strInput = "{:}";
    around.m_bTerminal = true;
    const std::vector<std::string> call = {MURV_TOOL_PATH, "check", "-"};
    EXPECT_EQ(runProgram(call, around).m_strError,
              "\x1b[1m<stdin>:1:2:\x1b[0m \x1b[1;31merror:\x1b[0m Missing '}' or field member name\n{:}\n"
              "\x1b[1;32m ^\x1b[0m\n");
    const std::string plain = "<stdin>:1:2: error: Missing '}' or field member name\n{:}\n ^\n";
    around.m_vEnvironment = {"TERM=xterm", "NO_COLOR=1"};
    EXPECT_EQ(runProgram(call, around).m_strError, plain);
    around.m_vEnvironment = {"TERM=dumb"};
    EXPECT_EQ(runProgram(call, around).m_strError, plain);
    around.m_vEnvironment = {};
    around.m_bTerminal = false;
    EXPECT_EQ(runProgram(call, around).m_strError, plain);
}

TEST(InputOutput, progressIsShownForBigFilesOnATerminalOnly)
{
    const CTemporaryDirectory files;
    writeSparse(files, "big.murv", 65'000'000);
    writeSparse(files, "small.murv", 63'000'000);
    tSurroundings around;
    around.m_bTerminal = true;
    around.m_vEnvironment = {"NO_COLOR=1"};
    const tRun big = murv(files, {"check", "-q", "big.murv"}, around);
    EXPECT_EQ(big.m_iExit, 0);
    EXPECT_NE(big.m_strError.find("\r\x1b[Kbig.murv: reading 100 %"), std::string::npos) << big.m_strError;
    EXPECT_NE(big.m_strError.find("\r\x1b[Kbig.murv: loading\r\x1b[K"), std::string::npos) << big.m_strError;
    writeSparse(files, "big\x1b[31m\xE2\x80\xAE.murv", 65'000'000);
    const tRun odd = murv(files, {"check", "-q", "big\x1b[31m\xE2\x80\xAE.murv"}, around);
    EXPECT_NE(odd.m_strError.find("\r\x1b[Kbig?[31m?.murv: loading\r\x1b[K"), std::string::npos) << odd.m_strError;
    const tRun small = murv(files, {"check", "-q", "small.murv"}, around);
    EXPECT_EQ(small.m_strError.find("reading"), std::string::npos) << small.m_strError;
    EXPECT_EQ(murv(files, {"check", "-q", "big.murv"}).m_strError.find("reading"), std::string::npos);
}

}  // namespace murv::tests

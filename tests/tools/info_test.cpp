// tests/tools/info_test.cpp - murv info: what is shown of binary files, opened or not.
#include <gtest/gtest.h>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
/// [1, [2]] as a binary file.
std::string fileOf(const std::vector<std::string>& password = {})
{
    const CTemporaryDirectory files;
    files.write("a.murv", "[1, [2]]");
    files.write("password", "secret");
    std::vector<std::string> call = {"convert", "--to", "binary", "-o", "out", "a.murv"};
    call.insert(call.end(), password.begin(), password.end());
    murv(files, call);
    return files.read("out");
}
}  // namespace

TEST(Info, plainFileIsShownWhole)
{
    const CTemporaryDirectory files;
    files.write("a.bin", fileOf());
    const tRun run = murv(files, {"info", "a.bin"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput,
              "a.bin\n"
              "  bytes                 181\n"
              "  version               0x01050000\n"
              "  byte order            little-endian\n"
              "  encryption            VERNAM\n"
              "  password block bytes  0\n"
              "  body bytes            168\n"
              "  nodes                 4\n"
              "  containers            2\n"
              "  leaves                2\n"
              "  depth                 3\n");
}

TEST(Info, jsonHasTheSameLabelsWithoutBlanks)
{
    EXPECT_EQ(murvOn(fileOf(), {"info", "--json", "-"}).m_strOutput,
              "{\"file\":\"<stdin>\",\"bytes\":181,\"version\":\"0x01050000\",\"byte_order\":\"little-endian\","
              "\"encryption\":\"VERNAM\",\"password_block_bytes\":0,\"body_bytes\":168,\"nodes\":4,\"containers\":2,"
              "\"leaves\":2,\"depth\":3}\n");
}

TEST(Info, headerIsShownWithoutThePassword)
{
    const CTemporaryDirectory files;
    files.write("a.bin", fileOf({"--password-file", "password"}));
    files.write("password", "secret");
    const tRun closed = murv(files, {"info", "a.bin"});
    EXPECT_EQ(closed.m_iExit, 6);
    EXPECT_EQ(closed.m_strOutput,
              "a.bin\n"
              "  bytes                 145\n"
              "  version               0x01050000\n"
              "  byte order            little-endian\n"
              "  encryption            SEED\n"
              "  password block bytes  8\n"
              "  body bytes            124\n");
    EXPECT_EQ(closed.m_strError, "a.bin: error: Input the password\n");
    const tRun opened = murv(files, {"info", "--password-file", "password", "a.bin"});
    EXPECT_EQ(opened.m_iExit, 0);
    EXPECT_EQ(opened.m_strOutput, closed.m_strOutput +
                                      "  nodes                 4\n"
                                      "  containers            2\n"
                                      "  leaves                2\n"
                                      "  depth                 3\n");
}

TEST(Info, textIsNoBinaryFile)
{
    const tRun run = murvOn("[1, 2, 3, 4, 5]", {"info", "-"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError, "<stdin>: error: is not a binary file\n");
    EXPECT_EQ(murvOn("MURF", {"info", "-"}).m_iExit, 3);
}

TEST(Info, malformedBodyIsMalformed)
{
    EXPECT_EQ(murvOn(fileOf().substr(0, 100), {"info", "-"}).m_iExit, 3);
}

}  // namespace murv::tests

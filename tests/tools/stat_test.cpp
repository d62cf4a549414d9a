// tests/tools/stat_test.cpp - what murv stat counts.
#include <gtest/gtest.h>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
constexpr const char* s_cpDocument =
    "// one\n// two\n"
    "{ #1 \"a\" = [1, 4294967296, 0.5, null, true], // three\n"
    "  \"b\" = (ACF4) \"text\" /* four */ }\n";
}

TEST(Stat, countsNodesTypesAndWhatTheyCarry)
{
    const CTemporaryDirectory files;
    files.write("a.murv", s_cpDocument);
    const tRun run = murv(files, {"stat", "a.murv"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strError, "");
    EXPECT_EQ(run.m_strOutput,
              "a.murv (text)\n"
              "  bytes                        103\n"
              "  depth                          3\n"
              "  nodes                          8\n"
              "  null                           1\n"
              "  array                          1\n"
              "  fields                         1\n"
              "  bool                           1\n"
              "  sint                           1\n"
              "  uint                           1\n"
              "  double                         1\n"
              "  codelist                       1\n"
              "  names                          2\n"
              "  IDs                            1\n"
              "  packet expressions             1\n"
              "  comments                       4\n"
              "  string bytes                   4\n");
}

TEST(Stat, jsonHasTheSameLabelsWithoutBlanks)
{
    EXPECT_EQ(
        murvOn(s_cpDocument, {"stat", "--json", "-"}).m_strOutput,
        "{\"file\":\"<stdin>\",\"encoding\":\"text\",\"bytes\":103,\"depth\":3,\"nodes\":8,\"null\":1,\"array\":1,"
        "\"fields\":1,\"bool\":1,\"sint\":1,\"uint\":1,\"double\":1,\"codelist\":1,\"names\":2,\"ids\":1,"
        "\"packet_expressions\":1,\"comments\":4,\"string_bytes\":4}\n");
}

TEST(Stat, severalFilesGiveSeveralBlocks)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "[1]");
    files.write("b.murv", "{:");
    const tRun run = murv(files, {"stat", "--json", "a.murv", "b.murv", "a.murv"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(std::count(run.m_strOutput.begin(), run.m_strOutput.end(), '\n'), 2);
}

TEST(Stat, depthOfAThousandLevelsIsCounted)
{
    const tRun run = murvOn(std::string(999, '[') + "1" + std::string(999, ']'), {"stat", "--json", "-"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_NE(run.m_strOutput.find("\"depth\":1000,\"nodes\":1000,"), std::string::npos) << run.m_strOutput;
}

}  // namespace murv::tests

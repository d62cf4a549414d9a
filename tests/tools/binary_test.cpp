// tests/tools/binary_test.cpp - every verb takes binary files as it takes text.
#include <gtest/gtest.h>

#include "murv/murv.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
std::string binaryDocument()
{
    CFields tree;
    CLoader4SER().loading("// top\n{#7 \"a\" = 0.5, \"b\" = [1, \"\"]}", tree);
    return tree.toMURV(ER_BER);
}
}  // namespace

TEST(BinaryFiles, areReadByEveryVerb)
{
    const CTemporaryDirectory files;
    files.write("a.murf", binaryDocument());
    EXPECT_EQ(murv(files, {"fmt", "a.murf"}).m_strOutput, "// top\n{\n  #7 \"a\" = 0.5,\n  \"b\" = [1, \"\"]\n}\n");
    EXPECT_EQ(murv(files, {"check", "a.murf"}).m_strOutput, "a.murf: accepted\n");
    EXPECT_EQ(murv(files, {"get", "a.murf", "b[0]"}).m_strOutput, "1\n");
    const tRun stat = murv(files, {"stat", "a.murf"});
    EXPECT_EQ(stat.m_iExit, 0);
    EXPECT_EQ(stat.m_strOutput.rfind("a.murf (binary)\n", 0), 0U) << stat.m_strOutput;
}

TEST(BinaryFiles, areNotReplacedByText)
{
    const CTemporaryDirectory files;
    const std::string document = binaryDocument();
    files.write("a.murf", document);
    const tRun run = murv(files, {"fmt", "-i", "a.murf"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError, "a.murf: error: is binary; --in-place is for text\n");
    EXPECT_EQ(files.read("a.murf"), document);
}

TEST(BinaryFiles, thatAreCutAreMalformedWhereverTheyEnd)
{
    const CTemporaryDirectory files;
    const std::string document = binaryDocument();
    for (std::size_t size = 4; size < document.size(); size += 5)
    {
        files.write("a.murf", document.substr(0, size));
        const tRun run = murv(files, {"check", "a.murf"});
        EXPECT_EQ(run.m_iExit, 3) << size;
        EXPECT_EQ(run.m_strError.rfind("a.murf: error: ", 0), 0U) << run.m_strError;
    }
}

}  // namespace murv::tests

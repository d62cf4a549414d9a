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

TEST(BinaryFiles, offsetsSayWhatTheyCountFrom)
{
    const CTemporaryDirectory files;
    const std::string document = CFields("text").toMURV(ER_BER);
    files.write("a.murf", document.substr(0, document.size() - 4));
    const tRun run = murv(files, {"check", "a.murf"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError,
              "a.murf: error: offset 0: No more parsing. Over the data length.\n"
              "a.murf: note: offset 32: see here for detail\n"
              "a.murf: note: offsets count from the start of the deciphered body, which begins after the header of 13 "
              "bytes\n");
    EXPECT_EQ(murv(files, {"check", "--json", "a.murf"}).m_strError,
              "{\"severity\":\"error\",\"file\":\"a.murf\",\"counted_in\":\"body\",\"begin\":0,\"end\":32,"
              "\"message\":\"offset 0: No more parsing. Over the data length.\",\"notes\":["
              "{\"severity\":\"note\",\"file\":\"a.murf\",\"counted_in\":\"body\",\"begin\":32,\"end\":33,"
              "\"message\":\"offset 32: see here for detail\"},"
              "{\"severity\":\"note\",\"file\":\"a.murf\",\"message\":\"offsets count from the start of the "
              "deciphered body, which begins after the header of 13 bytes\"}]}\n");
}

TEST(BinaryFiles, offsetsCountAfterThePasswordBlockToo)
{
    const CTemporaryDirectory files;
    files.write("password", "secret");
    const std::string document = CFields("text").toMURV(ER_BER, SAVE_ALL, "secret");
    files.write("a.murf", document.substr(0, document.size() - 2));
    const tRun run = murv(files, {"check", "--password-file", "password", "a.murf"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_NE(run.m_strError.find("a.murf: note: offsets count from the start of the deciphered body, which begins "
                                  "after the header of 13 bytes and the password block of 8 bytes\n"),
              std::string::npos)
        << run.m_strError;
}

TEST(BinaryFiles, ofTheReservedRuleAreReadAsText)
{
    EXPECT_EQ(murvOn(std::string("MURF\0\0\5\1\x0D\0\2\0\0", 13), {"check", "-"}).m_strError,
              "<stdin>:1:1: error: Missing '}' or field member name\nMURF????\n^\n");
}

TEST(BinaryFiles, thatNeedAPasswordSayWhetherItIsMissingOrWrong)
{
    const CTemporaryDirectory files;
    files.write("password", "other");
    files.write("a.murf", CFields("text").toMURV(ER_BER, SAVE_ALL, "secret"));
    const tRun missing = murv(files, {"check", "a.murf"});
    EXPECT_EQ(missing.m_iExit, 6);
    EXPECT_EQ(missing.m_strError, "a.murf: error: Input the password\n");
    const tRun wrong = murv(files, {"check", "--password-file", "password", "a.murf"});
    EXPECT_EQ(wrong.m_iExit, 6);
    EXPECT_EQ(wrong.m_strError, "a.murf: error: Mismatched password\n");
    // A document cannot pass for one by what it says.
    EXPECT_EQ(murvOn("[(ACF8 Input the password", {"check", "-"}).m_iExit, 3);
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

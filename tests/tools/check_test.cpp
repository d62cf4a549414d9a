// tests/tools/check_test.cpp - how murv check shows errors, byte for byte.
#include <gtest/gtest.h>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
/// What is printed about a document that is not accepted.
std::string errors(const std::string& document, std::vector<std::string> options = {})
{
    options.insert(options.begin(), {"check", "-"});
    const tRun run = murvOn(document, options);
    EXPECT_EQ(run.m_iExit, 3);
    return run.m_strError;
}
}  // namespace

TEST(Check, namesWhatItAccepts)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "{\"a\"=1}");
    files.write("b.murv", "[1, 2]");
    const tRun run = murv(files, {"check", "a.murv", "b.murv"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput, "a.murv: accepted\nb.murv: accepted\n");
    EXPECT_EQ(run.m_strError, "");
}

TEST(Check, quietSaysNothingWhenAllIsWell)
{
    const tRun run = murvOn("[1]", {"check", "-q", "-"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput, "");
}

TEST(Check, showsThePlaceAsCompilersDo)
{
    EXPECT_EQ(errors("{\n  \"a\" = 1,\n  \"b\" : 2\n}\n"),
              "<stdin>:3:7: error: Missing ',' or '}' in field declaration\n"
              "  \"b\" : 2\n"
              "      ^\n"
              "<stdin>: note: a member is written \"name\" = value, with = and not :\n");
}

TEST(Check, showsTheSecondPlaceAsANote)
{
    EXPECT_EQ(errors("{ \"a\" = \"one\\qtwo\" }"),
              "<stdin>:1:9: error: Bad escape sequence in string\n"
              "{ \"a\" = \"one\\qtwo\" }\n"
              "        ^~~~~~~~~~\n"
              "<stdin>:1:13: note: see here for detail\n"
              "{ \"a\" = \"one\\qtwo\" }\n"
              "            ^\n");
}

TEST(Check, jsonGivesTheSameFacts)
{
    const tRun run = murvOn("{ \"a\" = \"one\\qtwo\" }", {"check", "--json", "-"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strOutput, "{\"file\":\"<stdin>\",\"accepted\":false}\n");
    EXPECT_EQ(run.m_strError,
              "{\"severity\":\"error\",\"file\":\"<stdin>\",\"line\":1,\"column\":9,\"begin\":8,\"end\":18,"
              "\"message\":\"Bad escape sequence in string\",\"notes\":[{\"severity\":\"note\",\"file\":\"<stdin>\","
              "\"line\":1,\"column\":13,\"begin\":12,\"end\":13,\"message\":\"see here for detail\"}]}\n");
    EXPECT_EQ(murvOn("[1]", {"check", "--json", "-"}).m_strOutput, "{\"file\":\"<stdin>\",\"accepted\":true}\n");
}

TEST(Check, marksStandBelowTabs)
{
    EXPECT_EQ(errors("{\n\t\"a\"\t; 1\n}"),
              "<stdin>:2:6: error: Missing ',' or '}' in field declaration\n\t\"a\"\t; 1\n\t   \t^\n");
}

TEST(Check, marksStandBelowCharactersOfSeveralBytes)
{
    EXPECT_EQ(errors("{ \"\xC3\xA4\xE2\x82\xAC\" ; 1 }"),
              "<stdin>:1:11: error: Missing ',' or '}' in field declaration\n"
              "{ \"\xC3\xA4\xE2\x82\xAC\" ; 1 }\n"
              "       ^\n");
}

TEST(Check, bytesThatATerminalActsOnAreNotShown)
{
    EXPECT_EQ(errors("{ /*\x1b[31m\x7f\x80\xC2\x9B*/ : 1 }"),
              "<stdin>:1:17: error: Missing '}' or field member name\n"
              "{ /*?[31m???*/ : 1 }\n"
              "               ^\n");
}

TEST(Check, longLinesAreCutAroundThePlace)
{
    const std::string before(1000, 'x');
    const std::string after(1000, 'y');
    EXPECT_EQ(errors("{ \"" + before + "\" ; \"" + after + "\" }"),
              "<stdin>:1:1006: error: Missing ',' or '}' in field declaration\n"
              "..." +
                  std::string(62, 'x') + "\" ; \"" + std::string(33, 'y') + "...\n" + std::string(67, ' ') + "^\n");
}

TEST(Check, linesOfManyMegabytesAreCutToo)
{
    std::string document = "[1";
    for (int i = 0; i < 1000000; ++i)
        document += ",1";
    const tRun run = murvOn(document + ":]", {"check", "-"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_LT(run.m_strError.size(), 400U);
    EXPECT_EQ(run.m_strError.substr(0, 22), "<stdin>:1:2000003: err");
}

TEST(Check, linesEndWithAnyLineBreak)
{
    for (const char* lineBreak : {"\n", "\r", "\r\n"})
        EXPECT_EQ(errors("{" + std::string(lineBreak) + " \"a\" ; 1" + lineBreak + "}"),
                  "<stdin>:2:6: error: Missing ',' or '}' in field declaration\n \"a\" ; 1\n     ^\n");
}

TEST(Check, placeAtTheEndIsAfterTheLastLine)
{
    EXPECT_EQ(errors("{ \"a\" = 1"),
              "<stdin>:1:10: error: Missing ',' or '}' in field declaration\n{ \"a\" = 1\n         ^\n");
}

TEST(Check, emptyDocumentHasNoValue)
{
    EXPECT_EQ(errors(""),
              "<stdin>:1:1: error: Missing '}' or field member name\n\n^\n"
              "<stdin>: note: the document is empty; the shortest ones are {} and []\n");
}

TEST(Check, documentsShorterThanAMagicAreText)
{
    EXPECT_EQ(murvOn("[1]", {"check", "-"}).m_iExit, 0);
    EXPECT_EQ(murvOn("7", {"check", "-"}).m_iExit, 0);
}

TEST(Check, headerOfAnUnknownRuleIsRefused)
{
    EXPECT_EQ(errors("MURF12345678"), "<stdin>: error: Unknown encoding rule(-1)\n");
}

TEST(Check, warnsOfTextAfterTheDocument)
{
    const tRun run = murvOn("[1] [2]", {"check", "-"});
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput, "<stdin>: accepted\n");
    EXPECT_EQ(run.m_strError, "<stdin>:1:5: warning: text after the document is ignored\n[1] [2]\n    ^\n");
}

TEST(Check, documentsThatNestTooDeepAreMalformed)
{
    EXPECT_EQ(errors(std::string(1001, '[') + std::string(1001, ']')),
              "<stdin>: error: Exceeded s_cnStackDepthLimit (values may nest 1000 levels)\n");
}

TEST(Check, everyFileIsLookedAt)
{
    const CTemporaryDirectory files;
    files.write("a.murv", "{:}");
    files.write("b.murv", "[1]");
    const tRun run = murv(files, {"check", "a.murv", "missing.murv", "b.murv"});
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strOutput, "b.murv: accepted\n");
    EXPECT_EQ(run.m_strError,
              "a.murv:1:2: error: Missing '}' or field member name\n{:}\n ^\n"
              "missing.murv: error: cannot be read: No such file or directory\n");
}

}  // namespace murv::tests

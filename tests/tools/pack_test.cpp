// tests/tools/pack_test.cpp - murv pack: documents and JSON to bytes.
#include <gtest/gtest.h>

#include "tests/tools/sales.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
tRun pack(const char* layout, const std::string& tree, std::vector<std::string> options = {})
{
    const CTemporaryDirectory files;
    files.write("l.murv", layout);
    files.write("t", tree);
    options.insert(options.begin(), {"pack", "-l", "l.murv", "t"});
    return murv(files, options);
}

const std::string s_strMessage(
    "\x07\x03"
    "Ada"
    "\x2a\x00\xff",
    8);
}  // namespace

TEST(Pack, givesBackWhatUnpackRead)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    files.write("m.murv", s_cpMessageLayout);
    files.write("sales", s_cpSales);
    files.write("message", s_strMessage);
    files.write("messages", s_strMessage + s_strMessage);
    const std::pair<const char*, const char*> inputs[] = {
        {"l.murv", "sales"}, {"m.murv", "message"}, {"m.murv", "messages"}};
    for (const auto& [layout, input] : inputs)
    {
        for (const char* const form : {"", "--json", "--lines"})
        {
            std::vector<std::string> there = {"unpack", "-l", layout, input, "--unmask", "-o", "tree"};
            std::vector<std::string> back = {"pack", "-l", layout, "tree"};
            if (*form != '\0')
                there.emplace_back(form);
            if (std::string(form) == "--lines")
                back.emplace_back(form);
            EXPECT_EQ(murv(files, there).m_iExit, 0);
            const tRun run = murv(files, back);
            EXPECT_EQ(run.m_strOutput, files.read(input)) << input << form;
            EXPECT_EQ(run.m_strError, "") << input << form;
        }
    }
}

TEST(Pack, takesBinaryDocuments)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpMessageLayout);
    files.write("t.murv", "{ \"kind\" = 1, \"raw\" = \"ab\" }");
    EXPECT_EQ(murv(files, {"convert", "t.murv", "--to", "binary", "-o", "t.murf"}).m_iExit, 0);
    EXPECT_EQ(murv(files, {"pack", "-l", "l.murv", "t.murf"}).m_strOutput, std::string("\x01\x00\x00"
                                                                                       "ab",
                                                                                       5));
}

TEST(Pack, fillsInNumbers)
{
    const std::string tree = "{ \"sales\" = [ { \"amount\" = \"1.00\" } ], \"end\" = { \"count\" = 7 } }";
    EXPECT_EQ(pack(s_cpSalesLayout, tree).m_strOutput, "D00000000\nS000100            \nE001\n");
}

TEST(Pack, lineEndsAreChosen)
{
    EXPECT_EQ(pack(s_cpSalesLayout, "{}", {"--crlf"}).m_strOutput, "D00000000\r\nE000\r\n");
    EXPECT_EQ(pack(s_cpSalesLayout, "{}", {"--no-final-newline"}).m_strOutput, "D00000000\nE000");
}

TEST(Pack, jsonNumbersLoseNoDigit)
{
    const char* const layout = "{ \"@\" = \"layout 1\", \"n\" = (ANF25) 0, \"d\" = (ANF5) 0, \"@d\" = \"decimals 2\" }";
    EXPECT_EQ(pack(layout, "{\"n\": 1234567890123456789012345, \"d\": 1.25}").m_strOutput,
              "123456789012345678901234500125");
}

TEST(Pack, jsonHasKeysForPartsWithOnlyAnId)
{
    const char* const layout = "{ \"@\" = \"layout 1\", #7 = (ANF2) 0, \"a\" = (ANF1) 0 }";
    EXPECT_EQ(pack(layout, "{\"#7\": 42, \"a\": 3}").m_strOutput, "423");
}

TEST(Pack, wrongTreeIsShownAtItsPlace)
{
    const tRun run =
        pack(s_cpSalesLayout, "{ \"sales\" = [\n  { \"amount\" = \"1.00\",\n    \"card\" = \"123456789\" } ] }");
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(run.m_strError,
              "t:3:14: error: sales[0].card: The value does not fit the item\n"
              "    \"card\" = \"123456789\" } ] }\n"
              "             ^~~~~~~~~~~\n"
              "  ACF8  mask 4\n");
}

TEST(Pack, unknownMembersGetASuggestion)
{
    EXPECT_EQ(pack(s_cpSalesLayout, "{\"day\": {\"dat\": 1}}").m_strError,
              "t: error: day: The layout has no part \"dat\" here; did you mean \"date\"?\n");
}

TEST(Pack, refusesStarsForMaskedValues)
{
    const std::string json = "{\"sales\":[{\"card\":\"****5678\"},{\"card\":\"****\"}]}";
    const tRun run = pack(s_cpSalesLayout, json);
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(
        run.m_strError,
        "t: error: sales[0].card: The stars of a mask stand here, not the value (see --unmask)\n  ACF8  mask 4\n");
    EXPECT_EQ(pack(s_cpSalesLayout, json, {"--unmask"}).m_strOutput,
              "D00000000\nS000000****5678    \nS000000****        \nE002\n");
    const tRun line = pack(s_cpSalesLayout, "{\"kind\":\"sales\",\"data\":{\"card\":\"****5678\"}}\n", {"--lines"});
    EXPECT_EQ(line.m_iExit, 4);
    EXPECT_EQ(line.m_strError.substr(0, 24), "t:1: error: card: The st");
}

TEST(Pack, malformedJsonIsShownAtItsPlace)
{
    const tRun run = pack(s_cpSalesLayout, "{\"day\": {\"date\": 1},}");
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError.substr(0, 21), "t:1:21: error: no JSO");
    EXPECT_EQ(run.m_strError.substr(run.m_strError.find('\n')), "\n{\"day\": {\"date\": 1},}\n                    ^\n");
    const tRun line = pack(s_cpSalesLayout, "{\"kind\":\"day\",\"data\":{}}\n{\"data\":{}}\n", {"--lines"});
    EXPECT_EQ(line.m_iExit, 3);
    EXPECT_EQ(line.m_strOutput, "D00000000\n");
    EXPECT_EQ(line.m_strError, "t:2: error: a record needs the members \"kind\" and \"data\"\n");
}

TEST(Pack, nothingFollowsAByteOfValueZeroInJson)
{
    const tRun run = pack(s_cpSalesLayout, std::string("{\"sales\":[]}\0{}", 15));
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strError.substr(0, run.m_strError.find('\n')), "t:1:13: error: no JSON: a byte of value 0");
}

TEST(Pack, kindMayFollowTheData)
{
    EXPECT_EQ(
        pack(s_cpMessageLayout, "{\"data\":{\"raw\":{\"hex\":\"00ff\"}},\"kind\":\".\"}", {"--lines"}).m_strOutput,
        std::string("\0\0\0\0\xff", 5));
}

TEST(Pack, recordsThatAreMissingAreAnError)
{
    const tRun run = pack(s_cpSalesLayout, "{\"kind\":\"day\",\"data\":{}}\n", {"--lines"});
    EXPECT_EQ(run.m_iExit, 4);
}

TEST(Pack, existingResultStaysWhenTheTreeDoesNotFit)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    files.write("t", "{ \"day\" = { \"date\" = \"x\" } }");
    files.write("out", "old");
    EXPECT_EQ(murv(files, {"pack", "-l", "l.murv", "t", "-o", "out"}).m_iExit, 4);
    EXPECT_EQ(files.read("out"), "old");
}

}  // namespace murv::tests

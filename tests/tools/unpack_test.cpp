// tests/tools/unpack_test.cpp - murv unpack: documents, JSON, tables, and what becomes of damaged records.
#include <gtest/gtest.h>

#include "tests/support/sanitized.h"
#include "tests/tools/sales.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
/// Runs unpack with a layout on bytes.
tRun unpack(const char* layout, const std::string& bytes, std::vector<std::string> options = {},
            const tSurroundings& around = {})
{
    const CTemporaryDirectory files;
    files.write("l.murv", layout);
    files.write("in", bytes);
    options.insert(options.begin(), {"unpack", "-l", "l.murv", "in"});
    return murv(files, options, around);
}

/// The sales with an amount that is no number in the second.
std::string damagedSales()
{
    std::string file = s_cpSales;
    file.replace(file.find("000099"), 6, "00O099");
    return file;
}

const std::string s_strMessage(
    "\x07\x03"
    "Ada"
    "\x2a\x00\xff",
    8);
}  // namespace

TEST(Unpack, fileOfRecordsBecomesADocument)
{
    const tRun run = unpack(s_cpSalesLayout, s_cpSales);
    EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
    EXPECT_EQ(run.m_strOutput.substr(0, 67),
              "{\n  \"day\" =\n  {\n    \"type\" = \"D\",\n    \"date\" = 20240131\n  },\n  \"sal");
    EXPECT_NE(run.m_strOutput.find("\"card\" = \"12345678\""), std::string::npos);
}

TEST(Unpack, jsonIsOneValueWithMasks)
{
    EXPECT_EQ(unpack(s_cpSalesLayout, s_cpSales, {"--json"}).m_strOutput,
              "{\"day\":{\"type\":\"D\",\"date\":20240131},\"sales\":["
              "{\"type\":\"S\",\"amount\":\"12.50\",\"card\":\"****5678\",\"note\":\"tea\"},"
              "{\"type\":\"S\",\"amount\":\"0.99\",\"card\":\"****4321\",\"note\":\"a,\\\"b\"}],"
              "\"end\":{\"type\":\"E\",\"count\":2}}\n");
    EXPECT_NE(unpack(s_cpSalesLayout, s_cpSales, {"--json", "--unmask"}).m_strOutput.find("12345678"),
              std::string::npos);
}

TEST(Unpack, bytesThatAreNoTextAndSmallNumbersHaveTheirPlaceInJson)
{
    EXPECT_EQ(unpack(s_cpMessageLayout, s_strMessage, {"--json"}).m_strOutput,
              "{\"kind\":7,\"name\":\"Ada\",\"flags\":{\"high\":2,\"low\":10},\"raw\":{\"hex\":\"00FF\"}}\n");
}

TEST(Unpack, integersComeInFullAndDoublesAreSeenToBe)
{
    const char* const layout =
        "{ \"@\" = \"layout 1\", \"u\" = (BNF8) 0, \"s\" = (BNF8) 0, \"@s\" = \"signed\", \"d\" = (BNF8) 0,"
        " \"@d\" = \"float\", \"n\" = (BNF8) 0, \"@n\" = \"float\" }";
    const std::string bytes = std::string(16, '\xff').replace(8, 1, "\x80") + std::string("\x40\x39\0\0\0\0\0\0", 8) +
                              std::string("\x7f\xf8\0\0\0\0\0\0", 8);
    EXPECT_EQ(unpack(layout, bytes, {"--json"}).m_strOutput,
              "{\"u\":18446744073709551615,\"s\":-9151314442816847873,\"d\":25.0,\"n\":\"NaN\"}\n");
}

TEST(Unpack, severalMessagesAreAnArray)
{
    EXPECT_EQ(unpack(s_cpMessageLayout, s_strMessage + s_strMessage, {"--json"}).m_strOutput.substr(0, 11),
              "[{\"kind\":7,");
    EXPECT_EQ(unpack(s_cpMessageLayout, "", {"--json"}).m_strOutput, "[]\n");
    EXPECT_EQ(unpack(s_cpMessageLayout, s_strMessage + s_strMessage).m_strOutput.substr(0, 4), "[\n  ");
}

TEST(Unpack, linesAreOneObjectARecord)
{
    EXPECT_EQ(unpack(s_cpSalesLayout, s_cpSales, {"--lines"}).m_strOutput,
              "{\"kind\":\"day\",\"number\":1,\"offset\":0,\"data\":{\"type\":\"D\",\"date\":20240131}}\n"
              "{\"kind\":\"sales\",\"number\":2,\"offset\":10,\"data\":{\"type\":\"S\",\"amount\":\"12.50\","
              "\"card\":\"****5678\",\"note\":\"tea\"}}\n"
              "{\"kind\":\"sales\",\"number\":3,\"offset\":30,\"data\":{\"type\":\"S\",\"amount\":\"0.99\","
              "\"card\":\"****4321\",\"note\":\"a,\\\"b\"}}\n"
              "{\"kind\":\"end\",\"number\":4,\"offset\":50,\"data\":{\"type\":\"E\",\"count\":2}}\n");
}

TEST(Unpack, literalsWithoutNameAreLeftOutButNotAsElements)
{
    const char* const layout =
        "{ \"@\" = \"layout 1\", \"a\" = { (ACF1fix) \"-\", \"b\" = (ANF1) 0 }, \"fill\" = [ (ACF1fix) \".\" ] }";
    EXPECT_EQ(unpack(layout, "-5..", {"--json"}).m_strOutput, "{\"a\":{\"b\":5},\"fill\":[\".\",\".\"]}\n");
    EXPECT_EQ(unpack(layout, "-5..", {"--lines"}).m_strOutput,
              "{\"kind\":\"a\",\"number\":1,\"offset\":0,\"data\":{\"b\":5}}\n"
              "{\"kind\":\"fill\",\"number\":2,\"offset\":2,\"data\":\".\"}\n"
              "{\"kind\":\"fill\",\"number\":3,\"offset\":3,\"data\":\".\"}\n");
    EXPECT_EQ(unpack(layout, "-5..", {"--csv", "fill"}).m_strOutput, "value\r\n.\r\n.\r\n");
}

TEST(Unpack, tablesQuoteWhatNeedsIt)
{
    EXPECT_EQ(unpack(s_cpSalesLayout, s_cpSales, {"--csv", "sales"}).m_strOutput,
              "type,amount,card,note\r\nS,12.50,****5678,tea\r\nS,0.99,****4321,\"a,\"\"b\"\r\n");
}

TEST(Unpack, tablesFlattenFieldSetsAndKeepArraysAsJson)
{
    EXPECT_EQ(unpack(s_cpMessageLayout, s_strMessage, {"--csv", "."}).m_strOutput,
              "kind,name,flags.high,flags.low,raw\r\n7,Ada,2,10,0x00FF\r\n");
    const char* const layout =
        "{ \"@\" = \"layout 1\", \"a\" = { \"b\" = (ACF1) \"\", \"c\" = (ANF2) 0, \"@c\" = \"blank is null\" },"
        " \"n\" = (BNF1) 0, \"@n\" = \"count of list\", \"list\" = [ { \"x\" = (ANF1) 0 } ], \"e\" = (ACF1) \"\" }";
    EXPECT_EQ(unpack(layout,
                     std::string("x  \x02"
                                 "12 y77\x00 ",
                                 12),
                     {"--csv", "."})
                  .m_strOutput,
              "a.b,a.c,n,list,e\r\nx,,2,\"[{\"\"x\"\":1},{\"\"x\"\":2}]\",\"\"\r\ny,77,0,[],\"\"\r\n");
}

TEST(Unpack, unknownKindNamesThoseThatThereAre)
{
    const tRun run = unpack(s_cpSalesLayout, s_cpSales, {"--csv", "sale"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError, "murv: error: no record is of kind sale; did you mean sales? (kinds: day, sales, end)\n");
}

TEST(Unpack, faultShowsPlaceAndBytesAndGivesNoDocument)
{
    const tRun run = unpack(s_cpSalesLayout, damagedSales());
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(run.m_strError,
              "in:record 3, offset 0x1F: error: sales[1].amount: Other characters stand where digits must\n"
              "  ANF6  decimals 2\n"
              "  30 30 4F 30 39 39  |00O099|\n"
              "  ~~~~~~^^~~~~~~~~~\n");
}

TEST(Unpack, linesStopAtAFaultOrGoOn)
{
    const tRun stopped = unpack(s_cpSalesLayout, damagedSales(), {"--csv", "sales"});
    EXPECT_EQ(stopped.m_iExit, 4);
    EXPECT_EQ(stopped.m_strOutput, "type,amount,card,note\r\nS,12.50,****5678,tea\r\n");
    const tRun skipped = unpack(s_cpSalesLayout, damagedSales(), {"--lines", "--on-fault", "skip"});
    EXPECT_EQ(skipped.m_iExit, 4);
    EXPECT_NE(skipped.m_strOutput.find("{\"kind\":\"end\",\"number\":4,"), std::string::npos);
    EXPECT_NE(skipped.m_strError.find("in:record 3, "), std::string::npos);
}

TEST(Unpack, damagedRecordsLeaveNothingInTheWhole)
{
    EXPECT_EQ(unpack(s_cpSalesLayout, damagedSales(), {"--json", "--on-fault", "skip"}).m_strOutput,
              "{\"day\":{\"type\":\"D\",\"date\":20240131},\"sales\":["
              "{\"type\":\"S\",\"amount\":\"12.50\",\"card\":\"****5678\",\"note\":\"tea\"}],"
              "\"end\":{\"type\":\"E\",\"count\":2}}\n");
    const tRun document = unpack(s_cpSalesLayout, damagedSales(), {"--on-fault", "skip"});
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    files.write("t.murv", document.m_strOutput);
    EXPECT_EQ(murv(files, {"get", "t.murv", "sales[0].note"}).m_strOutput, "\"tea\"\n");
    EXPECT_EQ(murv(files, {"get", "t.murv", "sales[1]"}).m_iExit, 1);
    EXPECT_EQ(murv(files, {"get", "t.murv", "end.count"}).m_strOutput, "2\n");
}

TEST(Unpack, faultsAreCollectedInAFile)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    files.write("in", damagedSales());
    const tRun run =
        murv(files, {"unpack", "-l", "l.murv", "--csv", "sales", "--on-fault", "collect", "f.jsonl", "in"});
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strError, "");
    EXPECT_EQ(run.m_strOutput, "type,amount,card,note\r\nS,12.50,****5678,tea\r\n");
    EXPECT_EQ(files.read("f.jsonl"),
              "{\"severity\":\"error\",\"file\":\"in\",\"code\":\"digits\",\"record\":3,\"record_offset\":1,"
              "\"offset\":31,\"length\":6,\"expression\":\"ANF6\",\"rules\":\"decimals 2\",\"bytes\":\"30304F303939\","
              "\"path\":\"sales[1].amount\",\"message\":\"Other characters stand where digits must\"}\n");
}

TEST(Unpack, resultAndCollectedFaultsMayBothBeFiles)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    files.write("in", damagedSales());
    const tRun run = murv(
        files, {"unpack", "-l", "l.murv", "in", "--csv", "sales", "-o", "out", "--on-fault", "collect", "f.jsonl"});
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(files.read("out"), "type,amount,card,note\r\nS,12.50,****5678,tea\r\n");
    EXPECT_EQ(files.names(), "f.jsonl in l.murv out");
    EXPECT_EQ(murv(files, {"unpack", "-l", "l.murv", "in", "--on-fault", "collect", "no/f"}).m_strError,
              "no/f: error: not written: No such file or directory\n");
}

TEST(Unpack, fileNameMayFollowWhatToDoAtFaults)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    files.write("in", s_cpSales);
    EXPECT_EQ(murv(files, {"unpack", "-l", "l.murv", "--on-fault", "skip", "in"}).m_iExit, 0);
    EXPECT_EQ(murv(files, {"unpack", "-l", "l.murv", "--on-fault", "go", "in"}).m_strError,
              "murv: error: --on-fault is stop, skip or collect FILE, not go\n");
    EXPECT_EQ(murv(files, {"unpack", "-l", "l.murv", "in", "--on-fault", "collect"}).m_strError,
              "murv: error: --on-fault collect needs the name of a file\n");
}

TEST(Unpack, findingsAreWarnings)
{
    std::string file = s_cpSales;
    file.replace(file.find("E002"), 4, "E003");
    for (const char* const form : {"--json", "--lines", "--unmask"})
    {
        const tRun run = unpack(s_cpSalesLayout, file, {form});
        EXPECT_EQ(run.m_iExit, 0) << form;
        EXPECT_NE(run.m_strError.find("The total differs"), std::string::npos) << form;
    }
}

TEST(Unpack, resultGoesToAFileOnlyWhenAllFits)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    files.write("good", s_cpSales);
    files.write("bad", damagedSales());
    EXPECT_EQ(murv(files, {"unpack", "-l", "l.murv", "good", "--lines", "-o", "out"}).m_iExit, 0);
    const std::string lines = files.read("out");
    EXPECT_EQ(lines.substr(0, 14), "{\"kind\":\"day\",");
    for (const char* const form : {"--lines", "--json"})
        EXPECT_EQ(murv(files, {"unpack", "-l", "l.murv", "bad", form, "-o", "out"}).m_iExit, 4) << form;
    EXPECT_EQ(files.read("out"), lines);
}

TEST(Unpack, readerThatWentAwayAndFullDisksAreFailures)
{
    tSurroundings around;
    around.m_bReaderGone = true;
    const tRun gone = unpack(s_cpSalesLayout, s_cpSales, {"--lines"}, around);
    EXPECT_EQ(gone.m_iExit, 5);
    EXPECT_EQ(gone.m_strError, "");
    tSurroundings full;
    full.m_strOutputFile = "/dev/full";
    const tRun run = unpack(s_cpSalesLayout, s_cpSales, {"--lines"}, full);
    EXPECT_EQ(run.m_iExit, 5);
    EXPECT_EQ(run.m_strError, "murv: error: cannot write to the standard output: No space left on device\n");
}

#ifndef MURV_TEST_SANITIZED
TEST(Unpack, linesAndTablesNeedNoMemoryForLongFiles)
{
    const CTemporaryDirectory files;
    std::string file = "D20240131\n";
    for (int i = 0; i < 1500000; ++i)
        file += "S00125012345678tea \n";
    files.write("l.murv", s_cpSalesLayout);
    files.write("in", file + "E000\n");
    tSurroundings around;
    around.m_ullMostMemory = 28'000'000;
    around.m_strOutputFile = "/dev/null";
    for (const char* const form : {"--lines", "--csv=sales"})
    {
        const tRun run = murv(files, {"unpack", "-l", "l.murv", "in", form}, around);
        EXPECT_EQ(run.m_iExit, 0) << run.m_strError;
    }
}
#endif

TEST(Unpack, missingFileAndDirectoryCannotBeRead)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    for (const char* const form : {"--lines", "--json"})
    {
        EXPECT_EQ(murv(files, {"unpack", "-l", "l.murv", "missing", form}).m_iExit, 5);
        EXPECT_EQ(murv(files, {"unpack", "-l", "l.murv", ".", "--lines"}).m_strError,
                  ".: error: cannot be read: Is a directory\n");
    }
}

}  // namespace murv::tests

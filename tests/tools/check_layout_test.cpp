// tests/tools/check_layout_test.cpp - murv check of layouts, and of packets by a layout.
#include <gtest/gtest.h>

#include "tests/tools/sales.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
tRun check(const std::string& bytes, std::vector<std::string> options = {})
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    files.write("in", bytes);
    options.insert(options.begin(), {"check", "-l", "l.murv", "in"});
    return murv(files, options);
}

/// Sales of which `damaged` have an amount that is no number, after one that is right.
std::string damagedSales(int damaged)
{
    std::string file = "D20240131\nS00125012345678tea \n";
    for (int i = 0; i < damaged; ++i)
        file += i % 2 == 0 ? "S00x25012345678tea \n" : "T00125012345678tea \n";
    return file + "E001\n";
}
}  // namespace

TEST(CheckLayout, mistakesAreShownAtTheirPlaces)
{
    const tRun run =
        murvOn("{ \"@\" = \"layout 1; linez\",\n  \"a\" = (ACF3) \"\", \"@b\" = \"mask\" }\n", {"check", "-"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strOutput, "");
    EXPECT_EQ(run.m_strError,
              "<stdin>:1:9: error: There is no rule \"linez\"; did you mean \"lines\"?\n"
              "{ \"@\" = \"layout 1; linez\",\n"
              "        ^~~~~~~~~~~~~~~~~\n"
              "<stdin>:2:27: error: There is no part \"b\" for this rule; did you mean \"a\"?\n"
              "  \"a\" = (ACF3) \"\", \"@b\" = \"mask\" }\n"
              "                          ^~~~~~\n");
}

TEST(CheckLayout, repeatedNamesOfALayoutAreMistakes)
{
    const tRun run = murvOn("{ \"@\" = \"layout 1\", \"a\" = (ACF3) \"\", \"a\" = (ACF3) \"\" }", {"check", "-"});
    EXPECT_EQ(run.m_iExit, 3);
}

TEST(CheckLayout, layoutWithoutMistakesIsAccepted)
{
    EXPECT_EQ(murvOn(s_cpSalesLayout, {"check", "-"}).m_strOutput, "<stdin>: accepted\n");
}

TEST(CheckLayout, otherDocumentsAreNoLayouts)
{
    EXPECT_EQ(murvOn("{ \"@\" = \"layouts\", \"b\" = 1 }", {"check", "-"}).m_iExit, 0);
    EXPECT_EQ(murvOn("{ \"@\" = 1 }", {"check", "-"}).m_iExit, 0);
}

TEST(CheckPackets, fileThatFitsIsAccepted)
{
    const tRun run = check(s_cpSales);
    EXPECT_EQ(run.m_iExit, 0);
    EXPECT_EQ(run.m_strOutput, "in: accepted, 4 records\n");
    EXPECT_EQ(run.m_strError, "");
    EXPECT_EQ(check(s_cpSales, {"-q"}).m_strOutput, "");
}

TEST(CheckPackets, findingsAloneAreANo)
{
    std::string file = s_cpSales;
    file.replace(file.find("E002"), 4, "E003");
    const tRun run = check(file);
    EXPECT_EQ(run.m_iExit, 1);
    EXPECT_EQ(run.m_strOutput, "in: 4 records, 1 finding\n");
    EXPECT_EQ(run.m_strError,
              "in:record 4, offset 0x33: warning: end.count: The total differs\n"
              "  ANF3  count of sales\n"
              "  30 30 33  |003|\n"
              "  ^^~~~~~~\n");
}

TEST(CheckPackets, goesOnAfterADamagedRecord)
{
    const tRun run = check(damagedSales(2));
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strOutput, "in: 2 errors, 3 records without error\n");
    EXPECT_NE(run.m_strError.find("in:record 3, offset 0x1F: error: sales[1].amount: "), std::string::npos)
        << run.m_strError;
    EXPECT_NE(run.m_strError.find("in:record 4, "), std::string::npos) << run.m_strError;
}

TEST(CheckPackets, faultThatRepeatsIsOneMessage)
{
    std::string file = "D20240131\n";
    for (int i = 0; i < 1000; ++i)
        file += "S00x25012345678tea \n";
    const tRun run = check(file + "E000\n");
    EXPECT_EQ(run.m_strOutput, "in: 1000 errors, 2 records without error\n");
    EXPECT_EQ(run.m_strError.substr(run.m_strError.rfind("in:")), "in: note: the same in 999 records after it\n");
    EXPECT_LT(run.m_strError.size(), 300U);
}

TEST(CheckPackets, notMoreErrorsThanWanted)
{
    const tRun run = check(damagedSales(10), {"--max-errors", "3"});
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strError.substr(run.m_strError.rfind("in:")),
              "in: note: 7 more like these are not shown (see --max-errors)\n");
}

TEST(CheckPackets, masksHold)
{
    const char* const layout = "{ \"@\" = \"layout 1; lines\", \"card\" = (ANF8) 0, \"@card\" = \"mask 2\" }";
    const CTemporaryDirectory files;
    files.write("l.murv", layout);
    files.write("in", "1234x678\n");
    const tRun run = murv(files, {"check", "-l", "l.murv", "in"});
    EXPECT_EQ(run.m_strError,
              "in:record 1, offset 0x00: error: card: Other characters stand where digits must\n"
              "  ANF8  mask 2\n"
              "  ** ** ** ** ** ** 37 38  |******78|\n"
              "  ^^~~~~~~~~~~~~~~~~~~~~~\n");
}

TEST(CheckPackets, inputThatEndsTooSoonSaysWhatIsMissing)
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpMessageLayout);
    files.write("in", std::string("\x07\x03"
                                  "Ad",
                                  4));
    const tRun run = murv(files, {"check", "-l", "l.murv", "in"});
    EXPECT_EQ(run.m_iExit, 4);
    EXPECT_EQ(run.m_strError.substr(0, run.m_strError.find('\n')),
              "in:record 1, offset 0x01: error: name: The input ends too soon; at least 1 byte more must follow");
    EXPECT_EQ(run.m_strError.substr(run.m_strError.rfind("in:")),
              "in: note: what follows cannot be read: nothing says where the next record begins\n");
}

TEST(CheckPackets, jsonHasTheSameFacts)
{
    EXPECT_EQ(check(s_cpSales, {"--json"}).m_strOutput,
              "{\"file\":\"in\",\"accepted\":true,\"records\":4,\"errors\":0,\"findings\":0,\"bytes\":55}\n");
}

}  // namespace murv::tests

// tests/tools/explain_page_test.cpp - murv explain --html: one page that shows every byte, with texts as text.
#include <gtest/gtest.h>

#include "tests/tools/page.h"
#include "tests/tools/sales.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
/// The page of a packet given in hexadecimal digits.
std::string page(const std::string& layout, const std::string& hex, int exit = 0)
{
    const tRun run = murvOn("", {"explain", "--html", "-e", layout, "-x", hex});
    EXPECT_EQ(run.m_iExit, exit) << run.m_strError;
    return run.m_strOutput;
}

/// The page of a file of sales.
std::string salesPage(const std::string& sales, int exit, std::vector<std::string> options = {})
{
    const CTemporaryDirectory files;
    files.write("l.murv", s_cpSalesLayout);
    files.write("in", sales);
    options.insert(options.begin(), {"explain", "--html", "-l", "l.murv", "in"});
    const tRun run = murv(files, options);
    EXPECT_EQ(run.m_iExit, exit) << run.m_strError;
    return run.m_strOutput;
}

/// The row of a part.
std::string row(const std::string& page, const std::string& head)
{
    const std::size_t at = page.find("<th scope=\"row\">" + head + "</th>");
    if (at == std::string::npos)
        return "no row " + head;
    const std::size_t begin = page.rfind("<tr>", at);
    return page.substr(begin, page.find("</tr>", at) - begin);
}

std::string damagedSales()
{
    std::string sales = s_cpSales;
    sales.replace(sales.find("000099"), 6, "00O099");
    return sales;
}
}  // namespace

TEST(ExplainPage, rowsHavePlaceBytesTextPartValueExpressionRulesAndComment)
{
    EXPECT_EQ(row(salesPage(s_cpSales, 0), "amount"),
              "<tr><td class=\"place bytes code\" data-label=\"Offset\">0x000B</td>"
              "<td class=\"bytes lines code\" data-label=\"Bytes\">30 30 31 32 35 30</td>"
              "<td class=\"bytes lines code\" data-label=\"Text\">001250</td><th scope=\"row\">amount</th>"
              "<td class=\"value\" data-label=\"Value\">&quot;12.50&quot;</td>"
              "<td class=\"rules\" data-label=\"Rules\"><code>ANF6</code> <code>decimals 2</code></td>"
              "<td class=\"comment\" data-label=\"Comment\"><p>in the currency of the shop</p>\n</td>");
}

TEST(ExplainPage, standsAloneAndTablesHaveHeadsAndCaptions)
{
    const std::string text = salesPage(s_cpSales, 0);
    expectAlone(text);
    expectHas(text, "<h1>in</h1>");
    expectHas(text, "<p>The sales of a day. Lines of text.</p>");
    expectHas(text, "<p>4 records without error.</p>");
    expectHas(text, "<section id=\"record2\">\n<h2>Record 2: sales[0]</h2>");
    EXPECT_EQ(countOf(text, "<table "), 4U);
    EXPECT_EQ(countOf(text, "<th scope=\"col\">Offset</th>"), 4U);
    expectHas(text, "<caption id=\"table2\">19 bytes at 0x0A</caption>");
    expectHas(text, "aria-labelledby=\"table2\"");
    EXPECT_EQ(countOf(text, "(end of the record)"), 4U);
}

TEST(ExplainPage, whatDoesNotFitIsMarkedAndTheSummaryLeadsThere)
{
    const std::string text = salesPage(damagedSales(), 4);
    expectBalanced(text);
    expectHas(text, "<p>3 records without error, <strong class=\"error\">1 error</strong>.</p>");
    expectHas(text,
              "<li><a href=\"#record3\">record 3</a>: <code>sales[1].amount</code>: "
              "Other characters stand where digits must</li>");
    expectHas(text, "<section id=\"record3\">");
    const std::size_t third = text.find("<section id=\"record3\">");
    const std::string failed = row(text.substr(third), "amount");
    expectHas(failed, "<mark>30 30 4F 30 39 39</mark>");
    expectHas(failed, "<mark>00O099</mark>");
    expectHas(failed, "<p class=\"error\"><strong>Error:</strong> Other characters stand where digits must</p>");
    expectHas(row(text.substr(third), "type"), "&quot;S&quot;");
    EXPECT_EQ(countOf(text, "<mark>"), 2U);
}

TEST(ExplainPage, findingsStandBesideTheirValuesOrAfterTheRecords)
{
    std::string sales = s_cpSales;
    sales.replace(sales.find("E002"), 4, "E007");
    const std::string text = salesPage(sales, 0);
    expectHas(text, "<p>4 records without error, 1 finding.</p>");
    expectHas(text, "<p class=\"warning\"><strong>Warning:</strong> ");
    expectHas(text, "<a href=\"#record4\">record 4</a>: <code>end.count</code>: ");
    const std::string valid = page("\"a\" = (ANF1) 1, \"@a\" = \"valid 1..3\"", "39");
    expectHas(row(valid, "a"),
              ">9<p class=\"warning\"><strong>Warning:</strong> The value is not one of the valid ones");
}

TEST(ExplainPage, masksHold)
{
    const std::string text = salesPage(damagedSales(), 4);
    EXPECT_EQ(text.find("12345678"), std::string::npos);
    EXPECT_EQ(text.find("87654321"), std::string::npos);
    EXPECT_EQ(text.find("31 32 33 34"), std::string::npos);
    EXPECT_EQ(text.find("38 37 36 35"), std::string::npos);
    expectHas(text, "** ** ** ** 35 36 37 38");
    expectHas(salesPage(s_cpSales, 0, {"--unmask"}), "12345678");
}

TEST(ExplainPage, hostileTextsStayText)
{
    const std::string text = page(
        "// </p><script>alert(1)</script> &amp;\n{ \"@\" = \"layout 1\",\n// <i>\n\"</td><b>\" = (ACF20) \"\", "
        "\"@</td><b>\" = \"valid \\\"<u>\\\"\" }",
        "3C696D67206F6E6572726F723D277827 22 26 20 20");
    expectBalanced(text);
    for (const char* tag : {"<script", "<img", "<b>", "<i>", "<u>", "onerror='"})
        EXPECT_EQ(text.find(tag), std::string::npos) << tag;
    expectHas(text, "&lt;img onerror=&#39;x&#39;\\&quot;&amp;");
    const CTemporaryDirectory files;
    files.write("<em>.bin", "x");
    const tRun run = murv(files, {"explain", "--html", "-e", "\"a\" = (ACF1) \"\"", "<em>.bin"});
    EXPECT_EQ(run.m_strOutput.find("<em>"), std::string::npos);
    expectHas(run.m_strOutput, "<title>&lt;em&gt;.bin - by the layout of the call</title>");
}

TEST(ExplainPage, pathsStartAtTheRecordAndSetsShowTheirRulesOnce)
{
    const std::string text = page(
        "\"@\" = \"layout 1\", \"n\" = (BNF1) 0, \"@n\" = \"count of list\", "
        "\"list\" = [ { \"@\" = \"little\", \"x\" = (BNF1) 0 } ]",
        "02 07 08");
    expectHas(text, "<span class=\"soft\">list[1].</span>x</th>");
    EXPECT_EQ(countOf(text, "<code>little</code>"), 1U);
}

TEST(ExplainPage, longValuesAreCut)
{
    std::string hex;
    for (int i = 0; i < 200; ++i)
        hex += "41";
    expectHas(page("\"a\" = (ACF200) \"\"", hex), "41 41\n... 72 more bytes</td>");
}

TEST(ExplainPage, oneRecordAloneHasNoSummary)
{
    const std::string text = salesPage(s_cpSales, 0, {"--record", "3"});
    EXPECT_EQ(countOf(text, "<table "), 1U);
    expectHas(text, "<h2>Record 3: sales[1]</h2>");
    EXPECT_EQ(text.find("without error"), std::string::npos);
    expectBalanced(text);
}

TEST(ExplainPage, emptyInputIsAPage)
{
    expectAlone(page("\"a\" = (BNF1) 0", ""));
    expectHas(page("\"a\" = (BNF1) 0", ""), "<p>0 records without error.</p>");
}

TEST(ExplainPage, excludesJson)
{
    EXPECT_EQ(murvOn("", {"explain", "--html", "--json", "-e", "\"a\" = (BNF1) 0", "-x", "00"}).m_iExit, 2);
}

}  // namespace murv::tests

// tests/tools/doc_test.cpp - murv doc: one page that stands alone, with texts of the layout as text.
#include <gtest/gtest.h>

#include "tests/tools/page.h"
#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
std::string page(const std::string& layout)
{
    const tRun run = murvOn(layout, {"doc", "-"});
    EXPECT_EQ(run.m_strError, "");
    EXPECT_EQ(run.m_iExit, 0);
    return run.m_strOutput;
}

constexpr const char* s_cpLayout = R"(// Readings of a station.
//
// The second paragraph.
{
  "@" = "layout 1; big",
  "magic" = (BCF2fix) "RS",
  "flags" = (BNF1) 5, "@flags" = "bits 1 alarm, 7 rest",
  // who may read it
  "pin" = (ACF4) "1234", "@pin" = "mask 1",
  "count" = (BNF1) 0, "@count" = "count of list",
  "list" = [ { "a" = (ANF3) 7, "b" = (BNF2) 258 } ]
})";
}  // namespace

TEST(Doc, saysPurposePartsAndRulesInWords)
{
    const std::string text = page(s_cpLayout);
    expectHas(text, "<p>Readings of a station.</p>\n<p>The second paragraph.</p>");
    expectHas(text, "<p class=\"soft\">8 to 1283 bytes in all; 1 kind of record.</p>");
    expectHas(text, "<code>big</code> the high byte comes first.");
    expectHas(text, "<p>who may read it</p>\n<p><code>mask 1</code> people see stars, but for the last N bytes.</p>");
    expectHas(text, "<code>count of list</code> the number counts the elements of an array.");
    expectHas(text, "literal <code>&quot;RS&quot;</code> <code>BCF2fix</code>");
    EXPECT_EQ(countOf(text, "<svg class=\"figure\""), 2U);
}

TEST(Doc, exampleIsMadeOfTheLayoutsOwnValues)
{
    const std::string text = page(s_cpLayout);
    expectHas(text, "What the layout's own values make: 13 bytes.");
    expectHas(text,
              "data-label=\"Offset\">2</td><td class=\"bytes lines code\" data-label=\"Bytes\">05</td>"
              "<td class=\"bytes lines code\" data-label=\"Text\">.</td><th scope=\"row\">flags</th>"
              "<td class=\"value\" data-label=\"Value\">alarm 0, rest 5</td></tr>");
    expectHas(text,
              "data-label=\"Bytes\">01 02</td><td class=\"bytes lines code\" data-label=\"Text\">..</td>"
              "<th scope=\"row\"><span class=\"soft\">list[0].</span>b</th>");
    expectHas(text,
              "data-label=\"Bytes\">01</td><td class=\"bytes lines code\" data-label=\"Text\">.</td>"
              "<th scope=\"row\">count</th>");
}

TEST(Doc, recordsOfTheExampleLeadToTheirParts)
{
    const std::string text = page(
        "{ \"@\" = \"layout 1; lines\", \"a\" = { \"x\" = (ACF1fix) \"A\" }, "
        "\"b\" = [ { \"y\" = (ACF1) \"B\" } ] }");
    expectHas(text, "<caption id=\"table1\">Record <a href=\"#part1\">a</a></caption>");
    expectHas(text, "<caption id=\"table2\">Record <a href=\"#part4\">b[0]</a></caption>");
    expectHas(text, "<section id=\"part4\">");
}

TEST(Doc, maskedValuesAreStars)
{
    const std::string text = page(s_cpLayout);
    expectHas(text,
              "data-label=\"Bytes\">** ** ** 34</td><td class=\"bytes lines code\" data-label=\"Text\">***4</td>"
              "<th scope=\"row\">pin</th><td class=\"value\" data-label=\"Value\">&quot;***4&quot;</td>");
    EXPECT_EQ(text.find("1234"), std::string::npos);
    EXPECT_EQ(text.find("31 32"), std::string::npos);
}

TEST(Doc, maskedLiteralsAreStars)
{
    const std::string layout = "{ \"@\" = \"layout 1\", \"k\" = (ACF6fix) \"SECRET\", \"@k\" = \"mask\" }";
    EXPECT_EQ(page(layout).find("SECRET"), std::string::npos);
    expectHas(page(layout), "k = &quot;******&quot;");
    EXPECT_EQ(murvOn(layout, {"picture", "-", "--text"}).m_strOutput.find("SECRET"), std::string::npos);
}

TEST(Doc, valuesThatAreNoTextAreHexadecimal)
{
    expectHas(page("{ \"@\" = \"layout 1\", \"a\" = (BCF2) \"\\x01\\xFF\" }"),
              "<td class=\"value\" data-label=\"Value\">0x01FF</td>");
}

TEST(Doc, standsAlone)
{
    expectAlone(page(s_cpLayout));
}

TEST(Doc, hostileTextsStayText)
{
    const std::string text = page(
        "// </p><script>alert(1)</script> \x01\xFF &amp;\n{ \"@\" = \"layout 1\", "
        "\"</svg><img onerror='x' \\\"\" = (ACF20) \"<b>&\\x01\\xFF\", // <i>\n"
        "\"b\" = (ACF9) \"x\", \"@b\" = \"valid \\\"<script>\\\" | \\\"x\\\"\" }");
    expectBalanced(text);
    for (const char* tag : {"<script", "<img", "<b>", "<i>", "onerror='"})
        EXPECT_EQ(text.find(tag), std::string::npos) << tag;
    EXPECT_EQ(text.find('\x01'), std::string::npos);
    EXPECT_EQ(text.find('\xFF'), std::string::npos);
    expectHas(text, "&lt;script&gt;alert(1)&lt;/script&gt; \xEF\xBF\xBD\xEF\xBF\xBD &amp;amp;");
}

TEST(Doc, filesOfRecordsShowTheirStructure)
{
    const tRun run = murvOn("", {"doc", "ach"});
    EXPECT_EQ(run.m_iExit, 0);
    expectHas(run.m_strOutput, "<section id=\"structure\">");
    expectHas(run.m_strOutput, "<strong>batches</strong>, any number of:");
    expectHas(run.m_strOutput, "<strong>addenda[]</strong>, one of:");
    expectHas(run.m_strOutput, ">batches[0].entries[0].entry</a></caption>");
    expectBalanced(run.m_strOutput);
}

TEST(Doc, layoutsWithoutOwnExampleSayWhy)
{
    const std::string text = page("{ \"@\" = \"layout 1\", \"a\" = (ACF2) \"\", \"@a\" = \"required\" }");
    expectHas(text, "The layout's own values make no packet: a: ");
    expectBalanced(text);
}

TEST(Doc, pagesOfInstalledLayoutsAreWholeAndHaveExamples)
{
    for (const char* name : {"ar", "binaryfile", "cobol", "cpio", "fix", "hsrp", "iso8583", "itch50", "nmea", "ntp",
                             "pcap", "sensor", "sqlite-header", "ssh-public-key", "tar", "tle"})
    {
        const tRun run = murvOn("", {"doc", name});
        EXPECT_EQ(run.m_iExit, 0) << name << run.m_strError;
        EXPECT_EQ(run.m_strOutput.find("make no packet"), std::string::npos) << name;
        expectBalanced(run.m_strOutput);
    }
}

TEST(Doc, malformedLayoutsGiveNoPage)
{
    const tRun run = murvOn("{ \"@\" = \"layout 2\" }", {"doc", "-"});
    EXPECT_EQ(run.m_iExit, 3);
    EXPECT_EQ(run.m_strOutput, "");
}

}  // namespace murv::tests

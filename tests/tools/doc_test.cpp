// tests/tools/doc_test.cpp - murv doc: one page that stands alone, with texts of the layout as text.
#include <gtest/gtest.h>

#include <algorithm>

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

void expectHas(const std::string& text, const std::string& what)
{
    EXPECT_NE(text.find(what), std::string::npos) << what;
}

std::size_t countOf(const std::string& text, const std::string& what)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size()))
        ++count;
    return count;
}

/// Reads tags and expects that each one is closed where it was opened.
void expectBalanced(const std::string& page)
{
    std::vector<std::string> open;
    for (std::size_t at = page.find('<'); at != std::string::npos; at = page.find('<', at + 1))
    {
        const std::size_t end = page.find('>', at);
        ASSERT_NE(end, std::string::npos);
        const bool isClosing = page[at + 1] == '/';
        const std::size_t begin = at + (isClosing ? 2 : 1);
        const std::string name = page.substr(begin, std::min(page.find_first_of(" >/\n", begin), end) - begin);
        if (name == "!DOCTYPE" || name == "meta" || page[end - 1] == '/')
            continue;
        if (!isClosing)
            open.push_back(name);
        else
        {
            ASSERT_FALSE(open.empty()) << name;
            EXPECT_EQ(open.back(), name) << page.substr(at, 60);
            open.pop_back();
        }
    }
    EXPECT_TRUE(open.empty());
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
              "data-label=\"Bytes\">05</td><th scope=\"row\">flags</th><td class=\"value\" data-label=\"Value\">5 "
              "(alarm 0, rest 5)</td>");
    expectHas(text, "data-label=\"Bytes\">01 02</td><th scope=\"row\">list[0].b</th>");
    expectHas(text, "data-label=\"Bytes\">01</td><th scope=\"row\">count</th>");
}

TEST(Doc, maskedValuesAreStars)
{
    const std::string text = page(s_cpLayout);
    expectHas(text,
              "data-label=\"Bytes\">** ** ** 34</td><th scope=\"row\">pin</th><td class=\"value\" "
              "data-label=\"Value\">***4</td>");
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
              "<td class=\"value\" data-label=\"Value\">hex 01FF</td>");
}

TEST(Doc, standsAlone)
{
    const std::string text = page(s_cpLayout);
    EXPECT_EQ(text.rfind("<!DOCTYPE html>\n<html lang=\"en\">", 0), 0U);
    for (const char* outside : {"<script", "<link", "src=", "url(", "@import", "http"})
        EXPECT_EQ(text.find(outside), std::string::npos) << outside;
    expectHas(text, "@media (prefers-color-scheme:dark)");
    expectHas(text, "@media print");
    expectBalanced(text);
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
    expectHas(run.m_strOutput, "batches[0].entries[0].entry.account");
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

// tests/tools/picture_test.cpp - murv picture: rows of four bytes, as text and as SVG.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/tools/tool.h"

namespace murv::tests
{

namespace
{
std::string picture(const std::string& members, const std::vector<std::string>& options = {"--text"})
{
    std::vector<std::string> call = {"picture", "-"};
    call.insert(call.end(), options.begin(), options.end());
    const tRun run = murvOn("{ \"@\" = \"layout 1\", " + members + " }", call);
    EXPECT_EQ(run.m_strError, "");
    EXPECT_EQ(run.m_iExit, 0);
    return run.m_strOutput;
}

std::size_t countOf(const std::string& text, const std::string& what)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size()))
        ++count;
    return count;
}

void expectHas(const std::string& text, const std::string& what)
{
    EXPECT_NE(text.find(what), std::string::npos) << what << " in\n" << text;
}
}  // namespace

TEST(Picture, bitsStandInTheirBits)
{
    EXPECT_EQ(picture("\"v\" = (BNF1) 0, \"@v\" = \"bits 4 version, 1 xx, 3 z\", \"t\" = (BNF1) 0, \"len\" = (BNF2) 0"),
              R"(<stdin> (4 bytes)

    0                   1                   2                   3
    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
   ┌───────┬─┬─────┬───────────────┬───────────────────────────────┐
0  │version│1│ v.z │  t (1 byte)   │         len (2 bytes)         │
   └───────┴─┴─────┴───────────────┴───────────────────────────────┘
    1  v.xx (1 bit)
)");
}

TEST(Picture, partsOfAnyLengthAreTorn)
{
    EXPECT_EQ(picture("\"a\" = (BNF1) 0, \"text\" = (ACV2+2) \"\", \"b\" = (BNF2) 0"),
              R"(<stdin> (5..104 bytes)

    0                   1                   2                   3
    0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6 7 8 9 0 1
   ┌───────────────┬───────────────────────────────────────────────┐
0  │  a (1 byte)   │              text (2..101 bytes)              ~
   ├───────────────┴───────────────┬───────────────────────────────┘
   │          b (2 bytes)          │
   └───────────────────────────────┘
)");
}

TEST(Picture, longPartsTakeOneTornRow)
{
    const std::string text = picture("\"a\" = (BNF1) 0, \"long\" = (BCF100) \"\", \"b\" = (BNF3) 0");
    EXPECT_EQ(countOf(text, "~"), 2U) << text;
    expectHas(text, "long (100 bytes)");
    expectHas(text, "\n100 ");
}

TEST(Picture, partsThatMayBeAbsentAreMarked)
{
    const std::string text = picture("\"k\" = (BNF1) 0, \"v\" = (BNF1) 0, \"@v\" = \"if k = 1\", \"w\" = (BNF1) 0");
    expectHas(text, "v? (1 byte)");
    expectHas(text, " ?  may be absent\n");
    expectHas(picture("\"k\" = (BNF1) 0, \"v\" = (BNF1) 0, \"@v\" = \"if k = 1\"", {}), "class=\"edge dashed\"");
}

TEST(Picture, arraysAndAlternativesHavePicturesOfTheirOwn)
{
    const std::string text = picture(
        "\"k\" = (BNF1) 0, "
        "\"one\" = { \"@\" = \"one of by k\", #1 \"a\" = (BNF2) 0, #2 \"b\" = { \"x\" = (BNF4) 0 } }, "
        "\"n\" = (BNF1) 0, \"@n\" = \"count of list\", \"list\" = [ { \"y\" = (BNF4) 0 } ]");
    for (const char* title :
         {"<stdin> (4..1026 bytes)\n", "one.a (2 bytes)\n", "one.b (4 bytes)\n", "list[] (4 bytes)\n"})
        EXPECT_EQ(countOf("\n" + text, std::string("\n") + title), 1U) << title << " in\n" << text;
    expectHas(text, "one: one of 2");
}

TEST(Picture, recordsCanBeChosen)
{
    const std::string members = "\"a\" = { \"x\" = (ACF1fix) \"1\" }, \"b\" = { \"y\" = (ACF1fix) \"2\" }";
    EXPECT_EQ(countOf(picture(members), "(1 byte)\n\n"), 2U);
    EXPECT_EQ(picture(members, {"--text", "--record", "b"}).rfind("b (1 byte)\n", 0), 0U);
    const tRun run = murvOn("{ \"@\" = \"layout 1\", " + members + " }", {"picture", "-", "--record", "c"});
    EXPECT_EQ(run.m_iExit, 2);
    EXPECT_EQ(run.m_strError, "murv: error: no record is of kind c (kinds: a, b)\n");
}

TEST(Picture, svgSaysInWordsWhatItShows)
{
    const std::string svg = picture("\"magic\" = (BCF4fix) \"MSR1\", \"n\" = (BNF1) 0", {});
    EXPECT_EQ(
        svg.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\" role=\"img\"",
                  0),
        0U);
    expectHas(svg, "aria-labelledby=\"t1 d1\"");
    expectHas(svg, "<title id=\"t1\">&lt;stdin&gt;, 5 bytes</title>");
    expectHas(svg, "magic: 4 bytes at 0, literal. n: 1 byte at 4, binary number.</desc>");
    expectHas(svg, "@media (prefers-color-scheme:dark)");
    expectHas(svg, ">magic = &quot;MSR1&quot;</text>");
}

TEST(Picture, hostileNamesStayText)
{
    const std::string svg = picture("\"</text><script>x&'\\x01\\xFF\" = (BNF4) 0", {});
    EXPECT_EQ(svg.find("<script"), std::string::npos);
    expectHas(svg, "&lt;/text&gt;&lt;script&gt;x&amp;&#39;");
    EXPECT_EQ(svg.find('\x01'), std::string::npos);
    EXPECT_EQ(svg.find('\xFF'), std::string::npos);
}

TEST(Picture, everyInstalledLayoutHasOne)
{
    for (const char* name : {"ach", "iso8583", "sensor", "itch50", "tar", "ntp", "cobol", "nmea"})
    {
        const tRun text = murvOn("", {"picture", name, "--text"});
        EXPECT_EQ(text.m_iExit, 0) << name << text.m_strError;
        const std::size_t records = countOf(text.m_strOutput, "0 1 2 3 4 5 6 7 8 9 0 1 2 3 4 5 6");
        const tRun svg = murvOn("", {"picture", name});
        EXPECT_EQ(countOf(svg.m_strOutput, "<svg class=\"figure\""), records) << name;
        EXPECT_EQ(countOf(svg.m_strOutput, "<svg"), countOf(svg.m_strOutput, "</svg>")) << name;
    }
}

}  // namespace murv::tests

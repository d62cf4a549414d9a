// Where parts lie, how long they may be, and what their rules mean, as it is seen from outside.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "murv/layout.h"
#include "murv/murv.h"

namespace
{

using namespace murv;

/// A layout with these members, and further rules of the root.
class CPlaces
{
public:
    explicit CPlaces(const std::string& members, const std::string& rules = "")
    {
        EXPECT_TRUE(m_tLayout.compile("{ \"@\" = \"layout 1" + rules + "\", " + members + " }")) << members;
    }
    tLayoutPart part(const std::string& path) const
    {
        return m_tLayout.getPart(m_tLayout.findPart(path));
    }
    /// `3 from "base"`, or `varies`.
    std::string place(unsigned int number) const
    {
        const tLayoutPart part = m_tLayout.getPart(number);
        if (part.m_uiBase == CLayout::s_cuiNoPart)
            return "varies";
        return std::to_string(part.m_ullOffset) + " from \"" + m_tLayout.getPath(part.m_uiBase) + "\"";
    }
    std::string place(const std::string& path) const
    {
        return place(m_tLayout.findPart(path));
    }
    /// `2..5`; an open end has no number.
    std::string length(const std::string& path) const
    {
        const tLayoutPart at = part(path);
        const std::string most = at.m_ullMost == CLayout::s_cullNoBound ? "" : std::to_string(at.m_ullMost);
        return std::to_string(at.m_ullLeast) + ".." + most;
    }
    const CLayout& layout() const
    {
        return m_tLayout;
    }

private:
    CLayout m_tLayout;
};

TEST(LayoutPlaces, countFromTheRecordUntilSomethingVaries)
{
    const CPlaces at(
        "\"a\" = (ACF4) \"\", \"s\" = { \"b\" = (BNF2) 0, \"c\" = (BNF1) 0 }, \"d\" = (ACV2+2) \"\", "
        "\"e\" = (ANF3) 0, \"t\" = { \"f\" = (BNF1) 0, \"g\" = (BNF1) 0 }");
    EXPECT_EQ(at.place("a"), "0 from \"\"");
    EXPECT_EQ(at.place("s"), "4 from \"\"");
    EXPECT_EQ(at.place("s.c"), "6 from \"\"");
    EXPECT_EQ(at.place("d"), "7 from \"\"");
    EXPECT_EQ(at.place("e"), "varies");
    EXPECT_EQ(at.place("t"), "0 from \"t\"");
    EXPECT_EQ(at.place("t.g"), "1 from \"t\"");
}

TEST(LayoutPlaces, ofRecordsAndElementsAreTheirOwn)
{
    const CPlaces at(
        "\"list\" = [ { \"a\" = (BNF1) 0, \"n\" = (BNF1) 0, \"@n\" = \"count of inner\", "
        "\"inner\" = [ { \"x\" = (BNF2) 0, \"y\" = (BNF2) 0 } ] } ]");
    EXPECT_EQ(at.place(0U), "varies") << "outside records";
    EXPECT_EQ(at.place("list"), "varies") << "outside records";
    EXPECT_EQ(at.place("list.n"), "1 from \"list\"");
    EXPECT_EQ(at.place("list.inner"), "2 from \"list\"");
    EXPECT_EQ(at.place("list.inner.y"), "2 from \"list.inner\"");
    EXPECT_EQ(at.part("list.inner.y").m_uiBase, at.part("list.inner.y").m_uiParent);
}

TEST(LayoutPlaces, partsThatMayBeAbsentMoveWhatFollows)
{
    const CPlaces at("\"k\" = (BNF1) 0, \"v\" = (BNF4) 0, \"@v\" = \"if k = 1\", \"w\" = (BNF1) 0");
    EXPECT_EQ(at.place("v"), "1 from \"\"");
    EXPECT_EQ(at.place("w"), "varies");
    EXPECT_TRUE(at.part("v").m_bOptional);
    EXPECT_FALSE(at.part("w").m_bOptional);
}

TEST(LayoutPlaces, alternativesBeginTogether)
{
    const CPlaces at(
        "\"k\" = (BNF1) 0, \"v\" = { \"@\" = \"one of by k\", #1 \"a\" = (BNF4) 0, "
        "#2 \"b\" = { \"x\" = (BNF1) 0, \"y\" = (BNF3) 0 } }, \"w\" = (BNF1) 0");
    EXPECT_EQ(at.place("v.a"), "1 from \"\"");
    EXPECT_EQ(at.place("v.b.y"), "2 from \"\"");
    EXPECT_EQ(at.place("w"), "5 from \"\"") << "all alternatives have the same width";
    EXPECT_TRUE(at.part("v").m_bChoice);
    EXPECT_FALSE(at.part("v.b").m_bChoice);
}

TEST(LayoutPlaces, alignmentCountsFromTheRecord)
{
    const CPlaces at("\"a\" = (BNF1) 0, \"@a\" = \"align 4\", \"b\" = (BNF2) 0");
    EXPECT_EQ(at.place("b"), "4 from \"\"");
}

TEST(LayoutPlaces, leafsAreAsLongAsTheirExpressionsSay)
{
    const CPlaces at(
        "\"fixed\" = (ACF4) \"\", \"digits\" = (ACV2+2) \"\", \"inclusive\" = (BCV1+0) \"\", "
        "\"marked\" = (ACF0) \"\", \"@marked\" = \"ends \\\"||\\\"\", "
        "\"bounded\" = (ACF9) \"\", \"@bounded\" = \"ends \\\"|\\\"\", \"number\" = (ANF0) 0, "
        "\"@number\" = \"ends \\\"|\\\"\"");
    EXPECT_EQ(at.length("fixed"), "4..4");
    EXPECT_EQ(at.length("digits"), "2..101");
    EXPECT_EQ(at.length("inclusive"), "1..255");
    EXPECT_EQ(at.length("marked"), "2..");
    EXPECT_EQ(at.length("bounded"), "1..10");
    EXPECT_EQ(at.length("number"), "2..");
    EXPECT_EQ(at.length(""), "12..");
}

TEST(LayoutPlaces, numbersBoundWhatTheyMeasure)
{
    const CPlaces at(
        "\"n\" = (BNF1) 0, \"@n\" = \"count of list\", \"s\" = (ANF2) 0, \"@s\" = \"size of text - 9\", "
        "\"b\" = (BNF1) 0, \"@b\" = \"bits 4 high, 4 low\", \"@b.low\" = \"size of words / 4\", "
        "\"list\" = [ (BNF2) 0 ], \"text\" = (ACF0) \"\", \"words\" = (BCF0) \"\"");
    EXPECT_EQ(at.length("list"), "0..510");
    EXPECT_EQ(at.length("text"), "0..108");
    EXPECT_EQ(at.length("words"), "0..60");
    EXPECT_EQ(at.length(""), "4..682");
}

TEST(LayoutPlaces, framesBoundRecordsAndTheirParts)
{
    const CPlaces at("\"l\" = [ { \"a\" = (ACF4) \"\", \"b\" = (ACF0) \"\", \"@b\" = \"to end\" } ]", "; lines 94");
    EXPECT_EQ(at.length("l.b"), "0..90");
    const tLayoutPart record = at.layout().getPart(at.part("l.b").m_uiParent);
    EXPECT_EQ(record.m_ullLeast, 94u);
    EXPECT_EQ(record.m_ullMost, 94u);
    EXPECT_EQ(at.length("l"), "0..");
}

TEST(LayoutPlaces, marksBetweenPartsCount)
{
    const CPlaces at("\"a\" = (ACF3) \"\", \"b\" = (ACF5) \"\"", "; between \\\"::\\\"");
    EXPECT_EQ(at.length(""), "0..10");
}

TEST(LayoutPlaces, lengthsBeyondAllNumbersHaveNoBound)
{
    const CPlaces at("\"n\" = (ANF30) 0, \"@n\" = \"count of list\", \"list\" = [ (BNF2) 0 ]");
    EXPECT_EQ(at.length("list"), "0..");
}

TEST(LayoutPlaces, literalsShowTheirBytes)
{
    const CPlaces at("\"a\" = (BNF2fix) 258, \"b\" = (ACV2+2fix) \"xyz\", \"c\" = (ACF2) \"no\"");
    EXPECT_EQ(at.part("a").m_strvLiteral, "\x01\x02");
    EXPECT_EQ(at.part("b").m_strvLiteral, "03xyz");
    EXPECT_EQ(at.part("c").m_strvLiteral, "");
}

TEST(LayoutRules, haveSentences)
{
    CLayout layout;
    ASSERT_TRUE(layout.compile(R"({ "@" = "layout 1", "a" = (ANF9) 0, "@a" = "decimals 2; pad blank" })"));
    const std::vector<tLayoutRule> rules = layout.getRules(layout.findPart("a"));
    ASSERT_EQ(rules.size(), 2u);
    EXPECT_EQ(rules[0].m_strvRule, "decimals 2");
    EXPECT_EQ(rules[0].m_strvSentence, "decimals, after a point that is implied or written so");
    EXPECT_EQ(rules[1].m_strvRule, "pad blank");
    ASSERT_EQ(layout.getRules(0).size(), 1u);
    EXPECT_EQ(layout.getRules(0)[0].m_strvSentence, "this document is a layout, version 1");
    EXPECT_THROW(layout.getRules(2), CLogicError);
}

TEST(LayoutRules, ofKeywordsComeFirst)
{
    registerStandardKeywords();
    CLayout layout;
    ASSERT_TRUE(layout.compile(R"({ "@" = "layout 1", "a" = (BNF4le) 0, "@a" = "signed" })"));
    const std::vector<tLayoutRule> rules = layout.getRules(1);
    ASSERT_EQ(rules.size(), 2u);
    EXPECT_EQ(rules[0].m_strvRule, "le");
    EXPECT_EQ(rules[0].m_strvSentence, "the low byte comes first");
    EXPECT_EQ(rules[1].m_strvRule, "signed");
}

}  // namespace

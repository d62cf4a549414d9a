// What rules of structure become: frames, conditions, links, ends and heads.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "layout/plan/plan.h"
#include "layout/values/checksum.h"
#include "layout/values/code_pages.h"
#include "murv/layout.h"
#include "murv/murv.h"

namespace
{

using namespace murv::detail;

/// A layout with these members, and further rules of the root.
class CCompiled
{
public:
    explicit CCompiled(const std::string& members, const std::string& rules = "")
    {
        EXPECT_TRUE(m_tLayout.compile("{ \"@\" = \"layout 1" + rules + "\", " + members + " }")) << members;
        for (const murv::tLayoutMistake& mistake : m_tLayout.getMistakes())
            ADD_FAILURE() << members << ": " << mistake.m_strMessage;
    }
    const tPlan& plan() const
    {
        return *m_tLayout.getPlan();
    }
    unsigned int index(const std::string& path) const
    {
        return m_tLayout.findPart(path);
    }
    const tPart& part(const std::string& path) const
    {
        return plan().m_vParts.at(index(path));
    }

private:
    murv::CLayout m_tLayout;
};

TEST(LayoutStructure, framesAreSaidByTheRoot)
{
    const std::string members = "\"a\" = [ { \"x\" = (ACF4) \"\" } ]";
    EXPECT_EQ(CCompiled(members, "; lines").plan().m_tFrame.m_eKind, FR_lines);
    EXPECT_EQ(CCompiled(members, "; lines 4").plan().m_tFrame.m_uiLength, 4u);
    EXPECT_EQ(CCompiled(members, "; lines \\\"\\r\\\"").plan().m_tFrame.m_strMark, "\r");
    EXPECT_EQ(CCompiled(members, "; fixed 4").plan().m_tFrame.m_eKind, FR_fixed);
    const CCompiled prefixed(members, "; little; prefixed BNF4 + 4");
    EXPECT_EQ(prefixed.plan().m_tFrame.m_eKind, FR_prefixed);
    EXPECT_EQ(prefixed.plan().m_tFrame.m_tPrefix.m_uiLength, 4u);
    EXPECT_TRUE(prefixed.plan().m_tFrame.m_tPrefix.m_bLittle);
    EXPECT_EQ(prefixed.plan().m_tFrame.m_llPlus, 4);
    const CCompiled inPage(members, "; prefixed ANF4; cp037");
    EXPECT_EQ(inPage.plan().m_tFrame.m_tPrefix.m_pPage, findCodePage("cp037"));
}

TEST(LayoutStructure, conditionsLookAtValuesReadBefore)
{
    const CCompiled layout(
        "\"k\" = (ANF4) 0, \"@k\" = \"decimals 2\", \"f\" = (BNF1) 0, \"@f\" = \"bits 1 on, 7 off\", "
        "\"v\" = (BNF1) 0, \"@v\" = \"if k >= 1.5 | -2; if f.on != 0\"");
    const std::vector<tTest>& tests = layout.part("v").m_vIf;
    ASSERT_EQ(tests.size(), 2u);
    EXPECT_EQ(tests[0].m_eComparison, CM_notLess);
    EXPECT_EQ(tests[0].m_vConstants.at(0).m_ullMagnitude, 150u);
    EXPECT_EQ(tests[0].m_vConstants.at(0).m_strText, "1.5");
    EXPECT_EQ(tests[0].m_vConstants.at(1).m_ullMagnitude, 200u);
    EXPECT_TRUE(tests[0].m_vConstants.at(1).m_bNegative);
    EXPECT_EQ(tests[1].m_tValue.m_uiPart, layout.index("f"));
    EXPECT_EQ(tests[1].m_tValue.m_uiBits, 0u);
    EXPECT_EQ(tests[1].m_eComparison, CM_unequal);
}

TEST(LayoutStructure, namesAreLookedUpOutwards)
{
    const CCompiled layout(
        "\"k\" = (BNF1) 0, \"a\" = { \"k\" = (BNF1) 0, \"b\" = { \"x\" = (BNF1) 0, "
        "\"@x\" = \"if k = 1\" } }, \"c\" = (BNF1) 0, \"@c\" = \"if k = 1; if a.b.x = 2\"");
    EXPECT_EQ(layout.part("a.b.x").m_vIf.at(0).m_tValue.m_uiPart, layout.index("a.k"));
    EXPECT_EQ(layout.part("c").m_vIf.at(0).m_tValue.m_uiPart, layout.index("k"));
    EXPECT_EQ(layout.part("c").m_vIf.at(1).m_tValue.m_uiPart, layout.index("a.b.x"));
}

TEST(LayoutStructure, aValueChoosesByIdAndName)
{
    const CCompiled layout(
        "\"k\" = (BNF1) 0, \"v\" = { \"@\" = \"one of by k else rest\", #7 \"a\" = (BNF1) 0, "
        "\"0\" = (BNF1) 0, \"rest\" = (BNF2) 0 }");
    EXPECT_EQ(layout.part("v").m_eChoice, CH_value);
    EXPECT_EQ(layout.part("v").m_tChoice.m_uiPart, layout.index("k"));
    EXPECT_EQ(layout.part("v").m_uiElse, 2u);
}

TEST(LayoutStructure, theFirstSizeRulesAndLaterOnesAgree)
{
    const CCompiled layout(
        "\"n\" = (BNF1) 0, \"@n\" = \"size of a..b / 4 - 1\", \"a\" = (BCF4) \"\", "
        "\"b\" = (ACF0) \"\", \"@b\" = \"to end\", \"m\" = (BNF1) 0, \"@m\" = \"size of a..b + 2\"");
    ASSERT_EQ(layout.plan().m_vLinks.size(), 2u);
    ASSERT_EQ(layout.plan().m_vSpans.size(), 1u);
    const tLink& first = layout.plan().m_vLinks[0];
    const tLink& second = layout.plan().m_vLinks[1];
    EXPECT_EQ(first.m_ullDivisor, 4u);
    EXPECT_EQ(first.m_llPlus, -1);
    EXPECT_TRUE(first.m_bRules && first.m_bNumberFirst);
    EXPECT_FALSE(second.m_bRules || second.m_bNumberFirst);
    EXPECT_EQ(second.m_llPlus, 2);
    EXPECT_EQ(layout.plan().m_vSpans[0].m_uiSize, 0u);
    EXPECT_FALSE(layout.plan().m_vSpans[0].m_bSizeInside);
    EXPECT_EQ(layout.part("b").m_uiTail, 0u);
    EXPECT_TRUE(layout.part("n").m_bComputed);
}

TEST(LayoutStructure, aSizedLeafVariesUpToItsLength)
{
    const CCompiled layout("\"n\" = (BNF1) 0, \"@n\" = \"size of b\", \"b\" = (ACF8) \"\", \"c\" = (ACF3) \"\"");
    EXPECT_EQ(layout.part("b").m_eEnd, LE_enclosing);
    EXPECT_TRUE(layout.part("b").m_tItem.m_bVaries);
    EXPECT_EQ(layout.part("b").m_tItem.m_uiLength, 8u);
    EXPECT_EQ(layout.part("b").m_tItem.m_ePadding, PAD_none);
}

TEST(LayoutStructure, toEndLeavesTheFixedPartsAfterIt)
{
    const CCompiled layout("\"a\" = { \"x\" = (ACF0) \"\", \"@x\" = \"to end\", \"y\" = (BNF2) 0 }, \"b\" = (BNF4) 0");
    EXPECT_EQ(layout.part("a.x").m_eEnd, LE_enclosing);
    EXPECT_EQ(layout.part("a.x").m_uiTail, 6u);
}

TEST(LayoutStructure, countsBeforeRuleAndThoseAfterAreTotals)
{
    const CCompiled layout(
        "\"f\" = (BNF1) 0, \"@f\" = \"bits 4 n, 4 m\", \"@f.n\" = \"count of a\", \"a\" = [ (BNF2) 0 ], "
        "\"c\" = (BNF1) 0, \"@c\" = \"count of a + 1\", \"s\" = (BNF4) 0, \"@s\" = \"sum of a\"");
    const std::vector<tLink>& links = layout.plan().m_vLinks;
    ASSERT_EQ(links.size(), 3u);
    EXPECT_EQ(links[0].m_eKind, LK_count);
    EXPECT_EQ(links[0].m_tNumber.m_uiBits, 0u);
    EXPECT_EQ(layout.part("a").m_uiCount, 0u);
    EXPECT_EQ(layout.part("a").m_eArrayEnd, AE_count);
    EXPECT_EQ(links[1].m_eKind, LK_elements);
    EXPECT_EQ(links[1].m_uiBase, 0u);
    EXPECT_EQ(links[1].m_llPlus, 1);
    EXPECT_EQ(links[2].m_eKind, LK_sum);
    EXPECT_EQ(links[2].m_uiTarget, layout.index("a") + 1);
}

TEST(LayoutStructure, arraysEndByTheFirstRuleThatSaysSo)
{
    const std::string leaf = "\"a\" = [ { \"x\" = (BNF1) 0 } ], \"@a\" = ";
    EXPECT_EQ(CCompiled(leaf + "\"until x = 0\", \"b\" = (BNF1) 0").part("a").m_eArrayEnd, AE_until);
    EXPECT_EQ(CCompiled(leaf + R"("ends \"\\x00\"", "b" = (BNF1) 0)").part("a").m_eArrayEnd, AE_mark);
    EXPECT_EQ(CCompiled(leaf + "\"to end\", \"b\" = (BNF3) 0").part("a").m_uiTail, 3u);
    EXPECT_EQ(CCompiled("\"a\" = [ { \"x\" = (BNF1) 0 } ]").part("a").m_eArrayEnd, AE_enclosing);
    EXPECT_EQ(CCompiled("\"n\" = (BNF1) 0, \"@n\" = \"size of a\", \"a\" = [ (BNF1) 0 ], \"b\" = (BNF1) 0")
                  .part("a")
                  .m_eArrayEnd,
              AE_enclosing);
    const CCompiled heads("\"a\" = [ { \"y\" = (BNF1) 0, \"x\" = (BNF1fix) 7 } ], \"b\" = (BNF1) 0");
    EXPECT_EQ(heads.part("a").m_eArrayEnd, AE_heads);
    ASSERT_EQ(heads.part("a").m_vHeads.size(), 1u);
    EXPECT_EQ(heads.part("a").m_vHeads[0].m_vBytes.at(0).m_uiOffset, 1u);
    EXPECT_EQ(heads.part("a").m_vHeads[0].m_vBytes.at(0).m_strBytes, "\x07");
}

TEST(LayoutStructure, anArrayAtTheEndOfMarkedPartsSharesTheirMark)
{
    const CCompiled layout("\"t\" = (ACF3fix) \"MSH\", \"n\" = (ANF5) 0, \"y\" = [ (ACF0) \"\" ]",
                           "; lines; between \\\"|\\\"");
    EXPECT_EQ(layout.part("y").m_strBetween, "|");
    EXPECT_TRUE(layout.part("n").m_tItem.m_bVaries);
    EXPECT_EQ(layout.part("n").m_eEnd, LE_enclosing);
    EXPECT_EQ(layout.plan().m_vParts.back().m_eEnd, LE_enclosing);
}

TEST(LayoutStructure, checksKnowTheirKindAndParts)
{
    const CCompiled layout(
        "\"a\" = (BCF4) \"\", \"b\" = (BCF4) \"\", \"n\" = (BNF2) 0, \"@n\" = \"crc16 modbus of a..b\"");
    ASSERT_EQ(layout.plan().m_vLinks.size(), 1u);
    EXPECT_EQ(layout.plan().m_vLinks[0].m_ucChecksum, CK_crc16Modbus);
    EXPECT_EQ(layout.plan().m_vSpans.at(0).m_uiFirst, layout.index("a"));
    EXPECT_EQ(layout.plan().m_vSpans.at(0).m_uiLast, layout.index("b"));
    EXPECT_FALSE(layout.plan().m_vLinks[0].m_bNumberFirst);
}

TEST(LayoutStructure, whatComesFirstGivesAPartItsHeads)
{
    const CCompiled layout(
        "\"a\" = { \"@\" = \"optional\", \"l\" = [ { \"t\" = (ACF1fix) \"1\" } ], \"o\" = { \"t\" = "
        "(ACF1fix) \"2\" }, \"@o\" = \"optional\", \"c\" = { \"t\" = (ACF1fix) \"3\" } }");
    ASSERT_EQ(layout.part("a").m_vHeads.size(), 3u);
    std::string all;
    for (const tHead& head : layout.part("a").m_vHeads)
        all += head.m_vBytes.at(0).m_strBytes;
    std::sort(all.begin(), all.end());
    EXPECT_EQ(all, "123");
}

TEST(LayoutStructure, literalsAreTheSecondValueInBytes)
{
    EXPECT_EQ(CCompiled("\"a\" = (BNF2fix) 258, \"@a\" = \"little\"").part("a").m_strLiteral, "\x02\x01");
    EXPECT_EQ(CCompiled("\"a\" = (ACV2+2fix) \"abc\"").part("a").m_strLiteral, "03abc");
    EXPECT_EQ(CCompiled("\"a\" = (ACF2fix) \"A\", \"@a\" = \"cp037\"").part("a").m_strLiteral, "\xC1\x40");
}

TEST(LayoutStructure, copiesTakePartsAndRulesButNotPresence)
{
    const CCompiled layout(R"("a" = { "@" = "little; optional", "t" = (ACF1fix) "1", "x" = (BNF2) 0, "@x" = "signed" })"
                           R"(, "z" = (ACF1fix) "9", "b" = { "@" = "like a" }, "c" = (ACF2) "", "@c" = "right")"
                           R"(, "d" = { "@" = "like c; if b.x = 3" })");
    EXPECT_FALSE(layout.part("b").m_bOptional);
    EXPECT_TRUE(layout.part("b.x").m_tItem.m_bSigned && layout.part("b.x").m_tItem.m_bLittle);
    EXPECT_EQ(layout.part("d").m_eKind, PK_leaf);
    EXPECT_EQ(layout.part("d").m_tItem.m_ePadding, PAD_blanksFront);
    EXPECT_EQ(layout.part("d").m_vIf.size(), 1u);
}

TEST(LayoutStructure, commentsAndRulesAreKeptForPeople)
{
    murv::CLayout layout;
    ASSERT_TRUE(
        layout.compile("// What it is.\n{ \"@\" = \"layout 1\",\n  // First.\n  // Second.\n  \"a\" = (ANF2) 0, "
                       "\"@a\" = \"valid 1..2;  mask\" }"));
    EXPECT_EQ(layout.getPlan()->m_strComment, "What it is.");
    const murv::tLayoutPart part = layout.getPart(1);
    EXPECT_EQ(part.m_strvComment, "First.\nSecond.");
    EXPECT_EQ(part.m_strvExpression, "ANF2");
    EXPECT_EQ(part.m_strvRules, "valid 1..2; mask");
}

TEST(LayoutStructure, namesMayBeQuotedNumberedOrBeginWithAt)
{
    const CCompiled layout(
        "\"a.b\" = (BNF1) 0, \"@\\\"a.b\\\"\" = \"count of x\", \"x\" = [ (BNF1) 0 ], #5 = (BNF1) 0, "
        "\"@@y\" = (BNF1) 0, \"@\\\"@y\\\"\" = \"if \\\"a.b\\\" = 1; if #5 = 2\", \"@#5\" = \"signed\"");
    const tPart& at = layout.plan().m_vParts.back();
    EXPECT_EQ(at.m_strName, "@y");
    ASSERT_EQ(at.m_vIf.size(), 2u);
    EXPECT_EQ(at.m_vIf[1].m_tValue.m_uiPart, at.m_vIf[0].m_tValue.m_uiPart + 3);
    EXPECT_TRUE(layout.plan().m_vParts[at.m_vIf[1].m_tValue.m_uiPart].m_tItem.m_bSigned);
}

}  // namespace

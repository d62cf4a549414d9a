// Value words and keywords say the same about items.
#include <gtest/gtest.h>

#include <string>

#include "layout/plan/plan.h"
#include "layout/values/code_pages.h"
#include "murv/layout.h"
#include "murv/murv.h"

namespace
{

using namespace murv::detail;

/// The item of the leaf "a" in a layout with these members.
tItem itemOf(const std::string& members, const std::string& rules = "layout 1")
{
    murv::registerStandardKeywords();
    murv::CLayout layout;
    const bool compiled = layout.compile("{ \"@\" = \"" + rules + "\", " + members + " }");
    for (const murv::tLayoutMistake& mistake : layout.getMistakes())
        ADD_FAILURE() << members << ": " << mistake.m_strMessage;
    return compiled ? layout.getPlan()->m_vParts.at(layout.findPart("a")).m_tItem : tItem();
}

TEST(LayoutWords, expressionsAloneGiveFormWidthAndPadding)
{
    EXPECT_EQ(itemOf("\"a\" = (ACF4) \"\"").m_eForm, IF_text);
    EXPECT_EQ(itemOf("\"a\" = (ACF4) \"\"").m_ePadding, PAD_blanksAfter);
    EXPECT_EQ(itemOf("\"a\" = (ANF4) 0").m_eForm, IF_digits);
    EXPECT_EQ(itemOf("\"a\" = (ANF4) 0").m_ePadding, PAD_zerosFront);
    EXPECT_EQ(itemOf("\"a\" = (BCF4) \"\"").m_eForm, IF_bytes);
    EXPECT_EQ(itemOf("\"a\" = (BCF4) \"\"").m_ePadding, PAD_none);
    EXPECT_EQ(itemOf("\"a\" = (BNF4) 0").m_eForm, IF_binary);
    const tItem prefixed = itemOf("\"a\" = (BCV2+2) \"\"");
    EXPECT_TRUE(prefixed.m_bVaries && prefixed.m_bBinaryPrefix);
    EXPECT_EQ(prefixed.m_ucPrefix, 2);
    EXPECT_EQ(prefixed.m_cCalibration, 2);
}

TEST(LayoutWords, formsAreChosenByTheirWord)
{
    EXPECT_EQ(itemOf("\"a\" = (BNF8) 0, \"@a\" = \"float\"").m_eForm, IF_float);
    EXPECT_EQ(itemOf("\"a\" = (BNF5) 0, \"@a\" = \"packed; signed; decimals 2\"").m_eForm, IF_packed);
    EXPECT_EQ(itemOf("\"a\" = (BNF5) 0, \"@a\" = \"bcd\"").m_eForm, IF_bcd);
    EXPECT_EQ(itemOf("\"a\" = (ANF5) 0, \"@a\" = \"zoned; signed\"").m_eForm, IF_zoned);
    EXPECT_EQ(itemOf("\"a\" = (ANF5) 0, \"@a\" = \"trailing sign\"").m_eForm, IF_trailing);
    EXPECT_EQ(itemOf("\"a\" = (ANF5) 0, \"@a\" = \"hex lower\"").m_eForm, IF_hex);
    EXPECT_TRUE(itemOf("\"a\" = (ANF5) 0, \"@a\" = \"hex lower\"").m_bLower);
    EXPECT_EQ(itemOf("\"a\" = (ACF6) \"\", \"@a\" = \"hex\"").m_eForm, IF_hexText);
    EXPECT_EQ(itemOf(R"("a" = (ANF8) 0, "@a" = "octal \"\\x00\"")").m_strTail, std::string(1, '\0'));
    EXPECT_EQ(itemOf(R"("a" = (ANF8) 0, "@a" = "octal \"\x00\"")").m_strTail, std::string(1, '\0'));
}

TEST(LayoutWords, paddingAndNullAreSaidByWords)
{
    EXPECT_EQ(itemOf("\"a\" = (ANF4) 0, \"@a\" = \"pad blank\"").m_ePadding, PAD_blanksFront);
    EXPECT_EQ(itemOf("\"a\" = (ANF4) 0, \"@a\" = \"left\"").m_ePadding, PAD_blanksAfter);
    EXPECT_EQ(itemOf("\"a\" = (ACF4) \"\", \"@a\" = \"right\"").m_ePadding, PAD_blanksFront);
    EXPECT_EQ(itemOf("\"a\" = (ACF4) \"\", \"@a\" = \"keep\"").m_ePadding, PAD_none);
    EXPECT_EQ(itemOf("\"a\" = (BCF4) \"\", \"@a\" = \"pad zero\"").m_ePadding, PAD_zeroBytes);
    EXPECT_EQ(itemOf("\"a\" = (BCF4) \"\", \"@a\" = \"pad blank\"").m_ePadding, PAD_blanksAfter);
    EXPECT_TRUE(itemOf("\"a\" = (ANF4) 0, \"@a\" = \"blank is null\"").m_bBlankIsNull);
    EXPECT_TRUE(itemOf("\"a\" = (BNF4YYYYMMDD) 0, \"@a\" = \"zero is null\"").m_bZeroIsNull);
    EXPECT_TRUE(itemOf("\"a\" = (ANF6YYMMDD) 0, \"@a\" = \"keep\"").m_bKeep);
}

TEST(LayoutWords, bitsAreCountedFromTheHighest)
{
    const tItem item = itemOf("\"a\" = (BNF2) 0, \"@a\" = \"bits 1 top, 11 middle part, 4 \\\"low, est\\\"\"");
    ASSERT_EQ(item.m_vBits.size(), 3u);
    EXPECT_EQ(item.m_vBits[0].m_uiShift, 15u);
    EXPECT_EQ(item.m_vBits[1].m_uiShift, 4u);
    EXPECT_EQ(item.m_vBits[1].m_strName, "middle part");
    EXPECT_EQ(item.m_vBits[2].m_strName, "low, est");
}

TEST(LayoutWords, orderAndPageAreInherited)
{
    EXPECT_TRUE(itemOf("\"a\" = (BNF2) 0", "layout 1; little").m_bLittle);
    EXPECT_FALSE(itemOf("\"a\" = (BNF2) 0, \"@a\" = \"big\"", "layout 1; little").m_bLittle);
    EXPECT_TRUE(itemOf("\"a\" = (BCV2) \"\"", "layout 1; little").m_bLittle);
    EXPECT_EQ(itemOf("\"a\" = (ANF2) 0", "layout 1; cp037").m_pPage, findCodePage("cp037"));
    EXPECT_EQ(itemOf("\"a\" = (ACF2) \"\", \"@a\" = \"cp500\"", "layout 1; cp037").m_pPage, findCodePage("cp500"));
    EXPECT_EQ(itemOf("\"a\" = (BCF2) \"\"", "layout 1; cp037").m_pPage, nullptr);
    EXPECT_EQ(itemOf("\"a\" = (BCF2) \"\", \"@a\" = \"latin1\"").m_eForm, IF_text);
}

TEST(LayoutWords, rawLeavesThePageToThePrefix)
{
    const tItem item = itemOf("\"a\" = (ACV2) \"\", \"@a\" = \"raw\"", "layout 1; cp037");
    EXPECT_EQ(item.m_pPage, nullptr);
    EXPECT_EQ(item.m_pPrefixPage, findCodePage("cp037"));
}

TEST(LayoutWords, validValuesAreRanges)
{
    const tItem item = itemOf("\"a\" = (ANF2) 1, \"@a\" = \"valid 1..12 | 99\"");
    ASSERT_EQ(item.m_vValid.size(), 2u);
    EXPECT_EQ(item.m_vValid[0].m_strLow, "1");
    EXPECT_EQ(item.m_vValid[0].m_strHigh, "12");
    EXPECT_EQ(item.m_vValid[1].m_strHigh, "99");
    EXPECT_EQ(itemOf("\"a\" = (ANF8) 1, \"@a\" = \"valid date DDMMYYYY\"").m_strValidDate, "DDMMYYYY");
    EXPECT_EQ(itemOf("\"a\" = (ACF2valid) \"AB\"").m_vValid.at(0).m_strLow, "AB");
}

TEST(LayoutWords, masksShowTheLastBytes)
{
    EXPECT_TRUE(itemOf("\"a\" = (ACF9) \"\", \"@a\" = \"mask\"").m_bMask);
    EXPECT_EQ(itemOf("\"a\" = (ACF9) \"\", \"@a\" = \"mask 4\"").m_ucShown, 4);
}

TEST(LayoutWords, keywordsSayWhatWordsSay)
{
    EXPECT_EQ(itemOf("\"a\" = (ANF10dec_2) 0").m_ucDecimals, 2);
    EXPECT_TRUE(itemOf("\"a\" = (BNF4le) 0").m_bLittle);
    EXPECT_TRUE(itemOf("\"a\" = (BNF2int) 0").m_bSigned);
    EXPECT_EQ(itemOf("\"a\" = (BNF5packed_2) 0").m_eForm, IF_packed);
    EXPECT_EQ(itemOf("\"a\" = (BNF5packed_2) 0").m_ucDecimals, 2);
    EXPECT_EQ(itemOf("\"a\" = (BNF5packed) 0").m_bDecimals, false);
    EXPECT_EQ(itemOf("\"a\" = (ANF9zoned_2) 0").m_eForm, IF_zoned);
    EXPECT_EQ(itemOf("\"a\" = (ANF8oct) 0").m_eForm, IF_octal);
    EXPECT_EQ(itemOf("\"a\" = (ANF8hex) 0").m_eForm, IF_hex);
    EXPECT_EQ(itemOf("\"a\" = (ACF20right) \"\"").m_ePadding, PAD_blanksFront);
    EXPECT_EQ(itemOf("\"a\" = (ANF10dec_2) 0, \"@a\" = \"decimals 2\"").m_ucDecimals, 2);
}

TEST(LayoutWords, keywordsAreWrittenAsTheyWereRead)
{
    murv::registerStandardKeywords();
    for (const char* const text : {"(ANF10dec_2)", "(BNF4le)", "(BNF5packed_2)", "(BNF5packed)", "(ACF20mask_4)"})
    {
        murv::CFields tree;
        murv::CLoaders loader;
        ASSERT_TRUE(loader.loading("{ \"a\" = " + std::string(text) + " 0 }", tree)) << text;
        EXPECT_NE(tree.toMURV(murv::ER_SER_PKT).find(text), std::string::npos) << tree.toMURV(murv::ER_SER_PKT);
    }
}

TEST(LayoutWords, keywordsRefuseOptionsThatTheyDoNotHave)
{
    murv::registerStandardKeywords();
    for (const char* const text : {"(BNF4le_2)", "(ANF10dec)", "(ANF10dec_)", "(ANF10decimals)"})
    {
        murv::CFields tree;
        murv::CLoaders loader;
        EXPECT_FALSE(loader.loading("{ \"a\" = " + std::string(text) + " 0 }", tree)) << text;
    }
}

TEST(LayoutWords, wordsAboutAnArrayOfLeavesAreAboutItsElements)
{
    murv::CLayout layout;
    ASSERT_TRUE(layout.compile("{ \"@\" = \"layout 1\", \"a\" = [ (BNF2) 0 ], \"@a\" = \"signed; little; to end\" }"));
    const murv::detail::tPart& element = layout.getPlan()->m_vParts.at(2);
    EXPECT_TRUE(element.m_tItem.m_bSigned && element.m_tItem.m_bLittle);
    EXPECT_TRUE(layout.getPlan()->m_vParts.at(1).m_bToEnd);
}

}  // namespace

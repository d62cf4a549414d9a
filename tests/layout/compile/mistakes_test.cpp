// Every mistake in a layout is reported at its place, with its path and one sentence.
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "murv/layout.h"
#include "murv/murv.h"

namespace
{

/// A layout with a mistake. The mark "^" stands before the place that is reported first; most layouts are given without
/// their braces and first rule.
struct tExpected
{
    const char* m_pRule;
    std::string_view m_strvLayout;
    const char* m_pPath;
    const char* m_pMessage;
};

constexpr tExpected s_ctRules[] = {
    {"unknownRulesAreNamedWithTheNearest", R"~("n" = (BNF2) 0, "@n" = ^"sise of b", "b" = (BCF4) "")~", "n",
     R"~(There is no rule "sise of b"; did you mean "size of"?)~"},
    {"unknownWordsToo", R"~({ "@" = ^"layout 1; litle", "n" = (BNF2) 0 })~", "",
     R"~(There is no rule "litle"; did you mean "little"?)~"},
    {"aRuleNeedsItsPart", R"~("amount" = (BNF2) 0, "@amuont" = ^"little")~", "",
     R"~(There is no part "amuont" for this rule; did you mean "amount"?)~"},
    {"aRuleIsAText", R"~("n" = (BNF1) 0, "@n" = ^5)~", "n", R"~(A rule is a text without a packet expression)~"},
    {"aRuleHasNoExpression", R"~("n" = (BNF1) 0, "@n" = (ACF1) ^"big")~", "n",
     R"~(A rule is a text without a packet expression)~"},
    {"quotesAreClosed", R"~("n" = (ACF0) "", "@n" = ^"ends \"x")~", "n",
     R"~(A rule is empty, or a quote in it is not closed)~"},
    {"noRuleIsEmpty", R"~("n" = (ACF1) "", "@n" = ^"keep;")~", "n",
     R"~(A rule is empty, or a quote in it is not closed)~"},
    {"rulesHaveTheirPlaces", R"~("n" = (ACF1) "", "@n" = ^"float")~", "n", R"~("float" is a rule for binary numbers)~"},
    {"argumentsAreComplete", R"~("n" = (BNF1) 0, "@n" = ^"size of")~", "n",
     R"~(The rule is malformed; write it as: size of PART [/ N] [+ N | - N])~"},
    {"theVariantOfAChecksumIsKnown",
     R"~("n" = (BNF2) 0, "@n" = ^"crc16 modbuss of a..b", "a" = (BCF4) "", "b" = (BCF4) "")~", "n",
     R"~(The rule is malformed; write it as: crc16 [VARIANT] of PART)~"},
    {"aRuleMemberStandsOnce", R"~("t" = (ACF1) "", "@t" = "keep", "@t" = ^"right")~", "t",
     R"~(The rule "@t" stands twice)~"},
    {"aRuleStandsOnce", R"~("t" = (ACF1) "", "@t" = ^"keep; keep")~", "t", R"~("keep" stands twice)~"},
    {"rulesDoNotContradictKeywords", R"~("t" = (BNF2le) 0, "@t" = ^"big")~", "t", R"~("big" contradicts "le")~"},
    {"argumentsDoNotContradictKeywords", R"~("t" = (ANF4dec_2) 0, "@t" = ^"decimals 3")~", "t",
     R"~("decimals 3" contradicts "dec_2")~"},
    {"wordsOfElementsDoNotContradictKeywords", R"~("a" = [ (BNF1le) 0 ], "@a" = ^"until . = 0; big", "b" = (BNF1) 0)~",
     "a", R"~("big" contradicts "le")~"},
    {"twoKindsOfNullContradict", R"~("n" = (ANF4) 0, "@n" = ^"blank is null; zero is null")~", "n",
     R"~("zero is null" contradicts "blank is null")~"},
    {"framesContradict", R"~({ "@" = ^"layout 1; lines; fixed 4", "a" = [ { "x" = (ACF4) "" } ] })~", "",
     R"~("fixed 4" contradicts "lines")~"},
    {"theVersionIsOne", R"~({ "@" = ^"layout 2", "n" = (BNF1) 0 })~", "", R"~(There is no layout version 2, only 1)~"},
    {"theVersionIsSaid", R"~(^{ "n" = (BNF1) 0 })~", "", R"~(The first rule of a layout's root is "layout 1")~"},
    {"aRecordLengthIsANumber", R"~({ "@" = ^"layout 1; prefixed BCF2", "n" = (ANF4) 0 })~", "",
     R"~(The length of a record is a number of fixed width, such as BNF2 or ANF4)~"},
};

constexpr tExpected s_ctPaths[] = {
    {"aPathLeadsSomewhere", R"~("n" = (BNF2) 0, "@n" = ^"size of bodi", "body" = (BCF0) "")~", "n",
     R"~(There is no part "bodi" here or around; did you mean "body"?)~"},
    {"aValueIsReadBefore", R"~("a" = (BNF2) 0, "@a" = ^"if b = 1", "b" = (BNF1) 0)~", "a", R"~("b" is read later)~"},
    {"noPathGoesThroughALeaf", R"~("a" = (BNF1) 0, "b" = (BNF1) 0, "@b" = ^"if a.x = 1")~", "b",
     R"~(The path goes through the leaf "a")~"},
    {"noNumberIsAboutItself", R"~("a" = (BNF1) 0, "@a" = ^"size of a")~", "a", R"~(The rule is about its own number)~"},
    {"noRowOfPartsIsTheNumberAlone", R"~("a" = (BNF1) 0, "@a" = ^"size of a..a")~", "a",
     R"~(The rule is about its own number)~"},
    {"bitsHaveNames", R"~("a" = (BNF1) 0, "@a" = "bits 3 x, 5 y", "@a.z" = ^"count of b", "b" = [ (BNF2) 0 ])~", "a",
     R"~("a" has no bits "z")~"},
    {"bitsAreNamedOneByOne", R"~("a" = (BNF1) 0, "@a" = "bits 3 x, 5 y", "b" = (BNF1) 0, "@b" = ^"if a = 1")~", "b",
     R"~("a" consists of bits; name one of them)~"},
    {"onlyTotalsGoIntoArrays",
     R"~("n" = (BNF1) 0, "@n" = ^"size of a.x", "a" = [ { "x" = (BCF2) "" } ], "@a" = "to end")~", "n",
     R"~(Only totals go into arrays, which have many elements)~"},
    {"anotherAlternativeIsNeverThere",
     R"~("k" = (BNF1) 0, "v" = { "@" = "one of by k", #1 "a" = (BNF1) 0, #2 "b" = { "x" = (BNF1) 0, )~"
     R"~("@x" = ^"if a = 1" } })~",
     "v.b.x", R"~("a" is in another alternative)~"},
    {"numbersAreComparedWithNumbers", R"~("k" = (BNF1) 0, "v" = (BNF1) 0, "@v" = ^"if k = A")~", "v",
     R"~("A" is no value of the number "k")~"},
    {"likeNeedsAPart", R"~("b" = { "@" = ^"like aa" })~", "b", R"~(There is no part "aa" here or around)~"},
    {"likeGoesInNoCircle", R"~("a" = { "x" = (BNF1) 0, "b" = { "@" = ^"like a" } })~", "a.b",
     R"~("like" goes in a circle)~"},
    {"aCopyHasNoMembers", R"~("a" = { "x" = (BNF1) 0 }, "b" = { "@" = ^"like a", "y" = (BNF1) 0 })~", "b",
     R"~(A field set with "like" has no other members)~"},
};

constexpr tExpected s_ctChoices[] = {
    {"aValueMustChooseEachAlternative",
     R"~("k" = (BNF1) 0, "v" = { "@" = "one of by k", #1 "a" = (BNF1) 0, "b" = (BNF1) ^0, )~"
     R"~(#300 "c" = (BNF1) 0 })~",
     "v.b", R"~("b" is never chosen: no value of "k" has its ID or name)~"},
    {"anAlternativeHasNoCondition",
     R"~("k" = (BNF1) 0, "v" = { "@" = "one of by k", #1 "a" = (BNF1) 0, "@a" = ^"if k = 1", #2 "b" = (BNF2) 0 })~",
     "v.a", R"~(One of several parts is there by its choice, so it has no condition; put one around the choice)~"},
    {"anEarlierHeadHidesNoLaterOne",
     R"~({ "@" = "layout 1; one of", "a" = { "t" = (ACF1fix) "1" }, "b" = ^{ "t" = (ACF2fix) "12" } })~", "b",
     R"~("b" is never chosen: "a" comes first and takes whatever begins like it)~"},
    {"anArraySwallowsNothing", R"~("a" = ^[ { "x" = (BNF1) 0 } ], "b" = (BNF1) 0)~", "a",
     R"~(Nothing tells where "a" ends: "b" after it could be an element)~"},
    {"anArrayWithAHeadSwallowsNothing", R"~("a" = ^[ { "t" = (ACF1fix) "1" } ], "b" = { "t" = (ACF2fix) "12" })~", "a",
     R"~(Nothing tells where "a" ends: "b" after it could be an element)~"},
    {"anOptionalPartIsToldFromWhatFollows", R"~("a" = (ACF1) ^"", "@a" = "optional", "b" = (ACF1) "")~", "a",
     R"~(Nothing tells whether "a" is there: "b" after it could be taken for it)~"},
    {"noElementBeginsWithTheEndMark", R"~("a" = ^[ { "t" = (ACF2fix) "ab" } ], "@a" = "ends \"a\"")~", "a",
     R"~(An element begins with the mark that ends the array)~"},
    {"elementsTakeBytes", R"~("a" = ^[ { "t" = (ACF0) "", "@t" = "to end" } ])~", "a",
     R"~(An element of "a" may take no bytes, so there could be any number)~"},
    {"countedElementsTakeBytes",
     R"~("n" = (BNF1) 0, "@n" = "count of a", "a" = ^[ { "t" = (ACF0) "", "@t" = "before \",\"" } ])~", "a",
     R"~(An element of "a" may take no bytes, so there could be any number)~"},
};

constexpr tExpected s_ctNumbers[] = {
    {"sizesDoNotOverlapInPart",
     R"~("n" = (BNF1) 0, "@n" = "size of a..b", "m" = (BNF1) 0, "@m" = ^"size of b..c", "a" = (BNF1) 0, )~"
     R"~("b" = (BNF1) 0, "c" = (BNF1) 0)~",
     "m", R"~(The sizes overlap in part: that of "n" ends inside)~"},
    {"noSizeMeasuresItsOwnWidth", R"~("n" = (ANV1) 0, "@n" = ^"size of .")~", "n",
     R"~(The numbers are computed in a circle: this one needs "n")~"},
    {"sizesDoNotNeedEachOther",
     R"~("a" = { "n" = (ANV1) 0, "@n" = "size of b", "x" = (BNF1) 0 }, "b" = { "m" = (ANV1) 0, )~"
     R"~("@m" = ^"size of a", "y" = (BNF1) 0 })~",
     "b.m", R"~(The numbers are computed in a circle: this one needs "n")~"},
    {"checksDoNotNeedEachOther", R"~("n" = (BNF4) 0, "@n" = "crc32 of .", "m" = (BNF4) 0, "@m" = ^"crc32 of .")~", "m",
     R"~(The numbers are computed in a circle: this one needs "n")~"},
    {"nothingIsAlignedInsideAVaryingNumber",
     R"~("n" = (ANV1) 0, "@n" = ^"size of b", "b" = { "x" = (BNF1) 0, "@x" = "align 4", "y" = (BNF1) 0 })~", "n",
     R"~("align" stands inside of what a number of varying width measures)~"},
    {"aCheckStaysInItsRecord", R"~("a" = { "n" = (BNF1) 0 }, "b" = { "n" = (BNF4) 0, "@n" = ^"crc32 of a" })~", "b.n",
     R"~(A check stays within one record)~"},
    {"aCheckHasRoom", R"~("n" = (BNF2) 0, "@n" = ^"crc32 of b", "b" = (BCF4) "")~", "n",
     R"~(The number is too narrow for the check)~"},
    {"aLiteralIsNotComputed", R"~("n" = (BNF1fix) 0, "@n" = ^"size of b", "b" = (BCF0) "")~", "n",
     R"~(A literal is not computed)~"},
    {"textsHaveNoSum", R"~("n" = (BNF1) 0, "@n" = ^"sum of b", "b" = [ { "c" = (BCF2) "" } ], "@b" = "to end")~", "n",
     R"~(the part is no number that could be added)~"},
    {"bitsComeBeforeTheirParts",
     R"~("d" = { #1 "a" = (BNF1) 0, #2 "b" = (BNF1) 0 }, "m" = (BCF1) "", "@m" = ^"bits of d")~", "m",
     R"~("a" is read before its bit)~"},
};

constexpr tExpected s_ctLeaves[] = {
    {"aPrefixHoldsItsLiteral", R"~("t" = (ACV1fix) ^"twelve bytes")~", "t",
     R"~(The length prefix is too narrow for the literal)~"},
    {"aLiteralHoldsNoMarkOfTheSetAround",
     R"~("s" = { "@" = "between \"|\"", "x" = (ACF2fix) ^"a|", "y" = (ACF0) "" })~", "s.x",
     R"~(The literal contains a mark at which reading would end it)~"},
    {"aLiteralHoldsNoLineEnd",
     R"~({ "@" = "layout 1; lines", "l" = [ { "x" = (ACF2fix) ^"a\n", "y" = (ACF1) "" } ] })~", "l.x",
     R"~(The literal contains a mark at which reading would end it)~"},
    {"aLiteralFits", R"~((ACF2fix) ^"abc")~", "",
     R"~(The literal does not fit its item: The value does not fit the item)~"},
    {"aLiteralNumberFits", R"~("t" = (ANF2fix) ^100)~", "t",
     R"~(The literal does not fit its item: The value does not fit the item)~"},
    {"aLiteralIsNotHuge", R"~((ACF4000000000fix) ^"")~", "", R"~(A literal has at most 1048576 bytes)~"},
    {"aLeafHasAnEnd", R"~("t" = (ACF0) ^"")~", "t",
     R"~(A leaf of length 0 needs a rule for its end, such as ends "\x00" or "to end")~"},
    {"aLeafHasAnExpression", R"~("t" = ^5)~", "t", R"~(A leaf of a layout needs a packet expression)~"},
    {"sizeKeywordsHaveARule", R"~("n" = (ANF3sizeset_1) ^0, "b" = (ACD0sizedef_1) "")~", "n",
     R"~(Write "size of PART" about the number instead of "sizeset_1")~"},
    {"aVariableBinaryNumberHasARule", R"~("n" = (BNV1) ^0)~", "n",
     R"~(BNV does not come back; write BNF, or BCV for bytes, or "size of PART" about a number)~"},
    {"sizesOfRunTimeHaveARule", R"~("n" = (ACD4) ^"")~", "n",
     R"~(Write length code F, and "size of PART" about the number that says the size, instead of D)~"},
    {"bitsFillTheirNumber", R"~("a" = (BNF1) 0, "@a" = ^"bits 3 x, 4 y")~", "a",
     R"~(The bits do not fill the number exactly)~"},
    {"whatComesAfterToEndIsFixed", R"~("a" = (ACF0) ^"", "@a" = "to end", "b" = (ACV1) "")~", "a",
     R"~(What stands after "a" must have a fixed size, up to the end of the part that encloses both)~"},
};

constexpr tExpected s_ctParts[] = {
    {"namesStandOnce", R"~("t" = (ACF1) "", "t" = (ACF1) ^"")~", "t", R"~(The name "t" stands twice)~"},
    {"idsStandOnce", R"~(#3 "t" = (ACF1) "", #3 "u" = (ACF1) ^"")~", "u", R"~(The ID 3 stands twice)~"},
    {"theRootIsAFieldSet", R"~(^[ (BNF1) 0 ])~", "", R"~(A layout is a field set)~"},
    {"anArrayShowsOneElement", R"~("a" = ^[ (BNF1) 0, (BNF1) 0 ])~", "a",
     R"~(An array of a layout has one element, which shows all)~"},
    {"onlyLiteralsGoWithoutAName", R"~((BNF1) ^0)~", "",
     R"~(A part without name and ID must be a literal: a leaf with "fix")~"},
    {"recordsHaveTheLengthOfTheFrame", R"~({ "@" = "layout 1; lines 4", "a" = [ ^{ "x" = (ACF5) "" } ] })~", "a",
     R"~(The record has 5 bytes, but the layout says that records have 4)~"},
    {"marksInsideDiffer",
     R"~("a" = { "@" = "between \",\"", "x" = (ACF0) "", "y" = ^{ "@" = "between \",\"", )~"
     R"~("z" = (ACF0) "" } })~",
     "a.y", R"~(The mark between the parts also stands between the parts around them)~"},
};

class LayoutMistake : public testing::TestWithParam<tExpected>
{
};

TEST_P(LayoutMistake, isReportedAtItsPlace)
{
    std::string text(GetParam().m_strvLayout);
    if (text.find("layout") == std::string::npos && text.front() != '^')
        text = "{ \"@\" = \"layout 1\", " + text + " }";
    const std::size_t place = text.find('^');
    ASSERT_NE(place, std::string::npos);
    text.erase(place, 1);
    murv::registerStandardKeywords();
    murv::CLayout layout;
    EXPECT_FALSE(layout.compile(text));
    EXPECT_FALSE(layout.isCompiled());
    ASSERT_FALSE(layout.getMistakes().empty());
    const murv::tLayoutMistake& mistake = layout.getMistakes().front();
    EXPECT_EQ(mistake.m_uiOffset, place);
    EXPECT_EQ(mistake.m_strPath, GetParam().m_pPath);
    EXPECT_EQ(mistake.m_strMessage, GetParam().m_pMessage);
}

std::string nameOfRule(const testing::TestParamInfo<tExpected>& info)
{
    return info.param.m_pRule;
}

INSTANTIATE_TEST_SUITE_P(Rules, LayoutMistake, testing::ValuesIn(s_ctRules), nameOfRule);
INSTANTIATE_TEST_SUITE_P(Paths, LayoutMistake, testing::ValuesIn(s_ctPaths), nameOfRule);
INSTANTIATE_TEST_SUITE_P(Choices, LayoutMistake, testing::ValuesIn(s_ctChoices), nameOfRule);
INSTANTIATE_TEST_SUITE_P(Numbers, LayoutMistake, testing::ValuesIn(s_ctNumbers), nameOfRule);
INSTANTIATE_TEST_SUITE_P(Leaves, LayoutMistake, testing::ValuesIn(s_ctLeaves), nameOfRule);
INSTANTIATE_TEST_SUITE_P(Parts, LayoutMistake, testing::ValuesIn(s_ctParts), nameOfRule);

TEST(LayoutMistakes, comeInTheOrderOfTheDocument)
{
    murv::CLayout layout;
    EXPECT_FALSE(layout.compile(R"({ "@" = "layout 1; lines 0", "a" = (BNF9) 0, "b" = (ACF1) "", "@b" = "flaot" })"));
    ASSERT_EQ(layout.getMistakes().size(), 3u);
    EXPECT_EQ(layout.getMistakes()[0].m_strMessage, "A line has 1 to 2147483647 bytes");
    EXPECT_EQ(layout.getMistakes()[1].m_strMessage, "A binary number has 1 to 8 bytes");
    EXPECT_EQ(layout.getMistakes()[2].m_strMessage, "There is no rule \"flaot\"; did you mean \"float\"?");
}

TEST(LayoutMistakes, aMistakeHidesWhatOnlyFollowsFromIt)
{
    murv::CLayout layout;
    EXPECT_FALSE(layout.compile(R"({ "@" = "layout 1", "n" = (BNF2) 0, "@n" = "size of bdy", "body" = (ACF0) "" })"));
    ASSERT_EQ(layout.getMistakes().size(), 1u);
    EXPECT_EQ(layout.getMistakes()[0].m_strMessage, "There is no part \"bdy\" here or around; did you mean \"body\"?");
}

TEST(LayoutMistakes, aLostSizeHidesThatPartsAfterItsPartVary)
{
    murv::CLayout layout;
    EXPECT_FALSE(layout.compile(R"({ "@" = "layout 1", "n" = (BNF2) 0, "@n" = "sise of b",
        "b" = { "t" = (ACF0) "", "@t" = "to end" }, "c" = (ACV1) "" })"));
    ASSERT_EQ(layout.getMistakes().size(), 1u);
    EXPECT_EQ(layout.getMistakes()[0].m_strMessage, "There is no rule \"sise of b\"; did you mean \"size of\"?");
}

TEST(LayoutMistakes, aTextThatDoesNotLoadIsOneMistake)
{
    murv::CLayout layout;
    EXPECT_FALSE(layout.compile("{ \"a\" = (BNF1) 0 "));
    ASSERT_EQ(layout.getMistakes().size(), 1u);
    EXPECT_EQ(layout.getMistakes()[0].m_strMessage, "Missing ',' or '}' in field declaration");
}

TEST(LayoutMistakes, aRootWithoutAPlaceIsAtTheBegin)
{
    murv::CLayout layout;
    EXPECT_FALSE(layout.compile(",,( =F0) \"\"% }"));
    ASSERT_FALSE(layout.getMistakes().empty());
    EXPECT_EQ(layout.getMistakes()[0].m_uiOffset, 0u);
}

TEST(LayoutMistakes, goWithTheNextLayout)
{
    murv::CLayout layout;
    EXPECT_FALSE(layout.compile("{ \"a\" = (BNF1) 0 }"));
    EXPECT_TRUE(layout.compile("{ \"@\" = \"layout 1\", \"a\" = (BNF1) 0 }"));
    EXPECT_TRUE(layout.getMistakes().empty());
}

}  // namespace

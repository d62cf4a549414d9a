// How texts are laid out, and that nothing of them changes but what lies between the tokens.
#include <gtest/gtest.h>

#include "murv/loader.h"
#include "murv/saver.h"
#include "murv/syntax.h"
#include "tests/ser/random_text.h"
#include "tests/support/random_tree.h"
#include "tests/support/same_tree.h"

namespace murv::tests
{

namespace
{

constexpr unsigned int s_cuiConfig = LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS | LCBC_DUPLICATE;

std::string laidOut(std::string_view text, const tTextLayout& layout = {})
{
    return formatText(text, s_cuiConfig, layout).value_or("mistakes");
}

bool load(const std::string& text, CFields& tree)
{
    CLoader4SER loader(s_cuiConfig);
    return loader.loading(text, tree, "", true);
}

std::vector<tTextLayout> layouts()
{
    std::vector<tTextLayout> all(7);
    all[1].m_strIndent = "\t";
    all[1].m_uiWidth = 20;
    all[2].m_bOneLineArrays = false;
    all[3].m_bCompact = true;
    all[4].m_bNullWord = false;
    all[5].m_bFinalNewline = false;
    all[6].m_bCompact = true;
    all[6].m_bNullWord = false;
    return all;
}

}  // namespace

TEST(Format, membersStandOnLinesOfTheirOwn)
{
    EXPECT_EQ(laidOut("{\"a\"=1,#7 \"b\"=(ANF4)2,\"c\"={\n\"d\"=[\n1,2]}}"),
              "{\n  \"a\" = 1,\n  #7 \"b\" = (ANF4) 2,\n  \"c\" =\n  {\n"
              "    \"d\" =\n    [\n      1,\n      2\n    ]\n  }\n}\n");
}

TEST(Format, containersOnOneLineStayThereWhenTheyFit)
{
    EXPECT_EQ(laidOut("{\"a\"=[1,2],\"b\"={\"c\"=3},\"d\"=[[ ],{\"e\"=[1]}]}"),
              "{\n  \"a\" = [1, 2],\n  \"b\" = { \"c\" = 3 },\n  \"d\" = [[], { \"e\" = [1] }]\n}\n");
    tTextLayout narrow;
    narrow.m_uiWidth = 1;
    const std::string fits(67, 'x');
    EXPECT_EQ(laidOut("[\"" + fits + "\"]", narrow), "[\"" + fits + "\"]\n");
    EXPECT_EQ(laidOut("[\"xxx" + fits + "\"]", narrow), "[\n  \"xxx" + fits + "\"\n]\n");
}

TEST(Format, aDocumentThatIsAFieldSetIsOpened)
{
    EXPECT_EQ(laidOut("{\"a\"=1}"), "{\n  \"a\" = 1\n}\n");
    EXPECT_EQ(laidOut("{ }"), "{}\n");
    EXPECT_EQ(laidOut("\"root\"=[1]"), "\"root\" = [1]\n");
}

TEST(Format, emptyContainersTakeNoLine)
{
    EXPECT_EQ(laidOut("{\"a\"={\n},\"b\"=[\n\n]}"), "{\n  \"a\" = {},\n  \"b\" = []\n}\n");
}

TEST(Format, oneEmptyLineBetweenMembersStays)
{
    EXPECT_EQ(laidOut("{\n\n\"a\"=1,\n\n\n\n\"b\"=2,\n// c\n\n\"d\"=3\n\n}"),
              "{\n  \"a\" = 1,\n\n  \"b\" = 2,\n  // c\n\n  \"d\" = 3\n}\n");
}

TEST(Format, commentsStayOnTheirLineOrOnOneOfTheirOwn)
{
    EXPECT_EQ(
        laidOut("{ // begin\n\"a\"=1, // one\n/* two */ \"b\"=2, /* three */\n \"c\"=3 // last\n // end\n}// after"),
        "{ // begin\n  \"a\" = 1, // one\n"
        "  /* two */ \"b\" = 2, /* three */\n  \"c\" = 3 // last\n  // end\n} // after\n");
}

TEST(Format, commentsBetweenTokensKeepTheirPlace)
{
    EXPECT_EQ(laidOut("[\n1 /* a */ , // b\n2 // c\n,3]"), "[\n  1 /* a */, // b\n  2 // c\n  ,\n  3\n]\n");
    EXPECT_EQ(laidOut("{\"a\" // x\n= /* y */ 5}"), "{\n  \"a\" // x\n  = /* y */ 5\n}\n");
    EXPECT_EQ(laidOut("[1, /* two */ 2,\n3]"), "[\n  1,\n  /* two */ 2,\n  3\n]\n");
}

TEST(Format, linesOfABlockCommentStayAsTheyAre)
{
    EXPECT_EQ(laidOut("{\n/* a\n      b\n*/ \"c\"=1}"), "{\n  /* a\n      b\n*/ \"c\" = 1\n}\n");
}

TEST(Format, lineEndsBecomeLikeTheFirst)
{
    EXPECT_EQ(laidOut("{\r\n\"a\"=1, // x\n\"b\"=2}"), "{\r\n  \"a\" = 1, // x\r\n  \"b\" = 2\r\n}\r\n");
    EXPECT_EQ(laidOut("[\r1]"), "[\r  1\r]\r");
    EXPECT_EQ(laidOut("/* a\n b */ [1]\r\n"), "/* a\n b */ [1]\r\n");
    EXPECT_EQ(laidOut("[\"a\rb\"]\n"), "[\n  \"a\rb\"\n]\n");
}

TEST(Format, theLastLineHasOneLineEnd)
{
    for (const char* const text : {"[1] // c", "[1] // c\n", "[1] // c\n\n\n", "[1] // c\r\n"})
        EXPECT_EQ(laidOut(text), std::string("[1] // c") + (std::string_view(text).ends_with("\r\n") ? "\r\n" : "\n"));
    EXPECT_EQ(laidOut("[1]\n\n/* c */\n\n"), "[1]\n\n/* c */\n");
}

TEST(Format, missingValuesStayMissing)
{
    EXPECT_EQ(laidOut("[1,,2,]"), "[1, , 2,]\n");
    EXPECT_EQ(laidOut("{\"a\"=,\n}"), "{\n  \"a\" =,\n}\n");
    EXPECT_EQ(laidOut("[1,\n,]"), "[\n  1,\n  ,\n]\n");
}

TEST(Format, aCommentThatIsLeftOutKeepsNoNull)
{
    tTextLayout compact;
    compact.m_bCompact = true;
    compact.m_bNullWord = false;
    EXPECT_EQ(laidOut("[1, null /* c */, 2]", compact), "[1,,2]\n");
}

TEST(Format, textWithMistakesGivesNothing)
{
    unsigned int pieces = 0;
    EXPECT_FALSE(formatText("{\"a\"=1", s_cuiConfig, {}, [&](std::string_view) { ++pieces; }));
    EXPECT_EQ(pieces, 0U);
    EXPECT_EQ(formatText("{\"a\"=1", s_cuiConfig, {}), std::nullopt);
}

TEST(Format, resultComesInSmallPieces)
{
    std::string text = "[\n";
    for (int i = 0; i < 100000; ++i)
        text += "[1],\n";
    text += "1]";
    std::size_t longest = 0;
    std::string result;
    EXPECT_TRUE(formatText(text, s_cuiConfig, {}, [&](std::string_view piece) {
        longest = std::max(longest, piece.size());
        result += piece;
    }));
    EXPECT_LT(longest, 20000U);
    EXPECT_EQ(result, laidOut(text));
}

TEST(Format, depthCostsNoStack)
{
    std::string text(1000, '[');
    text += std::string(1000, ']');
    EXPECT_TRUE(haveSameTokens(text, laidOut(text), {}));
}

TEST(SameTokens, comparesWhatLayoutsKeep)
{
    tTextLayout compact;
    compact.m_bCompact = true;
    EXPECT_TRUE(haveSameTokens("[1, // a\n2]", "[1,//a\n2]", compact));
    EXPECT_FALSE(haveSameTokens("[1, // a\n2]", "[1,//a\n2]", {}));
    EXPECT_TRUE(haveSameTokens("[ 1,\n2]", "[1,2]", {}));
    EXPECT_FALSE(haveSameTokens("[1,2]", "[1,02]", {}));
    EXPECT_FALSE(haveSameTokens("[1,2]", "[1,2] 3", {}));
    EXPECT_FALSE(haveSameTokens("[(ANF4 a) 1]", "[(ANF4 b) 1]", {}));
    EXPECT_TRUE(haveSameTokens("[(ANF4 a) 1]", "[(ANF4) 1]", compact));
}

TEST(FormatProperty, tokensStayAndLayingOutAgainChangesNothing)
{
    CRandomText random(12);
    const std::vector<tTextLayout> all = layouts();
    int laid = 0;
    for (int i = 0; i < 20000; ++i)
    {
        const std::string text = random.document();
        const tTextLayout& layout = all[static_cast<std::size_t>(i) % all.size()];
        const std::optional<std::string> once = formatText(text, s_cuiConfig, layout);
        if (!once)
            continue;
        ++laid;
        ASSERT_TRUE(haveSameTokens(text, *once, layout)) << text;
        ASSERT_EQ(formatText(*once, s_cuiConfig, layout), once) << text;
    }
    EXPECT_GT(laid, 10000);
}

TEST(FormatProperty, theTreeStaysTheSame)
{
    CRandomText random(13);
    const std::vector<tTextLayout> all = layouts();
    for (int i = 0; i < 10000; ++i)
    {
        const std::string text = random.document();
        const tTextLayout& layout = all[static_cast<std::size_t>(i) % all.size()];
        CFields before;
        CFields after;
        if (!load(text, before))
            continue;
        ASSERT_TRUE(load(laidOut(text, layout), after)) << text;
        ASSERT_EQ(difference(before, after, SP_ids | SP_expressions | SP_second), "") << text;
    }
}

TEST(FormatProperty, whatASaverWroteWithoutLossIsLaidOutAlready)
{
    int saved = 0;
    for (unsigned int seed = 0; seed < 3000; ++seed)
    {
        CRandomTree random(seed);
        CSaver4SER_HFW saver;
        saver.setSCBC(SCBC_LOSSLESS | SCBC_FINAL_NEWLINE | (seed % 2 == 0 ? SCBC_ONE_LINE_ARRAY : 0U));
        const std::string text = saver.saving(random.tree());
        if (saver.isError())
            continue;
        ++saved;
        ASSERT_EQ(laidOut(text), text) << seed;
    }
    EXPECT_GT(saved, 1500);
}

}  // namespace murv::tests

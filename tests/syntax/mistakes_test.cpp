// All mistakes of a text: where they are, and that nothing is said twice.
#include <gtest/gtest.h>

#include "murv/loader.h"
#include "murv/syntax.h"
#include "tests/ser/random_text.h"

namespace murv::tests
{

namespace
{

constexpr unsigned int s_cuiConfig = LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_LOSSLESS | LCBC_DUPLICATE;

/// "line:column message" of each mistake.
std::string mistakes(std::string_view text, unsigned int config = s_cuiConfig)
{
    std::string lines;
    for (const tErrorPlace& place : findMistakes(text, config))
        lines +=
            std::to_string(place.m_uiLine) + ":" + std::to_string(place.m_uiColumn) + " " + place.m_strMessage + "\n";
    return lines;
}

}  // namespace

TEST(Mistakes, thereAreNoneInWhatALoaderTakes)
{
    EXPECT_EQ(mistakes(R"(#1 "a" = { "b" = (ACF8) "x", "c" = [ 1, [], {} ], , "d" = } // end)"), "");
    EXPECT_EQ(mistakes("5 what follows is not looked at {"), "");
}

TEST(Mistakes, eachMemberTellsItsOwn)
{
    EXPECT_EQ(mistakes("{\n  \"a\" = (XCF8) 1,\n  \"b\" = \"\\q\",\n  \"c\" = 1,\n  #0 \"d\" = 2\n}"),
              "2:9 Mismatched syntax for packet E_PacketExpCode\n"
              "3:9 Bad escape sequence in string\n"
              "5:3 Failed to loading for the #ID syntax\n");
}

TEST(Mistakes, aMissingCommaIsSaidOnceAndReadingGoesOn)
{
    EXPECT_EQ(mistakes("{ \"a\" = 1 \"b\" = x, \"c\" = 2 }"),
              "1:11 Missing ',' or '}' in field declaration\n"
              "1:17 Syntax error: value, field or array expected.\n");
    EXPECT_EQ(mistakes("[ 1 2 3 4 ]"), "1:5 Missing ',' or ']' in array declaration\n");
}

TEST(Mistakes, colonsAreSaidOnce)
{
    EXPECT_EQ(mistakes(R"({ "a": 1, "b": { "c": 2 }, "d": x })"),
              "1:6 Missing ',' or '}' in field declaration\n"
              "1:33 Syntax error: value, field or array expected.\n");
}

TEST(Mistakes, aWrongBracketClosesTheContainerThatItIsOf)
{
    EXPECT_EQ(mistakes("{ \"a\" = [ 1, 2 }, \"b\""), "1:16 Missing ',' or ']' in array declaration\n");
    EXPECT_EQ(mistakes("{ \"a\" = [ { \"b\" = 1 ], \"c\" = y }"),
              "1:21 Missing ',' or '}' in field declaration\n"
              "1:30 Syntax error: value, field or array expected.\n");
}

TEST(Mistakes, theEndIsMissedOnce)
{
    EXPECT_EQ(mistakes("{ \"a\" = [ { \"b\" = [ 1"), "1:22 Missing ',' or ']' in array declaration\n");
    EXPECT_EQ(mistakes("[ \"a"), "1:3 Syntax error: value, field or array expected.\n");
}

TEST(Mistakes, timeIsLinearInStrayBracketsAndNesting)
{
    const std::string open(200000, '[');
    const std::string close(200000, '}');
    EXPECT_FALSE(findMistakes(open + close, s_cuiConfig).empty());
    EXPECT_FALSE(findMistakes("{" + open + close, s_cuiConfig).empty());
}

TEST(Mistakes, theFirstIsThatOfTheLoader)
{
    CRandomText random(11);
    std::size_t refused = 0;
    for (int i = 0; i < 20000; ++i)
    {
        std::string text = random.document();
        if (i % 3 != 0)
            text = random.mutated(text);
        if (text.empty())
            continue;
        CLoader4SER loader;
        loader.setLCBC(s_cuiConfig);
        CFields tree;
        const bool isLoaded = loader.loading(text, tree);
        const std::vector<tErrorPlace> found = findMistakes(text, s_cuiConfig);
        ASSERT_EQ(found.empty(), isLoaded) << text;
        if (isLoaded)
            continue;
        ++refused;
        const tErrorPlace first = loader.getErrorPlaces().front();
        ASSERT_EQ(found.front().m_strMessage, first.m_strMessage) << text;
        ASSERT_EQ(found.front().m_uiStart, first.m_uiStart) << text;
        ASSERT_EQ(found.front().m_uiEnd, first.m_uiEnd) << text;
        ASSERT_EQ(found.front().m_uiLine, first.m_uiLine) << text;
        ASSERT_EQ(found.front().m_tSecond.has_value(), first.m_tSecond.has_value()) << text;
    }
    EXPECT_GT(refused, 5000U);
}

}  // namespace murv::tests

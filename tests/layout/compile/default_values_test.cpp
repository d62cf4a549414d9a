// A value of the layout that its item cannot hold is a mistake, at the value's place.
#include <gtest/gtest.h>

#include <string>

#include "murv/layout.h"

namespace murv::tests
{

namespace
{

/// What is wrong with the value that the mark "^" stands before, after the words that all such mistakes have.
std::string mistake4(std::string members, const std::string& rules = "")
{
    std::string layout = R"({ "@" = "layout 1)" + rules + "\", " + members + " }";
    const std::size_t mark = layout.find('^');
    layout.erase(mark, 1);
    CLayout compiled;
    if (compiled.compile(layout))
        return "compiles";
    const tLayoutMistake& mistake = compiled.getMistakes().front();
    EXPECT_EQ(compiled.getMistakes().size(), 1u);
    EXPECT_EQ(mistake.m_uiOffset, mark) << mistake.m_strMessage;
    EXPECT_EQ(mistake.m_strPath, "a");
    const std::string words = "The value does not fit its item: ";
    EXPECT_EQ(mistake.m_strMessage.substr(0, words.size()), words);
    return mistake.m_strMessage.substr(std::min(words.size(), mistake.m_strMessage.size()));
}

}  // namespace

TEST(DefaultValues, areNotLongerThanTheirItems)
{
    EXPECT_EQ(mistake4(R"("a" = (ACF2) ^"abc")"), "The value does not fit the item");
    EXPECT_EQ(mistake4(R"("a" = (ANF2) ^100)"), "The value does not fit the item");
    EXPECT_EQ(mistake4(R"("a" = (BNF1) ^256)"), "The value does not fit the item");
    EXPECT_EQ(mistake4(R"("a" = (ACV1) ^"twelve bytes")"), "The value does not fit the item");
    EXPECT_EQ(mistake4(R"("a" = (ACF2) ^"abc", "@a" = "ends \";\"")"), "The value does not fit the item");
    EXPECT_EQ(mistake4(R"("a" = (ANF2) ^100, "@a" = "ends \";\"")"), "The value does not fit the item");
}

TEST(DefaultValues, areOfTheItemsKind)
{
    EXPECT_EQ(mistake4(R"("a" = (ANF2) ^"x")"), "Other characters stand where digits must");
    EXPECT_EQ(mistake4(R"("a" = (ANF2) ^true)"), "The item does not take a value of this kind");
    EXPECT_EQ(mistake4(R"("a" = (ACF2) ^5)"), "The item does not take a value of this kind");
    EXPECT_EQ(mistake4(R"("a" = (BNF2) ^-1)"), "The number is below zero, and the item has no sign");
    EXPECT_EQ(mistake4(R"("a" = (ACF2) ^"\xFF", "@a" = "ascii")"), "The item's code page does not have this character");
}

TEST(DefaultValues, loseNothing)
{
    EXPECT_EQ(mistake4(R"("a" = (ANF4) ^1.5)"), "The number has decimals, which the item does not have");
    EXPECT_EQ(mistake4(R"("a" = (ANF4) ^1.555, "@a" = "decimals 2")"), "The number has more decimals than the item");
}

TEST(DefaultValues, holdNoMarkAtWhichReadingWouldEndThem)
{
    const std::string mark = "The value holds a mark at which reading would end it";
    EXPECT_EQ(mistake4(R"("a" = (ACF0) ^"x;y", "@a" = "ends \";\"")"), mark);
    EXPECT_EQ(mistake4(R"("a" = (ACF0) ^"x\ny", "@a" = "to end")", "; lines"), mark);
    EXPECT_EQ(mistake4(R"("a" = (ACF0) ^"x\ry", "@a" = "to end")", R"(; lines \"\r\")"), mark);
    EXPECT_EQ(mistake4(R"("a" = (ACF0) ^"x|y", "b" = (ACF0) "")", R"(; between \"|\")"), mark);
}

TEST(DefaultValues, mayBeShorterAndEndInPadding)
{
    for (const char* const members :
         {R"("a" = (ACF4) "x ")", R"("a" = (BCF4) "x")", R"("a" = (ACF4) "x", "@a" = "keep")", R"("a" = (ACF4) null)",
          R"("a" = (ANF4) "007")", R"("a" = (ANF4) null, "@a" = "blank is null")", R"("a" = (ANF8YYYYMMDD) 0)"})
        EXPECT_EQ(mistake4(members + std::string("^")), "compiles") << members;
}

TEST(DefaultValues, ofZeroAreNullWhereZerosAre)
{
    for (const char* const leaf : {R"((ANF4) ^0)", R"((ANF4) ^0.0)", R"((ANF4) ^"0000")", R"((BNF4YYYYMMDD) ^0)"})
        EXPECT_EQ(mistake4(std::string("\"a\" = ") + leaf + ", \"@a\" = \"zero is null\""), "compiles") << leaf;
    CLayout layout;
    ASSERT_TRUE(layout.compile(R"({"@" = "layout 1", "a" = (ANF4) 0, "@a" = "zero is null"})"));
    CPacketMaker maker(layout);
    CPacketReader reader(layout);
    std::string packet;
    CFields tree;
    ASSERT_TRUE(maker.make(CFields(DT_fields), packet));
    EXPECT_EQ(packet, "0000");
    ASSERT_TRUE(reader.read(packet, tree));
    EXPECT_TRUE(tree[0].isNull());
}

TEST(DefaultValues, mayBeMissing)
{
    EXPECT_EQ(mistake4(R"("a" = (ANF2)^)"), "compiles");
    EXPECT_EQ(mistake4(R"("a" = (ANF2) ^null)"), "compiles");
    CLayout layout;
    ASSERT_TRUE(layout.compile(R"({"@" = "layout 1", "a" = (ANF2)})"));
    CPacketMaker maker(layout);
    std::string packet;
    EXPECT_FALSE(maker.make(CFields(DT_fields), packet));
    EXPECT_EQ(maker.getFault().m_eCode, PF_null);
}

TEST(DefaultValues, thatAreNeverTakenMayBeMissing)
{
    EXPECT_EQ(mistake4(R"("a" = (ANF2)^, "@a" = "size of b", "b" = (ACF0) "")"), "compiles");
    EXPECT_EQ(mistake4(R"("a" = (ANF2)^, "@a" = "required")"), "compiles");
    EXPECT_EQ(mistake4(R"("a" = (ANF2) ^"x", "@a" = "required")"), "Other characters stand where digits must");
}

TEST(DefaultValues, areTestedWithoutFillingTheItem)
{
    EXPECT_EQ(mistake4(R"("a" = (ACF4000000000) ""^)"), "compiles");
    EXPECT_EQ(mistake4(R"("a" = (ANF4000000000) 1e300^)"), "compiles");
    EXPECT_EQ(mistake4(R"("a" = (ACF2000) ")" + std::string(1500, 'x') + "\"^"), "compiles");
    EXPECT_EQ(mistake4(R"("a" = (ACF2000) ^")" + std::string(2001, 'x') + "\""), "The value does not fit the item");
}

}  // namespace murv::tests

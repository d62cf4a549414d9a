// Layouts that were made to hurt: deep, wide, or growing. Each must be compiled or refused soon.
#include <gtest/gtest.h>

#include <string>

#include "murv/layout.h"
#include "murv/murv.h"

namespace
{

std::string repeat(unsigned int count, const std::string& text)
{
    std::string all;
    for (unsigned int i = 0; i < count; ++i)
        all += text;
    return all;
}

std::string firstMistake(const std::string& text)
{
    murv::CLayout layout;
    if (layout.compile(text))
        return "";
    return layout.getMistakes().front().m_strMessage;
}

TEST(HostileLayout, depthIsLimitedInDocumentsMadeByHand)
{
    murv::CFields document(murv::DT_fields);
    document.addChildRef("@") = "layout 1";
    murv::CFields* node = &document;
    for (unsigned int i = 0; i < 100000; ++i)
        node = &node->addChildRef("a");
    *node = 1;
    murv::CLayout layout;
    EXPECT_FALSE(layout.compile(document));
    ASSERT_EQ(layout.getMistakes().size(), 1u);
    EXPECT_EQ(layout.getMistakes()[0].m_strMessage, "The layout nests deeper than 1000 levels");
}

TEST(HostileLayout, depthIsLimitedInTexts)
{
    const std::string text = repeat(2000, "{ \"a\" = ") + "1" + repeat(2000, "}");
    EXPECT_EQ(firstMistake(text), "The layout nests deeper than 1000 levels");
}

TEST(HostileLayout, copiesOfCopiesDoNotExplode)
{
    std::string text = "{ \"@\" = \"layout 1\", \"a0\" = { \"x\" = (BNF1) 0, \"y\" = (BNF1) 0 }";
    for (unsigned int i = 1; i < 40; ++i)
    {
        const std::string like = "{ \"@\" = \"like a" + std::to_string(i - 1) + "\" }";
        text += ", \"a" + std::to_string(i) + "\" = { \"l\" = " + like + ", \"r\" = " + like + " }";
    }
    EXPECT_EQ(firstMistake(text + " }"), "The copies by \"like\" come to more than 100000 parts");
}

TEST(HostileLayout, aRowOfCopiesIsNoCircle)
{
    std::string text = "{ \"@\" = \"layout 1\", \"a0\" = { \"x\" = (BNF1) 0 }";
    for (unsigned int i = 1; i < 90; ++i)
        text += ", \"a" + std::to_string(i) + "\" = { \"@\" = \"like a" + std::to_string(i - 1) + "\" }";
    EXPECT_EQ(firstMistake(text + " }"), "");
}

TEST(HostileLayout, manyMistakesAreReportedUpToAHundred)
{
    std::string text = "{ \"@\" = \"layout 1\"";
    for (unsigned int i = 0; i < 20000; ++i)
        text += ", \"a" + std::to_string(i) + "\" = (BNF1) 0, \"@a" + std::to_string(i) + "\" = \"bgi\"";
    murv::CLayout layout;
    EXPECT_FALSE(layout.compile(text + " }"));
    EXPECT_EQ(layout.getMistakes().size(), 100u);
}

TEST(HostileLayout, manyOptionalPartsWithLiteralsAreRefusedSoon)
{
    std::string text = "{ \"@\" = \"layout 1\"";
    for (unsigned int i = 0; i < 20000; ++i)
        text += ", \"a" + std::to_string(i) + "\" = (ACF5fix) \"" + std::to_string(10000 + i) + "\", \"@a" +
                std::to_string(i) + "\" = \"optional\"";
    EXPECT_EQ(firstMistake(text + " }"), "The layout has too many parts that depend on each other");
}

TEST(HostileLayout, manySizesThatOverlapAreRefusedSoonWithoutOtherMistakes)
{
    std::string text = "{ \"@\" = \"layout 1\"";
    for (unsigned int i = 0; i < 20000; ++i)
        text += ", \"n" + std::to_string(i) + "\" = (BNF1) 0, \"@n" + std::to_string(i) + "\" = \"size of a0..a" +
                std::to_string(i) + "\"";
    for (unsigned int i = 0; i < 20000; ++i)
        text += ", \"a" + std::to_string(i) + "\" = (BNF1) 0";
    EXPECT_EQ(firstMistake(text + " }"), "The layout has too many parts that depend on each other");
}

TEST(HostileLayout, manyAlternativesThatOneByteTellsApartCompile)
{
    std::string text = "{ \"@\" = \"layout 1; one of\"";
    for (unsigned int i = 0; i < 900; ++i)
        text += ", \"a" + std::to_string(i) + "\" = { \"t\" = (ACF3fix) \"" + std::to_string(100 + i) + "\" }";
    EXPECT_EQ(firstMistake(text + " }"), "");
}

TEST(HostileLayout, longNamesAndOddBytesAreNames)
{
    const std::string name(255, 'n');
    EXPECT_EQ(firstMistake("{ \"@\" = \"layout 1\", \"" + name + "\" = (BNF1) 0, \"@\\\"\\xFF\\\"\" = \"big\" }"),
              "There is no part \"\xFF\" for this rule");
}

TEST(HostileLayout, ruleTextsEndAnywhere)
{
    const std::string rules =
        "hex lower; bits of data.x from 65; size of a..b / 4 + 4; valid 1..2 | \"x\"; if a.b >= "
        "\"q\\x00\"; bits 1 a, 7 b; crc16 modbus of .; one of by x else y; align 2 \"\\n\"";
    for (std::size_t length = 0; length <= rules.size(); ++length)
    {
        murv::CFields document(murv::DT_fields);
        document.addChildRef("@") = "layout 1";
        document.addChildRef("a") = "";
        document.addChildRef("@a") = rules.substr(0, length);
        murv::CLayout layout;
        EXPECT_FALSE(layout.compile(document)) << length;
        EXPECT_FALSE(layout.getMistakes().empty()) << length;
    }
}

}  // namespace

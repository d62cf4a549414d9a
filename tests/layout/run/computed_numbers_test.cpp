// tests/layout/run/computed_numbers_test.cpp - numbers that are filled in where other rules look at them, too.
#include <gtest/gtest.h>

#include <string>

#include "murv/layout.h"
#include "murv/loader.h"

namespace murv::tests
{

namespace
{

CFields tree4(const std::string& text)
{
    CLoaders loader;
    loader.setLCBC(loader.getLCBC() | LCBC_LOSSLESS);
    CFields tree;
    EXPECT_TRUE(loader.loading(text, tree)) << loader.getLastErrMsg();
    return tree;
}

/// The packet of a tree, or the sentence of the fault.
std::string made(const std::string& layoutText, const std::string& data)
{
    CLayout layout;
    EXPECT_TRUE(layout.compile(layoutText)) << layoutText;
    CPacketMaker maker(layout);
    std::string packet;
    return maker.make(tree4(data), packet) ? packet : maker.getFault().m_strMessage;
}

/// What reading and making again gives.
std::string again(const std::string& layoutText, const std::string& bytes)
{
    CLayout layout;
    EXPECT_TRUE(layout.compile(layoutText)) << layoutText;
    CPacketReader reader(layout);
    CFields tree;
    if (!reader.read(bytes, tree))
        return reader.getFault().m_strMessage;
    std::string packet;
    CPacketMaker maker(layout);
    return maker.make(tree, packet) ? packet : maker.getFault().m_strMessage;
}

}  // namespace

TEST(ComputedNumbers, partOfBitsTakesASize)
{
    const char* text = R"({ "@" = "layout 1", "head" = (BNF1) 96, "@head" = "bits 3 kind, 5 length",
        "@head.length" = "size of name - 1", "name" = (BCF0) "" })";
    EXPECT_EQ(made(text, R"({ "head" = { "kind" = 2 }, "name" = "abcd" })"),
              "\x43"
              "abcd");
    EXPECT_EQ(made(text, R"({ "name" = "abcd" })"),
              "\x63"
              "abcd");
    EXPECT_EQ(again(text,
                    "\x43"
                    "abcd"),
              "\x43"
              "abcd");
}

TEST(ComputedNumbers, partOfBitsWithoutRulesDecidesWhatIsThere)
{
    const char* text = R"({ "@" = "layout 1", "head" = (BNF1) 0, "@head" = "bits 1 more, 7 count",
        "@head.count" = "count of items", "items" = [ (BNF1) 0 ], "tail" = (BCF1) "t", "@tail" = "if head.more = 1" })";
    EXPECT_EQ(made(text, R"({ "head" = { "more" = 1 }, "items" = [ 65, 66 ] })"),
              "\x82"
              "ABt");
    EXPECT_EQ(made(text, R"({ "items" = [ 65, 66 ] })"),
              "\x02"
              "AB");
}

TEST(ComputedNumbers, partOfBitsThatIsFilledInDecidesWhatIsThere)
{
    const char* text = R"({ "@" = "layout 1", "head" = (BNF1) 0, "@head" = "bits 1 more, 7 count",
        "@head.count" = "count of items", "items" = [ (BNF1) 0 ],
        "tail" = (BCF1) "t", "@tail" = "if head.count > 1" })";
    EXPECT_EQ(made(text, R"({ "items" = [ 65, 66 ], "tail" = "x" })"),
              "\x02"
              "ABx");
    EXPECT_EQ(made(text, R"({ "items" = [ 65, 66 ] })"), "Reading would take the bytes for something else");
    EXPECT_EQ(made(text, R"({ "items" = [ 65 ] })"),
              "\x01"
              "A");
}

TEST(ComputedNumbers, sizeThatEndsAnArrayIsLookedAtWhenItIsKnown)
{
    const char* text = R"({ "@" = "layout 1", "rows" = [ { "size" = (BNF1) 0, "@size" = "size of row",
        "row" = (BCF0) "" } ], "@rows" = "until size = 0" })";
    EXPECT_EQ(made(text, R"({ "rows" = [ { "row" = "ab" }, { "row" = "c" }, {} ] })"), std::string("\x02"
                                                                                                   "ab\x01"
                                                                                                   "c\0",
                                                                                                   6));
    EXPECT_EQ(made(text, R"({ "rows" = [ { "row" = "ab" }, {}, { "row" = "c" }, {} ] })"),
              "Reading would take the bytes for something else");
    EXPECT_EQ(again(text, std::string("\x02"
                                      "ab\0",
                                      4)),
              std::string("\x02"
                          "ab\0",
                          4));
}

TEST(ComputedNumbers, literalElementsOfAnArrayCount)
{
    const char* text = R"({ "@" = "layout 1", "head" = { "a" = (ACF1) "a" }, "fill" = [ (BNF1fix) 0 ] })";
    EXPECT_EQ(again(text, std::string("a\0\0\0", 4)), std::string("a\0\0\0", 4));
    EXPECT_EQ(made(text, R"({ "fill" = [ 0, 0 ] })"), std::string("a\0\0", 3));
    EXPECT_EQ(made(text, R"({ "fill" = [ 0, 1 ] })"), "The layout demands \"\\x00\", but \"\\x01\" stands here");
}

}  // namespace murv::tests

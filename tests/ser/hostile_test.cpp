// tests/ser/hostile_test.cpp - data that means harm: it is refused or read, and nothing else happens.
//
// Every text lies in a block of exactly its size, so that the sanitizers see one byte too many.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"
#include "tests/support/huge_text.h"
#include "tests/support/same_tree.h"

using namespace murv;
using namespace murv::tests;
using namespace std::string_view_literals;

namespace
{
constexpr std::size_t s_cnMegabyte = std::size_t{1} << 20;

/// What a load may do: succeed without a message, fail with one, or throw at the depth limit. In every case the target
/// can be used again.
testing::AssertionResult isSound(std::string_view text, unsigned int flags = s_cuiUsual)
{
    tLoad load("[1]", flags);
    try
    {
        load.load(text);
    }
    catch (const CLogicError& error)
    {
        if (std::string_view(error.what()).find("Exceeded s_cnStackDepthLimit") == std::string_view::npos)
            return testing::AssertionFailure() << error.what();
        load.m_bDone = true;  // it left no message
    }
    const bool silent = load.m_tLoader.getLastErrMsg().empty();
    if (load.m_bDone != silent || load.m_bDone != load.m_tLoader.getStatus())
        return testing::AssertionFailure() << load.m_bDone << " but " << load.m_tLoader.getLastErrMsg();
    for (const tErrorRange& range : load.m_tLoader.getErrorRanges())
    {
        if (range.m_uiStart > range.m_uiEnd || range.m_uiEnd > text.size())
            return testing::AssertionFailure() << range.m_uiStart << ".." << range.m_uiEnd;
    }
    load.load("{\"a\"=1,/*c*/#2[3]}");
    const std::string comment = (flags & LCBC_COMMENT) != 0 ? "<1:/*c*/>" : "";
    if (!load.m_bDone || show(load.m_tTree).find("{a=1" + comment + ",#2 [3]}") == std::string::npos)
        return testing::AssertionFailure() << "afterwards: " << load.result();
    return testing::AssertionSuccess();
}

/// A document with everything in it.
std::string everything()
{
    return "/* head */ #5 \"root\" = // t\r\n{ \"a\" = 1, // one\n \"b\"=-2.5e-3,\r\"c\"=(ACF8YYYYMMDD note) 2024,\n"
           "#7 \"d\" = [ true, false, null, , \"x\\n\\u0041\\x41\\\"\", [[]], {} ],\n/* multi\nline */ #8 { \"a\"=3, "
           "#9 4, \"e\\\\\"=(ANV2-3)\"\" }, \"b\"={#7 5}, #7 18446744073709551615, \"\"=6 /*z*/ }\n// tail";
}
}  // namespace

TEST(Hostile, stringOfHugeLengthFailsTheLoad)
{
    // With its prefix and NUL a string value of more bytes than this would not fit the 32 bits of lengths.
    for (const std::size_t length : {std::size_t{2147483643}, std::size_t{2147483645}})
    {
        const CHugeText text(length + 2, '"', 'a', '"');
        if (text.view().empty())
            GTEST_SKIP() << "NOT TESTED: the system has no room for so much text";
        CLoader4SER loader;
        CFields tree;
        EXPECT_FALSE(loader.loading(text.view(), tree));
        EXPECT_EQ(loader.getLastErrMsg(), "* Line 1, Column 1\n  a_uiSrcLen too big for prefixing\n");
        EXPECT_EQ(tree.getDT(), DT_null);
    }
}

TEST(Hostile, unclosedThings)
{
    for (const char* const text :
         {"\"", "{\"",      "{\"a",         "{\"a\"=\"",       "[\"\\", "/*", "[/*",    "[1,/*",   "{", "[", "{[{[{[",
          "(",  "{\"a\"=(", "{\"a\"=(ACF8", "{\"a\"={\"b\"={", "#",     "{#", "[\"\\u", "[\"\\x4", "/", "//"})
    {
        EXPECT_TRUE(isSound(text)) << text;
        EXPECT_FALSE(tLoad(text).m_bDone) << text;
    }
}

TEST(Hostile, bytesOfZeroAnywhere)
{
    const std::string good = everything();
    for (std::size_t at = 0; at < good.size(); ++at)
    {
        std::string text = good;
        text[at] = '\0';
        ASSERT_TRUE(isSound(text)) << at;
    }
    EXPECT_TRUE(isSound(std::string(s_cnMegabyte, '\0')));
}

TEST(Hostile, bytesOf126AndAboveOutsideStrings)
{
    for (int byte = 126; byte < 256; ++byte)
    {
        const std::string odd(1, static_cast<char>(byte));
        for (const std::string& text : {odd, "{" + odd, "{\"a\"" + odd + "=1}", "{\"a\"=" + odd + "}", "[1" + odd + "]",
                                        "[(" + odd + "ACF4) 1]", "#" + odd + " 1", "[-" + odd + "]"})
        {
            EXPECT_TRUE(isSound(text)) << byte;
            EXPECT_FALSE(tLoad(text).m_bDone) << text;
        }
    }
}

TEST(Hostile, badEscapesEverywhere)
{
    for (const char* const text :
         {"\"\\q\"", "{\"\\q\"=1}", "[\"\\q\"]", "\"\\q\"=1", "{\"a\"={\"\\xzz\"=1}}", "[\"\\u12\"]"})
    {
        EXPECT_TRUE(isSound(text)) << text;
        EXPECT_FALSE(tLoad(text).m_bDone) << text;
    }
}

TEST(Hostile, idsOutOfRange)
{
    for (const std::string& id :
         {std::string("0"), std::string("2147483648"), std::string("4294967295"), std::string("4294967296"),
          std::string("4294967297"), std::string("18446744073709551615"), std::string("18446744073709551616"),
          std::string(40, '9'), std::string(40, '0'), std::string(s_cnMegabyte, '1')})
    {
        EXPECT_FALSE(tLoad("#" + id + " 1").m_bDone) << id.size();
        EXPECT_FALSE(tLoad("{#" + id + " 1}").m_bDone) << id.size();
        EXPECT_TRUE(isSound("{#" + id + " 1}")) << id.size();
    }
}

TEST(Hostile, namesOfAnyLength)
{
    for (const std::size_t length : {std::size_t{0}, std::size_t{1}, std::size_t{254}, std::size_t{255},
                                     std::size_t{256}, std::size_t{65536}, s_cnMegabyte})
    {
        const std::string name(length, 'n');
        const tLoad member("{\"" + name + "\"=1,\"" + name + "\"=2}");
        ASSERT_TRUE(member.m_bDone);
        const bool named = length >= 1 && length <= 255;
        EXPECT_EQ(member.m_tTree.getChildCount(), named ? 1u : 2u);
        EXPECT_EQ(member.m_tTree.getChildAt(0).getNameLen(), named ? length : 0u);
        EXPECT_EQ(tLoad("\"" + name + "\"=1").m_bDone, length <= 255);
    }
}

TEST(Hostile, numbersOfAMegabyte)
{
    EXPECT_EQ(tLoad("[" + std::string(s_cnMegabyte, '0') + "7]").m_tTree.getChildAt(0).asSint32(), 7);
    EXPECT_EQ(tLoad("[" + std::string(s_cnMegabyte, '9') + "]").m_tTree.getChildAt(0).getDT(), DT_double);
    EXPECT_EQ(tLoad("[0." + std::string(s_cnMegabyte, '0') + "1]").m_tTree.getChildAt(0).asDouble(), 0.0);
    EXPECT_EQ(tLoad("[1e" + std::string(s_cnMegabyte, '0') + "1]").m_tTree.getChildAt(0).asDouble(), 10.0);
    EXPECT_EQ(tLoad(std::string(s_cnMegabyte, '-')).m_tTree.asSint32(), 0);
}

TEST(Hostile, oneByteAMillionTimes)
{
    for (const char byte : "[]{}()\"\\/#=,-09.entf \n\r\t\0\xFF*:@"sv)
        EXPECT_TRUE(isSound(std::string(s_cnMegabyte, byte))) << static_cast<int>(byte);
}

TEST(Hostile, shortPiecesAMillionTimes)
{
    for (const char* const piece :
         {"[{",  "{\"a\"=", "[\"",  "[1,",    "{#1 ",   "{#1,", "{,",   "[[],", "/**/",
          "/*",  "*/",      "//\n", "(ACF4)", "\"\\\"", "[(",   "\"\"", "1 ",   "{\"a\"=1,\"a\"={",
          "#1#", "=="})
    {
        const std::string many = repeated(piece, s_cnMegabyte / 2);
        EXPECT_TRUE(isSound(many)) << piece;
        EXPECT_TRUE(isSound("{" + many)) << piece;
        EXPECT_TRUE(isSound("[" + many)) << piece;
    }
}

TEST(Hostile, moreThanAThousandLevels)
{
    for (const unsigned int depth : {1000u, 1001u, 1002u, 5000u})
    {
        EXPECT_TRUE(isSound(repeated("[", depth) + "1" + repeated("]", depth)));
        EXPECT_TRUE(isSound(repeated("{\"a\"=", depth) + "1" + repeated("}", depth)));
        EXPECT_TRUE(isSound(repeated("{#1 ", depth) + "1" + repeated("}", depth)));
        EXPECT_THROW(loaded(repeated("[", depth) + "1"), CLogicError);
    }
}

TEST(Hostile, everyPrefixOfAGoodDocument)
{
    const std::string good = everything();
    ASSERT_TRUE(tLoad(good).m_bDone) << loaded(good);
    for (std::size_t length = 0; length < good.size(); ++length)
    {
        for (const unsigned int flags : {s_cuiUsual, 0u, 0x7Fu})
            ASSERT_TRUE(isSound(good.substr(0, length), flags)) << length;
    }
}

TEST(Hostile, everySuffixOfAGoodDocument)
{
    const std::string good = everything();
    for (std::size_t begin = 0; begin < good.size(); ++begin)
        ASSERT_TRUE(isSound(good.substr(begin))) << begin;
}

TEST(Hostile, everyByteOfAGoodDocumentChanged)
{
    const std::string good = everything();
    for (std::size_t at = 0; at < good.size(); ++at)
    {
        for (const char byte : "{}[]()\"\\/*#=, \n0-\0\xFFnA"sv)
        {
            std::string text = good;
            text[at] = byte;
            ASSERT_TRUE(isSound(text)) << at << " " << static_cast<int>(byte);
        }
    }
}

TEST(Hostile, everyByteOfAGoodDocumentLeftOut)
{
    const std::string good = everything();
    for (std::size_t at = 0; at < good.size(); ++at)
    {
        std::string text = good;
        text.erase(at, 1);
        ASSERT_TRUE(isSound(text, s_cuiUsual | LCBC_UNICODE_UTF8)) << at;
    }
}

// A container is replaced while comments, IDs and names still refer to what it held.
TEST(Hostile, whatReferredToReplacedNodesForgetsThem)
{
    for (const char* const text :
         {"{\"r\"={#1 5},#1 6,\"r\"={ // c\n 1}}", "{\"r\"={#1 {#2 3}},#2 4,\"r\"=[/*c*/5],#1 6,#2 7}",
          "{#1{#2{#3 4}},#3 5,#2 /*c*/ 6,#3 7,#1 /*d*/ 8,#2 9}", "{\"a\"={#1 1},\"a\"=(ACF4) 2}",
          "{\"r\"=[{#1 5}],#1 6,\"r\"=[{#1 7 /*c*/}, // d\n 8],#1 9}"})
        EXPECT_TRUE(isSound(text)) << text;
}

TEST(Hostile, everyConfigurationWordReadsWithoutHarm)
{
    const std::string good = everything();
    for (unsigned int flags = 0; flags <= 0x7F; ++flags)
    {
        for (std::size_t length = good.size(); length > 20; length -= 13)
            ASSERT_TRUE(isSound(good.substr(0, length), flags | LCBC_COMMENT | LCBC_EMPTY_NULL))
                << flags << " " << length;
    }
}

// tests/ser/offset_test.cpp - where in the data a node stood.
#include <gtest/gtest.h>

#include "tests/ser/load_helpers.h"

using namespace murv;
using namespace murv::tests;

namespace
{
std::string offsets(const CFields& node)
{
    std::string text = std::to_string(node.getOffsetStart()) + ".." + std::to_string(node.getOffsetEnd());
    for (const CFields& member : node)
        text += " " + offsets(member);
    return text;
}

std::string offsets4Text(std::string_view text)
{
    return offsets(tLoad(text).m_tTree);
}
}  // namespace

TEST(Offset, ofAScalarIsItsTokens)
{
    EXPECT_EQ(offsets4Text(" 123 "), "1..4");
    EXPECT_EQ(offsets4Text("\"text\""), "0..6");
    EXPECT_EQ(offsets4Text("\n\ntrue"), "2..6");
    EXPECT_EQ(offsets4Text("null"), "0..4");
    EXPECT_EQ(offsets4Text("\"\\u0041\\n\""), "0..10");
}

TEST(Offset, ofAContainerRunsFromBracketToBracket)
{
    EXPECT_EQ(offsets4Text(" [1, 2] "), "1..7 2..3 5..6");
    EXPECT_EQ(offsets4Text("{\"a\"=1,\"b\"=[2]}"), "0..15 5..6 11..14 12..13");
}

TEST(Offset, leavesOutIdNameAndComments)
{
    EXPECT_EQ(offsets4Text("#1 \"r\" = {/*c*/#2 \"a\"= true // d\n}"), "9..34 23..27");
}

TEST(Offset, ofAMissingValueIsTheByteBeforeItsEnd)
{
    EXPECT_EQ(offsets4Text("[]"), "0..2 0..1");
    EXPECT_EQ(offsets4Text("{\"a\"= , }"), "0..9 5..6 7..8");
    EXPECT_EQ(offsets4Text(" ,"), "0..1");
}

TEST(Offset, ofAValueAfterAPacketExpressionIsTheValues)
{
    EXPECT_EQ(offsets4Text("[(ACF4) 12]"), "0..11 8..10");
    EXPECT_EQ(offsets4Text("{\"a\"=(ACF4) \"t\"}"), "0..16 12..15");
}

TEST(Offset, ofAMemberReadAgainIsThatOfTheLastReading)
{
    EXPECT_EQ(offsets4Text("{\"a\"=1,\"a\"=22}"), "0..14 11..13");
    EXPECT_EQ(offsets4Text("{\"a\"=1,\"a\"=[2]}"), "0..15 11..14 12..13");
}

TEST(Offset, ofAValueThatIsNoneIsItsTokens)
{
    tLoad load("\"n\" = @");
    EXPECT_FALSE(load.m_bDone);
    EXPECT_EQ(offsets(load.m_tTree), "6..7");
}

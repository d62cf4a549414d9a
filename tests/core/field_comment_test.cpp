// tests/core/field_comment_test.cpp - comments and source offsets.
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <type_traits>

#include "murv/fields.h"
#include "tests/core/text_helpers.h"
#include "tests/support/thrown.h"

namespace
{

using namespace murv;
using murv::tests::CExactText;
using murv::tests::thrown;

constexpr E_CommentPosition s_ceAll[] = {CP_before, CP_trailing, CP_after};
constexpr const char* s_cpRefusal = "[murv::CHeapString::setComment#0] Comments must start with /";

TEST(Comment, positionsHaveTheirNumbers)
{
    EXPECT_EQ(0u, CP_before);
    EXPECT_EQ(1u, CP_trailing);
    EXPECT_EQ(2u, CP_after);
    static_assert(std::is_same_v<std::underlying_type_t<E_CommentPosition>, unsigned int>);
}

TEST(Comment, aFreshNodeHasNone)
{
    const CFields node;
    EXPECT_FALSE(node.isComment());
    for (const E_CommentPosition pos : s_ceAll)
    {
        EXPECT_FALSE(node.hasComment(pos));
        EXPECT_EQ("", node.getCommentCopy(pos));
        EXPECT_EQ(nullptr, node.getCommentPtr(pos));
        EXPECT_EQ(0u, node.getCommentLen(pos));
    }
}

TEST(Comment, eachPositionHasItsOwn)
{
    CFields node;
    node.setComment("// 1", CP_before);
    node.setComment(std::string("// 22"), CP_trailing);
    node.setComment("/* 333 */ ignored", 9, CP_after);
    EXPECT_TRUE(node.isComment());
    EXPECT_EQ("// 1", node.getCommentCopy(CP_before));
    EXPECT_STREQ("// 22", node.getCommentPtr(CP_trailing));
    EXPECT_EQ(9u, node.getCommentLen(CP_after));
    EXPECT_EQ("/* 333 */", node.getCommentCopy(CP_after));
    node.setComment(std::string_view("// new"), CP_before);
    EXPECT_EQ("// new", node.getCommentCopy(CP_before));
    EXPECT_EQ("// 22", node.getCommentCopy(CP_trailing));
    node.setComment(std::string_view("// part of a text", 7), CP_after);
    EXPECT_EQ("// part", node.getCommentCopy(CP_after));
}

TEST(Comment, oneLineFeedAtTheEndIsDropped)
{
    CFields node;
    node.setComment("// a\n", CP_trailing);
    EXPECT_EQ("// a", node.getCommentCopy(CP_trailing));
    node.setComment("// a\n\n", CP_trailing);
    EXPECT_EQ("// a\n", node.getCommentCopy(CP_trailing));
    node.setComment("// a\n// b", CP_trailing);
    EXPECT_EQ("// a\n// b", node.getCommentCopy(CP_trailing));
    node.setComment("// a\r\n", CP_trailing);
    EXPECT_EQ("// a\r", node.getCommentCopy(CP_trailing));
}

TEST(Comment, onlyTheFirstByteIsTested)
{
    CFields node;
    node.setComment("/anything", CP_before);
    EXPECT_EQ("/anything", node.getCommentCopy(CP_before));
    EXPECT_EQ(s_cpRefusal, thrown([&] { node.setComment(" // a", CP_before); }));
    EXPECT_EQ(s_cpRefusal, thrown([&] { node.setComment("note", CP_before); }));
    EXPECT_EQ(s_cpRefusal, thrown([&] { node.setComment(std::string("note"), CP_before); }));
    EXPECT_EQ(s_cpRefusal, thrown([&] { node.setComment("\n\n", CP_before); }));
}

TEST(Comment, aRefusalEmptiesThePositionOnly)
{
    CFields node;
    EXPECT_EQ(s_cpRefusal, thrown([&] { node.setComment("note", CP_before); }));
    EXPECT_FALSE(node.hasComment(CP_before));
    EXPECT_TRUE(node.isComment()) << "the comments exist, if empty";
    node.setComment("// before", CP_before);
    node.setComment("// after", CP_after);
    EXPECT_EQ(s_cpRefusal, thrown([&] { node.setComment("note", CP_before); }));
    EXPECT_FALSE(node.hasComment(CP_before));
    EXPECT_EQ("// after", node.getCommentCopy(CP_after));
}

TEST(Comment, nullTextThrowsTheBareText)
{
    CFields node;
    const char* const null = nullptr;
    node.setComment("// before", CP_before);
    EXPECT_EQ("mismatched condition", thrown([&] { node.setComment(null, CP_before); }));
    EXPECT_FALSE(node.hasComment(CP_before));
    EXPECT_EQ("mismatched condition", thrown([&] { node.setComment(null, 5, CP_before); }));
    EXPECT_EQ("mismatched condition", thrown([&] { node.setComment(null, 0, CP_before); }));
    EXPECT_TRUE(node.isComment());
}

TEST(Comment, anEmptyTextIsPresent)
{
    for (const E_CommentPosition pos : s_ceAll)
    {
        CFields node;
        node.setComment("", pos);
        EXPECT_TRUE(node.hasComment(pos));
        EXPECT_EQ(0u, node.getCommentLen(pos));
        EXPECT_STREQ("", node.getCommentPtr(pos));
        EXPECT_EQ("", node.getCommentCopy(pos));
    }
}

TEST(Comment, lengthZeroDoesNotLookAtTheText)
{
    CFields node;
    node.setComment("note", 0, CP_before);
    EXPECT_TRUE(node.hasComment(CP_before));
    EXPECT_EQ(0u, node.getCommentLen(CP_before));
    node.setComment(CExactText("").begin(), 0, CP_trailing);
    EXPECT_TRUE(node.hasComment(CP_trailing));
    node.setComment(CExactText("\n").begin(), 1, CP_after);
    EXPECT_TRUE(node.hasComment(CP_after)) << "its one line feed was all it had";
    EXPECT_EQ(0u, node.getCommentLen(CP_after));
}

TEST(Comment, aTextThatBeginsWithNulIsStored)
{
    CFields node;
    node.setComment(std::string("\0note", 5), CP_before);
    EXPECT_TRUE(node.hasComment(CP_before));
    EXPECT_EQ(0u, node.getCommentLen(CP_before));
}

TEST(Comment, exactlyTheGivenBytesAreRead)
{
    CFields node;
    const CExactText text("// a\n");
    node.setComment(text.begin(), 5, CP_before);
    EXPECT_EQ("// a", node.getCommentCopy(CP_before));
}

TEST(Comment, copiesAreIndependent)
{
    CFields source(1);
    for (const E_CommentPosition pos : s_ceAll)
        source.setComment("// " + std::to_string(pos), pos);
    const CFields copy(source);
    CFields other;
    other.setField(source);
    source.setComment("// changed", CP_trailing);
    for (const CFields& node : {copy, other})
    {
        for (const E_CommentPosition pos : s_ceAll)
        {
            EXPECT_EQ("// " + std::to_string(pos), node.getCommentCopy(pos));
            EXPECT_NE(source.getCommentPtr(pos), node.getCommentPtr(pos));
        }
    }
}

TEST(Comment, copiesOfEmptySlotsStayEmpty)
{
    CFields source;
    thrown([&] { source.setComment("note", CP_before); });
    const CFields copy(source);
    EXPECT_TRUE(copy.isComment());
    EXPECT_FALSE(copy.hasComment(CP_before));
}

TEST(Comment, aMoveTakesThem)
{
    CFields source;
    source.setComment("// a", CP_before);
    const char* const text = source.getCommentPtr(CP_before);
    const CFields moved(static_cast<CFields&&>(source));
    EXPECT_EQ(text, moved.getCommentPtr(CP_before));
    EXPECT_FALSE(source.isComment());
}

TEST(Offset, plainNumbers)
{
    CFields node;
    EXPECT_EQ(0, node.getOffsetStart());
    EXPECT_EQ(0, node.getOffsetEnd());
    node.setOffsetStart(INT_MAX);
    node.setOffsetEnd(INT_MIN);
    EXPECT_EQ(INT_MAX, node.getOffsetStart());
    EXPECT_EQ(INT_MIN, node.getOffsetEnd());
}

}  // namespace

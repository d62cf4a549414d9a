// tests/core/strings_test.cpp - what holds text: static text, names, and the heap blocks of values and comments.
#include "murv/strings.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>

#include "core/heap_text.h"
#include "tests/core/text_helpers.h"
#include "tests/support/thrown.h"

namespace
{

using namespace murv;
using murv::tests::CExactText;
using murv::tests::thrown;

std::string text(const CAllotString& string)
{
    return string.getData() == nullptr ? "(null)" : std::string(string.getData(), string.getLength());
}

CAllotString duplicate(std::string_view bytes)
{
    return {bytes.data(), static_cast<unsigned int>(bytes.size()), CAllotString::DP_duplicate};
}

TEST(StaticString, keepsThePointer)
{
    static const char literal[] = "abc";
    const CStaticString text(literal);
    EXPECT_EQ(literal, text.c_str());
    EXPECT_EQ(literal, static_cast<const char*>(text));
    CStaticString other("x");
    other = text;
    EXPECT_EQ(literal, other.c_str());
    CStaticString moved("x");
    moved = CStaticString(literal);
    EXPECT_EQ(literal, moved.c_str());
    static_assert(std::is_trivially_copyable_v<CStaticString>);
}

TEST(AllotString, beginsEmpty)
{
    const CAllotString string;
    EXPECT_EQ(nullptr, string.getData());
    EXPECT_EQ(0u, string.getLength());
    EXPECT_EQ(0u, string.getSAI());
    EXPECT_EQ(CAllotString::DP_static, string.getDP());
    EXPECT_FALSE(string.isStaticString());
}

TEST(AllotString, copiesATextOf1To255Bytes)
{
    static const char literal[] = "abc";
    const CAllotString string(literal);
    EXPECT_STREQ("abc", string.getData());
    EXPECT_NE(literal, string.getData());
    EXPECT_EQ(3u, string.getLength());
    EXPECT_EQ(CAllotString::DP_duplicate, string.getDP());
    EXPECT_EQ(3u * 4 + 1, string.getSAI());
    EXPECT_EQ(std::string(255, 'x'), text(CAllotString(std::string(255, 'x').c_str())));
    EXPECT_EQ(1u, CAllotString("x").getLength());
}

TEST(AllotString, refusesOtherLengths)
{
    EXPECT_EQ(0u, CAllotString("").getSAI());
    EXPECT_EQ(nullptr, CAllotString("").getData());
    EXPECT_EQ(nullptr, CAllotString(std::string(256, 'x').c_str()).getData());
    EXPECT_EQ(nullptr, CAllotString(nullptr).getData());
    EXPECT_EQ(nullptr, CAllotString("abc", 0, CAllotString::DP_duplicate).getData());
    EXPECT_EQ(nullptr, CAllotString("abc", 256, CAllotString::DP_static).getData());
    EXPECT_EQ(nullptr, CAllotString(nullptr, 3, CAllotString::DP_duplicate).getData());
    EXPECT_EQ(nullptr, CAllotString("abc", 3, static_cast<CAllotString::E_DuplicationPolicy>(3)).getData());
}

TEST(AllotString, duplicatesExactlyTheGivenBytes)
{
    const CExactText bytes(std::string_view("a\0b", 3));
    const CAllotString string(bytes.begin(), 3, CAllotString::DP_duplicate);
    EXPECT_EQ(std::string("a\0b", 3), text(string));
    EXPECT_EQ('\0', string.getData()[3]);
}

TEST(AllotString, staticAndBorrowedTextKeepThePointer)
{
    static const char literal[] = "abcdef";
    const CAllotString fixed(literal, 3, CAllotString::DP_static);
    EXPECT_EQ(literal, fixed.getData());
    EXPECT_EQ(3u, fixed.getLength());
    EXPECT_EQ(12u, fixed.getSAI());
    EXPECT_TRUE(fixed.isStaticString());
    const CAllotString borrowed(literal, 3, CAllotString::DP_borrow);
    EXPECT_EQ(literal, borrowed.getData());
    EXPECT_EQ(CAllotString::DP_borrow, borrowed.getDP());
    EXPECT_FALSE(borrowed.isStaticString());
}

TEST(AllotString, copyOfStaticTextSharesThePointer)
{
    const CAllotString fixed("abc", 3, CAllotString::DP_static);
    const CAllotString copy(fixed);
    EXPECT_EQ(fixed.getData(), copy.getData());
    EXPECT_TRUE(copy.isStaticString());
    CAllotString assigned("old");
    assigned = fixed;
    EXPECT_EQ(fixed.getData(), assigned.getData());
}

TEST(AllotString, copyOfBorrowedAndOwnedTextIsADuplicate)
{
    const char literal[] = "abc";
    for (const auto policy : {CAllotString::DP_borrow, CAllotString::DP_duplicate})
    {
        const CAllotString source(literal, 3, policy);
        const CAllotString copy(source);
        EXPECT_NE(source.getData(), copy.getData());
        EXPECT_STREQ("abc", copy.getData());
        EXPECT_EQ(CAllotString::DP_duplicate, copy.getDP());
    }
}

TEST(AllotString, copyOfNothingIsEmpty)
{
    CAllotString string("abc");
    EXPECT_TRUE(string.setData(CAllotString()));
    EXPECT_EQ(nullptr, string.getData());
    EXPECT_EQ(0u, string.getSAI());
}

TEST(AllotString, assigningItselfChangesNothing)
{
    for (const auto policy : {CAllotString::DP_static, CAllotString::DP_duplicate, CAllotString::DP_borrow})
    {
        CAllotString string("abc", 3, policy);
        CAllotString& self = string;
        string = self;
        EXPECT_EQ("abc", text(string));
        EXPECT_EQ(policy, string.getDP());
        EXPECT_TRUE(string.setData(self));
        EXPECT_EQ("abc", text(string));
        string = std::move(self);
        EXPECT_EQ("abc", text(string));
    }
}

TEST(AllotString, setDataFromItsOwnTextKeepsIt)
{
    CAllotString string("abcdef");
    EXPECT_TRUE(string.setData(string.getData() + 1, 3, CAllotString::DP_duplicate));
    EXPECT_EQ("bcd", text(string));
}

TEST(AllotString, moveLeavesTheSourceEmpty)
{
    CAllotString source("abc");
    const char* const data = source.getData();
    CAllotString moved(std::move(source));
    EXPECT_EQ(data, moved.getData());
    EXPECT_EQ(nullptr, source.getData());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(0u, source.getLength());
    EXPECT_EQ(0u, source.getSAI());
    CAllotString assigned("old");
    assigned = std::move(moved);
    EXPECT_EQ(data, assigned.getData());
    EXPECT_EQ(nullptr, moved.getData());  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(0u, moved.getSAI());
}

TEST(AllotString, refusedSetDataLeavesTheString)
{
    CAllotString string("abc");
    EXPECT_FALSE(string.setData(nullptr, 3, CAllotString::DP_duplicate));
    EXPECT_FALSE(string.setData("x", 0, CAllotString::DP_duplicate));
    EXPECT_FALSE(string.setData("x", 256, CAllotString::DP_static));
    EXPECT_FALSE(string.setData("x", 1, static_cast<CAllotString::E_DuplicationPolicy>(3)));
    EXPECT_EQ("abc", text(string));
    EXPECT_TRUE(string.setData("xy", 2, CAllotString::DP_duplicate));
    EXPECT_EQ("xy", text(string));
}

TEST(AllotString, clearFreesAndInitForgets)
{
    CAllotString string("abc");
    string.clear();
    EXPECT_EQ(nullptr, string.getData());
    EXPECT_EQ(0u, string.getSAI());
    CAllotString fixed("abc", 3, CAllotString::DP_static);
    fixed.init();
    EXPECT_EQ(nullptr, fixed.getData());
    EXPECT_EQ(0u, fixed.getSAI());
}

TEST(AllotString, swapExchangesBothWords)
{
    CAllotString a("abc");
    CAllotString b("xy", 2, CAllotString::DP_static);
    a.swap(b);
    EXPECT_EQ("xy", text(a));
    EXPECT_TRUE(a.isStaticString());
    EXPECT_EQ("abc", text(b));
    EXPECT_EQ(CAllotString::DP_duplicate, b.getDP());
}

TEST(AllotString, orderIsByUnsignedBytesThenLength)
{
    EXPECT_TRUE(CAllotString("ab") < CAllotString("abc"));
    EXPECT_FALSE(CAllotString("abc") < CAllotString("ab"));
    EXPECT_FALSE(CAllotString("b") < CAllotString("abc"));
    EXPECT_TRUE(CAllotString("abc") < CAllotString("b"));
    EXPECT_TRUE(CAllotString("z") < CAllotString("\xE4"));
    EXPECT_FALSE(CAllotString("\xE4") < CAllotString("z"));
    EXPECT_FALSE(CAllotString("abc") < CAllotString("abc"));
    EXPECT_TRUE(CAllotString() < CAllotString("a"));
    EXPECT_FALSE(CAllotString("a") < CAllotString());
    EXPECT_FALSE(CAllotString() < CAllotString());
    EXPECT_TRUE(duplicate(std::string_view("a\0a", 3)) < duplicate(std::string_view("a\0b", 3)));
}

TEST(AllotString, equalityIsByBytesAndNotByPolicy)
{
    EXPECT_TRUE(CAllotString("abc") == CAllotString("abc", 3, CAllotString::DP_static));
    EXPECT_FALSE(CAllotString("abc") == CAllotString("abd"));
    EXPECT_FALSE(CAllotString("abc") == CAllotString("ab"));
    EXPECT_TRUE(CAllotString() == CAllotString());
    EXPECT_FALSE(CAllotString() == CAllotString("a"));
    EXPECT_FALSE(duplicate(std::string_view("a\0a", 3)) == duplicate(std::string_view("a\0b", 3)));
}

TEST(HeapText, streamCopyEndsInNul)
{
    const CExactText source("abc");
    char* const copy = detail::duplicateStream(source.begin(), 3);
    EXPECT_EQ(0, std::memcmp("abc", copy, 4));
    std::free(copy);
    char* const nothing = detail::duplicateStream(nullptr, 0);
    EXPECT_STREQ("", nothing);
    std::free(nothing);
}

TEST(HeapText, prefixedCopyIsLengthBytesNul)
{
    const CExactText source(std::string_view("a\0b", 3));
    char* const block = detail::duplicatePrefixedStream(source.begin(), 3);
    std::uint32_t prefix = 0;
    std::memcpy(&prefix, block, sizeof prefix);
    EXPECT_EQ(3u, prefix);
    EXPECT_EQ(0, std::memcmp("a\0b", block + 4, 4));
    std::free(block);
}

TEST(HeapText, tooLongValueIsRefused)
{
    const char* const expected = "[murv::duplicatePrefixedStream#0] a_uiSrcLen too big for prefixing";
    EXPECT_EQ(expected, thrown([] { detail::duplicatePrefixedStream("x", 2147483643); }));
    EXPECT_EQ(expected, thrown([] { detail::duplicatePrefixedStream("x", 4294967295); }));
}

TEST(HeapText, viewReadsOwnedAndBorrowedText)
{
    char* const block = detail::duplicatePrefixedStream("a\0b", 3);
    EXPECT_EQ(std::string_view("a\0b", 3), detail::view4Codes(true, block));
    EXPECT_EQ(block + 4, detail::view4Codes(true, block).data());
    std::free(block);
    static const char literal[] = "xyz";
    EXPECT_EQ("xyz", detail::view4Codes(false, literal));
    EXPECT_EQ(literal, detail::view4Codes(false, literal).data());
    EXPECT_EQ(nullptr, detail::view4Codes(true, nullptr).data());
    EXPECT_EQ(0u, detail::view4Codes(false, nullptr).size());
}

TEST(HeapText, resizeGrowsWithTheFillByte)
{
    char* block = detail::duplicatePrefixedStream("abc", 3);
    block = detail::resizePrefixed(block, 5, 0x20);
    EXPECT_EQ("abc  ", detail::view4Prefixed(block));
    EXPECT_EQ('\0', block[4 + 5]);
    std::free(block);
}

TEST(HeapText, resizeShrinksAndWritesANul)
{
    char* block = detail::duplicatePrefixedStream("abc", 3);
    block = detail::resizePrefixed(block, 1, 0x20);
    EXPECT_EQ("a", detail::view4Prefixed(block));
    EXPECT_EQ('\0', block[4 + 1]);
    block = detail::resizePrefixed(block, 0, 0x20);
    EXPECT_EQ("", detail::view4Prefixed(block));
    EXPECT_EQ('\0', block[4]);
    std::free(block);
}

TEST(HeapText, resizeToTheSameLengthReturnsTheBlock)
{
    char* const block = detail::duplicatePrefixedStream("abc", 3);
    EXPECT_EQ(block, detail::resizePrefixed(block, 3, 'x'));
    EXPECT_EQ("abc", detail::view4Prefixed(block));
    std::free(block);
}

TEST(HeapText, resizeOfNullStaysNull)
{
    EXPECT_EQ(nullptr, detail::resizePrefixed(nullptr, 5, 'x'));
}

TEST(HeapString, keepsACopyOfTheComment)
{
    detail::CHeapString comment;
    EXPECT_EQ(nullptr, comment.get());
    comment.setComment(CExactText("// a").begin(), 4);
    EXPECT_STREQ("// a", comment.get());
    comment.setComment("", 0);
    EXPECT_STREQ("", comment.get());
}

TEST(HeapString, refusalsLeaveItEmpty)
{
    detail::CHeapString comment;
    comment.setComment("//", 2);
    EXPECT_EQ("[murv::CHeapString::setComment#0] Comments must start with /",
              thrown([&comment] { comment.setComment("note", 4); }));
    EXPECT_EQ(nullptr, comment.get());
    comment.setComment("//", 2);
    EXPECT_EQ("mismatched condition", thrown([&comment] { comment.setComment(nullptr, 2); }));
    EXPECT_EQ(nullptr, comment.get());
}

TEST(HeapString, mayBeSetFromItsOwnText)
{
    detail::CHeapString comment;
    comment.setComment("//abc", 5);
    comment.setComment(comment.get() + 1, 3);
    EXPECT_STREQ("/ab", comment.get());
}

}  // namespace

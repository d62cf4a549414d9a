// tests/core/interface_test.cpp - the calls an application writes without thinking compile and mean what they say.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "murv/error.h"
#include "murv/fields.h"

namespace
{

using namespace murv;

struct tSomething
{
};

TEST(Interface, aPointerToAnythingButCharIsNoNode)
{
    static_assert(!std::is_constructible_v<CFields, int*>);
    static_assert(!std::is_constructible_v<CFields, const void*>);
    static_assert(!std::is_constructible_v<CFields, tSomething*>);
    static_assert(!std::is_constructible_v<CFields, const CFields*>);
    static_assert(!std::is_constructible_v<CFields, unsigned char*>);
    static_assert(std::is_constructible_v<CFields, char*>);
    static_assert(std::is_constructible_v<CFields, const char*>);
    static_assert(!std::is_assignable_v<CFields&, int*>);
    static_assert(!std::is_assignable_v<CFields&, const CFields*>);
    static_assert(std::is_assignable_v<CFields&, char*>);
    static_assert(!std::is_constructible_v<CFields, tSomething>);
    char text[] = "text";
    EXPECT_EQ("text", CFields(text).asString());
}

TEST(Interface, aNullPointerAndACharacterAreNoNode)
{
    static_assert(!std::is_constructible_v<CFields, std::nullptr_t>);
    static_assert(!std::is_convertible_v<std::nullptr_t, CFields>);
    static_assert(!std::is_constructible_v<CFields, char>);
    static_assert(!std::is_convertible_v<char, CFields>);
    static_assert(std::is_constructible_v<CFields, signed char>);
    static_assert(std::is_constructible_v<CFields, unsigned char>);
    EXPECT_TRUE(CFields().isNull());
    EXPECT_EQ(CFields(std::string(1, 'c')), CFields("c"));
    EXPECT_THROW(CFields(static_cast<const char*>(nullptr)), CLogicError);
}

TEST(Interface, everyNumberTypeConverts)
{
    EXPECT_EQ(DT_bool, CFields(true).getDT());
    EXPECT_EQ(DT_sint, CFields(short{1}).getDT());
    EXPECT_EQ(DT_sint, CFields(1).getDT());
    EXPECT_EQ(DT_sint, CFields(1L).getDT());
    EXPECT_EQ(DT_sint, CFields(1LL).getDT());
    EXPECT_EQ(DT_sint, CFields(std::int64_t{1}).getDT());
    EXPECT_EQ(DT_uint, CFields(1u).getDT());
    EXPECT_EQ(DT_uint, CFields(1ul).getDT());
    EXPECT_EQ(DT_uint, CFields(1ull).getDT());
    EXPECT_EQ(DT_uint, CFields(std::size_t{1}).getDT());
    EXPECT_EQ(DT_uint, CFields(std::uint64_t{1}).getDT());
    EXPECT_EQ(DT_double, CFields(1.0).getDT());
    EXPECT_EQ(DT_double, CFields(1.0F).getDT());
    CFields node;
    node = std::size_t{7};
    EXPECT_EQ(DT_uint, node.getDT());
    node.setValue(std::int64_t{-7});
    EXPECT_EQ(-7, node.asSint64());
}

TEST(Interface, literalZeroIsAnIndex)
{
    CFields tree;
    tree.addChildRef("a") = 1;
    const CFields& constant = tree;
    EXPECT_EQ(1, tree[0].asSint32());
    EXPECT_EQ(1, constant[0].asSint32());
    EXPECT_TRUE(tree.isValidChild(0));
    EXPECT_EQ(1, tree.copyChildAt(0, CFields()).asSint32());
    EXPECT_TRUE(tree.removeChildAt(0));
    EXPECT_EQ(0u, tree.getChildCount());
}

TEST(Interface, everyIntegerTypeIsAnIndex)
{
    CFields array;
    array.addArrayAt(1);
    const CFields& constant = array;
    for (std::size_t i = 0; i < array.getChildCount(); ++i)
        EXPECT_EQ(1, array[i].asSint32());
    for (long i = 0; i < 1; ++i)
        EXPECT_TRUE(array.isValidChild(i));
    EXPECT_EQ(1, constant[std::size_t{0}].asSint32());
    EXPECT_EQ(1, array[std::uint8_t{0}].asSint32());
    EXPECT_EQ(1, array[short{0}].asSint32());
    EXPECT_FALSE(array.isValidChild(1ULL << 32));
    EXPECT_FALSE(array.isValidChild(-1LL));
    EXPECT_EQ(5, array.copyChildAt(1ULL << 32, 5).asSint32());
    EXPECT_FALSE(array.removeChildAt(1ULL << 32));
    EXPECT_TRUE(array.removeChildAt(std::size_t{0}));
}

TEST(Interface, everyTextTypeIsAName)
{
    CFields tree;
    const std::string text = "a";
    const std::string_view view = text;
    tree.addChildRef("a");
    tree.addChildRef(text);
    tree.addChildRef(view);
    tree.addChildPtr(text);
    tree.addChildPtr(view);
    EXPECT_EQ(1u, tree.getChildCount());
    EXPECT_EQ(&tree[0], &tree["a"]);
    EXPECT_EQ(&tree[0], &tree[text]);
    EXPECT_EQ(&tree[0], &tree[view]);
    EXPECT_EQ(&tree[0], &tree[CStaticString("a")]);
    EXPECT_TRUE(tree.isValidChild(text));
    EXPECT_TRUE(tree.isValidChild(view));
    EXPECT_TRUE(tree[0].setName(view));
    EXPECT_TRUE(tree[0].setName(text));
    EXPECT_TRUE(tree[0].setName("a"));
    tree[0].setComment(view.empty() ? view : std::string_view("// x"), CP_before);
    EXPECT_EQ("// x", tree[0].getCommentCopy(CP_before));
    EXPECT_TRUE(tree.removeChildAt(view));
}

TEST(Interface, chainsOfSubscripts)
{
    CFields tree;
    tree.addChildRef("list").addArrayAt(CFields(DT_fields)).addChildRef("x") = 5;
    EXPECT_EQ(5, tree["list"][0]["x"].asSint32());
    const CFields& constant = tree;
    EXPECT_EQ(5, constant["list"][0]["x"].asSint32());
    EXPECT_TRUE(constant["missing"].isNull());
}

TEST(Interface, lookUpsThatReturnPointersKeepConstness)
{
    static_assert(std::is_same_v<CFields*, decltype(std::declval<CFields&>().findChildAt("", 0))>);
    static_assert(std::is_same_v<const CFields*, decltype(std::declval<const CFields&>().findChildAt("", 0))>);
    static_assert(std::is_same_v<CFields*, decltype(std::declval<CFields&>().findID(0))>);
    static_assert(std::is_same_v<const CFields*, decltype(std::declval<const CFields&>().findID(0))>);
    static_assert(std::is_same_v<const char*, decltype(std::declval<const CFields&>().getChildName4ID(0))>);
    static_assert(std::is_same_v<const CFields&, decltype(std::declval<const CFields&>()[0])>);
    static_assert(std::is_same_v<CFields&, decltype(std::declval<CFields&>()[0])>);
    CFields tree;
    tree.addChildRef("a", 1);
    *tree.findChildAt("a", 1) = 5;
    EXPECT_EQ(5, tree.findID(1)->asSint32());
}

TEST(Interface, iteratorsAreRandomAccess)
{
    static_assert(
        std::is_same_v<std::random_access_iterator_tag, std::iterator_traits<CFields::iterator>::iterator_category>);
    static_assert(std::is_same_v<CFields&, std::iterator_traits<CFields::iterator>::reference>);
    static_assert(std::is_same_v<const CFields&, std::iterator_traits<CFields::const_iterator>::reference>);
#if __cplusplus >= 202002L
    static_assert(std::random_access_iterator<CFields::iterator>);
    static_assert(std::random_access_iterator<CFields::const_iterator>);
#endif
    CFields array;
    array.addArrayAt(1);
    array.addArrayAt(2);
    long long sum = 0;
    for (CFields& member : array)
        sum += member.asSint64();
    for (const CFields& member : std::as_const(array))
        sum += member.asSint64();
    EXPECT_EQ(6, sum);
    const std::vector<CFields> copies(array.begin(), array.end());
    EXPECT_EQ(2u, copies.size());
    EXPECT_EQ(2, std::distance(array.begin(), array.end()));
}

TEST(Interface, nodesLiveInStandardContainers)
{
    static_assert(std::is_nothrow_move_constructible_v<CFields>);
    static_assert(std::is_copy_constructible_v<CFields>);
    std::vector<CFields> nodes;
    for (int i = 0; i < 100; ++i)
    {
        nodes.emplace_back(i);
        nodes.back().setName(std::to_string(i));
    }
    EXPECT_STREQ("42", nodes[42].getName());
    std::swap(nodes[0], nodes[1]);
    EXPECT_EQ(1, nodes[0].asSint32());
    EXPECT_STREQ("0", nodes[1].getName());
}

TEST(Interface, aPlainNodeIsSmall)
{
    static_assert(sizeof(CFields) == 64);
}

TEST(Interface, valuesArePassedWithoutSpellingTheNode)
{
    CFields array;
    array.addArrayAt(1);
    array.addArrayAt("text");
    array.addArrayAt(0.5);
    array.addArrayAt(true);
    array.addArrayAt(std::string("s"));
    EXPECT_EQ(5u, array.getChildCount());
    EXPECT_EQ(DT_bool, array[3].getDT());
    CFields tree;
    tree.addChildRef("a") = array;
    EXPECT_EQ("text", tree["a"][1].asString());
}

TEST(Interface, savingNeedsNoArguments)
{
    EXPECT_EQ("{\n  \"a\" = 1\n}", [] {
        CFields tree;
        tree.addChildRef("a") = 1;
        return tree.toMURV();
    }());
}

TEST(Interface, removingByNameAndLengthNeedsNoOut)
{
    CFields tree;
    tree.addChildRef("abc") = 1;
    EXPECT_FALSE(tree.removeChildAt("abc", 0));
    EXPECT_FALSE(tree.removeChildAt("abc", -1));
    EXPECT_TRUE(tree.removeChildAt("abcdef", 3));
    tree.addChildRef("abc");
    EXPECT_FALSE(tree.removeChildAt("abc", 1ULL << 32 | 3));
    CFields out;
    EXPECT_TRUE(tree.removeChildAt("abcdef", std::strlen("abc"), &out));
    EXPECT_STREQ("abc", out.getName());
    EXPECT_FALSE(tree.removeChildAt(7, NULL));  // NOLINT(modernize-use-nullptr): as older code says it
    EXPECT_EQ(0u, tree.getChildCount());
}

TEST(Interface, aTypeIsAssignedAsAType)
{
    CFields node(5);
    node = DT_array;
    EXPECT_TRUE(node.isArray());
}

TEST(Interface, anIteratorServesWhereMembersMayNotBeChanged)
{
    CFields array;
    array.addArrayAt(7);
    CFields::const_iterator at = array.begin();
    EXPECT_EQ(7, at->asSint32());
    EXPECT_TRUE(++at == array.end());
}

}  // namespace

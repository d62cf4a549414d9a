// tests/core/field_name_test.cpp - a node's own name and ID.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "murv/fields.h"

namespace
{

using namespace murv;

const CFields* find(const CFields& tree, const std::string& name)
{
    return tree.findChildAt(name.data(), static_cast<unsigned int>(name.size()));
}

TEST(FieldName, aNewNodeHasNone)
{
    const CFields node;
    ASSERT_NE(nullptr, node.getName());
    EXPECT_STREQ("", node.getName());
    EXPECT_EQ(0u, node.getNameLen());
}

TEST(FieldName, has1To255Bytes)
{
    CFields node;
    EXPECT_TRUE(node.setName("a"));
    EXPECT_STREQ("a", node.getName());
    EXPECT_EQ(1u, node.getNameLen());
    const std::string longest(255, 'n');
    EXPECT_TRUE(node.setName(longest));
    EXPECT_EQ(longest, node.getName());
    EXPECT_EQ(255u, node.getNameLen());
}

TEST(FieldName, otherLengthsAndNullAreRefused)
{
    CFields node;
    node.setName("kept");
    const char* const null = nullptr;
    EXPECT_FALSE(node.setName(""));
    EXPECT_FALSE(node.setName(null));
    EXPECT_FALSE(node.setName(null, 3));
    EXPECT_FALSE(node.setName("abc", 0));
    EXPECT_FALSE(node.setName("abc", 256));
    EXPECT_FALSE(node.setName("abc", 4294967295));
    EXPECT_FALSE(node.setName(std::string()));
    EXPECT_FALSE(node.setName(std::string(256, 'x')));
    EXPECT_FALSE(node.setName(std::string(256, 'x').c_str()));
    EXPECT_FALSE(node.setName(std::string_view()));
    EXPECT_STREQ("kept", node.getName());
}

TEST(FieldName, lengthFormsTakeExactlyTheirBytes)
{
    CFields node;
    EXPECT_TRUE(node.setName("abcdef", 3));
    EXPECT_STREQ("abc", node.getName());
    const std::string withNul("a\0b", 3);
    EXPECT_TRUE(node.setName(withNul));
    EXPECT_EQ(withNul, std::string(node.getName(), node.getNameLen()));
    EXPECT_TRUE(node.setName(std::string_view("xyz").substr(1)));
    EXPECT_STREQ("yz", node.getName());
}

TEST(FieldName, isACopy)
{
    char text[] = "abc";
    CFields node;
    node.setName(text);
    text[0] = 'x';
    EXPECT_STREQ("abc", node.getName());
}

TEST(FieldName, mayBeSetFromItself)
{
    CFields node;
    node.setName("abcdef");
    EXPECT_TRUE(node.setName(node.getName() + 2));
    EXPECT_STREQ("cdef", node.getName());
    EXPECT_TRUE(node.setName(node.getName()));
    EXPECT_STREQ("cdef", node.getName());
}

// Names of up to 23 bytes lie in the node itself, longer ones do not: nothing else tells them apart.
TEST(FieldName, everyLengthIsKeptChangedAndCopiedAlike)
{
    for (const unsigned int before : {1u, 7u, 8u, 15u, 16u, 17u, 22u, 23u, 24u, 25u, 255u})
    {
        for (unsigned int length = 1; length <= 255; length += length < 40 ? 1 : 43)
        {
            std::string name;
            for (unsigned int i = 0; i < length; ++i)
                name += static_cast<char>(i);  // NULs included
            CFields node;
            ASSERT_TRUE(node.setName(std::string(before, 'b')));
            ASSERT_TRUE(node.setName(name));
            const CFields copy(node);
            CFields moved(std::move(node));
            CFields assigned(1);
            assigned.setID(1);
            assigned = copy;
            for (const CFields* const holder : {&copy, &std::as_const(moved), &std::as_const(assigned)})
            {
                ASSERT_EQ(length, holder->getNameLen());
                ASSERT_EQ(name, std::string(holder->getName(), length));
                ASSERT_EQ('\0', holder->getName()[length]);
            }
            ASSERT_STREQ("", node.getName());
            ASSERT_EQ(0u, node.getNameLen());
            moved.clearName();
            ASSERT_STREQ("", moved.getName());
        }
    }
}

TEST(FieldName, longAndShortOnesChangePlaces)
{
    const std::string brief(23, 'b');
    const std::string wide(24, 'w');
    CFields tree;
    tree.addChildRef(brief) = 1;
    tree.addChildRef(wide) = 2;
    tree[0].swapField(tree[1], true);
    EXPECT_EQ(wide, tree[0].getName());
    EXPECT_EQ(2, tree[0].asSint32());
    EXPECT_EQ(brief, tree[1].getName());
    EXPECT_EQ(1, tree[1].asSint32());
    EXPECT_EQ(&tree[0], find(tree, wide));
    EXPECT_EQ(&tree[1], find(tree, brief));
}

// The ends of names are compared in pieces that overlap.
TEST(FieldName, differsByAnyByte)
{
    for (unsigned int length = 1; length <= 26; ++length)
    {
        CFields tree;
        const std::string name(length, 'n');
        tree.addChildRef(name) = 1;
        for (unsigned int i = 0; i < length; ++i)
        {
            std::string other = name;
            other[i] = 'm';
            ASSERT_EQ(nullptr, find(tree, other)) << length << ' ' << i;
        }
        ASSERT_EQ(&tree[0], find(tree, name)) << length;
        ASSERT_EQ(nullptr, find(tree, name + 'n')) << length;
    }
}

TEST(FieldName, mayBeSetFromItselfAcrossTheLengths)
{
    CFields node;
    node.setName(std::string(10, 'a') + std::string(20, 'b'));
    EXPECT_TRUE(node.setName(node.getName() + 10));
    EXPECT_EQ(std::string(20, 'b'), node.getName());
    EXPECT_TRUE(node.setName(node.getName() + 1, 18));
    EXPECT_EQ(std::string(18, 'b'), node.getName());
}

TEST(FieldName, isClearedByClearName)
{
    CFields node;
    node.clearName();
    EXPECT_STREQ("", node.getName());
    node.setName("a");
    node.clearName();
    EXPECT_STREQ("", node.getName());
    EXPECT_EQ(0u, node.getNameLen());
}

TEST(FieldId, is1To2147483647AndZeroClears)
{
    CFields node;
    EXPECT_EQ(0u, node.getID());
    EXPECT_TRUE(node.setID(1));
    EXPECT_EQ(1u, node.getID());
    EXPECT_TRUE(node.setID(2147483647));
    EXPECT_EQ(2147483647u, node.getID());
    EXPECT_FALSE(node.setID(2147483648u));
    EXPECT_FALSE(node.setID(4294967295u));
    EXPECT_EQ(2147483647u, node.getID());
    EXPECT_TRUE(node.setID(0));
    EXPECT_EQ(0u, node.getID());
}

}  // namespace

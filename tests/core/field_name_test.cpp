// Tests of a node's own name and ID.
#include <gtest/gtest.h>

#include <string>

#include "murv/fields.h"

namespace
{

using namespace murv;

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

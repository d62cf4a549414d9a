// tests/core/field_lookup_test.cpp - finding members and nodes by name and by ID.
#include <gtest/gtest.h>

#include <string>

#include "murv/fields.h"
#include "tests/core/text_helpers.h"
#include "tests/support/containers.h"
#include "tests/support/thrown.h"

namespace
{

using namespace murv;
using murv::tests::CExactText;
using murv::tests::thrown;
using murv::tests::withoutVector;

/// a (ID 1), b (ID 2, holding c with ID 3), a second a (ID 4), one without name (ID 5)
CFields sample()
{
    CFields tree;
    tree.addChildRef("a", 1) = "first";
    tree.addChildRef("b", 2).addChildRef("c", 3) = "deep";
    tree.addChildRef("a", 4, true) = "second";
    tree.addChildRef("", 5, true) = "unnamed";
    return tree;
}

TEST(FindChild, givesTheFirstOfThatName)
{
    CFields tree = sample();
    const CFields& constant = tree;
    EXPECT_EQ(&tree[0], tree.findChildAt("a", 1));
    EXPECT_EQ(&tree[0], constant.findChildAt("a", 1));
    EXPECT_EQ(&tree[1], tree.findChildAt("b", 1));
}

TEST(FindChild, comparesExactlyTheGivenBytes)
{
    CFields tree;
    CFields& named = tree.addChildRef(std::string("a\0b", 3));
    EXPECT_EQ(&named, tree.findChildAt("a\0b", 3));
    EXPECT_EQ(nullptr, tree.findChildAt("a\0c", 3));
    EXPECT_EQ(nullptr, tree.findChildAt("a", 1));
    EXPECT_EQ(nullptr, tree.findChildAt("A\0b", 3));
    EXPECT_EQ(&named, tree.findChildAt(CExactText(std::string_view("a\0b", 3)).begin(), 3));
}

TEST(FindChild, nothingIsFoundForNullEmptyAndTooLongNames)
{
    CFields tree = sample();
    EXPECT_EQ(nullptr, tree.findChildAt(nullptr, 1));
    EXPECT_EQ(nullptr, tree.findChildAt("a", 0));
    EXPECT_EQ(nullptr, tree.findChildAt(std::string(256, 'x').c_str(), 256));
    EXPECT_EQ(nullptr, tree.findChildAt("x", 1));
}

TEST(FindChild, onlyFieldSetsHaveNames)
{
    CFields named;
    named.setName("a");
    CFields array;
    array.addArrayAt(named);
    EXPECT_EQ(nullptr, array.findChildAt("a", 1));
    EXPECT_FALSE(array.isValidChild("a"));
    EXPECT_EQ(nullptr, CFields().findChildAt("a", 1));
    EXPECT_EQ(nullptr, CFields("a").findChildAt("a", 1));
    EXPECT_EQ(nullptr, withoutVector(DT_fields).findChildAt("a", 1));
}

TEST(FindChild, validityByName)
{
    const CFields tree = sample();
    EXPECT_TRUE(tree.isValidChild("a"));
    EXPECT_TRUE(tree.isValidChild("ax", 1));
    EXPECT_TRUE(tree.isValidChild(std::string("b")));
    EXPECT_TRUE(tree.isValidChild(std::string_view("b")));
    EXPECT_FALSE(tree.isValidChild("c"));
    EXPECT_FALSE(tree.isValidChild(""));
    const char* const null = nullptr;
    EXPECT_FALSE(tree.isValidChild(null));
    EXPECT_FALSE(tree.isValidChild(null, 1));
}

TEST(FindId, searchesTheSubtreeAndTheNodeItself)
{
    CFields tree = sample();
    const CFields& constant = tree;
    tree.setID(9);
    EXPECT_EQ(&tree, tree.findID(9));
    EXPECT_EQ(&tree["b"]["c"], tree.findID(3));
    EXPECT_EQ(&tree["b"]["c"], constant.findID(3));
    EXPECT_EQ(nullptr, tree.findID(77));
    CFields scalar(1);
    scalar.setID(4);
    EXPECT_EQ(&scalar, scalar.findID(4));
}

TEST(FindId, invalidIdsFindNothing)
{
    CFields tree = sample();
    EXPECT_EQ(nullptr, tree.findID(0));
    EXPECT_EQ(nullptr, tree.findID(2147483648u));
    EXPECT_EQ(nullptr, tree.findID(4294967295u));
}

TEST(FindId, startsWhereItIsTold)
{
    CFields tree = sample();
    CFields other;
    EXPECT_EQ(&tree["b"]["c"], tree.findID(3, &tree["b"]));
    EXPECT_EQ(&tree["b"], tree.findID(2, &tree["b"]));
    EXPECT_EQ(nullptr, tree.findID(1, &tree["b"]));
    EXPECT_EQ(&tree[0], other.findID(1, &tree));
}

TEST(FindId, aGrandchildComesBeforeALaterMember)
{
    CFields tree;
    CFields& grandchild = tree.addChildRef("a").addChildRef("x", 7);
    tree.addChildRef("b", 7, true);
    EXPECT_EQ(&grandchild, tree.findID(7));
    tree["a"].setID(7);
    EXPECT_EQ(&tree["a"], tree.findID(7));
}

TEST(FindId, passesContainersWithoutVector)
{
    CFields tree;
    tree.addChildRef("a").removeAll(DT_array);
    CFields& b = tree.addChildRef("b", 7);
    EXPECT_EQ(&b, tree.findID(7));
}

TEST(LookUpById, amongDirectMembers)
{
    const CFields tree = sample();
    EXPECT_EQ(0, tree.getChildIdx4ID(1));
    EXPECT_EQ(2, tree.getChildIdx4ID(4));
    EXPECT_EQ(-1, tree.getChildIdx4ID(3)) << "not a direct member";
    EXPECT_EQ(-1, tree.getChildIdx4ID(0));
    EXPECT_STREQ("b", tree.getChildName4ID(2));
    EXPECT_STREQ("", tree.getChildName4ID(5));
    EXPECT_STREQ("", tree.getChildName4ID(3));
    EXPECT_STREQ("", tree.getChildName4ID(0));
    EXPECT_EQ(-1, CFields(5).getChildIdx4ID(1));
    EXPECT_EQ(-1, withoutVector(DT_fields).getChildIdx4ID(1));
}

TEST(LookUpById, theFirstWins)
{
    CFields tree;
    tree.addChildRef("a");
    tree.addChildRef("b", 7);
    tree.addChildRef("c", 7, true);
    EXPECT_EQ(1, tree.getChildIdx4ID(7));
    EXPECT_STREQ("b", tree.getChildName4ID(7));
}

TEST(LookUpById, inArraysToo)
{
    CFields element(1);
    element.setID(5);
    CFields array;
    array.addArrayAt(0);
    array.addArrayAt(element);
    EXPECT_EQ(1, array.getChildIdx4ID(5));
}

TEST(LookUpByName, indexAndId)
{
    const CFields tree = sample();
    EXPECT_EQ(0, tree.getChildIdx4Name("a"));
    EXPECT_EQ(1, tree.getChildIdx4Name("b"));
    EXPECT_EQ(1, tree.getChildIdx4Name("bx", 1));
    EXPECT_EQ(-1, tree.getChildIdx4Name("bx", 2));
    EXPECT_EQ(1u, tree.getChildID4Name("a"));
    EXPECT_EQ(2u, tree.getChildID4Name("bx", 1));
    EXPECT_EQ(0u, tree.getChildID4Name("x"));
}

TEST(LookUpByName, nullAndEmptyNames)
{
    const CFields tree = sample();
    const char* const null = nullptr;
    EXPECT_EQ(-1, tree.getChildIdx4Name(null));
    EXPECT_EQ(-1, tree.getChildIdx4Name(null, 1));
    EXPECT_EQ(-1, tree.getChildIdx4Name(""));
    EXPECT_EQ(-1, tree.getChildIdx4Name("a", 0));
    EXPECT_EQ(0u, tree.getChildID4Name(null));
    EXPECT_EQ(0u, tree.getChildID4Name(null, 1));
    EXPECT_EQ(0u, tree.getChildID4Name(""));
    EXPECT_EQ(0u, tree.getChildID4Name("a", 0));
}

TEST(LookUpByName, withoutMembers)
{
    EXPECT_EQ(-1, CFields().getChildIdx4Name("a"));
    EXPECT_EQ(-1, CFields(DT_fields).getChildIdx4Name("a"));
    EXPECT_EQ(-1, CFields("a").getChildIdx4Name("a"));
    EXPECT_EQ(-1, withoutVector(DT_fields).getChildIdx4Name("a"));
    EXPECT_EQ(0u, CFields(5).getChildID4Name("a"));
}

TEST(LookUpByName, elementsOfAnArrayHaveNoName)
{
    CFields array;
    array.addArrayAt(1);
    array.addArrayAt(2);
    EXPECT_EQ(-1, array.getChildIdx4Name("a"));
}

TEST(LookUpByName, aMatchWithoutIdGivesZero)
{
    CFields tree;
    tree.addChildRef("a");
    EXPECT_EQ(0u, tree.getChildID4Name("a"));
}

TEST(RenameById, givesTheFirstMemberANewName)
{
    CFields tree = sample();
    EXPECT_TRUE(tree.setChildName4ID(2, "new"));
    EXPECT_STREQ("new", tree[1].getName());
    EXPECT_EQ(&tree[1], tree.findChildAt("new", 3));
    EXPECT_EQ(nullptr, tree.findChildAt("b", 1));
}

TEST(RenameById, doesNotMindEqualNames)
{
    CFields tree = sample();
    EXPECT_TRUE(tree.setChildName4ID(2, "a"));
    EXPECT_STREQ("a", tree[1].getName());
    EXPECT_EQ(0, tree.getChildIdx4Name("a"));
}

TEST(RenameById, refusals)
{
    CFields tree = sample();
    EXPECT_FALSE(tree.setChildName4ID(0, "x"));
    EXPECT_FALSE(tree.setChildName4ID(2, nullptr));
    EXPECT_FALSE(tree.setChildName4ID(2, ""));
    EXPECT_FALSE(tree.setChildName4ID(2, std::string(256, 'x').c_str()));
    EXPECT_FALSE(tree.setChildName4ID(3, "x")) << "not a direct member";
    EXPECT_FALSE(tree.setChildName4ID(77, "x"));
    EXPECT_STREQ("b", tree[1].getName());
    EXPECT_FALSE(CFields(5).setChildName4ID(1, "x"));
    EXPECT_TRUE(tree.setChildName4ID(2, std::string(255, 'x').c_str()));
}

TEST(CopyChild, byIndexOrFallback)
{
    const CFields tree = sample();
    const CFields fallback("fallback");
    EXPECT_EQ("deep", tree.copyChildAt(1u, fallback)["c"].asString());
    EXPECT_STREQ("b", tree.copyChildAt(1, fallback).getName());
    EXPECT_EQ("first", tree.copyChildAt(0, fallback).asString());
    EXPECT_EQ("fallback", tree.copyChildAt(4, fallback).asString());
    EXPECT_EQ("fallback", tree.copyChildAt(-1, fallback).asString());
    EXPECT_EQ("fallback", tree.copyChildAt(std::size_t{4}, fallback).asString());
    EXPECT_EQ("first", tree.copyChildAt(0L, fallback).asString());
    EXPECT_EQ("fallback", withoutVector(DT_array).copyChildAt(0, fallback).asString());
}

TEST(CopyChild, byNameOrFallback)
{
    const CFields tree = sample();
    const CFields fallback("fallback");
    EXPECT_EQ("first", tree.copyChildAt("a", fallback).asString());
    EXPECT_EQ("first", tree.copyChildAt("ab", 1, fallback).asString());
    EXPECT_EQ("first", tree.copyChildAt(std::string("a"), fallback).asString());
    EXPECT_EQ("first", tree.copyChildAt(std::string_view("a"), fallback).asString());
    EXPECT_EQ("fallback", tree.copyChildAt("x", fallback).asString());
    EXPECT_EQ("fallback", tree.copyChildAt("ab", 2, fallback).asString());
    EXPECT_EQ("fallback", tree.copyChildAt(std::string("x"), fallback).asString());
    EXPECT_EQ("fallback", tree.copyChildAt(std::string_view("x"), fallback).asString());
    const char* const null = nullptr;
    EXPECT_EQ("fallback", tree.copyChildAt(null, fallback).asString());
    EXPECT_EQ("fallback", CFields(5).copyChildAt("a", fallback).asString());
}

TEST(CopyChild, ofAScalarByIndexThrows)
{
    EXPECT_EQ("[murv::CFields::operator []#0] requires DT_array or DT_fields",
              thrown([] { static_cast<void>(CFields(5).copyChildAt(0, CFields())); }));
}

}  // namespace

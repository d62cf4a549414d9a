// tests/core/field_members_test.cpp - adding and counting members, of subscripts and of iterating.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "murv/fields.h"
#include "tests/support/containers.h"
#include "tests/support/thrown.h"

namespace
{

using namespace murv;
using murv::tests::countedArray;
using murv::tests::thrown;
using murv::tests::withoutVector;

constexpr const char* s_cpNoVectorText = "m_tValue.m_tActValue.m_uMultiValue.m_pFV=NULL memory pointer";

std::string at(const char* function, const char* text)
{
    return std::string("[") + function + "#0] " + text;
}

TEST(AddChild, byNameMakesAFieldSet)
{
    CFields node;
    const CFields& a = node.addChildRef("a", 0, false);
    EXPECT_EQ(DT_fields, node.getDT());
    EXPECT_EQ(1u, node.getChildCount());
    EXPECT_STREQ("a", a.getName());
    EXPECT_EQ(DT_null, a.getDT());
    EXPECT_EQ(0u, a.getID());
}

TEST(AddChild, againByNameReturnsTheMember)
{
    CFields node;
    CFields& a = node.addChildRef("a");
    a = 5;
    EXPECT_EQ(&a, &node.addChildRef("a", 9, false));
    EXPECT_EQ(1u, node.getChildCount());
    EXPECT_EQ(5, a.asSint32());
    EXPECT_EQ(0u, a.getID()) << "the member is returned unchanged";
}

TEST(AddChild, duplicatesMayBeAllowed)
{
    CFields node;
    CFields& first = node.addChildRef("a", 7);
    CFields& second = node.addChildRef("a", 7, true);
    EXPECT_NE(&first, &second);
    EXPECT_EQ(2u, node.getChildCount());
    EXPECT_EQ(7u, second.getID());
    EXPECT_EQ(&first, node.findChildAt("a", 1));
    EXPECT_EQ(&first, node.findID(7));
}

TEST(AddChild, withoutANameMakesAnArray)
{
    const char* const null = nullptr;
    for (const char* const name : {null, ""})
    {
        CFields node;
        node.addChildRef(name);
        EXPECT_EQ(DT_array, node.getDT());
        EXPECT_EQ(1u, node.getChildCount());
        CFields other;
        other.addChildPtr(name);
        EXPECT_EQ(DT_array, other.getDT());
    }
}

TEST(AddChild, toAnArrayIgnoresNameAndId)
{
    CFields array(DT_array);
    const CFields& element = array.addChildRef("a", 5);
    EXPECT_STREQ("", element.getName());
    EXPECT_EQ(0u, element.getID());
    EXPECT_NE(&element, &array.addChildRef("a", 5));
    EXPECT_EQ(2u, array.getChildCount());
    EXPECT_NE(nullptr, array.addChildPtr(nullptr));
    EXPECT_EQ(3u, array.getChildCount());
}

TEST(AddChild, byIdReturnsTheNodeWhereverItLies)
{
    CFields node;
    CFields& deep = node.addChildRef("a").addChildRef("b", 7);
    EXPECT_EQ(&deep, &node.addChildRef("c", 7));
    EXPECT_EQ(1u, node.getChildCount());
    node.setID(9);
    EXPECT_EQ(&node, &node.addChildRef("d", 9));
    EXPECT_EQ(1u, node.getChildCount());
    const char* const null = nullptr;
    EXPECT_EQ(&deep, &node.addChildRef(null, 7));
}

TEST(AddChild, theNameIsLookedForBeforeTheId)
{
    CFields node;
    CFields& a = node.addChildRef("a", 1);
    node.addChildRef("b", 2);
    EXPECT_EQ(&a, &node.addChildRef("a", 2));
}

TEST(AddChild, toAFieldSetWithoutNameIsUnnamed)
{
    CFields node(DT_fields);
    EXPECT_STREQ("", node.addChildRef("").getName());
    EXPECT_STREQ("", node.addChildRef("").getName());
    EXPECT_EQ(2u, node.getChildCount());
}

TEST(AddChild, aNameBeyond255BytesIsDropped)
{
    CFields node;
    const std::string longName(256, 'x');
    EXPECT_STREQ("", node.addChildRef(longName.c_str()).getName());
    EXPECT_EQ(DT_fields, node.getDT());
    EXPECT_STREQ("", node.addChildRef(longName).getName());
    EXPECT_EQ(2u, node.getChildCount());
    EXPECT_EQ(255u, node.addChildRef(std::string(255, 'x')).getNameLen());
}

TEST(AddChild, idsOutOfRangeGiveNone)
{
    CFields node;
    EXPECT_EQ(0u, node.addChildRef("a", 2147483648u).getID());
    EXPECT_EQ(2147483647u, node.addChildRef("b", 2147483647u).getID());
    EXPECT_EQ(0u, node.addChildRef("c", 4294967295u).getID());
}

TEST(AddChild, namesKeepTheirNulBytesWhenTheLengthIsGiven)
{
    CFields node;
    const std::string name("a\0b", 3);
    EXPECT_EQ(3u, node.addChildRef(name).getNameLen());
    EXPECT_EQ(3u, node.addChildPtr(std::string_view(name))->getNameLen());
    EXPECT_EQ(1u, node.getChildCount());
    EXPECT_EQ(1u, node.addChildRef(name.c_str()).getNameLen());
    EXPECT_EQ(2u, node.getChildCount());
}

TEST(AddChild, namesDifferByCase)
{
    CFields node;
    node.addChildRef("a");
    node.addChildRef("A");
    EXPECT_EQ(2u, node.getChildCount());
}

TEST(AddChild, toAScalarThrows)
{
    const char* const text = "requires DT_fields or DT_array";
    for (const CFields& scalar : {CFields(true), CFields(1), CFields(1u), CFields(1.0), CFields("x")})
    {
        CFields node(scalar);
        EXPECT_EQ(at("murv::CFields::addChildRef", text), thrown([&] { node.addChildRef("a"); }));
        EXPECT_EQ(at("murv::CFields::addChildPtr", text), thrown([&] { node.addChildPtr("a"); }));
        EXPECT_EQ(scalar, node);
    }
}

TEST(AddChild, toAContainerWithoutVectorThrows)
{
    for (const E_DataType dt : {DT_array, DT_fields})
    {
        CFields node = withoutVector(dt);
        CFields& self = node;
        EXPECT_EQ(at("murv::CFields::addChildRef", s_cpNoVectorText), thrown([&] { self.addChildRef("a"); }));
        EXPECT_EQ(at("murv::CFields::addChildPtr", s_cpNoVectorText), thrown([&] { self.addChildPtr("a"); }));
    }
}

TEST(AddArray, appendsAndReturnsTheMember)
{
    CFields array;
    CFields& element = array.addArrayAt(CFields(5));
    EXPECT_EQ(DT_array, array.getDT());
    EXPECT_EQ(&element, &array[0]);
    EXPECT_EQ(5, element.asSint32());
    array.addArrayAt("x");
    EXPECT_EQ("x", array[1].asString());
}

TEST(AddArray, takesTheWholeNodeOrItsValuesOnly)
{
    CFields value("x");
    value.setName("name");
    value.setID(5);
    value.setComment("//", CP_before);
    value.setValue("y", VK_fix);
    value.setVK(VK_fix);
    CFields array;
    const CFields& whole = array.addArrayAt(value);
    EXPECT_STREQ("name", whole.getName());
    EXPECT_EQ(5u, whole.getID());
    EXPECT_TRUE(whole.hasComment(CP_before));
    EXPECT_EQ("y", whole.asString(VK_fix));
    const CFields& bare = array.addArrayAt(value, true);
    EXPECT_STREQ("", bare.getName());
    EXPECT_EQ(0u, bare.getID());
    EXPECT_FALSE(bare.isComment());
    EXPECT_EQ("y", bare.asString(VK_fix));
    EXPECT_EQ(VK_fix, bare.getVK());
}

TEST(AddArray, movesAValueIn)
{
    CFields value;
    value.setName("name");
    const CFields& member = value.addChildRef("a");
    CFields array;
    const CFields& element = array.addArrayAt(std::move(value));
    EXPECT_STREQ("name", element.getName());
    EXPECT_EQ(&member, element.findChildAt("a", 1));
    EXPECT_TRUE(value.isNull());  // NOLINT(bugprone-use-after-move)
}

TEST(AddArray, toAnythingElseThrows)
{
    const std::string expected = at("murv::CFields::addArrayAt", "requires DT_array");
    for (const CFields& other :
         {CFields(DT_fields), CFields(true), CFields(1), CFields(1u), CFields(1.0), CFields("x")})
    {
        CFields node(other);
        const CFields value(1);
        EXPECT_EQ(expected, thrown([&] { node.addArrayAt(value); }));
        EXPECT_EQ(expected, thrown([&] { node.addArrayAt(CFields(1)); }));
    }
}

TEST(AddArray, withoutVectorThrows)
{
    CFields node = CFields();
    node.removeAll(DT_array);
    const std::string expected = at("murv::CFields::addArrayAt", s_cpNoVectorText);
    const CFields value(1);
    EXPECT_EQ(expected, thrown([&] { node.addArrayAt(value); }));
    EXPECT_EQ(expected, thrown([&] { node.addArrayAt(CFields(1)); }));
}

TEST(AddArray, aRefusedMoveLeavesTheValue)
{
    CFields value("kept");
    CFields scalar(1);
    thrown([&] { scalar.addArrayAt(std::move(value)); });
    EXPECT_EQ("kept", value.asString());  // NOLINT(bugprone-use-after-move)
}

TEST(Count, ofEveryType)
{
    EXPECT_EQ(0u, CFields().getChildCount());
    EXPECT_EQ(0u, CFields(5).getChildCount());
    EXPECT_EQ(0u, CFields("abc").getChildCount());
    EXPECT_EQ(0u, CFields(DT_array).getChildCount());
    EXPECT_EQ(3u, countedArray(3).getChildCount());
    EXPECT_EQ(0u, withoutVector(DT_fields).getChildCount());
}

TEST(Count, emptinessOfEveryType)
{
    EXPECT_TRUE(CFields().emptyChild());
    EXPECT_TRUE(CFields(DT_array).emptyChild());
    EXPECT_TRUE(CFields(DT_fields).emptyChild());
    EXPECT_TRUE(withoutVector(DT_array).emptyChild());
    EXPECT_FALSE(countedArray(3).emptyChild());
    for (const CFields& scalar : {CFields(true), CFields(1), CFields(1u), CFields(1.0), CFields("")})
        EXPECT_FALSE(scalar.emptyChild());
}

TEST(Count, validIndexes)
{
    const CFields array = countedArray(3);
    EXPECT_TRUE(array.isValidChild(0u));
    EXPECT_TRUE(array.isValidChild(2u));
    EXPECT_FALSE(array.isValidChild(3u));
    EXPECT_FALSE(array.isValidChild(-1));
    EXPECT_FALSE(CFields(5).isValidChild(0u));
}

TEST(Count, membersOfMembers)
{
    CFields tree;
    EXPECT_EQ(0u, tree.getMemberCount());
    EXPECT_EQ(0u, CFields(5).getMemberCount());
    CFields& a = tree.addChildRef("a");
    a.addChildRef("b");
    a.addChildRef("c").addArrayAt(1);
    tree.addChildRef("d");
    EXPECT_EQ(5u, tree.getMemberCount());
    EXPECT_EQ(3u, tree.getMemberCount(&a));
    EXPECT_EQ(3u, CFields(7).getMemberCount(&a)) << "the start node decides";
    EXPECT_EQ(0u, withoutVector(DT_array).getMemberCount());
}

TEST(Subscript, byIndexReturnsTheMember)
{
    CFields array = countedArray(3);
    const CFields& constant = array;
    EXPECT_EQ(2, array[2].asSint32());
    EXPECT_EQ(2, array[2u].asSint32());
    EXPECT_EQ(2, array[std::size_t{2}].asSint32());
    EXPECT_EQ(2, array[2L].asSint32());
    EXPECT_EQ(&array[2], &constant[2]);
    EXPECT_EQ(&array[2], &constant[2u]);
    EXPECT_EQ(&array[2], &constant[2LL]);
    array[0] = "new";
    EXPECT_EQ("new", constant[0].asString());
}

TEST(Subscript, beyondTheEnd)
{
    CFields array = countedArray(3);
    const CFields& constant = array;
    const std::string expected = at("murv::CFields::operator []", "found not a field for the index");
    EXPECT_EQ(expected, thrown([&] { static_cast<void>(array[5]); }));
    EXPECT_EQ(expected, thrown([&] { static_cast<void>(array[3u]); }));
    EXPECT_EQ(expected, thrown([&] { static_cast<void>(array[0x100000000LL]); }));
    EXPECT_EQ(&CFields::nullRef, &constant[5]);
    EXPECT_EQ(&CFields::nullRef, &constant[3u]);
    EXPECT_EQ(&CFields::nullRef, &constant[0x100000000LL]);
    EXPECT_EQ(3u, array.getChildCount());
}

TEST(Subscript, negative)
{
    CFields array = countedArray(3);
    const CFields& constant = array;
    const std::string expected = at("murv::CFields::operator []", "index cannot be negative");
    EXPECT_EQ(expected, thrown([&] { static_cast<void>(array[-1]); }));
    EXPECT_EQ(expected, thrown([&] { static_cast<void>(array[-1L]); }));
    EXPECT_EQ(expected, thrown([&] { static_cast<void>(constant[-1]); }));
    EXPECT_EQ(expected, thrown([&] { static_cast<void>(constant[-1LL]); }));
    CFields scalar(1);
    EXPECT_EQ(expected, thrown([&] { static_cast<void>(scalar[-1]); })) << "the sign is tested first";
}

TEST(Subscript, ofAScalarThrows)
{
    for (const CFields& scalar : {CFields(), CFields(true), CFields(1), CFields(1u), CFields(1.0), CFields("x")})
    {
        CFields node(scalar);
        EXPECT_EQ(at("murv::CFields::operator []", "requires DT_fields or DT_array"),
                  thrown([&] { static_cast<void>(node[0]); }));
        EXPECT_EQ(at("murv::CFields::operator []", "requires DT_array or DT_fields"),
                  thrown([&] { static_cast<void>(scalar[0]); }));
    }
}

TEST(Subscript, withoutVector)
{
    CFields node = CFields();
    node.removeAll(DT_fields);
    const CFields& constant = node;
    EXPECT_EQ(at("murv::CFields::operator []", s_cpNoVectorText), thrown([&] { static_cast<void>(node[0]); }));
    EXPECT_EQ(&CFields::nullRef, &constant[0]);
    EXPECT_EQ(&CFields::freeNull, &node["a"]);
    EXPECT_EQ(&CFields::nullRef, &constant["a"]);
}

TEST(Subscript, byNameReturnsTheFirstMember)
{
    CFields node;
    CFields& a = node.addChildRef("a");
    node.addChildRef("a", 0, true);
    const CFields& constant = node;
    EXPECT_EQ(&a, &node["a"]);
    EXPECT_EQ(&a, &node[std::string("a")]);
    EXPECT_EQ(&a, &node[std::string_view("a")]);
    EXPECT_EQ(&a, &node[CStaticString("a")]);
    EXPECT_EQ(&a, &constant["a"]);
    EXPECT_EQ(&a, &constant[std::string("a")]);
    EXPECT_EQ(&a, &constant[std::string_view("a")]);
    EXPECT_EQ(&a, &constant[CStaticString("a")]);
}

TEST(Subscript, byAMissingNameNeverCreates)
{
    CFields node;
    node.addChildRef("a");
    const CFields& constant = node;
    EXPECT_EQ(&CFields::freeNull, &node["missing"]);
    EXPECT_EQ(&CFields::freeNull, &node[std::string("missing")]);
    EXPECT_EQ(&CFields::freeNull, &node[std::string_view("missing")]);
    EXPECT_EQ(&CFields::freeNull, &node[CStaticString("missing")]);
    EXPECT_EQ(&CFields::freeNull, &node[""]);
    EXPECT_EQ(&CFields::nullRef, &constant["missing"]);
    EXPECT_EQ(&CFields::nullRef, &constant[std::string("missing")]);
    EXPECT_EQ(&CFields::nullRef, &constant[std::string_view("missing")]);
    EXPECT_EQ(&CFields::nullRef, &constant[CStaticString("missing")]);
    EXPECT_EQ(1u, node.getChildCount());
    const char* const null = nullptr;
    EXPECT_EQ(&CFields::freeNull, &node[null]);
    EXPECT_EQ(&CFields::nullRef, &constant[null]);
}

TEST(Subscript, byNameOfOtherTypesFindsNothing)
{
    CFields scalar(5);
    EXPECT_EQ(&CFields::freeNull, &scalar["a"]);
    EXPECT_EQ(&CFields::nullRef, &static_cast<const CFields&>(scalar)["a"]);
    CFields array = countedArray(3);
    EXPECT_EQ(&CFields::freeNull, &array["a"]);
}

TEST(GetChildAt, returnsTheMemberOrNullRef)
{
    const CFields array = countedArray(3);
    EXPECT_EQ(1, array.getChildAt(1).asSint32());
    EXPECT_EQ(&CFields::nullRef, &array.getChildAt(3));
    EXPECT_EQ(&CFields::nullRef, &CFields(5).getChildAt(0));
}

TEST(Iterate, overMembersInOrder)
{
    const CFields array = countedArray(3);
    std::vector<int> seen;
    for (const CFields& member : array)
        seen.push_back(member.asSint32());
    EXPECT_EQ((std::vector<int>{0, 1, 2}), seen);
}

TEST(Iterate, nonConstantMembersCanBeChanged)
{
    CFields array = countedArray(3);
    for (CFields& member : array)
        member = member.asSint32() * 2;
    EXPECT_EQ(4, array[2].asSint32());
}

TEST(Iterate, nothingToSee)
{
    for (const CFields& node : {CFields(), CFields(5), CFields("x"), CFields(DT_array), CFields(DT_fields)})
        EXPECT_TRUE(node.begin() == node.end());
    const CFields node = withoutVector(DT_array);
    EXPECT_TRUE(node.begin() == node.end());
}

TEST(Iterate, overManyBlocksInBothDirections)
{
    for (const int count : {1, 3, 4, 5, 12, 13, 63, 64, 65, 200, 1000})
    {
        CFields set(DT_fields);
        for (int i = 0; i < count; ++i)
            set.addChildRef("n" + std::to_string(i)) = i;
        int expected = 0;
        for (const CFields& member : set)
            ASSERT_EQ(expected++, member.asSint32());
        ASSERT_EQ(count, expected);
        for (auto it = set.end(); it != set.begin();)
            ASSERT_EQ(--expected, (*--it).asSint32());
        ASSERT_EQ(0, expected);
    }
}

TEST(Iterate, randomAccess)
{
    CFields array(DT_array);
    for (int i = 0; i < 100; ++i)
        array.addArrayAt(99 - i);
    const auto begin = array.begin();
    EXPECT_EQ(100, array.end() - begin);
    EXPECT_EQ(94, begin[5].asSint32());
    EXPECT_EQ(94, (begin + 5)->asSint32());
    EXPECT_EQ(94, (5 + begin)->asSint32());
    EXPECT_EQ(0, (array.end() - 1)->asSint32());
    EXPECT_TRUE(begin < array.end());
    EXPECT_TRUE(array.end() > begin);
    EXPECT_TRUE(begin <= begin);
    EXPECT_TRUE(begin >= begin);
    auto it = begin;
    EXPECT_EQ(99, (it++)->asSint32());
    EXPECT_EQ(98, (it--)->asSint32());
    it += 50;
    it -= 10;
    EXPECT_EQ(40, it - begin);
    const auto found = std::lower_bound(array.begin(), array.end(), 30,
                                        [](const CFields& member, int value) { return member.asSint32() > value; });
    EXPECT_EQ(30, found->asSint32());
}

TEST(Iterate, staysValidWhileMembersAreAppended)
{
    for (const int before : {1, 3, 4, 5, 11, 12, 13, 63, 64})
    {
        CFields set(DT_fields);
        for (int i = 0; i < before; ++i)
            set.addChildRef("n" + std::to_string(i)) = i;
        auto it = set.begin() + (before - 1);
        for (int i = before; i < 200; ++i)
            set.addChildRef("n" + std::to_string(i)) = i;
        for (int expected = before - 1; expected < 200; ++expected, ++it)
        {
            ASSERT_TRUE(it != set.end());
            ASSERT_EQ(expected, it->asSint32());
        }
        ASSERT_TRUE(it == set.end());
    }
}

TEST(Iterate, appendingWhileWalkingVisitsTheNewMembers)
{
    CFields array(DT_array);
    array.addArrayAt(0);
    int seen = 0;
    for (auto it = array.begin(); it != array.end(); ++it)
    {
        ASSERT_EQ(seen++, it->asSint32());
        if (seen < 100)
            array.addArrayAt(seen);
    }
    EXPECT_EQ(100, seen);
}

TEST(References, stayValidWhileMembersAreAppended)
{
    CFields tree;
    std::vector<CFields*> members;
    for (int i = 0; i < 5000; ++i)
    {
        members.push_back(&tree.addChildRef("n" + std::to_string(i)));
        *members.back() = i;
    }
    for (int i = 0; i < 5000; ++i)
    {
        ASSERT_EQ(i, members[static_cast<std::size_t>(i)]->asSint32());
        ASSERT_EQ(members[static_cast<std::size_t>(i)], &tree[i]);
    }
}

TEST(References, theUsualTwoMembers)
{
    CFields tree;
    CFields& a = tree.addChildRef("a");
    CFields& b = tree.addChildRef("b");
    a = 1;
    b = 2;
    EXPECT_EQ(1, tree["a"].asSint32());
    EXPECT_EQ(2, tree["b"].asSint32());
}

TEST(References, stayValidWhileLaterMembersAreRemoved)
{
    for (const E_DataType dt : {DT_array, DT_fields})
    {
        CFields tree(dt);
        std::vector<CFields*> members;
        for (int i = 0; i < 300; ++i)
        {
            members.push_back(&tree.addChildRef("n" + std::to_string(i)));
            *members.back() = i;
        }
        for (unsigned int kept = 299; kept > 0; kept -= 1 + kept / 9)
        {
            while (tree.getChildCount() > kept + 1)
                ASSERT_TRUE(tree.removeChildAt(kept));
            tree.addChildRef("again") = -1;  // after them, in place of one that was removed
            ASSERT_TRUE(tree.removeChildAt(kept));
            for (unsigned int i = 0; i < kept; ++i)
            {
                ASSERT_EQ(members[i], &tree[i]);
                ASSERT_EQ(i, members[i]->asUint32());
            }
        }
    }
}

}  // namespace

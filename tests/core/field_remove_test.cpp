// tests/core/field_remove_test.cpp - removing members and of resizing arrays.
#include <gtest/gtest.h>

#include <string>

#include "murv/fields.h"
#include "tests/support/containers.h"
#include "tests/support/thrown.h"

namespace
{

using namespace murv;
using murv::tests::countedArray;
using murv::tests::thrown;

CFields abc()
{
    CFields tree;
    tree.addChildRef("a") = 1;
    tree.addChildRef("b") = 2;
    tree.addChildRef("c") = 3;
    return tree;
}

TEST(RemoveChild, byIndexShiftsTheLaterOnes)
{
    CFields array = countedArray(3);
    EXPECT_TRUE(array.removeChildAt(1u));
    EXPECT_EQ(2u, array.getChildCount());
    EXPECT_EQ(0, array[0].asSint32());
    EXPECT_EQ(2, array[1].asSint32());
    EXPECT_TRUE(array.removeChildAt(0));
    EXPECT_EQ(2, array[0].asSint32());
    EXPECT_TRUE(array.removeChildAt(0L));
    EXPECT_EQ(0u, array.getChildCount());
    EXPECT_EQ(DT_array, array.getDT());
    array.addArrayAt("again");
    EXPECT_EQ("again", array[0].asString());
}

TEST(RemoveChild, ofAnIndexThatDoesNotExist)
{
    CFields array = countedArray(3);
    CFields out("kept");
    EXPECT_FALSE(array.removeChildAt(3u, &out));
    EXPECT_FALSE(array.removeChildAt(-1, &out));
    EXPECT_FALSE(array.removeChildAt(-1L, &out));
    EXPECT_FALSE(array.removeChildAt(0x100000000ULL, &out));
    EXPECT_EQ(3u, array.getChildCount());
    EXPECT_EQ("kept", out.asString());
    EXPECT_FALSE(CFields().removeChildAt(0));
    EXPECT_FALSE(CFields("abc").removeChildAt(0));
    CFields empty;
    empty.removeAll(DT_array);
    EXPECT_FALSE(empty.removeChildAt(0));
}

TEST(RemoveChild, copiesTheMemberOutFirst)
{
    CFields tree = abc();
    tree["a"].setID(5);
    tree["a"].setComment("//", CP_before);
    CFields out("before");
    EXPECT_TRUE(tree.removeChildAt(0, &out));
    EXPECT_EQ(1, out.asSint32());
    EXPECT_STREQ("a", out.getName());
    EXPECT_EQ(5u, out.getID());
    EXPECT_TRUE(out.hasComment(CP_before));
    EXPECT_EQ(2u, tree.getChildCount());
    EXPECT_STREQ("b", tree[0].getName());
}

TEST(RemoveChild, byNameRemovesTheFirst)
{
    CFields tree = abc();
    tree.addChildRef("a", 0, true) = 4;
    CFields out;
    EXPECT_TRUE(tree.removeChildAt("a", &out));
    EXPECT_EQ(1, out.asSint32());
    EXPECT_EQ(4, tree["a"].asSint32());
    EXPECT_TRUE(tree.removeChildAt("bx", 1, &out));
    EXPECT_EQ(2, out.asSint32());
    EXPECT_TRUE(tree.removeChildAt(std::string("c"), &out));
    EXPECT_EQ(3, out.asSint32());
    EXPECT_TRUE(tree.removeChildAt(std::string_view("a")));
    EXPECT_EQ(0u, tree.getChildCount());
    EXPECT_EQ(DT_fields, tree.getDT());
}

TEST(RemoveChild, byNameThatDoesNotExist)
{
    CFields tree = abc();
    CFields out("kept");
    const char* const null = nullptr;
    EXPECT_FALSE(tree.removeChildAt("x", &out));
    EXPECT_FALSE(tree.removeChildAt("", &out));
    EXPECT_FALSE(tree.removeChildAt(null, &out));
    EXPECT_FALSE(tree.removeChildAt(null, 1, &out));
    EXPECT_FALSE(tree.removeChildAt("a", 0, &out));
    EXPECT_FALSE(tree.removeChildAt(std::string("x"), &out));
    EXPECT_EQ("kept", out.asString());
    EXPECT_EQ(3u, tree.getChildCount());
}

TEST(RemoveChild, byNameIsForFieldSetsOnly)
{
    CFields named(1);
    named.setName("a");
    CFields array;
    array.addArrayAt(named);
    EXPECT_FALSE(array.removeChildAt("a"));
    EXPECT_FALSE(CFields("a").removeChildAt("a"));
}

TEST(RemoveAllChildren, emptiesContainersAndResetsOffsets)
{
    for (CFields node : {countedArray(3), abc()})
    {
        const E_DataType dt = node.getDT();
        node.setOffsetStart(3);
        node.setOffsetEnd(4);
        node.removeChildAll();
        EXPECT_EQ(0u, node.getChildCount());
        EXPECT_EQ(dt, node.getDT());
        EXPECT_EQ(0, node.getOffsetStart());
        EXPECT_EQ(0, node.getOffsetEnd());
        node.addChildRef("a");
        EXPECT_EQ(1u, node.getChildCount());
    }
}

TEST(RemoveAllChildren, leavesScalarsAlone)
{
    CFields node("x");
    node.setOffsetStart(3);
    node.removeChildAll();
    EXPECT_EQ("x", node.asString());
    EXPECT_EQ(3, node.getOffsetStart());
}

TEST(RemoveAll, resetsBothValuesToTheType)
{
    for (const E_DataType dt : {DT_null, DT_bool, DT_sint, DT_uint, DT_double, DT_codelist})
    {
        CFields node("first");
        node.setValue("second", VK_fix);
        node.setVK(VK_fix);
        node.setName("name");
        node.removeAll(dt);
        EXPECT_EQ(dt, node.getDT());
        EXPECT_EQ(dt, node.getDT(VK_fix));
        EXPECT_EQ(0u, node.getValueRef().m_ullValue);
        EXPECT_EQ(0u, node.getValueRef(VK_fix).m_ullValue);
        EXPECT_EQ(VK_actual, node.getVK());
        EXPECT_STREQ("name", node.getName());
    }
}

TEST(RemoveAll, resetsTheOffsetsOfContainersOnly)
{
    CFields node = abc();
    node.setOffsetEnd(4);
    node.removeAll(DT_null);
    EXPECT_EQ(0, node.getOffsetEnd());
    CFields scalar(1);
    scalar.setOffsetEnd(4);
    scalar.removeAll(DT_null);
    EXPECT_EQ(4, scalar.getOffsetEnd());
}

TEST(RemoveAll, withAContainerTypeLeavesNoVector)
{
    for (const E_DataType dt : {DT_array, DT_fields})
    {
        CFields node(5);
        node.setValue(6, VK_fix);
        node.removeAll(dt);
        EXPECT_EQ(dt, node.getDT());
        EXPECT_EQ(DT_null, node.getDT(VK_fix));
        EXPECT_EQ(0u, node.getChildCount());
        EXPECT_EQ("[murv::CFields::addChildRef#0] m_tValue.m_tActValue.m_uMultiValue.m_pFV=NULL memory pointer",
                  thrown([&] { node.addChildRef("a"); }));
        node.setValue(dt);
        node.addChildRef("a");
        EXPECT_EQ(1u, node.getChildCount());
    }
}

TEST(RemoveAll, aNodeWithoutVectorIsAnEmptyOneEverywhereElse)
{
    for (const E_DataType dt : {DT_array, DT_fields})
    {
        CFields node;
        node.removeAll(dt);
        EXPECT_TRUE(node == CFields(dt));
        EXPECT_TRUE(CFields(dt) == node);
        EXPECT_FALSE(node < CFields(dt));
        EXPECT_EQ(0, node.compare(CFields(dt)));
        EXPECT_EQ(0u, CFields(node).getChildCount());
        EXPECT_EQ(0u, node.getMemberCount());
        EXPECT_TRUE(node.isConvertible(DT_null));
        EXPECT_EQ(nullptr, node.findID(1));
        EXPECT_TRUE(node.begin() == node.end());
        EXPECT_EQ(&CFields::nullRef, &node.getChildAt(0));
        CFields other(5);
        other.swapField(node, true);
        EXPECT_EQ(dt, other.getDT());
        EXPECT_EQ(0u, other.getChildCount());
        other.removeChildAll();
        EXPECT_EQ(dt, other.getDT());
        CFields parent;
        parent.addArrayAt(other);
        parent.addArrayAt(static_cast<CFields&&>(other));
        EXPECT_EQ(2u, parent.getMemberCount());
    }
}

TEST(RemoveAll, anUnknownTypeThrows)
{
    CFields node("kept");
    EXPECT_EQ("[murv::CFields::clearValue#0] Unknown data type(8)",
              thrown([&] { node.removeAll(static_cast<E_DataType>(8)); }));
    EXPECT_EQ("kept", node.asString());
}

TEST(ResizeArray, shrinksOnly)
{
    CFields array = countedArray(3);
    array.resizeArray(3);
    EXPECT_EQ(3u, array.getChildCount());
    EXPECT_EQ("[murv::CFields::operator []#0] found not a field for the index", thrown([&] { array.resizeArray(5); }));
    EXPECT_EQ("[murv::CFields::operator []#0] found not a field for the index", thrown([&] { array.resizeArray(4); }));
    EXPECT_EQ(3u, array.getChildCount());
    array.resizeArray(1);
    EXPECT_EQ(1u, array.getChildCount());
    EXPECT_EQ(0, array[0].asSint32());
}

TEST(ResizeArray, toNothingEmptiesItAndResetsItsOffsets)
{
    CFields array = countedArray(3);
    array.setOffsetStart(1);
    array.setOffsetEnd(2);
    array.resizeArray(0);
    EXPECT_EQ(0u, array.getChildCount());
    EXPECT_EQ(DT_array, array.getDT());
    EXPECT_EQ(0, array.getOffsetStart());
    EXPECT_EQ(0, array.getOffsetEnd());
}

TEST(ResizeArray, toNothingResetsTheOffsetsOfAnEmptyOneToo)
{
    CFields array(DT_array);
    array.setOffsetStart(1);
    array.setOffsetEnd(2);
    array.resizeArray(0);
    EXPECT_EQ(0, array.getOffsetStart());
    EXPECT_EQ(0, array.getOffsetEnd());
}

TEST(ResizeArray, keepsOffsetsWhenSomeStay)
{
    CFields array = countedArray(3);
    array.setOffsetStart(1);
    array.resizeArray(2);
    EXPECT_EQ(1, array.getOffsetStart());
}

TEST(ResizeArray, makesANullNodeAnArray)
{
    CFields node;
    node.resizeArray(0);
    EXPECT_EQ(DT_array, node.getDT());
    CFields other;
    EXPECT_EQ("[murv::CFields::operator []#0] found not a field for the index", thrown([&] { other.resizeArray(1); }));
    EXPECT_EQ(DT_array, other.getDT());
}

TEST(ResizeArray, ofAnythingElseThrows)
{
    for (const CFields& other : {abc(), CFields(true), CFields(1), CFields(1u), CFields(1.0), CFields("x")})
    {
        CFields node(other);
        EXPECT_EQ("[murv::CFields::resizeArray#0] requires DT_array", thrown([&] { node.resizeArray(0); }));
        EXPECT_EQ("[murv::CFields::resizeArray#0] requires DT_array", thrown([&] { node.resizeArray(9); }));
    }
}

TEST(ResizeArray, acrossManyBlocks)
{
    for (unsigned int keep = 0; keep <= 100; ++keep)
    {
        CFields array = countedArray(100);
        array.resizeArray(keep);
        ASSERT_EQ(keep, array.getChildCount());
        for (unsigned int i = 0; i < keep; ++i)
            ASSERT_EQ(i, array[i].asUint32());
        array.addArrayAt("next");
        ASSERT_EQ("next", array[keep].asString());
    }
}

TEST(RemoveChild, anywhereAcrossManyBlocks)
{
    for (unsigned int gone = 0; gone < 100; ++gone)
    {
        CFields array(DT_array);
        for (int i = 0; i < 100; ++i)
            array.addArrayAt(i);
        ASSERT_TRUE(array.removeChildAt(gone));
        ASSERT_EQ(99u, array.getChildCount());
        for (unsigned int i = 0; i < 99; ++i)
            ASSERT_EQ(i < gone ? i : i + 1, array[i].asUint32());
    }
}

}  // namespace

// tests/core/field_compare_test.cpp - equality and order.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "murv/fields.h"

namespace
{

using namespace murv;

CFields arrayOf(std::initializer_list<CFields> members)
{
    CFields array(DT_array);
    for (const CFields& member : members)
        array.addArrayAt(member);
    return array;
}

CFields field(const char* name, const CFields& value)
{
    CFields node;
    node.addChildRef(name) = value;
    return node;
}

/// All seven operators and compare() agree.
void expectOrder(const CFields& a, const CFields& b, int order)
{
    EXPECT_EQ(order, a.compare(b));
    EXPECT_EQ(-order, b.compare(a));
    EXPECT_EQ(order == 0, a == b);
    EXPECT_EQ(order != 0, a != b);
    EXPECT_EQ(order < 0, a < b);
    EXPECT_EQ(order > 0, a > b);
    EXPECT_EQ(order <= 0, a <= b);
    EXPECT_EQ(order >= 0, a >= b);
}

TEST(Compare, typesAreInOrder)
{
    const CFields rows[] = {CFields(),   arrayOf({1, 2, 3}), CFields(DT_fields), CFields(true),
                            CFields(-5), CFields(0u),        CFields(-1e300),    CFields("")};
    for (std::size_t a = 0; a < std::size(rows); ++a)
    {
        for (std::size_t b = 0; b < std::size(rows); ++b)
            expectOrder(rows[a], rows[b], a < b ? -1 : a > b ? 1 : 0);
    }
}

TEST(Compare, signedAndUnsignedAreDifferentTypes)
{
    EXPECT_FALSE(CFields(1) == CFields(1u));
    EXPECT_TRUE(CFields(1) < CFields(1u));
    EXPECT_TRUE(CFields(9) < CFields(1u));
    EXPECT_TRUE(CFields(true) < CFields(-5));
}

TEST(Compare, scalars)
{
    expectOrder(CFields(), CFields(), 0);
    expectOrder(false, true, -1);
    expectOrder(true, true, 0);
    expectOrder(-1, 1, -1);
    expectOrder(CFields::minSint64, CFields::maxSint64, -1);
    expectOrder(5, 5, 0);
    expectOrder(1u, CFields::maxUint64, -1);
    expectOrder(-0.5, 0.5, -1);
    expectOrder(0.0, -0.0, 0);
}

TEST(Compare, nanIsInNoOrder)
{
    const CFields nan(std::nan(""));
    for (const CFields& other : {CFields(1.0), nan})
    {
        EXPECT_FALSE(nan == other);
        EXPECT_TRUE(nan != other);
        EXPECT_FALSE(nan < other);
        EXPECT_FALSE(other < nan);
        EXPECT_FALSE(nan > other);
        EXPECT_TRUE(nan <= other);
        EXPECT_TRUE(nan >= other);
        EXPECT_EQ(0, nan.compare(other));
    }
    EXPECT_FALSE(nan == nan);
    EXPECT_FALSE(arrayOf({nan}) == arrayOf({nan}));
}

TEST(Compare, anUnorderedPairDoesNotDecideTheOrder)
{
    const CFields nan(std::nan(""));
    const CFields a = arrayOf({nan, 1});
    const CFields b = arrayOf({1.0, 2});
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_EQ(-1, a.compare(b));
    EXPECT_FALSE(a == b);
    EXPECT_EQ(0, arrayOf({nan}).compare(arrayOf({1.0})));
}

TEST(Compare, strings)
{
    expectOrder("ab", "abc", -1);
    expectOrder("b", "abc", 1);
    expectOrder("z", "\xE4", -1);
    expectOrder("abc", "abc", 0);
    expectOrder(std::string("a\0a", 3), std::string("a\0b", 3), -1);
    expectOrder("", "a", -1);
    expectOrder("abc", CStaticString("abc"), 0);
    expectOrder(CStaticString("abc"), CStaticString("abd"), -1);
}

TEST(Compare, aNullStringIsLessThanAnyOther)
{
    expectOrder(DT_codelist, "", -1);
    expectOrder(DT_codelist, CStaticString(""), -1);
    expectOrder(DT_codelist, "a", -1);
    expectOrder(DT_codelist, DT_codelist, 0);
}

TEST(Compare, containersByCountThenByMembers)
{
    expectOrder(arrayOf({9, 9}), arrayOf({0, 0, 0}), -1);
    expectOrder(arrayOf({1, 2}), arrayOf({1, 3}), -1);
    expectOrder(arrayOf({2, 1}), arrayOf({1, 3}), 1);
    expectOrder(arrayOf({1, 2}), arrayOf({1, 2}), 0);
    expectOrder(CFields(DT_array), CFields(DT_array), 0);
    expectOrder(CFields(DT_array), arrayOf({CFields()}), -1);
    expectOrder(arrayOf({arrayOf({1}), 5}), arrayOf({arrayOf({2}), 4}), -1);
    expectOrder(arrayOf({arrayOf({1, 1}), 5}), arrayOf({arrayOf({2}), 5}), 1);
    expectOrder(arrayOf({"x"}), arrayOf({1}), 1);
}

TEST(Compare, namesDoNotCount)
{
    expectOrder(field("a", 1), field("b", 1), 0);
    expectOrder(field("a", 2), field("b", 1), 1);
}

TEST(Compare, onlyTheFirstValueCounts)
{
    CFields a(5);
    CFields b(5);
    b.setName("b");
    b.setID(7);
    b.setComment("//", CP_before);
    b.setOffsetStart(4);
    b.setValue(6, VK_fix);
    b.setVK(VK_fix);
    tPacketExpInfo pei{};
    pei.m_uiLength = 4;
    b.pkt_SetExp(pei);
    b.pkt_SetOSA4User(&a);
    expectOrder(a, b, 0);
}

TEST(Compare, membersInDifferentBlocksAreTheSame)
{
    CFields grown(DT_fields);
    for (int i = 0; i < 1000; ++i)
        grown.addChildRef("n" + std::to_string(i)) = i;
    CFields copy(grown);
    expectOrder(grown, copy, 0);
    copy[999] = 1000;
    expectOrder(grown, copy, -1);
    copy[3] = -1;
    expectOrder(grown, copy, 1);
}

TEST(Compare, withItself)
{
    const CFields tree = arrayOf({arrayOf({1, "x"}), field("a", true)});
    expectOrder(tree, tree, 0);
}

TEST(Not, isTrueForANullNode)
{
    EXPECT_TRUE(!CFields());
    EXPECT_FALSE(!CFields(0));
    EXPECT_FALSE(!CFields(false));
    EXPECT_FALSE(!CFields(DT_array));
    EXPECT_FALSE(!CFields(""));
}

TEST(Compare, plainValuesConvertToNodes)
{
    const CFields node(5);
    EXPECT_TRUE(node == 5);
    EXPECT_TRUE(node != 6);
    EXPECT_TRUE(node < 6);
    EXPECT_TRUE(CFields("x") == "x");
    EXPECT_TRUE(CFields("x") == std::string("x"));
    EXPECT_TRUE(CFields(1.5) == 1.5);
}

}  // namespace

// tests/core/field_second_value_test.cpp - the second value and of the value kind that marks it as used.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "murv/fields.h"
#include "tests/support/thrown.h"
#include "tests/support/tree_text.h"

namespace
{

using namespace murv;
using murv::tests::describe;
using murv::tests::thrown;

TEST(SecondValue, beginsAsNull)
{
    const CFields node(7);
    EXPECT_EQ(DT_null, node.getDT(VK_fix));
    EXPECT_EQ(DT_null, node.getDT(VK_valid));
    EXPECT_EQ(0u, node.getRawBytes(VK_fix));
    EXPECT_EQ(nullptr, node.getValuePtr(VK_fix));
    EXPECT_EQ(0u, node.getValueRef(VK_fix).m_ullValue);
    EXPECT_TRUE(node.isNull(VK_fix));
}

TEST(SecondValue, everyKindButActualReadsTheSameSlot)
{
    CFields node(1);
    node.setValue(2, VK_fix);
    EXPECT_EQ(2, node.asSint64(VK_fix));
    EXPECT_EQ(2, node.asSint64(VK_valid));
    EXPECT_EQ(2, node.getValueRef(static_cast<E_ValueKind>(3)).m_llValue);
    EXPECT_EQ(DT_sint, node.getDT(static_cast<E_ValueKind>(77)));
    node.setValue("x", VK_valid);
    EXPECT_EQ("x", node.asString(VK_fix));
    EXPECT_EQ(1, node.asSint32());
}

TEST(SecondValue, lifeOfASecondNumber)
{
    CFields node(7);
    EXPECT_TRUE(node.setVK(VK_fix));
    EXPECT_EQ(7, node.asSint64(VK_fix));
    EXPECT_EQ(VK_fix, node.getVK());
    EXPECT_TRUE(node.isEqualDualValue());
    EXPECT_TRUE(node.setValue(9, VK_fix));
    EXPECT_EQ(VK_actual, node.getVK()) << "writing the second value unmarks it";
    EXPECT_TRUE(node.setVK(VK_fix));
    EXPECT_EQ(9, node.asSint64(VK_fix));
    EXPECT_EQ(7, node.asSint32());
    EXPECT_FALSE(node.isEqualDualValue());
    EXPECT_TRUE(node.setVK(VK_actual));
    EXPECT_EQ(DT_null, node.getDT(VK_fix));
    EXPECT_EQ(VK_actual, node.getVK());
}

TEST(SecondValue, writingTheFirstKeepsTheKind)
{
    CFields node(7);
    node.setVK(VK_valid);
    node.setValue(8);
    EXPECT_EQ(VK_valid, node.getVK());
    EXPECT_EQ(7, node.asSint64(VK_valid));
    node.setValue("text");
    EXPECT_EQ(VK_valid, node.getVK());
    EXPECT_EQ(7, node.asSint64(VK_valid));
}

TEST(SecondValue, everyScalarMayBeSecond)
{
    CFields node;
    EXPECT_TRUE(node.setValue(true, VK_fix));
    EXPECT_TRUE(node.asBool(VK_fix));
    EXPECT_TRUE(node.setValue(-3, VK_fix));
    EXPECT_EQ(-3, node.asSint64(VK_fix));
    EXPECT_TRUE(node.setValue(3u, VK_fix));
    EXPECT_EQ(DT_uint, node.getDT(VK_fix));
    EXPECT_TRUE(node.setValue(0.5, VK_fix));
    EXPECT_EQ(0.5, node.asDouble(VK_fix));
    EXPECT_EQ(8u, node.getRawBytes(VK_fix));
    EXPECT_TRUE(node.setValue("text", VK_fix));
    EXPECT_EQ("text", node.asString(VK_fix));
    EXPECT_EQ(4u, node.getRawBytes(VK_fix));
    EXPECT_TRUE(node.setValue("text", 2u, VK_fix));
    EXPECT_EQ("te", node.asString(VK_fix));
    EXPECT_TRUE(node.setValue(std::string("s"), VK_fix));
    EXPECT_EQ("s", node.asString(VK_fix));
    static const char literal[] = "lit";
    EXPECT_TRUE(node.setValue(CStaticString(literal), VK_fix));
    EXPECT_EQ(literal, node.getValuePtr(VK_fix));
    EXPECT_TRUE(node.isNull());
}

TEST(SecondValue, everyTypeButContainersHasAZeroValue)
{
    for (const E_DataType dt : {DT_null, DT_bool, DT_sint, DT_uint, DT_double, DT_codelist})
    {
        CFields node(1);
        node.setValue("before", VK_fix);
        EXPECT_TRUE(node.setValue(dt, VK_fix));
        EXPECT_EQ(dt, node.getDT(VK_fix));
        EXPECT_EQ(0u, node.getValueRef(VK_fix).m_ullValue);
        EXPECT_EQ(VK_actual, node.getVK());
    }
}

TEST(SecondValue, containersAreRefusedAndLeaveItNull)
{
    for (const E_DataType dt : {DT_array, DT_fields})
    {
        CFields node(7);
        node.setVK(VK_fix);
        EXPECT_FALSE(node.setValue(dt, VK_fix));
        EXPECT_EQ(DT_null, node.getDT(VK_fix));
        EXPECT_EQ(VK_actual, node.getVK());
        EXPECT_EQ(7, node.asSint32());
    }
}

TEST(SecondValue, unknownTypeThrowsItsOwnMessage)
{
    CFields node(7);
    EXPECT_EQ("[murv::CFields::setValue#0] Mismatched data type(8) for value type(1)",
              thrown([&] { node.setValue(static_cast<E_DataType>(8), VK_fix); }));
    EXPECT_EQ("[murv::CFields::setValue#0] Mismatched data type(9) for value type(2)",
              thrown([&] { node.setValue(static_cast<E_DataType>(9), VK_valid); }));
    EXPECT_EQ(7, node.asSint32());
}

TEST(ValueKind, unknownKindIsRefused)
{
    CFields node(7);
    EXPECT_FALSE(node.setVK(static_cast<E_ValueKind>(3)));
    EXPECT_EQ(VK_actual, node.getVK());
    EXPECT_EQ(DT_null, node.getDT(VK_fix));
}

TEST(ValueKind, sameKindChangesNothing)
{
    CFields node(7);
    node.setValue(9, VK_fix);
    EXPECT_TRUE(node.setVK(VK_actual));
    EXPECT_EQ(9, node.asSint64(VK_fix)) << "the kind was VK_actual already, so the second value is not dropped";
}

TEST(ValueKind, secondValueBeginsAsACopyOfEveryScalar)
{
    for (const CFields& source : {CFields(), CFields(true), CFields(-5), CFields(5u), CFields(2.5), CFields("text"),
                                  CFields(""), CFields(DT_codelist), CFields(CStaticString("static"))})
    {
        CFields node(source);
        EXPECT_TRUE(node.setVK(VK_valid));
        EXPECT_EQ(VK_valid, node.getVK());
        EXPECT_EQ(source.getDT(), node.getDT(VK_valid));
        EXPECT_EQ(source.asString(), node.asString(VK_valid));
        EXPECT_TRUE(node.isEqualDualValue());
    }
}

TEST(ValueKind, copyOfAStringIsItsOwnUnlessStatic)
{
    CFields owned("text");
    owned.setVK(VK_fix);
    EXPECT_NE(owned.getValuePtr(), owned.getValuePtr(VK_fix));
    CFields borrowed{CStaticString("text")};
    borrowed.setVK(VK_fix);
    EXPECT_EQ(borrowed.getValuePtr(), borrowed.getValuePtr(VK_fix));
}

TEST(ValueKind, containersHaveNoSecondValue)
{
    for (const E_DataType dt : {DT_array, DT_fields})
    {
        CFields node(dt);
        EXPECT_FALSE(node.setVK(VK_valid));
        EXPECT_FALSE(node.setVK(VK_fix));
        EXPECT_EQ(VK_actual, node.getVK());
        EXPECT_EQ(dt, node.getDT());
        EXPECT_EQ(DT_null, node.getDT(VK_fix));
    }
}

TEST(ValueKind, aContainerWithASecondValueMayBeMarked)
{
    CFields node(DT_fields);
    node.setValue(5, VK_fix);
    EXPECT_TRUE(node.setVK(VK_fix));
    EXPECT_EQ(VK_fix, node.getVK());
    EXPECT_EQ(5, node.asSint64(VK_fix));
}

TEST(ValueKind, changingBetweenFixAndValidKeepsTheValue)
{
    CFields node(7);
    node.setVK(VK_fix);
    node.setValue(8);
    EXPECT_TRUE(node.setVK(VK_valid));
    EXPECT_EQ(VK_valid, node.getVK());
    EXPECT_EQ(7, node.asSint64(VK_valid));
}

TEST(DualValue, equalityOfEveryType)
{
    const auto isEqual = [](const CFields& first, const CFields& second) {
        CFields node(first);
        if (second.isNull())
            node.setValue(DT_null, VK_fix);
        else if (second.isBool())
            node.setValue(second.asBool(), VK_fix);
        else if (second.getDT() == DT_sint)
            node.setValue(second.asSint64(), VK_fix);
        else if (second.getDT() == DT_uint)
            node.setValue(second.asUint64(), VK_fix);
        else if (second.getDT() == DT_double)
            node.setValue(second.asDouble(), VK_fix);
        else
            node.setValue(second.asString(), VK_fix);
        return node.isEqualDualValue();
    };
    EXPECT_TRUE(isEqual(CFields(), CFields()));
    EXPECT_TRUE(isEqual(true, true));
    EXPECT_FALSE(isEqual(true, false));
    EXPECT_TRUE(isEqual(5, 5));
    EXPECT_FALSE(isEqual(5, 6));
    EXPECT_FALSE(isEqual(5, 5u)) << "types differ";
    EXPECT_TRUE(isEqual(5u, 5u));
    EXPECT_FALSE(isEqual(5u, 6u));
    EXPECT_TRUE(isEqual(0.0, -0.0));
    EXPECT_FALSE(isEqual(0.5, 1.5));
    EXPECT_FALSE(isEqual(std::nan(""), std::nan("")));
    EXPECT_TRUE(isEqual("abc", "abc"));
    EXPECT_FALSE(isEqual("abc", "abd"));
    EXPECT_FALSE(isEqual("abc", "ab"));
    EXPECT_FALSE(isEqual(DT_codelist, "")) << "NULL against an owned empty string";
    EXPECT_FALSE(isEqual(DT_array, CFields()));
    EXPECT_FALSE(isEqual(DT_fields, CFields()));
}

TEST(DualValue, ownedAndBorrowedStringsCompareByContent)
{
    CFields node("abc");
    node.setValue(CStaticString("abc"), VK_fix);
    EXPECT_TRUE(node.isEqualDualValue());
    CFields null(DT_codelist);
    null.setValue(DT_codelist, VK_fix);
    EXPECT_TRUE(null.isEqualDualValue());
    null.setValue(CStaticString(""), VK_fix);
    EXPECT_FALSE(null.isEqualDualValue());
}

/// Every way to copy a node but setValue, which has a rule of its own for the second value.
const std::vector<std::pair<const char*, std::function<CFields(const CFields&)>>>& copies()
{
    static const std::vector<std::pair<const char*, std::function<CFields(const CFields&)>>> all = {
        {"construction", [](const CFields& source) { return CFields(source); }},
        {"assignment",
         [](const CFields& source) {
             CFields to("before");
             to.setVK(VK_valid);
             to = source;
             return to;
         }},
        {"assignment of a moved copy",
         [](const CFields& source) {
             CFields to("before");
             to = CFields(source);
             return to;
         }},
        {"setField",
         [](const CFields& source) {
             CFields to("before");
             EXPECT_TRUE(to.setField(source));
             return to;
         }},
        {"addArrayAt",
         [](const CFields& source) {
             CFields list;
             return std::move(list.addArrayAt(source));
         }},
        {"addArrayAt of a moved copy",
         [](const CFields& source) {
             CFields list;
             return std::move(list.addArrayAt(CFields(source)));
         }},
        {"copyChildAt",
         [](const CFields& source) {
             CFields list;
             list.addArrayAt(source);
             return list.copyChildAt(0, CFields::null);
         }},
        {"removeChildAt",
         [](const CFields& source) {
             CFields list;
             list.addArrayAt(source);
             CFields to;
             EXPECT_TRUE(list.removeChildAt(0, &to));
             return to;
         }},
        {"copy of the holder",
         [](const CFields& source) {
             CFields list;
             list.addArrayAt(source);
             CFields other(list);
             return std::move(other[0]);
         }},
        {"setValue of the holder",
         [](const CFields& source) {
             CFields list;
             list.addArrayAt(source);
             CFields other;
             EXPECT_TRUE(other.setValue(list));
             return std::move(other[0]);
         }},
    };
    return all;
}

/// Every type that a value slot may hold; of strings owned ones, borrowed ones, and those that never got text.
const std::vector<std::function<void(CFields&, E_ValueKind)>>& slotValues()
{
    static const CStaticString text("static");
    static const std::vector<std::function<void(CFields&, E_ValueKind)>> all = {
        [](CFields& node, E_ValueKind vk) { node.setValue(DT_null, vk); },
        [](CFields& node, E_ValueKind vk) { node.setValue(true, vk); },
        [](CFields& node, E_ValueKind vk) { node.setValue(-1, vk); },
        [](CFields& node, E_ValueKind vk) { node.setValue(7U, vk); },
        [](CFields& node, E_ValueKind vk) { node.setValue(0.3, vk); },
        [](CFields& node, E_ValueKind vk) { node.setValue("text", vk); },
        [](CFields& node, E_ValueKind vk) { node.setValue("", vk); },
        [](CFields& node, E_ValueKind vk) { node.setValue(text, vk); },
        [](CFields& node, E_ValueKind vk) { node.setValue(DT_codelist, vk); },
    };
    return all;
}

TEST(SecondValueCopy, eachValueKeepsItsOwnType)
{
    for (const auto& setFirst : slotValues())
    {
        for (const auto& setSecond : slotValues())
        {
            CFields source;
            setFirst(source, VK_actual);
            source.setVK(VK_fix);
            setSecond(source, VK_fix);
            source.setVK(VK_fix);
            CFields second;
            setSecond(second, VK_actual);
            const E_DataType wanted = second.isNull() ? source.getDT() : second.getDT();
            EXPECT_EQ(wanted, source.getDT(VK_fix));
            for (const auto& [name, copy] : copies())
                EXPECT_EQ(describe(source), describe(copy(source))) << name;
        }
    }
}

TEST(SecondValueCopy, addArrayAtOfTheValueOnlyKeepsBothTypes)
{
    CFields source(12U);
    source.setValue("12", VK_fix);
    source.setVK(VK_fix);
    CFields list;
    const CFields& element = list.addArrayAt(source, true);
    EXPECT_EQ(describe(source), describe(element));
}

TEST(SecondValueCopy, aParsedItemWhoseFixedValueIsTextIsSavedAsTheOriginal)
{
    CFields tree;
    CFields& member = tree.addChildRef("kind");
    member = "12";
    tPacketExpInfo pei{};
    pei.m_eRuntimeExp = REC_N;
    pei.m_uiLength = 4;
    pei.m_usSkIndex = 1;
    member.pkt_SetExp(pei);
    member.setVK(VK_fix);
    ASSERT_EQ(0, tree.pkt_Parse4Children("0012", 4, true));
    ASSERT_EQ(DT_codelist, member.getDT(VK_fix));
    EXPECT_EQ(tree.toMURV(1), CFields(tree).toMURV(1));
    EXPECT_EQ("{\"kind\"=(ANF4fix)\"12\"}", CFields(tree).toMURV(1));
}

TEST(SecondValueCopy, aContainerWithAValueKindIsCopiedWhole)
{
    CFields source(5);
    source.setName("a");
    source.setID(4);
    source.setComment("/*c*/", CP_before);
    tPacketExpInfo pei{};
    pei.m_uiLength = 4;
    pei.m_usSkIndex = 1;
    source.pkt_SetExp(pei);
    source.setVK(VK_fix);
    source = DT_fields;
    source.addChildRef("below") = 1;
    for (const auto& [name, copy] : copies())
        EXPECT_EQ(describe(source), describe(copy(source))) << name;
}

TEST(SecondValueSetValue, takesTheTypeOfTheFirst)
{
    CFields source(7);
    source.setValue("text", VK_fix);
    source.setVK(VK_fix);
    CFields copy;
    EXPECT_TRUE(copy.setValue(source));
    EXPECT_EQ(DT_sint, copy.getDT(VK_fix));
    EXPECT_EQ(VK_fix, copy.getVK());
}

TEST(SecondValueSetValue, bitsOfAPointerAreNeverReadAsANumber)
{
    for (const CFields& first : {CFields(true), CFields(7), CFields(7U), CFields(0.5)})
    {
        for (const bool owned : {true, false})
        {
            CFields source(first);
            if (owned)
                source.setValue("text", VK_fix);
            else
                source.setValue(CStaticString("text"), VK_fix);
            source.setVK(VK_valid);
            CFields copy;
            EXPECT_TRUE(copy.setValue(source));
            EXPECT_EQ(first.getDT(), copy.getDT(VK_valid));
            EXPECT_EQ(0U, copy.getValueRef(VK_valid).m_ullValue);
        }
    }
}

TEST(SecondValueSetValue, bitsOfANumberAreTakenUnderTheOtherType)
{
    CFields source(7u);
    source.setValue(-1, VK_fix);
    source.setVK(VK_valid);
    CFields copy;
    EXPECT_TRUE(copy.setValue(source));
    EXPECT_EQ(DT_uint, copy.getDT(VK_valid));
    EXPECT_EQ(CFields::maxUint64, copy.asUint64(VK_valid));
}

TEST(SecondValueSetValue, bitsThatAreNoPointerAreNeverReadAsOne)
{
    CFields source("text");
    source.setValue(12345, VK_fix);
    source.setVK(VK_fix);
    CFields copy;
    EXPECT_TRUE(copy.setValue(source));
    EXPECT_EQ(DT_codelist, copy.getDT(VK_fix));
    EXPECT_EQ(nullptr, copy.getValuePtr(VK_fix));
    EXPECT_EQ("", copy.asString(VK_fix));
    EXPECT_EQ("text", copy.asString());
}

TEST(SecondValueSetValue, bitsUnderBoolAreABool)
{
    CFields source(true);
    source.setValue(0.3, VK_fix);
    source.setVK(VK_fix);
    CFields copy;
    EXPECT_TRUE(copy.setValue(source));
    EXPECT_EQ(DT_bool, copy.getDT(VK_fix));
    const std::string text = copy.asString(VK_fix);
    EXPECT_TRUE(text == "true" || text == "false");
}

TEST(SecondValueSetValue, aContainerLosesItAndTheKind)
{
    CFields source(5);
    source.setVK(VK_fix);
    source = DT_fields;
    CFields copy("before");
    copy.setVK(VK_valid);
    EXPECT_FALSE(copy.setValue(source));
    EXPECT_EQ(DT_fields, copy.getDT());
    EXPECT_EQ(DT_null, copy.getDT(VK_fix));
    EXPECT_EQ(VK_actual, copy.getVK());
}

TEST(SecondValueCopy, stringsAreCopiedAndStaticOnesShared)
{
    CFields source("first");
    source.setValue("second", VK_fix);
    source.setVK(VK_fix);
    const CFields copy(source);
    EXPECT_EQ("second", copy.asString(VK_fix));
    EXPECT_NE(source.getValuePtr(VK_fix), copy.getValuePtr(VK_fix));
    source.setValue(CStaticString("static"), VK_fix);
    source.setVK(VK_fix);
    EXPECT_EQ(source.getValuePtr(VK_fix), CFields(source).getValuePtr(VK_fix));
}

TEST(SecondValueCopy, anUnmarkedSecondValueIsNotCopied)
{
    CFields source(7);
    source.setValue(9, VK_fix);
    EXPECT_EQ(DT_null, CFields(source).getDT(VK_fix));
}

}  // namespace

// tests/core/field_value_test.cpp - a node's first value: types, constructors, setting, copying, swapping, moving.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>
#include <utility>

#include "murv/fields.h"
#include "tests/core/text_helpers.h"
#include "tests/support/thrown.h"

namespace
{

using namespace murv;
using murv::tests::CExactText;
using murv::tests::thrown;

constexpr const char* s_cpNullPointer = "[murv::CFields::setValue#0] Value paramter has NULL pointer";
constexpr E_DataType s_ceAllTypes[] = {DT_null, DT_array, DT_fields, DT_bool, DT_sint, DT_uint, DT_double, DT_codelist};

/// A node with every part set.
CFields fullNode()
{
    CFields node(7);
    node.setName("full");
    node.setID(5);
    tPacketExpInfo pei{};
    pei.m_uiLength = 9;
    node.pkt_SetExp(pei);
    static const int user = 0;
    node.pkt_SetOSA4User(&user);
    node.setComment("// b", CP_before);
    node.setComment("// a", CP_after);
    node.setOffsetStart(3);
    node.setOffsetEnd(4);
    node.setValue(8, VK_fix);
    node.setVK(VK_fix);
    return node;
}

/// By value: a packed field has no address that a reference could bind to.
unsigned int packetLength(const CFields& node)
{
    return node.pkt_GetExp().m_uiLength;
}

void expectFull(const CFields& node)
{
    EXPECT_EQ(7, node.asSint32());
    EXPECT_EQ(8, node.asSint64(VK_fix));
    EXPECT_EQ(VK_fix, node.getVK());
    EXPECT_STREQ("full", node.getName());
    EXPECT_EQ(5u, node.getID());
    EXPECT_EQ(9u, packetLength(node));
    EXPECT_NE(nullptr, node.pkt_GetOSA4User());
    EXPECT_EQ("// b", node.getCommentCopy(CP_before));
    EXPECT_FALSE(node.hasComment(CP_trailing));
    EXPECT_EQ("// a", node.getCommentCopy(CP_after));
    EXPECT_EQ(3, node.getOffsetStart());
    EXPECT_EQ(4, node.getOffsetEnd());
}

void expectBasic(const CFields& node)
{
    EXPECT_EQ(DT_null, node.getDT());
    EXPECT_EQ(DT_null, node.getDT(VK_fix));
    EXPECT_EQ(VK_actual, node.getVK());
    EXPECT_STREQ("", node.getName());
    EXPECT_EQ(0u, node.getNameLen());
    EXPECT_EQ(0u, node.getID());
    EXPECT_TRUE(CFields::pkt_IsNullExp(node.pkt_GetExp()));
    EXPECT_EQ(nullptr, node.pkt_GetOSA4User());
    EXPECT_FALSE(node.isComment());
    EXPECT_EQ(0, node.getOffsetStart());
    EXPECT_EQ(0, node.getOffsetEnd());
}

TEST(FieldType, numbersAreFixed)
{
    EXPECT_EQ(0u, DT_null);
    EXPECT_EQ(1u, DT_array);
    EXPECT_EQ(2u, DT_fields);
    EXPECT_EQ(3u, DT_bool);
    EXPECT_EQ(4u, DT_sint);
    EXPECT_EQ(5u, DT_uint);
    EXPECT_EQ(6u, DT_double);
    EXPECT_EQ(7u, DT_codelist);
    EXPECT_EQ(0u, VK_actual);
    EXPECT_EQ(1u, VK_fix);
    EXPECT_EQ(2u, VK_valid);
    static_assert(std::is_same_v<std::underlying_type_t<E_DataType>, unsigned int>);
    static_assert(std::is_same_v<std::underlying_type_t<E_ValueKind>, unsigned int>);
}

TEST(FieldType, rangeTestsOfTypesAndKinds)
{
    for (unsigned int dt = 0; dt <= 7; ++dt)
        EXPECT_TRUE(CFields::isValidDT(dt));
    EXPECT_FALSE(CFields::isValidDT(8));
    EXPECT_FALSE(CFields::isValidDT(4294967295));
    for (unsigned int vk = 0; vk <= 2; ++vk)
        EXPECT_TRUE(CFields::isValidVK(vk));
    EXPECT_FALSE(CFields::isValidVK(3));
    EXPECT_FALSE(CFields::isValidVK(4294967295));
}

TEST(FieldLimits, areThoseOfTheIntegers)
{
    EXPECT_EQ(2147483647, CFields::maxSint32);
    EXPECT_EQ(-2147483647 - 1, CFields::minSint32);
    EXPECT_EQ(4294967295u, CFields::maxUint32);
    EXPECT_EQ(std::numeric_limits<long long>::min(), CFields::minSint64);
    EXPECT_EQ(9223372036854775807LL, CFields::maxSint64);
    EXPECT_EQ(18446744073709551615ULL, CFields::maxUint64);
    EXPECT_EQ(CFields::minSint64, CFields::minLSint);
    EXPECT_EQ(CFields::maxSint64, CFields::maxLSint);
    EXPECT_EQ(CFields::maxUint64, CFields::maxLUint);
}

TEST(FieldConstruct, aNewNodeIsInTheBasicState)
{
    expectBasic(CFields());
    expectBasic(CFields(DT_null));
}

TEST(FieldConstruct, ofATypeGivesItsZeroValue)
{
    for (const E_DataType dt : s_ceAllTypes)
        EXPECT_EQ(dt, CFields(dt).getDT());
    EXPECT_EQ(0u, CFields(DT_array).getChildCount());
    EXPECT_EQ(0u, CFields(DT_fields).getChildCount());
    EXPECT_FALSE(CFields(DT_bool).asBool());
    EXPECT_EQ(0, CFields(DT_sint).asSint64());
    EXPECT_EQ(0u, CFields(DT_uint).asUint64());
    EXPECT_EQ(0.0, CFields(DT_double).asDouble());
    EXPECT_EQ("", CFields(DT_codelist).asString());
    EXPECT_EQ(nullptr, CFields(DT_codelist).getValuePtr());
    EXPECT_EQ(nullptr, CFields(DT_codelist).getValueRef().m_pData);
}

TEST(FieldConstruct, ofAContainerCanBeAddedTo)
{
    CFields array(DT_array);
    array.addArrayAt(1);
    EXPECT_EQ(1u, array.getChildCount());
    CFields fields(DT_fields);
    fields.addChildRef("a");
    EXPECT_EQ(1u, fields.getChildCount());
}

TEST(FieldConstruct, ofAnUnknownTypeThrows)
{
    EXPECT_EQ("[murv::CFields::setValue#0] Unknown data type(8)", thrown([] { CFields(static_cast<E_DataType>(8)); }));
}

TEST(FieldConstruct, ofIntegersKeepsSign)
{
    const CFields minusOne(-1);
    EXPECT_EQ(DT_sint, minusOne.getDT());
    EXPECT_EQ(-1, minusOne.asSint64());
    const CFields large(4294967295u);
    EXPECT_EQ(DT_uint, large.getDT());
    EXPECT_EQ(4294967295ull, large.asUint64());
    EXPECT_EQ(DT_sint, CFields(-1L).getDT());
    EXPECT_EQ(DT_uint, CFields(1UL).getDT());
    EXPECT_EQ(CFields::minSint64, CFields(CFields::minSint64).asSint64());
    EXPECT_EQ(CFields::maxUint64, CFields(CFields::maxUint64).asUint64());
}

TEST(FieldConstruct, ofBoolAndDouble)
{
    EXPECT_EQ(DT_bool, CFields(true).getDT());
    EXPECT_TRUE(CFields(true).asBool());
    EXPECT_FALSE(CFields(false).asBool());
    EXPECT_EQ(DT_double, CFields(1.5).getDT());
    EXPECT_EQ(1.5, CFields(1.5).asDouble());
}

TEST(FieldConstruct, ofTextCopiesItsBytes)
{
    const CExactText source("abc");
    const CFields text(source.begin(), 3);
    EXPECT_EQ(DT_codelist, text.getDT());
    EXPECT_EQ("abc", text.asString());
    EXPECT_NE(source.begin(), text.getValuePtr());
    EXPECT_EQ("abc", CFields("abc").asString());
    EXPECT_EQ("abc", CFields(std::string("abc")).asString());
    EXPECT_EQ("abc", CFields(std::string_view("abc")).asString());
    const std::string withNul("a\0b", 3);
    EXPECT_EQ(withNul, CFields(withNul).asString());
    EXPECT_EQ(withNul, CFields(withNul.data(), 3).asString());
    EXPECT_EQ(3u, CFields(withNul).getRawBytes());
}

TEST(FieldConstruct, ofNullTextThrows)
{
    const char* const null = nullptr;
    EXPECT_EQ(s_cpNullPointer, thrown([=] { CFields node(null); }));
    EXPECT_EQ(s_cpNullPointer, thrown([=] { CFields(null, 3); }));
    EXPECT_EQ(s_cpNullPointer, thrown([=] { CFields(null, 0); }));
    EXPECT_EQ(s_cpNullPointer, thrown([=] { CFields node{CStaticString(null)}; }));
}

TEST(FieldConstruct, ofAnEmptyTextHasABlock)
{
    for (const CFields& node : {CFields(""), CFields("", 0), CFields(std::string()), CFields(std::string_view())})
    {
        EXPECT_EQ(DT_codelist, node.getDT());
        ASSERT_NE(nullptr, node.getValuePtr());
        EXPECT_EQ('\0', *static_cast<const char*>(node.getValuePtr()));
        EXPECT_EQ(0u, node.getRawBytes());
    }
}

TEST(FieldConstruct, ofStaticTextBorrowsIt)
{
    static const char literal[] = "abc";
    const CFields node{CStaticString(literal)};
    EXPECT_EQ(DT_codelist, node.getDT());
    EXPECT_EQ(literal, node.getValuePtr());
    EXPECT_EQ(literal, node.getValueRef().m_pData);
    EXPECT_EQ(3u, node.getRawBytes());
}

TEST(FieldConstruct, copyIsDeepAndWhole)
{
    const CFields source = fullNode();
    expectFull(CFields(source));
    CFields tree;
    tree.addChildRef("a").addChildRef("b") = "text";
    CFields copy(tree);
    copy["a"]["b"] = "other";
    EXPECT_EQ("text", tree["a"]["b"].asString());
    EXPECT_EQ("other", copy["a"]["b"].asString());
}

TEST(FieldConstruct, copySharesStaticText)
{
    static const char literal[] = "abc";
    const CFields source{CStaticString(literal)};
    EXPECT_EQ(literal, CFields(source).getValuePtr());
    EXPECT_NE(CFields("x").getValuePtr(), literal);
}

TEST(FieldConstruct, copyLeavesOutTheCallbackArguments)
{
    CFields source(1);
    source.pkt_GetISA4ESK().m_uiOffset = 5;
    CFields copy(source);
    EXPECT_EQ(0u, copy.pkt_GetISA4ESK().m_uiOffset);
}

TEST(FieldConstruct, moveTakesEverything)
{
    static_assert(std::is_nothrow_move_constructible_v<CFields>);
    CFields source = fullNode();
    const CFields moved(std::move(source));
    expectFull(moved);
    expectBasic(source);  // NOLINT(bugprone-use-after-move)
    source = 5;
    EXPECT_EQ(5, source.asSint32());
}

TEST(FieldConstruct, moveKeepsMembersWhereTheyAre)
{
    CFields source;
    const CFields& member = source.addChildRef("a");
    const CFields moved(std::move(source));
    EXPECT_EQ(&member, moved.findChildAt("a", 1));
}

TEST(FieldValue, rawBytesOfEveryType)
{
    EXPECT_EQ(0u, CFields().getRawBytes());
    EXPECT_EQ(0u, CFields(DT_array).getRawBytes());
    EXPECT_EQ(0u, CFields(DT_fields).getRawBytes());
    EXPECT_EQ(1u, CFields(true).getRawBytes());
    EXPECT_EQ(8u, CFields(1).getRawBytes());
    EXPECT_EQ(8u, CFields(1u).getRawBytes());
    EXPECT_EQ(8u, CFields(1.0).getRawBytes());
    EXPECT_EQ(0u, CFields(DT_codelist).getRawBytes());
    EXPECT_EQ(4u, CFields("abcd").getRawBytes());
}

TEST(FieldValue, pointerIsToTheStoredScalar)
{
    const CFields truth(true);
    EXPECT_EQ(&truth.getValueRef(), truth.getValuePtr());
    EXPECT_TRUE(truth.getValueRef().m_bValue);
    const CFields number(-5);
    EXPECT_EQ(-5, *static_cast<const long long*>(number.getValuePtr()));
    EXPECT_EQ(-5, number.getValueRef().m_llValue);
    const CFields positive(5u);
    EXPECT_EQ(5u, *static_cast<const unsigned long long*>(positive.getValuePtr()));
    EXPECT_EQ(5u, positive.getValueRef().m_ullValue);
    const CFields real(2.5);
    EXPECT_EQ(2.5, *static_cast<const double*>(real.getValuePtr()));
    EXPECT_EQ(2.5, real.getValueRef().m_dValue);
    EXPECT_EQ(nullptr, CFields().getValuePtr());
    EXPECT_EQ(nullptr, CFields(DT_array).getValuePtr());
    EXPECT_EQ(nullptr, CFields(DT_fields).getValuePtr());
}

TEST(FieldValue, pointerToAnOwnedStringIsAfterItsPrefix)
{
    const CFields text("abc");
    EXPECT_STREQ("abc", static_cast<const char*>(text.getValuePtr()));
    EXPECT_EQ(text.getValueRef().m_pData + 4, text.getValuePtr());
}

TEST(FieldSetValue, everyTypeReplacesEveryOther)
{
    for (const E_DataType before : s_ceAllTypes)
    {
        for (const E_DataType after : s_ceAllTypes)
        {
            CFields node(before);
            EXPECT_TRUE(node.setValue(after));
            EXPECT_EQ(after, node.getDT());
            EXPECT_EQ(0u, node.getChildCount());
        }
    }
}

TEST(FieldSetValue, scalarsAndStrings)
{
    CFields node;
    EXPECT_TRUE(node.setValue(true));
    EXPECT_EQ(DT_bool, node.getDT());
    EXPECT_TRUE(node.setValue(-2147483647 - 1));
    EXPECT_EQ(-2147483648LL, node.asSint64());
    EXPECT_TRUE(node.setValue(4294967295u));
    EXPECT_EQ(DT_uint, node.getDT());
    EXPECT_EQ(4294967295ull, node.asUint64());
    EXPECT_TRUE(node.setValue(-7L));
    EXPECT_EQ(DT_sint, node.getDT());
    EXPECT_TRUE(node.setValue(7UL));
    EXPECT_EQ(DT_uint, node.getDT());
    EXPECT_TRUE(node.setValue(-7LL));
    EXPECT_EQ(-7, node.asSint64());
    EXPECT_TRUE(node.setValue(7ULL));
    EXPECT_EQ(7u, node.asUint64());
    EXPECT_TRUE(node.setValue(0.5));
    EXPECT_EQ(0.5, node.asDouble());
    EXPECT_TRUE(node.setValue("abc"));
    EXPECT_EQ("abc", node.asString());
    EXPECT_TRUE(node.setValue("abc", 2u));
    EXPECT_EQ("ab", node.asString());
    EXPECT_TRUE(node.setValue(std::string("s")));
    EXPECT_EQ("s", node.asString());
    EXPECT_TRUE(node.setValue(std::string_view("v")));
    EXPECT_EQ("v", node.asString());
    EXPECT_TRUE(node.setValue(CStaticString("lit")));
    EXPECT_EQ("lit", node.asString());
}

TEST(FieldSetValue, emptyDefaultStringHasNoBlock)
{
    CFields node("abc");
    EXPECT_TRUE(node.setValue(DT_codelist));
    EXPECT_EQ(nullptr, node.getValuePtr());
    EXPECT_EQ(0u, node.getRawBytes());
}

TEST(FieldSetValue, unknownKindThrowsAndChangesNothing)
{
    constexpr auto kind = static_cast<E_ValueKind>(3);
    const char* const expected = "[murv::CFields::setValue#0] Unknown value type(3)";
    CFields node("before");
    EXPECT_EQ(expected, thrown([&] { node.setValue(DT_sint, kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(true, kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(5, kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(5u, kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(5L, kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(5UL, kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(5LL, kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(5ULL, kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(5.0, kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue("x", kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue("x", 1u, kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(std::string("x"), kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(std::string_view("x"), kind); }));
    EXPECT_EQ(expected, thrown([&] { node.setValue(CStaticString("x"), kind); }));
    EXPECT_EQ("before", node.asString());
}

TEST(FieldSetValue, nullTextIsNoticedBeforeTheKind)
{
    const char* const null = nullptr;
    constexpr auto kind = static_cast<E_ValueKind>(3);
    CFields node("before");
    EXPECT_EQ(s_cpNullPointer, thrown([&] { node.setValue(null, kind); }));
    EXPECT_EQ(s_cpNullPointer, thrown([&] { node.setValue(null, 1u, kind); }));
    EXPECT_EQ(s_cpNullPointer, thrown([&] { node.setValue(CStaticString(null), kind); }));
    EXPECT_EQ("before", node.asString());
}

TEST(FieldSetValue, unknownTypeThrows)
{
    CFields node(5);
    EXPECT_EQ("[murv::CFields::setValue#0] Unknown data type(8)",
              thrown([&] { node.setValue(static_cast<E_DataType>(8)); }));
    EXPECT_EQ(DT_null, node.getDT());
    node = 6;
    EXPECT_EQ(6, node.asSint32());
}

TEST(FieldSetValue, tooLongTextIsRefusedBeforeItIsRead)
{
    CFields node("before");
    EXPECT_EQ("[murv::duplicatePrefixedStream#0] a_uiSrcLen too big for prefixing",
              thrown([&] { node.setValue("x", 2147483643u); }));
    EXPECT_EQ("before", node.asString());
}

TEST(FieldSetValue, fromItsOwnTextGivesThatText)
{
    CFields node("abcdef");
    node.setValue(static_cast<const char*>(node.getValuePtr()) + 2);
    EXPECT_EQ("cdef", node.asString());
    node.setValue(static_cast<const char*>(node.getValuePtr()) + 1, 2u);
    EXPECT_EQ("de", node.asString());
    node.setName("name");
    node.setValue(node.getName());
    EXPECT_EQ("name", node.asString());
}

TEST(FieldSetValue, ofANodeTakesValuesOnly)
{
    CFields node(1);
    node.setName("kept");
    node.setID(9);
    node.setComment("// kept", CP_before);
    node.setOffsetStart(77);
    EXPECT_TRUE(node.setValue(fullNode()));
    EXPECT_EQ(7, node.asSint32());
    EXPECT_EQ(8, node.asSint64(VK_fix));
    EXPECT_EQ(VK_fix, node.getVK());
    EXPECT_STREQ("kept", node.getName());
    EXPECT_EQ(9u, node.getID());
    EXPECT_EQ("// kept", node.getCommentCopy(CP_before));
    EXPECT_EQ(77, node.getOffsetStart());
    EXPECT_TRUE(CFields::pkt_IsNullExp(node.pkt_GetExp()));
    EXPECT_EQ(nullptr, node.pkt_GetOSA4User());
}

TEST(FieldSetValue, ofEveryTypeCopiesIt)
{
    CFields array;
    array.addArrayAt("x");
    CFields fields;
    fields.addChildRef("a") = 1;
    for (const CFields& source : {CFields(), array, fields, CFields(true), CFields(-1), CFields(1u), CFields(0.5),
                                  CFields("text"), CFields(DT_codelist), CFields(CStaticString("static"))})
    {
        CFields node("before");
        EXPECT_TRUE(node.setValue(source));
        EXPECT_EQ(source, node);
        EXPECT_EQ(source.getDT(), node.getDT());
        EXPECT_EQ(source.getMemberCount(), node.getMemberCount());
    }
}

TEST(FieldSetValue, ofANodeWithOneValueLeavesTheSecondSlot)
{
    CFields node(1);
    node.setValue(2, VK_fix);
    node.setVK(VK_fix);
    EXPECT_TRUE(node.setValue(CFields(3)));
    EXPECT_EQ(VK_actual, node.getVK());
    EXPECT_EQ(3, node.asSint32());
    EXPECT_EQ(2, node.asSint64(VK_fix));
}

TEST(FieldSetField, takesTheWholeNode)
{
    CFields node("old");
    node.setName("old");
    node.setComment("// old", CP_trailing);
    EXPECT_TRUE(node.setField(fullNode()));
    expectFull(node);
}

TEST(FieldSetField, aSourceWithoutIdLeavesTheId)
{
    CFields node;
    node.setID(5);
    CFields source(1);
    source.setName("x");
    EXPECT_TRUE(node.setField(source));
    EXPECT_EQ(5u, node.getID());
    source.setID(6);
    EXPECT_TRUE(node.setField(source));
    EXPECT_EQ(6u, node.getID());
}

TEST(FieldSetField, aSourceWithoutNameOrCommentsRemovesThem)
{
    CFields node = fullNode();
    EXPECT_TRUE(node.setField(CFields(1)));
    EXPECT_STREQ("", node.getName());
    EXPECT_FALSE(node.isComment());
    EXPECT_FALSE(node.hasComment(CP_before));
    EXPECT_EQ(0, node.getOffsetStart());
    EXPECT_EQ(0, node.getOffsetEnd());
    EXPECT_EQ(nullptr, node.pkt_GetOSA4User());
    EXPECT_TRUE(CFields::pkt_IsNullExp(node.pkt_GetExp()));
    EXPECT_EQ(5u, node.getID());
}

TEST(FieldSetField, leavesTheCallbackArguments)
{
    CFields node(1);
    node.pkt_GetISA4ESK().m_uiOffset = 5;
    CFields source(2);
    source.pkt_GetISA4ESK().m_uiOffset = 6;
    EXPECT_TRUE(node.setField(source));
    EXPECT_EQ(5u, node.pkt_GetISA4ESK().m_uiOffset);
}

TEST(FieldSetField, aContainerMarkedAsDualIsTakenWhole)
{
    CFields source(1);
    source.setName("name");
    source.setVK(VK_fix);
    source.setValue(DT_fields);
    source.addChildRef("a");
    ASSERT_EQ(VK_fix, source.getVK());
    CFields node;
    EXPECT_FALSE(node.setValue(source));
    EXPECT_EQ(1u, node.getChildCount());
    EXPECT_EQ(VK_actual, node.getVK());
    EXPECT_EQ(DT_null, node.getDT(VK_fix));
    CFields whole;
    EXPECT_TRUE(whole.setField(source));
    EXPECT_EQ(1u, whole.getChildCount());
    EXPECT_STREQ("name", whole.getName());
    EXPECT_EQ(VK_fix, whole.getVK());
    const CFields copy(source);
    EXPECT_EQ(1u, copy.getChildCount());
    EXPECT_STREQ("name", copy.getName());
    EXPECT_EQ(VK_fix, copy.getVK());
}

TEST(FieldSwapValue, exchangesFirstValuesOnly)
{
    CFields a = fullNode();
    CFields b("text");
    b.setName("b");
    a.swapValue(b, false);
    EXPECT_EQ("text", a.asString());
    EXPECT_EQ(7, b.asSint32());
    EXPECT_EQ(VK_fix, a.getVK());
    EXPECT_EQ(8, a.asSint64(VK_fix));
    EXPECT_EQ(VK_actual, b.getVK());
    EXPECT_EQ(DT_null, b.getDT(VK_fix));
    EXPECT_STREQ("full", a.getName());
    EXPECT_STREQ("b", b.getName());
    EXPECT_EQ(9u, packetLength(a));
    EXPECT_EQ(0u, packetLength(b));
    EXPECT_TRUE(a.isComment());
    EXPECT_EQ(3, a.getOffsetStart());
    EXPECT_EQ(nullptr, b.pkt_GetOSA4User());
}

TEST(FieldSwapValue, withPacketExpressionAndUserPointer)
{
    static const int first = 0;
    static const int second = 0;
    tPacketExpInfo pei{};
    pei.m_ucPrefixSize = 4;
    CFields a(1);
    a.pkt_SetExp(pei);
    a.pkt_SetOSA4User(&first);
    CFields b(2);
    a.swapValue(b, true);
    EXPECT_EQ(4, b.pkt_GetExp().m_ucPrefixSize);
    EXPECT_EQ(0, a.pkt_GetExp().m_ucPrefixSize);
    EXPECT_EQ(&first, a.pkt_GetOSA4User()) << "the other has none, so the pointers stay";
    b.pkt_SetOSA4User(&second);
    a.swapValue(b, true);
    EXPECT_EQ(&second, a.pkt_GetOSA4User());
    EXPECT_EQ(&first, b.pkt_GetOSA4User());
    CFields c(3);
    c.swapValue(b, true);
    EXPECT_EQ(&first, c.pkt_GetOSA4User());
    EXPECT_EQ(nullptr, b.pkt_GetOSA4User());
}

TEST(FieldSwapField, exchangesEverythingButSecondValues)
{
    CFields a(1);
    a.setName("a");
    a.setID(1);
    CFields b = fullNode();
    a.swapField(b, true);
    EXPECT_EQ(7, a.asSint32());
    EXPECT_EQ(1, b.asSint32());
    EXPECT_STREQ("full", a.getName());
    EXPECT_STREQ("a", b.getName());
    EXPECT_EQ(5u, a.getID());
    EXPECT_EQ(1u, b.getID());
    EXPECT_EQ("// b", a.getCommentCopy(CP_before));
    EXPECT_FALSE(b.isComment());
    EXPECT_EQ(3, a.getOffsetStart());
    EXPECT_EQ(4, a.getOffsetEnd());
    EXPECT_EQ(0, b.getOffsetStart());
    EXPECT_EQ(9u, packetLength(a));
    EXPECT_NE(nullptr, a.pkt_GetOSA4User());
    EXPECT_EQ(nullptr, b.pkt_GetOSA4User());
    EXPECT_EQ(VK_actual, a.getVK());
    EXPECT_EQ(VK_fix, b.getVK());
    EXPECT_EQ(8, b.asSint64(VK_fix));
}

TEST(FieldSwapField, withoutPacketExpressionLeavesIt)
{
    CFields a(1);
    CFields b = fullNode();
    a.swapField(b, false);
    EXPECT_EQ(0u, packetLength(a));
    EXPECT_EQ(9u, packetLength(b));
    EXPECT_EQ(nullptr, a.pkt_GetOSA4User());
    EXPECT_NE(nullptr, b.pkt_GetOSA4User());
}

TEST(FieldSwapField, anotherWithoutIdAndNameLeavesThem)
{
    CFields a = fullNode();
    CFields b(1);
    a.swapField(b, true);
    EXPECT_STREQ("full", a.getName());
    EXPECT_EQ(5u, a.getID());
    EXPECT_STREQ("", b.getName());
    EXPECT_EQ(0u, b.getID());
    EXPECT_TRUE(b.isComment());
    EXPECT_FALSE(a.isComment());
}

TEST(FieldSwapField, withItselfChangesNothing)
{
    CFields node = fullNode();
    node.swapField(node, true);
    expectFull(node);
    node.swapValue(node, true);
    expectFull(node);
}

TEST(FieldSwapField, withOneBelowThrows)
{
    CFields tree;
    CFields& below = tree.addChildRef("a").addChildRef("b");
    below = 5;
    EXPECT_EQ("mismatched condition", thrown([&] { tree.swapField(below, true); }));
    EXPECT_EQ("mismatched condition", thrown([&] { below.swapField(tree, true); }));
    EXPECT_EQ("mismatched condition", thrown([&] { tree.swapValue(below, false); }));
    EXPECT_EQ("mismatched condition", thrown([&] { below.swapValue(tree, false); }));
    EXPECT_EQ(5, tree["a"]["b"].asSint32());
    EXPECT_EQ(2u, tree.getMemberCount());
}

TEST(FieldSwapField, membersOfOneParentAndContainersOfDifferentTrees)
{
    CFields tree;
    CFields& a = tree.addChildRef("a");
    CFields& b = tree.addChildRef("b");
    a.addChildRef("x") = 1;
    b.addArrayAt(2);
    a.swapField(b, true);
    EXPECT_STREQ("b", tree[0].getName());
    EXPECT_EQ(DT_array, tree[0].getDT());
    EXPECT_EQ(1, tree["a"]["x"].asSint32());
    CFields other("text");
    tree.swapField(other, true);
    EXPECT_EQ("text", tree.asString());
    EXPECT_EQ(2u, other.getChildCount());
}

}  // namespace

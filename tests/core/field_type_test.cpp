// tests/core/field_type_test.cpp - what a value is and what it could be read as: every type against every test.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "murv/fields.h"
#include "tests/support/thrown.h"

namespace
{

using namespace murv;
using murv::tests::thrown;

constexpr double s_cdTwoTo63 = 9223372036854775808.0;
constexpr double s_cdTwoTo64 = 18446744073709551616.0;

CFields filled(E_DataType dt)
{
    CFields node(dt);
    node.addChildRef("a");
    return node;
}

/// Letters of the range tests that pass: s Sint32, u Uint32, S Sint64, U Uint64, I integral, N numeric, D double.
std::string passed(const CFields& node, E_ValueKind vk = VK_actual)
{
    std::string letters;
    letters += node.isSint32(vk) ? "s" : "";
    letters += node.isUint32(vk) ? "u" : "";
    letters += node.isSint64(vk) ? "S" : "";
    letters += node.isUint64(vk) ? "U" : "";
    letters += node.isIntegral(vk) ? "I" : "";
    letters += node.isNumeric(vk) ? "N" : "";
    letters += node.isDouble(vk) ? "D" : "";
    return letters;
}

TEST(TypeTest, tellsTheTypeOfTheSlot)
{
    CFields node;
    EXPECT_TRUE(node.isNull());
    EXPECT_FALSE(node.isBool() || node.isCodelist() || node.isArray() || node.isField());
    EXPECT_TRUE(CFields(true).isBool());
    EXPECT_TRUE(CFields("").isCodelist());
    EXPECT_TRUE(CFields(DT_array).isArray());
    EXPECT_FALSE(CFields(DT_array).isField());
    EXPECT_TRUE(CFields(DT_fields).isField());
    EXPECT_FALSE(CFields(DT_fields).isArray());
    EXPECT_FALSE(CFields(1).isNull());
    node.setValue("x", VK_fix);
    EXPECT_TRUE(node.isCodelist(VK_fix));
    EXPECT_TRUE(node.isCodelist(VK_valid));
    EXPECT_FALSE(node.isNull(VK_fix));
    EXPECT_TRUE(node.isNull());
}

TEST(RangeTest, ofSignedIntegers)
{
    EXPECT_EQ("suSUIND", passed(0));
    EXPECT_EQ("suSUIND", passed(2147483647));
    EXPECT_EQ("uSUIND", passed(2147483648LL));
    EXPECT_EQ("uSUIND", passed(4294967295LL));
    EXPECT_EQ("SUIND", passed(4294967296LL));
    EXPECT_EQ("SUIND", passed(CFields::maxSint64));
    EXPECT_EQ("sSIND", passed(-1));
    EXPECT_EQ("sSIND", passed(-2147483648LL));
    EXPECT_EQ("SIND", passed(-2147483649LL));
    EXPECT_EQ("SIND", passed(CFields::minSint64));
}

TEST(RangeTest, ofUnsignedIntegers)
{
    EXPECT_EQ("suSUIND", passed(0u));
    EXPECT_EQ("suSUIND", passed(0x7FFFFFFFu));
    EXPECT_EQ("uSUIND", passed(0x80000000u));
    EXPECT_EQ("uSUIND", passed(0xFFFFFFFFu));
    EXPECT_EQ("SUIND", passed(0x100000000ULL));
    EXPECT_EQ("SUIND", passed(0x7FFFFFFFFFFFFFFFULL));
    EXPECT_EQ("UIND", passed(0x8000000000000000ULL));
    EXPECT_EQ("UIND", passed(CFields::maxUint64));
}

TEST(RangeTest, ofDoubles)
{
    EXPECT_EQ("suSUIND", passed(0.0));
    EXPECT_EQ("suSUIND", passed(-0.0));
    EXPECT_EQ("ND", passed(0.5));
    EXPECT_EQ("ND", passed(3.5));
    EXPECT_EQ("ND", passed(-0.5));
    EXPECT_EQ("suSUIND", passed(2147483647.0));
    EXPECT_EQ("ND", passed(2147483646.5));
    EXPECT_EQ("uSUIND", passed(2147483648.0));
    EXPECT_EQ("sSIND", passed(-2147483648.0));
    EXPECT_EQ("SIND", passed(-2147483649.0));
    EXPECT_EQ("uSUIND", passed(4294967295.0));
    EXPECT_EQ("SUIND", passed(4294967296.0));
    EXPECT_EQ("SUIND", passed(s_cdTwoTo63 - 1024));
    EXPECT_EQ("UIND", passed(s_cdTwoTo63));
    EXPECT_EQ("SIND", passed(-s_cdTwoTo63));
    EXPECT_EQ("ND", passed(-s_cdTwoTo63 - 2048));
    EXPECT_EQ("UIND", passed(s_cdTwoTo64 - 2048));
    EXPECT_EQ("ND", passed(s_cdTwoTo64));
    EXPECT_EQ("ND", passed(1e300));
    EXPECT_EQ("ND", passed(std::numeric_limits<double>::denorm_min()));
}

TEST(RangeTest, ofDoublesThatAreNoNumbers)
{
    EXPECT_EQ("ND", passed(std::nan("")));
    EXPECT_EQ("ND", passed(std::numeric_limits<double>::infinity()));
    EXPECT_EQ("ND", passed(-std::numeric_limits<double>::infinity()));
}

TEST(RangeTest, otherTypesPassNone)
{
    for (const CFields& node : {CFields(), CFields(true), CFields(false), CFields("5"), CFields(DT_codelist),
                                CFields(DT_array), CFields(DT_fields), filled(DT_array)})
        EXPECT_EQ("", passed(node));
}

TEST(RangeTest, looksAtTheChosenSlot)
{
    CFields node("text");
    node.setValue(-1, VK_fix);
    EXPECT_EQ("sSIND", passed(node, VK_fix));
    EXPECT_EQ("sSIND", passed(node, VK_valid));
    EXPECT_EQ("", passed(node));
}

struct tConvertible
{
    CFields m_tNode;
    const char* m_pLetters;  // of the types it converts to: n a f b s u d c
};

std::string convertible(const CFields& node, E_ValueKind vk = VK_actual)
{
    constexpr char letters[] = {'n', 'a', 'f', 'b', 's', 'u', 'd', 'c'};
    std::string result;
    for (unsigned int dt = 0; dt <= DT_codelist; ++dt)
    {
        if (node.isConvertible(static_cast<E_DataType>(dt), vk))
            result += letters[dt];
    }
    return result;
}

TEST(Convertible, numberToNullIsAskedOfTheValueThatIsMeant)
{
    CFields node(3);
    node.setVK(VK_fix);
    node.setValue(0.0, VK_fix);
    EXPECT_TRUE(node.isConvertible(DT_null, VK_fix));
    EXPECT_FALSE(node.isConvertible(DT_null));
}

TEST(Convertible, everyTypeToEveryOther)
{
    const tConvertible rows[] = {
        {CFields(), "nafbsudc"},
        {CFields(DT_array), "na"},
        {filled(DT_array), "a"},
        {CFields(DT_fields), "nf"},
        {filled(DT_fields), "f"},
        {false, "nbsudc"},
        {true, "bsudc"},
        {0, "nbsudc"},
        {5, "bsudc"},
        {-5, "bsdc"},
        {2147483648LL, "budc"},
        {4294967295LL, "budc"},
        {4294967296LL, "bdc"},
        {1LL << 40, "bdc"},
        {-2147483648LL, "bsdc"},
        {-2147483649LL, "bdc"},
        {0u, "nbsudc"},
        {5u, "bsudc"},
        {0x80000000u, "budc"},
        {0x100000000ULL, "bdc"},
        {CFields::maxUint64, "bdc"},
        {0.0, "nbsudc"},
        {-0.0, "nbsudc"},
        {3.5, "bsudc"},
        {-0.5, "bsdc"},
        {-3.5, "bsdc"},
        {2147483647.0, "bsudc"},
        {2147483647.5, "budc"},
        {-2147483648.0, "bsdc"},
        {-2147483648.5, "bdc"},
        {4294967295.0, "budc"},
        {4294967295.5, "bdc"},
        {1e300, "bdc"},
        {std::nan(""), "bdc"},
        {std::numeric_limits<double>::infinity(), "bdc"},
        {DT_codelist, "nc"},
        {"", "nc"},
        {CStaticString(""), "nc"},
        {"5", "c"},
        {CStaticString("5"), "c"},
    };
    for (const tConvertible& row : rows)
        EXPECT_EQ(row.m_pLetters, convertible(row.m_tNode))
            << row.m_tNode.getDT() << (row.m_tNode.getDT() >= DT_bool ? " " + row.m_tNode.asString() : std::string());
}

TEST(Convertible, looksAtTheChosenSlot)
{
    CFields node(DT_array);
    node.setValue("5", VK_fix);
    EXPECT_EQ("c", convertible(node, VK_fix));
    EXPECT_EQ("na", convertible(node));
    EXPECT_EQ("nafbsudc", convertible(CFields(5), VK_valid)) << "the second slot is null";
}

TEST(Convertible, toAnUnknownTypeThrows)
{
    EXPECT_EQ("[murv::CFields::isConvertible#0] Unknown data type(8)",
              thrown([] { static_cast<void>(CFields(5).isConvertible(static_cast<E_DataType>(8))); }));
    EXPECT_EQ("[murv::CFields::isConvertible#0] Unknown data type(99)",
              thrown([] { static_cast<void>(CFields().isConvertible(static_cast<E_DataType>(99))); }));
}

}  // namespace

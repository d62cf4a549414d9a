// tests/core/field_convert_test.cpp - reading a value as another type.
//
// Every accessor on every type, at and beyond every bound.
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
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
constexpr double s_cdInfinity = std::numeric_limits<double>::infinity();

/// What an accessor throws for the node.
#define MURV_THROWN(node, accessor) thrown([&] { static_cast<void>((node).accessor()); })

std::vector<CFields> containersAndTexts()
{
    CFields empty;
    empty.removeAll(DT_fields);
    return {CFields(DT_array), CFields(DT_fields),   empty,
            CFields("5"),      CFields(DT_codelist), CFields(CStaticString("5"))};
}

TEST(AsBool, ofEveryType)
{
    EXPECT_FALSE(CFields().asBool());
    EXPECT_TRUE(CFields(true).asBool());
    EXPECT_FALSE(CFields(false).asBool());
    EXPECT_TRUE(CFields(-1).asBool());
    EXPECT_FALSE(CFields(0).asBool());
    EXPECT_TRUE(CFields(1u).asBool());
    EXPECT_TRUE(CFields(1ULL << 63).asBool());
    EXPECT_FALSE(CFields(0u).asBool());
    EXPECT_TRUE(CFields(0.1).asBool());
    EXPECT_FALSE(CFields(0.0).asBool());
    EXPECT_FALSE(CFields(-0.0).asBool());
    EXPECT_TRUE(CFields(std::nan("")).asBool());
    for (const CFields& node : containersAndTexts())
        EXPECT_EQ("[murv::CFields::asBool#0] CFields is not convertible to bool.", MURV_THROWN(node, asBool));
}

TEST(AsSint32, ofEveryType)
{
    EXPECT_EQ(0, CFields().asSint32());
    EXPECT_EQ(1, CFields(true).asSint32());
    EXPECT_EQ(0, CFields(false).asSint32());
    EXPECT_EQ(-5, CFields(-5).asSint32());
    EXPECT_EQ(2147483647, CFields(2147483647LL).asSint32());
    EXPECT_EQ(CFields::minSint32, CFields(-2147483648LL).asSint32());
    EXPECT_EQ(2147483647, CFields(0x7FFFFFFFu).asSint32());
    EXPECT_EQ(3, CFields(3.5).asSint32());
    EXPECT_EQ(-3, CFields(-3.5).asSint32());
    EXPECT_EQ(2147483647, CFields(2147483647.0).asSint32());
    EXPECT_EQ(CFields::minSint32, CFields(-2147483648.0).asSint32());
    for (const CFields& node : containersAndTexts())
        EXPECT_EQ("[murv::CFields::asSint32#0] Value is not convertible to Sint32.", MURV_THROWN(node, asSint32));
}

TEST(AsSint32, outOfRange)
{
    for (const long long value : {2147483648LL, -2147483649LL, CFields::maxSint64, CFields::minSint64})
        EXPECT_EQ("[murv::CFields::asSint32#0] LSint out of Sint32 range", MURV_THROWN(CFields(value), asSint32));
    for (const unsigned long long value : {0x80000000ULL, CFields::maxUint64})
        EXPECT_EQ("[murv::CFields::asSint32#0] LUint out of Sint32 range", MURV_THROWN(CFields(value), asSint32));
    for (const double value :
         {2147483647.5, 2147483648.0, -2147483648.5, 1e300, s_cdInfinity, -s_cdInfinity, std::nan("")})
        EXPECT_EQ("[murv::CFields::asSint32#0] double out of Sint32 range", MURV_THROWN(CFields(value), asSint32));
}

TEST(AsUint32, ofEveryType)
{
    EXPECT_EQ(0u, CFields().asUint32());
    EXPECT_EQ(1u, CFields(true).asUint32());
    EXPECT_EQ(0u, CFields(false).asUint32());
    EXPECT_EQ(4294967295u, CFields(4294967295LL).asUint32());
    EXPECT_EQ(4294967295u, CFields(4294967295u).asUint32());
    EXPECT_EQ(3u, CFields(3.9).asUint32());
    EXPECT_EQ(0u, CFields(-0.0).asUint32());
    EXPECT_EQ(4294967295u, CFields(4294967295.0).asUint32());
    for (const CFields& node : containersAndTexts())
        EXPECT_EQ("[murv::CFields::asUint32#0] Value is not convertible to Uint32.", MURV_THROWN(node, asUint32));
}

TEST(AsUint32, outOfRange)
{
    for (const long long value : {-1LL, 4294967296LL, CFields::minSint64})
        EXPECT_EQ("[murv::CFields::asUint32#0] LSint out of Uint32 range", MURV_THROWN(CFields(value), asUint32));
    for (const unsigned long long value : {0x100000000ULL, CFields::maxUint64})
        EXPECT_EQ("[murv::CFields::asUint32#0] LUint out of Uint32 range", MURV_THROWN(CFields(value), asUint32));
    for (const double value : {-0.5, -1.0, 4294967295.5, 1e300, s_cdInfinity, -s_cdInfinity, std::nan("")})
        EXPECT_EQ("[murv::CFields::asUint32#0] double out of Uint32 range", MURV_THROWN(CFields(value), asUint32));
}

TEST(AsSint64, ofEveryType)
{
    EXPECT_EQ(0, CFields().asSint64());
    EXPECT_EQ(1, CFields(true).asSint64());
    EXPECT_EQ(0, CFields(false).asSint64());
    EXPECT_EQ(CFields::minSint64, CFields(CFields::minSint64).asSint64());
    EXPECT_EQ(CFields::maxSint64, CFields(0x7FFFFFFFFFFFFFFFULL).asSint64());
    EXPECT_EQ(-3, CFields(-3.9).asSint64());
    EXPECT_EQ(CFields::minSint64, CFields(-s_cdTwoTo63).asSint64());
    EXPECT_EQ(9223372036854774784LL, CFields(s_cdTwoTo63 - 1024).asSint64());
    for (const CFields& node : containersAndTexts())
        EXPECT_EQ("[murv::CFields::asSint64#0] CFields is not convertible to Sint64.", MURV_THROWN(node, asSint64));
}

TEST(AsSint64, theInclusiveBoundGivesTheGreatestNumber)
{
    EXPECT_EQ(9223372036854775807LL, CFields(s_cdTwoTo63).asSint64());
}

TEST(AsSint64, outOfRange)
{
    for (const unsigned long long value : {0x8000000000000000ULL, CFields::maxUint64})
        EXPECT_EQ("[murv::CFields::asSint64#0] LUint out of Sint64 range", MURV_THROWN(CFields(value), asSint64));
    for (const double value :
         {s_cdTwoTo63 + 2048, -s_cdTwoTo63 - 2048, 1e300, s_cdInfinity, -s_cdInfinity, std::nan("")})
        EXPECT_EQ("[murv::CFields::asSint64#0] double out of Sint64 range", MURV_THROWN(CFields(value), asSint64));
}

TEST(AsUint64, ofEveryType)
{
    EXPECT_EQ(0u, CFields().asUint64());
    EXPECT_EQ(1u, CFields(true).asUint64());
    EXPECT_EQ(0u, CFields(false).asUint64());
    EXPECT_EQ(9223372036854775807ULL, CFields(CFields::maxSint64).asUint64());
    EXPECT_EQ(CFields::maxUint64, CFields(CFields::maxUint64).asUint64());
    EXPECT_EQ(3u, CFields(3.9).asUint64());
    EXPECT_EQ(0u, CFields(-0.0).asUint64());
    EXPECT_EQ(9223372036854774784ULL, CFields(s_cdTwoTo63 - 1024).asUint64());
    EXPECT_EQ(9223372036854775808ULL, CFields(s_cdTwoTo63).asUint64());
    EXPECT_EQ(9223372036854777856ULL, CFields(s_cdTwoTo63 + 2048).asUint64());
    EXPECT_EQ(18446744073709549568ULL, CFields(s_cdTwoTo64 - 2048).asUint64());
    for (const CFields& node : containersAndTexts())
        EXPECT_EQ("[murv::CFields::asUint64#0] CFields is not convertible to Uint64.", MURV_THROWN(node, asUint64));
}

TEST(AsUint64, theInclusiveBoundGivesWhatItsArithmeticSays)
{
    EXPECT_EQ(9223372036854775808ULL, CFields(s_cdTwoTo64).asUint64());
}

TEST(AsUint64, outOfRange)
{
    for (const long long value : {-1LL, CFields::minSint64})
        EXPECT_EQ("[murv::CFields::asUint64#0] LSint out of Uint64 range", MURV_THROWN(CFields(value), asUint64));
    for (const double value : {-0.5, -1.0, s_cdTwoTo64 + 4096, 1e300, s_cdInfinity, -s_cdInfinity, std::nan("")})
        EXPECT_EQ("[murv::CFields::asUint64#0] double out of Uint64 range", MURV_THROWN(CFields(value), asUint64));
}

TEST(AsLong, areTheSameAs64)
{
    EXPECT_EQ(-5, CFields(-5).asLSint());
    EXPECT_EQ(5u, CFields(5u).asLUint());
    EXPECT_EQ("[murv::CFields::asSint64#0] CFields is not convertible to Sint64.", MURV_THROWN(CFields("x"), asLSint));
    EXPECT_EQ("[murv::CFields::asUint64#0] LSint out of Uint64 range", MURV_THROWN(CFields(-1), asLUint));
}

TEST(AsFloat, ofEveryType)
{
    EXPECT_EQ(0.0F, CFields().asFloat());
    EXPECT_EQ(1.0F, CFields(true).asFloat());
    EXPECT_EQ(0.0F, CFields(false).asFloat());
    EXPECT_EQ(-5.0F, CFields(-5).asFloat());
    EXPECT_EQ(5.0F, CFields(5u).asFloat());
    EXPECT_EQ(18446744073709551616.0F, CFields(CFields::maxUint64).asFloat());
    EXPECT_EQ(0.1F, CFields(0.1).asFloat());
    for (const CFields& node : containersAndTexts())
        EXPECT_EQ("[murv::CFields::asFloat#0] CFields is not convertible to float.", MURV_THROWN(node, asFloat));
}

TEST(AsFloat, beyondItsRangeIsInfinite)
{
    constexpr float infinity = std::numeric_limits<float>::infinity();
    EXPECT_EQ(infinity, CFields(1e300).asFloat());
    EXPECT_EQ(-infinity, CFields(-1e300).asFloat());
    EXPECT_EQ(infinity, CFields(s_cdInfinity).asFloat());
    EXPECT_EQ(FLT_MAX, CFields(static_cast<double>(FLT_MAX)).asFloat());
    EXPECT_EQ(FLT_MAX, CFields(std::nextafter(static_cast<double>(FLT_MAX), s_cdInfinity)).asFloat());
    EXPECT_EQ(-FLT_MAX, CFields(-std::nextafter(static_cast<double>(FLT_MAX), s_cdInfinity)).asFloat());
    EXPECT_EQ(infinity, CFields(0x1.ffffffp127).asFloat());
    EXPECT_EQ(FLT_MAX, CFields(std::nextafter(0x1.ffffffp127, 0.0)).asFloat());
    EXPECT_TRUE(std::isnan(CFields(std::nan("")).asFloat()));
    EXPECT_EQ(0.0F, CFields(1e-300).asFloat());
}

TEST(AsDouble, ofEveryType)
{
    EXPECT_EQ(0.0, CFields().asDouble());
    EXPECT_EQ(1.0, CFields(true).asDouble());
    EXPECT_EQ(0.0, CFields(false).asDouble());
    EXPECT_EQ(-5.0, CFields(-5).asDouble());
    EXPECT_EQ(-s_cdTwoTo63, CFields(CFields::minSint64).asDouble());
    EXPECT_EQ(s_cdTwoTo64, CFields(CFields::maxUint64).asDouble());
    EXPECT_EQ(0.1, CFields(0.1).asDouble());
    for (const CFields& node : containersAndTexts())
        EXPECT_EQ("[murv::CFields::asDouble#0] CFields is not convertible to double.", MURV_THROWN(node, asDouble));
}

TEST(AsString, ofEveryType)
{
    EXPECT_EQ("", CFields().asString());
    EXPECT_EQ("true", CFields(true).asString());
    EXPECT_EQ("false", CFields(false).asString());
    EXPECT_EQ("-9223372036854775808", CFields(CFields::minSint64).asString());
    EXPECT_EQ("18446744073709551615", CFields(CFields::maxUint64).asString());
    EXPECT_EQ("0.5", CFields(0.5).asString());
    EXPECT_EQ("", CFields(DT_codelist).asString());
    EXPECT_EQ("", CFields("").asString());
    EXPECT_EQ(std::string("a\0b", 3), CFields(std::string("a\0b", 3)).asString());
    EXPECT_EQ("static", CFields(CStaticString("static")).asString());
    EXPECT_EQ("[murv::CFields::asString#0] Type is not convertible to string",
              MURV_THROWN(CFields(DT_array), asString));
    EXPECT_EQ("[murv::CFields::asString#0] Type is not convertible to string",
              MURV_THROWN(CFields(DT_fields), asString));
}

TEST(Accessors, readTheChosenSlot)
{
    CFields node(1);
    node.setValue(2.75, VK_fix);
    EXPECT_TRUE(node.asBool(VK_fix));
    EXPECT_EQ(2, node.asSint32(VK_fix));
    EXPECT_EQ(2u, node.asUint32(VK_valid));
    EXPECT_EQ(2, node.asSint64(VK_fix));
    EXPECT_EQ(2u, node.asUint64(VK_fix));
    EXPECT_EQ(2, node.asLSint(VK_fix));
    EXPECT_EQ(2u, node.asLUint(VK_fix));
    EXPECT_EQ(2.75F, node.asFloat(VK_fix));
    EXPECT_EQ(2.75, node.asDouble(VK_fix));
    EXPECT_EQ("2.75", node.asString(VK_fix));
    EXPECT_EQ(0, CFields(7).asSint32(VK_fix)) << "an unused second slot is null";
}

TEST(Accessors, rangeTestsOfIntegersLookAtTheFirstValue)
{
    CFields node(1);
    node.setValue(0x1200000003LL, VK_fix);
    EXPECT_EQ(3, node.asSint32(VK_fix)) << "the low 32 bits";
    EXPECT_EQ(3u, node.asUint32(VK_fix));
    node.setValue(0xFFFFFFFFFFULL, VK_fix);
    EXPECT_EQ(-1, node.asSint32(VK_fix));
    EXPECT_EQ(0xFFFFFFFFu, node.asUint32(VK_fix));
    node.setValue(-1, VK_fix);
    EXPECT_EQ(CFields::maxUint64, node.asUint64(VK_fix));
    node.setValue(CFields::maxUint64, VK_fix);
    EXPECT_EQ(-1, node.asSint64(VK_fix));

    CFields text("text");
    text.setValue(1, VK_fix);
    EXPECT_EQ("[murv::CFields::asSint32#0] LSint out of Sint32 range", thrown([&] { text.asSint32(VK_fix); }));
    EXPECT_EQ("[murv::CFields::asUint32#0] LSint out of Uint32 range", thrown([&] { text.asUint32(VK_fix); }));
    EXPECT_EQ("[murv::CFields::asUint64#0] LSint out of Uint64 range", thrown([&] { text.asUint64(VK_fix); }));
    EXPECT_EQ(1, text.asSint64(VK_fix));
    text.setValue(1u, VK_fix);
    EXPECT_EQ("[murv::CFields::asSint32#0] LUint out of Sint32 range", thrown([&] { text.asSint32(VK_fix); }));
    EXPECT_EQ("[murv::CFields::asUint32#0] LUint out of Uint32 range", thrown([&] { text.asUint32(VK_fix); }));
    EXPECT_EQ("[murv::CFields::asSint64#0] LUint out of Sint64 range", thrown([&] { text.asSint64(VK_fix); }));
    EXPECT_EQ(1u, text.asUint64(VK_fix));
}

TEST(Accessors, boundTestsOfDoublesLookAtTheValueRead)
{
    CFields node(1);
    node.setValue(1e300, VK_fix);
    EXPECT_EQ("[murv::CFields::asSint32#0] double out of Sint32 range", thrown([&] { node.asSint32(VK_fix); }));
    EXPECT_EQ("[murv::CFields::asUint32#0] double out of Uint32 range", thrown([&] { node.asUint32(VK_fix); }));
    EXPECT_EQ("[murv::CFields::asSint64#0] double out of Sint64 range", thrown([&] { node.asSint64(VK_fix); }));
    EXPECT_EQ("[murv::CFields::asUint64#0] double out of Uint64 range", thrown([&] { node.asUint64(VK_fix); }));
    CFields large(1e300);
    large.setValue(5.0, VK_fix);
    EXPECT_EQ(5, large.asSint32(VK_fix));
    EXPECT_EQ(5u, large.asUint64(VK_fix));
}

struct tSigned
{
    CFields m_tNode;
    bool m_bOk;
    long long m_llValue;
};

TEST(ToSint64, readsNumbersAndText)
{
    const tSigned rows[] = {
        {-5, true, -5},       {5u, true, 5},         {7.0, true, 7},
        {"123", true, 123},   {"-123", true, -123},  {CStaticString("77"), true, 77},
        {"", true, 0},        {7.5, false, 0},       {std::nan(""), false, 0},
        {true, false, 0},     {CFields(), false, 0}, {DT_codelist, false, 0},
        {DT_array, false, 0}, {DT_fields, false, 0}, {CStaticString("9223372036854775807"), true, CFields::maxSint64},
    };
    for (const tSigned& row : rows)
    {
        long long out = 99;
        EXPECT_EQ(row.m_bOk, row.m_tNode.toSint64(out));
        EXPECT_EQ(row.m_llValue, out);
        long narrow = 99;
        const bool fits = row.m_llValue == static_cast<long>(row.m_llValue);
        EXPECT_EQ(row.m_bOk && fits, row.m_tNode.toSint64(narrow));
        EXPECT_EQ(fits ? row.m_llValue : 0, narrow);
    }
}

TEST(ToSint64, textIsReadToItsFullLength)
{
    long long out = 0;
    const CFields withNul(std::string("12\0003", 4));
    EXPECT_FALSE(withNul.toSint64(out)) << "a NUL byte is no digit";
    const CFields text("abc");
    EXPECT_FALSE(text.toSint64(out));
}

TEST(ToSint64, mayThrowWhereOnlyTheOtherSignFits)
{
    long long out = 99;
    EXPECT_EQ("[murv::CFields::asSint64#0] LUint out of Sint64 range",
              thrown([&] { CFields(CFields::maxUint64).toSint64(out); }));
    EXPECT_EQ(0, out);
    unsigned long long other = 99;
    EXPECT_EQ("[murv::CFields::asUint64#0] LSint out of Uint64 range", thrown([&] { CFields(-1).toUint64(other); }));
    EXPECT_EQ(0u, other);
}

TEST(ToUint64, readsNumbersAndText)
{
    unsigned long long out = 99;
    EXPECT_TRUE(CFields("123").toUint64(out));
    EXPECT_EQ(123u, out);
    EXPECT_TRUE(CFields(CStaticString("18446744073709551615")).toUint64(out));
    EXPECT_EQ(CFields::maxUint64, out);
    EXPECT_TRUE(CFields(5).toUint64(out));
    EXPECT_EQ(5u, out);
    EXPECT_TRUE(CFields(s_cdTwoTo63).toUint64(out));
    EXPECT_EQ(1ULL << 63, out);
    EXPECT_FALSE(CFields("abc").toUint64(out));
    EXPECT_FALSE(CFields(true).toUint64(out));
    EXPECT_EQ(0u, out);
    EXPECT_FALSE(CFields(DT_codelist).toUint64(out));
    unsigned long narrow = 99;
    EXPECT_TRUE(CFields("7").toUint64(narrow));
    EXPECT_EQ(7u, narrow);
    EXPECT_EQ(sizeof narrow == 8, CFields("18446744073709551615").toUint64(narrow));
    EXPECT_EQ(sizeof narrow == 8 ? CFields::maxUint64 : 0, narrow);
}

TEST(ToUint64, readsTheChosenSlot)
{
    CFields node("1");
    node.setValue("2", VK_fix);
    unsigned long long out = 0;
    EXPECT_TRUE(node.toUint64(out, VK_fix));
    EXPECT_EQ(2u, out);
    long long other = 0;
    EXPECT_TRUE(node.toSint64(other, VK_valid));
    EXPECT_EQ(2, other);
}

TEST(CodePoint, isLengthAndFirstByte)
{
    const char* data = nullptr;
    const CFields text(std::string("a\0b", 3));
    EXPECT_EQ(3u, text.getCodePoint(&data));
    EXPECT_EQ(text.getValuePtr(), data);
    static const char literal[] = "abcd";
    const CFields borrowed{CStaticString(literal)};
    EXPECT_EQ(4u, borrowed.getCodePoint(&data));
    EXPECT_EQ(literal, data);
    const CFields empty("");
    EXPECT_EQ(0u, empty.getCodePoint(&data));
    EXPECT_EQ(empty.getValuePtr(), data);
}

TEST(CodePoint, ofAnythingElseIsZeroAndLeavesThePointer)
{
    static const char before[] = "before";
    for (const CFields& node : {CFields(), CFields(DT_codelist), CFields(5), CFields(DT_array), CFields(true)})
    {
        const char* data = before;
        EXPECT_EQ(0u, node.getCodePoint(&data));
        EXPECT_EQ(before, data);
    }
}

TEST(ResizeCodes, changesAnOwnedString)
{
    CFields text("abc");
    EXPECT_TRUE(text.resizeCodes(5, ' '));
    EXPECT_EQ("abc  ", text.asString());
    EXPECT_TRUE(text.resizeCodes(1, ' '));
    EXPECT_EQ("a", text.asString());
    EXPECT_EQ('\0', static_cast<const char*>(text.getValuePtr())[1]);
    EXPECT_TRUE(text.resizeCodes(1, 'x'));
    EXPECT_EQ("a", text.asString());
    EXPECT_TRUE(text.resizeCodes(0, 'x'));
    EXPECT_EQ("", text.asString());
    EXPECT_TRUE(text.resizeCodes(2, 0));
    EXPECT_EQ(std::string(2, '\0'), text.asString());
}

TEST(ResizeCodes, leavesAStringThatWouldBeTooLong)
{
    CFields text("abc");
    for (const unsigned int length : {2147483643u, 4294967292u, 4294967295u})
    {
        EXPECT_TRUE(text.resizeCodes(length, ' '));
        EXPECT_EQ("abc", text.asString());
    }
}

TEST(ResizeCodes, ofTheSecondValueKeepsItsMark)
{
    CFields text("abc");
    text.setVK(VK_fix);
    EXPECT_TRUE(text.resizeCodes(4, '!', VK_fix));
    EXPECT_EQ("abc!", text.asString(VK_fix));
    EXPECT_EQ("abc", text.asString());
    EXPECT_EQ(VK_fix, text.getVK());
}

TEST(ResizeCodes, refusesAnythingElse)
{
    CFields borrowed{CStaticString("abc")};
    EXPECT_FALSE(borrowed.resizeCodes(5, ' '));
    EXPECT_EQ("abc", borrowed.asString());
    for (const CFields& other : {CFields(), CFields(DT_codelist), CFields(5), CFields(DT_array), CFields(true)})
    {
        CFields node(other);
        EXPECT_FALSE(node.resizeCodes(5, ' '));
        EXPECT_EQ(other, node);
    }
    CFields text("abc");
    EXPECT_FALSE(text.resizeCodes(5, ' ', VK_fix)) << "the second value is null";
}

TEST(ToInteger, setsTheLongToZeroBeforeItThrows)
{
    const CFields node(CFields::maxUint64);
    long out = 77;
    EXPECT_THROW(node.toSint64(out), murv::CLogicError);
    EXPECT_EQ(0, out);
}

}  // namespace

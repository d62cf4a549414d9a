// tests/layout/values/item_helpers.h - items, and what reading and making give for them, as short texts.
#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <string>
#include <string_view>

#include "layout/values/code_pages.h"
#include "layout/values/value_codec.h"
#include "murv/text.h"
#include "packet/keyword_table.h"

namespace murv::tests
{

using namespace murv::detail;

/// An item of fixed width with the padding that its form has without rules.
inline tItem fixedItem(E_ItemForm form, unsigned int length)
{
    tItem item;
    item.m_eForm = form;
    item.m_uiLength = length;
    const bool digits = form == IF_digits || form == IF_trailing || form == IF_octal || form == IF_hex;
    item.m_ePadding = digits || form == IF_zoned ? PAD_zerosFront : form == IF_text ? PAD_blanksAfter : PAD_none;
    return item;
}

/// An item of varying width; without a length there is no bound.
inline tItem varyingItem(E_ItemForm form, unsigned int most = 0)
{
    tItem item = fixedItem(form, most);
    item.m_bVaries = true;
    item.m_ePadding = PAD_none;
    return item;
}

inline tItem signedItem(tItem item)
{
    item.m_bSigned = true;
    return item;
}

inline tItem paddedItem(tItem item, E_Padding padding)
{
    item.m_ePadding = padding;
    return item;
}

inline tItem exactItem(tItem item)
{
    item.m_bExact = true;
    return item;
}

inline tItem decimalItem(tItem item, unsigned char decimals)
{
    item.m_bDecimals = true;
    item.m_ucDecimals = decimals;
    return item;
}

inline tItem pointedItem(tItem item, char point = '.')
{
    item.m_bDecimals = true;
    item.m_cPoint = point;
    return item;
}

inline tItem blankNullItem(tItem item)
{
    item.m_bBlankIsNull = true;
    return item;
}

inline tItem zeroNullItem(tItem item)
{
    item.m_bZeroIsNull = true;
    return item;
}

inline tItem timeItem(tItem item, std::string_view keyword)
{
    item.m_pTime = findKeyword(keyword);
    return item;
}

inline tItem tailedItem(tItem item, std::string_view tail)
{
    item.m_strTail = tail;
    return item;
}

inline tItem pageItem(tItem item, std::string_view page)
{
    item.m_pPage = findCodePage(page);
    return item;
}

inline tItem littleItem(tItem item)
{
    item.m_bLittle = true;
    return item;
}

inline tItem lowerItem(tItem item)
{
    item.m_bLower = true;
    return item;
}

inline tScalar signedScalar(long long value)
{
    tScalar scalar;
    scalar.m_eType = DT_sint;
    scalar.m_llValue = value;
    return scalar;
}

inline tScalar unsignedScalar(unsigned long long value)
{
    tScalar scalar;
    scalar.m_eType = DT_uint;
    scalar.m_ullValue = value;
    return scalar;
}

inline tScalar doubleScalar(double value)
{
    tScalar scalar;
    scalar.m_eType = DT_double;
    scalar.m_dValue = value;
    return scalar;
}

inline tScalar boolScalar(bool value)
{
    tScalar scalar;
    scalar.m_eType = DT_bool;
    scalar.m_bValue = value;
    return scalar;
}

/// Such as: null, 12, 12u, 1.5d, "text".
inline std::string shown(const tScalar& value)
{
    switch (value.m_eType)
    {
    case DT_null: return "null";
    case DT_bool: return value.m_bValue ? "true" : "false";
    case DT_sint: return ToString(value.m_llValue);
    case DT_uint: return ToString(value.m_ullValue) + "u";
    case DT_double: return ToString(value.m_dValue) + "d";
    case DT_codelist: return "\"" + std::string(value.m_strvText) + "\"";
    default: return "?";
    }
}

/// The value that reading gives; "!" and the name of a fault; a finding follows its value.
inline std::string readBack(const tItem& given, std::string_view bytes, unsigned int options = VO_none)
{
    std::string result[2];
    for (int prepared = 0; prepared < 2; ++prepared)
    {
        tItem item = given;
        if (prepared != 0)
            prepareItem(item);
        tScalar value;
        std::string scratch = "left over";
        const std::string exact(bytes);
        const E_PacketFault fault = readValue(item, exact, options, value, scratch);
        result[prepared] = fault == PF_none || isFinding(fault) ? shown(value) : "";
        if (fault != PF_none)
            result[prepared] += std::string("!") + getFaultName(fault);
    }
    EXPECT_EQ(result[0], result[1]) << "preparing an item changes what it reads: " << bytes;
    return result[0];
}

/// The bytes that making gives, or "!" and the name of a fault; a finding follows the bytes.
inline std::string made(const tItem& given, const tScalar& value)
{
    std::string result[2];
    for (int prepared = 0; prepared < 2; ++prepared)
    {
        tItem item = given;
        if (prepared != 0)
            prepareItem(item);
        std::string out = "before";
        const E_PacketFault fault = makeValue(item, value, out);
        EXPECT_EQ("before", out.substr(0, 6));
        result[prepared] = out.substr(6);
        if (fault != PF_none)
        {
            EXPECT_TRUE(isFinding(fault) || out == "before") << "a fault must append nothing";
            result[prepared] += std::string("!") + getFaultName(fault);
        }
    }
    EXPECT_EQ(result[0], result[1]) << "preparing an item changes what it makes: " << shown(value);
    return result[0];
}

inline std::string made(const tItem& item, std::signed_integral auto value)
{
    return made(item, signedScalar(value));
}

inline std::string made(const tItem& item, std::string_view text)
{
    return made(item, makeScalar(text));
}

inline std::string made(const tItem& item, const char* text)
{
    return made(item, makeScalar(std::string_view(text)));
}

inline std::string made(const tItem& item, double value)
{
    return made(item, doubleScalar(value));
}

/// Reading refuses the bytes, has a finding, or making gives the same bytes back.
inline ::testing::AssertionResult comesBack(const tItem& item, std::string_view bytes)
{
    tScalar value;
    std::string scratch;
    if (readValue(item, bytes, VO_none, value, scratch) != PF_none)
        return ::testing::AssertionSuccess();
    std::string again;
    const E_PacketFault fault = makeValue(item, value, again);
    if (fault == PF_none && again == bytes)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << ToQuotedEscapeString(bytes) << " is read as " << shown(value)
                                         << " and made as " << ToQuotedEscapeString(again) << " "
                                         << getFaultName(fault);
}

}  // namespace murv::tests

// layout/values/value_codec.cpp - the table of forms, and length prefixes.
#include "layout/values/value_codec.h"

#include <iterator>

#include "core/text/digit_words.h"
#include "core/text/integer_text.h"
#include "core/text/word_order.h"
#include "layout/values/code_pages.h"
#include "layout/values/form_codecs.h"
#include "layout/values/number_text.h"

namespace murv::detail
{

namespace
{

struct tFormRow
{
    E_ItemForm m_eForm;
    tReadForm m_pRead;
    tMakeForm m_pMake;
};

constexpr tFormRow s_ctForms[] = {
    {IF_text, readText, makeText},
    {IF_bytes, readText, makeText},
    {IF_hexText, readHexText, makeHexText},
    {IF_digits, readDigitText, makeDigitText},
    {IF_trailing, readDigitText, makeDigitText},
    {IF_octal, readRadix, makeRadix},
    {IF_hex, readRadix, makeRadix},
    {IF_zoned, readDigitText, makeDigitText},
    {IF_binary, readBinary, makeBinary},
    {IF_float, readFloat, makeFloat},
    {IF_packed, readPacked, makePacked},
    {IF_bcd, readPacked, makePacked},
};

constexpr bool areFormsInOrder()
{
    for (unsigned int i = 0; i < std::size(s_ctForms); ++i)
    {
        if (s_ctForms[i].m_eForm != i)
            return false;
    }
    return true;
}

static_assert(areFormsInOrder() && std::size(s_ctForms) == s_cuiItemForms, "the form is the row");

constexpr std::size_t s_cnWord = 8;

const tCodePage* prefixPage4(const tItem& item)
{
    return item.m_pPrefixPage != nullptr ? item.m_pPrefixPage : item.m_pPage;
}

/// \return false when the bytes hold no number of 64 bits
bool readPrefixNumber(const tItem& item, std::string_view prefix, std::uint64_t& number)
{
    if (item.m_bBinaryPrefix)
    {
        // Wider than a word: the high bytes must be zero.
        const std::size_t spare = prefix.size() > s_cnWord ? prefix.size() - s_cnWord : 0;
        const std::string_view high = prefix.substr(item.m_bLittle ? prefix.size() - spare : 0, spare);
        number = loadOrdered(prefix.substr(item.m_bLittle ? 0 : spare, prefix.size() - spare), item.m_bLittle);
        return high.find_first_not_of('\0') == std::string_view::npos;
    }
    const tCodePage* const page = prefixPage4(item);
    if (page == nullptr || page->m_bAsciiLike)
        return readShortDigits(prefix.data(), prefix.size(), number);
    char digits[s_cnShortDigits] = {};
    for (std::size_t i = 0; i < prefix.size() && i < sizeof digits; ++i)
        digits[i] = static_cast<char>(page->m_aucCharacter4Byte[static_cast<unsigned char>(prefix[i])]);
    return readShortDigits(digits, prefix.size(), number);
}

constexpr bool isDecimal(E_ItemForm form)
{
    return form == IF_digits || form == IF_trailing || form == IF_zoned || form == IF_packed || form == IF_bcd;
}

/// A number without the zeros in front of its whole digits, which are padding.
std::string_view withoutZeros(std::string_view number)
{
    while (number.size() > 1 && number[0] == '0' && number[1] >= '0' && number[1] <= '9')
        number.remove_prefix(1);
    return number;
}

E_QuickForm quickForm4(const tItem& item)
{
    if (item.m_bVaries || item.m_uiLength == 0)
        return QF_none;
    if (item.m_eForm == IF_digits && item.m_bPlain && item.m_uiLength <= s_cnShortDigits)
        return QF_digits;
    if (item.m_eForm == IF_binary && item.m_bPlain && !item.m_bSigned && item.m_uiLength <= s_cnWord)
        return item.m_bLittle ? QF_little : QF_big;
    const bool isRaw = item.m_pPage == nullptr && item.m_pTime == nullptr;
    if (!isRaw || (item.m_eForm != IF_text && item.m_eForm != IF_bytes))
        return QF_none;
    return item.m_ePadding == PAD_blanksAfter ? QF_text : item.m_ePadding == PAD_none ? QF_bytes : QF_none;
}

/// Whether a number is zero, however it is given.
bool isZero(const tScalar& number)
{
    switch (number.m_eType)
    {
    case DT_sint:
    case DT_uint: return number.m_ullValue == 0;
    case DT_double: return number.m_dValue == 0;
    case DT_codelist:
        return !number.m_strvText.empty() && number.m_strvText.find_first_not_of("0.") == std::string_view::npos;
    default: return false;
    }
}

E_PacketFault makeRow(const tItem& item, const tScalar& value, E_Origin origin, std::string& out)
{
    const std::size_t before = out.size();
    const E_PacketFault fault = s_ctForms[item.m_eForm].m_pMake(item, value, origin, out);
    if (fault != PF_none && !isFinding(fault))
        out.resize(before);
    return fault;
}

}  // namespace

void prepareItem(tItem& item)
{
    const bool digits =
        item.m_eForm == IF_digits && item.m_ePadding == PAD_zerosFront && item.m_cPoint == 0 && item.m_strTail.empty();
    item.m_bBare = (digits || item.m_eForm == IF_binary) && !item.m_bVaries && !item.m_bExact;
    item.m_bTested = !item.m_vValid.empty() || !item.m_strValidDate.empty();
    for (const tBitField& bits : item.m_vBits)
        item.m_bTested = item.m_bTested || !bits.m_vValid.empty();
    const bool ascii = item.m_pPage == nullptr || item.m_pPage->m_bAsciiLike;
    item.m_bPlain = item.m_bBare && ascii && !item.m_bDecimals && !item.m_bZeroIsNull && item.m_pTime == nullptr;
    item.m_eQuick = quickForm4(item);
}

E_PacketFault readValue(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                        std::string& scratch)
{
    return s_ctForms[item.m_eForm].m_pRead(item, bytes, options, value, scratch);
}

E_PacketFault makeValue(const tItem& item, const tScalar& value, std::string& out)
{
    return makeRow(item, value, OR_data, out);
}

E_PacketFault makeOwnValue(const tItem& item, const tScalar& value, std::string& out)
{
    tScalar own = value;
    if (own.m_eType == DT_codelist && isDecimal(item.m_eForm) && !item.m_bExact)
        own.m_strvText = withoutZeros(own.m_strvText);
    if (item.m_bZeroIsNull && isZero(own))
        own = {};
    return makeRow(item, own, OR_layout, out);
}

E_PacketFault readPrefix(const tItem& item, std::string_view bytes, std::uint64_t& length)
{
    const std::size_t width = item.m_ucPrefix;
    std::uint64_t number = 0;
    if (!readPrefixNumber(item, bytes.substr(0, width), number))
        return item.m_bBinaryPrefix ? PF_size : PF_digits;
    const std::int64_t less = static_cast<std::int64_t>(width) - item.m_cCalibration;
    if (less >= 0 ? number < static_cast<std::uint64_t>(less)
                  : number > ~std::uint64_t{0} - static_cast<std::uint64_t>(-less))
        return PF_size;
    length = number - static_cast<std::uint64_t>(less);
    return item.m_uiLength != 0 && length > item.m_uiLength ? PF_size : PF_none;
}

E_PacketFault makePrefix(const tItem& item, std::uint64_t length, std::string& out)
{
    const std::size_t width = item.m_ucPrefix;
    const std::int64_t more = static_cast<std::int64_t>(width) - item.m_cCalibration;
    if (more >= 0 ? length > ~std::uint64_t{0} - static_cast<std::uint64_t>(more)
                  : length < static_cast<std::uint64_t>(-more))
        return PF_tooLong;
    const std::uint64_t number = length + static_cast<std::uint64_t>(more);
    const std::size_t before = out.size();
    if (item.m_bBinaryPrefix)
    {
        if (width < s_cnWord && number >> (8 * width) != 0)
            return PF_tooLong;
        const std::size_t spare = width > s_cnWord ? width - s_cnWord : 0;
        out.append(item.m_bLittle ? 0 : spare, '\0');
        appendOrdered(number, width - spare, item.m_bLittle, out);
        out.append(item.m_bLittle ? spare : 0, '\0');
        return PF_none;
    }
    const std::size_t digits = digits4Unsigned(number);
    if (digits > width)
        return PF_tooLong;
    out.append(width, '0');
    writeUnsigned(out.data() + out.size() - digits, number);
    makePageDigits(prefixPage4(item), out, before);
    return PF_none;
}

}  // namespace murv::detail

// layout/values/digit_values.cpp - decimal numbers in characters: the sign in front, after the digits, or in the last.
//
// Most numbers of packets are digits that fill their item. They have a path of their own, which leaves all else to the
// general one.
#include "core/text/digit_words.h"
#include "core/text/integer_text.h"
#include "core/text/trim.h"
#include "core/text/word_bytes.h"
#include "layout/values/code_pages.h"
#include "layout/values/digit_frame.h"
#include "layout/values/form_codecs.h"
#include "layout/values/number_text.h"
#include "packet/keyword_table.h"

namespace murv::detail
{

namespace
{

/// The last digit with its sign, by digit.
constexpr std::string_view s_cstrPositive = "{ABCDEFGHI";
constexpr std::string_view s_cstrNegative = "}JKLMNOPQR";

/// Digits of EBCDIC are F0 to F9 in all its pages.
constexpr std::uint64_t s_cullEbcdicDigits = s_cullOnes * 0xC0;

/// A sign found while reading.
struct tSign
{
    bool m_bNegative = false;
    bool m_bOld = false;  // the item is signed, the digits are plain
};

E_PacketFault takeTrailingSign(std::string_view& digits, tSign& sign)
{
    sign.m_bNegative = digits.back() == '-';
    if (!sign.m_bNegative && digits.back() != '+')
        return PF_sign;
    digits.remove_suffix(1);
    return PF_none;
}

/// Writes the last digit without its sign; the digits move to the scratch.
E_PacketFault takeZonedSign(std::string_view& digits, tSign& sign, std::string& scratch)
{
    const char last = digits.back();
    std::size_t digit = s_cstrPositive.find(last);
    if (digit == std::string_view::npos)
    {
        digit = s_cstrNegative.find(last);
        sign.m_bNegative = digit != std::string_view::npos;
    }
    if (digit == std::string_view::npos)
    {
        sign.m_bOld = last >= '0' && last <= '9';
        return sign.m_bOld ? PF_none : PF_sign;
    }
    if (scratch.empty())
    {
        scratch.reserve(2 * digits.size() + s_cnPresentationRoom);
        scratch = digits;
        digits = scratch;
    }
    scratch[static_cast<std::size_t>(digits.data() - scratch.data()) + digits.size() - 1] =
        static_cast<char>('0' + digit);
    return PF_none;
}

E_PacketFault takeSign(const tItem& item, std::string_view& digits, tSign& sign, std::string& scratch)
{
    if (item.m_eForm == IF_trailing)
        return takeTrailingSign(digits, sign);
    if (item.m_eForm == IF_zoned)
        return item.m_bSigned ? takeZonedSign(digits, sign, scratch) : digits.front() == '-' ? PF_sign : PF_none;
    sign.m_bNegative = digits.front() == '-';
    if (sign.m_bNegative)
        digits.remove_prefix(1);
    return PF_none;
}

/// A number with a written point, as the text that it is, without zeros in front.
E_PacketFault presentPointed(const tItem& item, bool negative, std::string_view digits, std::size_t whole,
                             tScalar& value, std::string& scratch)
{
    const std::string_view significant = trimFront(digits.substr(0, whole), '0');
    digits.remove_prefix(significant.empty() ? whole - 1 : whole - significant.size());
    return presentExact(item, negative, digits, value, scratch);
}

E_PacketFault readDigits(const tItem& item, unsigned int options, bool negative, std::string_view digits,
                         tScalar& value, std::string& scratch)
{
    std::uint64_t magnitude = 0;
    if (item.m_cPoint == 0 && !item.m_bExact && readShortDigits(digits.data(), digits.size(), magnitude))
    {
        const E_PacketFault fault = checkZerosInFront(item, digits);
        return fault != PF_none ? fault : presentWhole(item, options, negative, magnitude, value, scratch);
    }
    const std::size_t point = item.m_cPoint != 0 ? digits.find(item.m_cPoint) : std::string_view::npos;
    const std::string_view whole = digits.substr(0, point);
    const std::string_view fraction = point != std::string_view::npos ? digits.substr(point + 1) : std::string_view();
    if (!areDigits(whole) || !areDigits(fraction))
        return !whole.empty() && whole.front() == '+' ? PF_sign : PF_digits;
    const bool oneSided = point != std::string_view::npos && (whole.empty() || fraction.empty());
    if ((whole.empty() && fraction.empty()) || (oneSided && !item.m_bExact))
        return PF_digits;
    if (const E_PacketFault fault = checkZerosInFront(item, whole); fault != PF_none)
        return fault;
    if (item.m_bExact)
        return presentExact(item, negative, digits, value, scratch);
    if (item.m_cPoint != 0)
        return presentPointed(item, negative, digits, whole.size(), value, scratch);
    return presentDigits(item, options, negative, digits, value, scratch);
}

E_PacketFault readFramed(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                         std::string& scratch)
{
    std::string_view digits;
    bool isNull = false;
    E_PacketFault fault = stripFrame(item, bytes, digits, isNull, scratch);
    if (fault != PF_none || isNull)
    {
        value = {};
        return fault;
    }
    tSign sign;
    fault = takeSign(item, digits, sign, scratch);
    if (fault == PF_none)
        fault = readDigits(item, options, sign.m_bNegative, digits, value, scratch);
    return fault == PF_none && sign.m_bOld ? PF_oldSign : fault;
}

/// Zeros and an integer fill the item; what has no other rules.
E_PacketFault makePlain(const tItem& item, bool negative, unsigned long long magnitude, std::string& out)
{
    const std::size_t width = item.m_uiLength;
    const std::size_t digits = digits4Unsigned(magnitude);
    if (digits + (negative ? 1 : 0) > width)
        return PF_tooLong;
    char room[s_cnShortDigits];
    if (!negative && width <= sizeof room)
    {
        constexpr unsigned long long half = 100000000;
        storeWord(room, digits4Number(magnitude / half) + s_cullOnes * '0');
        storeWord(room + sizeof room / 2, digits4Number(magnitude % half) + s_cullOnes * '0');
        out.append(room + sizeof room - width, width);
        return PF_none;
    }
    const std::size_t before = out.size();
    out.append(width, '0');
    if (negative)
        out[before] = '-';
    writeUnsigned(out.data() + out.size() - digits, magnitude);
    return PF_none;
}

/// Zeros and the digits of a decimal text that has just the item's decimals, up to sixteen of them.
/// \return false when the text is another, or does not fit; nothing was appended
bool makePlainDecimals(const tItem& item, std::string_view text, std::string& out)
{
    char room[s_cnShortDigits];
    const std::size_t decimals = item.m_ucDecimals;
    if (decimals == 0 || text.size() > sizeof room + 1 || text.size() < decimals + 2 || item.m_uiLength > sizeof room)
        return false;
    const std::size_t whole = text.size() - decimals - 1;
    const bool zerosInFront = whole > 1 && text.front() == '0';
    if (text[whole] != '.' || zerosInFront || text.size() - 1 > item.m_uiLength)
        return false;
    storeWord(room, s_cullOnes * '0');
    storeWord(room + sizeof room / 2, s_cullOnes * '0');
    text.copy(room + sizeof room - decimals - whole, whole);
    text.copy(room + sizeof room - decimals, decimals, whole + 1);
    if (!allDigits(loadWord(room)) || !allDigits(loadWord(room + sizeof room / 2)))
        return false;
    out.append(room + sizeof room - item.m_uiLength, item.m_uiLength);
    return true;
}

/// How many zeros the digits of a date that does not fill its item need.
E_PacketFault zerosOfDate(const tItem& item, const tWrittenNumber& number, std::size_t& zeros)
{
    if (item.m_pTime == nullptr || isZeroFilled(item) || item.m_bExact)
        return PF_none;
    const std::size_t letters = item.m_pTime->name().size();
    if (number.size() > letters)
        return PF_tooLong;
    zeros = letters - number.size();
    return PF_none;
}

void appendNumber(const tItem& item, const tWrittenNumber& number, std::size_t zeros, std::string& out)
{
    if (number.m_bNegative && item.m_eForm == IF_digits)
        out += '-';
    out.append(zeros, '0');
    number.append(item.m_cPoint, out);
    if (item.m_eForm == IF_trailing)
        out += number.m_bNegative ? '-' : '+';
    if (item.m_eForm == IF_zoned && item.m_bSigned)
        out.back() = (number.m_bNegative ? s_cstrNegative : s_cstrPositive)[static_cast<std::size_t>(out.back() - '0')];
}

/// Lays a number out in the item.
/// \param asGiven  an exact item gets these digits: no zeros may be added
E_PacketFault layOut(const tItem& item, const tWrittenNumber& number, bool asGiven, std::string& out)
{
    std::size_t zeros = 0;
    std::size_t fill = 0;
    E_PacketFault fault = zerosOfDate(item, number, zeros);
    const bool signByte = item.m_eForm == IF_trailing || (item.m_eForm == IF_digits && number.m_bNegative);
    if (fault == PF_none)
        fault = fitFrame(item, zeros + number.size() + (signByte ? 1 : 0), fill);
    if (fault == PF_none && asGiven && fill != 0 && isZeroFilled(item))
        fault = PF_width;
    if (fault != PF_none)
        return fault;
    const std::size_t before = out.size();
    if (item.m_ePadding == PAD_blanksFront)
        out.append(fill, ' ');
    appendNumber(item, number, isZeroFilled(item) ? fill : zeros, out);
    if (item.m_ePadding == PAD_blanksAfter)
        out.append(fill, ' ');
    finishFrame(item, out, before);
    return PF_none;
}

E_PacketFault makeFramed(const tItem& item, const tScalar& value, std::string& out)
{
    tWrittenNumber number;
    E_PacketFault fault = takeNumber(item, value, number);
    if (fault == PF_none && number.m_bNegative && item.m_eForm == IF_zoned && !item.m_bSigned)
        fault = PF_negative;
    if (fault == PF_none)
        fault = layOut(item, number, item.m_bExact && value.m_eType == DT_codelist, out);
    std::uint64_t magnitude = 0;
    if (fault != PF_none || item.m_pTime == nullptr)
        return fault;
    return number.magnitude(magnitude) ? checkTime(item, number.m_bNegative, magnitude) : PF_date;
}

/// Null where zeros are null is the number 0, written as the item writes it.
E_PacketFault makeNull(const tItem& item, std::string& out)
{
    if (!item.m_bZeroIsNull)
        return makeBlank(item, out);
    tWrittenNumber zero;
    zero.m_strvWhole = "0";
    return layOut(item, zero, false, out);
}

}  // namespace

E_PacketFault readDigitText(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                            std::string& scratch)
{
    std::uint64_t magnitude = 0;
    if (item.m_bPlain && readShortDigits(bytes.data(), bytes.size(), magnitude))
    {
        value = makeScalar(false, magnitude);
        return PF_none;
    }
    const bool ebcdic = item.m_pPage != nullptr && !item.m_pPage->m_bAsciiLike;
    if (item.m_bBare && readShortDigits(bytes.data(), bytes.size(), magnitude, ebcdic ? s_cullEbcdicDigits : 0))
    {
        scratch.clear();
        return item.m_bDecimals && !ebcdic ? presentDigits(item, options, false, bytes, value, scratch)
                                           : presentWhole(item, options, false, magnitude, value, scratch);
    }
    return readFramed(item, bytes, options, value, scratch);
}

E_PacketFault makeDigitText(const tItem& item, const tScalar& value, E_Origin, std::string& out)
{
    if (item.m_bPlain && value.m_eType == DT_sint)
        return makePlain(item, value.m_llValue < 0, value.m_llValue < 0 ? 0 - value.m_ullValue : value.m_ullValue, out);
    if (value.m_eType == DT_null)
        return makeNull(item, out);
    const bool plainDecimals = item.m_bBare && item.m_bDecimals && !item.m_bZeroIsNull && item.m_pTime == nullptr &&
                               item.m_pPage == nullptr && value.m_eType == DT_codelist;
    if (plainDecimals && makePlainDecimals(item, value.m_strvText, out))
        return PF_none;
    return makeFramed(item, value, out);
}

}  // namespace murv::detail

// layout/values/radix_values.cpp - octal and hexadecimal numbers in characters.
//
// They have no sign. Hexadecimal digits have one case, as making could not know the other.
#include <cstdint>

#include "core/text/hex.h"
#include "core/text/trim.h"
#include "layout/values/digit_frame.h"
#include "layout/values/form_codecs.h"
#include "layout/values/number_text.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnMostDigits = 22;  // of 64 bits, in octal

constexpr unsigned int bits4Digit(const tItem& item)
{
    return item.m_eForm == IF_octal ? 3 : 4;
}

/// The value of a digit as the item writes it, or -1.
constexpr int digitValue(const tItem& item, char digit)
{
    const int value = hexValue(digit);
    if (item.m_eForm == IF_octal)
        return value < 8 ? value : -1;
    const bool lower = digit >= 'a';
    return value > 9 && lower != item.m_bLower ? -1 : value;
}

/// \return PF_range when 64 bits do not hold the number; the digits are looked at all the same
E_PacketFault scanDigits(const tItem& item, std::string_view digits, std::uint64_t& magnitude)
{
    const unsigned int bits = bits4Digit(item);
    bool lost = false;
    magnitude = 0;
    for (const char digit : digits)
    {
        const int value = digitValue(item, digit);
        if (value < 0)
            return digit == '-' || digit == '+' ? PF_sign : PF_digits;
        lost = lost || magnitude >> (64 - bits) != 0;
        magnitude = magnitude << bits | static_cast<unsigned int>(value);
    }
    return lost ? PF_range : PF_none;
}

/// Writes the digits at the end of a room. \return the first of them
char* writeDigits(const tItem& item, std::uint64_t magnitude, char* end)
{
    const unsigned int bits = bits4Digit(item);
    const char* const digits = item.m_bLower ? "0123456789abcdef" : "0123456789ABCDEF";
    do
    {
        *--end = digits[magnitude & ((1U << bits) - 1)];
        magnitude >>= bits;
    } while (magnitude != 0);
    return end;
}

/// The digits of a value, in a room or in the value.
E_PacketFault takeDigits(const tItem& item, const tScalar& value, char* end, std::string_view& digits,
                         std::uint64_t& magnitude)
{
    bool negative = false;
    if (item.m_bExact && value.m_eType == DT_codelist)
    {
        digits = value.m_strvText;
        const E_PacketFault fault = digits.empty() ? PF_digits : scanDigits(item, digits, magnitude);
        const bool isNull = item.m_bZeroIsNull && trimFront(digits, '0').empty();
        return fault == PF_none || fault == PF_range ? (isNull ? PF_lossy : PF_none) : fault;
    }
    if (value.m_eType == DT_null && !item.m_bZeroIsNull)
        return PF_null;
    if (item.m_bExact && value.m_eType != DT_null)
        return PF_type;  // the digits of an integer would come back as a text that says another number
    if (value.m_eType != DT_null)
    {
        if (const E_PacketFault fault = takeMagnitude(item, value, negative, magnitude); fault != PF_none)
            return fault;
    }
    const char* const first = writeDigits(item, magnitude, end);
    digits = {first, static_cast<std::size_t>(end - first)};
    return negative ? PF_negative : PF_none;
}

}  // namespace

E_PacketFault readRadix(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
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
    std::uint64_t magnitude = 0;
    fault = scanDigits(item, digits, magnitude);
    if (fault != PF_none && (fault != PF_range || !item.m_bExact))
        return fault;
    fault = checkZerosInFront(item, digits);
    if (fault != PF_none)
        return fault;
    return item.m_bExact ? presentExact(item, false, digits, value, scratch)
                         : presentWhole(item, options, false, magnitude, value, scratch);
}

E_PacketFault makeRadix(const tItem& item, const tScalar& value, E_Origin, std::string& out)
{
    if (value.m_eType == DT_null && item.m_bBlankIsNull)
        return makeBlank(item, out);
    char room[s_cnMostDigits];
    std::string_view digits;
    std::uint64_t magnitude = 0;
    std::size_t fill = 0;
    E_PacketFault fault = takeDigits(item, value, room + sizeof room, digits, magnitude);
    if (fault == PF_none)
        fault = fitFrame(item, digits.size(), fill);
    if (fault == PF_none && fill != 0 && isZeroFilled(item) && item.m_bExact && value.m_eType == DT_codelist)
        fault = PF_width;
    if (fault != PF_none)
        return fault;
    const std::size_t before = out.size();
    const bool inFront = item.m_ePadding != PAD_blanksAfter;
    if (inFront)
        out.append(fill, isZeroFilled(item) ? '0' : ' ');
    out += digits;
    if (!inFront)
        out.append(fill, ' ');
    const bool isTime = item.m_pTime != nullptr && value.m_eType != DT_null;
    fault = !isTime         ? PF_none
            : item.m_bExact ? checkTime(item, makeScalar(std::string_view(out).substr(before)))
                            : checkTime(item, false, magnitude);
    finishFrame(item, out, before);
    return fault;
}

}  // namespace murv::detail

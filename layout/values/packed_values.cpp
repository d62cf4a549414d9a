// layout/values/packed_values.cpp - two decimal digits a byte, with the sign in the last half byte or without one.
//
// Digits are counted while they are read as long as 64 bits hold them; longer ones become text first.
#include <cstdint>

#include "core/text/trim.h"
#include "layout/values/digit_frame.h"
#include "layout/values/form_codecs.h"
#include "layout/values/number_text.h"
#include "packet/keyword_table.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnBytesThatFit = 9;  // their digits pass no limit of 64 bits

constexpr unsigned int s_cuiPositive = 0xC;
constexpr unsigned int s_cuiNegative = 0xD;
constexpr unsigned int s_cuiUnsigned = 0xF;

/// Half bytes from the first on.
class CHalves
{
public:
    explicit CHalves(std::string_view bytes) : m_strvBytes(bytes)
    {
    }
    std::size_t size() const
    {
        return 2 * m_strvBytes.size();
    }
    unsigned int operator[](std::size_t at) const
    {
        const auto byte = static_cast<unsigned char>(m_strvBytes[at / 2]);
        return at % 2 == 0 ? byte >> 4 : byte & 15U;
    }

private:
    std::string_view m_strvBytes;
};

struct tPackedSign
{
    bool m_bNegative = false;
    bool m_bOld = false;
};

E_PacketFault takeSign(const tItem& item, unsigned int half, tPackedSign& sign)
{
    sign.m_bNegative = half == s_cuiNegative;
    sign.m_bOld = item.m_bSigned && half == s_cuiUnsigned;
    const bool known = item.m_bSigned ? half == s_cuiPositive || half == s_cuiNegative || half == s_cuiUnsigned
                                      : half == s_cuiUnsigned;
    return known ? PF_none : PF_sign;
}

/// Whether a number of varying width has a byte of zeros too many, or a date not all of its digits.
E_PacketFault checkFirstByte(const tItem& item, std::string_view bytes, std::size_t signs)
{
    if (!item.m_bVaries || item.m_bExact)
        return PF_none;
    if (item.m_pTime != nullptr)
        return bytes.size() == (item.m_pTime->name().size() + signs + 1) / 2 ? PF_none : PF_width;
    return bytes.size() > 1 && bytes.front() == 0 ? PF_zeros : PF_none;
}

E_PacketFault readNumber(const tItem& item, unsigned int options, const CHalves& halves, std::size_t digits,
                         bool negative, tScalar& value, std::string& scratch)
{
    if (halves.size() <= 2 * s_cnBytesThatFit && !item.m_bExact)
    {
        std::uint64_t magnitude = 0;
        for (std::size_t i = 0; i < digits; ++i)
        {
            if (halves[i] > 9)
                return PF_digits;
            magnitude = magnitude * 10 + halves[i];
        }
        return presentWhole(item, options, negative, magnitude, value, scratch);
    }
    scratch.reserve(2 * digits + s_cnPresentationRoom);
    for (std::size_t i = 0; i < digits; ++i)
    {
        if (halves[i] > 9)
            return PF_digits;
        scratch += static_cast<char>('0' + halves[i]);
    }
    const std::string_view text = scratch;
    return item.m_bExact ? presentExact(item, negative, text, value, scratch)
                         : presentDigits(item, options, negative, text, value, scratch);
}

/// The half byte for the sign, or PF_negative.
E_PacketFault half4Sign(const tItem& item, bool negative, unsigned int& half)
{
    half = !item.m_bSigned ? s_cuiUnsigned : negative ? s_cuiNegative : s_cuiPositive;
    return negative && (item.m_eForm == IF_bcd || !item.m_bSigned) ? PF_negative : PF_none;
}

/// Bytes that the digits and the sign need.
E_PacketFault bytes4Digits(const tItem& item, std::size_t digits, std::size_t signs, std::size_t& bytes)
{
    bytes = item.m_bVaries ? (digits + signs + 1) / 2 : item.m_uiLength;
    const bool bounded = !item.m_bVaries || item.m_uiLength != 0;
    return bounded && digits + signs > 2 * std::size_t{item.m_uiLength} ? PF_tooLong : PF_none;
}

/// Appends the digits in characters, then puts two into a byte.
void appendPacked(const tWrittenNumber& number, std::size_t bytes, bool packed, unsigned int sign, std::string& out)
{
    const std::size_t before = out.size();
    out.append(2 * bytes - number.size() - (packed ? 1 : 0), '0');
    number.append('.', out);
    if (packed)
        out += static_cast<char>(sign);
    for (std::size_t i = 0; i < bytes; ++i)
    {
        const auto high = static_cast<unsigned char>(out[before + 2 * i]);
        const auto low = static_cast<unsigned char>(out[before + 2 * i + 1]);
        out[before + i] = static_cast<char>((high & 15U) << 4 | (low & 15U));
    }
    out.resize(before + bytes);
}

}  // namespace

E_PacketFault readPacked(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                         std::string& scratch)
{
    if (bytes.empty())
        return PF_width;
    const CHalves halves(bytes);
    const bool packed = item.m_eForm == IF_packed;
    const std::size_t digits = halves.size() - (packed ? 1 : 0);
    tPackedSign sign;
    E_PacketFault fault = packed ? takeSign(item, halves[digits], sign) : PF_none;
    if (fault == PF_none)
        fault = checkFirstByte(item, bytes, packed ? 1 : 0);
    if (fault != PF_none)
        return fault;
    scratch.clear();
    fault = readNumber(item, options, halves, digits, sign.m_bNegative, value, scratch);
    return fault == PF_none && sign.m_bOld ? PF_oldSign : fault;
}

E_PacketFault makePacked(const tItem& item, const tScalar& value, E_Origin, std::string& out)
{
    tWrittenNumber number;
    const bool isNull = value.m_eType == DT_null;
    if (isNull && !item.m_bZeroIsNull)
        return PF_null;
    if (isNull)
        number.m_strvWhole = "0";
    const bool packed = item.m_eForm == IF_packed;
    std::size_t bytes = 0;
    unsigned int sign = 0;
    E_PacketFault fault = isNull ? PF_none : takeNumber(item, value, number);
    if (fault == PF_none)
        fault = half4Sign(item, number.m_bNegative, sign);
    std::size_t digits = number.size();
    if (item.m_pTime != nullptr && item.m_bVaries && digits < item.m_pTime->name().size())
        digits = item.m_pTime->name().size();
    if (fault == PF_none)
        fault = bytes4Digits(item, digits, packed ? 1 : 0, bytes);
    const bool asGiven = item.m_bExact && value.m_eType == DT_codelist;
    if (fault == PF_none && asGiven && digits + (packed ? 1 : 0) != 2 * bytes)
        fault = PF_width;
    if (fault != PF_none)
        return fault;
    appendPacked(number, bytes, packed, sign, out);
    std::uint64_t magnitude = 0;
    if (isNull || item.m_pTime == nullptr)
        return PF_none;
    return number.magnitude(magnitude) ? checkTime(item, number.m_bNegative, magnitude) : PF_date;
}

}  // namespace murv::detail

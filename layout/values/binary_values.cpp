// layout/values/binary_values.cpp - integers to the base 256, and IEEE 754 numbers.
//
// The bytes are loaded as the low ones of a word; the order of the bytes is all that differs between machines and
// layouts, and it is settled here.
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "core/text/bit_cast.h"
#include "core/text/double_text.h"
#include "core/text/number_scan.h"
#include "core/text/trim.h"
#include "core/text/word_bytes.h"
#include "core/text/word_order.h"
#include "layout/values/form_codecs.h"
#include "layout/values/number_text.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnWord = 8;
constexpr std::uint64_t s_cullTop = std::uint64_t{1} << 63;

constexpr std::uint32_t s_cuiQuiet4 = 0x7FC00000;
constexpr std::uint64_t s_cullQuiet8 = 0x7FF8000000000000;

/// The word with the sign of its low bytes.
constexpr std::uint64_t extendSign(std::uint64_t word, std::size_t bytes)
{
    const unsigned int unused = static_cast<unsigned int>(64 - 8 * bytes);
    return static_cast<std::uint64_t>(static_cast<std::int64_t>(word << unused) >> unused);
}

/// Whether that many bytes hold the word.
constexpr bool fitsBytes(std::uint64_t word, std::size_t bytes, bool isSigned)
{
    if (bytes >= s_cnWord)
        return true;
    return isSigned ? extendSign(word, bytes) == word : word >> (8 * bytes) == 0;
}

/// The fewest bytes that hold a word.
constexpr std::size_t fewestBytes(std::uint64_t word, bool isSigned)
{
    std::size_t bytes = 1;
    while (!fitsBytes(word, bytes, isSigned))
        ++bytes;
    return bytes;
}

/// The word of a number. \return a fault when no eight bytes hold it
E_PacketFault word4Number(const tItem& item, bool negative, std::uint64_t magnitude, std::uint64_t& word)
{
    if (negative && !item.m_bSigned)
        return PF_negative;
    if (item.m_bSigned && magnitude > s_cullTop - (negative ? 0 : 1))
        return PF_tooLong;
    word = negative ? 0 - magnitude : magnitude;
    return PF_none;
}

/// The digits of a number that is a decimal text or a double, without zeros at the end.
E_PacketFault digits4Number(const tScalar& value, std::string& digits)
{
    tItem plain;  // a number with a written point, and no other rule
    plain.m_eForm = IF_digits;
    plain.m_cPoint = '.';
    tWrittenNumber number;
    const E_PacketFault fault = takeNumber(plain, value, number);
    number.append('.', digits);
    if (number.m_bPoint)
    {
        digits = trimEnd(digits, '0');
        digits = trimEnd(digits, '.');
    }
    return fault == PF_sign && number.m_bZero ? PF_none : fault;  // zero has a sign here
}

tScalar makeScalar(double number)
{
    tScalar value;
    value.m_eType = DT_double;
    value.m_dValue = number;
    return value;
}

/// The double of a decimal text, when the shortest text of the double says the same number.
E_PacketFault double4Text(std::string_view text, double& number)
{
    std::string given;
    std::string back;
    if (const E_PacketFault fault = digits4Number(detail::makeScalar(text), given); fault != PF_none)
        return fault;
    const tScannedNumber scanned = scanNumber(text.data(), static_cast<unsigned int>(text.size()));
    const uScannedValue& value = scanned.m_uValue;
    number = scanned.m_eType == DT_double ? value.m_dValue
             : scanned.m_eType == DT_uint ? static_cast<double>(value.m_ullValue)
             : text.starts_with('-')      ? -static_cast<double>(0 - value.m_ullValue)
                                          : static_cast<double>(value.m_ullValue);
    const E_PacketFault fault = digits4Number(makeScalar(number), back);
    return fault == PF_type ? PF_tooLong : given == back ? PF_none : PF_lossy;
}

E_PacketFault double4Integer(const tScalar& value, double& number)
{
    const bool negative = value.m_eType == DT_sint && value.m_llValue < 0;
    const std::uint64_t magnitude = negative ? 0 - value.m_ullValue : value.m_ullValue;
    const int zeros = std::countr_zero(magnitude);
    if (magnitude != 0 && std::bit_width(magnitude >> zeros) > std::numeric_limits<double>::digits)
        return PF_lossy;
    number = negative ? -static_cast<double>(magnitude) : static_cast<double>(magnitude);
    return PF_none;
}

E_PacketFault takeFloat(const tScalar& value, double& number)
{
    switch (value.m_eType)
    {
    case DT_double: number = value.m_dValue; return PF_none;
    case DT_sint:
    case DT_uint: return double4Integer(value, number);
    case DT_codelist: return double4Text(value.m_strvText, number);
    case DT_null: return PF_null;
    default: return PF_type;
    }
}

}  // namespace

E_PacketFault readBinary(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                         std::string& scratch)
{
    if (bytes.empty() || bytes.size() > s_cnWord)
        return bytes.empty() ? PF_width : PF_range;
    std::uint64_t word = loadOrdered(bytes, item.m_bLittle);
    if (item.m_bSigned)
        word = extendSign(word, bytes.size());
    if (item.m_bVaries && fewestBytes(word, item.m_bSigned) != bytes.size())
        return PF_zeros;
    const bool negative = item.m_bSigned && word >= s_cullTop;
    if (item.m_bPlain)
    {
        value = makeScalar(negative, negative ? 0 - word : word);
        return PF_none;
    }
    scratch.clear();
    return presentWhole(item, options, negative, negative ? 0 - word : word, value, scratch);
}

E_PacketFault makeBinary(const tItem& item, const tScalar& value, E_Origin, std::string& out)
{
    std::uint64_t magnitude = 0;
    std::uint64_t word = 0;
    bool negative = false;
    const bool isNull = value.m_eType == DT_null;
    if (isNull && !item.m_bZeroIsNull)
        return PF_null;
    E_PacketFault fault = isNull ? PF_none : takeMagnitude(item, value, negative, magnitude);
    if (fault == PF_none)
        fault = word4Number(item, negative, magnitude, word);
    if (fault != PF_none)
        return fault;
    const std::size_t bytes = item.m_bVaries ? fewestBytes(word, item.m_bSigned) : item.m_uiLength;
    if (bytes > s_cnWord || !fitsBytes(word, bytes, item.m_bSigned) ||
        (item.m_bVaries && item.m_uiLength != 0 && bytes > item.m_uiLength))
        return PF_tooLong;
    appendOrdered(word, bytes, item.m_bLittle, out);
    return isNull ? PF_none : checkTime(item, negative, magnitude);
}

E_PacketFault readFloat(const tItem& item, std::string_view bytes, unsigned int, tScalar& value, std::string&)
{
    if (bytes.size() != 4 && bytes.size() != s_cnWord)
        return PF_width;
    const std::uint64_t word = loadOrdered(bytes, item.m_bLittle);
    const bool isShort = bytes.size() == 4;
    const double number = isShort ? bitCast<float>(static_cast<std::uint32_t>(word)) : bitCast<double>(word);
    if (std::isnan(number) && word != (isShort ? s_cuiQuiet4 : s_cullQuiet8))
        return PF_float;
    value.m_eType = DT_double;
    value.m_dValue = number;
    return PF_none;
}

E_PacketFault makeFloat(const tItem& item, const tScalar& value, E_Origin, std::string& out)
{
    double number = 0;
    if (const E_PacketFault fault = takeFloat(value, number); fault != PF_none)
        return fault;
    const bool isNan = std::isnan(number);
    std::uint64_t word = isNan ? s_cullQuiet8 : bitCast<std::uint64_t>(number);
    if (item.m_uiLength == 4)
    {
        // Beyond the last float and half of what would follow it, rounding would give infinity.
        const bool beyond = std::isfinite(number) && std::fabs(number) >= 0x1.FFFFFFp+127;
        if (beyond)
            return PF_tooLong;
        word = isNan ? s_cuiQuiet4 : bitCast<std::uint32_t>(static_cast<float>(number));
    }
    appendOrdered(word, item.m_uiLength == 4 ? 4 : s_cnWord, item.m_bLittle, out);
    return PF_none;
}

}  // namespace murv::detail

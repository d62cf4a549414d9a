// layout/values/number_text.cpp - digits as values, values as digits.
//
// What is not needed is not computed: digits that get a point are copied, never counted.
#include "layout/values/number_text.h"

#include <cmath>
#include <cstring>

#include "core/text/byte_scan.h"
#include "core/text/digit_words.h"
#include "core/text/integer_text.h"
#include "core/text/trim.h"
#include "layout/values/digit_frame.h"
#include "layout/values/value_codec.h"
#include "packet/time_value.h"

namespace murv::detail
{

namespace
{

constexpr std::uint64_t s_cullMostNegative = std::uint64_t{1} << 63;
constexpr std::uint64_t s_cullSixteenDigits = 10000000000000000;

constexpr std::size_t s_cnShort = 31;  // what copyShort takes

/// A text that is built in pieces: in a room for one that is short, else at once where it belongs.
template <class tPut>
void putPointed(bool negative, std::string_view digits, std::size_t decimals, const tPut& put)
{
    const std::size_t whole = digits.size() > decimals ? digits.size() - decimals : 0;
    if (negative)
        put("-");
    put(whole != 0 ? digits.substr(0, whole) : "0");
    if (decimals == 0)
        return;
    put(".");
    for (std::size_t zeros = decimals - (digits.size() - whole); zeros != 0; --zeros)
        put("0");
    put(digits.substr(whole));
}

/// Digits with a sign, and with a point before the last of them. \return the text, at the end of the scratch
std::string_view appendPointed(bool negative, std::string_view digits, std::size_t decimals, std::string& scratch)
{
    const std::size_t before = scratch.size();
    if (digits.size() > s_cnShort || decimals > s_cnShort)
        putPointed(negative, digits, decimals, [&](std::string_view piece) { scratch += piece; });
    else
    {
        char room[2 * s_cnShort + 3];
        char* out = room;
        putPointed(negative, digits, decimals, [&](std::string_view piece) {
            copyShort(out, piece.data(), piece.size());
            out += piece.size();
        });
        scratch.append(room, static_cast<std::size_t>(out - room));
    }
    return std::string_view(scratch).substr(before);
}

E_PacketFault presentZero(const tItem& item, bool negative, tScalar& value)
{
    if (negative)
        return PF_sign;
    value = item.m_bZeroIsNull ? tScalar() : makeScalar(false, 0);
    return PF_none;
}

bool isScaled(const tItem& item, unsigned int options)
{
    return item.m_bDecimals && (options & VO_unscaled) == 0;
}

std::string_view writtenMagnitude(char* room, unsigned long long magnitude)
{
    return {room, static_cast<std::size_t>(writeUnsigned(room, magnitude) - room)};
}

/// Splits a decimal text. \return false when it is none
bool splitText(std::string_view text, bool exact, tWrittenNumber& number)
{
    number.m_bNegative = !text.empty() && text.front() == '-';
    if (number.m_bNegative)
        text.remove_prefix(1);
    const std::size_t point = text.find('.');
    number.m_bPoint = point != std::string_view::npos;
    number.m_strvWhole = text.substr(0, point);
    number.m_strvFraction = number.m_bPoint ? text.substr(point + 1) : std::string_view();
    if (!areDigits(number.m_strvWhole) || !areDigits(number.m_strvFraction))
        return false;
    const bool oneSided = number.m_bPoint && (number.m_strvWhole.empty() || number.m_strvFraction.empty());
    return (exact || !oneSided) && number.wholeSize() + number.fractionSize() != 0;
}

E_PacketFault takeText(const tItem& item, std::string_view text, tWrittenNumber& number)
{
    if (!splitText(text, item.m_bExact, number))
        return !text.empty() && text.front() == '+' ? PF_sign : PF_digits;
    if (item.m_bExact)
        return PF_none;
    const std::string_view whole = number.m_strvWhole;
    const bool date = item.m_pTime != nullptr && whole.size() == item.m_pTime->name().size();
    if (whole.size() > 1 && whole.front() == '0' && !date)
        return PF_lossy;  // the zeros would not come back
    number.m_strvWhole = trimFront(whole, '0');
    return PF_none;
}

/// Removes the point from the digits of a text such as "1.5e-07". \return the digits, and where the point stood
std::string_view joinDigits(char* text, const char* end, std::ptrdiff_t& point)
{
    char* out = text;
    std::ptrdiff_t exponent = 0;
    point = -1;
    for (const char* p = text; p != end; ++p)
    {
        if (*p == '.')
            point = out - text;
        else if (*p == 'e')
        {
            const bool negative = p[1] == '-';
            for (p += 2; p != end; ++p)
                exponent = exponent * 10 + (*p - '0');
            exponent = negative ? -exponent : exponent;
            break;
        }
        else
            *out++ = *p;
    }
    point = (point < 0 ? out - text : point) + exponent;
    return {text, static_cast<std::size_t>(out - text)};
}

E_PacketFault takeDouble(double value, tWrittenNumber& number)
{
    if (!std::isfinite(value))
        return PF_type;
    number.m_bNegative = std::signbit(value);
    std::ptrdiff_t point = 0;
    char* const room = number.m_acRoom;
    const std::string_view digits = joinDigits(room, writeShortestDouble(room, std::fabs(value)), point);
    const auto size = static_cast<std::ptrdiff_t>(digits.size());
    if (point >= size)
        number.m_nWholeZeros = static_cast<std::size_t>(point - size);
    if (point < 0)
        number.m_nFractionZeros = static_cast<std::size_t>(-point);
    const auto whole = static_cast<std::size_t>(point < 0 ? 0 : point < size ? point : size);
    number.m_strvWhole = trimFront(digits.substr(0, whole), '0');
    number.m_strvFraction = trimEnd(digits.substr(whole), '0');
    if (number.m_strvFraction.empty())
        number.m_nFractionZeros = 0;
    number.m_bPoint = !number.m_strvFraction.empty();
    return PF_none;
}

void takeInteger(bool negative, unsigned long long magnitude, tWrittenNumber& number)
{
    number.m_bNegative = negative;
    if (magnitude != 0)
        number.m_strvWhole = writtenMagnitude(number.m_acRoom, magnitude);
}

bool asInteger(const tScalar& value, bool& negative, std::uint64_t& magnitude)
{
    negative = value.m_eType == DT_sint && value.m_llValue < 0;
    magnitude = negative ? 0 - value.m_ullValue : value.m_ullValue;
    return value.m_eType == DT_sint || value.m_eType == DT_uint;
}

E_PacketFault takeAny(const tItem& item, const tScalar& value, tWrittenNumber& number)
{
    std::uint64_t magnitude = 0;
    bool negative = false;
    if (asInteger(value, negative, magnitude))
    {
        takeInteger(negative, magnitude, number);
        return PF_none;
    }
    if (value.m_eType == DT_codelist)
        return takeText(item, value.m_strvText, number);
    return value.m_eType == DT_double ? takeDouble(value.m_dValue, number) : PF_type;
}

/// Only decimal digits in characters can have a point among them.
bool writesPoint(const tItem& item)
{
    return item.m_cPoint != 0 && (item.m_eForm == IF_digits || item.m_eForm == IF_trailing || item.m_eForm == IF_zoned);
}

/// Digits of a number without a written point, in units of its last decimal.
E_PacketFault scale(std::size_t decimals, tWrittenNumber& number)
{
    if (number.fractionSize() > decimals)
        return PF_lossy;
    number.m_bPoint = false;
    if (number.m_bZero)
    {
        number.m_strvWhole = "0";
        number.m_strvFraction = {};
        number.m_nFractionZeros = 0;
        return PF_none;
    }
    number.m_nLastZeros = decimals - number.fractionSize();
    if (number.wholeSize() == 0)
    {
        number.m_nFractionZeros = 0;
        number.m_strvFraction = trimFront(number.m_strvFraction, '0');
    }
    return PF_none;
}

}  // namespace

bool areDigits(std::string_view text)
{
    return skipDigits(text.data(), text.data() + text.size()) == text.data() + text.size();
}

bool magnitude4Digits(std::string_view digits, std::uint64_t& magnitude)
{
    if (digits.size() <= s_cnShortDigits)
        return readShortDigits(digits.data(), digits.size(), magnitude);
    const std::size_t high = digits.size() - s_cnShortDigits;
    std::uint64_t low = 0;
    if (digits.size() > s_cnIntegerTextRoom || !readShortDigits(digits.data(), high, magnitude) ||
        !readShortDigits(digits.data() + high, s_cnShortDigits, low))
        return false;
    constexpr std::uint64_t most = ~std::uint64_t{0};
    if (magnitude > (most - low) / s_cullSixteenDigits)
        return false;
    magnitude = magnitude * s_cullSixteenDigits + low;
    return true;
}

E_PacketFault checkTime(const tItem& item, bool negative, std::uint64_t magnitude)
{
    return item.m_pTime == nullptr || (!negative && isTimeValue(*item.m_pTime, magnitude)) ? PF_none : PF_date;
}

E_PacketFault checkTime(const tItem& item, const tScalar& value)
{
    bool negative = false;
    std::uint64_t magnitude = 0;
    if (item.m_pTime == nullptr || value.m_eType == DT_null)
        return PF_none;
    const bool whole = asInteger(value, negative, magnitude) ||
                       (value.m_eType == DT_codelist && value.m_strvText.size() == item.m_pTime->name().size() &&
                        magnitude4Digits(value.m_strvText, magnitude));
    return whole ? checkTime(item, negative, magnitude) : PF_date;
}

E_PacketFault presentWhole(const tItem& item, unsigned int options, bool negative, unsigned long long magnitude,
                           tScalar& value, std::string& scratch)
{
    char room[s_cnIntegerTextRoom];
    if (magnitude == 0 && (negative || item.m_bZeroIsNull))
        return presentZero(item, negative, value);
    if (isScaled(item, options))
        value = makeScalar(appendPointed(negative, writtenMagnitude(room, magnitude), item.m_ucDecimals, scratch));
    else if (negative && magnitude > s_cullMostNegative)
        value = makeScalar(appendPointed(true, writtenMagnitude(room, magnitude), 0, scratch));
    else
        value = makeScalar(negative, magnitude);
    return checkTime(item, negative, magnitude);
}

E_PacketFault presentDigits(const tItem& item, unsigned int options, bool negative, std::string_view digits,
                            tScalar& value, std::string& scratch)
{
    std::uint64_t magnitude = 0;
    const std::string_view significant = trimFront(digits, '0');
    if (significant.empty() || (!isScaled(item, options) && magnitude4Digits(significant, magnitude)))
        return presentWhole(item, options, negative, magnitude, value, scratch);
    if (isScaled(item, options))
        value = makeScalar(appendPointed(negative, significant, item.m_ucDecimals, scratch));
    else
        value = makeScalar(negative ? appendPointed(true, significant, 0, scratch) : significant);
    return item.m_pTime != nullptr ? PF_date : PF_none;
}

E_PacketFault presentExact(const tItem& item, bool negative, std::string_view digits, tScalar& value,
                           std::string& scratch)
{
    const std::size_t point = item.m_cPoint != 0 ? digits.find(item.m_cPoint) : std::string_view::npos;
    const char zeros[] = {'0', item.m_cPoint != 0 ? item.m_cPoint : '0'};
    const bool zero = digits.find_first_not_of(zeros, 0, sizeof zeros) == std::string_view::npos;
    const bool isNull = zero && item.m_bZeroIsNull && point == std::string_view::npos;
    if (isNull && digits.size() > 1 && !isZeroFilled(item))
        return PF_zeros;  // null is written as a single one
    if (isNull || (zero && negative))
        return presentZero(item, negative, value);
    if (negative || (point != std::string_view::npos && item.m_cPoint != '.'))
    {
        const std::size_t before = scratch.size();
        if (negative)
            scratch += '-';
        scratch += digits;
        if (point != std::string_view::npos)
            scratch[before + (negative ? 1 : 0) + point] = '.';
        digits = std::string_view(scratch).substr(before);
    }
    value = makeScalar(digits);
    return checkTime(item, value);
}

void tWrittenNumber::append(char point, std::string& out) const
{
    out += m_strvWhole;
    out.append(m_nWholeZeros, '0');
    if (m_bPoint)
        out += point;
    out.append(m_nFractionZeros, '0');
    out += m_strvFraction;
    out.append(m_nLastZeros, '0');
}

bool tWrittenNumber::magnitude(std::uint64_t& result) const
{
    const std::size_t digits = wholeSize() + fractionSize();
    if (digits > s_cnIntegerTextRoom)
        return false;
    char room[s_cnIntegerTextRoom];
    std::memset(room, '0', sizeof room);
    m_strvWhole.copy(room, m_strvWhole.size());
    m_strvFraction.copy(room + wholeSize() + m_nFractionZeros, m_strvFraction.size());
    return magnitude4Digits({room, digits}, result);
}

E_PacketFault takeNumber(const tItem& item, const tScalar& value, tWrittenNumber& number)
{
    if (const E_PacketFault fault = takeAny(item, value, number); fault != PF_none)
        return fault;
    number.m_bZero = trimFront(number.m_strvWhole, '0').empty() && trimFront(number.m_strvFraction, '0').empty();
    if (number.m_bZero && number.m_bNegative)
        return PF_sign;
    if (number.m_bZero && item.m_bZeroIsNull && !(writesPoint(item) && number.m_bPoint))
        return PF_lossy;  // it would come back as null
    if (item.m_bExact && value.m_eType == DT_codelist)
        return number.m_bPoint && !writesPoint(item) ? PF_lossy : PF_none;
    if (!writesPoint(item))
        return scale(item.m_bDecimals && !item.m_bExact ? item.m_ucDecimals : 0, number);
    if (number.wholeSize() == 0)
        number.m_strvWhole = "0";
    return PF_none;
}

E_PacketFault takeMagnitude(const tItem& item, const tScalar& value, bool& negative, std::uint64_t& magnitude)
{
    if (!item.m_bDecimals && asInteger(value, negative, magnitude))
        return magnitude == 0 && item.m_bZeroIsNull ? PF_lossy : PF_none;
    tWrittenNumber number;
    const E_PacketFault fault = takeNumber(item, value, number);
    negative = number.m_bNegative;
    return fault != PF_none ? fault : number.magnitude(magnitude) ? PF_none : PF_tooLong;
}

}  // namespace murv::detail

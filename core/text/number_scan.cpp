// core/text/number_scan.cpp - decimal text as a typed number.
//
// A double's digits are collected into 64 bits and scaled by a power of ten with one rounding. Only a text so close to
// the middle between two doubles that this cannot tell them apart is read again by std::from_chars.
#include "core/text/number_scan.h"

#include <bit>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <system_error>

#include "core/text/byte_scan.h"
#include "core/text/decimal_scale.h"
#include "core/text/word_bytes.h"

namespace murv::detail
{

namespace
{

constexpr std::uint64_t s_cullSignBit = std::uint64_t{1} << 63;
constexpr std::uint64_t s_cullInfinity = std::uint64_t{0x7FF} << 52;
constexpr std::uint64_t s_cullMantissaLimit = 1844674407370955160;  // one more digit, and one more unit, fit 64 bits
constexpr std::uint64_t s_cullEightDigitLimit = 100000000000;       // eight more digits fit 64 bits
constexpr std::int64_t s_cllExponentLimit = 100000000000;           // more than any text has digits

constexpr std::size_t s_cnDigitsThatFit = 19;              // digits that fit 64 bits whatever they are
constexpr std::ptrdiff_t s_cnPlainRoom = 16 + 1 + 16 + 1;  // digits, point, digits, and what stops them

constexpr std::uint64_t s_ctPowersOfTen[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

constexpr bool isDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

constexpr std::uint64_t digitOf(char c) noexcept
{
    return static_cast<std::uint64_t>(c - '0');
}

constexpr bool isExponent(char c) noexcept
{
    return c == 'e' || c == 'E';
}

constexpr bool isBlank(char c) noexcept
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// mantissa * 10^exponent; when cut, digits that are not all zero follow the mantissa.
struct tDecimal
{
    std::uint64_t m_ullMantissa;
    std::int64_t m_llExponent;
    bool m_bCut;
};

/// The double nearest to mantissa * 10^exponent, as its bits.
///
/// \return false when it stays open which of two neighbours is nearest
bool toNearest(std::uint64_t mantissa, std::int64_t exponent, std::uint64_t& bits) noexcept
{
    bits = 0;
    if (mantissa == 0 || exponent < s_cnFirstPower)
        return true;
    bits = s_cullInfinity;
    if (exponent > std::numeric_limits<double>::max_exponent10)
        return true;

    const int power = static_cast<int>(exponent);
    const int zeros = std::countl_zero(mantissa);
    const tScaled scaled = scaleByFive(mantissa << zeros, power);
    const int extra = static_cast<int>(scaled.m_tProduct.m_ullHigh >> 63);  // the product has 191 or 192 bits

    // 53 bits of the product are the double's mantissa, fewer below the smallest normal number.
    unsigned int shift = static_cast<unsigned int>(10 + extra);
    int field = power + log2OfPower(power) - zeros + extra + 63 + 1023;
    if (field <= 0)
    {
        shift += static_cast<unsigned int>(1 - field);
        field = 1;
        bits = 0;
        if (shift > 64)
            return true;
    }
    std::uint64_t rounded;
    if (!scaled.round(shift, rounded))
        return false;
    // The top bit of a normal mantissa counts one up into the exponent field, and so does a carry out of it.
    bits = (static_cast<std::uint64_t>(field - 1) << 52) + rounded;
    if (bits > s_cullInfinity)
        bits = s_cullInfinity;
    return true;
}

/// As above for mantissa / 10^places, neither of them 0, where the mantissa has 64 bits and the places are few: one
/// product, as long as what it leaves out cannot matter.
bool toNearestFraction(std::uint64_t mantissa, int places, std::uint64_t& bits) noexcept
{
    const int zeros = std::countl_zero(mantissa);
    const std::uint64_t top = multiplyWide(mantissa << zeros, s_ctPowers[-places].m_ullHigh).m_ullHigh;
    const int extra = static_cast<int>(top >> 63);
    const int shift = 10 + extra;
    // The power is cut, and so is the product: the true one is larger, by one in the last bit at most. It is never just
    // half, as a half would show as one less in all bits.
    const std::uint64_t below = (std::uint64_t{1} << (shift - 1)) - 1;
    const std::uint64_t rounded = (top >> shift) + ((top >> (shift - 1)) & 1);
    const int field = log2OfPower(-places) - places - zeros + extra + 63 + 1023;
    bits = (static_cast<std::uint64_t>(field - 1) << 52) + rounded;
    return (top & below) != below;
}

/// The slow exact way. `text` begins with a digit, or a point and a digit.
std::uint64_t readExactly(const char* text, const char* end, const tDecimal& decimal) noexcept
{
    double value = 0;
    const std::from_chars_result result = std::from_chars(text, end, value, std::chars_format::general);
    if (result.ec != std::errc::result_out_of_range)
        return std::bit_cast<std::uint64_t>(value);
    return decimal.m_llExponent > 0 ? s_cullInfinity : 0;  // the mantissa has 64 bits: near either end this decides
}

const char* readWholePart(const char* p, const char* end, tDecimal& decimal) noexcept
{
    for (; p != end && isDigit(*p); ++p)
    {
        if (decimal.m_ullMantissa <= s_cullMantissaLimit)
        {
            decimal.m_ullMantissa = decimal.m_ullMantissa * 10 + digitOf(*p);
            continue;
        }
        decimal.m_bCut = decimal.m_bCut || *p != '0';
        ++decimal.m_llExponent;
    }
    return p;
}

/// Takes the last one to eight bytes of the text at once, if they are digits: read together with the bytes in front,
/// which then count as zeros. The text has at least 8 bytes before `end`.
const char* readLastDigits(const char* p, const char* end, tDecimal& decimal) noexcept
{
    const auto count = static_cast<std::size_t>(end - p);
    const std::uint64_t ours = ~std::uint64_t{0} << (64 - 8 * count);
    const std::uint64_t word = (loadWord(end - 8) & ours) | (s_cullOnes * '0' & ~ours);
    if (!allDigits(word))
        return p;
    decimal.m_ullMantissa = decimal.m_ullMantissa * s_ctPowersOfTen[count] + number4Digits(word);
    return end;
}

/// The digits, up to eight, that eight bytes begin with.
class CLeadingDigits
{
public:
    explicit CLeadingDigits(const char* bytes) noexcept : m_ullValues(loadWord(bytes) ^ (s_cullOnes * '0'))
    {
        // What a byte that is no digit carries over reaches only bytes behind it, which do not count any more.
        const std::uint64_t others = ((m_ullValues + s_cullOnes * (127 - 9)) | m_ullValues) & s_cullHighs;
        m_nCount = static_cast<std::size_t>(std::countr_zero(others)) / 8;
    }
    std::size_t count() const noexcept
    {
        return m_nCount;
    }
    /// The number that the digits write behind those of `before`; there must be one at least.
    std::uint64_t appendTo(std::uint64_t before) const noexcept
    {
        // Zeros go in front of them, and push out what is behind them.
        return before * s_ctPowersOfTen[m_nCount] + number4Values(m_ullValues << (64 - 8 * m_nCount));
    }

private:
    std::uint64_t m_ullValues;
    std::size_t m_nCount;
};

/// Reads digits behind the point, in a text that may go on behind the number.
const char* readOpenFraction(const char* p, const char* end, tDecimal& decimal) noexcept
{
    const char* const begin = p;
    while (end - p >= 8 && decimal.m_ullMantissa < s_cullEightDigitLimit)
    {
        const CLeadingDigits next(p);
        if (next.count() != 0)
            decimal.m_ullMantissa = next.appendTo(decimal.m_ullMantissa);
        p += next.count();
        if (next.count() != 8)
            break;
    }
    while (p != end && isDigit(*p) && decimal.m_ullMantissa <= s_cullMantissaLimit)
        decimal.m_ullMantissa = decimal.m_ullMantissa * 10 + digitOf(*p++);
    decimal.m_llExponent -= p - begin;
    for (; p != end && isDigit(*p); ++p)
        decimal.m_bCut = decimal.m_bCut || *p != '0';
    return p;
}

/// Reads behind the point; `text` is where the number began.
const char* readFraction(const char* text, const char* p, const char* end, tDecimal& decimal) noexcept
{
    const char* const begin = p;
    while (end - p >= 8 && decimal.m_ullMantissa < s_cullEightDigitLimit)
    {
        const std::uint64_t word = loadWord(p);
        if (!allDigits(word))
            break;
        decimal.m_ullMantissa = decimal.m_ullMantissa * 100000000 + number4Digits(word);
        p += 8;
    }
    if (p != end && end - p <= 8 && end - text >= 8 && decimal.m_ullMantissa < s_cullEightDigitLimit)
        p = readLastDigits(p, end, decimal);
    while (p != end && isDigit(*p) && decimal.m_ullMantissa <= s_cullMantissaLimit)
        decimal.m_ullMantissa = decimal.m_ullMantissa * 10 + digitOf(*p++);
    decimal.m_llExponent -= p - begin;
    for (; p != end && isDigit(*p); ++p)
        decimal.m_bCut = decimal.m_bCut || *p != '0';
    return p;
}

/// Reads behind an "e", and moves `p` behind what belongs to it; without a digit there is no exponent.
std::int64_t readExponent(const char*& p, const char* end) noexcept
{
    bool negative = false;
    if (p != end && (*p == '-' || *p == '+'))
        negative = *p++ == '-';
    std::int64_t exponent = 0;
    for (; p != end && isDigit(*p); ++p)
    {
        if (exponent < s_cllExponentLimit)
            exponent = exponent * 10 + static_cast<std::int64_t>(digitOf(*p));
    }
    return negative ? -exponent : exponent;
}

/// The double that a decimal stands for; `text` to `end` is how it was written.
std::uint64_t nearest4Decimal(const char* text, const char* end, const tDecimal& decimal) noexcept
{
    std::uint64_t bits;
    bool sure = toNearest(decimal.m_ullMantissa, decimal.m_llExponent, bits);
    if (decimal.m_bCut && sure)
    {
        std::uint64_t above;
        sure = toNearest(decimal.m_ullMantissa + 1, decimal.m_llExponent, above) && above == bits;
    }
    return sure ? bits : readExactly(text, end, decimal);
}

/// Reads on from `p`, where the digits from `text` to `p` are `whole` already.
std::uint64_t readDecimal(const char* text, const char* p, const char* end, std::uint64_t whole) noexcept
{
    tDecimal decimal{whole, 0, false};
    p = readWholePart(p, end, decimal);
    if (p != end && *p == '.')
        p = readFraction(text, p + 1, end, decimal);
    if (p != end && isExponent(*p))
        decimal.m_llExponent += readExponent(++p, end);
    return nearest4Decimal(text, end, decimal);
}

tScannedNumber makeDouble(std::uint64_t bits, bool negative) noexcept
{
    tScannedNumber number{};
    number.m_eType = DT_double;
    number.m_uValue.m_dValue = std::bit_cast<double>(negative ? bits | s_cullSignBit : bits);
    return number;
}

/// The rule of atof, from the beginning of the text.
tScannedNumber scanDouble(const char* p, const char* end) noexcept
{
    while (p != end && isBlank(*p))
        ++p;
    bool negative = false;
    if (p != end && (*p == '-' || *p == '+'))
        negative = *p++ == '-';
    const bool number = p != end && (isDigit(*p) || (*p == '.' && end - p > 1 && isDigit(p[1])));
    return number ? makeDouble(readDecimal(p, p, end, 0), negative) : makeDouble(0, false);
}

tScannedNumber makeInteger(std::uint64_t value, bool negative) noexcept
{
    tScannedNumber number{};
    number.m_eType = DT_sint;
    if (negative)
        number.m_uValue.m_llValue = static_cast<long long>(0 - value);
    else if (value <= 2147483647)
        number.m_uValue.m_llValue = static_cast<long long>(value);
    else
    {
        number.m_eType = DT_uint;
        number.m_uValue.m_ullValue = value;
    }
    return number;
}

/// Goes on behind digits that were accepted: the digit at the limit is taken only as the last byte of the text.
const char* readToLimit(const char* p, const char* end, std::uint64_t limit, std::uint64_t& value) noexcept
{
    for (; p != end && isDigit(*p) && value <= limit / 10; ++p)
    {
        if (value == limit / 10 && (end - p > 1 || digitOf(*p) > limit % 10))
            break;
        value = value * 10 + digitOf(*p);
    }
    return p;
}

/// The general form of scanNumberToken.
const char* scanAnyToken(const char* text, const char* end, tScannedNumber& number) noexcept
{
    constexpr std::ptrdiff_t surelyInRange = 18;  // digits that cannot pass a limit
    const bool negative = *text == '-';
    const char* const digits = text + (negative ? 1 : 0);
    const char* p = digits;
    std::uint64_t value = 0;
    while (p != end && isDigit(*p) && p - digits < surelyInRange)
        value = value * 10 + digitOf(*p++);
    const bool isOpen = p != end && (isDigit(*p) || *p == '.' || isExponent(*p));
    if (!isOpen)
    {
        number = makeInteger(value, negative);
        return p;
    }
    if (isDigit(*p) || p == digits)
    {
        // Long or odd: find the end first, and read by the general rule.
        p = skipDigits(p, end);
        if (p != end && *p == '.')
            p = skipDigits(p + 1, end);
        if (p != end && isExponent(*p))
        {
            ++p;
            if (p != end && (*p == '+' || *p == '-'))
                ++p;
            p = skipDigits(p, end);
        }
        number = scanNumber(text, static_cast<unsigned int>(p - text));
        return p;
    }
    tDecimal decimal{value, 0, false};
    if (*p == '.')
        p = readOpenFraction(p + 1, end, decimal);
    if (p != end && isExponent(*p))
        decimal.m_llExponent += readExponent(++p, end);
    number = makeDouble(nearest4Decimal(digits, p, decimal), negative);
    return p;
}

/// Reads a number of up to 16 digits, or up to 19 with a point between them, and without exponent. There are at least
/// s_cnPlainRoom bytes.
/// \return behind it, or null when the number is another one or cannot be read so
const char* scanPlainToken(const char* digits, bool negative, tScannedNumber& number) noexcept
{
    // Few digits one by one: a loop whose end is foreseen is faster than a count that must be waited for.
    constexpr std::size_t few = 3;
    std::uint64_t value = 0;
    std::size_t count = 0;
    for (; count < few && isDigit(digits[count]); ++count)
        value = value * 10 + digitOf(digits[count]);
    if (count == few && isDigit(digits[few]))
    {
        const CLeadingDigits first(digits);
        value = first.appendTo(0);
        count = first.count();
        if (count == 8)
        {
            const CLeadingDigits second(digits + 8);
            if (second.count() != 0)
                value = second.appendTo(value);
            count += second.count();
        }
    }
    const char* p = digits + count;
    if (*p != '.' || count == 0)
    {
        if (count == 0 || isDigit(*p) || isExponent(*p))
            return nullptr;
        number = makeInteger(value, negative);
        return p;
    }
    const CLeadingDigits third(++p);
    if (third.count() == 0)
        return nullptr;
    value = third.appendTo(value);
    std::size_t places = third.count();
    if (places == 8)
    {
        const CLeadingDigits fourth(p + 8);
        if (fourth.count() != 0)
            value = fourth.appendTo(value);
        places += fourth.count();
    }
    p += places;
    if (count + places > s_cnDigitsThatFit || isDigit(*p) || isExponent(*p))
        return nullptr;
    std::uint64_t bits;
    // Fractions that a double holds exactly, such as 0.5, are among those that one product cannot decide.
    if (value == 0 || !toNearestFraction(value, static_cast<int>(places), bits))
        bits = nearest4Decimal(digits, p, {value, -static_cast<std::int64_t>(places), false});
    number = makeDouble(bits, negative);
    return p;
}

}  // namespace

const char* scanNumberToken(const char* text, const char* end, tScannedNumber& number) noexcept
{
    const bool negative = *text == '-';
    const char* const digits = text + (negative ? 1 : 0);
    const char* const behind = end - digits < s_cnPlainRoom ? nullptr : scanPlainToken(digits, negative, number);
    return behind != nullptr ? behind : scanAnyToken(text, end, number);
}

tScannedNumber scanNumber(const char* text, unsigned int length) noexcept
{
    if (text == nullptr || length == 0)
        return makeInteger(0, false);
    const char* const end = text + length;
    const char* p = text;
    const bool negative = *p == '-';
    if (negative || *p == '+')
        ++p;

    const char* const digits = p;
    const char* const unchecked = end - p > 18 ? p + 18 : end;  // 18 digits cannot pass a limit
    std::uint64_t value = 0;
    while (p != unchecked && isDigit(*p))
        value = value * 10 + digitOf(*p++);
    if (p == end)
        return makeInteger(value, negative);
    if (p != digits && !isDigit(*p))
        return makeDouble(readDecimal(digits, p, end, value), negative);

    const std::uint64_t limit =
        negative ? s_cullSignBit : std::numeric_limits<std::uint64_t>::max();  // -2^63 has the larger magnitude
    if (readToLimit(p, end, limit, value) == end)
        return makeInteger(value, negative);
    return scanDouble(text, end);
}

}  // namespace murv::detail

// core/text/number_scan.cpp - decimal text as a typed number.
//
// Digits are collected into 64 bits, eight at a time where the text has room for it: one by one, arrays of coordinates
// take 1.12 times as long to load, and single doubles of 14 digits and more 1.2 to 1.3 times to read. Tokens of
// documents have a fast path; what it leaves, and everything else, takes the general path, so that there is one rule.
#include "core/text/number_scan.h"

#include <bit>
#include <cstddef>
#include <limits>

#include "core/text/bit_cast.h"
#include "core/text/byte_scan.h"
#include "core/text/nearest_double.h"
#include "core/text/word_bytes.h"

namespace murv::detail
{

namespace
{

constexpr std::uint64_t s_cullSignBit = std::uint64_t{1} << 63;
constexpr std::uint64_t s_cullMantissaLimit = 1844674407370955160;  // one more digit, and one more unit, fit 64 bits
constexpr std::uint64_t s_cullEightDigitLimit = 100000000000;       // eight more digits fit 64 bits
constexpr std::int64_t s_cllExponentLimit = 100000000000;           // more than any text has digits

constexpr std::ptrdiff_t s_cnBelowLimits = 18;                // digits that pass no limit of 64 bits
constexpr std::size_t s_cnDigitsThatFit = 19;                 // digits that fit 64 bits whatever they are
constexpr std::ptrdiff_t s_cnFastPathRoom = 16 + 1 + 16 + 1;  // digits, point, digits, and what stops them

constexpr std::uint64_t s_ctPowersOfTen[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

constexpr bool isDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

constexpr std::uint64_t digitOf(char c) noexcept
{
    return static_cast<unsigned char>(c - '0');  // unsigned, as it then widens with the test for a digit
}

constexpr bool isExponent(char c) noexcept
{
    return c == 'e' || c == 'E';
}

constexpr bool isBlank(char c) noexcept
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The digits, up to eight, that eight bytes begin with.
class CLeadingDigits
{
public:
    explicit CLeadingDigits(std::uint64_t bytes) noexcept : m_ullValues(bytes ^ (s_cullOnes * '0'))
    {
        // A byte that is no digit may carry into the bytes after it; those no longer count.
        const std::uint64_t others = ((m_ullValues + s_cullOnes * (127 - 9)) | m_ullValues) & s_cullHighs;
        m_nCount = static_cast<std::size_t>(std::countr_zero(others)) / 8;
    }
    std::size_t count() const noexcept
    {
        return m_nCount;
    }
    /// The number that `before` and then the digits write; there must be one digit at least.
    std::uint64_t appendTo(std::uint64_t before) const noexcept
    {
        // Zeros come in before the digits and push out what follows them.
        return before * s_ctPowersOfTen[m_nCount] + number4Values(m_ullValues << (64 - 8 * m_nCount));
    }

private:
    std::uint64_t m_ullValues;
    std::size_t m_nCount;
};

/// The eight bytes from `p`, with zeros for those that are not before `end`. The text has at least 8 bytes.
std::uint64_t loadBefore(const char* p, const char* end) noexcept
{
    const std::ptrdiff_t left = end - p;
    return left >= 8 ? loadWord(p) : loadWord(end - 8) >> (64 - 8 * left);
}

/// Appends the digits from `p` on to the mantissa as if they followed the point: each lowers the exponent. Digits that
/// no longer fit leave the number as it is, and only mark it as cut when one of them is not 0.
///
/// \param text  the first byte that may be read, at or before `p`
/// \return the first byte that is no digit
inline const char* appendDigits(const char* text, const char* p, const char* end, tDecimal& decimal) noexcept
{
    const char* const begin = p;
    while (p != end && isDigit(*p) && end - text >= 8 && decimal.m_ullMantissa < s_cullEightDigitLimit)
    {
        const CLeadingDigits next(loadBefore(p, end));
        decimal.m_ullMantissa = next.appendTo(decimal.m_ullMantissa);
        p += next.count();
    }
    while (p != end && isDigit(*p) && decimal.m_ullMantissa <= s_cullMantissaLimit)
        decimal.m_ullMantissa = decimal.m_ullMantissa * 10 + digitOf(*p++);
    decimal.m_llExponent -= p - begin;
    for (; p != end && isDigit(*p); ++p)
        decimal.m_bCut = decimal.m_bCut || *p != '0';
    return p;
}

/// Appends up to 18 digits, which cannot overflow the number, so that no digit needs a check.
inline const char* appendBelowLimits(const char* p, const char* end, std::uint64_t& value) noexcept
{
    const char* const stop = end - p > s_cnBelowLimits ? p + s_cnBelowLimits : end;
    while (p != stop && isDigit(*p))
        value = value * 10 + digitOf(*p++);
    return p;
}

/// See readToLimit.
inline const char* appendToLimit(const char* p, const char* end, std::uint64_t limit, std::uint64_t& value) noexcept
{
    p = appendBelowLimits(p, end, value);
    for (; p != end && isDigit(*p) && value <= limit / 10; ++p)
    {
        if (value == limit / 10 && (end - p > 1 || digitOf(*p) > limit % 10))
            break;
        value = value * 10 + digitOf(*p);
    }
    return p;
}

/// Reads after an "e", and moves `p` past what belongs to it; without a digit there is no exponent.
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

tScannedNumber makeDouble(std::uint64_t bits, bool negative) noexcept
{
    tScannedNumber number{};
    number.m_eType = DT_double;
    number.m_uValue.m_dValue = bitCast<double>(negative ? bits | s_cullSignBit : bits);
    return number;
}

/// Reads the rest of a double, whose first digits and point are in the decimal already, and moves `p` past it.
///
/// \param text  a digit first, or a point and a digit
tScannedNumber finishDouble(const char* text, const char*& p, const char* end, tDecimal decimal, bool negative) noexcept
{
    p = appendDigits(text, p, end, decimal);
    if (p != end && isExponent(*p))
        decimal.m_llExponent += readExponent(++p, end);
    return makeDouble(nearest4Decimal(decimal, text, p), negative);
}

/// The same where `p` is not past the point, and the digits from `text` to `p` are `whole`.
tScannedNumber readDouble(const char* text, const char*& p, const char* end, std::uint64_t whole,
                          bool negative) noexcept
{
    tDecimal decimal{whole, 0, false};
    if (p != end && isDigit(*p))
    {
        const char* const more = p;
        p = appendDigits(text, p, end, decimal);
        decimal.m_llExponent += p - more;  // they are before the point
    }
    if (p != end && *p == '.')
        ++p;
    return finishDouble(text, p, end, decimal, negative);
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
    return number ? readDouble(p, p, end, 0, negative) : makeDouble(0, false);
}

/// General path of scanNumberToken.
const char* scanTokenGenerally(const char* text, const char* end, tScannedNumber& number) noexcept
{
    const bool negative = *text == '-';
    const char* const digits = text + (negative ? 1 : 0);
    std::uint64_t value = 0;
    const char* p = appendBelowLimits(digits, end, value);
    const bool goesOn = p != end && (isDigit(*p) || *p == '.' || isExponent(*p));
    if (!goesOn)
    {
        number = makeInteger(value, negative);
        return p;
    }
    if (!isDigit(*p) && p != digits)
    {
        number = readDouble(digits, p, end, value, negative);
        return p;
    }
    // Too long for a limit of 64 bits, or no digit yet: find the end first, and read by the rule for whole texts.
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

/// Appends up to 16 digits. Reads 16 bytes.
/// \return their number
inline std::size_t appendSixteen(const char* p, std::uint64_t& value) noexcept
{
    const CLeadingDigits first(loadWord(p));
    if (first.count() == 0)
        return 0;
    value = first.appendTo(value);
    if (first.count() != 8)
        return first.count();
    const CLeadingDigits second(loadWord(p + 8));
    if (second.count() != 0)
        value = second.appendTo(value);
    return 8 + second.count();
}

/// Fast path of scanNumberToken: up to 16 digits, or up to 19 with a point between them and whatever follows, and at
/// least s_cnFastPathRoom bytes, so that nothing has to ask where the text ends. Loading arrays of coordinates such as
/// -65.613616999999977 takes 22 percent less time than by the general path.
///
/// \return the end of the token, or null when the general path is to read it
const char* scanTokenFast(const char* digits, const char* end, bool negative, tScannedNumber& number) noexcept
{
    // A few digits are faster one by one: short loops predict well, while the word trick has to wait for its count.
    // Without this, documents with short numbers take 1.2 times as long to load.
    constexpr std::size_t few = 3;
    std::uint64_t value = 0;
    std::size_t count = 0;
    for (; count < few && isDigit(digits[count]); ++count)
        value = value * 10 + digitOf(digits[count]);
    if (count == few && isDigit(digits[few]))
        count = appendSixteen(digits, value = 0);
    const char* p = digits + count;
    if (*p != '.' || count == 0)
    {
        if (count == 0 || isDigit(*p) || isExponent(*p))
            return nullptr;
        number = makeInteger(value, negative);
        return p;
    }
    const std::size_t places = appendSixteen(++p, value);
    p += places;
    if (places == 0 || count + places > s_cnDigitsThatFit)
        return nullptr;
    const auto exponent = -static_cast<std::int64_t>(places);
    if (isDigit(*p) || isExponent(*p))
    {
        const char* after = p;
        number = finishDouble(digits, after, end, {value, exponent, false}, negative);
        return after;
    }
    std::uint64_t bits;
    if (value == 0 || !nearest4Fraction(value, -static_cast<int>(places), bits))
        bits = nearest4AnyDecimal({value, exponent, false}, digits, p);
    number = makeDouble(bits, negative);
    return p;
}

}  // namespace

const char* scanNumberToken(const char* text, const char* end, tScannedNumber& number) noexcept
{
    const bool negative = *text == '-';
    const char* const digits = text + (negative ? 1 : 0);
    const char* const after = end - digits < s_cnFastPathRoom ? nullptr : scanTokenFast(digits, end, negative, number);
    return after != nullptr ? after : scanTokenGenerally(text, end, number);
}

const char* readToLimit(const char* p, const char* end, std::uint64_t limit, std::uint64_t& value) noexcept
{
    value = 0;
    return appendToLimit(p, end, limit, value);
}

tScannedNumber scanNumber(const char* text, unsigned int length) noexcept
{
    if (text == nullptr || length == 0)
        return makeInteger(0, false);
    const char* const end = text + length;
    const bool negative = *text == '-';
    const char* const digits = text + (negative || *text == '+' ? 1 : 0);
    const std::uint64_t limit =
        negative ? s_cullSignBit : std::numeric_limits<std::uint64_t>::max();  // -2^63 has the larger magnitude
    std::uint64_t value = 0;
    const char* p = appendToLimit(digits, end, limit, value);
    if (p == end)
        return makeInteger(value, negative);
    return p != digits ? readDouble(digits, p, end, value, negative) : scanDouble(text, end);
}

}  // namespace murv::detail

// core/text/shortest_double.cpp - doubles as decimal text with the fewest digits that read back to the same.
//
// The double and the two ends of the range that reads back to it are scaled by a power of ten; the shortest decimal
// within the range is the result. The file shares no functions with the 17-digit printer: these would no longer be
// inlined there, and saving numbers would take 7 percent more instructions.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "core/text/bit_cast.h"
#include "core/text/decimal_scale.h"
#include "core/text/double_text.h"
#include "core/text/integer_text.h"
#include "core/text/wide_math.h"

namespace murv::detail
{

namespace
{

constexpr std::uint64_t s_cullHiddenBit = std::uint64_t{1} << 52;
constexpr std::uint64_t s_cullSignBit = std::uint64_t{1} << 63;
constexpr double s_cdFirstInexact = 9007199254740992.0;  // below, whole numbers need all their digits
constexpr int s_cnFirstExponent = -4;                    // exponents from here to the last one are not written
constexpr int s_cnLastExponent = 15;

/// value = digits * 10^exponent
struct tDecimal
{
    std::uint64_t m_ullDigits;
    int m_iExponent;
};

/// A number and the ends of the range that reads back to it, in quarters of a unit, which is a power of ten. Numbers
/// between quarters have the last bit set, so that comparing them with quarters is exact.
struct tScaledRange
{
    std::uint64_t m_ullLower;
    std::uint64_t m_ullValue;
    std::uint64_t m_ullUpper;

    /// Whether this many units read back to the value.
    bool holds(std::uint64_t units) const noexcept
    {
        return m_ullLower <= 4 * units && 4 * units <= m_ullUpper;
    }
};

/// \param quarters  four times the mantissa
/// \param close     the next double below is only half as far away as the next above
/// \param shift     scales together with 5^power
tScaledRange scaleRange(std::uint64_t quarters, bool close, int power, unsigned int shift) noexcept
{
    // A cut power is raised by one: then products err upwards, by less than the last bit stands for.
    tWide128 scale = s_ctPowers[power];
    if (power < 0 || power > s_cnLastExactPower)
    {
        ++scale.m_ullLow;
        scale.m_ullHigh += scale.m_ullLow == 0 ? 1 : 0;
    }
    const auto scaled = [&](std::uint64_t number) {
        const tWide192 product = multiplyWide(number << shift, scale);
        return product.m_ullHigh | (product.m_ullMiddle > 1 ? 1U : 0U);
    };
    // Halfway numbers are rounded to the even mantissa.
    const std::uint64_t odd = (quarters >> 2) & 1;
    return {scaled(quarters - (close ? 1 : 2)) + odd, scaled(quarters), scaled(quarters + 2) - odd};
}

/// floor(log10(2^exponent)), or of three quarters of that.
int log10OfTwoTo(int exponent, bool threeQuarters) noexcept
{
    return (exponent * 1262611 - (threeQuarters ? 524031 : 0)) >> 22;
}

/// The decimal of fewest digits that reads back to the number; of several the nearest. Zeros may end its digits.
///
/// The unit is the largest power of ten within the width of the range, so that the range holds whole units, and at most
/// one of tens of units; the latter is the shorter one, also when many zeros end it.
tDecimal toShortest(std::uint64_t magnitude) noexcept
{
    const int field = static_cast<int>(magnitude >> 52);
    const std::uint64_t fraction = magnitude & (s_cullHiddenBit - 1);
    const std::uint64_t mantissa = field == 0 ? fraction : fraction | s_cullHiddenBit;
    const int exponent = (field == 0 ? 1 : field) - 1075;
    const bool close = fraction == 0 && field > 1;
    const int unit = log10OfTwoTo(exponent, close);
    const int shift = exponent + log2OfPower(-unit) - unit + 1;
    const tScaledRange range = scaleRange(4 * mantissa, close, -unit, static_cast<unsigned int>(shift));

    const std::uint64_t below = range.m_ullValue / 4;
    if (below >= 10)
    {
        const std::uint64_t tens = below / 10;
        const bool isUpper = range.holds(10 * tens + 10);
        if (range.holds(10 * tens) != isUpper)
            return {tens + (isUpper ? 1 : 0), unit + 1};
    }
    const bool isUpper = range.holds(below + 1);
    if (range.holds(below) != isUpper)
        return {below + (isUpper ? 1 : 0), unit};
    const std::uint64_t half = 4 * below + 2;
    const bool up = range.m_ullValue > half || (range.m_ullValue == half && (below & 1) != 0);
    return {below + (up ? 1 : 0), unit};
}

char* put(char* out, const char* digits, int count) noexcept
{
    std::memcpy(out, digits, static_cast<std::size_t>(count));
    return out + count;
}

char* putZeros(char* out, int count) noexcept
{
    std::memset(out, '0', static_cast<std::size_t>(count));
    return out + count;
}

/// Digits with a point after the first `before`, and at least one digit after it.
char* putPointed(char* out, const char* digits, int count, int before) noexcept
{
    out = put(out, digits, std::min(before, count));
    out = putZeros(out, std::max(before - count, 0));
    *out++ = '.';
    return count > before ? put(out, digits + before, count - before) : putZeros(out, 1);
}

char* putExponent(char* out, int exponent) noexcept
{
    *out++ = 'e';
    *out++ = exponent < 0 ? '-' : '+';
    const auto magnitude = static_cast<unsigned int>(exponent < 0 ? -exponent : exponent);
    if (magnitude < 10)
        *out++ = '0';
    return writeUnsigned(out, magnitude);
}

char* layOutShortest(char* out, const tDecimal& decimal) noexcept
{
    char digits[s_cnIntegerTextRoom];
    int count = static_cast<int>(writeUnsigned(digits, decimal.m_ullDigits) - digits);
    const int exponent = decimal.m_iExponent + count - 1;  // of the first digit
    while (count > 1 && digits[count - 1] == '0')
        --count;
    if (exponent >= 0 && exponent <= s_cnLastExponent)
        return putPointed(out, digits, count, exponent + 1);
    if (exponent < 0 && exponent >= s_cnFirstExponent)
        return put(putZeros(put(out, "0.", 2), -1 - exponent), digits, count);
    out = count == 1 ? put(out, digits, 1) : putPointed(out, digits, count, 1);
    return putExponent(out, exponent);
}

}  // namespace

char* writeShortestDouble(char* out, double value) noexcept
{
    const auto bits = bitCast<std::uint64_t>(value);
    const std::uint64_t magnitude = bits & ~s_cullSignBit;
    *out = '-';
    out += bits >> 63;

    const auto positive = bitCast<double>(magnitude);
    if (positive < s_cdFirstInexact)
    {
        const auto whole = static_cast<std::int64_t>(positive);
        if (static_cast<double>(whole) == positive)
            return put(writeUnsigned(out, static_cast<unsigned long long>(whole)), ".0", 2);
    }
    return layOutShortest(out, toShortest(magnitude));
}

}  // namespace murv::detail

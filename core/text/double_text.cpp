// core/text/double_text.cpp - doubles as decimal text of 17 significant digits.
//
// The mantissa is scaled by a power of ten to an integer of 17 digits, with one exact rounding: powers of 128 bits are
// enough for every double, so no second, slower path is needed. Its digits are made eight at a time, in a word: one by
// one, arrays of coordinates take 1.26 times as long to save.
#include "core/text/double_text.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

#include "core/text/bit_cast.h"
#include "core/text/decimal_scale.h"
#include "core/text/integer_text.h"
#include "core/text/word_bytes.h"

namespace murv::detail
{

namespace
{

static_assert(std::numeric_limits<double>::is_iec559 && sizeof(double) == 8);

constexpr std::uint64_t s_cullMantissaMask = (std::uint64_t{1} << 52) - 1;
constexpr std::uint64_t s_cullSignBit = std::uint64_t{1} << 63;
constexpr std::uint64_t s_cull17Digits = 10000000000000000U;  // the smallest number of 17 digits
constexpr std::uint64_t s_cull18Digits = 100000000000000000U;
constexpr double s_cdFirstWithExponent = 1e17;

/// value = digits * 10^(exponent - 16), with exactly 17 digits.
struct tDecimal17
{
    std::uint64_t m_ullDigits;
    int m_iExponent;
};

/// value = mantissa * 2^exponent, with the top bit of the mantissa set.
struct tBinary64
{
    std::uint64_t m_ullMantissa;
    int m_iExponent;
};

char* writeText(char* out, std::string_view text) noexcept
{
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

tBinary64 split(std::uint64_t magnitude) noexcept
{
    const int field = static_cast<int>(magnitude >> 52);
    std::uint64_t mantissa = magnitude & s_cullMantissaMask;
    if (field != 0)
        return {(mantissa | (s_cullMantissaMask + 1)) << 11, field - 1075 - 11};
    const int shift = std::countl_zero(mantissa);
    return {mantissa << shift, -1074 - shift};
}

/// floor(log10(value)), or one less, by a straight line below the logarithm within each power of two.
int estimateExponent(const tBinary64& value) noexcept
{
    constexpr std::int64_t log10OfTwo = 1292913986;  // times 2^32
    const auto fraction = static_cast<std::int64_t>((value.m_ullMantissa << 1) >> 44);
    return static_cast<int>((((std::int64_t{value.m_iExponent} + 63) * (1 << 20) + fraction) * log10OfTwo) >> 52);
}

struct tAttempt
{
    tScaled m_tScaled;
    unsigned int m_uiShift;
};

tAttempt scaleTo17Digits(const tBinary64& value, int exponent) noexcept
{
    const int power = 16 - exponent;
    const int shift = 127 - 128 - log2OfPower(power) - power - value.m_iExponent;
    return {scaleByFive(value.m_ullMantissa, power), static_cast<unsigned int>(shift)};
}

tDecimal17 toDecimal(const tBinary64& value) noexcept
{
    int exponent = estimateExponent(value);
    tAttempt attempt = scaleTo17Digits(value, exponent);
    const std::uint64_t whole = attempt.m_tScaled.whole(attempt.m_uiShift);
    if (whole >= s_cull18Digits || whole < s_cull17Digits) [[unlikely]]
    {
        // Once is enough: a number that a cut power leaves a hair off 17 digits is rounded to 17 digits below.
        exponent += whole >= s_cull18Digits ? 1 : -1;
        attempt = scaleTo17Digits(value, exponent);
    }
    // The rounding is always certain. A cut power errs by less than 2^-69 of the last digit, and a search over all
    // exponents found no double whose digits from the 18th on come within 2^-65 of a half, except exact halves;
    // an exact half needs a power of the table that is exact.
    std::uint64_t digits = 0;
    static_cast<void>(attempt.m_tScaled.round(attempt.m_uiShift, digits));
    if (digits == s_cull18Digits)
    {
        digits = s_cull17Digits;
        ++exponent;
    }
    return {digits, exponent};
}

/// The 17 digits as text: two words and the last digit.
struct tDigitText
{
    std::uint64_t m_ullFirst;
    std::uint64_t m_ullSecond;
    char m_cLast;
    int m_iCount;  // digits up to the last one that is not zero
};

tDigitText spellDigits(std::uint64_t digits) noexcept
{
    constexpr std::uint64_t zeros = s_cullOnes * '0';
    const std::uint64_t lower = digits % 1000000000;
    const std::uint64_t first = digits4Number(digits / 1000000000);
    const std::uint64_t second = digits4Number(lower / 10);
    const std::uint64_t last = lower % 10;
    int count = 17;
    if (last == 0)
        count = second != 0 ? 16 - std::countl_zero(second) / 8 : 8 - std::countl_zero(first) / 8;
    return {first + zeros, second + zeros, static_cast<char>('0' + last), count};
}

/// Writes digits with a point after the first `before` (1 to 16) of them. Overwrites 18 bytes.
char* writePointed(char* out, const tDigitText& text, int before) noexcept
{
    const bool inFirst = before < 8;
    const std::uint64_t split = inFirst ? text.m_ullFirst : text.m_ullSecond;
    const unsigned int bits = static_cast<unsigned int>(before & 7) * 8;
    const std::uint64_t mask = (std::uint64_t{1} << bits) - 1;
    const std::uint64_t pointed = (split & mask) | (std::uint64_t{'.'} << bits) | ((split & ~mask) << 8);
    char* const end = out + text.m_iCount + 1;
    if (inFirst)
    {
        storeWord(out, pointed);
        storeWord(out + 8, text.m_ullSecond << 8 | text.m_ullFirst >> 56);
    }
    else
    {
        storeWord(out, text.m_ullFirst);
        storeWord(out + 8, pointed);
    }
    out[16] = static_cast<char>(text.m_ullSecond >> 56);
    out[17] = text.m_cLast;
    if (before == 16)
    {
        storeWord(out + 8, text.m_ullSecond);
        out[16] = '.';
    }
    return end;
}

char* writeExponent(char* out, int exponent) noexcept
{
    *out++ = 'e';
    *out++ = exponent < 0 ? '-' : '+';
    const auto magnitude = static_cast<unsigned int>(exponent < 0 ? -exponent : exponent);
    if (magnitude < 10)
        *out++ = '0';
    return writeUnsigned(out, magnitude);
}

/// Lays out a number that is not whole, or has an exponent, as "%g" does.
char* layOut(char* out, const tDecimal17& decimal) noexcept
{
    const tDigitText text = spellDigits(decimal.m_ullDigits);
    if (decimal.m_iExponent >= 0 && decimal.m_iExponent < 16)
        return writePointed(out, text, decimal.m_iExponent + 1);
    if (decimal.m_iExponent < 0 && decimal.m_iExponent >= -4)
    {
        std::memcpy(out, "0.000000", 8);
        out += 1 - decimal.m_iExponent;
        storeWord(out, text.m_ullFirst);
        storeWord(out + 8, text.m_ullSecond);
        out[16] = text.m_cLast;
        return out + text.m_iCount;
    }
    char* const end = writePointed(out, text, 1);
    return writeExponent(text.m_iCount == 1 ? out + 1 : end, decimal.m_iExponent);
}

}  // namespace

char* writeDouble(char* out, double value) noexcept
{
    const auto bits = bitCast<std::uint64_t>(value);
    const std::uint64_t magnitude = bits & ~s_cullSignBit;
    if (magnitude >> 52 == 0x7FF)
    {
        if ((magnitude & s_cullMantissaMask) != 0)
            return writeText(out, "null");
        return writeText(out, bits == magnitude ? "1e+9999" : "-1e+9999");
    }
    *out = '-';
    out += bits >> 63;

    const auto positive = bitCast<double>(magnitude);
    if (positive < s_cdFirstWithExponent)
    {
        const auto whole = static_cast<std::int64_t>(positive);
        if (static_cast<double>(whole) == positive)
            return writeUnsigned(out, static_cast<unsigned long long>(whole));
    }
    return layOut(out, toDecimal(split(magnitude)));
}

}  // namespace murv::detail

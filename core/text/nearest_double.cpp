// core/text/nearest_double.cpp - the double nearest to a decimal number.
//
// A mantissa that was cut is tried as it is and raised by one: when both give the same double, that is the result.
#include "core/text/nearest_double.h"

#include <charconv>
#include <limits>
#include <system_error>

#include "core/text/bit_cast.h"
#include "core/text/exact_double.h"

namespace murv::detail
{

namespace
{

constexpr std::uint64_t s_cullInfinity = std::uint64_t{0x7FF} << 52;

/// The bits for mantissa * 10^exponent.
///
/// \return false when it stays open which of two neighbours is nearest
bool scaleToNearest(std::uint64_t mantissa, std::int64_t exponent, std::uint64_t& bits) noexcept
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

/// The slow exact way. `text` begins with a digit, or a point and a digit.
#if defined(__cpp_lib_to_chars)
std::uint64_t readExactly(const char* text, const char* end, const tDecimal& decimal) noexcept
{
    double value = 0;
    const std::from_chars_result result = std::from_chars(text, end, value, std::chars_format::general);
    if (result.ec != std::errc::result_out_of_range)
        return bitCast<std::uint64_t>(value);
    return decimal.m_llExponent > 0 ? s_cullInfinity : 0;  // the mantissa has 64 bits: near either end this decides
}
#else
std::uint64_t readExactly(const char* text, const char* end, const tDecimal& decimal) noexcept
{
    std::int64_t exponent = decimal.m_llExponent;
    for (std::uint64_t mantissa = decimal.m_ullMantissa; mantissa >= 10; mantissa /= 10)
        ++exponent;
    return nearest4Digits(text, end, exponent);
}
#endif

}  // namespace

std::uint64_t nearest4AnyDecimal(const tDecimal& decimal, const char* text, const char* end) noexcept
{
    std::uint64_t bits;
    bool sure = scaleToNearest(decimal.m_ullMantissa, decimal.m_llExponent, bits);
    if (decimal.m_bCut && sure)
    {
        std::uint64_t above;
        sure = scaleToNearest(decimal.m_ullMantissa + 1, decimal.m_llExponent, above) && above == bits;
    }
    return sure ? bits : readExactly(text, end, decimal);
}

}  // namespace murv::detail

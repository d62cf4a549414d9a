// core/text/nearest_double.h - the double nearest to a decimal number.
//
// The mantissa is scaled by a power of ten with one rounding. Only a number so close to the middle between two doubles
// that 128 bits of the power do not decide is read again from its text, slowly and exactly.
#pragma once

#include <bit>
#include <cstdint>

#include "core/text/decimal_scale.h"
#include "core/text/wide_math.h"

namespace murv::detail
{

/// mantissa * 10^exponent; when cut, digits that are not all zero follow the mantissa.
struct tDecimal
{
    std::uint64_t m_ullMantissa;
    std::int64_t m_llExponent;
    bool m_bCut;
};

/// Fast path of nearest4Decimal: one product instead of two, for fractions. Without it, arrays of coordinates take 1.1
/// times as long to load.
///
/// \param exponent  -300 to -1, so that no mantissa but 0 gives less than a normal double
/// \return false when one product does not decide, as for fractions that a double holds exactly, such as 0.5
inline bool nearest4Fraction(std::uint64_t mantissa, int exponent, std::uint64_t& bits) noexcept
{
    const int zeros = std::countl_zero(mantissa);
    const std::uint64_t top = multiplyWide(mantissa << zeros, s_ctPowers[exponent].m_ullHigh).m_ullHigh;
    const int extra = static_cast<int>(top >> 63);
    const int shift = 10 + extra;
    // The power is cut, and so is the product: the true one is larger, by one in the last bit at most. It is never just
    // half, as a half would show as one less in all bits.
    const std::uint64_t below = (std::uint64_t{1} << (shift - 1)) - 1;
    const std::uint64_t rounded = (top >> shift) + ((top >> (shift - 1)) & 1);
    const int field = log2OfPower(exponent) + exponent - zeros + extra + 63 + 1023;
    bits = (static_cast<std::uint64_t>(field - 1) << 52) + rounded;
    return (top & below) != below;
}

/// General path of nearest4Decimal.
std::uint64_t nearest4AnyDecimal(const tDecimal& decimal, const char* text, const char* end) noexcept;

/// The bits of the double (IEEE 754 binary64) nearest to a decimal, exact halves to even; infinity beyond the range.
///
/// \param decimal  its mantissa is below 2^64 - 1 when cut
/// \param text     how it was written, up to `end`: a digit first, or a point and a digit. Read only when 128 bits do
///                 not decide
/// Does not depend on locale or rounding mode.
inline std::uint64_t nearest4Decimal(const tDecimal& decimal, const char* text, const char* end) noexcept
{
    const bool isFraction = decimal.m_llExponent < 0 && decimal.m_llExponent >= -300;
    std::uint64_t bits;
    if (isFraction && decimal.m_ullMantissa != 0 && !decimal.m_bCut &&
        nearest4Fraction(decimal.m_ullMantissa, static_cast<int>(decimal.m_llExponent), bits))
        return bits;
    return nearest4AnyDecimal(decimal, text, end);
}

}  // namespace murv::detail

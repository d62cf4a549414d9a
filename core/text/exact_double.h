// core/text/exact_double.h - the double nearest to a decimal text, by strtod.
//
// For standard libraries whose std::from_chars reads no doubles. Strtod asks the locale for the decimal point, wants a
// NUL, and sets errno; so it gets a copy of the digits that can matter, as a whole number with an exponent.
#pragma once

#include <cerrno>
#include <cfenv>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "core/text/bit_cast.h"

namespace murv::detail
{

/// The middle between two doubles has 768 digits at most; after these it only matters whether one is not 0.
inline constexpr std::size_t s_cnDigitsThatDecide = 768;

/// The bits of the double nearest to a text, exact halves to even; infinity beyond the range.
///
/// \param text      digits, which may have a point among them, and an exponent, which is not looked at
/// \param exponent  power of ten by which the first digit other than 0 counts
/// Does not depend on locale or rounding mode, and leaves errno as it is.
inline std::uint64_t nearest4Digits(const char* text, const char* end, std::int64_t exponent) noexcept
{
    constexpr std::size_t s_cnExponentRoom = 24;
    char digits[s_cnDigitsThatDecide + 1 + s_cnExponentRoom];
    std::size_t count = 0;
    bool more = false;
    for (; text != end && *text != 'e' && *text != 'E'; ++text)
    {
        if (*text == '.' || (*text == '0' && count == 0))
            continue;
        if (count < s_cnDigitsThatDecide)
            digits[count++] = *text;
        else
            more = more || *text != '0';
    }
    if (count == 0)
        return 0;
    if (more)
        digits[count++] = '1';
    exponent -= static_cast<std::int64_t>(count) - 1;  // the last digit counts by this power
    digits[count] = 'e';
    *std::to_chars(digits + count + 1, digits + sizeof digits - 1, exponent).ptr = '\0';

    const int error = errno;
    const int rounding = std::fegetround();
    std::fesetround(FE_TONEAREST);
    const double value = std::strtod(digits, nullptr);
    std::fesetround(rounding);
    errno = error;
    return bitCast<std::uint64_t>(value);
}

}  // namespace murv::detail

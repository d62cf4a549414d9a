// core/text/integer_text.h - integers as decimal text.
//
// Every saver writes numbers, so they are written straight into the caller's buffer, two digits at a time, without
// locale or format strings.
#pragma once

namespace murv::detail
{

inline constexpr unsigned int s_cnIntegerTextRoom = 20;  // 18446744073709551615 and -9223372036854775808

/// Number of decimal digits of `value`, 1 to 20.
unsigned int digits4Unsigned(unsigned long long value) noexcept;

/// Writes `value` in decimal, without a NUL; at most 20 bytes.
///
/// \return the end of the text
char* writeUnsigned(char* out, unsigned long long value) noexcept;

/// The same with a "-" before negative values; at most 20 bytes. The most negative value is written like any other.
char* writeSigned(char* out, long long value) noexcept;

}  // namespace murv::detail

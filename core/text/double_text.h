// core/text/double_text.h - doubles as decimal text: with 17 digits, or with the fewest that read back to the same.
//
// 17 digits identify every double. The text is that of printf's "%.17g" in the "C" locale, made without printf, which
// is slower: many documents consist largely of such numbers.
#pragma once

namespace murv::detail
{

inline constexpr unsigned int s_cnDoubleTextRoom = 32;

/// Writes `value` (IEEE 754 binary64) rounded to 17 significant digits, exact halves to even, trailing zeros dropped;
/// with an exponent of at least two digits when it is below -4 or above 16. A NaN gives "null", the infinities
/// "1e+9999" and "-1e+9999".
///
/// \param out  has room for 32 bytes, all of which may be overwritten; no NUL is written
/// \return the end of the text
/// Does not depend on locale or rounding mode.
char* writeDouble(char* out, double value) noexcept;

/// Writes a finite `value` with the fewest digits that read back to the same bits; of several such numbers the nearest.
/// There is always a point or an exponent: "25.0", "-0.0", "1e+20". The exponent has at least two digits, and is
/// written when it is below -4 or above 15.
///
/// \param out  has room for 32 bytes, all of which may be overwritten; no NUL is written
/// \return the end of the text
/// Does not depend on locale or rounding mode.
char* writeShortestDouble(char* out, double value) noexcept;

}  // namespace murv::detail

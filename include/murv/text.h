// murv/text.h - scalars as text, text as scalars.
//
// The rules of saved documents for numbers and quoted strings, for applications that write or read such text
// themselves. No function here looks at the locale.
#ifndef MURV_TEXT_H
#define MURV_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

#include "murv/export.h"

namespace murv
{

class CFields;

/// The number in decimal, with "-" for negatives; every value of the type, the most negative included.
/// \throw std::bad_alloc only, as all functions here that return a string
MURV_API std::string ToString(long long value);
MURV_API std::string ToString(unsigned long long value);
MURV_API std::string ToString(long value);
MURV_API std::string ToString(unsigned long value);
MURV_API std::string ToString(int value);
MURV_API std::string ToString(unsigned int value);

/// The number (IEEE 754 binary64) with 17 significant digits, as printf's "%.17g" gives it in the "C" locale: enough
/// to read the same double back. A NaN gives "null", the infinities "1e+9999" and "-1e+9999", which read back as such.
MURV_API std::string ToString(double value);

/// "true" or "false".
MURV_API std::string ToString(bool value);

/// A pointer is no bool.
std::string ToString(const void* value) = delete;

/// The text in double quotes, with escapes: `\b` `\t` `\n` `\f` `\r` `\"` `\\` for these bytes, `\xHH` (upper-case hex)
/// for other bytes below 32 and for each byte from 127 on, so that UTF-8 leaves as a row of `\x`; the slash and all
/// else as they are. Linear in the length of the text.
///
/// \param text  ends in NUL; null gives the same as an empty text, two double quotes
MURV_API std::string ToQuotedEscapeString(const char* text);

/// The same for `length` bytes, NUL bytes among them being escaped too; a null text counts as empty.
MURV_API std::string ToQuotedEscapeString(const char* text, std::size_t length);
MURV_API std::string ToQuotedEscapeString(std::string_view text);

/// The bytes that an escaped text (without its quotes) stands for: `\"` `\\` `\/` `\b` `\f` `\n` `\r` `\t`, `\x` with
/// two hex digits, `\u` with four. Linear in the length of the text.
///
/// \param text            ends in NUL; null or empty gives an empty string
/// \param unicodeAsUtf8  true: `\u` is a code point, written as UTF-8 (RFC 3629), and a high surrogate takes the `\u`
///                       after it as its second half; false: the four digits are two bytes, the high one first
/// \return what was decoded before the first malformed escape; the whole text when there is none
MURV_API std::string ToUnescapeString(const char* text, bool unicodeAsUtf8);
MURV_API std::string ToUnescapeString(std::string_view text, bool unicodeAsUtf8);

/// Types a number and stores it in the node, whose actual value it becomes.
///
/// Digits only, after an optional sign: `DT_sint` up to 2147483647 and for negatives, `DT_uint` above; all else, and
/// what 64 bits do not hold, is a `DT_double` by the rule of atof for decimal text: the longest prefix that is a
/// number, 0 when there is none.
///
/// \param text  `length` bytes; need not end in NUL
/// \return true
MURV_API bool atonInField(const char* text, unsigned int length, CFields& node);

/// Converts a decimal integer: an optional "+" or "-", then digits up to the end of the text.
///
/// An empty text or a sign alone is 0 and true. Before the digit that would pass the range of the type the conversion
/// stops, without looking at the rest: true, and `value` is the magnitude read so far, without the sign. After a tenth
/// of the largest magnitude (922337203685477580) even a digit that fits is taken only when it is the last byte of the
/// text: "9223372036854775807" is read in full, while "9223372036854775807x" is true and 922337203685477580.
///
/// \param text  `length` bytes; need not end in NUL
/// \return false, and `value` 0, for a null text or a byte that is no digit. Linear, never throws.
MURV_API bool aton64(const char* text, unsigned int length, long long& value) noexcept;

/// The same without a sign: a "+" may stand first, while a leading "-" (also alone) gives false and 0. A tenth of the
/// largest number is 1844674407370955161.
MURV_API bool aton64(const char* text, unsigned int length, unsigned long long& value) noexcept;

}  // namespace murv

#endif

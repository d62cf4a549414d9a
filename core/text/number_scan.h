// core/text/number_scan.h - decimal text as a typed number.
//
// Text loader, tree and packets read numbers by one rule: whole numbers that fit 64 bits keep their exact value, all
// else is a double. One pass over the text, independent of the locale.
#pragma once

#include <cstdint>

#include "murv/types.h"

namespace murv::detail
{

union uScannedValue
{
    long long m_llValue;
    unsigned long long m_ullValue;
    double m_dValue;
};

/// The type says which member of the value is set: `DT_sint`, `DT_uint` or `DT_double`.
struct tScannedNumber
{
    E_DataType m_eType;
    uScannedValue m_uValue;
};

/// Types and converts a number.
///
/// Digits only, after an optional sign: `DT_sint` for 0 to 2147483647 and for every negative number down to
/// -9223372036854775808, `DT_uint` up to 18446744073709551615. Nothing after the sign: `DT_sint` 0. All else is a
/// `DT_double` by the rule of atof: the longest decimal prefix after blanks and a sign, correctly rounded, infinite
/// or zero (of that sign) beyond the range; 0 when there is no digit. No hexadecimal form, no "inf", no "nan".
///
/// \param text  need not end in NUL; null is read as an empty text
/// Linear in `length`; errno, locale and rounding mode are neither read nor changed.
tScannedNumber scanNumber(const char* text, unsigned int length) noexcept;

/// Reads the number token that a text begins with: an optional "-", digits, a point and digits, an "e" or "E" with an
/// optional sign and digits, each part as far as it is there.
///
/// \param text    at least one byte
/// \param number  what scanNumber gives for the token
/// \return the end of the token
const char* scanNumberToken(const char* text, const char* end, tScannedNumber& number) noexcept;

/// Reads digits up to a limit. After a tenth of the limit a digit is taken only as the last byte of the text, and only
/// when the limit holds it.
///
/// \param value  the number read
/// \return the first byte that was not taken, or `end`
const char* readToLimit(const char* p, const char* end, std::uint64_t limit, std::uint64_t& value) noexcept;

}  // namespace murv::detail

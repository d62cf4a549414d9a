// ser/integer_mark.h - how lossless text distinguishes the two integer types.
//
// By their digits, integers up to 31 bits are signed and larger ones unsigned. One zero before the digits says that a
// number has the other type. Readers that do not know the mark read the same number.
#pragma once

#include <climits>

#include "core/text/number_scan.h"

namespace murv::detail
{

inline constexpr char s_ccOtherInteger = '0';
inline constexpr long long s_cllLastPlainSigned = 2147483647;

/// Whether digits begin with the mark: one zero, and then a number as it is written. More zeros are none.
inline bool isMarkedInteger(const char* text, const char* end) noexcept
{
    return end - text >= 2 && text[0] == s_ccOtherInteger && (text[1] != '0' || end - text == 2);
}

/// Gives a marked integer its type; anything else stays as it is.
inline void applyMark(tScannedNumber& number, const char* text, const char* end) noexcept
{
    if (number.m_eType == DT_double || !isMarkedInteger(text, end))
        return;
    if (number.m_eType == DT_sint)
        number = {DT_uint, {.m_ullValue = static_cast<unsigned long long>(number.m_uValue.m_llValue)}};
    else if (number.m_uValue.m_ullValue <= LLONG_MAX)
        number = {DT_sint, {.m_llValue = static_cast<long long>(number.m_uValue.m_ullValue)}};
}

}  // namespace murv::detail

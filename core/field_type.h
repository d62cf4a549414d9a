// core/field_type.h - facts about the data types: what messages call them, and where 64-bit integers end.
//
// The largest integers themselves are not doubles, so tests of range and conversions compare with the powers of two
// above them.
#pragma once

#include "murv/types.h"

namespace murv::detail
{

inline constexpr const char* s_cpTypeNames[] = {"null", "array", "fields", "bool",
                                                "sint", "uint",  "double", "codelist"};
static_assert(sizeof s_cpTypeNames / sizeof s_cpTypeNames[0] == DT_codelist + 1, "one word for each type");

inline constexpr double s_cdTwoTo63 = 9223372036854775808.0;
inline constexpr double s_cdTwoTo64 = 18446744073709551616.0;

}  // namespace murv::detail

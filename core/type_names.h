// core/type_names.h - the words for data types in messages and tools.
#pragma once

#include "murv/types.h"

namespace murv::detail
{

inline constexpr const char* s_cpTypeNames[] = {"null", "array", "fields", "bool",
                                                "sint", "uint",  "double", "codelist"};
static_assert(sizeof s_cpTypeNames / sizeof s_cpTypeNames[0] == DT_codelist + 1, "one word for each type");

}  // namespace murv::detail

// core/text/bit_cast.h - the bits of a number as another type.
//
// Standard libraries that are otherwise C++20, such as libc++ 13, lack std::bit_cast.
#pragma once

#include <version>

#if defined(__cpp_lib_bit_cast)
#include <bit>
#else
#include <cstring>
#endif

namespace murv::detail
{

/// As std::bit_cast, for numbers of the same size.
template <typename tTo, typename tFrom>
inline tTo bitCast(tFrom from) noexcept
{
    static_assert(sizeof(tTo) == sizeof(tFrom));
#if defined(__cpp_lib_bit_cast)
    return std::bit_cast<tTo>(from);
#else
    tTo to;
    std::memcpy(&to, &from, sizeof to);
    return to;
#endif
}

}  // namespace murv::detail

// io/encoding_rule.h - how binary files are distinguished from text.
//
// The front classes look at no more than this of a file; its layout is known in ber/ only.
#pragma once

#include <cstring>

namespace murv::detail
{

inline constexpr char s_cMagic[] = {'M', 'U', 'R', 'F'};
inline constexpr unsigned int s_cuiMagicSize = sizeof s_cMagic;
inline constexpr unsigned int s_cuiFlagsOffset = 10;  // of the byte that holds the encoding rule, shifted by one

inline bool hasMurfMagic(const char* data, unsigned int size)
{
    return size >= s_cuiMagicSize && std::memcmp(data, s_cMagic, s_cuiMagicSize) == 0;
}

/// The encoding rule that a flags byte gives, or -1.
constexpr int rule4Flags(unsigned char flags)
{
    return (flags & ~1U) > 5 ? -1 : flags >> 1;
}

}  // namespace murv::detail

// vernam.h - the keyless 3-to-4 text encoding of key texts and bodies, called VERNAM.
//
// The bit layout is that of base64; the alphabet is our own: 64 neighbouring symbols, so that a symbol is its number
// plus a constant and both directions need no table. The alphabet is part of the file format and never changes.

#pragma once

#include <cstddef>
#include <cstdint>

namespace murv::detail
{

inline constexpr unsigned char s_cucVernamFirst = '?';  // number 0; number 63 is '~'
inline constexpr unsigned char s_cucVernamPad = '-';

static_assert(s_cucVernamFirst > ' ' && s_cucVernamFirst + 63 < 127, "all symbols are printable");
static_assert(s_cucVernamPad < s_cucVernamFirst && s_cucVernamPad > ' ', "the pad is printable and no symbol");
static_assert(s_cucVernamPad != '=' && s_cucVernamFirst > '=', "not to be taken for base64");

/// Size of the text of `length` bytes: three become four symbols, and the last group is filled up with pad symbols.
/// \pre the size fits the type, which on 32-bit machines may be wider than std::size_t
template <typename tSize>
constexpr tSize vernamTextSize(tSize length)
{
    return (length + 2) / 3 * 4;
}

/// Room that decoding `length` symbols needs at most.
constexpr std::size_t vernamByteRoom(std::size_t length)
{
    return length / 4 * 3 + (length % 4 == 0 ? 0 : length % 4 - 1);
}

/// Encodes into memory of the caller; slices whose lengths are multiples of 3 give the same text as one call.
///
/// \param out  room for vernamTextSize(length) bytes; may not overlap `data`
/// \return vernamTextSize(length)
std::size_t vernamEncodeTo(unsigned char* out, const unsigned char* data, std::size_t length);

/// Decodes into memory of the caller; slices whose lengths are multiples of 4 give the same bytes as one call.
///
/// \param out  room for vernamByteRoom(length) bytes; may be `text` itself, and may not overlap it otherwise
/// \return the bytes decoded; fewer than vernamByteRoom(length) means that a pad or a foreign byte was met
std::size_t vernamDecodeTo(unsigned char* out, const unsigned char* text, std::size_t length);

/// The same without the processor's wide registers; what every other way is compared with.
std::size_t vernamEncodePortable(unsigned char* out, const unsigned char* data, std::size_t length);
std::size_t vernamDecodePortable(unsigned char* out, const unsigned char* text, std::size_t length);

}  // namespace murv::detail

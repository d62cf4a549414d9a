// core/text/unescape.h - the bytes that an escaped text stands for.
//
// The text loader, which reports errors with their place, and ToUnescapeString, which does not, use one decoder.
#pragma once

#include <array>
#include <cstddef>

namespace murv::detail
{

enum E_UnescapeError : unsigned int
{
    UE_none = 0,
    UE_nothingFollows,
    UE_unknownLetter,
    UE_hexShort,
    UE_hexDigit,
    UE_bytesShort,  // \u as two bytes
    UE_bytesDigit,
    UE_pointShort,  // \u as a code point
    UE_pointDigit,
    UE_pairShort,
    UE_pairToken,
    UE_count
};

/// What the error is called, by its number. The two ways to read \u spell their messages differently; that is fixed.
inline constexpr std::array<const char*, UE_count> s_cpUnescapeMessages = {
    "",
    "Empty escape sequence in string",
    "Bad escape sequence in string",
    "Bad hexa escape sequence in string : two digits expected.",
    "Bad hexa escape sequence in string",
    "Bad unicode escape sequence in string : four digits expected.",
    "Bad unicode escape sequence in string",
    "Bad unicode escape sequence in string: four digits expected.",
    "Bad unicode escape sequence in string: hexadecimal digit expected.",
    "additional six characters expected to parse unicode surrogate pair.",
    "expecting another \\u token to begin the second half of a unicode surrogate pair",
};
static_assert(s_cpUnescapeMessages[UE_pairToken] != nullptr);

enum E_UnicodeMode : unsigned int
{
    UM_bytes = 0,  // \u and four digits: two bytes, high byte first
    UM_codePoint,  // \u and four digits: a code point (two of them for a surrogate pair), as UTF-8
};

struct tUnescaped
{
    char* m_pEnd;              // end of what was decoded, also after an error
    E_UnescapeError m_eError;  // UE_none when all was decoded
    const char* m_pPlace;      // the backslash of the escape at fault (the first of a pair); null without an error
};

/// Decodes [begin, end), the text between the quotes, up to its end or the first error.
///
/// `\"` `\\` `\/` `\b` `\f` `\n` `\r` `\t`; `\x` with two hex digits, one byte; `\u` with four, by `mode`. A high
/// surrogate (55296 to 56319) must be followed by a second `\u`, which is not checked to be a low surrogate; a low
/// surrogate alone is a code point like any other.
///
/// \param out  has room for end - begin bytes, all of which may be overwritten; does not overlap the text.
///             That is enough: no escape decodes to more bytes than it has (`\n` 2 to 1, `\x` 4 to 1, `\u` 6 to 2 or
///             at most 3, a pair 12 to 4)
/// Linear in the length of the text.
tUnescaped unescape(const char* begin, const char* end, E_UnicodeMode mode, char* out) noexcept;

}  // namespace murv::detail

// core/utf8.h - a code point as UTF-8.
//
// Follows the forms of RFC 3629, but lets a lone half of a surrogate pair through as three bytes: texts hold such
// halves, and refusing them would lose data.
#pragma once

namespace murv::detail
{

inline constexpr unsigned int s_cnLastCodePoint = 1114111;

/// Writes one to four bytes; a value above 1114111 writes nothing.
///
/// \return the end of what was written
constexpr char* writeUtf8(char* out, unsigned int codePoint) noexcept
{
    const auto put = [&out](unsigned int byte) { *out++ = static_cast<char>(byte); };
    const auto lead = [&](unsigned int mark, unsigned int shift) { put(mark | codePoint >> shift); };
    const auto follow = [&](unsigned int shift) { put(128 | ((codePoint >> shift) & 63)); };
    if (codePoint < 128)
        lead(0, 0);
    else if (codePoint < 2048)
    {
        lead(192, 6);
        follow(0);
    }
    else if (codePoint < 65536)
    {
        lead(224, 12);
        follow(6);
        follow(0);
    }
    else if (codePoint <= s_cnLastCodePoint)
    {
        lead(240, 18);
        follow(12);
        follow(6);
        follow(0);
    }
    return out;
}

}  // namespace murv::detail

// core/text/quote.h - text in double quotes, with escapes.
//
// Names and strings are written this way: printable ASCII as it is, all else as an escape, so that the text survives
// any transport and reads back as the same bytes. Lossless text keeps printable characters of all alphabets, too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

#include "core/text/byte_scan.h"

namespace murv::detail
{

/// The first byte in [p, end) that writeQuoted() escapes, or `end`.
const char* findEscape(const char* p, const char* end) noexcept;

/// Bytes that writeQuoted() needs at most. Where the sum would wrap, on 32-bit machines, it throws std::bad_alloc; with
/// 64 bits no text is that long.
constexpr std::size_t quotedRoom(std::size_t length)
{
    if constexpr (sizeof length < sizeof(std::uint64_t))
    {
        if (length > SIZE_MAX / 8)
            throw std::bad_alloc();
    }
    return 2 + 4 * length;
}

/// Writes the text between double quotes: backspace, tab, line feed, form feed, carriage return, double quote and
/// backslash as a backslash and a letter, other bytes below 32 and all from 127 on as `\xHH`, the rest as they are.
///
/// \param out   has room for quotedRoom(length) bytes, all of which may be overwritten; does not overlap the text.
///              One byte is enough for each byte before the first escape, so that room for a text whose first `clean`
///              bytes need none is clean + quotedRoom(length - clean)
/// \param text  may hold NUL bytes; null only with length 0
/// \return the end of what was written
char* writeQuoted(char* out, const char* text, std::size_t length) noexcept;

/// The same, but well-formed UTF-8 of printable characters (see core/text/utf8.h) stays as it is. Needs the same room.
char* writeQuotedCharacters(char* out, const char* text, std::size_t length) noexcept;

}  // namespace murv::detail

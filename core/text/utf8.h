// core/text/utf8.h - code points as UTF-8, and which of them a text may show as they are.
//
// Writing follows the forms of RFC 3629, but lets a lone half of a surrogate pair through as three bytes: texts hold
// such halves, and refusing them would lose data. Reading takes well-formed sequences alone.
#pragma once

#include <cstddef>

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

/// A code point and the bytes that it took; no bytes when there is none.
struct tUtf8Point
{
    unsigned int m_uiCodePoint;
    std::size_t m_nLength;
};

/// Reads the sequence that a text begins with. Overlong forms, halves of surrogate pairs, values above 1114111 and
/// sequences that are cut are not read.
///
/// \param text  at least one byte
constexpr tUtf8Point readUtf8(const char* text, const char* end) noexcept
{
    const auto byte = [text](std::size_t i) { return static_cast<unsigned int>(static_cast<unsigned char>(text[i])); };
    const unsigned int first = byte(0);
    if (first < 128)
        return {first, 1};
    const std::size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 0;
    if (length == 0 || static_cast<std::size_t>(end - text) < length)
        return {0, 0};
    unsigned int point = first & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i)
    {
        if ((byte(i) & 0xC0) != 0x80)
            return {0, 0};
        point = point << 6 | (byte(i) & 0x3F);
    }
    const bool overlong = (length == 3 && point < 0x800) || (length == 4 && point < 0x10000);
    const bool half = point >= 0xD800 && point <= 0xDFFF;
    if (overlong || half || point > s_cnLastCodePoint)
        return {0, 0};
    return {point, length};
}

/// Code points that show nothing by themselves, or change the order of the text around them: a reader would not see
/// them. Both ends belong to a row; the rows are in order.
struct tHiddenPoints
{
    unsigned int m_uiFirst;
    unsigned int m_uiLast;
};

inline constexpr tHiddenPoints s_ctHiddenPoints[] = {
    {0x0000, 0x001F},    // controls
    {0x007F, 0x009F},    // delete, and the second set of controls
    {0x00AD, 0x00AD},    // soft hyphen
    {0x034F, 0x034F},    // grapheme joiner
    {0x061C, 0x061C},    // Arabic letter mark
    {0x115F, 0x1160},    // Hangul fillers
    {0x17B4, 0x17B5},    // Khmer inherent vowels
    {0x180B, 0x180F},    // Mongolian separators
    {0x200B, 0x200F},    // zero width blanks and joiners, direction marks
    {0x2028, 0x202E},    // line and paragraph separators, directions
    {0x2060, 0x206F},    // word joiner, invisible operators, directions
    {0x3164, 0x3164},    // Hangul filler
    {0xFDD0, 0xFDEF},    // no characters
    {0xFEFF, 0xFEFF},    // byte order mark
    {0xFFA0, 0xFFA0},    // Hangul filler
    {0xFFF0, 0xFFFB},    // annotation marks
    {0xFFFE, 0xFFFF},    // no characters, here and at the end of each later plane
    {0x13430, 0x1343F},  // hieroglyph joiners
    {0x1BCA0, 0x1BCA3},  // shorthand controls
    {0x1D173, 0x1D17A},  // music controls
    {0xE0000, 0xE0FFF},  // tags
};

/// Whether a text may hold the character as it is.
constexpr bool isPrintable(unsigned int codePoint) noexcept
{
    if (codePoint > 0x3164 && codePoint < 0xFDD0)  // most East Asian characters, tested first
        return true;
    if (codePoint > 0xFFFF && (codePoint & 0xFFFE) == 0xFFFE)
        return false;
    for (const tHiddenPoints& row : s_ctHiddenPoints)
    {
        if (codePoint <= row.m_uiLast)
            return codePoint < row.m_uiFirst;
    }
    return true;
}

}  // namespace murv::detail

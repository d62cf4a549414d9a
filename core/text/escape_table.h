// core/text/escape_table.h - bytes that a quoted text shows as a backslash and a letter.
//
// Quoting and unquoting both read these rows, so what one writes the other reads back.
#pragma once

#include <array>

namespace murv::detail
{

struct tEscapeRow
{
    unsigned char m_ucByte;
    char m_cLetter;
    bool m_bWritten;  // false: understood when read, never written
};

inline constexpr tEscapeRow s_ctEscapes[] = {
    {8, 'b', true},  {9, 't', true},   {10, 'n', true},    {12, 'f', true},
    {13, 'r', true}, {'"', '"', true}, {'\\', '\\', true}, {'/', '/', false},
};

/// The letter written for a byte, 0 when there is none.
constexpr std::array<char, 256> makeLetter4Byte() noexcept
{
    std::array<char, 256> letters{};
    for (const tEscapeRow& row : s_ctEscapes)
    {
        if (row.m_bWritten)
            letters[row.m_ucByte] = row.m_cLetter;
    }
    return letters;
}

/// The byte read for a letter, 0 when the letter has no row.
constexpr std::array<unsigned char, 256> makeByte4Letter() noexcept
{
    std::array<unsigned char, 256> bytes{};
    for (const tEscapeRow& row : s_ctEscapes)
        bytes[static_cast<unsigned char>(row.m_cLetter)] = row.m_ucByte;
    return bytes;
}

inline constexpr auto s_ctLetter4Byte = makeLetter4Byte();
inline constexpr auto s_ctByte4Letter = makeByte4Letter();
static_assert(s_ctLetter4Byte['\n'] == 'n' && s_ctLetter4Byte['/'] == 0);
static_assert(s_ctByte4Letter['n'] == '\n' && s_ctByte4Letter['/'] == '/');
static_assert(s_ctByte4Letter['x'] == 0 && s_ctByte4Letter['u'] == 0);  // these two take digits

}  // namespace murv::detail

// core/text/hex.h - hexadecimal digits as numbers and bytes.
//
// Escapes in strings and binary texts are read with the same digits.
#pragma once

#include <array>
#include <cstddef>

namespace murv::detail
{

constexpr std::array<signed char, 256> makeHexValues() noexcept
{
    std::array<signed char, 256> values{};
    for (signed char& value : values)
        value = -1;
    for (unsigned int i = 0; i < 10; ++i)
        values['0' + i] = static_cast<signed char>(i);
    for (unsigned int i = 0; i < 6; ++i)
    {
        values['A' + i] = static_cast<signed char>(10 + i);
        values['a' + i] = static_cast<signed char>(10 + i);
    }
    return values;
}

inline constexpr auto s_ctHexValues = makeHexValues();

/// 0 to 15, or -1 when the byte is no hex digit.
constexpr int hexValue(char digit) noexcept
{
    return s_ctHexValues[static_cast<unsigned char>(digit)];
}

/// Reads up to `digits` hex digits, two a byte, high half first, and stops at the first byte that is none.
///
/// \param text  has `digits` bytes, unless a byte that is no hex digit comes first
/// \param out   has room for digits / 2 bytes; a digit without a partner writes nothing
/// \return the number of digits read, a last one without a partner included
constexpr std::size_t decodeHexPairs(const char* text, std::size_t digits, char* out) noexcept
{
    int high = 0;
    for (std::size_t i = 0; i < digits; ++i)
    {
        const int value = hexValue(text[i]);
        if (value < 0)
            return i;
        if (i % 2 == 0)
            high = value;
        else
            *out++ = static_cast<char>(high * 16 + value);
    }
    return digits;
}

}  // namespace murv::detail

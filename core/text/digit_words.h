// core/text/digit_words.h - short numbers in digits, eight at a time.
//
// Packets hold numbers of known width, most of them of a few digits. They are read with two loads that may overlap,
// instead of a loop over bytes; nothing outside the text is touched.
#pragma once

#include <cstddef>
#include <cstdint>

#include "core/text/word_bytes.h"

namespace murv::detail
{

inline constexpr std::size_t s_cnShortDigits = 16;  // the most that readShortDigits takes

/// Loads one to eight digits as the last ones of eight, with zeros in front.
/// \param zero  eight zeros in the characters of the text
inline std::uint64_t loadDigits(const char* text, std::size_t length, std::uint64_t zero = s_cullOnes * '0') noexcept
{
    return length == sizeof zero ? loadWord(text) : zero >> (8 * length) | loadShort(text, length) << (64 - 8 * length);
}

/// Reads one to sixteen digits and nothing else.
/// \param flip  exclusive or that makes ASCII of the eight characters of a word
/// \return false for other bytes and other lengths; `value` is unspecified then
inline bool readShortDigits(const char* text, std::size_t length, std::uint64_t& value, std::uint64_t flip = 0) noexcept
{
    constexpr std::size_t word8 = sizeof(std::uint64_t);
    if (length == 0 || length > s_cnShortDigits)
        return false;
    const std::size_t first = length > word8 ? length - word8 : length;
    std::uint64_t word = loadDigits(text, first, s_cullOnes * '0' ^ flip) ^ flip;
    if (!allDigits(word))
        return false;
    value = number4Digits(word);
    if (length <= word8)
        return true;
    word = loadWord(text + first) ^ flip;
    value = value * 100000000 + number4Digits(word);
    return allDigits(word);
}

}  // namespace murv::detail

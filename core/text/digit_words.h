// core/text/digit_words.h - short numbers in digits, eight at a time.
//
// Packets hold numbers of known width, most of them of a few digits. They are read and written in words; nothing but
// what the caller allows is touched outside the text. With a loop alone, reading numbers of 8 and 16 digits takes 1.4
// and 1.6 times as long. Only where fewer than eight bytes may be read, a loop is better: words that are put together
// take 2.5 and 1.6 times as long for 2 and 4 digits.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "core/text/word_bytes.h"

namespace murv::detail
{

inline constexpr std::size_t s_cnShortDigits = 16;  // the most that is read or written

/// 10 to the power of each number of digits that a short number may have.
inline constexpr std::array<std::uint64_t, s_cnShortDigits + 1> s_caullPowers = [] {
    std::array<std::uint64_t, s_cnShortDigits + 1> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i)
        powers[i] = powers[i - 1] * 10;
    return powers;
}();

/// Reads digits and nothing else.
/// \param flip  exclusive or that makes ASCII of a character
inline bool readFewDigits(const char* text, std::size_t length, std::uint64_t& value, unsigned char flip) noexcept
{
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < length; ++i)
    {
        const auto character = static_cast<unsigned char>(static_cast<unsigned char>(text[i]) ^ flip);
        const unsigned int digit = character - static_cast<unsigned int>('0');
        if (digit > 9)
            return false;
        number = number * 10 + digit;
    }
    value = number;
    return true;
}

/// Reads one to sixteen digits and nothing else.
/// \param flip      exclusive or that makes ASCII of the eight characters of a word
/// \param readable  bytes that may be read from `text` on, where they are known to be more than `length`
/// \return false for other bytes and other lengths; `value` is unspecified then
inline bool readShortDigits(const char* text, std::size_t length, std::uint64_t& value, std::uint64_t flip = 0,
                            std::size_t readable = 0) noexcept
{
    constexpr std::size_t word8 = sizeof(std::uint64_t);
    if (length - 1 >= s_cnShortDigits)
        return false;
    if (std::max(length, readable) < word8)
        return readFewDigits(text, length, value, static_cast<unsigned char>(flip));
    const std::uint64_t zeros = s_cullOnes * '0' ^ flip;
    // The digits become the last ones of eight, with zeros in front. What else was read is shifted out.
    const std::size_t first = length > word8 ? length - word8 : length;
    std::uint64_t word = (loadWord(text) ^ zeros) << (8 * (word8 - first));
    value = number4Values(word);
    if (!areDigitValues(word))
        return false;
    if (length <= word8)
        return true;
    word = loadWord(text + first) ^ zeros;
    value = value * 100000000 + number4Values(word);
    return areDigitValues(word);
}

/// Writes a number as that many digits, one to sixteen, with zeros in front. It must be below that power of ten.
/// \tparam s_cpStore  writes the first digits: storeLast, or storeLastWide where eight bytes may be overwritten
template <void (*s_cpStore)(char*, std::uint64_t, std::size_t) noexcept>
inline void storeDigits(char* to, std::uint64_t number, std::size_t length) noexcept
{
    constexpr std::size_t word8 = sizeof(std::uint64_t);
    constexpr std::uint64_t zeros = s_cullOnes * '0';
    if (length <= word8)
        return s_cpStore(to, digits4Number(number) + zeros, length);
    constexpr std::uint64_t half = 100000000;
    s_cpStore(to, digits4Number(number / half) + zeros, length - word8);
    storeWord(to + length - word8, digits4Number(number % half) + zeros);
}

}  // namespace murv::detail

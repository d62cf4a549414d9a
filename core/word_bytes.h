// core/word_bytes.h - eight bytes of text as one word, and back.
//
// Text is looked at and written in words of eight. Where the order of the bytes matters the first byte of the text is
// the lowest of the word, on every host.
#ifndef MURV_CORE_WORD_BYTES_H
#define MURV_CORE_WORD_BYTES_H

#include <bit>
#include <cstdint>
#include <cstring>

namespace murv::detail
{

inline constexpr std::uint64_t s_cullOnes = 0x0101010101010101U;
inline constexpr std::uint64_t s_cullHighs = 0x8080808080808080U;

constexpr std::uint64_t reverseBytes(std::uint64_t word) noexcept
{
    word = ((word & 0x00FF00FF00FF00FFU) << 8) | ((word >> 8) & 0x00FF00FF00FF00FFU);
    word = ((word & 0x0000FFFF0000FFFFU) << 16) | ((word >> 16) & 0x0000FFFF0000FFFFU);
    return (word << 32) | (word >> 32);
}

/// Reads 8 bytes, the first as the lowest.
inline std::uint64_t loadWord(const char* from) noexcept
{
    std::uint64_t word;
    std::memcpy(&word, from, sizeof word);
    if constexpr (std::endian::native == std::endian::big)
        word = reverseBytes(word);
    return word;
}

/// Writes 8 bytes, the lowest first.
inline void storeWord(char* to, std::uint64_t word) noexcept
{
    if constexpr (std::endian::native == std::endian::big)
        word = reverseBytes(word);
    std::memcpy(to, &word, sizeof word);
}

/// Whether any byte is zero.
constexpr bool hasZero(std::uint64_t word) noexcept
{
    return ((word - s_cullOnes) & ~word & s_cullHighs) != 0;
}

/// Whether any byte equals `byte`.
constexpr bool hasByte(std::uint64_t word, unsigned char byte) noexcept
{
    return hasZero(word ^ (s_cullOnes * byte));
}

/// The high bit of every byte that equals `byte`, and of no other.
constexpr std::uint64_t bytesEqual(std::uint64_t word, unsigned char byte) noexcept
{
    const std::uint64_t low = ~s_cullHighs;
    const std::uint64_t other = word ^ (s_cullOnes * byte);
    return ~(((other & low) + low) | other | low);
}

/// Whether all eight bytes are decimal digits.
constexpr bool allDigits(std::uint64_t word) noexcept
{
    const std::uint64_t value = word ^ (s_cullOnes * '0');  // 0 to 9 exactly for digits
    return (((value + s_cullOnes * (127 - 9)) | value) & s_cullHighs) == 0;
}

/// The number that eight digits write, the first (lowest) byte being the most significant digit.
constexpr std::uint64_t number4Digits(std::uint64_t word) noexcept
{
    word -= s_cullOnes * '0';
    word = word * 10 + (word >> 8);  // pairs, in every other byte
    constexpr std::uint64_t pairs = 0x000000FF000000FFU;
    constexpr std::uint64_t first = 100 + (std::uint64_t{1000000} << 32);
    constexpr std::uint64_t second = 1 + (std::uint64_t{10000} << 32);
    return ((word & pairs) * first + ((word >> 16) & pairs) * second) >> 32;
}

/// The eight digit values (0 to 9, no text yet) of a number below 100000000, the most significant in the lowest byte.
constexpr std::uint64_t digits4Number(std::uint64_t number) noexcept
{
    std::uint64_t word = number / 10000 | ((number % 10000) << 32);      // two numbers below 10000
    std::uint64_t upper = ((word * 10486) >> 20) & 0x0000007F0000007FU;  // each divided by 100
    word = upper | ((word - upper * 100) << 16);                         // four numbers below 100
    upper = ((word * 103) >> 10) & 0x000F000F000F000FU;                  // each divided by 10
    return upper | ((word - upper * 10) << 8);
}

static_assert(reverseBytes(0x0102030405060708U) == 0x0807060504030201U);
static_assert(digits4Number(12345678) == 0x0807060504030201U && digits4Number(99999999) == s_cullOnes * 9);
static_assert(number4Digits(0x3837363534333231U) == 12345678);

}  // namespace murv::detail

#endif

// core/text/word_bytes.h - text in words of eight bytes, and short texts without a call.
//
// Text is read and written eight bytes at a time. Where the order of the bytes matters, the first byte of the text is
// the lowest of the word, on every machine.
#pragma once

#include <bit>
#include <cstddef>
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

/// Turns a word as this machine stores it into one whose first byte is the lowest, and back.
template <typename tWord>
constexpr tWord lowestFirst(tWord word) noexcept
{
    if constexpr (std::endian::native == std::endian::big)
        word = static_cast<tWord>(reverseBytes(word) >> (64 - 8 * sizeof word));
    return word;
}

/// Reads the bytes of a word, the first as the lowest. One load: bytes that are put together take many.
template <typename tWord>
inline tWord loadPiece(const char* from) noexcept
{
    tWord word;
    std::memcpy(&word, from, sizeof word);
    return lowestFirst(word);
}

/// Writes the bytes of a word, the lowest first.
template <typename tWord>
inline void storePiece(char* to, tWord word) noexcept
{
    word = lowestFirst(word);
    std::memcpy(to, &word, sizeof word);
}

/// Reads 8 bytes, the first as the lowest.
inline std::uint64_t loadWord(const char* from) noexcept
{
    return loadPiece<std::uint64_t>(from);
}

/// One to eight bytes, the first as the lowest; the bytes above them are 0.
inline std::uint64_t loadShort(const char* from, std::size_t count) noexcept
{
    // Two loads that may overlap in the middle.
    const auto loadEnds = [=](auto piece) {
        const std::size_t last = count - sizeof piece;
        return std::uint64_t{loadPiece<decltype(piece)>(from)} | std::uint64_t{loadPiece<decltype(piece)>(from + last)}
                                                                     << (8 * last);
    };
    if (count == 8)
        return loadWord(from);
    if (count >= 4)
        return loadEnds(std::uint32_t{0});
    return count >= 2 ? loadEnds(std::uint16_t{0}) : loadPiece<std::uint8_t>(from);
}

/// Writes 8 bytes, the lowest first.
inline void storeWord(char* to, std::uint64_t word) noexcept
{
    storePiece(to, word);
}

/// Writes the last characters of eight, one to eight of them, and nothing after them.
inline void storeLast(char* to, std::uint64_t word, std::size_t length) noexcept
{
    if (length == sizeof word)
        return storeWord(to, word);
    const std::uint64_t first = word >> (64 - 8 * length);
    // Two pieces that may overlap in the middle.
    if (length >= 4)
    {
        storePiece(to, static_cast<std::uint32_t>(first));
        storePiece(to + length - 4, static_cast<std::uint32_t>(word >> 32));
    }
    else if (length >= 2)
    {
        storePiece(to, static_cast<std::uint16_t>(first));
        storePiece(to + length - 2, static_cast<std::uint16_t>(word >> 48));
    }
    else
        *to = static_cast<char>(first);
}

/// The same where eight bytes may be overwritten, which needs no branches.
inline void storeLastWide(char* to, std::uint64_t word, std::size_t length) noexcept
{
    storeWord(to, word >> (64 - 8 * length));
}

/// Copies up to 32 bytes without a call. All are read before any is written, so they may overlap. By memcpy, binary
/// files full of names take 1.4 times as long to load and to save.
inline void copyShort(char* to, const char* from, std::size_t count) noexcept
{
    // Two pieces that may overlap each other: from the front and up to the end.
    const auto copyEnds = [=](auto piece) {
        std::memcpy(&piece, from, sizeof piece);
        auto last = piece;
        std::memcpy(&last, from + count - sizeof last, sizeof last);
        std::memcpy(to, &piece, sizeof piece);
        std::memcpy(to + count - sizeof last, &last, sizeof last);
    };
    struct tSixteen
    {
        std::uint64_t m_ullHalf[2];
    };
    if (count >= sizeof(tSixteen))
        copyEnds(tSixteen{});
    else if (count >= 8)
        copyEnds(std::uint64_t{0});
    else if (count >= 4)
        copyEnds(std::uint32_t{0});
    else if (count >= 2)
        copyEnds(std::uint16_t{0});
    else if (count == 1)
        *to = *from;
}

/// Whether fewer than 32 bytes are the same, without a call. By memcmp, finding one of 10 names takes 1.5 times as
/// long, and adding 100 members 1.4 times.
inline bool equalShort(const char* a, const char* b, std::size_t count) noexcept
{
    // Two pieces that may overlap each other: from the front and up to the end.
    const auto equalPieces = [=](auto piece, std::size_t at) {
        auto other = piece;
        std::memcpy(&piece, a + at, sizeof piece);
        std::memcpy(&other, b + at, sizeof other);
        return piece == other;
    };
    const auto equalEnds = [=](auto piece) {
        return equalPieces(piece, 0) && equalPieces(piece, count - sizeof piece);
    };
    if (count > 16)
        return equalEnds(std::uint64_t{0}) && equalPieces(std::uint64_t{0}, 8) &&
               equalPieces(std::uint64_t{0}, count - 16);
    if (count >= 8)
        return equalEnds(std::uint64_t{0});
    if (count >= 4)
        return equalEnds(std::uint32_t{0});
    if (count >= 2)
        return equalEnds(std::uint16_t{0});
    return count == 0 || *a == *b;
}

/// Up to 8 bytes as one number that differs for different texts of one length. The number depends on the byte order.
inline std::uint64_t pack4Short(const char* from, std::size_t count) noexcept
{
    if (count >= 4)
    {
        std::uint32_t first;
        std::uint32_t last;
        std::memcpy(&first, from, sizeof first);
        std::memcpy(&last, from + count - sizeof last, sizeof last);
        return std::uint64_t{first} << 32 | last;
    }
    if (count == 0)
        return 0;
    const auto byte = [=](std::size_t at) { return std::uint64_t{static_cast<unsigned char>(from[at])}; };
    return byte(0) << 16 | byte(count / 2) << 8 | byte(count - 1);
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

/// Whether all eight bytes are digit values, 0 to 9.
constexpr bool areDigitValues(std::uint64_t word) noexcept
{
    return (((word + s_cullOnes * (127 - 9)) | word) & s_cullHighs) == 0;
}

/// Whether all eight bytes are decimal digits.
constexpr bool allDigits(std::uint64_t word) noexcept
{
    return areDigitValues(word ^ (s_cullOnes * '0'));
}

/// The number that eight digit values (0 to 9) write, the first (lowest) byte being the most significant.
constexpr std::uint64_t number4Values(std::uint64_t word) noexcept
{
    word = word * 10 + (word >> 8);  // pairs, in every other byte
    constexpr std::uint64_t pairs = 0x000000FF000000FFU;
    constexpr std::uint64_t first = 100 + (std::uint64_t{1000000} << 32);
    constexpr std::uint64_t second = 1 + (std::uint64_t{10000} << 32);
    return ((word & pairs) * first + ((word >> 16) & pairs) * second) >> 32;
}

/// The number that eight digits write.
constexpr std::uint64_t number4Digits(std::uint64_t word) noexcept
{
    return number4Values(word - s_cullOnes * '0');
}

/// The eight digit values (0 to 9, not yet text) of a number below 100000000, the most significant in the lowest byte.
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

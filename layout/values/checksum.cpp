// layout/values/checksum.cpp - checksums and check digits.
//
// A reflected CRC of 16 bits is one of 32 bits whose upper half stays zero, so all reflected ones share the code that
// takes eight bytes a step. What a kind is, is a row: its words, its polynomial, its first and last exclusive or.
#include "layout/values/checksum.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <iterator>

#include "core/text/word_bytes.h"

namespace murv::detail
{

namespace
{

/// For each of eight places, what a byte that far from the end of a word adds to the remainder.
using tSlices = std::array<std::array<std::uint32_t, 256>, 8>;

constexpr tSlices makeReflected(std::uint32_t polynomial)
{
    tSlices slices{};
    for (std::uint32_t byte = 0; byte < 256; ++byte)
    {
        std::uint32_t remainder = byte;
        for (int bit = 0; bit < 8; ++bit)
            remainder = remainder >> 1 ^ (remainder % 2 != 0 ? polynomial : 0);
        slices[0][byte] = remainder;
    }
    for (std::size_t place = 1; place < slices.size(); ++place)
    {
        for (std::size_t byte = 0; byte < 256; ++byte)
        {
            const std::uint32_t before = slices[place - 1][byte];
            slices[place][byte] = before >> 8 ^ slices[0][before & 255];
        }
    }
    return slices;
}

/// The table of a CRC of 16 bits that begins with the highest bit; one place.
constexpr std::array<std::uint16_t, 256> makeForward(std::uint32_t polynomial)
{
    std::array<std::uint16_t, 256> table{};
    for (std::uint32_t byte = 0; byte < 256; ++byte)
    {
        std::uint32_t remainder = byte << 8;
        for (int bit = 0; bit < 8; ++bit)
            remainder = remainder << 1 ^ ((remainder & 0x8000) != 0 ? polynomial : 0);
        table[byte] = static_cast<std::uint16_t>(remainder);
    }
    return table;
}

constexpr tSlices s_ctArc = makeReflected(0xA001);
constexpr tSlices s_ctKermit = makeReflected(0x8408);
constexpr tSlices s_ctIso = makeReflected(0xEDB88320);
constexpr tSlices s_ctIscsi = makeReflected(0x82F63B78);
constexpr auto s_causForward1021 = makeForward(0x1021);

/// How bytes are added.
enum E_Way : unsigned char
{
    WAY_reflected,  // by slices
    WAY_forward,    // CRC of 16 bits, the highest bit first
    WAY_words,      // sum of 16-bit words
    WAY_xor,
    WAY_sum,
    WAY_luhn,
    WAY_digits,  // sum of digits
    WAY_mod97,
};

struct tChecksumRow
{
    E_Checksum m_eKind;
    const char* m_pName;
    const char* m_pVariant;
    E_Way m_eWay;
    const tSlices* m_pSlices;
    std::uint32_t m_uiFirst;
    std::uint32_t m_uiLast;  // exclusive or with the result
    std::uint32_t m_uiMask;
};

constexpr tChecksumRow s_ctChecksums[] = {
    {CK_crc16Arc, "crc16", "", WAY_reflected, &s_ctArc, 0, 0, 0xFFFF},
    {CK_crc16Modbus, "crc16", "modbus", WAY_reflected, &s_ctArc, 0xFFFF, 0, 0xFFFF},
    {CK_crc16Ibm3740, "crc16", "ibm-3740", WAY_forward, nullptr, 0xFFFF, 0, 0xFFFF},
    {CK_crc16Xmodem, "crc16", "xmodem", WAY_forward, nullptr, 0, 0, 0xFFFF},
    {CK_crc16Kermit, "crc16", "kermit", WAY_reflected, &s_ctKermit, 0, 0, 0xFFFF},
    {CK_crc32, "crc32", "", WAY_reflected, &s_ctIso, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
    {CK_crc32Iscsi, "crc32", "iscsi", WAY_reflected, &s_ctIscsi, 0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF},
    {CK_inet, "inet", "", WAY_words, nullptr, 0, 0xFFFF, 0xFFFF},
    {CK_xor, "xor", "", WAY_xor, nullptr, 0, 0, 0xFF},
    {CK_sum8, "sum8", "", WAY_sum, nullptr, 0, 0, 0xFF},
    {CK_sum32, "sum32", "", WAY_sum, nullptr, 0, 0, 0xFFFFFFFF},
    {CK_luhn, "luhn", "", WAY_luhn, nullptr, 0, 0, 0},
    {CK_mod10, "mod10", "", WAY_digits, nullptr, 0, 0, 0},
    {CK_mod97, "mod97", "", WAY_mod97, nullptr, 0, 0, 0},
};

constexpr bool areChecksumsInOrder()
{
    for (unsigned int i = 0; i < std::size(s_ctChecksums); ++i)
    {
        if (s_ctChecksums[i].m_eKind != i)
            return false;
    }
    return true;
}

static_assert(areChecksumsInOrder() && std::size(s_ctChecksums) == s_cuiChecksums, "the kind is the row");

std::uint32_t addReflected(const tSlices& slices, std::uint32_t remainder, std::string_view bytes)
{
    const char* p = bytes.data();
    std::size_t left = bytes.size();
    for (; left >= 8; left -= 8, p += 8)
    {
        const std::uint64_t word = loadWord(p) ^ remainder;
        remainder = 0;
        for (unsigned int place = 0; place < 8; ++place)
            remainder ^= slices[7 - place][word >> (8 * place) & 255];
    }
    for (; left != 0; --left, ++p)
        remainder = remainder >> 8 ^ slices[0][(remainder ^ static_cast<unsigned char>(*p)) & 255];
    return remainder;
}

std::uint64_t addForward(std::uint64_t remainder, std::string_view bytes)
{
    for (const char byte : bytes)
    {
        const auto at = static_cast<unsigned char>(remainder >> 8 ^ static_cast<unsigned char>(byte));
        remainder = (remainder << 8 & 0xFFFF) ^ s_causForward1021[at];
    }
    return remainder;
}

/// \param odd  half of a word is in the sum; its lower half comes first
std::uint64_t addWords(std::uint64_t sum, bool& odd, std::string_view bytes)
{
    for (const char byte : bytes)
    {
        sum += std::uint64_t{static_cast<unsigned char>(byte)} << (odd ? 0 : 8);
        odd = !odd;
    }
    while (sum >> 16 != 0)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return sum;
}

std::uint64_t addXor(std::uint64_t result, std::string_view bytes)
{
    for (const char byte : bytes)
        result ^= static_cast<unsigned char>(byte);
    return result;
}

std::uint64_t addSum(std::uint64_t sum, std::string_view bytes)
{
    for (const char byte : bytes)
        sum += static_cast<unsigned char>(byte);
    return sum;
}

constexpr bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

/// Two sums modulo 10: as if the last digit were doubled, and as if it were not. More digits exchange them.
std::uint64_t addLuhn(std::uint64_t state, std::string_view bytes)
{
    unsigned int doubled = static_cast<unsigned int>(state / 16);
    unsigned int single = static_cast<unsigned int>(state % 16);
    for (const char byte : bytes)
    {
        if (!isDigit(byte))
            continue;
        const auto digit = static_cast<unsigned int>(byte - '0');
        const unsigned int twice = digit < 5 ? 2 * digit : 2 * digit - 9;
        const unsigned int next = (single + twice) % 10;
        single = (doubled + digit) % 10;
        doubled = next;
    }
    return std::uint64_t{doubled} * 16 + single;
}

std::uint64_t addDigits(std::uint64_t sum, std::string_view bytes)
{
    for (const char byte : bytes)
        sum += isDigit(byte) ? static_cast<unsigned int>(byte - '0') : byte == '-' ? 1U : 0U;
    return sum;
}

/// Letters are the numbers from 10 on.
std::uint64_t addMod97(std::uint64_t remainder, std::string_view bytes)
{
    for (const char byte : bytes)
    {
        if (isDigit(byte))
            remainder = (remainder * 10 + static_cast<unsigned int>(byte - '0')) % 97;
        else if (byte >= 'A' && byte <= 'Z')
            remainder = (remainder * 100 + static_cast<unsigned int>(byte - 'A' + 10)) % 97;
    }
    return remainder;
}

}  // namespace

CChecksum::CChecksum(E_Checksum kind) : m_eKind(kind), m_ullState(s_ctChecksums[kind].m_uiFirst)
{
}

void CChecksum::add(std::string_view bytes)
{
    const tChecksumRow& row = s_ctChecksums[m_eKind];
    switch (row.m_eWay)
    {
    case WAY_reflected: m_ullState = addReflected(*row.m_pSlices, static_cast<std::uint32_t>(m_ullState), bytes); break;
    case WAY_forward: m_ullState = addForward(m_ullState, bytes); break;
    case WAY_words: m_ullState = addWords(m_ullState, m_bOdd, bytes); break;
    case WAY_xor: m_ullState = addXor(m_ullState, bytes); break;
    case WAY_sum: m_ullState = addSum(m_ullState, bytes); break;
    case WAY_luhn: m_ullState = addLuhn(m_ullState, bytes); break;
    case WAY_digits: m_ullState = addDigits(m_ullState, bytes); break;
    case WAY_mod97: m_ullState = addMod97(m_ullState, bytes); break;
    }
}

void CChecksum::addFill(char byte, std::uint64_t count)
{
    char room[64];
    std::fill(std::begin(room), std::end(room), byte);
    for (; count != 0; count -= std::min<std::uint64_t>(count, sizeof room))
        add({room, static_cast<std::size_t>(std::min<std::uint64_t>(count, sizeof room))});
}

std::uint64_t CChecksum::get() const
{
    const tChecksumRow& row = s_ctChecksums[m_eKind];
    switch (row.m_eWay)
    {
    case WAY_luhn: return (10 - m_ullState / 16) % 10;
    case WAY_digits: return m_ullState % 10;
    case WAY_mod97: return 98 - m_ullState * 100 % 97;
    default: return (m_ullState ^ row.m_uiLast) & row.m_uiMask;
    }
}

bool findChecksum(std::string_view name, std::string_view variant, E_Checksum& kind)
{
    for (const tChecksumRow& row : s_ctChecksums)
    {
        if (row.m_pName != name || row.m_pVariant != variant)
            continue;
        kind = row.m_eKind;
        return true;
    }
    return false;
}

std::string words4Checksum(E_Checksum kind)
{
    const tChecksumRow& row = s_ctChecksums[kind];
    return *row.m_pVariant == '\0' ? row.m_pName : std::string(row.m_pName) + " " + row.m_pVariant;
}

}  // namespace murv::detail

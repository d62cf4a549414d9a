// seed_tables.h - the constants of the SEED block cipher (RFC 4269), computed from their published derivation.
//
// Nothing of 1024 table words is typed: the S-boxes are affine images of powers in GF(2^8), the SS tables are the
// S-boxes with the masks of the function G folded in, and the round constants are rotations of the golden ratio.
// A few published values are asserted below, the rest is held by the test vectors.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace murv::detail
{

inline constexpr unsigned int s_cuiSeedField = 0x163;  // x^8 + x^6 + x^5 + x + 1, the polynomial of SEED's field

using tSBox = std::array<std::uint8_t, 256>;
using tSSTable = std::array<std::uint32_t, 256>;

/// Columns of an 8 by 8 bit matrix: what the input bits 0 to 7 turn into.
using tBitColumns = std::array<std::uint8_t, 8>;

/// Product in GF(2^8) modulo `polynomial`.
constexpr std::uint8_t mul4Field(unsigned int a, unsigned int b, unsigned int polynomial)
{
    unsigned int product = 0;
    for (; b != 0; b >>= 1)
    {
        if ((b & 1) != 0)
            product ^= a;
        a <<= 1;
        if ((a & 0x100) != 0)
            a ^= polynomial;
    }
    return static_cast<std::uint8_t>(product);
}

constexpr std::uint8_t power4Field(unsigned int base, unsigned int exponent, unsigned int polynomial)
{
    std::uint8_t result = 1;
    for (; exponent != 0; exponent >>= 1)
    {
        if ((exponent & 1) != 0)
            result = mul4Field(result, base, polynomial);
        base = mul4Field(base, base, polynomial);
    }
    return result;
}

constexpr std::uint8_t applyColumns(const tBitColumns& columns, unsigned int value)
{
    unsigned int result = 0;
    for (std::size_t i = 0; i < 8; ++i)
        if (((value >> i) & 1) != 0)
            result ^= columns[i];
    return static_cast<std::uint8_t>(result);
}

/// One S-box is x -> matrix * x^exponent + constant.
struct tSBoxRule
{
    tBitColumns m_aucMatrix;
    unsigned int m_uiExponent;
    std::uint8_t m_ucConstant;
};

inline constexpr tSBoxRule s_ctSBoxRules[2] = {
    {{0x2C, 0xD0, 0x69, 0xC2, 0x41, 0x44, 0x58, 0xE2}, 247, 169},
    {{0xD0, 0x2A, 0xE1, 0x2C, 0x21, 0x30, 0xA2, 0x6C}, 251, 56},
};

constexpr tSBox makeSBox(const tSBoxRule& rule)
{
    tSBox box{};
    for (unsigned int x = 0; x < 256; ++x)
    {
        const std::uint8_t power = power4Field(x, rule.m_uiExponent, s_cuiSeedField);
        box[x] = static_cast<std::uint8_t>(applyColumns(rule.m_aucMatrix, power) ^ rule.m_ucConstant);
    }
    return box;
}

inline constexpr tSBox s_caucSBoxes[2] = {makeSBox(s_ctSBoxRules[0]), makeSBox(s_ctSBoxRules[1])};

/// The masks of G: m0 = 0xFC, m1 = 0xF3, m2 = 0xCF, m3 = 0x3F; mask number n clears the bits 2n and 2n + 1.
constexpr std::uint32_t mask4G(unsigned int number)
{
    return 0xFFu ^ (3u << (number % 4 * 2));
}

/// Input byte j of G adds S(x) & m(i + j) to output byte i; its S-box is S0 for even j and S1 for odd j.
constexpr tSSTable makeSSTable(unsigned int j)
{
    tSSTable table{};
    for (unsigned int x = 0; x < 256; ++x)
        for (unsigned int i = 0; i < 4; ++i)
            table[x] |= (s_caucSBoxes[j % 2][x] & mask4G(i + j)) << (i * 8);
    return table;
}

inline constexpr tSSTable s_cauiSS[4] = {makeSSTable(0), makeSSTable(1), makeSSTable(2), makeSSTable(3)};

/// The sixteen round constants: the 32 bits of the golden ratio, rotated left by one more for each round.
constexpr std::array<std::uint32_t, 16> makeSeedConstants()
{
    std::array<std::uint32_t, 16> constants{};
    std::uint32_t constant = 0x9E3779B9u;
    for (std::uint32_t& place : constants)
    {
        place = constant;
        constant = constant << 1 | constant >> 31;
    }
    return constants;
}

inline constexpr std::array<std::uint32_t, 16> s_cauiKC = makeSeedConstants();

static_assert(s_caucSBoxes[0][0] == 169 && s_caucSBoxes[0][1] == 133 && s_caucSBoxes[0][255] == 0x9A);
static_assert(s_caucSBoxes[1][0] == 56 && s_caucSBoxes[1][1] == 232 && s_caucSBoxes[1][255] == 0xB7);
static_assert(s_cauiSS[0][0] == 0x2989A1A8u && s_cauiSS[1][0] == 0x38380830u);
static_assert(s_cauiKC[1] == 0x3C6EF373u && s_cauiKC[15] == 0xBCDCCF1Bu);

}  // namespace murv::detail

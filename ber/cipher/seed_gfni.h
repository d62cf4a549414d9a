// seed_gfni.h - SEED's S-boxes as one inversion between two bit matrices, in the form of the GFNI instructions.
//
// SEED counts in GF(2^8) modulo 0x163, the processor modulo 0x11B. Both fields are the same up to a change of basis,
// and x^247 = (1/x)^8, x^251 = (1/x)^4, where squaring is linear. So an S-box is: change the basis (matrix), invert
// (instruction), then change back, square two or three times and apply SEED's own matrix, all three one matrix.

#pragma once

#include "ber/cipher/seed_tables.h"

namespace murv::detail
{

inline constexpr unsigned int s_cuiGfniField = 0x11B;  // x^8 + x^4 + x^3 + x + 1, the polynomial of the instructions

/// The image of SEED's x in the processor's field: the smallest root of SEED's polynomial there.
constexpr std::uint8_t findBasisRoot()
{
    for (unsigned int root = 2; root < 256; ++root)
    {
        std::uint8_t sum = 0;
        for (unsigned int i = 0; i <= 8; ++i)
            if (((s_cuiSeedField >> i) & 1) != 0)
                sum = static_cast<std::uint8_t>(sum ^ power4Field(root, i, s_cuiGfniField));
        if (sum == 0)
            return static_cast<std::uint8_t>(root);
    }
    return 0;
}

/// From SEED's field into the processor's: x^i becomes root^i.
constexpr tBitColumns makeToGfni()
{
    tBitColumns columns{};
    for (unsigned int i = 0; i < 8; ++i)
        columns[i] = power4Field(findBasisRoot(), i, s_cuiGfniField);
    return columns;
}

inline constexpr tBitColumns s_caucToGfni = makeToGfni();

/// After the inversion: back into SEED's field, to the power 8 (S0) or 4 (S1), through the matrix of the S-box.
constexpr tBitColumns makeFromInverse(const tSBoxRule& rule)
{
    tBitColumns columns{};
    const unsigned int power = 255 - rule.m_uiExponent;  // x^247 = (1/x)^8
    for (unsigned int x = 0; x < 256; ++x)
    {
        const unsigned int image = applyColumns(s_caucToGfni, x);
        for (unsigned int i = 0; i < 8; ++i)
            if (image == 1u << i)
                columns[i] = applyColumns(rule.m_aucMatrix, power4Field(x, power, s_cuiSeedField));
    }
    return columns;
}

inline constexpr tBitColumns s_caucFromInverse[2] = {makeFromInverse(s_ctSBoxRules[0]),
                                                     makeFromInverse(s_ctSBoxRules[1])};

/// The 64-bit operand of the instructions: byte 7 - i holds the row of output bit i.
constexpr std::uint64_t packMatrix(const tBitColumns& columns)
{
    std::uint64_t packed = 0;
    for (unsigned int i = 0; i < 8; ++i)
        for (unsigned int j = 0; j < 8; ++j)
            packed |= std::uint64_t{(columns[j] >> i) & 1u} << ((7 - i) * 8 + j);
    return packed;
}

inline constexpr std::uint64_t s_cullToGfni = packMatrix(s_caucToGfni);
inline constexpr std::uint64_t s_cullFromInverse[2] = {packMatrix(s_caucFromInverse[0]),
                                                       packMatrix(s_caucFromInverse[1])};

/// Whether both ways to make an S-box agree on all 256 bytes.
constexpr bool isGfniRight(unsigned int box)
{
    for (unsigned int x = 0; x < 256; ++x)
    {
        const std::uint8_t inverse = power4Field(applyColumns(s_caucToGfni, x), 254, s_cuiGfniField);
        const unsigned int image = applyColumns(s_caucFromInverse[box], inverse);
        if ((image ^ s_ctSBoxRules[box].m_ucConstant) != s_caucSBoxes[box][x])
            return false;
    }
    return true;
}

static_assert(findBasisRoot() != 0);
static_assert(isGfniRight(0) && isGfniRight(1));

}  // namespace murv::detail

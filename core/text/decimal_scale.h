// core/text/decimal_scale.h - powers of five, and the rounding of a number scaled by one.
//
// Printing a double and reading one are the same step: a 64-bit mantissa times a power of ten, rounded to nearest.
// Both use this table of 128-bit powers. When the result is uncertain round() says so, and the caller takes the slow
// exact path.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/text/wide_math.h"

namespace murv::detail
{

inline constexpr int s_cnFirstPower = -342;    // below it, no 64-bit mantissa reaches the smallest double
inline constexpr int s_cnLastPower = 340;      // scales the smallest double to 17 digits
inline constexpr int s_cnLastExactPower = 55;  // 5^55 is the last that fits 128 bits

/// floor(log2(5^power)), for every power of the table.
constexpr int log2OfPower(int power) noexcept
{
    return (power * 1217359) >> 19;
}

/// A number of 256 bits with its top bit set, times 2^exponent; only for making the table.
struct tTableNumber
{
    std::array<std::uint32_t, 9> m_auiLimbs;  // most significant first; the last one keeps divisions exact enough
    int m_iExponent;                          // floor(log2) of the number

    /// Shifts right by 0 to 3 bits, taking `carry` in at the top.
    constexpr void shiftRight(unsigned int bits, std::uint64_t carry) noexcept
    {
        for (std::uint32_t& limb : m_auiLimbs)
        {
            const std::uint64_t wide = (carry << 32) | limb;
            carry = limb & ((1U << bits) - 1U);
            limb = static_cast<std::uint32_t>(wide >> bits);
        }
    }

    constexpr void multiplyByFive() noexcept
    {
        std::uint64_t carry = 0;
        for (std::size_t i = m_auiLimbs.size(); i-- > 0;)
        {
            const std::uint64_t wide = m_auiLimbs[i] * std::uint64_t{5} + carry;
            m_auiLimbs[i] = static_cast<std::uint32_t>(wide);
            carry = wide >> 32;
        }
        const unsigned int bits = carry >= 4 ? 3U : 2U;
        shiftRight(bits, carry);
        m_iExponent += static_cast<int>(bits);
    }

    constexpr void divideByFive() noexcept
    {
        // 8 times the number, divided: the quotient has its top bit in the carry, or just below it.
        std::uint64_t rest = 0;
        std::uint64_t above = 0;  // the limb before the first
        std::array<std::uint32_t, 10> wide{};
        for (std::size_t i = 0; i < m_auiLimbs.size(); ++i)
        {
            const std::uint64_t eightfold = std::uint64_t{m_auiLimbs[i]} << 3;
            wide[i] += static_cast<std::uint32_t>(eightfold >> 32);
            wide[i + 1] = static_cast<std::uint32_t>(eightfold);
        }
        for (std::size_t i = 0; i < wide.size(); ++i)
        {
            const std::uint64_t part = (rest << 32) | wide[i];
            rest = part % 5;
            if (i == 0)
                above = part / 5;
            else
                m_auiLimbs[i - 1] = static_cast<std::uint32_t>(part / 5);
        }
        const unsigned int bits = above != 0 ? 1U : 0U;
        shiftRight(bits, above);
        m_iExponent -= 3 - static_cast<int>(bits);
    }

    constexpr tWide128 top() const noexcept
    {
        return {(std::uint64_t{m_auiLimbs[0]} << 32) | m_auiLimbs[1],
                (std::uint64_t{m_auiLimbs[2]} << 32) | m_auiLimbs[3]};
    }
};

struct tPowerTable
{
    std::array<tWide128, s_cnLastPower - s_cnFirstPower + 1> m_atPowers;
    bool m_bLogsAgree;

    constexpr const tWide128& operator[](int power) const noexcept
    {
        return m_atPowers[static_cast<std::size_t>(power - s_cnFirstPower)];
    }
};

constexpr tPowerTable makePowerTable() noexcept
{
    tPowerTable table{};
    table.m_bLogsAgree = true;
    constexpr tTableNumber one{{0x80000000U}, 0};
    tTableNumber number = one;
    for (int power = 0; power <= s_cnLastPower; ++power, number.multiplyByFive())
    {
        table.m_atPowers[static_cast<std::size_t>(power - s_cnFirstPower)] = number.top();
        table.m_bLogsAgree = table.m_bLogsAgree && number.m_iExponent == log2OfPower(power);
    }
    number = one;
    for (int power = 0; power >= s_cnFirstPower; --power, number.divideByFive())
    {
        table.m_atPowers[static_cast<std::size_t>(power - s_cnFirstPower)] = number.top();
        table.m_bLogsAgree = table.m_bLogsAgree && number.m_iExponent == log2OfPower(power);
    }
    return table;
}

/// 5^power = entry * 2^(log2OfPower(power) - 127), cut after 128 bits; exact for 0 to 55.
inline constexpr tPowerTable s_ctPowers = makePowerTable();
static_assert(s_ctPowers.m_bLogsAgree);
static_assert(s_ctPowers[0].m_ullHigh == std::uint64_t{1} << 63 && s_ctPowers[0].m_ullLow == 0);
static_assert(s_ctPowers[3].m_ullHigh == std::uint64_t{125} << 57);
static_assert(s_ctPowers[-1].m_ullHigh == 0xCCCCCCCCCCCCCCCCU && s_ctPowers[-1].m_ullLow == 0xCCCCCCCCCCCCCCCCU);

/// A mantissa times a power of five, still unrounded.
struct tScaled
{
    tWide192 m_tProduct;
    bool m_bExact;  // false: the true product is larger, by less than one in the middle word

    /// The product without its low `shift` + 128 bits. `shift` is 1 to 64.
    constexpr std::uint64_t whole(unsigned int shift) const noexcept
    {
        return shift < 64 ? m_tProduct.m_ullHigh >> shift : 0;
    }

    /// Rounds to nearest, an exact half to even.
    ///
    /// \return false when the cut power leaves open on which side of a half the product lies.
    constexpr bool round(unsigned int shift, std::uint64_t& rounded) const noexcept
    {
        const std::uint64_t half = std::uint64_t{1} << (shift - 1);
        const std::uint64_t fraction = m_tProduct.m_ullHigh & (half | (half - 1));
        rounded = whole(shift);
        if (fraction == half && (m_tProduct.m_ullMiddle | m_tProduct.m_ullLow) == 0) [[unlikely]]
        {
            rounded += rounded & 1;
            return m_bExact;
        }
        rounded += fraction >> (shift - 1);
        return m_bExact || fraction != half - 1 || m_tProduct.m_ullMiddle < ~std::uint64_t{1};
    }
};

constexpr tScaled scaleByFive(std::uint64_t mantissa, int power) noexcept
{
    return {multiplyWide(mantissa, s_ctPowers[power]), power >= 0 && power <= s_cnLastExactPower};
}

}  // namespace murv::detail

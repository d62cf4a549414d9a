// core/text/wide_math.h - products that are wider than 64 bits.
//
// Exact number text needs products of 64 x 64 and 64 x 128 bits. With a 128-bit integer the compiler needs one
// instruction for the first; without, four products of 32 bits give the same result.
#pragma once

#include <cstdint>

namespace murv::detail
{

/// 128 bits, most significant word first.
struct tWide128
{
    std::uint64_t m_ullHigh;
    std::uint64_t m_ullLow;
};

/// 192 bits, most significant word first.
struct tWide192
{
    std::uint64_t m_ullHigh;
    std::uint64_t m_ullMiddle;
    std::uint64_t m_ullLow;
};

/// The full product from 32-bit halves; used where there is no 128-bit integer, and by the test of the other.
constexpr tWide128 multiplyHalves(std::uint64_t a, std::uint64_t b) noexcept
{
    const std::uint64_t aLow = a & 0xFFFFFFFFU;
    const std::uint64_t aHigh = a >> 32;
    const std::uint64_t bLow = b & 0xFFFFFFFFU;
    const std::uint64_t bHigh = b >> 32;
    const std::uint64_t low = aLow * bLow;
    const std::uint64_t crossed = aHigh * bLow + (low >> 32);  // at most (2^32 - 1)^2 + 2^32 - 1: no overflow
    const std::uint64_t middle = aLow * bHigh + (crossed & 0xFFFFFFFFU);
    return {aHigh * bHigh + (crossed >> 32) + (middle >> 32), (middle << 32) | (low & 0xFFFFFFFFU)};
}

#ifdef __SIZEOF_INT128__
__extension__ typedef unsigned __int128 tUnsigned128;  // NOLINT(modernize-use-using): __extension__ needs it

constexpr tWide128 multiplyWide(std::uint64_t a, std::uint64_t b) noexcept
{
    const tUnsigned128 product = static_cast<tUnsigned128>(a) * b;
    return {static_cast<std::uint64_t>(product >> 64), static_cast<std::uint64_t>(product)};
}
#else
constexpr tWide128 multiplyWide(std::uint64_t a, std::uint64_t b) noexcept
{
    return multiplyHalves(a, b);
}
#endif

constexpr tWide192 multiplyWide(std::uint64_t a, const tWide128& b) noexcept
{
    const tWide128 high = multiplyWide(a, b.m_ullHigh);
    const tWide128 low = multiplyWide(a, b.m_ullLow);
    const std::uint64_t middle = high.m_ullLow + low.m_ullHigh;
    return {high.m_ullHigh + (middle < high.m_ullLow ? 1U : 0U), middle, low.m_ullLow};
}

}  // namespace murv::detail

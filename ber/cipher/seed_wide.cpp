// seed_wide.cpp - SEED for AVX-512 with GFNI: sixteen blocks a register, several registers side by side.
//
// Each register holds one of the four words of sixteen blocks. Which lane a block gets does not matter as long as it
// is taken out of the same lane, so blocks are only transposed within 128-bit quarters, which is the cheap kind.

#include "ber/cipher/seed_wide.h"

#if defined(__x86_64__) && defined(__GNUC__)

#include "ber/cipher/seed.h"
#include "ber/cipher/seed_gfni.h"
#include "ber/cipher/wipe.h"

#include <immintrin.h>
#include <cstring>

#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"  // g++ 12 finds it in its own immintrin.h (GCC bug 105593)
#endif

#define MURV_TARGET_GFNI __attribute__((target("avx512f,avx512bw,gfni")))
#define MURV_INLINE_GFNI __attribute__((target("avx512f,avx512bw,gfni"), always_inline)) inline

namespace murv::detail
{
namespace
{

constexpr unsigned int s_cuiSideBySide = 6;   // registers of each word; three leave the processor waiting
constexpr std::size_t s_cuiGroupBlocks = 16;  // blocks a register

/// The words of `N` groups of sixteen blocks.
template <unsigned int N>
struct tWideLanes
{
    __m512i m_at[4][N];
};

/// mask4G for all four bytes of a lane that was rotated left by `bytes` bytes: byte i then comes from byte i - bytes.
constexpr int maskAfterRotation(unsigned int bytes)
{
    std::uint32_t mask = 0;
    for (unsigned int i = 0; i < 4; ++i)
        mask |= mask4G(i + (i + 4 - bytes) % 4) << (i * 8);
    return static_cast<int>(mask);
}

/// Bitwise (a & b) ^ c.
MURV_INLINE_GFNI __m512i andXor(__m512i a, __m512i b, __m512i c)
{
    return _mm512_ternarylogic_epi32(a, b, c, 0x6A);
}

/// The function G of the standard on every lane.
MURV_INLINE_GFNI __m512i mix(__m512i x)
{
    const __m512i toGfni = _mm512_set1_epi64(static_cast<long long>(s_cullToGfni));
    const __m512i from0 = _mm512_set1_epi64(static_cast<long long>(s_cullFromInverse[0]));
    const __m512i from1 = _mm512_set1_epi64(static_cast<long long>(s_cullFromInverse[1]));
    constexpr __mmask64 oddBytes = 0xAAAAAAAAAAAAAAAAu;
    constexpr int constant0 = s_ctSBoxRules[0].m_ucConstant;
    constexpr int constant1 = s_ctSBoxRules[1].m_ucConstant;

    const __m512i t = _mm512_gf2p8affine_epi64_epi8(x, toGfni, 0);
    const __m512i even = _mm512_gf2p8affineinv_epi64_epi8(t, from0, constant0);
    const __m512i s = _mm512_mask_gf2p8affineinv_epi64_epi8(even, oddBytes, t, from1, constant1);

    __m512i z = _mm512_and_si512(s, _mm512_set1_epi32(maskAfterRotation(0)));
    z = andXor(_mm512_rol_epi32(s, 8), _mm512_set1_epi32(maskAfterRotation(1)), z);
    z = andXor(_mm512_rol_epi32(s, 16), _mm512_set1_epi32(maskAfterRotation(2)), z);
    return andXor(_mm512_rol_epi32(s, 24), _mm512_set1_epi32(maskAfterRotation(3)), z);
}

/// One round on all blocks: the half at `from` is mixed with the round key and added to the half at `to`.
/// The loops are unrolled by name, for at -O2 the compiler would leave the lanes in memory.
template <unsigned int N>
MURV_INLINE_GFNI void roundOnLanes(tWideLanes<N>& lanes, unsigned int to, const std::uint32_t* roundKey)
{
    const unsigned int from = 2 - to;
    const __m512i key0 = _mm512_set1_epi32(static_cast<int>(roundKey[0]));
    const __m512i key01 = _mm512_set1_epi32(static_cast<int>(roundKey[0] ^ roundKey[1]));
    __m512i c[N];
    __m512i d[N];
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)
    {
        c[n] = _mm512_xor_si512(lanes.m_at[from][n], key0);
        d[n] = mix(_mm512_ternarylogic_epi32(lanes.m_at[from][n], lanes.m_at[from + 1][n], key01, 0x96));
    }
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)
        c[n] = mix(_mm512_add_epi32(c[n], d[n]));
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)
        d[n] = mix(_mm512_add_epi32(d[n], c[n]));
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)
    {
        lanes.m_at[to][n] = _mm512_xor_si512(lanes.m_at[to][n], _mm512_add_epi32(c[n], d[n]));
        lanes.m_at[to + 1][n] = _mm512_xor_si512(lanes.m_at[to + 1][n], d[n]);
    }
}

/// Exchanges rows and columns of the 4 by 4 words in every 128-bit quarter; doing it twice changes nothing.
MURV_INLINE_GFNI void transpose(__m512i& a, __m512i& b, __m512i& c, __m512i& d)
{
    const __m512i abLow = _mm512_unpacklo_epi32(a, b);
    const __m512i abHigh = _mm512_unpackhi_epi32(a, b);
    const __m512i cdLow = _mm512_unpacklo_epi32(c, d);
    const __m512i cdHigh = _mm512_unpackhi_epi32(c, d);
    a = _mm512_unpacklo_epi64(abLow, cdLow);
    b = _mm512_unpackhi_epi64(abLow, cdLow);
    c = _mm512_unpacklo_epi64(abHigh, cdHigh);
    d = _mm512_unpackhi_epi64(abHigh, cdHigh);
}

/// All sixteen rounds on `N` groups; decryption takes the round keys from the end.
template <bool t_bEncrypt, unsigned int N>
MURV_INLINE_GFNI void cipherLanes(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in)
{
    const __m512i swapBytes =
        _mm512_broadcast_i32x4(_mm_setr_epi8(3, 2, 1, 0, 7, 6, 5, 4, 11, 10, 9, 8, 15, 14, 13, 12));
    tWideLanes<N> lanes;
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)
    {
        for (unsigned int word = 0; word < 4; ++word)
            lanes.m_at[word][n] = _mm512_shuffle_epi8(_mm512_loadu_si512(in + (n * 4 + word) * 64), swapBytes);
        transpose(lanes.m_at[0][n], lanes.m_at[1][n], lanes.m_at[2][n], lanes.m_at[3][n]);
    }
    for (unsigned int round = 0; round < 16; round += 2)
    {
        roundOnLanes(lanes, 0, schedule + (t_bEncrypt ? round : 15 - round) * 2);
        roundOnLanes(lanes, 2, schedule + (t_bEncrypt ? round + 1 : 14 - round) * 2);
    }
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)  // the halves leave the last round unswapped
    {
        __m512i rows[4] = {lanes.m_at[2][n], lanes.m_at[3][n], lanes.m_at[0][n], lanes.m_at[1][n]};
        transpose(rows[0], rows[1], rows[2], rows[3]);
        for (unsigned int word = 0; word < 4; ++word)
            _mm512_storeu_si512(out + (n * 4 + word) * 64, _mm512_shuffle_epi8(rows[word], swapBytes));
    }
}

template <bool t_bEncrypt>
MURV_TARGET_GFNI void cipherWide(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in,
                                 std::size_t blocks)
{
    constexpr std::size_t many = s_cuiSideBySide * s_cuiGroupBlocks;
    for (; blocks >= many; blocks -= many, in += many * s_cuiSeedBlock, out += many * s_cuiSeedBlock)
        cipherLanes<t_bEncrypt, s_cuiSideBySide>(schedule, out, in);
    while (blocks > 0)
    {
        CWipedArea<unsigned char, s_cuiGroupBlocks * s_cuiSeedBlock> area;
        const std::size_t count = blocks < s_cuiGroupBlocks ? blocks : s_cuiGroupBlocks;
        std::memcpy(area.data(), in, count * s_cuiSeedBlock);
        cipherLanes<t_bEncrypt, 1>(schedule, area.data(), area.data());
        std::memcpy(out, area.data(), count * s_cuiSeedBlock);
        blocks -= count;
        in += count * s_cuiSeedBlock;
        out += count * s_cuiSeedBlock;
    }
}

bool isGfniThere()
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("gfni");
}

}  // namespace

tSeedBlocksFP seedWideEncryptor()
{
    return isGfniThere() ? cipherWide<true> : nullptr;
}

tSeedBlocksFP seedWideDecryptor()
{
    return isGfniThere() ? cipherWide<false> : nullptr;
}

}  // namespace murv::detail

#else

namespace murv::detail
{

tSeedBlocksFP seedWideEncryptor()
{
    return nullptr;
}

tSeedBlocksFP seedWideDecryptor()
{
    return nullptr;
}

}  // namespace murv::detail

#endif

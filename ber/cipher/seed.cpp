// seed.cpp - the SEED block cipher: key schedule, self test, portable rounds, slices of messages.
//
// A round is a chain of table look-ups, each waiting for the one before. Blocks do not depend on each other, so the
// portable rounds run several of them side by side, which keeps the processor busy while one block waits.

#include "ber/cipher/seed.h"

#include "ber/cipher/seed_tables.h"
#include "ber/cipher/seed_wide.h"
#include "ber/cipher/wipe.h"

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstring>

namespace murv::detail
{
namespace
{

using tSchedule = CWipedArea<std::uint32_t, s_cuiSeedSchedule>;
using tBlockArea = CWipedArea<unsigned char, s_cuiSeedBlock>;

constexpr unsigned int s_cuiSideBySide = 6;  // more than six run out of registers

inline std::uint32_t load32Be(const unsigned char* p)
{
    return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) | std::uint32_t{p[3]};
}

inline void store32Be(unsigned char* p, std::uint32_t v)
{
    p[0] = static_cast<unsigned char>(v >> 24);
    p[1] = static_cast<unsigned char>(v >> 16);
    p[2] = static_cast<unsigned char>(v >> 8);
    p[3] = static_cast<unsigned char>(v);
}

/// The function G of the standard.
inline std::uint32_t mix(std::uint32_t x)
{
    return s_cauiSS[0][x & 0xFF] ^ s_cauiSS[1][(x >> 8) & 0xFF] ^ s_cauiSS[2][(x >> 16) & 0xFF] ^ s_cauiSS[3][x >> 24];
}

/// `N` blocks side by side: the two halves of each, as two words a half.
template <unsigned int N>
struct tLanes
{
    std::uint32_t m_aui[4][N];
};

/// One round on all blocks: the half at `from` is mixed with the round key and added to the half at `to`.
/// The loops are unrolled by name, for at -O2 the compiler would leave the lanes in memory.
template <unsigned int N>
inline void roundOnLanes(tLanes<N>& lanes, unsigned int to, const std::uint32_t* roundKey)
{
    const unsigned int from = 2 - to;
    std::uint32_t c[N];
    std::uint32_t d[N];
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)
    {
        c[n] = lanes.m_aui[from][n] ^ roundKey[0];
        d[n] = mix(lanes.m_aui[from + 1][n] ^ roundKey[1] ^ c[n]);
    }
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)
        c[n] = mix(c[n] + d[n]);
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)
        d[n] = mix(d[n] + c[n]);
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)
    {
        lanes.m_aui[to][n] ^= c[n] + d[n];
        lanes.m_aui[to + 1][n] ^= d[n];
    }
}

/// All sixteen rounds on `N` blocks; decryption takes the round keys from the end.
template <bool t_bEncrypt, unsigned int N>
inline void cipherLanes(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in)
{
    tLanes<N> lanes;
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)
        for (unsigned int word = 0; word < 4; ++word)
            lanes.m_aui[word][n] = load32Be(in + n * 16 + word * 4);
    for (unsigned int round = 0; round < 16; round += 2)
    {
        roundOnLanes(lanes, 0, schedule + (t_bEncrypt ? round : 15 - round) * 2);
        roundOnLanes(lanes, 2, schedule + (t_bEncrypt ? round + 1 : 14 - round) * 2);
    }
#pragma GCC unroll 8
    for (unsigned int n = 0; n < N; ++n)  // the halves leave the last round unswapped
        for (unsigned int word = 0; word < 4; ++word)
            store32Be(out + n * 16 + word * 4, lanes.m_aui[word ^ 2][n]);
}

template <bool t_bEncrypt>
void cipherPortable(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in, std::size_t blocks)
{
    for (; blocks >= s_cuiSideBySide; blocks -= s_cuiSideBySide)
    {
        cipherLanes<t_bEncrypt, s_cuiSideBySide>(schedule, out, in);
        in += s_cuiSideBySide * s_cuiSeedBlock;
        out += s_cuiSideBySide * s_cuiSeedBlock;
    }
    for (; blocks > 0; --blocks)
    {
        cipherLanes<t_bEncrypt, 1>(schedule, out, in);
        in += s_cuiSeedBlock;
        out += s_cuiSeedBlock;
    }
}

/// The key schedule of the standard: two words a round, one half of the key rotated by a byte after each.
void expandKey(std::uint32_t* schedule, const unsigned char* key16)
{
    CWipedArea<std::uint64_t, 2> area;
    std::uint64_t* half = area.data();
    half[0] = (std::uint64_t{load32Be(key16)} << 32) | load32Be(key16 + 4);
    half[1] = (std::uint64_t{load32Be(key16 + 8)} << 32) | load32Be(key16 + 12);
    for (unsigned int round = 0; round < 16; ++round)
    {
        const auto a = static_cast<std::uint32_t>(half[0] >> 32);
        const auto b = static_cast<std::uint32_t>(half[0]);
        const auto c = static_cast<std::uint32_t>(half[1] >> 32);
        const auto d = static_cast<std::uint32_t>(half[1]);
        schedule[round * 2] = mix(a + c - s_cauiKC[round]);
        schedule[round * 2 + 1] = mix(b - d + s_cauiKC[round]);
        if (round % 2 == 0)
            half[0] = std::rotr(half[0], 8);
        else
            half[1] = std::rotl(half[1], 8);
    }
}

/// What the self test of this process said: null when it passed. It runs once, whichever thread comes first.
const char* selfTestMessage()
{
    static const char* const s_pMessage =
        reportSeedSelfTest(seedSelfTest(s_ctSeedSelfTest, SeedEncryptBlock, SeedDecryptBlock));
    return s_pMessage;
}

}  // namespace

void seedEncryptPortable(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in, std::size_t blocks)
{
    cipherPortable<true>(schedule, out, in, blocks);
}

void seedDecryptPortable(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in, std::size_t blocks)
{
    cipherPortable<false>(schedule, out, in, blocks);
}

void seedEncryptBlocks(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in, std::size_t blocks)
{
    static const tSeedBlocksFP s_pBlocks = seedWideEncryptor() ? seedWideEncryptor() : seedEncryptPortable;
    s_pBlocks(schedule, out, in, blocks);
}

void seedDecryptBlocks(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in, std::size_t blocks)
{
    static const tSeedBlocksFP s_pBlocks = seedWideDecryptor() ? seedWideDecryptor() : seedDecryptPortable;
    s_pBlocks(schedule, out, in, blocks);
}

std::size_t seedEncryptTo(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in,
                          std::size_t length, bool filledUp)
{
    const std::size_t full = length / s_cuiSeedBlock * s_cuiSeedBlock;
    const std::size_t rest = length - full;
    seedEncryptBlocks(schedule, out, in, full / s_cuiSeedBlock);
    if (rest == 0)
        return length;
    if (!filledUp)
    {
        std::memmove(out + full, in + full, rest);
        return length;
    }
    tBlockArea last;
    std::memcpy(last.data(), in + full, rest);
    seedEncryptPortable(schedule, out + full, last.data(), 1);
    return full + s_cuiSeedBlock;
}

std::size_t seedDecryptTo(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in,
                          std::size_t length)
{
    const std::size_t full = length / s_cuiSeedBlock * s_cuiSeedBlock;
    seedDecryptBlocks(schedule, out, in, full / s_cuiSeedBlock);
    if (full != length)
        std::memmove(out + full, in + full, length - full);
    return length;
}

const char* seedSelfTest(const tSeedExample& example, tSeedBlockFP encrypt, tSeedBlockFP decrypt)
{
    tSchedule schedule;
    tBlockArea encrypted;
    tBlockArea decrypted;
    expandKey(schedule.data(), example.m_aucKey);
    if (!encrypt(schedule.data(), encrypted.data(), example.m_aucPlain) ||
        std::memcmp(encrypted.data(), example.m_aucCipher, s_cuiSeedBlock) != 0)
        return "SEED test encryption failed.";
    if (!decrypt(schedule.data(), decrypted.data(), encrypted.data()) ||
        std::memcmp(decrypted.data(), example.m_aucPlain, s_cuiSeedBlock) != 0)
        return "SEED test decryption failed.";
    return nullptr;
}

const char* reportSeedSelfTest(const char* message)
{
    if (message != nullptr)
        std::printf("%s\n", message);
    return message;
}

bool seedKeySetup(const char* selfTestMessage, std::uint32_t* schedule, const unsigned char* key16, std::size_t length)
{
    if (selfTestMessage != nullptr || schedule == nullptr || key16 == nullptr || length != s_cuiSeedBlock)
        return false;
    expandKey(schedule, key16);
    return true;
}

}  // namespace murv::detail

namespace murv
{

bool SeedKeySetup(std::uint32_t* schedule, const void* key16, std::size_t length)
{
    return detail::seedKeySetup(detail::selfTestMessage(), schedule, static_cast<const unsigned char*>(key16), length);
}

bool SeedKeyFromPassword(std::uint32_t* schedule, const void* key, std::size_t keyLength)
{
    if (schedule == nullptr || key == nullptr || keyLength == 0)
        return false;
    detail::tBlockArea block;
    std::memcpy(block.data(), key, std::min(keyLength, detail::s_cuiSeedBlock));
    return SeedKeySetup(schedule, block.data(), detail::s_cuiSeedBlock);
}

bool SeedEncryptBlock(const std::uint32_t* schedule, unsigned char* out16, const unsigned char* in16)
{
    if (schedule == nullptr || out16 == nullptr || in16 == nullptr)
        return false;
    detail::seedEncryptPortable(schedule, out16, in16, 1);
    return true;
}

bool SeedDecryptBlock(const std::uint32_t* schedule, unsigned char* out16, const unsigned char* in16)
{
    if (schedule == nullptr || out16 == nullptr || in16 == nullptr)
        return false;
    detail::seedDecryptPortable(schedule, out16, in16, 1);
    return true;
}

}  // namespace murv

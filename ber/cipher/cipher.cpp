// cipher.cpp - the table of ciphers.

#include "ber/cipher/cipher.h"

#include "ber/cipher/seed.h"
#include "ber/cipher/vernam.h"

#include <iterator>

namespace murv::detail
{
namespace
{

bool acceptAnyKey(std::uint32_t*, const void*, std::size_t)
{
    return true;
}

constexpr std::uint64_t vernamSize(std::uint64_t length, bool)
{
    return vernamTextSize(length);
}

constexpr std::uint64_t seedSize(std::uint64_t length, bool filledUp)
{
    return filledUp ? (length + s_cuiSeedBlock - 1) / s_cuiSeedBlock * s_cuiSeedBlock : length;
}

constexpr std::size_t seedPlainSize(std::size_t textLength)
{
    return textLength;
}

std::size_t encodeVernam(const tCipherSlice& slice)
{
    return vernamEncodeTo(slice.m_pOut, slice.m_pIn, slice.m_nLength);
}

std::size_t decodeVernam(const tCipherSlice& slice)
{
    return vernamDecodeTo(slice.m_pOut, slice.m_pIn, slice.m_nLength);
}

std::size_t encodeSeed(const tCipherSlice& slice)
{
    return seedEncryptTo(slice.m_pKey, slice.m_pOut, slice.m_pIn, slice.m_nLength, slice.m_bFilledUp);
}

std::size_t decodeSeed(const tCipherSlice& slice)
{
    return seedDecryptTo(slice.m_pKey, slice.m_pOut, slice.m_pIn, slice.m_nLength);
}

constexpr tCipherRow s_ctCiphers[] = {
    {"VERNAM", false, 0, acceptAnyKey, vernamSize, vernamByteRoom, encodeVernam, decodeVernam},
    {"SEED", true, s_cuiSeedBlock, SeedKeyFromPassword, seedSize, seedPlainSize, encodeSeed, decodeSeed},
};
static_assert(std::size(s_ctCiphers) == s_cuiCipherCount);
static_assert(s_ctCiphers[CT_seed].m_bKeyNeeded && !s_ctCiphers[CT_vernam].m_bKeyNeeded);

static_assert(sizeof(tCipherKey) >= s_cuiSeedSchedule * sizeof(std::uint32_t));
static_assert(s_cnPlainSliceUnit % 3 == 0 && s_cnTextSliceUnit % 4 == 0, "whole groups of VERNAM");
static_assert(s_cnPlainSliceUnit % s_cuiSeedBlock == 0 && s_cnTextSliceUnit % s_cuiSeedBlock == 0);

}  // namespace

const tCipherRow* findCipher(unsigned int type)
{
    return isValidCipher(type) ? &s_ctCiphers[type] : nullptr;
}

const char* cipherName(unsigned int type)
{
    const tCipherRow* const row = findCipher(type);
    return row == nullptr ? "" : row->m_pName;
}

}  // namespace murv::detail

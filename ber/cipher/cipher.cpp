// cipher.cpp - the table of ciphers and the dispatch by number.
//
// A new cipher is a new row; nothing else asks which ciphers there are.

#include "ber/cipher/cipher.h"

#include "ber/cipher/seed.h"
#include "ber/cipher/vernam.h"

#include <cstdlib>
#include <iterator>

namespace murv::detail
{
namespace
{

/// What one call is about; each cipher picks what it needs.
struct tCipherCall
{
    const void* m_pData;
    std::size_t m_uiLength;
    const void* m_pKey;
    std::size_t m_uiKeyLength;
    bool m_bPadAlways;
};

using tCipherFP = std::uint32_t (*)(const tCipherCall& call, unsigned char** out);

struct tCipherRow
{
    const char* m_pName;
    bool m_bKeyNeeded;
    tCipherFP m_pEncrypt;
    tCipherFP m_pDecrypt;
};

std::uint32_t encodeVernam(const tCipherCall& call, unsigned char** out)
{
    return VernamEncode(call.m_pData, call.m_uiLength, out);
}

std::uint32_t decodeVernam(const tCipherCall& call, unsigned char** out)
{
    return VernamDecode(call.m_pData, call.m_uiLength, out);
}

std::uint32_t encryptSeed(const tCipherCall& call, unsigned char** out)
{
    return SeedEncrypt(call.m_pData, call.m_uiLength, call.m_pKey, call.m_uiKeyLength, out, call.m_bPadAlways);
}

std::uint32_t decryptSeed(const tCipherCall& call, unsigned char** out)
{
    return SeedDecrypt(call.m_pData, call.m_uiLength, call.m_pKey, call.m_uiKeyLength, out);
}

constexpr tCipherRow s_ctCiphers[] = {
    {"VERNAM", false, encodeVernam, decodeVernam},  // CT_vernam
    {"SEED", true, encryptSeed, decryptSeed},       // CT_seed
};
static_assert(std::size(s_ctCiphers) == s_cuiCipherCount);
static_assert(s_ctCiphers[CT_seed].m_bKeyNeeded && !s_ctCiphers[CT_vernam].m_bKeyNeeded);

/// Runs one direction of a row; a buffer that comes with a count of 0 is released.
std::uint32_t run(unsigned int type, tCipherFP tCipherRow::*direction, const tCipherCall& call, unsigned char** out)
{
    if (out == nullptr)
        return 0;
    *out = nullptr;
    if (!isValidCipher(type))
        return 0;
    const std::uint32_t count = (s_ctCiphers[type].*direction)(call, out);
    if (count == 0)
    {
        std::free(*out);
        *out = nullptr;
    }
    return count;
}

}  // namespace

const char* cipherName(unsigned int type)
{
    return isValidCipher(type) ? s_ctCiphers[type].m_pName : "";
}

bool isCipherKeyNeeded(unsigned int type)
{
    return isValidCipher(type) && s_ctCiphers[type].m_bKeyNeeded;
}

}  // namespace murv::detail

namespace murv
{

std::uint32_t CipherEncrypt(unsigned int type, const void* data, std::size_t length, const void* key,
                            std::size_t keyLength, bool padAlways, unsigned char** out)
{
    return detail::run(type, &detail::tCipherRow::m_pEncrypt, {data, length, key, keyLength, padAlways}, out);
}

std::uint32_t CipherDecrypt(unsigned int type, const void* data, std::size_t length, const void* key,
                            std::size_t keyLength, unsigned char** out)
{
    return detail::run(type, &detail::tCipherRow::m_pDecrypt, {data, length, key, keyLength, false}, out);
}

}  // namespace murv

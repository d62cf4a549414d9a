// tests/ber/cipher/seed_peer_test.cpp - SEED against OpenSSL's on random keys and blocks.
//
// The published examples are four; ten thousand random ones reach every entry of every table. OpenSSL 3 keeps SEED in
// its legacy provider, a module of its own, so the comparison is skipped where that is not installed.

#include "ber/cipher/seed.h"
#include "ber/cipher/seed_wide.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <openssl/provider.h>

#include <memory>
#include <random>
#include <vector>

#include "tests/support/processor.h"

namespace
{

using namespace murv;
using namespace murv::tests;

using tBytes = std::vector<unsigned char>;

constexpr unsigned int s_cuiKeys = 100;
constexpr std::size_t s_cuiBlocks4Key = 100;

/// OpenSSL's SEED without chaining and padding; null where the provider is missing.
class CPeerSeed
{
public:
    bool isThere() const
    {
        return m_pCipher != nullptr;
    }

    tBytes encrypt(const unsigned char* key16, const tBytes& plain) const
    {
        tBytes out(plain.size());
        int count = 0;
        const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                      EVP_CIPHER_CTX_free);
        EXPECT_EQ(EVP_EncryptInit_ex(context.get(), m_pCipher.get(), nullptr, key16, nullptr), 1);
        EXPECT_EQ(EVP_CIPHER_CTX_set_padding(context.get(), 0), 1);
        EXPECT_EQ(EVP_EncryptUpdate(context.get(), out.data(), &count, plain.data(), static_cast<int>(plain.size())),
                  1);
        EXPECT_EQ(static_cast<std::size_t>(count), plain.size());
        return out;
    }

private:
    std::unique_ptr<OSSL_LIB_CTX, decltype(&OSSL_LIB_CTX_free)> m_pLibrary{OSSL_LIB_CTX_new(), OSSL_LIB_CTX_free};
    std::unique_ptr<OSSL_PROVIDER, decltype(&OSSL_PROVIDER_unload)> m_pLegacy{
        OSSL_PROVIDER_load(m_pLibrary.get(), "legacy"), OSSL_PROVIDER_unload};
    std::unique_ptr<EVP_CIPHER, decltype(&EVP_CIPHER_free)> m_pCipher{
        EVP_CIPHER_fetch(m_pLibrary.get(), "SEED-ECB", nullptr), EVP_CIPHER_free};
};

using tCipherFP = void (*)(const std::uint32_t*, unsigned char*, const unsigned char*, std::size_t);

void expectTenThousandBlocksAgree(tCipherFP encrypt, tCipherFP decrypt)
{
    const CPeerSeed peer;
    if (!peer.isThere())
        GTEST_SKIP() << "NOT COMPARED: OpenSSL's legacy provider (legacy.so, Debian: libssl3) is not installed";
    std::mt19937 random(4269);
    for (unsigned int i = 0; i < s_cuiKeys; ++i)
    {
        unsigned char key[detail::s_cuiSeedBlock];
        for (unsigned char& byte : key)
            byte = static_cast<unsigned char>(random());
        tBytes plain(s_cuiBlocks4Key * detail::s_cuiSeedBlock);
        for (unsigned char& byte : plain)
            byte = static_cast<unsigned char>(random());

        std::uint32_t schedule[detail::s_cuiSeedSchedule];
        ASSERT_TRUE(SeedKeySetup(schedule, key, sizeof key));
        tBytes bytes(plain.size());
        encrypt(schedule, bytes.data(), plain.data(), s_cuiBlocks4Key);
        ASSERT_EQ(bytes, peer.encrypt(key, plain));
        decrypt(schedule, bytes.data(), bytes.data(), s_cuiBlocks4Key);
        ASSERT_EQ(bytes, plain);
    }
}

TEST(SeedPeer, portableVersionAgreesWithOpensslOnTenThousandBlocks)
{
    expectTenThousandBlocksAgree(detail::seedEncryptPortable, detail::seedDecryptPortable);
}

TEST(SeedPeer, wideVersionAgreesWithOpensslOnTenThousandBlocks)
{
    if (!hasAvx512Gfni())
        GTEST_SKIP() << "NOT COMPARED: this processor has no AVX-512 with GFNI";
    ASSERT_NE(detail::seedWideEncryptor(), nullptr);
    expectTenThousandBlocksAgree(detail::seedWideEncryptor(), detail::seedWideDecryptor());
}

}  // namespace

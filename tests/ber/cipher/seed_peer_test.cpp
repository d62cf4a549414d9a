// tests/ber/cipher/seed_peer_test.cpp - SEED against OpenSSL's on random keys and blocks.
//
// The published examples are four; ten thousand random ones reach every entry of every table. Where OpenSSL has no
// SEED, the comparison is skipped.

#include "ber/cipher/seed.h"
#include "ber/cipher/seed_wide.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "tests/ber/openssl_seed.h"
#include "tests/support/processor.h"

namespace
{

using namespace murv;
using namespace murv::tests;

using tBytes = std::vector<unsigned char>;

constexpr unsigned int s_cuiKeys = 100;
constexpr std::size_t s_cuiBlocks4Key = 100;

using tCipherFP = void (*)(const std::uint32_t*, unsigned char*, const unsigned char*, std::size_t);

void expectTenThousandBlocksAgree(tCipherFP encrypt, tCipherFP decrypt)
{
    const COpensslSeed peer;
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
        tBytes wanted(plain.size());
        ASSERT_TRUE(peer.encrypt(key, plain.data(), plain.size(), wanted.data()));
        ASSERT_EQ(bytes, wanted);
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

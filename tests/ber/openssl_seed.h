// tests/ber/openssl_seed.h - OpenSSL's SEED, for comparing.
//
// OpenSSL 3 keeps SEED in its legacy provider, a module of its own that may be missing.
#pragma once

#include <openssl/evp.h>
#include <openssl/provider.h>

#include <cstddef>
#include <memory>

namespace murv::tests
{

/// Works on whole blocks, without chaining and padding.
class COpensslSeed
{
public:
    bool isThere() const
    {
        return m_pCipher != nullptr;
    }
    /// \param size  of both texts, in bytes
    /// \return false when OpenSSL fails
    bool encrypt(const unsigned char* key16, const unsigned char* plain, std::size_t size, unsigned char* out) const
    {
        return run(1, key16, plain, size, out);
    }
    bool decrypt(const unsigned char* key16, const unsigned char* text, std::size_t size, unsigned char* out) const
    {
        return run(0, key16, text, size, out);
    }

private:
    bool run(int encrypting, const unsigned char* key16, const unsigned char* from, std::size_t size,
             unsigned char* to) const
    {
        const std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)> context(EVP_CIPHER_CTX_new(),
                                                                                      EVP_CIPHER_CTX_free);
        int count = 0;
        return EVP_CipherInit_ex(context.get(), m_pCipher.get(), nullptr, key16, nullptr, encrypting) == 1 &&
               EVP_CIPHER_CTX_set_padding(context.get(), 0) == 1 &&
               EVP_CipherUpdate(context.get(), to, &count, from, static_cast<int>(size)) == 1 &&
               static_cast<std::size_t>(count) == size;
    }

    std::unique_ptr<OSSL_LIB_CTX, decltype(&OSSL_LIB_CTX_free)> m_pLibrary{OSSL_LIB_CTX_new(), OSSL_LIB_CTX_free};
    std::unique_ptr<OSSL_PROVIDER, decltype(&OSSL_PROVIDER_unload)> m_pLegacy{
        OSSL_PROVIDER_load(m_pLibrary.get(), "legacy"), OSSL_PROVIDER_unload};
    std::unique_ptr<EVP_CIPHER, decltype(&EVP_CIPHER_free)> m_pCipher{
        EVP_CIPHER_fetch(m_pLibrary.get(), "SEED-ECB", nullptr), EVP_CIPHER_free};
};

}  // namespace murv::tests

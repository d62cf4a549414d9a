// cipher.h - the ciphers of the binary encoding by their number in the file.
//
// One table says for each number what the cipher is called, whether it needs a key, and what does the work; the saver,
// the loader and their messages ask here. It knows bytes and keys only.

#pragma once

#include <cstddef>
#include <cstdint>

namespace murv
{

/// Encrypts or encodes `length` bytes with the cipher of that number.
///
/// \param key, keyLength  ignored by a cipher that needs none
/// \param padAlways       for SEED, see SeedEncrypt; the other ignores it
/// \param out             receives a buffer of exactly the returned size, to be released with std::free; null fails
/// \return the size of `*out`, or 0 on failure (also for a number that no cipher has), which leaves `*out` null.
std::uint32_t CipherEncrypt(unsigned int type, const void* data, std::size_t length, const void* key,
                            std::size_t keyLength, bool padAlways, unsigned char** out);

/// Decrypts or decodes what CipherEncrypt made; parameters and result as there.
std::uint32_t CipherDecrypt(unsigned int type, const void* data, std::size_t length, const void* key,
                            std::size_t keyLength, unsigned char** out);

namespace detail
{

/// The numbers as they stand in files; they index the table of ciphers.
enum E_CipherType : unsigned int
{
    CT_vernam = 0,
    CT_seed = 1
};

inline constexpr unsigned int s_cuiCipherCount = 2;

constexpr bool isValidCipher(unsigned int type)
{
    return type < s_cuiCipherCount;
}

/// The name used in messages, "VERNAM" or "SEED"; "" for a number that no cipher has.
const char* cipherName(unsigned int type);

/// Whether the cipher needs a key; false for a number that no cipher has.
bool isCipherKeyNeeded(unsigned int type);

}  // namespace detail
}  // namespace murv

// seed.h - the SEED block cipher (RFC 4269), block by block without chaining.
//
// It keeps out the curious and no more: equal blocks encrypt equally, and a trailing partial block may stay as it is.
// Buffers are allocated and released with malloc and free; the forms that write into memory of the caller are in
// detail.

#pragma once

#include <cstddef>
#include <cstdint>

namespace murv
{

/// Encrypts `data` in blocks of 16 bytes, each on its own.
///
/// A partial last block is filled up with zeros and encrypted when `padAlways` is set, or when it is the only one;
/// otherwise it is copied as it is, so that the result is as long as the data.
///
/// \param data, length        the bytes; null, 0, or a result that would not fit a 32-bit count fail
/// \param key, keyLength      see SeedKeyFromPassword
/// \param out                 receives a buffer of exactly the returned size, to be released with std::free; null fails
/// \return the size of `*out`, or 0 on failure, which leaves `*out` null.
std::uint32_t SeedEncrypt(const void* data, std::size_t length, const void* key, std::size_t keyLength,
                          unsigned char** out, bool padAlways);

/// Decrypts every full block of `data` and copies a partial last one as it is; the counterpart of SeedEncrypt.
///
/// \return `length`, or 0 on failure, which leaves `*out` null. Zeros that encryption filled in are part of the result.
std::uint32_t SeedDecrypt(const void* data, std::size_t length, const void* key, std::size_t keyLength,
                          unsigned char** out);

/// Makes the key schedule of a password: its first 16 bytes, filled up with zeros when there are fewer.
///
/// \param schedule  room for 32 words; null fails, and so do a null or empty key and a failed self test
bool SeedKeyFromPassword(std::uint32_t* schedule, const void* key, std::size_t keyLength);

/// Makes the key schedule of a key of 16 bytes; any other `length`, or null, fails.
///
/// The first call of the process checks the cipher against a published example (also when several threads come at
/// once). Should that fail, it prints one line on the standard output, and every key setup of the process fails.
bool SeedKeySetup(std::uint32_t* schedule, const void* key16, std::size_t length);

/// Encrypts or decrypts one block of 16 bytes; `out16` may be `in16`. Null fails.
bool SeedEncryptBlock(const std::uint32_t* schedule, unsigned char* out16, const unsigned char* in16);
bool SeedDecryptBlock(const std::uint32_t* schedule, unsigned char* out16, const unsigned char* in16);

namespace detail
{

inline constexpr std::size_t s_cuiSeedBlock = 16;     // bytes in a block, and in a key
inline constexpr std::size_t s_cuiSeedSchedule = 32;  // words in a key schedule

/// Whether encryption fills up and encrypts the partial last block of data of that length.
constexpr bool isSeedPadded(std::uint64_t length, bool padAlways)
{
    return length % s_cuiSeedBlock != 0 && (padAlways || length < s_cuiSeedBlock);
}

/// Size of the encrypted form of `length` bytes, which may be 2^32. \pre length is at most 32 bits
constexpr std::uint64_t seedCipherSize(std::uint64_t length, bool padAlways)
{
    return isSeedPadded(length, padAlways) ? (length / s_cuiSeedBlock + 1) * s_cuiSeedBlock : length;
}

/// Encrypts or decrypts `blocks` independent blocks with the widest registers there are.
///
/// `out` may be `in` itself, and may not overlap it otherwise. Slices of whole blocks give what one call gives.
void seedEncryptBlocks(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in, std::size_t blocks);
void seedDecryptBlocks(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in, std::size_t blocks);

/// The same without wide registers; what every other way is compared with.
void seedEncryptPortable(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in,
                         std::size_t blocks);
void seedDecryptPortable(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in,
                         std::size_t blocks);

/// Encrypts a whole message into memory of the caller, its partial last block by the rule of SeedEncrypt.
///
/// \param out  room for seedCipherSize(length, padAlways) bytes; may be `in` itself
/// \return seedCipherSize(length, padAlways)
std::size_t seedEncryptTo(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in,
                          std::size_t length, bool padAlways);

/// Decrypts into memory of the caller: `out` has room for `length` bytes and may be `in` itself. \return `length`
std::size_t seedDecryptTo(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in,
                          std::size_t length);

/// A published example: what the self test compares with.
struct tSeedExample
{
    unsigned char m_aucKey[s_cuiSeedBlock];
    unsigned char m_aucPlain[s_cuiSeedBlock];
    unsigned char m_aucCipher[s_cuiSeedBlock];
};

/// The fourth test example of RFC 4269.
inline constexpr tSeedExample s_ctSeedSelfTest = {
    {0x28, 0xDB, 0xC3, 0xBC, 0x49, 0xFF, 0xD8, 0x7D, 0xCF, 0xA5, 0x09, 0xB1, 0x1D, 0x42, 0x2B, 0xE7},
    {0xB4, 0x1E, 0x6B, 0xE2, 0xEB, 0xA8, 0x4A, 0x14, 0x8E, 0x2E, 0xED, 0x84, 0x59, 0x3C, 0x5E, 0xC7},
    {0x9B, 0x9B, 0x7B, 0xFC, 0xD1, 0x81, 0x3C, 0xB9, 0x5D, 0x0B, 0x36, 0x18, 0xF4, 0x0F, 0x51, 0x22}};

using tSeedBlockFP = bool (*)(const std::uint32_t*, unsigned char*, const unsigned char*);

/// Runs the example through both directions. \return what failed, or null when nothing did
const char* seedSelfTest(const tSeedExample& example, tSeedBlockFP encrypt, tSeedBlockFP decrypt);

/// Prints the message of a failed self test, on a line of its own; null prints nothing. \return the message
const char* reportSeedSelfTest(const char* message);

/// Key setup given the result of the self test: a message refuses every key.
bool seedKeySetup(const char* selfTestMessage, std::uint32_t* schedule, const unsigned char* key16, std::size_t length);

}  // namespace detail
}  // namespace murv

// seed.h - the SEED block cipher (RFC 4269), block by block without chaining.
//
// It keeps out the curious and no more: equal blocks encrypt equally, and a trailing partial block may stay as it is.
// All functions write into memory of the caller; for buffers of their own see message.h.

#pragma once

#include <cstddef>
#include <cstdint>

namespace murv
{

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

/// Encrypts a message, or a slice of one, into memory of the caller.
///
/// \param out       room for as many bytes as `in` has, rounded up to whole blocks when filled up; may be `in` itself
/// \param filledUp  whether a partial last block is filled up with zeros and encrypted, or copied as it is
/// \return the bytes written
std::size_t seedEncryptTo(const std::uint32_t* schedule, unsigned char* out, const unsigned char* in,
                          std::size_t length, bool filledUp);

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

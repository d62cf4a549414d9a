// message.h - whole messages, coded into buffers of their own.
//
// For those who have a message in one piece and want it coded in one piece. Saver and loader do not: they code the body
// of a file slice by slice (cipher.h). All parameters that several functions have mean the same in each:
//
//   data, length    the bytes; null and 0 fail, and so do sizes, before or after coding, beyond 32 bits
//   key, keyLength  see SeedKeyFromPassword; ignored by a cipher that needs none
//   out             receives a buffer that is released with std::free; null fails
//
// All return the number of bytes in the buffer, or 0 on failure, which leaves `*out` null.

#pragma once

#include <cstddef>
#include <cstdint>

namespace murv
{

/// Encodes with the cipher of that number; one that does not exist fails.
/// \param padAlways  for SEED, see SeedEncrypt; the other ignores it
std::uint32_t CipherEncrypt(unsigned int type, const void* data, std::size_t length, const void* key,
                            std::size_t keyLength, bool padAlways, unsigned char** out);

/// Decodes what CipherEncrypt made. The buffer has `length` bytes, with zeros after the decoded ones.
std::uint32_t CipherDecrypt(unsigned int type, const void* data, std::size_t length, const void* key,
                            std::size_t keyLength, unsigned char** out);

/// Encodes bytes as text: three bytes become four symbols, and the last group is filled up with pad symbols.
std::uint32_t VernamEncode(const void* data, std::size_t length, unsigned char** out);

/// Decodes text made by VernamEncode, up to the first pad symbol or the first byte that is no symbol. A last group of
/// two or three symbols gives one or two bytes; a symbol that stands alone gives none. Nothing to decode fails.
std::uint32_t VernamDecode(const void* text, std::size_t length, unsigned char** out);

/// Encrypts in blocks of 16 bytes, each on its own.
///
/// A last block that is not full is filled up with zeros and encrypted when `padAlways` is set, or when it is the only
/// one; otherwise it is copied as it is, so that the result is as long as the data.
std::uint32_t SeedEncrypt(const void* data, std::size_t length, const void* key, std::size_t keyLength,
                          unsigned char** out, bool padAlways);

/// Decrypts every full block and copies a last one that is not full. Zeros that encryption filled in are part of the
/// result, which is as long as the data.
std::uint32_t SeedDecrypt(const void* data, std::size_t length, const void* key, std::size_t keyLength,
                          unsigned char** out);

}  // namespace murv

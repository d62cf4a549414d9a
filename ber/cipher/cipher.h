// cipher.h - the ciphers of binary files, by their number in the file.
//
// Everything that is asked about a cipher is a column of one table: what messages call it, whether it needs a key, and
// what does the work, slice by slice. A new cipher is a new row; nobody asks which one it is. It knows bytes and keys
// only.

#pragma once

#include <cstddef>
#include <cstdint>

#include "ber/cipher/wipe.h"

namespace murv::detail
{

/// The numbers as they stand in files; they index the table.
enum E_CipherType : unsigned int
{
    CT_vernam = 0,
    CT_seed = 1
};

inline constexpr unsigned int s_cuiCipherCount = 2;

/// Room for the prepared key of any cipher; wiped when it goes.
using tCipherKey = CWipedArea<std::uint32_t, 32>;

/// A message is coded in slices, one after the other. All slices but the last have lengths that are multiples of these;
/// how long they are makes no difference to the result.
inline constexpr std::size_t s_cnPlainSliceUnit = 48;
inline constexpr std::size_t s_cnTextSliceUnit = 16;  // when decoding

/// One slice, and where its coded form goes.
struct tCipherSlice
{
    const std::uint32_t* m_pKey;  // prepared; ignored by a cipher that needs none
    unsigned char* m_pOut;        // does not overlap the input
    const unsigned char* m_pIn;
    std::size_t m_nLength;
    bool m_bFilledUp = false;  // encoding: a last block that is not full is filled up
};

struct tCipherRow
{
    const char* m_pName;  // in messages
    bool m_bKeyNeeded;
    std::size_t m_nShortest;  // a shorter message is filled up

    /// Makes a password a key. \return false when it is refused
    bool (*m_pPrepareKey)(std::uint32_t* key, const void* password, std::size_t length);
    /// Size of the text of a message of up to 2^62 bytes.
    std::uint64_t (*m_pTextSize)(std::uint64_t length, bool filledUp);
    /// How many bytes a text gives when nothing in it is wrong.
    std::size_t (*m_pPlainSize)(std::size_t textLength);

    /// Encodes a slice. \return the bytes written: `m_pTextSize` of its length
    std::size_t (*m_pEncodeSlice)(const tCipherSlice& slice);
    /// Decodes a slice. \return the bytes written; fewer than `m_pPlainSize` of its length when the message ends in it
    std::size_t (*m_pDecodeSlice)(const tCipherSlice& slice);
};

constexpr bool isValidCipher(unsigned int type)
{
    return type < s_cuiCipherCount;
}

/// The row of that number, or null when no cipher has it.
const tCipherRow* findCipher(unsigned int type);

/// The row of a cipher that there is.
inline const tCipherRow& cipherRow(E_CipherType type)
{
    return *findCipher(type);
}

/// The name used in messages, "VERNAM" or "SEED"; "" for a number that no cipher has.
const char* cipherName(unsigned int type);

}  // namespace murv::detail

// ber/layout.h - the bytes of a binary file, as writer and reader both know them.
//
// A file is a header, an optional password block, and a body of node records that is enciphered as one. Files are
// written little-endian on every host; big-endian ones are read too. The pages in docs/ describe the same rows in
// words.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "core/text/word_bytes.h"
#include "io/encoding_rule.h"
#include "murv/packet_expression.h"
#include "murv/types.h"

namespace murv::detail
{

// Header: magic, version (4 bytes), header size (2), flags, encryption type, length of the password block (1 each).

inline constexpr std::size_t s_cnVersionOffset = s_cuiMagicSize;
inline constexpr std::size_t s_cnHeaderSizeOffset = s_cnVersionOffset + 4;
inline constexpr std::size_t s_cnEncryptionOffset = s_cuiFlagsOffset + 1;
inline constexpr std::size_t s_cnPasswordSizeOffset = s_cnEncryptionOffset + 1;
inline constexpr std::size_t s_cnHeaderSize = s_cnPasswordSizeOffset + 1;
static_assert(s_cnHeaderSizeOffset + 2 == s_cuiFlagsOffset && s_cnHeaderSize == 13, "the header has no gaps");

inline constexpr std::uint32_t s_cuiFileVersion = 0x01050000;
inline constexpr unsigned char s_cucLittleEndian = 1;     // flag: numbers are little-endian
inline constexpr unsigned char s_cucBinaryRule = 2 << 1;  // the other bits of the flags: the encoding rule
inline constexpr unsigned char s_cucWrittenFlags = s_cucBinaryRule | s_cucLittleEndian;
static_assert(rule4Flags(s_cucWrittenFlags) == 2);

inline constexpr std::size_t s_cnPasswordBlockLimit = 255;
inline constexpr std::size_t s_cnShortestBody = 8;  // enciphered

// Records. A container: type, ID, member count, name, comments, then its members' records. A leaf: type, ID, packet
// expression, name, comments, value. A name has its length before it in one byte; comments and values in four.

inline constexpr std::size_t s_cnTypeSize = 1;
inline constexpr std::size_t s_cnIdSize = 4;
inline constexpr std::size_t s_cnCountSize = 4;
inline constexpr std::size_t s_cnExpressionSize = 10;
inline constexpr std::size_t s_cnNameLengthSize = 1;
inline constexpr std::size_t s_cnLengthSize = 4;
inline constexpr std::size_t s_cnCommentCount = 3;
inline constexpr std::size_t s_cnNumberSize = 8;       // a number's value as written
inline constexpr std::size_t s_cnShortNumberSize = 4;  // also understood: 32-bit integers, IEEE 754 singles

inline constexpr std::size_t s_cnNoComments = s_cnCommentCount * s_cnLengthSize;  // three lengths of 0
inline constexpr std::size_t s_cnHeadSize = s_cnTypeSize + s_cnIdSize;

/// Records without name, comments, members and value.
inline constexpr std::size_t s_cnEmptyContainer = s_cnHeadSize + s_cnCountSize + s_cnNameLengthSize + s_cnNoComments;
inline constexpr std::size_t s_cnEmptyLeaf =
    s_cnHeadSize + s_cnExpressionSize + s_cnNameLengthSize + s_cnNoComments + s_cnLengthSize;
static_assert(s_cnEmptyContainer == 22 && s_cnEmptyLeaf == 32);

/// What a record takes at least, a container's first member included where there must be one.
inline constexpr std::size_t s_cnShortestRecord = s_cnEmptyLeaf;

/// Upper bound of a record without comments, members and a string's bytes.
inline constexpr std::size_t s_cnLongestFixedPart = s_cnEmptyLeaf + 255 + s_cnNumberSize;

/// Whether `count` bytes, 8 to 16 of them, are all zero: they are where there is no ID, expression or comment.
inline bool isZero(const char* bytes, std::size_t count) noexcept
{
    return (loadWord(bytes) | loadWord(bytes + count - 8)) == 0;
}

/// A number of the file, of 2, 4 or 8 bytes.
template <typename tNumber>
inline tNumber readNumber(const char* from, bool littleEndian) noexcept
{
    tNumber number;
    std::memcpy(&number, from, sizeof number);
    if (littleEndian == (std::endian::native == std::endian::little)) [[likely]]
        return number;
    if constexpr (sizeof number == 2)
        return static_cast<tNumber>((number << 8) | (number >> 8));
    else if constexpr (sizeof number == 4)
        return static_cast<tNumber>(reverseBytes(number) >> 32);
    else
        return static_cast<tNumber>(reverseBytes(number));
}

/// Writes a number of 2, 4 or 8 bytes, little-endian. \return what comes after it
template <typename tNumber>
inline char* writeNumber(char* to, tNumber number) noexcept
{
    const tNumber stored = readNumber<tNumber>(reinterpret_cast<const char*>(&number), true);
    std::memcpy(to, &stored, sizeof stored);
    return to + sizeof stored;
}

// Bytes of a packet expression: the codes, prefix size, calibration, keyword kind and option, keyword index (2), length
// (4). Bits within a byte count from the lowest, whatever the compiler does with bit fields.

inline constexpr std::size_t s_cnIndexOffset = 4;
inline constexpr std::size_t s_cnExpressionLengthOffset = 6;

/// Compilers for little-endian hosts lay the bit fields out in this order; the tests make sure of it.
inline constexpr bool s_cbExpressionAsIs = std::endian::native == std::endian::little;
static_assert(sizeof(tPacketExpInfo) == s_cnExpressionSize);

/// Reads a packet expression; bits without meaning become 0.
inline tPacketExpInfo readExpression(const char* from, bool littleEndian) noexcept
{
    const unsigned int codes = static_cast<unsigned char>(from[0]);
    const unsigned int keyword = static_cast<unsigned char>(from[3]);
    tPacketExpInfo pei{};
    pei.m_ePacketExp = static_cast<E_PacketExpCode>(codes & 1U);
    pei.m_eRuntimeExp = static_cast<E_RuntimeExpCode>((codes >> 1) & 1U);
    pei.m_eLengthExp = static_cast<E_LengthExpCode>((codes >> 2) & 3U);
    pei.m_ucPrefixSize = static_cast<unsigned char>(from[1]);
    pei.m_cCalibration = static_cast<signed char>(from[2]);
    pei.m_ucSkKind = keyword & 15U;
    pei.m_ucSkOption = (keyword >> 4) & 15U;
    pei.m_usSkIndex = readNumber<std::uint16_t>(from + s_cnIndexOffset, littleEndian);
    pei.m_uiLength = readNumber<std::uint32_t>(from + s_cnExpressionLengthOffset, littleEndian);
    return pei;
}

/// Writes a packet expression. \return what comes after it
inline char* writeExpression(char* to, const tPacketExpInfo& pei) noexcept
{
    if constexpr (s_cbExpressionAsIs)
        std::memcpy(to, &pei, s_cnExpressionSize);
    else
    {
        const auto bits = [](unsigned int value, unsigned int place) { return value << place; };
        to[0] = static_cast<char>(bits(pei.m_ePacketExp, 0) | bits(pei.m_eRuntimeExp, 1) | bits(pei.m_eLengthExp, 2) |
                                  bits(pei.m_uiReserved, 4));
        to[1] = static_cast<char>(pei.m_ucPrefixSize);
        to[2] = static_cast<char>(pei.m_cCalibration);
        to[3] = static_cast<char>(bits(pei.m_ucSkKind, 0) | bits(pei.m_ucSkOption, 4));
        writeNumber<std::uint16_t>(to + s_cnIndexOffset, pei.m_usSkIndex);
        writeNumber<std::uint32_t>(to + s_cnExpressionLengthOffset, pei.m_uiLength);
    }
    return to + s_cnExpressionSize;
}

}  // namespace murv::detail

// core/heap_text.h - the blocks that hold names, comments and string values.
//
// Names and comments come from malloc and go with free, and so do owned string values but for those of a pool. An owned
// string value has its length before its bytes; a borrowed one is plain NUL-terminated text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "core/memory/block_pool.h"

namespace murv::detail
{

/// Copies `length` bytes (at most 2,147,483,646) and a NUL into a new block; throws CLogicError when memory runs out.
char* duplicateStream(const char* source, unsigned int length);

/// Makes a string value with length prefix and final NUL, its bytes not set; throws as duplicatePrefixedStream.
char* makePrefixed(unsigned int length);

/// The longest string value, in bytes: with prefix and NUL it has 2^31 - 1.
inline constexpr unsigned int s_cuiLongestCodes = 2147483642;
inline constexpr const char* s_cpTooLongCodes = "a_uiSrcLen too big for prefixing";

/// Copies a string value: length prefix, bytes, NUL. Throws CLogicError for a length above 2,147,483,642 or no memory.
char* duplicatePrefixedStream(const char* source, unsigned int length);

/// Resizes an owned string value; new bytes at the end are `fill`. Null stays null; without memory nothing changes.
char* resizePrefixed(char* block, unsigned int length, unsigned char fill);
/// The same for one that may come from a pool. \param isPooled  whether it does; set to false when it no longer does
char* resizePrefixed(char* block, unsigned int length, unsigned char fill, bool& isPooled);

inline constexpr unsigned int s_cuiPrefixWidth = 4;

/// Bytes of an owned string value.
inline std::string_view view4Prefixed(const char* block)
{
    std::uint32_t length = 0;
    std::memcpy(&length, block, sizeof length);
    return {block + s_cuiPrefixWidth, length};
}

// A string value from a pool looks the same; four bytes before it tell how far from the begin of its piece they are.

/// Bytes that a string value takes of a pool.
inline std::size_t pooledSize(std::size_t length)
{
    constexpr std::size_t extra = 2 * s_cuiPrefixWidth + 1 + CBlockPool::s_cnAlignment - 1;  // up to a multiple
    return (length + extra) / CBlockPool::s_cnAlignment * CBlockPool::s_cnAlignment;
}

/// As duplicatePrefixedStream, from a pool where it has room. Inline, as loading and copying do little else for a
/// string. \param isPooled  set: it goes with freePooled
inline char* duplicatePrefixedStream(CBlockPool& pool, const char* source, unsigned int length, bool& isPooled)
{
    char* const begin = length > CBlockPool::s_cnLongestBlock ? nullptr : pool.take(pooledSize(length));
    isPooled = begin != nullptr;
    if (!isPooled)
        return duplicatePrefixedStream(source, length);
    const std::uint32_t head[] = {static_cast<std::uint32_t>(pool.distance(begin)), length};
    std::memcpy(begin, head, sizeof head);
    if (length != 0)
        std::memcpy(begin + sizeof head, source, length);
    begin[sizeof head + length] = '\0';
    return begin + s_cuiPrefixWidth;
}

/// Frees a string value of a pool, together with others.
inline void freePooled(const char* block, CPoolReleaser& releaser) noexcept
{
    const char* const begin = block - s_cuiPrefixWidth;
    std::uint32_t distance = 0;
    std::memcpy(&distance, begin, sizeof distance);
    poison(begin, pooledSize(view4Prefixed(block).size()));
    releaser.release(reinterpret_cast<CBlockPool::tPiece*>(const_cast<char*>(begin) - distance));
}

/// Bytes of a string value of either kind; a view without data for null.
inline std::string_view view4Codes(bool owned, const char* data)
{
    if (data == nullptr)
        return {};
    return owned ? view4Prefixed(data) : std::string_view(data);
}

/// A comment text: a NUL-terminated heap block or nothing.
class CHeapString
{
public:
    CHeapString() = default;
    CHeapString(const CHeapString&) = delete;
    CHeapString& operator=(const CHeapString&) = delete;
    ~CHeapString();

    /// Replaces the text by a copy of `length` bytes. Throws, with the text gone, when `text` is null or its first byte
    /// is neither NUL nor "/"; a length of 0 stores an empty text without looking at it.
    void setComment(const char* text, unsigned int length);

    const char* get() const
    {
        return m_pText;
    }
    void swap(CHeapString& other) noexcept
    {
        char* const text = m_pText;
        m_pText = other.m_pText;
        other.m_pText = text;
    }

private:
    char* m_pText = nullptr;  // owned
};

}  // namespace murv::detail

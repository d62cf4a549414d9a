// core/heap_text.h - the heap blocks that hold names, comments and string values.
//
// All come from malloc and go with free, so that any owner may free or resize a block that another one made. An
// owned string value has its length before its bytes; a borrowed one is plain NUL-terminated text.
#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>

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

inline constexpr unsigned int s_cuiPrefixWidth = 4;

/// Bytes of an owned string value.
inline std::string_view view4Prefixed(const char* block)
{
    std::uint32_t length = 0;
    std::memcpy(&length, block, sizeof length);
    return {block + s_cuiPrefixWidth, length};
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

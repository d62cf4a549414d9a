// core/heap_text.cpp - heap blocks of names, comments and string values.
//
// The only place that allocates texts; it has the messages for when there is no memory.
#include "core/heap_text.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

#include "core/memory/heap_block.h"
#include "core/throw.h"

namespace murv::detail
{

namespace
{
constexpr unsigned int s_cuiTextLimit = 2147483646;
constexpr std::size_t s_cnPrefixedExtra = s_cuiPrefixWidth + 1;  // length prefix and final NUL

void finishPrefixed(char* block, unsigned int length)
{
    const std::uint32_t prefix = length;
    std::memcpy(block, &prefix, sizeof prefix);
    block[s_cuiPrefixWidth + length] = '\0';
}
}  // namespace

char* duplicateStream(const char* source, unsigned int length)
{
    length = std::min(length, s_cuiTextLimit);
    char* const block = static_cast<char*>(allocateBlock(std::size_t{length} + 1));
    if (block == nullptr)
        throwNoMemory("murv::duplicateStream");
    if (length != 0)
        std::memcpy(block, source, length);
    block[length] = '\0';
    return block;
}

char* makePrefixed(unsigned int length)
{
    if (length > s_cuiLongestCodes)
        throwAt("murv::duplicatePrefixedStream", s_cpTooLongCodes);
    char* const block = static_cast<char*>(allocateBlock(length + s_cnPrefixedExtra));
    if (block == nullptr)
        throwNoMemory("murv::duplicatePrefixedStream");
    finishPrefixed(block, length);
    return block;
}

char* duplicatePrefixedStream(const char* source, unsigned int length)
{
    char* const block = makePrefixed(length);
    if (length != 0)
        std::memcpy(block + s_cuiPrefixWidth, source, length);
    return block;
}

char* resizePrefixed(char* block, unsigned int length, unsigned char fill)
{
    bool isPooled = false;
    return resizePrefixed(block, length, fill, isPooled);
}

char* resizePrefixed(char* block, unsigned int length, unsigned char fill, bool& isPooled)
{
    if (block == nullptr)
        return nullptr;
    const auto before = static_cast<unsigned int>(view4Prefixed(block).size());
    if (before == length || length > s_cuiLongestCodes)
        return block;
    const std::size_t size = length + s_cnPrefixedExtra;
    char* const resized = static_cast<char*>(isPooled ? allocateBlock(size) : resizeBlock(block, size));
    if (resized == nullptr)
        return block;
    if (isPooled)
    {
        std::memcpy(resized + s_cuiPrefixWidth, block + s_cuiPrefixWidth, std::min(before, length));
        CPoolReleaser releaser;
        freePooled(block, releaser);
        isPooled = false;
    }
    if (length > before)
        std::memset(resized + s_cuiPrefixWidth + before, fill, length - before);
    finishPrefixed(resized, length);
    return resized;
}

CHeapString::~CHeapString()
{
    std::free(m_pText);
}

void CHeapString::setComment(const char* text, unsigned int length)
{
    // The old text goes last: the new one may lie in it.
    const std::unique_ptr<char, decltype(&std::free)> before(std::exchange(m_pText, nullptr), &std::free);
    if (text == nullptr)
        throwMismatch();
    if (length != 0 && *text != '\0' && *text != '/')
        throwAt("murv::CHeapString::setComment", "Comments must start with /");
    m_pText = duplicateStream(text, length);
}

}  // namespace murv::detail

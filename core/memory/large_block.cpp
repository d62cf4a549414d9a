// core/memory/large_block.cpp - blocks from the heap, or from pages when they are large.
#include "core/memory/large_block.h"

#include <cstdlib>

#include "core/memory/heap_block.h"
#include "core/memory/page_chunk.h"

namespace murv::detail
{

namespace
{

constexpr std::uint64_t s_cullChunksFrom = 256 * 1024;

bool takesPages(std::uint64_t size, std::uint64_t from)
{
    return s_cbLargePages && size >= from;
}

std::uint64_t wholePages(std::uint64_t size)
{
    return (size + s_cnLargePage - 1) / s_cnLargePage * s_cnLargePage;
}

}  // namespace

void* allocateLarge(std::uint64_t size) noexcept
{
    const auto bytes = static_cast<std::size_t>(size);
    if (!takesPages(size, s_cullChunksFrom))
        return allocateBlock(size);
    if (bytes != size)
        return nullptr;
    return bytes < s_cnLargePage ? takeChunks(bytes / s_cnChunk) : mapPages(bytes);
}

void freeLarge(void* block, std::uint64_t size) noexcept
{
    const auto bytes = static_cast<std::size_t>(size);
    if (block == nullptr || !takesPages(size, s_cullChunksFrom))
        std::free(block);
    else if (bytes < s_cnLargePage)
        giveChunks(block, bytes / s_cnChunk);
    else
        unmapPages(block, bytes);
}

void* allocateExact(std::uint64_t size) noexcept
{
    if (size > UINT64_MAX / 2)
        return nullptr;
    return takesPages(size, s_cullExactPagesFrom) ? allocateLarge(wholePages(size)) : allocateBlock(size);
}

void freeExact(void* block, std::uint64_t size) noexcept
{
    if (takesPages(size, s_cullExactPagesFrom))
        freeLarge(block, wholePages(size));
    else
        std::free(block);
}

}  // namespace murv::detail

// core/memory/large_block.cpp - blocks from the heap, or from pages when they are large.
#include "core/memory/large_block.h"

#include <cstdlib>

#include "core/memory/heap_block.h"
#include "core/memory/page_chunk.h"

namespace murv::detail
{

namespace
{

bool takesPages(std::uint64_t size, std::uint64_t from = s_cnLargePage)
{
    return s_cbLargePages && size >= from;
}

/// Smaller blocks are of the heap; so are those of 1 MB, as only one fits a page.
bool takesChunks(std::uint64_t size)
{
    return s_cbLargePages && (size == 256 * 1024 || size == 512 * 1024);
}

std::uint64_t wholePages(std::uint64_t size)
{
    return (size + s_cnLargePage - 1) / s_cnLargePage * s_cnLargePage;
}

}  // namespace

void* allocateLarge(std::uint64_t size) noexcept
{
    const auto bytes = static_cast<std::size_t>(size);
    if (takesChunks(size))
        return takeChunks(bytes / s_cnChunk);
    if (!takesPages(size))
        return allocateBlock(size);
    return bytes == size ? mapPages(bytes) : nullptr;
}

void freeLarge(void* block, std::uint64_t size) noexcept
{
    const auto bytes = static_cast<std::size_t>(size);
    if (block == nullptr)
        return;
    if (takesChunks(size))
        giveChunks(block, bytes / s_cnChunk);
    else if (takesPages(size))
        unmapPages(block, bytes);
    else
        std::free(block);
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

// core/memory/heap_block.h - malloc and realloc that leave the caller's errno alone.
//
// The library reports missing memory by exceptions and results; errno belongs to the application.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace murv::detail
{

/// Null when there is no memory; sizes are counted in 64 bits, so that none becomes a small one on 32-bit machines.
inline void* allocateBlock(std::uint64_t size) noexcept
{
    const auto bytes = static_cast<std::size_t>(size);
    if (bytes != size)
        return nullptr;
    const int before = errno;
    void* const block = std::malloc(bytes);
    if (block == nullptr)
        errno = before;
    return block;
}

/// Null, with the old block as it was, when there is no memory.
inline void* resizeBlock(void* block, std::size_t size) noexcept
{
    const int before = errno;
    void* const resized = std::realloc(block, size);
    if (resized == nullptr)
        errno = before;
    return resized;
}

}  // namespace murv::detail

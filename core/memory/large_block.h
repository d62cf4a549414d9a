// core/memory/large_block.h - blocks from the heap, or from pages when they are large.
//
// All functions leave errno alone, and return null without memory.
#pragma once

#include <cstdint>

namespace murv::detail
{

/// A block of the heap, of chunks or of pages. \param size  a power of two, or a multiple of s_cnLargePage
void* allocateLarge(std::uint64_t size) noexcept;
/// Frees a block of allocateLarge, or null. \param size  as it was given there
void freeLarge(void* block, std::uint64_t size) noexcept;

/// From this size on, allocateExact takes pages. Heaps keep smaller blocks for the next tree, and give larger ones back
/// at once: with pages, a copy of 600,000 or more plain members takes a fifth of the time, those of 33,000 to 300,000
/// on a warm heap would take 1.6 times as long.
inline constexpr std::uint64_t s_cullExactPagesFrom = std::uint64_t{32} << 20;

/// A block of any size, of the heap or of pages: the last page may be used in part.
void* allocateExact(std::uint64_t size) noexcept;
/// Frees a block of allocateExact, or null. \param size  as it was given there
void freeExact(void* block, std::uint64_t size) noexcept;

}  // namespace murv::detail

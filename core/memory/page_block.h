// core/memory/page_block.h - large blocks straight from the system, in pages of 2 MB where it has them.
//
// The first touch of a page is what large trees mostly cost: the system clears a page of 2 MB in an eighth of the time
// that small ones take. With them, documents of 2 MB load in two thirds of the time on a cold heap, and one of 100 MB
// in 0.4 of it. Blocks of the heap begin anywhere, and their neighbours touch their pages, so they hardly ever get
// large ones. A virtual machine that is given its memory only when it touches it pays for that here, once.
#pragma once

#include <cstddef>
#include <cstdint>

namespace murv::detail
{

/// Size and alignment of the pages that are asked for.
inline constexpr std::size_t s_cnLargePage = std::size_t{2} << 20;

/// A block that begins at a large page, with any bytes. Null when there is no memory, on systems without such pages,
/// and under AddressSanitizer, which sees blocks of the heap only. Leaves errno alone.
/// \param size  a multiple of s_cnLargePage
void* mapPages(std::size_t size) noexcept;
/// Gives back a block of mapPages. Eight blocks of one page are kept for the next trees of any thread: loading a
/// document of some MB after others takes 4 to 10 percent less time than without.
void unmapPages(void* block, std::size_t size) noexcept;
/// Bytes of all blocks that are in use.
std::size_t mappedBytes() noexcept;

/// A block of pages when the size fills large ones, else of the heap; null without memory. Leaves errno alone.
/// \param size  a power of two
void* allocateLarge(std::uint64_t size) noexcept;
/// Frees a block of allocateLarge, or null. \param size  as it was given there
void freeLarge(void* block, std::uint64_t size) noexcept;

/// From this size on, allocateExact takes pages. Heaps keep smaller blocks for the next tree, and give larger ones back
/// at once: with pages, a copy of 600,000 or more plain members takes a fifth of the time, those of 33,000 to 300,000
/// on a warm heap would take 1.6 times as long.
inline constexpr std::uint64_t s_cullExactPagesFrom = std::uint64_t{32} << 20;

/// As allocateLarge, for a block of any size: the last page may be used in part.
void* allocateExact(std::uint64_t size) noexcept;
/// Frees a block of allocateExact, or null. \param size  as it was given there
void freeExact(void* block, std::uint64_t size) noexcept;

}  // namespace murv::detail

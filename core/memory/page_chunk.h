// core/memory/page_chunk.h - parts of large pages, for what is smaller than such a page.
//
// One large page serves many trees, of any thread. So trees of some hundred KB gain from large pages, too: on a cold
// heap they load in 0.5 to 0.75 of the time.
#pragma once

#include <cstddef>

#include "core/memory/page_block.h"

namespace murv::detail
{

inline constexpr std::size_t s_cnChunk = std::size_t{64} << 10;
inline constexpr std::size_t s_cnMostChunks = s_cnLargePage / s_cnChunk - 1;  // the first is the page's own

/// A block of that many chunks (1 to s_cnMostChunks), with any bytes, at an address that is a multiple of s_cnChunk.
/// Null where mapPages gives null. Leaves errno alone. Takes no locks, and time that does not depend on what is in use.
///
/// Where blocks of different sizes come and go, pages hold one and a half times to twice what is in use.
void* takeChunks(std::size_t count) noexcept;
/// Gives back a block of takeChunks, in any thread. \param count  as it was given there
void giveChunks(void* block, std::size_t count) noexcept;

}  // namespace murv::detail

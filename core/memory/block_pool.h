// core/memory/block_pool.h - small blocks out of larger pieces, for trees that are made at one go.
//
// Loading or copying a tree makes many containers; asking the heap for each takes a good part of the time. They are cut
// from pieces of a few kilobytes instead. A piece is freed with the last of its blocks, whoever frees that, in whatever
// thread. Pieces are small, and smaller still at first: a member that outlives its tree keeps little else alive.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "core/memory/heap_block.h"
#include "core/memory/poison.h"

namespace murv::detail
{

class CBlockPool
{
public:
    static constexpr std::size_t s_cnLongestBlock = 1024;  // of longer ones none is taken here
    static constexpr std::size_t s_cnAlignment = 8;

    /// A piece begins with the number of its blocks; they follow.
    struct tPiece
    {
        std::atomic<std::uint32_t> m_uiLive;
    };

    CBlockPool() = default;
    CBlockPool(const CBlockPool&) = delete;
    CBlockPool& operator=(const CBlockPool&) = delete;
    ~CBlockPool()
    {
        close();
    }

    /// A block of that size, a multiple of the alignment and at most s_cnLongestBlock. Null when the heap is to be
    /// asked for one instead: at first, and when there is no memory for a piece.
    char* take(std::size_t size) noexcept
    {
        const std::size_t wanted = size + s_cnRedZone;
        if (wanted > m_nLeft && !open(wanted))
            return nullptr;
        char* const block = m_pNext;
        m_pNext += wanted;
        m_nLeft -= wanted;
        ++m_uiTaken;
        unpoison(block, size);
        return block;
    }
    /// How far the block that was taken last lies behind the begin of its piece.
    std::size_t distance(const char* block) const noexcept
    {
        return static_cast<std::size_t>(block - reinterpret_cast<const char*>(m_pPiece));
    }
    /// To be called when no more blocks will be taken for a while.
    void close() noexcept
    {
        if (m_pPiece != nullptr)
            release(m_pPiece, s_cuiOpen - m_uiTaken);
        m_pPiece = nullptr;
        m_nLeft = m_nTotal = 0;
    }
    /// Gives back that many blocks of the piece; whoever still has others may be in another thread.
    static void release(tPiece* piece, std::uint32_t count) noexcept
    {
        if (piece->m_uiLive.fetch_sub(count, std::memory_order_acq_rel) == count)
            std::free(piece);
    }

private:
    static constexpr std::size_t s_cnHead = 8;
    static constexpr std::size_t s_cnFirstPiece = 256;      // before so much was asked for, the heap is asked
    static constexpr std::size_t s_cnLongestPiece = 4080;   // with what malloc needs for itself: one page
    static constexpr std::uint32_t s_cuiOpen = 0x40000000;  // counted as blocks while a piece is cut

    bool open(std::size_t size) noexcept;

    tPiece* m_pPiece = nullptr;
    char* m_pNext = nullptr;
    std::size_t m_nLeft = 0;
    std::uint32_t m_uiTaken = 0;
    std::size_t m_nTotal = 0;  // asked for since it was closed
};

}  // namespace murv::detail

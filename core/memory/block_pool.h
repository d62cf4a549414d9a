// core/memory/block_pool.h - small blocks cut from larger pieces, for trees that are made in one go.
//
// Loading or copying a tree makes many containers and strings. Their blocks are cut from pieces, and each piece is
// freed with the last of its blocks, in whatever thread that is. With blocks of the heap instead, three real documents
// of 14,000 to 167,000 nodes take 1.4, 1.4 and 1.15 times as long to load on a warm heap, 1.5 to 3 times to copy, and
// 1.2 to 1.9 times to destroy; one of 100 MB eight times to destroy. The price: a member that outlives its tree keeps
// its whole piece alive. Therefore a piece is small beside what was taken before it, or what is still to come; and
// small trees have none: they use the heap directly.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "core/memory/page_chunk.h"
#include "core/memory/poison.h"

namespace murv::detail
{

/// Tells a pool how far the tree is that is made with it.
class IPoolForecast
{
public:
    /// \return an estimate of 0 to 1; 0 when nothing is known
    virtual double partDone() const noexcept = 0;

protected:
    ~IPoolForecast() = default;
};

class CBlockPool
{
public:
    static constexpr std::size_t s_cnAlignment = 8;
    static constexpr std::size_t s_cnLongestBlock = 1024;  // longer ones only from chunks, or where there is room
    static constexpr std::size_t s_cnLongestPiece = s_cnLargePage;

    /// The head of a piece; its blocks follow.
    struct tPiece
    {
        std::atomic<std::uint32_t> m_uiLive;  // blocks that are not given back yet
        std::uint32_t m_uiChunks;             // of a large page; 0 for a block of the heap
    };

    CBlockPool() = default;
    CBlockPool(const CBlockPool&) = delete;
    CBlockPool& operator=(const CBlockPool&) = delete;
    ~CBlockPool()
    {
        close();
    }

    /// Begins a tree. \param forecast  may be null; lives until close()
    void begin(const IPoolForecast* forecast) noexcept
    {
        m_pForecast = forecast;
    }
    /// A block of that size, a multiple of the alignment. Null when the caller is to take a block of the heap instead:
    /// while the tree is small, when the block is long and the tree gets no chunks, and without memory for a piece.
    char* take(std::size_t size) noexcept
    {
        const std::size_t wanted = size + s_cnRedZone;
        if (wanted > m_tNow.m_nLeft && !open(wanted))
            return nullptr;
        char* const block = m_tNow.m_pNext;
        m_tNow.m_pNext += wanted;
        m_tNow.m_nLeft -= wanted;
        ++m_tNow.m_uiTaken;
        unpoison(block, size);
        return block;
    }
    /// Bytes from the start of the piece to the block that was taken last.
    std::size_t distance(const char* block) const noexcept
    {
        return static_cast<std::size_t>(block - reinterpret_cast<const char*>(m_tNow.m_pPiece));
    }
    /// Lets go of the current pieces; call it when no more blocks will be taken for a while.
    void close() noexcept
    {
        leave(m_tNow);
        leave(m_tSpare);
        m_pForecast = nullptr;
        m_nTotal = 0;
    }
    /// Gives back that many blocks of the piece. Others of its blocks may be in use in other threads.
    static void release(tPiece* piece, std::uint32_t count) noexcept
    {
        if (piece->m_uiLive.fetch_sub(count, std::memory_order_acq_rel) == count)
            free(piece);
    }

private:
    static constexpr std::size_t s_cnHead = 8;
    static constexpr std::uint32_t s_cuiOpen =
        0x40000000;  // bias that keeps the current piece alive; taken off when it is left

    /// A piece that blocks are cut from.
    struct tCursor
    {
        tPiece* m_pPiece = nullptr;
        char* m_pNext = nullptr;
        std::size_t m_nLeft = 0;
        std::uint32_t m_uiTaken = 0;
    };

    static void leave(tCursor& piece) noexcept
    {
        if (piece.m_pPiece != nullptr)
            release(piece.m_pPiece, s_cuiOpen - piece.m_uiTaken);
        piece = {};
    }
    /// Goes on in the spare piece or a new one. \return false where take() has no block.
    bool open(std::size_t size) noexcept;
    bool makePiece(std::size_t size, tCursor& piece) const noexcept;
    std::size_t chunks4Piece(std::size_t least) const noexcept;
    static void free(tPiece* piece) noexcept;

    tCursor m_tNow;
    tCursor m_tSpare;          // goes on when it has room where the current piece has none
    std::size_t m_nTotal = 0;  // bytes that the tree has taken so far
    const IPoolForecast* m_pForecast = nullptr;
};

/// Gives back blocks of pools, those of one piece together: one by one, destroying takes 1.25 to 1.4 times as long.
class CPoolReleaser
{
public:
    CPoolReleaser() = default;
    CPoolReleaser(const CPoolReleaser&) = delete;
    CPoolReleaser& operator=(const CPoolReleaser&) = delete;
    ~CPoolReleaser()
    {
        flush();
    }
    void release(CBlockPool::tPiece* piece) noexcept
    {
        if (piece != m_pPiece)
        {
            flush();
            m_pPiece = piece;
        }
        ++m_uiCount;
    }

private:
    void flush() noexcept
    {
        if (m_pPiece != nullptr)
            CBlockPool::release(m_pPiece, m_uiCount);
        m_uiCount = 0;
    }

    CBlockPool::tPiece* m_pPiece = nullptr;
    std::uint32_t m_uiCount = 0;
};

}  // namespace murv::detail

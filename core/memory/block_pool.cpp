// core/memory/block_pool.cpp - the pieces that small blocks are cut from.
//
// The first pieces are as large as all blocks before them, up to a page; later ones an eighth of these, so little of
// the memory is unused. A tree that is known to fill more gets chunks of large pages.
#include "core/memory/block_pool.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

#include "core/memory/heap_block.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnFirstPiece = 256;               // smaller trees use the heap directly
constexpr std::size_t s_cnPage = 4080;                    // with what malloc adds
constexpr std::size_t s_cnLongestHeapPiece = 65536 - 16;  // heaps take larger blocks from the system each time
constexpr std::size_t s_cnForecastFrom = 64 * 1024;       // estimates from less say little

std::size_t pieceSize(std::size_t total)
{
    return std::clamp(total / 8, std::min(total, s_cnPage), s_cnLongestHeapPiece);
}

}  // namespace

bool CBlockPool::open(std::size_t size) noexcept
{
    if (size <= m_tSpare.m_nLeft)
    {
        std::swap(m_tNow, m_tSpare);
        return true;
    }
    m_nTotal += size;
    if (m_nTotal < s_cnFirstPiece)
        return false;
    tCursor fresh;
    if (!makePiece(size, fresh))
        return false;
    // The piece with the shorter rest is left.
    if (m_tNow.m_nLeft > m_tSpare.m_nLeft)
        std::swap(m_tNow, m_tSpare);
    leave(m_tNow);
    m_tNow = fresh;
    m_nTotal += m_tNow.m_nLeft - size;
    poison(m_tNow.m_pNext, m_tNow.m_nLeft);
    return true;
}

/// \return false for a block that is too long for a piece, or without memory
bool CBlockPool::makePiece(std::size_t size, tCursor& piece) const noexcept
{
    const std::size_t least = size + s_cnHead;
    std::size_t chunks = chunks4Piece(least);
    std::size_t room = chunks * s_cnChunk;
    void* memory = chunks == 0 ? nullptr : takeChunks(chunks);
    if (memory == nullptr)
    {
        if (size > s_cnLongestBlock + s_cnRedZone)
            return false;
        chunks = 0;
        room = std::max(pieceSize(m_nTotal), least) / s_cnAlignment * s_cnAlignment;
        memory = allocateBlock(room);
        if (memory == nullptr)
            return false;
    }
    piece.m_pPiece = new (memory) tPiece{{s_cuiOpen}, static_cast<std::uint32_t>(chunks)};
    piece.m_pNext = static_cast<char*>(memory) + s_cnHead;
    piece.m_nLeft = room - s_cnHead;
    piece.m_uiTaken = 0;
    return true;
}

/// How many chunks of large pages the next piece is to have; 0 for none, as for a tree that is not likely to fill one.
std::size_t CBlockPool::chunks4Piece(std::size_t least) const noexcept
{
    if (m_pForecast == nullptr || m_nTotal < s_cnForecastFrom || least > s_cnMostChunks * s_cnChunk)
        return 0;
    const double done = m_pForecast->partDone();
    const double left = done > 0 ? static_cast<double>(m_nTotal) * (1 - done) / done : 0;
    if (left < s_cnChunk)
        return 0;
    const std::size_t eighth = m_nTotal / 8;
    const std::size_t wanted = left < static_cast<double>(eighth) ? static_cast<std::size_t>(left) : eighth;
    std::size_t chunks = std::min(wanted / s_cnChunk, s_cnMostChunks);
    if (chunks > s_cnMostChunks / 2 && chunks != s_cnMostChunks)
        chunks = s_cnMostChunks / 2;  // two of them in a page instead of one
    return std::max((least + s_cnChunk - 1) / s_cnChunk, chunks);
}

void CBlockPool::free(tPiece* piece) noexcept
{
    if (piece->m_uiChunks != 0)
        giveChunks(piece, piece->m_uiChunks);
    else
        std::free(piece);
}

}  // namespace murv::detail

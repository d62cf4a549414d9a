// core/memory/block_pool.cpp - the pieces that small blocks are cut from.
//
// The first pieces are as large as all blocks before them, up to a page; later ones an eighth of these, so little of
// the memory is unused. Once a tree is known to fill large pages, it gets them.
#include "core/memory/block_pool.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "core/memory/heap_block.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnFirstPiece = 256;               // smaller trees use the heap directly
constexpr std::size_t s_cnPage = 4080;                    // with what malloc adds
constexpr std::size_t s_cnLongestHeapPiece = 65536 - 16;  // heaps take larger blocks from the system each time
constexpr std::size_t s_cnHalfOfLongest = CBlockPool::s_cnLongestPiece / 2;
constexpr std::size_t s_cnForecastFrom = 64 * 1024;  // estimates from less say little

std::size_t pieceSize(std::size_t total)
{
    return std::clamp(total / 8, std::min(total, s_cnPage), s_cnLongestHeapPiece);
}

}  // namespace

bool CBlockPool::open(std::size_t size) noexcept
{
    if (size > s_cnLongestBlock + s_cnRedZone)
        return false;
    m_nTotal += size;
    if (m_nTotal < s_cnFirstPiece)
        return false;
    std::size_t room = 0;
    tPiece* const piece = makePiece(size, room);
    if (piece == nullptr)
        return false;
    if (m_pPiece != nullptr)
        release(m_pPiece, s_cuiOpen - m_uiTaken);
    m_pPiece = piece;
    m_pNext = reinterpret_cast<char*>(piece) + s_cnHead;
    m_nLeft = room - s_cnHead;
    m_nTotal += m_nLeft - size;
    m_uiTaken = 0;
    poison(m_pNext, m_nLeft);
    return true;
}

CBlockPool::tPiece* CBlockPool::makePiece(std::size_t size, std::size_t& room) const noexcept
{
    if (fillsPages())
    {
        room = s_cnLongestPiece;
        if (void* const pages = mapPages(room))
            return new (pages) tPiece{{s_cuiOpen}, true};
    }
    room = std::max(pieceSize(m_nTotal), size + s_cnHead) / s_cnAlignment * s_cnAlignment;
    void* const memory = allocateBlock(room);
    return memory == nullptr ? nullptr : new (memory) tPiece{{s_cuiOpen}, false};
}

/// Whether the tree is likely to take half of a large page or more.
bool CBlockPool::fillsPages() const noexcept
{
    if (m_pForecast == nullptr || m_nTotal < s_cnForecastFrom)
        return false;
    const double done = m_pForecast->partDone();
    return done > 0 && static_cast<double>(m_nTotal) * (1 - done) / done >= s_cnHalfOfLongest;
}

void CBlockPool::free(tPiece* piece) noexcept
{
    if (piece->m_bPages)
        unmapPages(piece, s_cnLongestPiece);
    else
        std::free(piece);
}

}  // namespace murv::detail

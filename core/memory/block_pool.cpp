// core/memory/block_pool.cpp - the pieces that small blocks are cut from.
//
// Each piece is about as large as all blocks before it, up to a limit, so at most about half of the memory is unused.
#include "core/memory/block_pool.h"

#include <algorithm>

namespace murv::detail
{

bool CBlockPool::open(std::size_t size) noexcept
{
    m_nTotal += size;
    if (m_nTotal < s_cnFirstPiece)
        return false;
    const std::size_t room = std::clamp(m_nTotal, size + s_cnHead, s_cnLongestPiece);
    void* const memory = allocateBlock(room);
    if (memory == nullptr)
        return false;
    if (m_pPiece != nullptr)
        release(m_pPiece, s_cuiOpen - m_uiTaken);
    m_pPiece = new (memory) tPiece{{s_cuiOpen}};
    m_pNext = static_cast<char*>(memory) + s_cnHead;
    m_nLeft = room - s_cnHead;
    m_nTotal += m_nLeft - size;
    m_uiTaken = 0;
    poison(m_pNext, m_nLeft);
    return true;
}

}  // namespace murv::detail

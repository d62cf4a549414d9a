// io/node_stack.h - where a loader keeps members of containers whose end it has not seen yet.
//
// Members of the innermost open container lie on top, side by side, so that a container that ends gets one block of
// exactly its size. Nodes on the stack never move: what does not fit is built in blocks of the container's own. The
// memory is kept between loads. Without the stack, documents take 1.2 to 1.3 times as long to load.
#pragma once

#include <cstddef>
#include <memory>

#include "core/memory/block_pool.h"
#include "murv/fields.h"

namespace murv::detail
{

class CNodeStack
{
public:
    /// Makes room for about as many nodes as a document of that size can have open at once, up to a limit. Without
    /// memory the stack stays as it is, and containers are built in blocks of their own.
    void prepare(std::size_t documentSize) noexcept;

    char* top() const noexcept
    {
        return m_pMemory.get() + m_nUsed;
    }
    bool take(std::size_t size) noexcept
    {
        if (m_nRoom - m_nUsed < size)
            return false;
        m_nUsed += size;
        return true;
    }
    /// Gives back all from `begin` on, a former top.
    void cutTo(const char* begin) noexcept
    {
        m_nUsed = static_cast<std::size_t>(begin - m_pMemory.get());
    }

    /// What containers that have ended get their blocks from.
    CBlockPool& pool() noexcept
    {
        return m_tPool;
    }

private:
    CBlockPool m_tPool;
    std::unique_ptr<char[]> m_pMemory;
    std::size_t m_nRoom = 0;
    std::size_t m_nUsed = 0;
};

}  // namespace murv::detail

// io/node_stack.cpp - memory for members of containers whose end was not seen yet.
#include "io/node_stack.h"

#include <new>

namespace murv::detail
{

void CNodeStack::prepare(std::size_t documentSize) noexcept
{
    constexpr std::size_t most = std::size_t{32} * 1024;
    constexpr std::size_t bytes4Node = 4;  // shorter members are rare enough
    const std::size_t nodes = documentSize / bytes4Node + 8;
    const std::size_t room = (nodes < most ? nodes : most) * sizeof(CFields);
    m_nUsed = 0;
    if (room <= m_nRoom)
        return;
    m_pMemory.reset(new (std::nothrow) char[room]);
    m_nRoom = m_pMemory == nullptr ? 0 : room;
}

}  // namespace murv::detail

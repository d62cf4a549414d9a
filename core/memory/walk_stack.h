// core/memory/walk_stack.h - the stack of a walk over a tree.
//
// Walks do not recurse, since trees may nest deeper than the machine's stack allows. The first levels are stored in the
// object itself, so that ordinary trees are walked without taking memory.
#pragma once

#include <cstddef>
#include <vector>

namespace murv::detail
{

/// T is a small record that is copied freely.
template <typename T, std::size_t s_cnNear = 24>
class CWalkStack
{
public:
    bool empty() const
    {
        return m_nSize == 0;
    }
    std::size_t size() const
    {
        return m_nSize;
    }
    T& top()
    {
        return m_nSize <= s_cnNear ? m_tNear[m_nSize - 1] : m_vFar.back();
    }
    void push(const T& frame)
    {
        if (m_nSize < s_cnNear)
            m_tNear[m_nSize] = frame;
        else
            m_vFar.push_back(frame);
        ++m_nSize;
    }
    void pop()
    {
        if (m_nSize-- > s_cnNear)
            m_vFar.pop_back();
    }

private:
    std::size_t m_nSize = 0;
    T m_tNear[s_cnNear];
    std::vector<T> m_vFar;
};

}  // namespace murv::detail

// core/memory/walk_stack.h - the stack of a walk over a tree.
//
// Walks do not recurse, since trees may nest deeper than the machine's stack allows. The first levels are stored in the
// object itself, so that ordinary trees are walked without taking memory: with one level there, documents take up to
// 1.1 times as long to copy and to save indented.
#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <vector>

namespace murv::detail
{

/// T is a small record that is copied freely.
template <typename T, std::size_t s_cnNear = 24>
class CWalkStack
{
    static_assert(std::is_trivially_copyable_v<T>);

public:
    // NOLINTNEXTLINE(modernize-use-equals-default): the union has no constructor that would be right
    CWalkStack()
    {
    }
    CWalkStack(const CWalkStack&) = delete;
    CWalkStack& operator=(const CWalkStack&) = delete;

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
    /// One of the first records, those below `nearSize()`.
    const T& atNear(std::size_t index) const
    {
        return m_tNear[index];
    }
    std::size_t nearSize() const
    {
        return m_nSize < s_cnNear ? m_nSize : s_cnNear;
    }
    void push(const T& frame)
    {
        // The record's address is not handed to a function: a walk's own record could not stay in registers then.
        T* const place = m_nSize < s_cnNear ? &m_tNear[m_nSize] : farPlace();
        new (place) T(frame);
        ++m_nSize;
    }
    void pop()
    {
        if (m_nSize-- > s_cnNear)
            m_vFar.pop_back();
    }

private:
    /// Not inlined, so that walks are small enough to be: else copying takes 1.05 to 1.08 times as long.
    [[gnu::noinline]] T* farPlace()
    {
        return &m_vFar.emplace_back();
    }

    std::size_t m_nSize = 0;
    union
    {
        T m_tNear[s_cnNear];  // only what was pushed is initialised
    };
    std::vector<T> m_vFar;
};

}  // namespace murv::detail

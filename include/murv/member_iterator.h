// murv/member_iterator.h - iterators over the members of a node.
//
// Members lie side by side in runs, so most steps are one addition; only at the end of a run the next one is looked up.
#ifndef MURV_MEMBER_ITERATOR_H
#define MURV_MEMBER_ITERATOR_H

#include <cstddef>
#include <iterator>
#include <type_traits>

namespace murv
{

class CFields;

/// Walks the direct members of a node in order; made by CFields::begin and end.
///
/// Stays valid while members are appended, unless it stands at the end; ends with the removal of members or of the
/// parent's value.
template <typename T>
class CMemberIterator
{
public:
    using iterator_category = std::random_access_iterator_tag;
    using value_type = std::remove_const_t<T>;
    using difference_type = std::ptrdiff_t;
    using pointer = T*;
    using reference = T&;

    CMemberIterator() = default;
    /// An iterator that may change members serves where one may not.
    template <typename U, std::enable_if_t<std::is_same_v<T, const U>, int> = 0>
    CMemberIterator(const CMemberIterator<U>& other)
        : m_pParent(other.m_pParent), m_pCurrent(other.m_pCurrent), m_pRunEnd(other.m_pRunEnd), m_iIndex(other.m_iIndex)
    {
    }
    CMemberIterator(const CFields& parent, difference_type index);

    reference operator*() const
    {
        return *m_pCurrent;
    }
    pointer operator->() const
    {
        return m_pCurrent;
    }
    reference operator[](difference_type distance) const
    {
        return *(*this + distance);
    }
    CMemberIterator& operator++()
    {
        ++m_iIndex;
        if (++m_pCurrent == m_pRunEnd)
            seek();
        return *this;
    }
    CMemberIterator operator++(int)
    {
        CMemberIterator before = *this;
        ++*this;
        return before;
    }
    CMemberIterator& operator--()
    {
        return *this += -1;
    }
    CMemberIterator operator--(int)
    {
        CMemberIterator before = *this;
        --*this;
        return before;
    }
    CMemberIterator& operator+=(difference_type distance)
    {
        m_iIndex += distance;
        seek();
        return *this;
    }
    CMemberIterator& operator-=(difference_type distance)
    {
        return *this += -distance;
    }
    friend CMemberIterator operator+(CMemberIterator at, difference_type distance)
    {
        return at += distance;
    }
    friend CMemberIterator operator+(difference_type distance, CMemberIterator at)
    {
        return at += distance;
    }
    friend CMemberIterator operator-(CMemberIterator at, difference_type distance)
    {
        return at -= distance;
    }
    friend difference_type operator-(const CMemberIterator& a, const CMemberIterator& b)
    {
        return a.m_iIndex - b.m_iIndex;
    }
    friend bool operator==(const CMemberIterator& a, const CMemberIterator& b)
    {
        return a.m_iIndex == b.m_iIndex;
    }
    friend bool operator!=(const CMemberIterator& a, const CMemberIterator& b)
    {
        return a.m_iIndex != b.m_iIndex;
    }
    friend bool operator<(const CMemberIterator& a, const CMemberIterator& b)
    {
        return a.m_iIndex < b.m_iIndex;
    }
    friend bool operator>(const CMemberIterator& a, const CMemberIterator& b)
    {
        return b < a;
    }
    friend bool operator<=(const CMemberIterator& a, const CMemberIterator& b)
    {
        return !(b < a);
    }
    friend bool operator>=(const CMemberIterator& a, const CMemberIterator& b)
    {
        return !(a < b);
    }

private:
    template <typename>
    friend class CMemberIterator;

    void seek();

    const CFields* m_pParent = nullptr;  // not owned; its vector may be replaced by a larger one
    T* m_pCurrent = nullptr;
    T* m_pRunEnd = nullptr;  // end of the run of members that lie side by side
    difference_type m_iIndex = 0;
};

}  // namespace murv

#endif

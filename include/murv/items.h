// murv/items.h - loops over members with their names, or with their indexes.
//
//     for (auto [name, value] : items(tree))
//     for (auto [index, value] : enumerate(tree))
#ifndef MURV_ITEMS_H
#define MURV_ITEMS_H

#include <cstddef>
#include <iterator>
#include <string_view>

#include "murv/fields.h"
#include "murv/member_iterator.h"

namespace murv
{

/// A member with its name, as loops over `items` see it. T is CFields or const CFields.
template <typename T>
struct tItem
{
    std::string_view name;  ///< empty when there is none, as in arrays; valid as CFields::getName
    T& value;               ///< the member itself
};

/// A member with its index, as loops over `enumerate` see it.
template <typename T>
struct tIndexed
{
    std::size_t index;
    T& value;
};

namespace detail
{
template <typename T>
tItem<T> makeItem(T& member, std::size_t, const tItem<T>*)
{
    return {std::string_view(member.getName(), member.getNameLen()), member};
}

template <typename T>
tIndexed<T> makeItem(T& member, std::size_t index, const tIndexed<T>*)
{
    return {index, member};
}
}  // namespace detail

/// The members of a node with something about each; made by `items` and `enumerate`. Holds a reference to the node.
template <typename T, template <typename> class tRow>
class CItems
{
public:
    /// Valid as CMemberIterator is; what it gives is a small value, made at each step.
    class CIterator
    {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = tRow<T>;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = tRow<T>;

        explicit CIterator(CMemberIterator<T> member, std::size_t index) : m_tMember(member), m_nIndex(index)
        {
        }
        reference operator*() const
        {
            return detail::makeItem(*m_tMember, m_nIndex, static_cast<const tRow<T>*>(nullptr));
        }
        CIterator& operator++()
        {
            ++m_tMember;
            ++m_nIndex;
            return *this;
        }
        CIterator operator++(int)
        {
            CIterator before = *this;
            ++*this;
            return before;
        }
        friend bool operator==(const CIterator& a, const CIterator& b)
        {
            return a.m_nIndex == b.m_nIndex;
        }
        friend bool operator!=(const CIterator& a, const CIterator& b)
        {
            return !(a == b);
        }

    private:
        CMemberIterator<T> m_tMember;
        std::size_t m_nIndex;
    };

    explicit CItems(T& node) : m_pNode(&node)
    {
    }
    CIterator begin() const
    {
        return CIterator(m_pNode->begin(), 0);
    }
    CIterator end() const
    {
        return CIterator(m_pNode->end(), size());
    }
    std::size_t size() const
    {
        return m_pNode->getChildCount();
    }
    bool empty() const
    {
        return size() == 0;
    }

private:
    T* m_pNode;  // not owned
};

/// The members of a field set or an array with their names, in order; none for scalars.
///
/// The node must outlive the loop. In it, values may change, but members may not be added or removed. O(1) a step.
inline CItems<const CFields, tItem> items(const CFields& node)
{
    return CItems<const CFields, tItem>(node);
}
inline CItems<CFields, tItem> items(CFields& node)
{
    return CItems<CFields, tItem>(node);
}
CItems<const CFields, tItem> items(const CFields&& node) = delete;

/// The members with their indexes from 0, under the same rules.
inline CItems<const CFields, tIndexed> enumerate(const CFields& node)
{
    return CItems<const CFields, tIndexed>(node);
}
inline CItems<CFields, tIndexed> enumerate(CFields& node)
{
    return CItems<CFields, tIndexed>(node);
}
CItems<const CFields, tIndexed> enumerate(const CFields&& node) = delete;

}  // namespace murv

#endif

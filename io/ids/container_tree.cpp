// io/ids/container_tree.cpp - numbers of containers, and the order of places.
//
// Two places are compared by going up from both until they lie in one container; then their positions decide. From
// parent to parent that could be a thousand steps for each comparison, so each container also knows one ancestor
// further up.
#include "io/ids/container_tree.h"

#include <utility>

namespace murv::detail
{

void CContainerTree::clear()
{
    m_vContainer.clear();
    m_tNumber4Place.clear();
}

std::uint32_t CContainerTree::add(tNodePlace place)
{
    const auto number = static_cast<std::uint32_t>(m_vContainer.size());
    if (place.m_uiContainer == s_cuiNoPlace)
    {
        m_vContainer.push_back({place, number, 0});
        return number;
    }
    m_vContainer.push_back({place, farAbove4Child(place.m_uiContainer), depth(place.m_uiContainer) + 1});
    m_vContainer[number].m_uiNextBeside = std::exchange(m_vContainer[place.m_uiContainer].m_uiFirstBelow, number);
    return number;
}

// Jump pointers as in a skew-binary list: two jumps of one length in a row make the next one as long as both together
// and one more, else it leads to the parent. Any ancestor is then reached in a logarithmic number of steps, and
// containers of one depth jump to one depth, so that two can go up side by side.
std::uint32_t CContainerTree::farAbove4Child(std::uint32_t container) const
{
    const std::uint32_t far = farAbove(container);
    const std::uint32_t farther = farAbove(far);
    return depth(container) - depth(far) == depth(far) - depth(farther) ? farther : container;
}

std::uint32_t CContainerTree::addOrFind(tNodePlace place)
{
    bool isNew = false;
    std::uint32_t& known = m_tNumber4Place.enter(key4Place(place), s_cuiNoPlace, isNew);
    if (known == s_cuiNoPlace)
        known = add(place);
    return known;
}

void CContainerTree::empty(std::uint32_t container, std::uint32_t now)
{
    m_vOpen.assign(1, container);
    while (!m_vOpen.empty())
    {
        tContainer& emptied = m_vContainer[m_vOpen.back()];
        m_vOpen.pop_back();
        emptied.m_uiEmptied = now;
        std::uint32_t below = std::exchange(emptied.m_uiFirstBelow, s_cuiNoPlace);
        for (; below != s_cuiNoPlace; below = m_vContainer[below].m_uiNextBeside)
        {
            m_vOpen.push_back(below);
            if (std::uint32_t* const number = m_tNumber4Place.find(key4Place(m_vContainer[below].m_tPlace)))
                *number = s_cuiNoPlace;
        }
    }
}

/// The place itself, or that of its ancestor at the depth if it lies deeper.
tNodePlace CContainerTree::lift(tNodePlace place, std::uint32_t depth4Place) const
{
    std::uint32_t container = place.m_uiContainer;
    if (depth(container) <= depth4Place)
        return place;
    while (depth(container) > depth4Place + 1)
        container = depth(farAbove(container)) > depth4Place ? farAbove(container) : parent(container);
    return m_vContainer[container].m_tPlace;
}

bool CContainerTree::isBefore(tNodePlace a, tNodePlace b) const
{
    const std::uint32_t depth4A = depth(a.m_uiContainer);
    const std::uint32_t depth4B = depth(b.m_uiContainer);
    a = lift(a, depth4B);
    b = lift(b, depth4A);
    if (a.m_uiContainer != b.m_uiContainer)
    {
        std::uint32_t above4A = a.m_uiContainer;
        std::uint32_t above4B = b.m_uiContainer;
        while (parent(above4A) != parent(above4B))
        {
            const bool far = farAbove(above4A) != farAbove(above4B);
            above4A = far ? farAbove(above4A) : parent(above4A);
            above4B = far ? farAbove(above4B) : parent(above4B);
        }
        a = m_vContainer[above4A].m_tPlace;
        b = m_vContainer[above4B].m_tPlace;
    }
    if (a.m_uiPosition != b.m_uiPosition)
        return a.m_uiPosition < b.m_uiPosition;
    return depth4A < depth4B;
}

}  // namespace murv::detail

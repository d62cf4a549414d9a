// io/ids/container_tree.h - which of two nodes comes first in the document.
//
// The order in which nodes are made does not say, for a container in the middle may be read a second time. So every
// container with IDs, directly or further down, has a number here, and knows its parent and its position in the parent.
#pragma once

#include <cstdint>
#include <vector>

#include "io/ids/key_table.h"

namespace murv::detail
{

inline constexpr std::uint32_t s_cuiNoPlace = 0xFFFFFFFF;

/// Where a node lies: the number of its container, and its position there.
struct tNodePlace
{
    std::uint32_t m_uiContainer = s_cuiNoPlace;
    std::uint32_t m_uiPosition = 0;
};

/// The containers of a document that hold IDs. A number, once given, keeps its place until clear().
class CContainerTree
{
public:
    void clear();
    /// Gives a container the next number. Its place has no container when it is the outermost one.
    std::uint32_t add(tNodePlace place);
    /// As above, for a container that is also found by its place; returns its number if it has one already.
    std::uint32_t addOrFind(tNodePlace place);
    /// The number of the container at that place, or s_cuiNoPlace when it has none or is not found by its place.
    std::uint32_t find(tNodePlace place) const
    {
        const std::uint32_t* const known = m_tNumber4Place.find(key4Place(place));
        return known == nullptr ? s_cuiNoPlace : *known;
    }
    /// Empties a container, which keeps its number. The containers below it are gone and lose theirs.
    /// Cost: one step for each of these.
    /// \param now  the moment, counted in nodes that were given an ID before it
    void empty(std::uint32_t container, std::uint32_t now);
    /// When the container was emptied last; 0 for never. What it held before is gone.
    std::uint32_t whenEmptied(std::uint32_t container) const
    {
        return m_vContainer[container].m_uiEmptied;
    }
    /// Document order; a container comes before what it holds. Neither node may be gone: another may lie at its place.
    /// Cost: logarithmic in the depth.
    bool isBefore(tNodePlace a, tNodePlace b) const;

private:
    struct tContainer
    {
        tNodePlace m_tPlace;
        std::uint32_t m_uiFarAbove;  // an ancestor, see add; the outermost container has itself
        std::uint32_t m_uiDepth;
        std::uint32_t m_uiEmptied = 0;
        std::uint32_t m_uiFirstBelow = s_cuiNoPlace;  // the containers in this one are linked by m_uiNextBeside
        std::uint32_t m_uiNextBeside = s_cuiNoPlace;
    };

    static std::uint64_t key4Place(tNodePlace place)
    {
        return std::uint64_t{place.m_uiContainer} << 32 | place.m_uiPosition;
    }
    std::uint32_t parent(std::uint32_t container) const
    {
        return m_vContainer[container].m_tPlace.m_uiContainer;
    }
    std::uint32_t farAbove(std::uint32_t container) const
    {
        return m_vContainer[container].m_uiFarAbove;
    }
    std::uint32_t depth(std::uint32_t container) const
    {
        return m_vContainer[container].m_uiDepth;
    }
    std::uint32_t farAbove4Child(std::uint32_t container) const;
    tNodePlace lift(tNodePlace place, std::uint32_t depth) const;

    std::vector<tContainer> m_vContainer;
    std::vector<std::uint32_t> m_vOpen;                       // for empty(), kept as it is often needed
    CKeyTable<std::uint64_t, std::uint32_t> m_tNumber4Place;  // of containers that are found by their place
};

}  // namespace murv::detail

// io/ids/id_places.h - where the nodes of a document lie that IDs lead to.
//
// A node's place is its container, by number, and its position there. Places tell which of two nodes comes first in the
// document, also after a container in the middle was read a second time: the order in which nodes are made does not.
#pragma once

#include <cstdint>
#include <vector>

#include "io/ids/key_table.h"

namespace murv::detail
{

inline constexpr std::uint32_t s_cuiNoPlace = 0xFFFFFFFF;

/// A member's place: its container, by number, and its position there.
struct tNodePlace
{
    std::uint32_t m_uiSet = s_cuiNoPlace;
    std::uint32_t m_uiPosition = 0;
};

/// The containers of a document that hold IDs, near or far below.
class CIdPlaces
{
public:
    void clear();
    /// Gives a container a number; its place has no set when it is the outermost one.
    std::uint32_t addSet(tNodePlace place);
    /// As above, of a container that may be found again by its place, and has its number then.
    std::uint32_t addSetToFind(tNodePlace place);
    /// The number of a container that may be found by its place, or s_cuiNoPlace.
    std::uint32_t findSet(tNodePlace place) const
    {
        const std::uint32_t* const known = m_tSetAt.find(key4Spot(place));
        return known == nullptr ? s_cuiNoPlace : *known;
    }

    /// Document order; a container comes before what it holds.
    bool isBefore(tNodePlace a, tNodePlace b) const;

    /// The first of the entries that lie in the container, linked by whoever makes them.
    std::uint32_t& firstEntry(std::uint32_t set)
    {
        return m_vSet[set].m_uiFirstEntry;
    }
    /// Empties the container, which keeps its number, and forgets the ones below: calls `visit` with the first entry of
    /// each.
    template <typename tVisit>
    void takeEntries(std::uint32_t emptied, tVisit&& visit)
    {
        m_vOpen.assign(1, emptied);
        while (!m_vOpen.empty())
        {
            tSet& set = m_vSet[m_vOpen.back()];
            m_vOpen.pop_back();
            visit(set.m_uiFirstEntry);
            for (std::uint32_t below = set.m_uiFirstBelow; below != s_cuiNoPlace; below = m_vSet[below].m_uiNextBeside)
            {
                m_vOpen.push_back(below);
                if (std::uint32_t* const spot = m_tSetAt.find(key4Spot(m_vSet[below].m_tPlace)))
                    *spot = s_cuiNoPlace;
            }
            set.m_uiFirstEntry = set.m_uiFirstBelow = s_cuiNoPlace;
        }
    }

private:
    struct tSet
    {
        tNodePlace m_tPlace;
        std::uint32_t m_uiJump;  // a set above it, far or near, so that going up by any distance takes few steps
        std::uint32_t m_uiDepth;
        std::uint32_t m_uiFirstEntry = s_cuiNoPlace;
        std::uint32_t m_uiFirstBelow = s_cuiNoPlace;
        std::uint32_t m_uiNextBeside = s_cuiNoPlace;
    };
    /// Two places, or the ones above them that lie in one container.
    struct tMeeting
    {
        tNodePlace m_tA;
        tNodePlace m_tB;
    };

    static std::uint64_t key4Spot(tNodePlace place)
    {
        return std::uint64_t{place.m_uiSet} << 32 | place.m_uiPosition;
    }
    std::uint32_t depth(tNodePlace place) const
    {
        return m_vSet[place.m_uiSet].m_uiDepth;
    }
    /// The place at that depth above, or the place itself when it is not deeper.
    tNodePlace lift(tNodePlace place, std::uint32_t depth) const;
    tMeeting meet(tNodePlace a, tNodePlace b) const;

    std::vector<tSet> m_vSet;
    std::vector<std::uint32_t> m_vOpen;                // kept, as it is often needed
    CKeyTable<std::uint64_t, std::uint32_t> m_tSetAt;  // by place, of those that may be read again
};

}  // namespace murv::detail

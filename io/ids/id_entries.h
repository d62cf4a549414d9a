// io/ids/id_entries.h - all nodes of a document that were given an ID.
//
// Numbered as they were made, each with its place. Whether one still is there is asked most, so that is kept apart, one
// bit each.
#pragma once

#include <cstdint>
#include <vector>

#include "io/ids/id_places.h"
#include "murv/fields.h"

namespace murv::detail
{

class CIdEntries
{
public:
    static constexpr std::uint32_t s_cuiNone = 0xFFFFFFFF;

    struct tEntry
    {
        CFields* m_pNode;  // not owned; valid while the entry lives
        tNodePlace m_tPlace;
        std::uint32_t m_uiNextInSet;
        std::uint32_t m_uiOwnSet;  // number of the container that the node is, or s_cuiNoPlace
    };

    void clear()
    {
        m_tPlaces.clear();
        m_vEntry.clear();
        m_vLiving.clear();
    }
    CIdPlaces& places()
    {
        return m_tPlaces;
    }
    const CIdPlaces& places() const
    {
        return m_tPlaces;
    }
    /// How many there are, also of those that live no more.
    std::uint32_t count() const
    {
        return static_cast<std::uint32_t>(m_vEntry.size());
    }
    std::uint32_t add(CFields& node, tNodePlace place)
    {
        const std::uint32_t number = count();
        if (number % s_cuiBits == 0)
            m_vLiving.push_back(0);
        std::uint32_t& first = m_tPlaces.firstEntry(place.m_uiSet);
        m_vEntry.push_back({&node, place, first, s_cuiNoPlace});
        m_vLiving.back() |= bit(number);
        first = number;
        return number;
    }
    void setOwnSet(std::uint32_t number, std::uint32_t set)
    {
        m_vEntry[number].m_uiOwnSet = set;
    }
    const tEntry& operator[](std::uint32_t number) const
    {
        return m_vEntry[number];
    }
    bool isLiving(std::uint32_t number) const
    {
        return (m_vLiving[number / s_cuiBits] & bit(number)) != 0;
    }
    /// To be called before the members of the container are destroyed.
    void killBelow(std::uint32_t set)
    {
        m_tPlaces.takeEntries(set, [this](std::uint32_t entry) {
            for (; entry != s_cuiNone; entry = m_vEntry[entry].m_uiNextInSet)
                m_vLiving[entry / s_cuiBits] &= ~bit(entry);
        });
    }

private:
    static constexpr std::uint32_t s_cuiBits = 64;

    static std::uint64_t bit(std::uint32_t number)
    {
        return std::uint64_t{1} << (number % s_cuiBits);
    }

    CIdPlaces m_tPlaces;
    std::vector<tEntry> m_vEntry;
    std::vector<std::uint64_t> m_vLiving;
};

}  // namespace murv::detail

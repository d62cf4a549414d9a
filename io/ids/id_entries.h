// io/ids/id_entries.h - all nodes of a document that were given an ID, numbered in the order in which they were made.
//
// Entries are never removed. One is dead as soon as its container, or one around that, was emptied after it was made.
#pragma once

#include <cstdint>
#include <vector>

#include "io/ids/container_tree.h"
#include "murv/fields.h"

namespace murv::detail
{

/// A node with an ID.
struct tIdEntry
{
    CFields* m_pNode;  // not owned; valid while the entry lives
    tNodePlace m_tPlace;
    std::uint32_t m_uiOwnContainer = s_cuiNoPlace;  // number of the container that the node is, if it has one
    // Links of the heap that finds the first entry of an ID, see first_of_id.h.
    std::uint32_t m_uiFirstBelow;
    std::uint32_t m_uiNext;
};

class CIdEntries
{
public:
    static constexpr std::uint32_t s_cuiNone = 0xFFFFFFFF;

    void clear()
    {
        m_tContainers.clear();
        m_vEntry.clear();
    }
    CContainerTree& containers()
    {
        return m_tContainers;
    }
    /// How many there are, the dead included; the number of the next one.
    std::uint32_t count() const
    {
        return static_cast<std::uint32_t>(m_vEntry.size());
    }
    std::uint32_t add(CFields& node, tNodePlace place)
    {
        m_vEntry.push_back({&node, place, s_cuiNoPlace, s_cuiNone, s_cuiNone});
        return count() - 1;
    }
    tIdEntry& operator[](std::uint32_t number)
    {
        return m_vEntry[number];
    }
    const tIdEntry& operator[](std::uint32_t number) const
    {
        return m_vEntry[number];
    }
    bool isLiving(std::uint32_t number) const
    {
        return number >= m_tContainers.whenEmptied(m_vEntry[number].m_tPlace.m_uiContainer);
    }
    /// Document order of two living entries.
    bool isBefore(std::uint32_t a, std::uint32_t b) const
    {
        return m_tContainers.isBefore(m_vEntry[a].m_tPlace, m_vEntry[b].m_tPlace);
    }

private:
    CContainerTree m_tContainers;
    std::vector<tIdEntry> m_vEntry;
};

}  // namespace murv::detail

// io/ids/id_index.h - knows which IDs a document has given so far, and where.
//
// Adding a member by ID must find a node with that ID anywhere below the container being read, the first in document
// order. Nodes are entered as they are made, so the ones below an open container are those entered since it was opened.
// A document may also read a container a second time, which destroys what was in it and puts something else in the
// middle of the tree: places tell then which comes first.
#pragma once

#include <cstdint>
#include <vector>

#include "io/ids/id_entries.h"
#include "io/ids/key_table.h"
#include "io/ids/same_ids.h"

namespace murv::detail
{

class CIdIndex
{
public:
    struct tFound
    {
        CFields* m_pNode = nullptr;  // null when there is none
        tNodePlace m_tPlace;         // told by its entry, as few ask for it
    };

    CIdIndex() = default;
    CIdIndex(const CIdIndex&) = delete;
    CIdIndex& operator=(const CIdIndex&) = delete;
    ~CIdIndex();

    void clear();
    /// The place itself, of one that is told by an entry.
    tNodePlace resolve(tNodePlace place) const
    {
        return isByEntry(place) ? m_tEntries[place.m_uiPosition].m_tPlace : place;
    }
    /// Gives a container that was opened a number, the one it had when it is read again.
    /// \param place    has no set when it is the outermost one
    /// \param byPlace  it may be found by its place, not only by its entry
    std::uint32_t addSet(tNodePlace place, bool byPlace);
    /// The moment, counted in nodes that were entered before.
    std::uint32_t now() const
    {
        return m_tEntries.count();
    }
    /// Enters a node that stays where it is; gives its place, told by its entry.
    tNodePlace enter(unsigned int id, CFields& node, tNodePlace place);
    /// The first node with that ID below a container that is open and was opened at that moment.
    tFound find(unsigned int id, std::uint32_t opened);
    /// To be called before the members of the container at that place are destroyed.
    void forget(tNodePlace place);

private:
    static constexpr std::uint32_t s_cuiByEntry = s_cuiNoPlace - 1;  // instead of a set: the position is an entry
    static constexpr std::uint32_t s_cuiMany = 0x80000000;

    /// The nodes of one ID.
    struct tSame
    {
        std::uint32_t m_uiNewest;  // the entry of the newest, also of one that is gone
        std::uint32_t m_uiWhich;   // the entry of the only one, or s_cuiMany and where they are
        CFields* m_pOnly;          // valid while that entry lives
    };

    static bool isByEntry(tNodePlace place)
    {
        return place.m_uiSet == s_cuiByEntry;
    }

    CIdEntries m_tEntries;
    std::vector<CSameIds> m_vMany;
    CKeyTable<std::uint32_t, tSame> m_tSame;  // by ID
};

}  // namespace murv::detail

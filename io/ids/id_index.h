// io/ids/id_index.h - which node below the container being read has this ID?
//
// A member that is added with an ID is read into the first node in the document that has the ID and lies anywhere below
// the container being read. docs/ids.md explains how that is found in a few steps, whatever the document.
#pragma once

#include <cstdint>

#include "io/ids/container_tree.h"
#include "io/ids/first_of_id.h"
#include "io/ids/id_entries.h"
#include "io/ids/key_table.h"
#include "murv/fields.h"

namespace murv::detail
{

/// The nodes of one load that were given an ID.
///
/// Containers are numbered when they first hold an ID. A tNodePlace says container and position, or instead which entry
/// the node is: find() and enter() return the latter, as few callers need the place itself; resolve() gives that.
class CIdIndex
{
public:
    struct tFound
    {
        CFields* m_pNode = nullptr;  // null when there is none
        tNodePlace m_tPlace;         // by entry
    };

    void clear();
    /// The place as container and position.
    tNodePlace resolve(tNodePlace place) const
    {
        return isByEntry(place) ? m_tEntries[place.m_uiPosition].m_tPlace : place;
    }
    /// The number of a container that was opened: a new one, or the one it had when it is read again.
    /// \param place    has no container when it is the outermost one
    /// \param byPlace  it may be opened again by its name, and must then be found by its place
    std::uint32_t addContainer(tNodePlace place, bool byPlace);
    /// The moment, counted in nodes that were entered before.
    std::uint32_t now() const
    {
        return m_tEntries.count();
    }
    /// Enters a node that stays where it is; returns its place by entry. Throws std::bad_alloc.
    tNodePlace enter(unsigned int id, CFields& node, tNodePlace place);
    /// The first node in the document with that ID among those entered from the moment `opened` on, which are the ones
    /// below the container that was opened then. To be asked only by the innermost open container.
    tFound find(unsigned int id, std::uint32_t opened);
    /// Forgets the nodes below the container at that place. To be called before they are destroyed.
    void forget(tNodePlace place);

private:
    static constexpr std::uint32_t s_cuiByEntry = s_cuiNoPlace - 1;  // instead of a container: the position is an entry

    static bool isByEntry(tNodePlace place)
    {
        return place.m_uiContainer == s_cuiByEntry;
    }

    CIdEntries m_tEntries;
    CKeyTable<std::uint32_t, CFirstOfId> m_tFirst4Id;
};

}  // namespace murv::detail

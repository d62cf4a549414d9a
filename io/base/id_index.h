// io/base/id_index.h - knows which IDs a document has given so far, and where.
//
// Adding a member by ID must find a node with that ID anywhere below the container being read, the first in document
// order. Nodes are entered as they are made, so the ones below an open container are those entered since it was opened;
// which of several is the first is told by their places. A document may also read a container a second time, which
// destroys what was in it and puts something else in the middle of the tree: places stay true then, the order of making
// does not.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <vector>

#include "io/base/key_table.h"
#include "murv/fields.h"

namespace murv::detail
{

class CIdIndex
{
public:
    static constexpr std::uint32_t s_cuiNone = 0xFFFFFFFF;

    /// A member's place: its container, by number, and its position there.
    struct tPlace
    {
        std::uint32_t m_uiSet = s_cuiNone;
        std::uint32_t m_uiPosition = 0;
    };
    struct tFound
    {
        CFields* m_pNode = nullptr;  // null when there is none
        tPlace m_tPlace;
    };

    CIdIndex() = default;
    CIdIndex(const CIdIndex&) = delete;
    CIdIndex& operator=(const CIdIndex&) = delete;
    ~CIdIndex();

    void clear();
    /// Gives a container that was opened a number; its place has no set when it is the outermost one.
    /// \param element  an element of an array, which no document reads again
    std::uint32_t addSet(tPlace place, bool element);
    /// Enters a node that stays where it is. \param order  later than that of all before
    void enter(unsigned int id, CFields& node, tPlace place, std::uint64_t order);
    /// The first node with that ID below the container `set`, which is open and was opened at `order`.
    tFound find(unsigned int id, std::uint32_t set, std::uint64_t order) const;
    /// To be called before the members of the container at that place are destroyed.
    void forget(tPlace place);

private:
    // A container with entries somewhere below.
    struct tSet
    {
        tPlace m_tPlace;
        std::uint32_t m_uiJump;  // a set above it, far or near, so that going up by any distance takes few steps
        std::uint32_t m_uiDepth;
        std::uint32_t m_uiFirstSeen = s_cuiNone;
        std::uint32_t m_uiFirstBelow = s_cuiNone;
        std::uint32_t m_uiNextBeside = s_cuiNone;
    };
    struct tSeen
    {
        CFields* m_pNode;
        std::uint64_t m_ullOrder;
        tPlace m_tPlace;
        unsigned int m_uiId;
        std::uint32_t m_uiNextInSet;
    };
    struct tBefore
    {
        using is_transparent = void;
        const CIdIndex* m_pIndex;
        bool operator()(std::uint32_t a, std::uint32_t b) const
        {
            return m_pIndex->isBefore(m_pIndex->m_vSeen[a].m_tPlace, m_pIndex->m_vSeen[b].m_tPlace);
        }
        bool operator()(std::uint32_t a, tPlace b) const
        {
            return m_pIndex->isBefore(m_pIndex->m_vSeen[a].m_tPlace, b);
        }
        bool operator()(tPlace a, std::uint32_t b) const
        {
            return m_pIndex->isBefore(a, m_pIndex->m_vSeen[b].m_tPlace);
        }
    };
    using tSorted = std::set<std::uint32_t, tBefore>;
    /// The nodes of one ID, when there are several: in a row as long as they come in document order and stay.
    struct tMany
    {
        std::vector<std::uint32_t> m_vRow;
        std::unique_ptr<tSorted> m_pSorted;
    };
    struct tSame
    {
        std::uint64_t m_ullNewest;  // the order of the newest, also of one that is gone
        std::uint32_t m_uiOnly;     // the one node, or s_cuiNone
        std::uint32_t m_uiMany;     // where they are when there are several, or s_cuiNone
    };

    static std::uint64_t key4Place(tPlace place)
    {
        return std::uint64_t{place.m_uiSet} << 32 | place.m_uiPosition;
    }
    /// Document order; a container comes before what it holds.
    bool isBefore(tPlace a, tPlace b) const;
    /// The place at that depth above, or the place itself when it is not deeper.
    tPlace lift(tPlace place, std::uint32_t depth) const;
    tSorted& sort(tMany& many) const;
    std::uint32_t firstBehind(const tMany& many, tPlace place) const;
    void remove(std::uint32_t seen);

    std::vector<tSet> m_vSet;
    std::vector<tSeen> m_vSeen;
    std::vector<tMany> m_vMany;
    CKeyTable<tSame> m_tSame;           // by ID
    CKeyTable<std::uint32_t> m_tSetAt;  // by place, of those that may be read again; s_cuiNone when it was forgotten
};

}  // namespace murv::detail

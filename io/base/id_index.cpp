// io/base/id_index.cpp - the nodes of a document by ID, in document order.
//
// Order is told by places, not by when nodes were made; common documents never need more than the newest entry.
#include "io/base/id_index.h"

#include <algorithm>

namespace murv::detail
{

CIdIndex::~CIdIndex() = default;

void CIdIndex::clear()
{
    m_vSet.clear();
    m_vSeen.clear();
    m_vMany.clear();
    m_tSame.clear();
    m_tSetAt.clear();
}

// The jump leads to where the parent's jump leads if that one and the parent's own are equally long, else to the
// parent: the lengths are those of carries when counting in a number system of twos, so that few are ever needed.
std::uint32_t CIdIndex::addSet(tPlace place, bool element)
{
    const auto set = static_cast<std::uint32_t>(m_vSet.size());
    if (place.m_uiSet == s_cuiNone)
    {
        m_vSet.push_back({place, set, 0});
        return set;
    }
    tSet fresh{place, place.m_uiSet, m_vSet[place.m_uiSet].m_uiDepth + 1};
    {
        const tSet& parent = m_vSet[place.m_uiSet];
        const tSet& above = m_vSet[parent.m_uiJump];
        const tSet& farAbove = m_vSet[above.m_uiJump];
        if (parent.m_uiDepth - above.m_uiDepth == above.m_uiDepth - farAbove.m_uiDepth)
            fresh.m_uiJump = above.m_uiJump;
        fresh.m_uiNextBeside = parent.m_uiFirstBelow;
    }
    bool isNew = false;
    if (!element)
        m_tSetAt.enter(key4Place(place), s_cuiNone, isNew) = set;
    m_vSet.push_back(fresh);
    m_vSet[place.m_uiSet].m_uiFirstBelow = set;
    return set;
}

CIdIndex::tPlace CIdIndex::lift(tPlace place, std::uint32_t depth) const
{
    std::uint32_t set = place.m_uiSet;
    if (m_vSet[set].m_uiDepth <= depth)
        return place;
    while (m_vSet[set].m_uiDepth > depth + 1)
        set = m_vSet[m_vSet[set].m_uiJump].m_uiDepth > depth ? m_vSet[set].m_uiJump : m_vSet[set].m_tPlace.m_uiSet;
    return m_vSet[set].m_tPlace;
}

bool CIdIndex::isBefore(tPlace a, tPlace b) const
{
    const std::uint32_t depth4A = m_vSet[a.m_uiSet].m_uiDepth;
    const std::uint32_t depth4B = m_vSet[b.m_uiSet].m_uiDepth;
    a = lift(a, depth4B);
    b = lift(b, depth4A);
    if (a.m_uiSet == b.m_uiSet)
        return a.m_uiPosition != b.m_uiPosition ? a.m_uiPosition < b.m_uiPosition : depth4A < depth4B;
    std::uint32_t above4A = a.m_uiSet;
    std::uint32_t above4B = b.m_uiSet;
    while (m_vSet[above4A].m_tPlace.m_uiSet != m_vSet[above4B].m_tPlace.m_uiSet)
    {
        const bool far = m_vSet[above4A].m_uiJump != m_vSet[above4B].m_uiJump;
        above4A = far ? m_vSet[above4A].m_uiJump : m_vSet[above4A].m_tPlace.m_uiSet;
        above4B = far ? m_vSet[above4B].m_uiJump : m_vSet[above4B].m_tPlace.m_uiSet;
    }
    return m_vSet[above4A].m_tPlace.m_uiPosition < m_vSet[above4B].m_tPlace.m_uiPosition;
}

CIdIndex::tSorted& CIdIndex::sort(tMany& many) const
{
    if (many.m_pSorted == nullptr)
    {
        many.m_pSorted = std::make_unique<tSorted>(many.m_vRow.begin(), many.m_vRow.end(), tBefore{this});
        many.m_vRow = {};
    }
    return *many.m_pSorted;
}

void CIdIndex::enter(unsigned int id, CFields& node, tPlace place, std::uint64_t order)
{
    const auto seen = static_cast<std::uint32_t>(m_vSeen.size());
    m_vSeen.push_back({&node, order, place, id, m_vSet[place.m_uiSet].m_uiFirstSeen});
    m_vSet[place.m_uiSet].m_uiFirstSeen = seen;
    bool isNew = false;
    tSame& same = m_tSame.enter(id, {order, seen, s_cuiNone}, isNew);
    if (isNew)
        return;
    if (same.m_uiMany == s_cuiNone && same.m_uiOnly == s_cuiNone)
        same.m_uiOnly = seen;
    else
    {
        if (same.m_uiMany == s_cuiNone)
        {
            m_vMany.push_back({{same.m_uiOnly}, nullptr});
            same.m_uiMany = static_cast<std::uint32_t>(m_vMany.size() - 1);
            same.m_uiOnly = s_cuiNone;
        }
        tMany& many = m_vMany[same.m_uiMany];
        if (many.m_pSorted == nullptr && isBefore(m_vSeen[many.m_vRow.back()].m_tPlace, place))
            many.m_vRow.push_back(seen);
        else
        {
            tSorted& sorted = sort(many);
            if (!sorted.empty() && isBefore(m_vSeen[*sorted.rbegin()].m_tPlace, place))
                sorted.insert(sorted.end(), seen);  // the most: it comes last
            else
                sorted.insert(seen);
        }
    }
    same.m_ullNewest = order;
}

// The first that comes behind the place, or s_cuiNone.
std::uint32_t CIdIndex::firstBehind(const tMany& many, tPlace place) const
{
    const bool all = place.m_uiSet == s_cuiNone;  // of the outermost container
    if (many.m_pSorted == nullptr)
    {
        const auto end = many.m_vRow.end();
        const auto at = all ? many.m_vRow.begin() : std::upper_bound(many.m_vRow.begin(), end, place, tBefore{this});
        return at == end ? s_cuiNone : *at;
    }
    const auto at = all ? many.m_pSorted->begin() : many.m_pSorted->upper_bound(place);
    return at == many.m_pSorted->end() ? s_cuiNone : *at;
}

CIdIndex::tFound CIdIndex::find(unsigned int id, std::uint32_t set, std::uint64_t order) const
{
    const tSame* const same = set == s_cuiNone ? nullptr : m_tSame.find(id);
    if (same == nullptr || same->m_ullNewest < order)
        return {};
    const std::uint32_t first =
        same->m_uiMany == s_cuiNone ? same->m_uiOnly : firstBehind(m_vMany[same->m_uiMany], m_vSet[set].m_tPlace);
    // What was made before the container was opened is not below it.
    if (first == s_cuiNone || m_vSeen[first].m_ullOrder < order)
        return {};
    return {m_vSeen[first].m_pNode, m_vSeen[first].m_tPlace};
}

void CIdIndex::remove(std::uint32_t seen)
{
    tSame& same = *m_tSame.find(m_vSeen[seen].m_uiId);
    if (same.m_uiMany == s_cuiNone)
        same.m_uiOnly = s_cuiNone;
    else
        sort(m_vMany[same.m_uiMany]).erase(seen);
}

void CIdIndex::forget(tPlace place)
{
    const std::uint32_t* const at = m_tSetAt.find(key4Place(place));
    if (at == nullptr || *at == s_cuiNone)
        return;
    std::vector<std::uint32_t> open{*at};
    while (!open.empty())
    {
        // The set stays listed with the one above it, but from now on it holds nothing.
        tSet& set = m_vSet[open.back()];
        open.pop_back();
        if (std::uint32_t* const known = m_tSetAt.find(key4Place(set.m_tPlace)))
            *known = s_cuiNone;
        for (std::uint32_t seen = set.m_uiFirstSeen; seen != s_cuiNone; seen = m_vSeen[seen].m_uiNextInSet)
            remove(seen);
        for (std::uint32_t below = set.m_uiFirstBelow; below != s_cuiNone; below = m_vSet[below].m_uiNextBeside)
            open.push_back(below);
        set.m_uiFirstSeen = set.m_uiFirstBelow = s_cuiNone;
    }
}

}  // namespace murv::detail

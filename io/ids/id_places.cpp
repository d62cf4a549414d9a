// io/ids/id_places.cpp - numbers of containers, and the order of places.
//
// Two places are compared by lifting both into one container; jumps keep that short however deep they lie.
#include "io/ids/id_places.h"

namespace murv::detail
{

void CIdPlaces::clear()
{
    m_vSet.clear();
    m_tSetAt.clear();
}

// The jump leads to where the parent's jump leads if that one and the parent's own are equally long, else to the
// parent: the lengths are those of carries when counting in a number system of twos, so that few are ever needed.
std::uint32_t CIdPlaces::addSet(tNodePlace place)
{
    const auto set = static_cast<std::uint32_t>(m_vSet.size());
    if (place.m_uiSet == s_cuiNoPlace)
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
    m_vSet.push_back(fresh);
    m_vSet[place.m_uiSet].m_uiFirstBelow = set;
    return set;
}

std::uint32_t CIdPlaces::addSetToFind(tNodePlace place)
{
    bool isNew = false;
    std::uint32_t& known = m_tSetAt.enter(key4Spot(place), s_cuiNoPlace, isNew);
    if (known == s_cuiNoPlace)
        known = addSet(place);
    return known;
}

tNodePlace CIdPlaces::lift(tNodePlace place, std::uint32_t depth) const
{
    std::uint32_t set = place.m_uiSet;
    if (m_vSet[set].m_uiDepth <= depth)
        return place;
    while (m_vSet[set].m_uiDepth > depth + 1)
        set = m_vSet[m_vSet[set].m_uiJump].m_uiDepth > depth ? m_vSet[set].m_uiJump : m_vSet[set].m_tPlace.m_uiSet;
    return m_vSet[set].m_tPlace;
}

CIdPlaces::tMeeting CIdPlaces::meet(tNodePlace a, tNodePlace b) const
{
    const std::uint32_t depth4A = depth(a);
    const std::uint32_t depth4B = depth(b);
    a = lift(a, depth4B);
    b = lift(b, depth4A);
    if (a.m_uiSet == b.m_uiSet)
        return {a, b};
    std::uint32_t above4A = a.m_uiSet;
    std::uint32_t above4B = b.m_uiSet;
    while (m_vSet[above4A].m_tPlace.m_uiSet != m_vSet[above4B].m_tPlace.m_uiSet)
    {
        const bool far = m_vSet[above4A].m_uiJump != m_vSet[above4B].m_uiJump;
        above4A = far ? m_vSet[above4A].m_uiJump : m_vSet[above4A].m_tPlace.m_uiSet;
        above4B = far ? m_vSet[above4B].m_uiJump : m_vSet[above4B].m_tPlace.m_uiSet;
    }
    return {m_vSet[above4A].m_tPlace, m_vSet[above4B].m_tPlace};
}

bool CIdPlaces::isBefore(tNodePlace a, tNodePlace b) const
{
    const tMeeting meeting = meet(a, b);
    if (meeting.m_tA.m_uiPosition != meeting.m_tB.m_uiPosition)
        return meeting.m_tA.m_uiPosition < meeting.m_tB.m_uiPosition;
    return depth(a) < depth(b);
}

}  // namespace murv::detail

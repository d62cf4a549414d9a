// io/ids/id_index.cpp - the nodes of a document by ID.
//
// Most IDs lead to one node; such are found at one look into a table.
#include "io/ids/id_index.h"

namespace murv::detail
{

CIdIndex::~CIdIndex() = default;

void CIdIndex::clear()
{
    m_tEntries.clear();
    m_vMany.clear();
    m_tSame.clear();
}

std::uint32_t CIdIndex::addSet(tNodePlace place, bool byPlace)
{
    if (!isByEntry(place))
        return byPlace ? m_tEntries.places().addSetToFind(place) : m_tEntries.places().addSet(place);
    const CIdEntries::tEntry& entry = m_tEntries[place.m_uiPosition];
    if (entry.m_uiOwnSet == s_cuiNoPlace)
        m_tEntries.setOwnSet(place.m_uiPosition, addSet(entry.m_tPlace, byPlace));
    return entry.m_uiOwnSet;
}

void CIdIndex::forget(tNodePlace place)
{
    std::uint32_t set = isByEntry(place) ? m_tEntries[place.m_uiPosition].m_uiOwnSet : s_cuiNoPlace;
    if (set == s_cuiNoPlace)
        set = m_tEntries.places().findSet(resolve(place));
    if (set != s_cuiNoPlace)
        m_tEntries.killBelow(set);
}

tNodePlace CIdIndex::enter(unsigned int id, CFields& node, tNodePlace place)
{
    const std::uint32_t entry = m_tEntries.add(node, place);
    const tNodePlace told{s_cuiByEntry, entry};
    bool isNew = false;
    tSame& same = m_tSame.enter(id, {entry, entry, &node}, isNew);
    if (isNew)
        return told;
    same.m_uiNewest = entry;
    if ((same.m_uiWhich & s_cuiMany) != 0)
        m_vMany[same.m_uiWhich & ~s_cuiMany].add(entry);
    else if (m_tEntries.isLiving(same.m_uiWhich))
    {
        const std::uint32_t before = same.m_uiWhich;
        same.m_uiWhich = static_cast<std::uint32_t>(m_vMany.size()) | s_cuiMany;
        CSameIds& many = m_vMany.emplace_back();
        many.add(before);
        many.add(entry);
    }
    else
    {
        same.m_uiWhich = entry;
        same.m_pOnly = &node;
    }
    return told;
}

CIdIndex::tFound CIdIndex::find(unsigned int id, std::uint32_t opened)
{
    const tSame* const same = m_tSame.find(id);
    if (same == nullptr || same->m_uiNewest < opened)
        return {};
    if ((same->m_uiWhich & s_cuiMany) == 0)
    {
        if (!m_tEntries.isLiving(same->m_uiWhich))
            return {};
        return {same->m_pOnly, {s_cuiByEntry, same->m_uiWhich}};
    }
    const std::uint32_t first = m_vMany[same->m_uiWhich & ~s_cuiMany].first(m_tEntries, opened);
    if (first == CIdEntries::s_cuiNone)
        return {};
    return {m_tEntries[first].m_pNode, {s_cuiByEntry, first}};
}

}  // namespace murv::detail

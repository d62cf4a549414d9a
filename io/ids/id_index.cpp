// io/ids/id_index.cpp - the nodes of a document by ID.
//
// A hash map leads from the ID to its entries; of several, the first in the document counts.
#include "io/ids/id_index.h"

namespace murv::detail
{

void CIdIndex::clear()
{
    m_tEntries.clear();
    m_tFirst4Id.clear();
}

std::uint32_t CIdIndex::addContainer(tNodePlace place, bool byPlace)
{
    if (!isByEntry(place))
        return byPlace ? m_tEntries.containers().addOrFind(place) : m_tEntries.containers().add(place);
    std::uint32_t& own = m_tEntries[place.m_uiPosition].m_uiOwnContainer;
    if (own == s_cuiNoPlace)
        own = addContainer(m_tEntries[place.m_uiPosition].m_tPlace, byPlace);
    return own;
}

void CIdIndex::forget(tNodePlace place)
{
    std::uint32_t container = isByEntry(place) ? m_tEntries[place.m_uiPosition].m_uiOwnContainer : s_cuiNoPlace;
    if (container == s_cuiNoPlace)
        container = m_tEntries.containers().find(resolve(place));
    if (container != s_cuiNoPlace)
        m_tEntries.containers().empty(container, now());
}

tNodePlace CIdIndex::enter(unsigned int id, CFields& node, tNodePlace place)
{
    bool isNew = false;
    CFirstOfId& first = m_tFirst4Id.enter(id, {}, isNew);
    const std::uint32_t entry = m_tEntries.add(node, place);
    first.add(m_tEntries, entry);
    return {s_cuiByEntry, entry};
}

CIdIndex::tFound CIdIndex::find(unsigned int id, std::uint32_t opened)
{
    CFirstOfId* const known = m_tFirst4Id.find(id);
    const std::uint32_t first = known == nullptr ? CIdEntries::s_cuiNone : known->find(m_tEntries, opened);
    if (first == CIdEntries::s_cuiNone)
        return {};
    return {m_tEntries[first].m_pNode, {s_cuiByEntry, first}};
}

}  // namespace murv::detail

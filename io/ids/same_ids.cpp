// io/ids/same_ids.cpp - the first of several nodes with one ID.
//
// Entries that were destroyed are never compared: another container may have their place by now.
#include "io/ids/same_ids.h"

#include <algorithm>

namespace murv::detail
{

namespace
{
/// The one that comes first in the document; either may be none, both live.
std::uint32_t first4Two(const CIdEntries& entries, std::uint32_t a, std::uint32_t b)
{
    if (a == CIdEntries::s_cuiNone || b == CIdEntries::s_cuiNone)
        return a == CIdEntries::s_cuiNone ? b : a;
    return entries.places().isBefore(entries[b].m_tPlace, entries[a].m_tPlace) ? b : a;
}
}  // namespace

std::uint32_t CSameIds::first(const CIdEntries& entries, std::uint32_t since)
{
    const auto begin = std::lower_bound(m_vEntry.begin(), m_vEntry.end(), since);
    if (m_vEntry.end() - begin > s_cnFew)
        return firstOfRun(entries, static_cast<std::size_t>(begin - m_vEntry.begin()), m_vEntry.size());
    std::uint32_t found = CIdEntries::s_cuiNone;
    for (auto at = begin; at != m_vEntry.end(); ++at)
    {
        if (entries.isLiving(*at))
            found = first4Two(entries, found, *at);
    }
    return found;
}

/// Puts the run together from the longest parts that the tree knows.
std::uint32_t CSameIds::firstOfRun(const CIdEntries& entries, std::size_t begin, std::size_t end)
{
    grow(entries);
    std::uint32_t found = CIdEntries::s_cuiNone;
    for (std::size_t level = 0; begin != end; ++level)
    {
        if (begin % 2 != 0)
            found = first4Two(entries, found, refresh(entries, level, begin++));
        if (end % 2 != 0 && begin != end)
            found = first4Two(entries, found, refresh(entries, level, --end));
        begin /= 2;
        end /= 2;
    }
    return found;
}

/// Enters what was added since the last time, on each level as far as there are pairs.
void CSameIds::grow(const CIdEntries& entries)
{
    std::size_t below = m_vEntry.size();
    for (std::size_t level = 0; below > 1; ++level)
    {
        if (level == m_vFirst.size())
            m_vFirst.emplace_back();
        below /= 2;
        while (m_vFirst[level].size() < below)
            m_vFirst[level].push_back(firstBelow(entries, level, m_vFirst[level].size()));
    }
}

/// The first of a part of the tree, found anew when the one that it was is gone.
std::uint32_t CSameIds::refresh(const CIdEntries& entries, std::size_t level, std::size_t at)
{
    std::uint32_t& known = level == 0 ? m_vEntry[at] : m_vFirst[level - 1][at];
    if (known == CIdEntries::s_cuiNone || entries.isLiving(known))
        return known;
    if (level == 0)
        return CIdEntries::s_cuiNone;  // it stays, for the others are found by their order
    return known = firstBelow(entries, level - 1, at);
}

std::uint32_t CSameIds::firstBelow(const CIdEntries& entries, std::size_t level, std::size_t at)
{
    const std::uint32_t left = refresh(entries, level, at * 2);
    return first4Two(entries, left, refresh(entries, level, at * 2 + 1));
}

}  // namespace murv::detail

// io/base/same_ids.cpp - the first of several nodes with one ID.
//
// Entries that were destroyed stay in their rows until these are merged. They are never compared: another container may
// have their place by now.
#include "io/base/same_ids.h"

#include <algorithm>

namespace murv::detail
{

namespace
{
void takeFirst(const CIdEntries& entries, std::uint32_t entry, std::uint32_t& first)
{
    if (first == CIdEntries::s_cuiNone || entries.places().isBefore(entries[entry].m_tPlace, entries[first].m_tPlace))
        first = entry;
}

/// Calls `visit` with begin and end of each run of entries whose keys are equal.
template <typename tRow, typename tVisit>
void forEachTie(tRow& row, tVisit&& visit)
{
    for (auto begin = row.begin(); begin != row.end();)
    {
        auto end = begin + 1;
        while (end != row.end() && end->m_ullKey == begin->m_ullKey)
            ++end;
        visit(begin, end);
        begin = end;
    }
}
}  // namespace

// Rows like the digits of a counter: adding a few mostly changes the first only.
void CSortedIds::add(const CIdEntries& entries, const std::vector<std::uint32_t>& fresh)
{
    m_uiNewest = entries[fresh.back()].m_uiOrder;
    tRow row;
    for (const std::uint32_t entry : fresh)
    {
        if (entries.isLiving(entry))
            row.push_back({0, entry});
    }
    if (row.empty())
        return;
    sort(entries, row);
    std::size_t most = s_cnFirstRow;
    for (std::size_t at = 0;; ++at)
    {
        if (at == m_vRow.size())
            m_vRow.emplace_back();
        merge(entries, row, m_vRow[at]);
        if (m_vRow[at].size() <= most)
            return;
        row = std::move(m_vRow[at]);
        m_vRow[at].clear();
        most *= s_cnRowFactor;
    }
}

std::uint32_t CSortedIds::first(const CIdEntries& entries, tNodePlace container, std::uint32_t order)
{
    std::uint32_t found = CIdEntries::s_cuiNone;
    for (tRow& row : m_vRow)
    {
        const std::size_t at =
            container.m_uiSet == s_cuiNoPlace ? living(entries, row, 0) : firstBehind(entries, row, container);
        // What was made before the container was opened is not below it.
        if (at < row.size() && entries[row[at].m_uiEntry].m_uiOrder >= order)
            takeFirst(entries, row[at].m_uiEntry, found);
    }
    return found;
}

void CSortedIds::sort(const CIdEntries& entries, tRow& row)
{
    const auto place = [&](const tSorted& at) { return entries[at.m_uiEntry].m_tPlace; };
    std::size_t count = row.size();
    for (const tRow& known : m_vRow)
        count += known.size();
    if (m_uiBase == s_cuiNoPlace)
        setBase(entries, entries.places().common(place(row.front()), place(row.back())));
    else if (m_nTies > count)
        setBase(entries, entries.places().common(m_tTied[0], m_tTied[1]));
    for (int tries = 0;; ++tries)
    {
        fillKeys(entries, row);
        std::sort(row.begin(), row.end(), [](const tSorted& a, const tSorted& b) {
            return a.m_ullKey != b.m_ullKey ? a.m_ullKey < b.m_ullKey : a.m_uiEntry < b.m_uiEntry;
        });
        auto tied = row.begin();
        auto tiedEnd = row.begin();
        forEachTie(row, [&](auto begin, auto end) {
            if (end - begin > tiedEnd - tied)
            {
                tied = begin;
                tiedEnd = end;
            }
        });
        // When most keys are equal, they had better begin where those entries part.
        if (tries == s_ciTries || tiedEnd - tied == 1 || (tiedEnd - tied) * 2 <= row.end() - row.begin())
            break;
        setBase(entries, entries.places().common(place(*tied), place(*(tiedEnd - 1))));
    }
    forEachTie(row, [&](auto begin, auto end) {
        const auto isLess = [&](const tSorted& a, const tSorted& b) { return isBefore(entries, a, b); };
        if (!std::is_sorted(begin, end, isLess))
            std::sort(begin, end, isLess);
    });
}

void CSortedIds::setBase(const CIdEntries& entries, std::uint32_t base)
{
    m_uiBase = base;
    m_nTies = 0;
    for (tRow& row : m_vRow)
        fillKeys(entries, row);
}

void CSortedIds::fillKeys(const CIdEntries& entries, tRow& row) const
{
    for (tSorted& at : row)
        at.m_ullKey = entries.places().key4Place(entries[at.m_uiEntry].m_tPlace, m_uiBase);
}

void CSortedIds::merge(const CIdEntries& entries, const tRow& from, tRow& into)
{
    tRow merged;
    merged.reserve(from.size() + into.size());
    const auto next = [&](const tRow& row, std::size_t at) {
        while (at < row.size() && !entries.isLiving(row[at].m_uiEntry))
            ++at;
        return at;
    };
    std::size_t i = next(from, 0);
    std::size_t j = next(into, 0);
    while (i < from.size() || j < into.size())
    {
        const bool takesFrom = j == into.size() || (i < from.size() && isBefore(entries, from[i], into[j]));
        const tSorted& taken = takesFrom ? from[i] : into[j];
        merged.push_back({taken.m_ullKey, taken.m_uiEntry});
        if (takesFrom)
            i = next(from, i + 1);
        else
            j = next(into, j + 1);
    }
    into.swap(merged);
}

bool CSortedIds::isBefore(const CIdEntries& entries, const tSorted& a, const tSorted& b)
{
    if (a.m_ullKey != b.m_ullKey)
        return a.m_ullKey < b.m_ullKey;
    return isTiedBefore(entries, entries[a.m_uiEntry].m_tPlace, entries[b.m_uiEntry].m_tPlace);
}

bool CSortedIds::isTiedBefore(const CIdEntries& entries, tNodePlace a, tNodePlace b)
{
    ++m_nTies;
    m_tTied[0] = a;
    m_tTied[1] = b;
    return entries.places().isBefore(a, b);
}

// The living one at that position or next behind it. What was skipped once is skipped at one step later.
std::size_t CSortedIds::living(const CIdEntries& entries, tRow& row, std::size_t at)
{
    std::size_t end = at;
    while (end < row.size() && !entries.isLiving(row[end].m_uiEntry))
        end += row[end].m_uiSkip;
    while (at < end)
    {
        const std::uint32_t skip = row[at].m_uiSkip;
        row[at].m_uiSkip = static_cast<std::uint32_t>(end - at);
        at += skip;
    }
    return end;
}

std::size_t CSortedIds::firstBehind(const CIdEntries& entries, tRow& row, tNodePlace place)
{
    const std::uint64_t key = entries.places().key4Place(place, m_uiBase);
    std::size_t begin = 0;
    std::size_t end = row.size();
    while (begin < end)
    {
        const std::size_t middle = begin + (end - begin) / 2;
        const std::size_t at = living(entries, row, middle);
        if (at < end)
        {
            const tSorted& asked = row[at];
            const bool isBehind = asked.m_ullKey != key
                                      ? key < asked.m_ullKey
                                      : isTiedBefore(entries, place, entries[asked.m_uiEntry].m_tPlace);
            if (!isBehind)
            {
                begin = at + 1;
                continue;
            }
        }
        end = middle;
    }
    return living(entries, row, begin);
}

std::uint32_t CSameIds::first(const CIdEntries& entries, tNodePlace container, std::uint32_t order)
{
    std::uint32_t found = CIdEntries::s_cuiNone;
    std::size_t at = m_vFresh.size();
    const std::size_t end = at > s_cnFew ? at - s_cnFew : 0;
    for (; at > end; --at)
    {
        const std::uint32_t entry = m_vFresh[at - 1];
        if (entries[entry].m_uiOrder < order)
            return found;  // all others are older still
        if (entries.isLiving(entry))
            takeFirst(entries, entry, found);
    }
    if (at != 0)
    {
        if (m_pSorted == nullptr)
            m_pSorted = std::make_unique<CSortedIds>();
        m_pSorted->add(entries, m_vFresh);
        m_vFresh.clear();
    }
    if (m_pSorted == nullptr || m_pSorted->newest() < order)
        return found;
    const std::uint32_t sorted = m_pSorted->first(entries, container, order);
    if (sorted != CIdEntries::s_cuiNone)
        takeFirst(entries, sorted, found);
    return found;
}

}  // namespace murv::detail

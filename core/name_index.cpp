// core/name_index.cpp - finding members of large field sets by name.
//
// Removing an entry closes the gap instead of leaving a mark, so that look-ups stay short however much changes. Names
// are hashed eight bytes at a time: byte by byte, finding one takes 1.3 to 1.5 times as long, and adding one 1.2 times.
#include "core/name_index.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/memory/heap_block.h"
#include "core/memory/large_block.h"
#include "core/text/wide_math.h"
#include "core/text/word_bytes.h"

namespace murv::detail
{

namespace
{
constexpr std::uint64_t s_cullMixA = 0x9E3779B97F4A7C15;  // 2^64 divided by the golden ratio
constexpr std::uint64_t s_cullMixB = 0xD6E8FEB86659FD93;  // odd, with as many ones as zeros

std::uint64_t mix(std::uint64_t a, std::uint64_t b) noexcept
{
    const tWide128 product = multiplyWide(a, b);
    return product.m_ullHigh ^ product.m_ullLow;
}

/// Differs from process to process: by the layout of its memory, and by the time of the first index.
std::uint64_t makeSeed() noexcept
{
    const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    return mix(reinterpret_cast<std::uintptr_t>(&now) ^ s_cullMixA, now ^ s_cullMixB) ^
           reinterpret_cast<std::uintptr_t>(&makeSeed);
}

/// Position of the first member after `position` that has the same name, or s_cuiNone.
std::uint32_t findAfter(const CFieldVector& members, std::uint32_t position) noexcept
{
    const std::string_view name = tFieldAccess::name(members.at(position));
    for (std::uint32_t i = position + 1; i < members.count();)
    {
        const CFieldVector::tRun part = members.run(i);
        for (const CFields* node = part.m_pBegin; node != part.m_pEnd; ++node, ++i)
        {
            if (tFieldAccess::isNamed(*node, name.data(), static_cast<unsigned int>(name.size())))
                return i;
        }
    }
    return CNameIndex::s_cuiNone;
}
}  // namespace

std::uint32_t hash4Name(const char* name, unsigned int length) noexcept
{
    static const std::uint64_t seed = makeSeed();
    std::uint64_t state = seed ^ length;
    for (; length > 8; name += 8, length -= 8)
        state = mix(state ^ loadWord(name), s_cullMixB);
    state = mix(state ^ pack4Short(name, length), s_cullMixA);
    return static_cast<std::uint32_t>(state ^ (state >> 32)) >> 1;  // 31 bits: the index uses the top one as a flag
}

CNameIndex::~CNameIndex()
{
    clear();
}

void CNameIndex::clear() noexcept
{
    freeLarge(m_pTable, tableSize());
    m_pTable = nullptr;
    m_uiMask = m_uiUsed = 0;
    dropLinks();
}

bool CNameIndex::build(const CFieldVector& members) noexcept
{
    clear();
    std::uint64_t room = 16;
    while (room * 3 / 4 <= members.count())
        room *= 2;
    if (!resize(room))
        return false;
    for (std::uint32_t i = 0; i < members.count(); ++i)
    {
        const std::string_view name = tFieldAccess::name(members.at(i));
        if (!name.empty() && !insert(members, i, hash4Name(name.data(), static_cast<unsigned int>(name.size()))))
            return false;
    }
    return true;
}

std::uint32_t CNameIndex::locate(const CFieldVector& members, std::string_view name, std::uint32_t hash) const noexcept
{
    for (std::uint32_t at = hash & m_uiMask;; at = (at + 1) & m_uiMask)
    {
        const tEntry& entry = m_pTable[at];
        if (entry.m_uiPosition == s_cuiNone)
            return s_cuiNone;
        if ((entry.m_uiHash & ~s_cuiShared) == hash &&
            tFieldAccess::isNamed(members.at(entry.m_uiPosition), name.data(), static_cast<unsigned int>(name.size())))
            return at;
    }
}

std::uint32_t CNameIndex::find(const CFieldVector& members, const char* name, unsigned int length,
                               std::uint32_t hash) const noexcept
{
    const std::uint32_t at = locate(members, {name, length}, hash);
    return at == s_cuiNone ? s_cuiNone : m_pTable[at].m_uiPosition;
}

bool CNameIndex::insert(const CFieldVector& members, std::uint32_t position, std::uint32_t hash) noexcept
{
    const std::uint32_t at = locate(members, tFieldAccess::name(members.at(position)), hash);
    if (at != s_cuiNone)
    {
        tEntry& entry = m_pTable[at];
        if (position == entry.m_uiPosition)
            return true;
        entry.m_uiHash |= s_cuiShared;
        if (m_pLinks != nullptr && reserveLinks(members.count()))
            meld(entry.m_uiPosition, position);
        if (position < entry.m_uiPosition)
            entry.m_uiPosition = position;
        return true;
    }
    const std::uint64_t room = std::uint64_t{m_uiMask} + 1;
    if (m_uiUsed >= room * 3 / 4 && !resize(room * 2))
        return false;
    place({hash, position});
    return true;
}

void CNameIndex::remove(const CFieldVector& members, std::uint32_t position, std::uint32_t hash, bool erased) noexcept
{
    std::uint32_t at = hash & m_uiMask;
    while (m_pTable[at].m_uiPosition != position)
    {
        if (m_pTable[at].m_uiPosition == s_cuiNone)
        {
            if (m_pLinks != nullptr)
                cut(position);
            return;  // an earlier member has this name
        }
        at = (at + 1) & m_uiMask;
    }
    std::uint32_t next = s_cuiNone;
    if ((m_pTable[at].m_uiHash & s_cuiShared) != 0)
    {
        if (m_pLinks == nullptr && !erased)
            link(members);
        next = m_pLinks != nullptr ? takeTop(position) : findAfter(members, position);
    }
    if (next == s_cuiNone)
        freeEntry(at);
    else
        m_pTable[at].m_uiPosition = next;
}

void CNameIndex::freeEntry(std::uint32_t hole) noexcept
{
    --m_uiUsed;
    // Close the gap, so that no probing stops short: an entry moves back unless its own place is after the hole.
    for (std::uint32_t at = (hole + 1) & m_uiMask; m_pTable[at].m_uiPosition != s_cuiNone; at = (at + 1) & m_uiMask)
    {
        const std::uint32_t own = m_pTable[at].m_uiHash & m_uiMask;
        if (((at - own) & m_uiMask) < ((at - hole) & m_uiMask))
            continue;
        m_pTable[hole] = m_pTable[at];
        hole = at;
    }
    m_pTable[hole].m_uiPosition = s_cuiNone;
}

// Each heap begins as a row of its members in order, the cheapest form for renaming them from the front.
void CNameIndex::link(const CFieldVector& members) noexcept
{
    if (!reserveLinks(members.count()))
        return;
    for (std::uint32_t i = members.count(); i-- > 0;)
    {
        const std::string_view name = tFieldAccess::name(members.at(i));
        if (name.empty())
            continue;
        const tEntry& entry =
            m_pTable[locate(members, name, hash4Name(name.data(), static_cast<unsigned int>(name.size())))];
        if (entry.m_uiPosition == i)
            continue;
        const std::uint32_t row = std::exchange(m_pLinks[entry.m_uiPosition].m_uiChild, i);
        m_pLinks[i] = {row, s_cuiNone, entry.m_uiPosition};
        if (row != s_cuiNone)
            m_pLinks[row].m_uiBefore = i;
    }
}

/// \return false, with all heaps dropped, when memory runs out.
bool CNameIndex::reserveLinks(std::uint32_t count) noexcept
{
    if (m_pLinks != nullptr && count <= m_uiLinks)
        return true;
    const std::uint64_t twice = std::min(std::uint64_t{m_uiLinks} * 2, std::uint64_t{s_cuiNone});
    const std::uint32_t room = std::max(count, static_cast<std::uint32_t>(twice));
    auto* const links = static_cast<tLink*>(resizeBlock(m_pLinks, room * sizeof(tLink)));
    if (links == nullptr)
    {
        dropLinks();
        return false;
    }
    std::uninitialized_fill(links + m_uiLinks, links + room, tLink{});
    m_pLinks = links;
    m_uiLinks = room;
    return true;
}

void CNameIndex::dropLinks() noexcept
{
    std::free(m_pLinks);
    m_pLinks = nullptr;
    m_uiLinks = 0;
}

/// Makes one heap of two. \return its top, whose own place is left as it was
std::uint32_t CNameIndex::meld(std::uint32_t a, std::uint32_t b) noexcept
{
    if (b < a)
        std::swap(a, b);
    const std::uint32_t child = std::exchange(m_pLinks[a].m_uiChild, b);
    m_pLinks[b].m_uiNext = child;
    m_pLinks[b].m_uiBefore = a;
    if (child != s_cuiNone)
        m_pLinks[child].m_uiBefore = b;
    return a;
}

/// Makes one heap of `first` and all after it: first in pairs, then of the pairs, beginning with the last one.
/// \return its top, or s_cuiNone
std::uint32_t CNameIndex::mergeSiblings(std::uint32_t first) noexcept
{
    std::uint32_t pairs = s_cuiNone;
    while (first != s_cuiNone)
    {
        std::uint32_t top = first;
        const std::uint32_t other = m_pLinks[top].m_uiNext;
        first = s_cuiNone;
        if (other != s_cuiNone)
        {
            first = m_pLinks[other].m_uiNext;
            top = meld(top, other);
        }
        m_pLinks[top].m_uiNext = pairs;
        pairs = top;
    }
    if (pairs == s_cuiNone)
        return s_cuiNone;
    std::uint32_t top = pairs;
    pairs = m_pLinks[top].m_uiNext;
    while (pairs != s_cuiNone)
    {
        const std::uint32_t next = m_pLinks[pairs].m_uiNext;
        top = meld(top, pairs);
        pairs = next;
    }
    m_pLinks[top].m_uiNext = m_pLinks[top].m_uiBefore = s_cuiNone;
    return top;
}

/// Takes the top out of its heap. \return the new top, or s_cuiNone
std::uint32_t CNameIndex::takeTop(std::uint32_t position) noexcept
{
    return mergeSiblings(std::exchange(m_pLinks[position], tLink{}).m_uiChild);
}

/// Takes a member that is not the top out of its heap; those below it take its place.
void CNameIndex::cut(std::uint32_t position) noexcept
{
    const tLink gone = std::exchange(m_pLinks[position], tLink{});
    const std::uint32_t below = mergeSiblings(gone.m_uiChild);
    if (below != s_cuiNone)
    {
        m_pLinks[below].m_uiNext = gone.m_uiNext;
        m_pLinks[below].m_uiBefore = gone.m_uiBefore;
    }
    const std::uint32_t instead = below != s_cuiNone ? below : gone.m_uiNext;
    if (gone.m_uiNext != s_cuiNone)
        m_pLinks[gone.m_uiNext].m_uiBefore = below != s_cuiNone ? below : gone.m_uiBefore;
    tLink& before = m_pLinks[gone.m_uiBefore];
    (before.m_uiChild == position ? before.m_uiChild : before.m_uiNext) = instead;
}

void CNameIndex::shiftAfter(std::uint32_t position) noexcept
{
    dropLinks();  // building them anew costs as much as adjusting them
    for (std::uint64_t at = 0; at <= m_uiMask; ++at)
    {
        tEntry& entry = m_pTable[at];
        if (entry.m_uiPosition != s_cuiNone && entry.m_uiPosition > position)
            --entry.m_uiPosition;
    }
}

bool CNameIndex::resize(std::uint64_t room) noexcept
{
    if (room > s_cuiShared)  // the flag takes the top bit of a hash; the others choose the place
    {
        clear();
        return false;
    }
    tEntry* const table = static_cast<tEntry*>(allocateLarge(room * sizeof(tEntry)));
    if (table == nullptr)
    {
        clear();
        return false;
    }
    std::memset(table, 0xFF, static_cast<std::size_t>(room) * sizeof(tEntry));
    tEntry* const before = m_pTable;
    const std::uint64_t beforeSize = tableSize();
    const std::uint64_t beforeRoom = before == nullptr ? 0 : std::uint64_t{m_uiMask} + 1;
    m_pTable = table;
    m_uiMask = static_cast<std::uint32_t>(room - 1);
    m_uiUsed = 0;
    for (std::uint64_t at = 0; at < beforeRoom; ++at)
    {
        if (before[at].m_uiPosition != s_cuiNone)
            place(before[at]);
    }
    freeLarge(before, beforeSize);
    return true;
}

void CNameIndex::place(tEntry entry) noexcept
{
    std::uint32_t at = entry.m_uiHash & m_uiMask;
    while (m_pTable[at].m_uiPosition != s_cuiNone)
        at = (at + 1) & m_uiMask;
    m_pTable[at] = entry;
    ++m_uiUsed;
}

}  // namespace murv::detail

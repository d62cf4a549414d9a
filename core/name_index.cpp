// core/name_index.cpp - finding members of large field sets by name.
//
// Removing closes the gap behind it instead of leaving a mark, so that look-ups stay short however much changes.
#include "core/name_index.h"

#include <chrono>
#include <cstdlib>
#include <cstring>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/heap_block.h"
#include "core/wide_math.h"
#include "core/word_bytes.h"

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

/// Differs from process to process by where memory was laid out and when the first index was made.
std::uint64_t makeSeed() noexcept
{
    const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    return mix(reinterpret_cast<std::uintptr_t>(&now) ^ s_cullMixA, now ^ s_cullMixB) ^
           reinterpret_cast<std::uintptr_t>(&makeSeed);
}
}  // namespace

std::uint32_t hash4Name(const char* name, unsigned int length) noexcept
{
    static const std::uint64_t seed = makeSeed();
    std::uint64_t state = seed ^ length;
    for (; length > 8; name += 8, length -= 8)
        state = mix(state ^ loadWord(name), s_cullMixB);
    state = mix(state ^ pack4Short(name, length), s_cullMixA);
    return static_cast<std::uint32_t>(state ^ (state >> 32)) >> 1;  // 31 bits: the index keeps a flag in the top one
}

CNameIndex::~CNameIndex()
{
    clear();
}

void CNameIndex::clear() noexcept
{
    std::free(m_pTable);
    m_pTable = nullptr;
    m_uiMask = m_uiUsed = 0;
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

std::uint32_t CNameIndex::find(const CFieldVector& members, const char* name, unsigned int length,
                               std::uint32_t hash) const noexcept
{
    for (std::uint32_t at = hash & m_uiMask;; at = (at + 1) & m_uiMask)
    {
        const tEntry& entry = m_pTable[at];
        if (entry.m_uiPosition == s_cuiNone)
            return s_cuiNone;
        if ((entry.m_uiHash & ~s_cuiShared) == hash &&
            tFieldAccess::isNamed(members.at(entry.m_uiPosition), name, length))
            return entry.m_uiPosition;
    }
}

bool CNameIndex::insert(const CFieldVector& members, std::uint32_t position, std::uint32_t hash) noexcept
{
    const std::string_view name = tFieldAccess::name(members.at(position));
    for (std::uint32_t at = hash & m_uiMask; m_pTable[at].m_uiPosition != s_cuiNone; at = (at + 1) & m_uiMask)
    {
        tEntry& entry = m_pTable[at];
        if ((entry.m_uiHash & ~s_cuiShared) != hash || tFieldAccess::name(members.at(entry.m_uiPosition)) != name)
            continue;
        if (position == entry.m_uiPosition)
            return true;
        entry.m_uiHash |= s_cuiShared;
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

bool CNameIndex::remove(std::uint32_t position, std::uint32_t hash) noexcept
{
    std::uint32_t hole = hash & m_uiMask;
    while (m_pTable[hole].m_uiPosition != position)
    {
        if (m_pTable[hole].m_uiPosition == s_cuiNone)
        {
            return true;  // not entered: an earlier member has this name
        }
        hole = (hole + 1) & m_uiMask;
    }
    if ((m_pTable[hole].m_uiHash & s_cuiShared) != 0)
        return false;
    --m_uiUsed;
    // Close the gap, so that no probing stops short: an entry moves back unless its own place lies behind the hole.
    for (std::uint32_t at = (hole + 1) & m_uiMask; m_pTable[at].m_uiPosition != s_cuiNone; at = (at + 1) & m_uiMask)
    {
        const std::uint32_t own = m_pTable[at].m_uiHash & m_uiMask;
        if (((at - own) & m_uiMask) < ((at - hole) & m_uiMask))
            continue;
        m_pTable[hole] = m_pTable[at];
        hole = at;
    }
    m_pTable[hole].m_uiPosition = s_cuiNone;
    return true;
}

void CNameIndex::shiftBehind(std::uint32_t position) noexcept
{
    for (std::uint64_t at = 0; at <= m_uiMask; ++at)
    {
        tEntry& entry = m_pTable[at];
        if (entry.m_uiPosition != s_cuiNone && entry.m_uiPosition > position)
            --entry.m_uiPosition;
    }
}

bool CNameIndex::resize(std::uint64_t room) noexcept
{
    if (room > s_cuiShared)  // places are told by the bits below the flag
    {
        clear();
        return false;
    }
    tEntry* const table = static_cast<tEntry*>(allotBlock(room * sizeof(tEntry)));
    if (table == nullptr)
    {
        clear();
        return false;
    }
    std::memset(table, 0xFF, room * sizeof(tEntry));
    tEntry* const before = m_pTable;
    const std::uint64_t beforeRoom = before == nullptr ? 0 : std::uint64_t{m_uiMask} + 1;
    m_pTable = table;
    m_uiMask = static_cast<std::uint32_t>(room - 1);
    m_uiUsed = 0;
    for (std::uint64_t at = 0; at < beforeRoom; ++at)
    {
        if (before[at].m_uiPosition != s_cuiNone)
            place(before[at]);
    }
    std::free(before);
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

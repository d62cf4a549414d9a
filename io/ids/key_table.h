// io/ids/key_table.h - a hash map with integer keys, for what a load remembers.
//
// Open addressing in one block: a look-up touches one place in memory, and nothing is allocated for each key. The hash
// is seeded, so that a document cannot choose keys that collide.
#pragma once

#include <cstdint>
#include <vector>

#include "core/name_index.h"

namespace murv::detail
{

/// Keys are never removed. A key with all bits set marks a free slot and cannot be entered.
template <typename tKey, typename tValue>
class CKeyTable
{
public:
    /// Removes all. A large block is freed, so that clearing after one large load does not slow down all later ones.
    void clear()
    {
        if (m_vEntry.size() > s_cnKept)
            m_vEntry = {};
        else
            m_vEntry.assign(m_vEntry.size(), {});
        m_nUsed = 0;
    }
    tValue* find(tKey key)
    {
        if (m_vEntry.empty())
            return nullptr;
        tEntry& entry = m_vEntry[slot(key)];
        return entry.m_tKey == key ? &entry.m_tValue : nullptr;
    }
    const tValue* find(tKey key) const
    {
        return const_cast<CKeyTable*>(this)->find(key);
    }
    /// The value of the key; a new key gets `fresh`. The reference is valid until the next call. Throws std::bad_alloc.
    tValue& enter(tKey key, const tValue& fresh, bool& isNew)
    {
        if (m_nUsed * 4 >= m_vEntry.size() * 3)
            grow();
        tEntry& entry = m_vEntry[slot(key)];
        isNew = entry.m_tKey != key;
        if (isNew)
        {
            entry = {key, fresh};
            ++m_nUsed;
        }
        return entry.m_tValue;
    }

private:
    static constexpr tKey s_ctFree = static_cast<tKey>(-1);
    static constexpr std::size_t s_cnFirstRoom = 16;
    static constexpr std::size_t s_cnKept = 1024;

    struct tEntry
    {
        tKey m_tKey = s_ctFree;
        tValue m_tValue{};
    };

    /// The slot that holds the key, or the free one where it would be entered.
    std::size_t slot(tKey key) const
    {
        std::uint64_t state = (key ^ m_ullSeed) * 0x9E3779B97F4A7C15;
        state = (state ^ state >> 32) * 0xD6E8FEB86659FD93;
        const std::size_t mask = m_vEntry.size() - 1;
        std::size_t at = static_cast<std::size_t>(state >> 24) & mask;
        while (m_vEntry[at].m_tKey != key && m_vEntry[at].m_tKey != s_ctFree)
            at = (at + 1) & mask;
        return at;
    }
    void grow()
    {
        CKeyTable wider;
        wider.m_vEntry.resize(m_vEntry.empty() ? s_cnFirstRoom : m_vEntry.size() * 2);
        for (const tEntry& entry : m_vEntry)
        {
            if (entry.m_tKey != s_ctFree)
                wider.m_vEntry[wider.slot(entry.m_tKey)] = entry;
        }
        m_vEntry.swap(wider.m_vEntry);
    }

    // The hash of names is seeded once per process; the hash of one byte serves as the seed here.
    std::uint64_t m_ullSeed = hash4Name("#", 1) * std::uint64_t{0x100000001};
    std::size_t m_nUsed = 0;
    std::vector<tEntry> m_vEntry;
};

}  // namespace murv::detail

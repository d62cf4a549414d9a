// ber/seen_ids.h - where each ID of a body was last met.
//
// Records come in document order, so that the nodes below an open container are those met since it began: an ID is
// there exactly when its last place is not before the container's.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/name_index.h"

namespace murv::detail
{

/// A hash table with open addressing. The hash is seeded, so that IDs cannot be chosen to collide.
class CSeenIds
{
public:
    static constexpr std::size_t s_cnNone = ~std::size_t{0};

    /// The offset at which the ID (not 0) was last entered, or s_cnNone.
    std::size_t find(std::uint32_t id) const noexcept
    {
        if (m_vEntry.empty())
            return s_cnNone;
        const tEntry& entry = m_vEntry[place(id)];
        return entry.m_uiID == 0 ? s_cnNone : entry.m_uiOffset;
    }
    /// Enters an ID (not 0). Throws std::bad_alloc.
    void enter(std::uint32_t id, std::size_t offset)
    {
        if (m_nUsed * 4 >= m_vEntry.size() * 3)
            grow();
        tEntry& entry = m_vEntry[place(id)];
        m_nUsed += entry.m_uiID == 0 ? 1 : 0;
        entry = {id, static_cast<std::uint32_t>(offset)};
    }

private:
    struct tEntry
    {
        std::uint32_t m_uiID = 0;  // 0: free
        std::uint32_t m_uiOffset = 0;
    };
    static constexpr std::size_t s_cnFirstRoom = 64;

    std::size_t place(std::uint32_t id) const noexcept
    {
        const std::size_t mask = m_vEntry.size() - 1;
        const std::uint64_t mixed = (id ^ m_ullSeed) * 0x9E3779B97F4A7C15U;
        auto at = static_cast<std::size_t>(((mixed ^ (mixed >> 29)) * 0xD6E8FEB86659FD93U) >> 32) & mask;
        while (m_vEntry[at].m_uiID != 0 && m_vEntry[at].m_uiID != id)
            at = (at + 1) & mask;
        return at;
    }
    void grow()
    {
        std::vector<tEntry> before(m_vEntry.empty() ? s_cnFirstRoom : m_vEntry.size() * 2);
        before.swap(m_vEntry);
        for (const tEntry& entry : before)
        {
            if (entry.m_uiID != 0)
                m_vEntry[place(entry.m_uiID)] = entry;
        }
    }

    std::vector<tEntry> m_vEntry;  // as many as a power of two, or none
    std::size_t m_nUsed = 0;
    // The hash of names is seeded once per process; that of one byte serves as the seed here.
    std::uint64_t m_ullSeed = hash4Name("#", 1) * std::uint64_t{0x100000001};
};

}  // namespace murv::detail

// core/name_index.h - finds members of a large field set by name.
//
// A hash table of positions beside the members, made when a set grows large. It holds the first member of each name,
// and marks the names that later ones have, too, so that what it finds is always what a scan from the front finds. The
// hash is seeded once per process: a document cannot be written to make all its names collide.
#pragma once

#include <cstdint>

#include "murv/fields.h"

namespace murv
{

namespace detail
{

std::uint32_t hash4Name(const char* name, unsigned int length) noexcept;

/// Open addressing with linear probing; at most three quarters full.
class CNameIndex
{
public:
    static constexpr std::uint32_t s_cuiNone = 0xFFFFFFFF;

    CNameIndex() = default;
    CNameIndex(const CNameIndex&) = delete;
    CNameIndex& operator=(const CNameIndex&) = delete;
    ~CNameIndex();

    /// Enters all members. \return false, with the index empty, when memory runs out.
    bool build(const CFieldVector& members) noexcept;
    /// Position of the first member of that name, or s_cuiNone.
    std::uint32_t find(const CFieldVector& members, const char* name, unsigned int length,
                       std::uint32_t hash) const noexcept;
    /// Enters the named member at `position`. \return false when memory runs out; the index is then of no use.
    bool insert(const CFieldVector& members, std::uint32_t position, std::uint32_t hash) noexcept;
    /// Forgets the member at `position`, whose name is still in place.
    /// \return false when a later member of that name now comes first, which only a new build finds.
    bool remove(std::uint32_t position, std::uint32_t hash) noexcept;
    /// Counts down all positions behind one that was erased.
    void shiftBehind(std::uint32_t position) noexcept;

private:
    struct tEntry
    {
        std::uint32_t m_uiHash;      // without the top bit, which tells that later members have the name, too
        std::uint32_t m_uiPosition;  // s_cuiNone: free
    };
    static constexpr std::uint32_t s_cuiShared = 0x80000000;

    bool resize(std::uint64_t room) noexcept;
    void place(tEntry entry) noexcept;
    void clear() noexcept;

    tEntry* m_pTable = nullptr;  // owned
    std::uint32_t m_uiMask = 0;
    std::uint32_t m_uiUsed = 0;
};

}  // namespace detail
}  // namespace murv

// core/name_index.h - finds members of a large field set by name.
//
// A hash table of positions, made when a set grows large. It holds the first member of each name, so that it finds what
// a scan from the front finds, and marks names that further members have. The hash is seeded once per process: nobody
// can write a document all of whose names collide.
//
// When the first of several members of one name is renamed, the next one must be found. From then on the members of
// each name form a pairing heap by position, and the table holds the top of each heap. Without them each such rename
// would cost a scan. Most sets never need them and have none.
#pragma once

#include <cstdint>
#include <string_view>

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
    /// Forgets the member at `position`, whose name is still in place; all named members must be entered. O(log n)
    /// among n equal names, on average over many calls; without memory for the heaps a scan.
    /// \param erased  it is about to be erased, which moves all members after it: the next one of that name may be
    ///                found by a scan of these
    void remove(const CFieldVector& members, std::uint32_t position, std::uint32_t hash, bool erased) noexcept;
    /// Lowers all positions after one that was erased by one.
    void shiftAfter(std::uint32_t position) noexcept;

private:
    struct tEntry
    {
        std::uint32_t m_uiHash;      // the top bit is s_cuiShared
        std::uint32_t m_uiPosition;  // s_cuiNone: free
    };
    static constexpr std::uint32_t s_cuiShared = 0x80000000;  // later members have the name, too

    /// A member's place in the heap of its name; all are s_cuiNone in a heap of one.
    struct tLink
    {
        std::uint32_t m_uiChild = s_cuiNone;   // first of the members below it
        std::uint32_t m_uiNext = s_cuiNone;    // next member below the same one
        std::uint32_t m_uiBefore = s_cuiNone;  // the member whose child or next this is
    };

    /// In bytes.
    std::uint64_t tableSize() const noexcept
    {
        return (std::uint64_t{m_uiMask} + 1) * sizeof(tEntry);
    }
    bool resize(std::uint64_t room) noexcept;
    void place(tEntry entry) noexcept;
    void freeEntry(std::uint32_t hole) noexcept;
    void clear() noexcept;
    /// The entry of that name, or s_cuiNone.
    std::uint32_t locate(const CFieldVector& members, std::string_view name, std::uint32_t hash) const noexcept;

    void link(const CFieldVector& members) noexcept;
    bool reserveLinks(std::uint32_t count) noexcept;
    void dropLinks() noexcept;
    std::uint32_t meld(std::uint32_t a, std::uint32_t b) noexcept;
    std::uint32_t mergeSiblings(std::uint32_t first) noexcept;
    std::uint32_t takeTop(std::uint32_t position) noexcept;
    void cut(std::uint32_t position) noexcept;

    tEntry* m_pTable = nullptr;  // owned
    std::uint32_t m_uiMask = 0;
    std::uint32_t m_uiUsed = 0;
    tLink* m_pLinks = nullptr;  // owned, by position; null while there are no heaps
    std::uint32_t m_uiLinks = 0;
};

}  // namespace detail
}  // namespace murv

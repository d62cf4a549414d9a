// io/base/same_ids.h - the nodes of one ID, when a document gives it to several.
//
// Asked for is the first in the document of those below an open container. Mostly the few that were made last answer
// that. The others are sorted only when they have to be, in rows of growing size, so that neither many additions in any
// order nor many questions take more than a few steps each.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "io/base/id_entries.h"

namespace murv::detail
{

/// Entries in document order.
class CSortedIds
{
public:
    /// Adds the living ones of some entries, which were made after all others.
    void add(const CIdEntries& entries, const std::vector<std::uint32_t>& fresh);
    /// The latest moment at which one was made.
    std::uint32_t newest() const
    {
        return m_uiNewest;
    }
    /// The first living one that was made at `order` or later, or CIdEntries::s_cuiNone.
    /// \param container  where all those lie below; its place has no set when it is the outermost one
    std::uint32_t first(const CIdEntries& entries, tNodePlace container, std::uint32_t order);

private:
    /// Entries with equal keys are told apart by their places.
    struct tSorted
    {
        std::uint64_t m_ullKey;
        std::uint32_t m_uiEntry;
        std::uint32_t m_uiSkip = 1;  // of a dead one: from here on so many are dead
    };
    using tRow = std::vector<tSorted>;

    static constexpr std::size_t s_cnFirstRow = 128;  // the most of the first row...
    static constexpr std::size_t s_cnRowFactor = 16;  // ...and the others may be so many times the one before
    static constexpr int s_ciTries = 3;               // to find a base for a row

    void sort(const CIdEntries& entries, tRow& row);
    void setBase(const CIdEntries& entries, std::uint32_t base);
    void fillKeys(const CIdEntries& entries, tRow& row) const;
    void merge(const CIdEntries& entries, const tRow& from, tRow& into);
    bool isBefore(const CIdEntries& entries, const tSorted& a, const tSorted& b);
    bool isTiedBefore(const CIdEntries& entries, tNodePlace a, tNodePlace b);
    static std::size_t living(const CIdEntries& entries, tRow& row, std::size_t at);
    std::size_t firstBehind(const CIdEntries& entries, tRow& row, tNodePlace place);

    std::vector<tRow> m_vRow;
    std::uint32_t m_uiNewest = 0;
    std::uint32_t m_uiBase = s_cuiNoPlace;  // the container that keys begin at
    std::size_t m_nTies = 0;                // comparisons that keys did not decide, since the base was chosen
    tNodePlace m_tTied[2];                  // of the last one
};

class CSameIds
{
public:
    /// Adds an entry that was made after all others.
    void add(std::uint32_t entry)
    {
        m_vFresh.push_back(entry);
    }
    /// As in the sorted ones.
    std::uint32_t first(const CIdEntries& entries, tNodePlace container, std::uint32_t order);

private:
    static constexpr std::size_t s_cnFew = 8;  // so many fresh ones are compared one by one

    std::vector<std::uint32_t> m_vFresh;  // not sorted yet, in the order of making
    std::unique_ptr<CSortedIds> m_pSorted;
};

}  // namespace murv::detail

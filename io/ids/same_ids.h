// io/ids/same_ids.h - the nodes of one ID, when a document gives it to several.
//
// Asked for is the first in the document of those made since some moment. Mostly few are, and these are compared. For
// the others there is a tree over all in the order of making, which knows the first of every two, four, eight and so
// on; it is brought up to date only where a question leads. So many additions, questions and losses, in whatever order,
// take a few comparisons each, and at most as many as the tree is high.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "io/ids/id_entries.h"

namespace murv::detail
{

class CSameIds
{
public:
    /// Adds an entry that was made after all others.
    void add(std::uint32_t entry)
    {
        m_vEntry.push_back(entry);
    }
    /// The first living one of those from `since` on, or CIdEntries::s_cuiNone.
    std::uint32_t first(const CIdEntries& entries, std::uint32_t since);

private:
    using tLevel = std::vector<std::uint32_t>;

    static constexpr std::ptrdiff_t s_cnFew = 8;  // so many are compared one by one

    std::uint32_t firstOfRun(const CIdEntries& entries, std::size_t begin, std::size_t end);
    void grow(const CIdEntries& entries);
    std::uint32_t refresh(const CIdEntries& entries, std::size_t level, std::size_t at);
    std::uint32_t firstBelow(const CIdEntries& entries, std::size_t level, std::size_t at);

    tLevel m_vEntry;               // all, in the order of making
    std::vector<tLevel> m_vFirst;  // of every two entries, of every two of those, and so on; may be out of date
};

}  // namespace murv::detail

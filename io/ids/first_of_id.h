// io/ids/first_of_id.h - of the nodes with one ID, the first in the document.
//
// Usually there is one. A hostile document has many, asks for the first again and again, and destroys it in between:
// a heap answers that without comparing all. docs/ids.md has a drawing.
#pragma once

#include <cstdint>

#include "io/ids/id_entries.h"

namespace murv::detail
{

/// The entries of one ID, as a list of heaps; the newest heap comes first.
///
/// A question is about the entries made since some moment, namely since the innermost open container was opened. Those
/// entries are put into one heap for good: containers end in the reverse order of their beginning, so that a later
/// question is about all of them (the same container, or one around it) or about none (a container opened later).
class CFirstOfId
{
public:
    /// Adds an entry that was made after all others. Cost: constant.
    void add(CIdEntries& entries, std::uint32_t entry) noexcept
    {
        entries[entry].m_uiNext = m_uiNewest;
        m_uiNewest = entry;
    }
    /// The first living one of the entries from `opened` on, or CIdEntries::s_cuiNone.
    /// Cost: constant for one heap whose root lives, else logarithmic for each entry that was added or has died since.
    std::uint32_t find(CIdEntries& entries, std::uint32_t opened) noexcept;

private:
    std::uint32_t m_uiNewest = CIdEntries::s_cuiNone;  // root of the newest heap; roots are linked by m_uiNext
};

}  // namespace murv::detail

// io/ids/first_of_id.cpp - pairing heaps of entries; the root of a heap comes first in the document.
//
// Entries die in place and are taken out when they reach a root. Only living entries are compared, for another
// container may lie at the place of a dead one by now.
#include "io/ids/first_of_id.h"

#include <utility>

namespace murv::detail
{

namespace
{
constexpr std::uint32_t s_cuiNone = CIdEntries::s_cuiNone;

/// Puts an entry in front of a list.
void push(CIdEntries& entries, std::uint32_t& list, std::uint32_t entry) noexcept
{
    entries[entry].m_uiNext = std::exchange(list, entry);
}

/// Takes the first entry from a list; none when it is empty.
std::uint32_t pop(const CIdEntries& entries, std::uint32_t& list) noexcept
{
    return list == s_cuiNone ? s_cuiNone : std::exchange(list, entries[list].m_uiNext);
}

/// Makes one heap of two, either of which may be none: the root that comes later goes below the other.
std::uint32_t join(CIdEntries& entries, std::uint32_t a, std::uint32_t b) noexcept
{
    if (a == s_cuiNone || b == s_cuiNone)
        return a == s_cuiNone ? b : a;
    if (entries.isBefore(b, a))
        std::swap(a, b);
    push(entries, entries[a].m_uiFirstBelow, b);
    return a;
}

/// Makes one heap of a list of heaps. Joining them in pairs first, and then the pairs, is what keeps heaps flat: one
/// after the other would leave the next root as many heaps below it as this one had.
std::uint32_t joinAll(CIdEntries& entries, std::uint32_t list) noexcept
{
    std::uint32_t pairs = s_cuiNone;
    while (list != s_cuiNone)
    {
        const std::uint32_t a = pop(entries, list);
        push(entries, pairs, join(entries, a, pop(entries, list)));
    }
    std::uint32_t all = s_cuiNone;
    while (pairs != s_cuiNone)
        all = join(entries, all, pop(entries, pairs));
    return all;
}

/// What is left of a heap without the dead entries at its top.
std::uint32_t dropDead(CIdEntries& entries, std::uint32_t heap) noexcept
{
    if (entries.isLiving(heap))
        return heap;
    std::uint32_t open = s_cuiNone;
    std::uint32_t living = s_cuiNone;
    for (push(entries, open, heap); open != s_cuiNone;)
    {
        const std::uint32_t root = pop(entries, open);
        if (entries.isLiving(root))
            push(entries, living, root);
        else
        {
            while (entries[root].m_uiFirstBelow != s_cuiNone)
                push(entries, open, pop(entries, entries[root].m_uiFirstBelow));
        }
    }
    return joinAll(entries, living);
}
}  // namespace

std::uint32_t CFirstOfId::find(CIdEntries& entries, std::uint32_t opened) noexcept
{
    std::uint32_t first = s_cuiNone;
    while (m_uiNewest != s_cuiNone && m_uiNewest >= opened)
        first = join(entries, first, dropDead(entries, pop(entries, m_uiNewest)));
    if (first != s_cuiNone)
        push(entries, m_uiNewest, first);
    return first;
}

}  // namespace murv::detail

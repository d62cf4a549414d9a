// core/tree_walk.h - all nodes of a tree, parents before their members.
//
// The one walk that searching, counting and all other operations use that look at each node once.
#pragma once

#include "core/member_cursor.h"
#include "core/memory/poison.h"
#include "core/memory/walk_stack.h"

namespace murv::detail
{

/// Walks a subtree: `for (CTreeWalk walk(root); const CFields* node = walk.next();)`.
///
/// The root comes first. Throws std::bad_alloc on trees deeper than the memory allows.
template <typename tNode = const CFields>
class CTreeWalk
{
public:
    explicit CTreeWalk(tNode& root) : m_pNext(&root)
    {
    }

    /// The next node, or null after the last one.
    tNode* next()
    {
        if (m_pNext == nullptr && !findNext())
            return nullptr;
        tNode* const node = m_pNext;
        m_pNext = nullptr;
        const CFieldVector* const members = tFieldAccess::members(*node);
        if (members != nullptr && members->count() != 0)
            m_tStack.push(CMemberCursor(members));
        return node;
    }

private:
    bool findNext()
    {
        for (; !m_tStack.empty(); m_tStack.pop())
        {
            m_pNext = m_tStack.top().take();
            if (m_pNext != nullptr)
                return true;
        }
        return false;
    }

    tNode* m_pNext;
    CWalkStack<CMemberCursor> m_tStack;
};

/// Whether `node` lies somewhere below `root`, which itself does not count.
inline bool isBelow(const CFields& root, const CFields& node)
{
    CTreeWalk<> walk(root);
    walk.next();
    while (const CFields* const member = walk.next())
    {
        if (member == &node)
            return true;
    }
    return false;
}

/// The same, at no cost for most nodes: one that is no member lies below no other.
inline bool holds(const CFields& root, const CFields& node)
{
    return tFieldAccess::isMember(node) && memberCount(root) != 0 && isBelow(root, node);
}

/// Whether moving a tree into a node far below itself is found: a full check costs a walk over the moved tree. Decided
/// by how the library is compiled.
#if !defined(NDEBUG) || defined(MURV_ADDRESS_SANITIZER)
inline constexpr bool s_cbMovesAreChecked = true;
#else
inline constexpr bool s_cbMovesAreChecked = false;
#endif

/// As `holds`, but looks at the members and the first nodes below them only, so that moving a finished tree into place
/// does not cost more the larger the tree is.
inline bool holdsNear(const CFields& root, const CFields& node)
{
    constexpr int most = 256;
    if (!tFieldAccess::isMember(node) || memberCount(root) == 0)
        return false;
    if (tFieldAccess::members(root)->isMember(node))
        return true;
    CTreeWalk<> walk(root);
    walk.next();
    for (int looked = 0; looked < most; ++looked)
    {
        const CFields* const below = walk.next();
        if (below == nullptr || below == &node)
            return below != nullptr;
    }
    return false;
}

}  // namespace murv::detail

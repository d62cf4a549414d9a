// tools/node_walk.h - visits all nodes of a tree in document order.
//
// Trees of hand-written programs may be deeper than any call stack, so the walk keeps a stack of its own.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "murv/fields.h"

namespace murv::tool
{

/// Calls `visit(node, depth)` for each node, a container before its members; the depth of the root is 1.
/// \tparam tNode  CFields, or const CFields. `visit` must not add or remove members.
template <typename tNode, typename tVisit>
void forEachNode(tNode& root, tVisit&& visit)
{
    using tIterator = decltype(root.begin());
    std::vector<std::pair<tIterator, tIterator>> open;  // members still to come, of each container around the node
    tNode* node = &root;
    for (;;)
    {
        visit(*node, open.size() + 1);
        if (node->isField() || node->isArray())
            open.emplace_back(node->begin(), node->end());
        while (!open.empty() && open.back().first == open.back().second)
            open.pop_back();
        if (open.empty())
            return;
        node = &*open.back().first++;
    }
}

}  // namespace murv::tool

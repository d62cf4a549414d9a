// tools/node_walk.h - visits all nodes of a tree with their depth.
//
// Trees of hand-written programs may be deeper than any stack; the walk keeps its own.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "murv/fields.h"

namespace murv::tool
{

/// Calls `visit(node, depth)` for each node, a holder before its members; the root's depth is 1.
template <typename tVisit>
void forEachNode(const CFields& root, tVisit&& visit)
{
    std::vector<std::pair<const CFields*, std::size_t>> open{{&root, 1}};
    while (!open.empty())
    {
        const auto [node, depth] = open.back();
        open.pop_back();
        visit(*node, depth);
        for (const CFields& member : *node)
            open.emplace_back(&member, depth + 1);
    }
}

}  // namespace murv::tool

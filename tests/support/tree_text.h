// tests/support/tree_text.h - everything a tree holds, as text.
//
// Written without the library's savers, and without recursion, so that it shows what they or a copy left out.
#pragma once

#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "murv/fields.h"

namespace murv::tests
{

/// One value slot: type and content.
inline std::string describeSlot(const CFields& node, E_ValueKind vk)
{
    const E_DataType dt = node.getDT(vk);
    std::string text = std::to_string(dt);
    if (dt >= DT_bool && dt <= DT_double)
        text += ":" + std::to_string(node.getValueRef(vk).m_ullValue);
    else if (dt == DT_codelist)
        text += node.getValuePtr(vk) == nullptr ? "~" : ":" + node.asString(vk);
    return text;
}

/// One node without its members.
inline std::string describeNode(const CFields& node)
{
    std::string text = "'" + std::string(node.getName(), node.getNameLen()) + "'#" + std::to_string(node.getID()) +
                       "=" + describeSlot(node, VK_actual) + "|" + std::to_string(node.getVK()) +
                       describeSlot(node, VK_fix);
    for (const E_CommentPosition pos : {CP_before, CP_trailing, CP_after})
        text += node.hasComment(pos) ? "<" + node.getCommentCopy(pos) + ">" : "-";
    text += std::to_string(node.getOffsetStart()) + "." + std::to_string(node.getOffsetEnd());
    const tPacketExpInfo pei = node.pkt_GetExp();
    unsigned char bytes[sizeof pei];
    std::memcpy(bytes, &pei, sizeof pei);
    for (const unsigned char byte : bytes)
        text += "," + std::to_string(byte);
    return text + (node.pkt_GetOSA4User() == nullptr ? "" : "+");
}

/// The whole tree, in pre-order, a line for each node.
inline std::string describe(const CFields& root)
{
    std::string text;
    std::vector<std::pair<const CFields*, std::size_t>> open{{&root, 0}};
    while (!open.empty())
    {
        const auto [node, depth] = open.back();
        open.pop_back();
        text += std::string(depth, ' ') + describeNode(*node) + "\n";
        for (unsigned int i = node->getChildCount(); i-- > 0;)
            open.emplace_back(&node->getChildAt(i), depth + 1);
    }
    return text;
}

}  // namespace murv::tests

// tests/support/same_tree.h - whether two trees are the same in every part.
//
// CFields compares values only; loaders and savers must also keep names, IDs, comments, packet expressions and second
// values. The first difference is named by its path.
#pragma once

#include <cstring>
#include <string>
#include <string_view>

#include "murv/fields.h"

namespace murv::tests
{

/// Parts that a comparison looks at besides structure, names and first values.
enum E_SameParts : unsigned int
{
    SP_values = 0,
    SP_ids = 1,
    SP_comments = 2,
    SP_offsets = 4,
    SP_expressions = 8,
    SP_second = 16,
    SP_all = 31,
};

inline std::string_view name4Node(const CFields& node)
{
    return {node.getName(), node.getNameLen()};
}

/// The bytes of one value slot, so that equal NaNs are equal and -0.0 is not 0.0.
inline std::string bytes4Value(const CFields& node, E_ValueKind vk)
{
    const E_DataType type = node.getDT(vk);
    if (type == DT_codelist)
    {
        const char* data = nullptr;
        const unsigned int length = node.getCodePoint(&data, vk);
        return std::string(data == nullptr ? "" : data, length);
    }
    if (type == DT_bool)
        return node.asBool(vk) ? "1" : "0";
    if (type == DT_sint || type == DT_uint || type == DT_double)
    {
        char bytes[8];
        std::memcpy(bytes, node.getValuePtr(vk), sizeof bytes);
        return std::string(bytes, sizeof bytes);
    }
    return {};
}

inline std::string difference4Node(const CFields& a, const CFields& b, unsigned int parts)
{
    if (name4Node(a) != name4Node(b))
        return "name \"" + std::string(name4Node(a)) + "\" / \"" + std::string(name4Node(b)) + "\"";
    if (a.getDT() != b.getDT())
        return "type " + std::to_string(a.getDT()) + " / " + std::to_string(b.getDT());
    if (bytes4Value(a, VK_actual) != bytes4Value(b, VK_actual))
        return "value";
    if ((parts & SP_ids) != 0 && a.getID() != b.getID())
        return "ID " + std::to_string(a.getID()) + " / " + std::to_string(b.getID());
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
    {
        if ((parts & SP_comments) != 0 && (a.hasComment(position) != b.hasComment(position) ||
                                           a.getCommentCopy(position) != b.getCommentCopy(position)))
            return "comment " + std::to_string(position) + " <" + a.getCommentCopy(position) + "> / <" +
                   b.getCommentCopy(position) + ">";
    }
    if ((parts & SP_offsets) != 0 && (a.getOffsetStart() != b.getOffsetStart() || a.getOffsetEnd() != b.getOffsetEnd()))
        return "offsets " + std::to_string(a.getOffsetStart()) + ".." + std::to_string(a.getOffsetEnd()) + " / " +
               std::to_string(b.getOffsetStart()) + ".." + std::to_string(b.getOffsetEnd());
    const tPacketExpInfo peiA = a.pkt_GetExp();
    const tPacketExpInfo peiB = b.pkt_GetExp();
    if ((parts & SP_expressions) != 0 && std::memcmp(&peiA, &peiB, sizeof peiA) != 0)
        return "packet expression";
    if ((parts & SP_second) != 0 && (a.getVK() != b.getVK() || a.getDT(VK_fix) != b.getDT(VK_fix) ||
                                     bytes4Value(a, VK_fix) != bytes4Value(b, VK_fix)))
        return "second value";
    if (a.getChildCount() != b.getChildCount())
        return "member count " + std::to_string(a.getChildCount()) + " / " + std::to_string(b.getChildCount());
    return {};
}

/// "" when the trees are the same, else the path of the first node that differs, and how.
inline std::string difference(const CFields& a, const CFields& b, unsigned int parts = SP_all)
{
    std::string found = difference4Node(a, b, parts);
    if (!found.empty())
        return ": " + found;
    for (unsigned int i = 0; i < a.getChildCount(); ++i)
    {
        found = difference(a.getChildAt(i), b.getChildAt(i), parts);
        if (!found.empty())
            return "/" + std::to_string(i) + found;
    }
    return {};
}

}  // namespace murv::tests

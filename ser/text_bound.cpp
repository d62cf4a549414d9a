// ser/text_bound.cpp - how long the indented text of a node may become.
//
// A test compares the bound with what the layout engine writes.
#include "ser/text_bound.h"

#include <algorithm>
#include <string_view>

#include "core/field_access.h"
#include "core/text/double_text.h"

namespace murv::detail
{

namespace
{

constexpr std::uint64_t s_cullCap = std::uint64_t{1} << 32U;
constexpr std::uint64_t s_cullLines = 3;         // of a name, of its opening and of its closing bracket
constexpr std::uint64_t s_cullExpression = 258;  // with its brackets and a blank
constexpr std::uint64_t s_cullOthers = 64;       // ID, value, brackets, blanks, commas
static_assert(s_cullOthers > 16 + s_cnDoubleTextRoom);

std::uint64_t boundOfQuoted(std::string_view text)
{
    return 2 + 4 * std::uint64_t{text.size()};
}

/// Only the comment before a node has lines that are indented.
std::uint64_t boundOfComments(const CFields& node, std::uint64_t line)
{
    std::uint64_t bound = 0;
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
    {
        const char* const text = node.getCommentPtr(position);
        const std::string_view comment = text == nullptr ? std::string_view() : std::string_view(text);
        const auto lines = static_cast<std::uint64_t>(std::count(comment.begin(), comment.end(), '\n')) + 2;
        bound += comment.size() + lines * (position == CP_before ? line : 1);
    }
    return bound;
}

}  // namespace

std::uint64_t boundOfText(const CFields& node, std::uint64_t indentation)
{
    const std::uint64_t line = 1 + indentation;
    if (line > s_cullCap)
        return s_cullCap;
    std::uint64_t bound = s_cullLines * line + s_cullOthers + boundOfQuoted(tFieldAccess::name(node));
    if (!CFields::pkt_IsNullExp(tFieldAccess::pei(node)))
        bound += s_cullExpression;
    for (const E_ValueKind kind : {VK_actual, VK_fix})
    {
        const tSlot slot = tFieldAccess::slot(node, kind);
        if (slot.m_eType == DT_codelist)
            bound += boundOfQuoted(view4Codes(slot.m_bOwned, slot.m_uValue.m_pData));
    }
    if (node.isComment())
        bound += boundOfComments(node, line);
    return std::min(bound, s_cullCap);
}

}  // namespace murv::detail

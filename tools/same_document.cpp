// tools/same_document.cpp - compares trees, and looks for what a text has beside its tree.
#include "tools/same_document.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "murv/loader.h"
#include "tools/node_walk.h"

namespace murv::tool
{

namespace
{
bool isSameExpression(const CFields& a, const CFields& b)
{
    const tPacketExpInfo first = a.pkt_GetExp();
    const tPacketExpInfo second = b.pkt_GetExp();
    return std::memcmp(&first, &second, sizeof first) == 0;
}

bool isSameNode(const CFields& a, const CFields& b)
{
    if (a.getDT() != b.getDT() || a.getID() != b.getID() || a.getVK() != b.getVK() ||
        std::string_view(a.getName(), a.getNameLen()) != std::string_view(b.getName(), b.getNameLen()) ||
        !isSameExpression(a, b))
        return false;
    if (a.isField() || a.isArray())
        return a.getChildCount() == b.getChildCount();
    if (a.getDT() != DT_double)
        return a == b;
    const double first = a.asDouble();
    const double second = b.asDouble();
    return std::isnan(first) ? std::isnan(second)
                             : std::bit_cast<std::uint64_t>(first) == std::bit_cast<std::uint64_t>(second);
}

bool isSameComment(const CFields& a, const CFields& b)
{
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
    {
        if (a.getCommentCopy(position) != b.getCommentCopy(position))
            return false;
    }
    return true;
}

/// A comment as it is kept: with line feeds.
std::string normalComment(std::string_view comment)
{
    std::string text;
    for (std::size_t i = 0; i < comment.size(); ++i)
    {
        if (comment[i] != '\r')
            text += comment[i];
        else if (i + 1 == comment.size() || comment[i + 1] != '\n')
            text += '\n';
    }
    return text;
}

std::string_view partOf(std::string_view text, tRange range)
{
    return text.substr(range.m_nBegin, range.m_nEnd - range.m_nBegin);
}

/// How often each comment is in a tree. A node may have several in one place.
std::unordered_map<std::string, std::size_t> countComments(const CFields& tree)
{
    std::unordered_map<std::string, std::size_t> counts;
    forEachNode(tree, [&counts](const CFields& node, std::size_t /*depth*/) {
        for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
        {
            if (!node.hasComment(position))
                continue;
            const std::string_view text(node.getCommentPtr(position), node.getCommentLen(position));
            for (const tFoundComment& found : findComments(text))
                ++counts[normalComment(partOf(text, found.m_tRange))];
        }
    });
    return counts;
}

/// The first comment or remark of a text that its tree lacks. Trees hold no remarks.
std::optional<tFoundComment> findLostComment(std::string_view text, const CFields& tree)
{
    const std::vector<tFoundComment> wanted = findComments(text);
    if (wanted.empty())
        return std::nullopt;
    std::unordered_map<std::string, std::size_t> left = countComments(tree);
    for (const tFoundComment& found : wanted)
    {
        if (found.m_bRemark)
            return found;
        std::size_t& count = left[normalComment(partOf(text, found.m_tRange))];
        if (count == 0)
            return found;
        --count;
    }
    return std::nullopt;
}
}  // namespace

bool isSameDocument(const CFields& a, const CFields& b, bool comments)
{
    std::vector<std::pair<const CFields*, const CFields*>> open{{&a, &b}};
    while (!open.empty())
    {
        const auto [first, second] = open.back();
        open.pop_back();
        if (!isSameNode(*first, *second) || (comments && !isSameComment(*first, *second)))
            return false;
        for (unsigned int i = first->getChildCount(); i != 0; --i)
            open.emplace_back(&first->getChildAt(i - 1), &second->getChildAt(i - 1));
    }
    return true;
}

bool isTextOf(std::string_view text, unsigned int flags, const CFields& tree, bool comments)
{
    CLoader4SER loader(flags | LCBC_DUPLICATE);
    CFields again;
    return loader.loading(text, again) && isSameDocument(tree, again, comments);
}

E_ExitCode checkComments(const tInput& input, const CFields& tree, CDiagnostics& diagnostics)
{
    const std::optional<tFoundComment> lost = findLostComment(input.text(), tree);
    if (!lost)
        return EC_done;
    const char* const message = lost->m_bRemark ? "this remark in a packet expression would be lost"
                                                : "this comment would be lost: a value keeps one comment on its line";
    return diagnostics.failAt(input.m_strName, input.text(), lost->m_tRange, message, EC_malformed);
}

}  // namespace murv::tool

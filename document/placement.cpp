// document/placement.cpp - indentation, blanks around "=", and where brackets open.
#include "document/placement.h"

#include <algorithm>

#include "document/comment_text.h"
#include "syntax/token_scanner.h"

namespace murv::detail
{

namespace
{

constexpr std::string_view s_cstrvLineEnds = "\r\n";
constexpr std::size_t s_cnNeighbours = 8;  // that are looked at for one that is like the new member

/// Whether "=" touches the name before it. \return false also when there is no "="
bool isTight(std::string_view head)
{
    CTokenScanner scanner(head);
    const char* end = head.data();
    for (tTokenInfo token = scanner.next(); token.m_eType != TT_end; token = scanner.next())
    {
        if (token.m_eType == TT_assign)
            return token.m_pBegin == end;
        end = token.m_pEnd;
    }
    return false;
}

/// Whether a node is a container on several lines that has a name, so that it shows where brackets open.
bool showsOpening(const tSourceNode& node)
{
    return node.isContainer() && !node.m_strvHead.empty() && lastLineIn(node.m_strvInner).m_bThere;
}

void learnOpening(const tSourceNode& node, tMemberLayout& layout)
{
    layout.m_bOpensOnLine = !hasLineEnd(node.m_strvHead);
}

/// What the members before and after a place show of names and brackets.
void learnFromNeighbours(const CSourceTree& tree, const tSourceNode& container, std::size_t index,
                         tMemberLayout& layout)
{
    const std::size_t begin = index > s_cnNeighbours ? index - s_cnNeighbours : 0;
    const std::size_t end = std::min(container.m_vMember.size(), index + s_cnNeighbours);
    bool isNameSeen = false;
    bool isContainerSeen = false;
    bool isOpeningSeen = false;
    for (std::size_t i = end; i != begin && !isOpeningSeen;)
    {
        const tSourceNode& node = tree[container.m_vMember[--i]];
        if (!isNameSeen && !node.m_strvHead.empty())
            layout.m_bTight = isTight(node.m_strvHead);
        isNameSeen = isNameSeen || !node.m_strvHead.empty();
        if (!isContainerSeen && !node.m_vMember.empty())
            layout.m_bOneLine = !lastLineIn(node.m_strvInner).m_bThere;
        isContainerSeen = isContainerSeen || !node.m_vMember.empty();
        isOpeningSeen = showsOpening(node);
        if (isOpeningSeen)
            learnOpening(node, layout);
    }
    if (!isOpeningSeen && showsOpening(container))
        learnOpening(container, layout);
}

void takeLine(const tSourceNode& node, tMemberLayout& layout)
{
    const tLineBegin line = lastLineIn(node.m_strvBefore);
    layout.m_bInline = !line.m_bThere;
    layout.m_strIndent = line.m_strvIndentation;
}

/// The first line end before a member, which come in the order of the text; without any, one after a member.
std::string firstLineEndOf(const CSourceTree& tree)
{
    for (const auto piece : {&tSourceNode::m_strvBefore, &tSourceNode::m_strvInner, &tSourceNode::m_strvAfter})
    {
        for (std::uint32_t i = CSourceTree::s_cuiRoot; i != tree.size(); ++i)
        {
            if (const std::string_view end = firstLineEndIn(tree[i].*piece); !end.empty())
                return std::string(end);
        }
    }
    return "\n";
}

}  // namespace

bool hasLineEnd(std::string_view text)
{
    return text.find_first_of(s_cstrvLineEnds) != std::string_view::npos;
}

tDocumentLayout tDocumentLayout::of(const CSourceTree& tree)
{
    tDocumentLayout layout{firstLineEndOf(tree), "  "};
    const tSourceNode& root = tree[CSourceTree::s_cuiRoot];
    if (root.m_vMember.empty())
        return layout;
    const std::string_view unit = lastLineIn(tree[root.m_vMember[0]].m_strvBefore).m_strvIndentation;
    if (!unit.empty())
        layout.m_strUnit = unit;
    return layout;
}

tMemberLayout layout4New(const CSourceTree& tree, std::uint32_t container, std::size_t index,
                         const tDocumentLayout& document)
{
    const tSourceNode& node = tree[container];
    tMemberLayout layout{document.m_strLineEnd, {}, document.m_strUnit};
    learnFromNeighbours(tree, node, index, layout);
    if (node.m_vMember.empty())
    {
        const tLineBegin line = lastLineIn(node.m_strvInner);
        layout.m_bInline = container != CSourceTree::s_cuiRoot && !line.m_bThere;
        layout.m_strIndent = std::string(line.m_strvIndentation) + document.m_strUnit;
        return layout;
    }
    const std::size_t neighbour = index == 0 ? 0 : index - 1;
    takeLine(tree[node.m_vMember[neighbour]], layout);
    return layout;
}

tMemberLayout layout4Value(const CSourceTree& tree, const tSourcePlace& place, const tDocumentLayout& document)
{
    tMemberLayout layout{document.m_strLineEnd, {}, document.m_strUnit};
    if (place.m_bRoot)
        return layout;
    const tSourceNode& node = tree[place.m_uiNode];
    learnFromNeighbours(tree, tree[place.m_uiParent], place.m_nIndex, layout);
    if (showsOpening(node))
        learnOpening(node, layout);
    if (!node.m_strvHead.empty())
        layout.m_bTight = isTight(node.m_strvHead);
    takeLine(node, layout);
    return layout;
}

}  // namespace murv::detail

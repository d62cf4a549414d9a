// explorer/layout_map.cpp - walks the document of a layout with a stack of its own.
#include "explorer/layout_map.h"

#include "murv/flags.h"

namespace murv::explorer
{

namespace
{
std::string_view nameOf(const CFields& node)
{
    return {node.getName(), node.getNameLen()};
}

/// A rule is named after what it is about: "@price"; "@" alone is about the field set. "@@" is a name.
bool isRule(std::string_view name)
{
    return !name.empty() && name[0] == '@' && name.substr(0, 2) != "@@";
}

struct tOpen
{
    const CFields* m_pNode;
    unsigned int m_uiPart;
    unsigned int m_uiNext = 0;  // index of the next member
    std::size_t m_nMember = 0;  // where to look first among the members of the part
};
}  // namespace

unsigned int CLayoutMap::findMember(unsigned int part, std::string_view name, unsigned int id, std::size_t& hint) const
{
    const std::vector<unsigned int>& members = m_vMembers[part];
    for (std::size_t tried = 0; tried < members.size(); ++tried)
    {
        const std::size_t at = (hint + tried) % members.size();
        const tLayoutPart member = m_tLayout.getPart(members[at]);
        const bool isNamed = !name.empty() || !member.m_strvName.empty();
        if (isNamed ? member.m_strvName != name : member.m_uiID != id)
            continue;
        hint = at;
        return members[at];
    }
    return CLayout::s_cuiNoPart;
}

bool CLayoutMap::compile(std::string_view text)
{
    m_vPlaces.clear();
    m_vMembers.clear();
    m_vLeftOut.clear();
    m_tLayout = CLayout();
    load(text, LCBC_COMMENT | LCBC_EMPTY_NULL | LCBC_DUPLICATE | LCBC_UNICODE_UTF8, m_tDocument);
    if (!m_tDocument.m_vErrors.empty() || !m_tLayout.compile(m_tDocument.m_tTree))
        return false;
    m_vMembers.resize(m_tLayout.getPartCount());
    for (unsigned int part = 0; part < m_tLayout.getPartCount(); ++part)
    {
        const tLayoutPart seen = m_tLayout.getPart(part);
        if (seen.m_uiParent != CLayout::s_cuiNoPart)
            m_vMembers[seen.m_uiParent].push_back(part);
        const bool isElement =
            seen.m_uiParent != CLayout::s_cuiNoPart && m_tLayout.getPart(seen.m_uiParent).m_eKind == LP_array;
        m_vLeftOut.push_back(seen.m_bLiteral && seen.m_strvName.empty() && seen.m_uiID == 0 && !isElement);
    }
    walk(text);
    return true;
}

void CLayoutMap::place(std::string_view text, const CFields& node, unsigned int part)
{
    m_vPlaces.push_back({part, memberBegin(text, node), static_cast<std::size_t>(node.getOffsetEnd())});
}

void CLayoutMap::walk(std::string_view text)
{
    std::vector<tOpen> open{{&m_tDocument.m_tTree, 0}};
    place(text, m_tDocument.m_tTree, 0);
    while (!open.empty())
    {
        tOpen& top = open.back();
        if (top.m_uiNext == top.m_pNode->getChildCount())
        {
            open.pop_back();
            continue;
        }
        const CFields& node = top.m_pNode->getChildAt(top.m_uiNext++);
        std::string_view name = nameOf(node);
        const bool isArray = top.m_pNode->isArray();
        if (!isArray && isRule(name))
        {
            std::size_t hint = top.m_nMember;
            const unsigned int about =
                name.size() == 1 ? top.m_uiPart : findMember(top.m_uiPart, name.substr(1), 0, hint);
            if (about != CLayout::s_cuiNoPart)
                place(text, node, about);
            continue;
        }
        name.remove_prefix(name.substr(0, 2) == "@@" ? 1 : 0);
        const std::vector<unsigned int>& members = m_vMembers[top.m_uiPart];
        const unsigned int part = isArray ? (members.empty() ? CLayout::s_cuiNoPart : members.front())
                                          : findMember(top.m_uiPart, name, node.getID(), top.m_nMember);
        if (part == CLayout::s_cuiNoPart)
            continue;
        ++top.m_nMember;
        place(text, node, part);
        if (node.isField() || node.isArray())
            open.push_back({&node, part});
    }
}

}  // namespace murv::explorer

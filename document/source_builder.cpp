// document/source_builder.cpp - which bytes belong to which member.
#include "document/source_builder.h"

#include "ser/token_text.h"

namespace murv::detail
{

/// All bytes from the last ones on.
std::string_view CSourceBuilder::upTo(const char* end)
{
    const char* const begin = m_pDone;
    m_pDone = end;
    return {begin, static_cast<std::size_t>(end - begin)};
}

void CSourceBuilder::begin()
{
    const std::uint32_t node = m_tTree.add();
    if (m_vOpen.empty())
        m_uiRoot = node;
    else
        m_tTree[m_vOpen.back().m_uiNode].m_vMember.push_back(node);
    m_vOpen.push_back({node});
}

void CSourceBuilder::token(E_SyntaxRole role, const tTokenInfo& token)
{
    switch (role)
    {
    case SR_id:
    case SR_name:
    case SR_assign:
    case SR_expression: return takeHead(token);
    case SR_open:
    case SR_scalar: return takeValue(token);
    case SR_comma: return endMember(token);
    case SR_close: return closeContainer(token);
    default: return;
    }
}

void CSourceBuilder::takeHead(const tTokenInfo& token)
{
    tOpen& open = m_vOpen.back();
    if (open.m_pHead == nullptr)
    {
        m_tTree[open.m_uiNode].m_strvBefore = upTo(token.m_pBegin);
        open.m_pHead = token.m_pBegin;
    }
    open.m_pHeadEnd = m_pDone = token.m_pEnd;
}

void CSourceBuilder::takeValue(const tTokenInfo& token)
{
    tOpen& open = m_vOpen.back();
    tSourceNode& node = m_tTree[open.m_uiNode];
    if (open.m_pHead == nullptr)
        node.m_strvBefore = upTo(token.m_pBegin);
    else
        node.m_strvHead = {open.m_pHead, static_cast<std::size_t>(token.m_pBegin - open.m_pHead)};
    open.m_pHead = nullptr;
    m_pDone = token.m_pBegin;
    const bool isContainer = token.m_eType == TT_fieldsBegin || token.m_eType == TT_arrayBegin;
    node.m_strvValue = upTo(isContainer ? skipTrailing(token.m_pEnd, false) : token.m_pEnd);
}

void CSourceBuilder::end()
{
    const tOpen open = m_vOpen.back();
    m_vOpen.pop_back();
    if (open.m_pHead != nullptr)  // its value is missing
        m_tTree[open.m_uiNode].m_strvHead = {open.m_pHead, static_cast<std::size_t>(open.m_pHeadEnd - open.m_pHead)};
}

void CSourceBuilder::endMember(const tTokenInfo& comma)
{
    tSourceNode& member = m_tTree[m_tTree[m_vOpen.back().m_uiNode].m_vMember.back()];
    if (member.isMissing())
        member.m_strvBefore = upTo(comma.m_pBegin);
    member.m_strvAfter = upTo(skipTrailing(comma.m_pEnd, false));
}

void CSourceBuilder::closeContainer(const tTokenInfo& bracket)
{
    tSourceNode& container = m_tTree[m_vOpen.back().m_uiNode];
    if (!container.m_vMember.empty())
        m_tTree[container.m_vMember.back()].m_strvAfter = upTo(skipTrailing(m_pDone, true));
    container.m_strvInner = upTo(bracket.m_pEnd);
}

std::uint32_t CSourceBuilder::finish()
{
    m_tTree[m_uiRoot].m_strvAfter = upTo(m_pEnd);
    return m_uiRoot;
}

/// The end of the comments and blanks that follow on the line of a place, without the line end. Unless it is the last
/// of its container, the place keeps them only when nothing else follows on the line: else they belong to what does.
const char* CSourceBuilder::skipTrailing(const char* place, bool isLast) const
{
    const char* end = place;
    for (const char* at = place;;)
    {
        while (at != m_pEnd && (*at == ' ' || *at == '\t'))
            ++at;
        if (at == m_pEnd || *at == '\n' || *at == '\r')
            return at;
        if (*at++ != '/')
            return isLast ? end : place;
        if (*at == '/')
            return findLineEnd(at, m_pEnd);
        takeComment(at, m_pEnd);
        end = at;
    }
}

}  // namespace murv::detail

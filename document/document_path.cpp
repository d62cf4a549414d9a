// document/document_path.cpp - each step leads to a node of the tree and to the pieces of its text.
#include "document/document_path.h"

#include "murv/error.h"

namespace murv::detail
{

namespace
{

/// Levels of containers in a value; 0 for a scalar.
std::size_t depth4Tree(const CFields& root)
{
    struct tOpen
    {
        const CFields* m_pNode;
        unsigned int m_uiNext;
    };
    std::size_t deepest = root.isField() || root.isArray() ? 1 : 0;
    std::vector<tOpen> open{{&root, 0}};
    while (!open.empty())
    {
        tOpen& last = open.back();
        if (last.m_uiNext == last.m_pNode->getChildCount())
        {
            open.pop_back();
            continue;
        }
        const CFields& member = last.m_pNode->getChildAt(last.m_uiNext++);
        if (!member.isField() && !member.isArray())
            continue;
        open.push_back({&member, 0});
        deepest = std::max(deepest, open.size());
    }
    return deepest;
}

std::size_t index4Step(const CFields& container, const tPathPart& step)
{
    switch (step.m_eStep)
    {
    case PS_index: return step.m_uiNumber;
    case PS_fromEnd: return container.getChildCount() - step.m_uiNumber;
    default: break;
    }
    if (container.isArray())
        return step.m_uiNumber;
    const std::string& name = step.m_strName;
    return static_cast<std::size_t>(container.getChildIdx4Name(name.data(), static_cast<unsigned int>(name.size())));
}

}  // namespace

CDocumentPath::CDocumentPath(CFields& root, const CSourceTree& source, std::string_view path)
    : m_tSource(source), m_strPath(path), m_tSteps(path.starts_with('/') ? parsePointer(path) : parsePath(path))
{
    if (m_tSteps.m_pError != nullptr)
        throw CPathError(path, m_tSteps.m_pError, m_tSteps.m_nErrorAt);
    m_vWay.push_back(&root);
    for (const tPathPart& step : m_tSteps.m_vStep)
    {
        if (step.m_eStep == PS_id)
        {
            if (!goToId(step.m_uiNumber))
                return;
        }
        else
        {
            tNodePath single;
            single.m_vStep.push_back(step);
            CFields* const member = find(node(), single);
            if (member == nullptr)
                return;
            goTo(*member, index4Step(node(), step));
        }
        ++m_nTaken;
    }
}

void CDocumentPath::goTo(CFields& member, std::size_t index)
{
    m_vWay.push_back(&member);
    m_tPlace = {m_tSource[m_tPlace.m_uiNode].m_vMember[index], false, m_tPlace.m_uiNode, index};
}

/// Goes to the first node with an ID, in the order of the text.
bool CDocumentPath::goToId(unsigned int id)
{
    CFields* const found = node().findID(id);
    if (found == nullptr || found == &node())
        return found != nullptr;
    std::vector<unsigned int> open{0};
    std::vector<const CFields*> nodes{&node()};
    while (nodes.back() != found)
    {
        if (open.back() == nodes.back()->getChildCount())
        {
            nodes.pop_back();
            open.pop_back();
            continue;
        }
        nodes.push_back(&nodes.back()->getChildAt(open.back()++));
        open.push_back(0);
    }
    for (std::size_t level = 0; level + 1 != nodes.size(); ++level)
        goTo(node()[open[level] - 1], open[level] - 1);
    return true;
}

void CDocumentPath::requireWhole() const
{
    if (!isWhole())
        throw CLogicError("There is nothing at " + m_strPath);
}

void CDocumentPath::requireDepth(const CFields& value, std::size_t deepest) const
{
    const std::size_t above = m_vWay.size() - 1 + (m_tSteps.m_vStep.size() - m_nTaken);
    if (above + depth4Tree(value) > deepest)
        throw CLogicError("The value lies too deep: containers nest 1000 levels");
}

void CDocumentPath::requireNoExpression(const CFields& value) const
{
    const bool isContainer = value.isField() || value.isArray();
    if (isContainer && !CFields::pkt_IsNullExp(node().pkt_GetExp()))
        throw CLogicError("A text cannot hold a container with a packet expression");
}

}  // namespace murv::detail

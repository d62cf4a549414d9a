// layout/compile/copies.cpp - finds what "like" copies.
//
// Copies are made from the document, where the copied part may stand after the copy. Names are looked up where the copy
// stands. A part that is inside what it copies would have no end.
#include <string>

#include "layout/compile/document.h"
#include "layout/compile/draft.h"

namespace murv::detail
{

namespace
{

constexpr unsigned int s_cuiMostInRow = 100;  // copies of copies of copies

const CFields* findMember(tCompile& compile, const CFields& set, const tRuleStep& step)
{
    if (set.getDT() != DT_fields)
        return nullptr;
    if (step.m_strName.empty())
    {
        if (!compile.spend(set.getChildCount()))
            return nullptr;
        const int index = set.getChildIdx4ID(step.m_uiID);
        return index < 0 ? nullptr : &set[index];
    }
    const std::string written = (step.m_strName.front() == '@' ? "@" : "") + step.m_strName;
    return set.findChildAt(written.data(), static_cast<unsigned int>(written.size()));
}

/// The path of a "like" in the node's own rules.
bool findLike(const CFields& node, tRule& like)
{
    const CFields* const own = node.getDT() == DT_fields ? node.findChildAt("@", 1) : nullptr;
    std::vector<std::string_view> rules;
    if (own == nullptr || !splitRules(ruleText(*own), rules))
        return false;
    for (const std::string_view rule : rules)
    {
        CRuleText text(rule);
        if (!text.takeWords("like"))
            continue;
        like.m_pRow = &ruleRow("like");
        like.m_uiPlace = static_cast<unsigned int>(own->getOffsetStart());
        return text.takePath(like.m_vPath) && text.atEnd();
    }
    return false;
}

bool hasParts(const CFields& set)
{
    for (const CFields& member : set)
    {
        if (!isRuleMember(member))
            return true;
    }
    return false;
}

/// Follows a path from the sets around a part outwards. \return nothing, or the mistake
std::string findCopied(tCompile& compile, unsigned int index, const tRule& like, tCopied& found)
{
    const std::vector<tRuleStep>& path = like.m_vPath;
    found = {};
    for (unsigned int at = compile.part(index).m_uiParent;
         at != s_cuiNone && found.m_pNode == nullptr && compile.spend(1); at = compile.part(at).m_uiParent)
    {
        found.m_pSet = compile.draft(at).m_pNode;
        found.m_pNode = findMember(compile, *found.m_pSet, path.front());
    }
    if (found.m_pNode == nullptr)
        return "There is no part \"" + describeStep(path.front()) + "\" here or around";
    for (std::size_t i = 1; i < path.size(); ++i)
    {
        const CFields* set = found.m_pNode;
        while (set->getDT() == DT_array && set->getChildCount() != 0)
            set = &(*set)[0u];
        tRule inner;
        if (findLike(*set, inner))
            return "The path of \"like\" goes through a copy; name the part that it copies";
        found = {findMember(compile, *set, path[i]), set};
        if (found.m_pNode == nullptr)
            return "\"" + describeStep(path[i - 1]) + "\" has no part \"" + describeStep(path[i]) + "\"";
    }
    return {};
}

/// Whether the part, or one around it, already has that node's members.
bool isAround(tCompile& compile, unsigned int index, const CFields* node)
{
    for (unsigned int at = index; at != s_cuiNone && compile.spend(1); at = compile.part(at).m_uiParent)
    {
        const tDraft& draft = compile.draft(at);
        if (draft.m_pOwn == node || draft.m_pNode == node)
            return true;
        for (const tCopied& copied : draft.m_vCopied)
        {
            if (copied.m_pNode == node)
                return true;
        }
    }
    return false;
}

}  // namespace

bool resolveCopies(tCompile& compile, unsigned int index)
{
    tRule like;
    while (findLike(*compile.draft(index).m_pNode, like))
    {
        tCopied copied;
        std::string mistake;
        if (compile.part(index).m_uiParent == s_cuiNone)
            mistake = "The root has nothing that it could be like";
        else if (hasParts(*compile.draft(index).m_pNode))
            mistake = "A field set with \"like\" has no other members";
        else
            mistake = findCopied(compile, index, like, copied);
        if (mistake.empty() &&
            (isAround(compile, index, copied.m_pNode) || compile.draft(index).m_vCopied.size() == s_cuiMostInRow))
            mistake = "\"like\" goes in a circle";
        if (!mistake.empty())
        {
            compile.refuse(index, like, mistake);
            return false;
        }
        compile.draft(index).m_vCopied.push_back(copied);
        compile.draft(index).m_pNode = copied.m_pNode;
        like = {};
    }
    return !compile.draft(index).m_vCopied.empty();
}

}  // namespace murv::detail

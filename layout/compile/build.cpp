// layout/compile/build.cpp - parts from a document, in one row, each before its members.
//
// The document is walked with a stack of its own. A copy ("like") walks the members of another node in its place.
#include <cstring>

#include "layout/compile/document.h"
#include "layout/compile/draft.h"
#include "layout/compile/expression.h"

namespace murv::detail
{

namespace
{

/// Members of a part whose turn has not come.
struct tOpenPart
{
    unsigned int m_uiPart;
    CFields::const_iterator m_tNext;
    CFields::const_iterator m_tEnd;
    bool m_bCopied;
};

/// A comment without its slashes.
std::string plainComment(const CFields& node)
{
    std::string_view left(node.getCommentPtr(CP_before) == nullptr ? "" : node.getCommentPtr(CP_before),
                          node.getCommentPtr(CP_before) == nullptr ? 0 : node.getCommentLen(CP_before));
    std::string plain;
    while (!left.empty())
    {
        std::string_view line = left.substr(0, left.find('\n'));
        left.remove_prefix(line.size() == left.size() ? line.size() : line.size() + 1);
        line.remove_prefix(std::min(line.find_first_not_of(" \t\r"), line.size()));
        if (line.starts_with("//") || line.starts_with("/*"))
            line.remove_prefix(2);
        while (!line.empty() && (line.back() == ' ' || line.back() == '\r'))
            line.remove_suffix(1);
        if (line.ends_with("*/"))
            line.remove_suffix(2);
        if (line.starts_with(' '))
            line.remove_prefix(1);
        if (!plain.empty())
            plain += '\n';
        plain += line;
    }
    return plain;
}

class CBuilder
{
public:
    explicit CBuilder(tCompile& compile) : m_tCompile(compile)
    {
    }

    void build()
    {
        const unsigned int expected = m_tCompile.m_tDocument.getMemberCount() + 1;
        m_tCompile.m_tPlan.m_vParts.reserve(expected);
        m_tCompile.m_vDrafts.reserve(expected);
        addPart(m_tCompile.m_tDocument, s_cuiNone, false);
        while (!m_vOpen.empty() && !m_tCompile.m_bTooBig)
            step();
    }

private:
    void step()
    {
        tOpenPart& top = m_vOpen.back();
        if (top.m_tNext == top.m_tEnd)
        {
            m_tCompile.part(top.m_uiPart).m_uiAfter = m_tCompile.count();
            m_vOpen.pop_back();
            return;
        }
        const CFields& node = *top.m_tNext;
        ++top.m_tNext;
        if (m_tCompile.part(top.m_uiPart).m_eKind == PK_array || !isRuleMember(node))
            addPart(node, top.m_uiPart, top.m_bCopied);
    }

    void addPart(const CFields& node, unsigned int parent, bool copied)
    {
        if (copied && ++m_uiCopied > s_cuiMostCopied)
        {
            if (!m_tCompile.m_bTooBig)
                m_tCompile.refusePart(parent, "The copies by \"like\" come to more than 100000 parts");
            m_tCompile.m_bTooBig = true;
            return;
        }
        const unsigned int index = m_tCompile.count();
        tPart& part = m_tCompile.m_tPlan.m_vParts.emplace_back();
        tDraft& draft = m_tCompile.m_vDrafts.emplace_back();
        part.m_uiParent = parent;
        part.m_uiAfter = index + 1;
        part.m_uiPlace = static_cast<unsigned int>(node.getOffsetStart());
        draft.m_pOwn = draft.m_pNode = &node;
        if (parent != s_cuiNone)
        {
            tPart& container = m_tCompile.part(parent);
            part.m_uiIndex = static_cast<unsigned int>(container.m_vMembers.size());
            container.m_vMembers.push_back(index);
            draft.m_uiLevel = m_tCompile.draft(parent).m_uiLevel + 1;
            if (container.m_eKind == PK_set)
            {
                part.m_strName = dataName(node);
                part.m_uiID = node.getID();
            }
        }
        part.m_strComment = plainComment(node);
        const bool like = resolveCopies(m_tCompile, index);
        openPart(index, copied || like);
    }

    void openPart(unsigned int index, bool copied)
    {
        tPart& part = m_tCompile.part(index);
        const CFields& node = *m_tCompile.draft(index).m_pNode;
        if (m_tCompile.draft(index).m_uiLevel > s_cuiMostLevels)
        {
            if (!m_tCompile.m_bTooBig)
                m_tCompile.refusePart(index, "The layout nests deeper than 1000 levels");
            m_tCompile.m_bTooBig = true;
            return;
        }
        const E_DataType type = node.getDT();
        part.m_eKind = type == DT_fields ? PK_set : type == DT_array ? PK_array : PK_leaf;
        if (part.m_eKind == PK_leaf)
            part.m_strExpression = describeExpression(node.pkt_GetExp());
        else
            m_vOpen.push_back({index, node.begin(), node.end(), copied});
        checkPart(index);
    }

    void checkPart(unsigned int index)
    {
        const tPart& part = m_tCompile.part(index);
        const CFields& node = *m_tCompile.draft(index).m_pNode;
        const bool isElement = part.m_uiParent == s_cuiNone || m_tCompile.part(part.m_uiParent).m_eKind == PK_array;
        if (part.m_uiParent == s_cuiNone && part.m_eKind != PK_set)
            m_tCompile.refusePart(index, "A layout is a field set");
        else if (part.m_eKind == PK_array && node.getChildCount() != 1)
            m_tCompile.refusePart(index, "An array of a layout has one element, which shows all");
        else if (part.m_eKind == PK_leaf && node.getDT() != DT_codelist && CFields::pkt_IsNullExp(node.pkt_GetExp()))
            m_tCompile.refusePart(index, "A leaf of a layout needs a packet expression");
        else if (!isElement && part.m_strName.empty() && part.m_uiID == 0 &&
                 (part.m_eKind != PK_leaf || !isLiteralExpression(node.pkt_GetExp())))
            m_tCompile.refusePart(index, "A part without name and ID must be a literal: a leaf with \"fix\"");
    }

    tCompile& m_tCompile;
    std::vector<tOpenPart> m_vOpen;
    unsigned int m_uiCopied = 0;
};

/// Finds members of the same name or ID.
void checkNames(tCompile& compile, unsigned int set)
{
    for (const unsigned int index : compile.part(set).m_vMembers)
    {
        const tPart& part = compile.part(index);
        if (!part.m_strName.empty() && compile.m_tPaths.member(set, {part.m_strName, 0}) != index)
            compile.refusePart(index, "The name \"" + part.m_strName + "\" stands twice");
        else if (part.m_uiID != 0 && compile.m_tPaths.member(set, {"", part.m_uiID}) != index)
            compile.refusePart(index, "The ID " + std::to_string(part.m_uiID) + " stands twice");
    }
}

/// The outermost field set with leaves of its own is a record; so is a leaf that is an element outside of one.
void findRecords(tCompile& compile)
{
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        tPart& part = compile.part(i);
        part.m_bInRecord = part.m_uiParent != s_cuiNone && compile.part(part.m_uiParent).m_bInRecord;
        if (part.m_bInRecord)
            continue;
        part.m_bRecord = part.m_eKind == PK_leaf;
        for (const unsigned int member : part.m_vMembers)
            part.m_bRecord = part.m_bRecord || (part.m_eKind == PK_set && compile.part(member).m_eKind == PK_leaf);
        part.m_bInRecord = part.m_bRecord;
    }
}

}  // namespace

void buildParts(tCompile& compile)
{
    CBuilder(compile).build();
    if (compile.m_bTooBig)
        return;
    compile.m_tPlan.m_strComment = compile.part(0).m_strComment;
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        if (compile.part(i).m_eKind == PK_set)
            checkNames(compile, i);
    }
    findRecords(compile);
}

std::string nameOf(const tPart& part)
{
    if (!part.m_strName.empty())
        return "\"" + part.m_strName + "\"";
    if (part.m_uiID != 0)
        return "#" + std::to_string(part.m_uiID);
    return part.m_uiParent == s_cuiNone ? "the layout" : part.m_eKind == PK_leaf ? "the leaf" : "the part";
}

}  // namespace murv::detail

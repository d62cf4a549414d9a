// layout/compile/widths.cpp - how many bytes parts take, where that is known, and what follows from it.
#include <algorithm>
#include <limits>
#include <string>

#include "layout/compile/draft.h"

namespace murv::detail
{

namespace
{

bool isText(E_ItemForm form)
{
    return form == IF_text || form == IF_bytes || form == IF_hexText;
}

void measureLeaf(const tPart& part, tDraft& draft)
{
    const tItem& item = part.m_tItem;
    const unsigned long long mark = part.m_eEnd == LE_mark ? part.m_vMarks.front().size() : 0;
    // A number has a digit, unless no bytes are null.
    const unsigned long long value = isText(item.m_eForm) || item.m_bBlankIsNull ? 0 : 1;
    draft.m_ullLeast = item.m_ucPrefix + value + mark;
    if (part.m_bLiteral && !part.m_strLiteral.empty())
        draft.m_ullWidth = part.m_strLiteral.size();
    else if (part.m_eEnd == LE_fixed)
        draft.m_ullWidth = item.m_uiLength;
    if (draft.m_ullWidth != s_cullVaries)
        draft.m_ullLeast = draft.m_ullWidth;
}

/// What a part takes of the row that it stands in, or that this varies.
unsigned long long widthInRow(tCompile& compile, unsigned int index)
{
    const bool varies = mayBeAbsent(compile.part(index)) || compile.part(index).m_uiAlign != 0;
    return varies ? s_cullVaries : compile.draft(index).m_ullWidth;
}

unsigned long long leastInRow(tCompile& compile, unsigned int index)
{
    return mayBeAbsent(compile.part(index)) ? 0 : compile.draft(index).m_ullLeast;
}

void measureRow(tCompile& compile, unsigned int index)
{
    const tPart& set = compile.part(index);
    unsigned long long width = 0;
    unsigned long long least = 0;
    unsigned int varying = 0;
    for (auto member = set.m_vMembers.rbegin(); member != set.m_vMembers.rend(); ++member)
    {
        tDraft& draft = compile.draft(*member);
        draft.m_ullWidthAfter = width;
        draft.m_uiVaryingAfter = varying;
        const unsigned long long bytes = widthInRow(compile, *member);
        width += bytes == s_cullVaries ? 0 : bytes;
        varying += bytes == s_cullVaries ? 1 : 0;
        least += leastInRow(compile, *member);
    }
    // Of parts between marks, those at the end may be missing, and so may all.
    const bool between = !set.m_strBetween.empty();
    compile.draft(index).m_ullWidth = varying != 0 || between ? s_cullVaries : width;
    compile.draft(index).m_ullLeast = between ? 0 : least;
}

void measureChoice(tCompile& compile, unsigned int index)
{
    tDraft& draft = compile.draft(index);
    const std::vector<unsigned int>& members = compile.part(index).m_vMembers;
    draft.m_ullLeast = members.empty() ? 0 : s_cullVaries;
    for (const unsigned int member : members)
    {
        const unsigned long long width = widthInRow(compile, member);
        draft.m_ullWidth = member == members.front() || width == draft.m_ullWidth ? width : s_cullVaries;
        draft.m_ullLeast = std::min(draft.m_ullLeast, leastInRow(compile, member));
    }
}

/// Bytes between the end of a part and the end of what encloses it. \return false when they vary
bool findTail(tCompile& compile, unsigned int index, unsigned long long& tail)
{
    tail = 0;
    for (unsigned int at = index; !isBounded(compile, at); at = compile.part(at).m_uiParent)
    {
        const unsigned int parent = compile.part(at).m_uiParent;
        if (compile.part(at).m_uiAlign != 0)
            return false;
        if (parent == s_cuiNone)
            break;
        if (compile.part(parent).m_eKind == PK_array)
            return false;
        if (compile.part(parent).m_eChoice != CH_none)
            continue;
        const tDraft& draft = compile.draft(at);
        const bool spanned = draft.m_uiSpanLast != s_cuiNone;
        const unsigned int varying = spanned ? compile.draft(draft.m_uiSpanLast).m_uiVaryingAfter : 0;
        if (draft.m_uiVaryingAfter != varying)
            return false;
        tail += draft.m_ullWidthAfter - (spanned ? compile.draft(draft.m_uiSpanLast).m_ullWidthAfter : 0);
        if (spanned)
            break;
    }
    return tail <= std::numeric_limits<unsigned int>::max();
}

bool needsTail(tCompile& compile, unsigned int index)
{
    const tPart& part = compile.part(index);
    const bool between = !part.m_strBetween.empty() && !compile.draft(index).m_bSharesMark &&
                         (part.m_eKind == PK_set || part.m_strEnds.empty());
    return compile.draft(index).m_bToEnd || between;
}

void setTail(tCompile& compile, unsigned int index)
{
    unsigned long long tail = 0;
    if (!needsTail(compile, index))
        return;
    if (findTail(compile, index, tail))
        compile.part(index).m_uiTail = static_cast<unsigned int>(tail);
    else
        compile.refuseEnd(index, "What stands after " + nameOf(compile.part(index)) +
                                     " must have a fixed size, up to the end of the part that encloses both");
}

void checkElement(tCompile& compile, unsigned int index)
{
    const tPart& array = compile.part(index);
    if (array.m_eKind != PK_array || array.m_vMembers.empty() || !array.m_strBetween.empty())
        return;
    const unsigned int element = array.m_vMembers.front();
    if (leastInRow(compile, element) == 0 && !compile.draft(element).m_bDelimited)
        compile.refusePart(index,
                           "An element of " + nameOf(array) + " may take no bytes, so there could be any number");
}

void checkFrame(tCompile& compile, unsigned int index)
{
    const tFrame& frame = compile.m_tPlan.m_tFrame;
    const tDraft& draft = compile.draft(index);
    if (!compile.part(index).m_bRecord || frame.m_uiLength == 0)
        return;
    const bool known = draft.m_ullWidth != s_cullVaries;
    const bool wrong = known ? draft.m_ullWidth != frame.m_uiLength : draft.m_ullLeast > frame.m_uiLength;
    if (wrong && compile.part(index).m_uiAlign == 0)
        compile.refusePart(index, "The record has " + std::string(known ? "" : "at least ") +
                                      std::to_string(known ? draft.m_ullWidth : draft.m_ullLeast) +
                                      " bytes, but the layout says that records have " +
                                      std::to_string(frame.m_uiLength));
}

}  // namespace

void measureParts(tCompile& compile)
{
    const bool framed = compile.m_tPlan.m_tFrame.m_eKind != FR_none;
    for (unsigned int i = compile.count(); i-- > 0;)
    {
        const tPart& part = compile.part(i);
        tDraft& draft = compile.draft(i);
        if (part.m_eKind == PK_leaf)
            measureLeaf(part, draft);
        else if (part.m_eKind == PK_array)
            draft.m_ullLeast = part.m_strEnds.size();
        else if (part.m_eChoice != CH_none)
            measureChoice(compile, i);
        else
            measureRow(compile, i);
        if (framed && part.m_bRecord)
            draft.m_ullLeast = std::max(draft.m_ullLeast, 1ULL);
    }
}

void checkWidths(tCompile& compile)
{
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        setTail(compile, i);
        checkElement(compile, i);
        checkFrame(compile, i);
    }
}

}  // namespace murv::detail

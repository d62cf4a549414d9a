// layout/compile/ends.cpp - where leaves end; then their items are complete, and literals become bytes.
#include <string>
#include <string_view>

#include "layout/compile/draft.h"
#include "layout/compile/scalars.h"
#include "layout/values/value_codec.h"

namespace murv::detail
{

namespace
{

bool needsWidth(E_ItemForm form)
{
    return form == IF_binary || form == IF_float || form == IF_packed || form == IF_bcd;
}

void findEnd(tCompile& compile, unsigned int index)
{
    tPart& part = compile.part(index);
    const tDraft& draft = compile.draft(index);
    tItem& item = part.m_tItem;
    const bool ruled = part.m_eEnd == LE_mark || part.m_eEnd == LE_before || draft.m_bToEnd;
    if (ruled && item.m_ucPrefix != 0)
        compile.refusePart(index, "An item with a length prefix has no other end");
    else if (ruled && needsWidth(item.m_eForm))
        compile.refusePart(index, "A binary number has a fixed width, not an end");
    if (item.m_ucPrefix != 0)
        part.m_eEnd = LE_prefix;
    else if (!ruled && needsWidth(item.m_eForm))
        part.m_eEnd = LE_fixed;
    else if (part.m_eEnd == LE_fixed && (draft.m_bToEnd || draft.m_bSized || draft.m_bDelimited))
        part.m_eEnd = LE_enclosing;
    else if (part.m_eEnd == LE_fixed && part.m_bAsks && item.m_uiLength == 0)
        part.m_eEnd = LE_callback;
    item.m_bVaries = part.m_eEnd != LE_fixed;
    if (part.m_eEnd == LE_fixed && item.m_uiLength == 0)
        compile.refuseEnd(index, "A leaf of length 0 needs a rule for its end, such as ends \"\\x00\" or \"to end\"");
    if (item.m_bVaries && draft.m_bPadding)
        compile.refusePart(index, "Only items of fixed width have padding");
}

void setPadding(const tDraft& draft, tItem& item)
{
    if (item.m_bVaries || draft.m_bKeepAll)
        item.m_ePadding = PAD_none;
    else if (!draft.m_bPadding)
    {
        const bool text = item.m_eForm == IF_text && (draft.m_uiPlaces & RP_text) != 0;
        const bool none = item.m_eForm == IF_text || item.m_eForm == IF_bytes || item.m_eForm == IF_hexText ||
                          needsWidth(item.m_eForm);
        item.m_ePadding = text ? PAD_blanksAfter : none ? PAD_none : PAD_zerosFront;
    }
}

void setDefault(tPart& part, const tScalar& value)
{
    part.m_eDefault = value.m_eType;
    part.m_strDefault = value.m_strvText;
    part.m_ullDefault = value.m_eType == DT_bool ? value.m_bValue : value.m_ullValue;
}

void makeLiteral(tCompile& compile, unsigned int index, const tScalar& value)
{
    tPart& part = compile.part(index);
    const tItem& item = part.m_tItem;
    std::string bytes;
    // A short literal may be padded to any length, so that a small layout could take all memory.
    constexpr unsigned int most = 1U << 20;
    if (!item.m_bVaries && (item.m_uiLength > most || !compile.spend(item.m_uiLength)))
    {
        compile.refusePart(index, "A literal has at most 1048576 bytes");
        return;
    }
    E_PacketFault fault = makeOwnValue(item, value, bytes);
    part.m_strLiteral.clear();
    if ((fault == PF_none || isFinding(fault)) && item.m_ucPrefix != 0)
    {
        fault = makePrefix(item, bytes.size(), part.m_strLiteral);
        if (fault != PF_none)
        {
            compile.refusePart(index, "The length prefix is too narrow for the literal");
            return;
        }
    }
    part.m_strLiteral += bytes;
    if (fault != PF_none && !isFinding(fault))
        compile.refusePart(index, std::string("The literal does not fit its item: ") + getFaultSentence(fault));
    else if (part.m_eEnd != LE_fixed && part.m_eEnd != LE_prefix && part.m_strLiteral.empty())
        compile.refusePart(index, "A literal has bytes");
    for (const std::string& mark : part.m_vMarks)
    {
        if (part.m_strLiteral.find(mark) != std::string::npos)
            compile.refusePart(index, "The literal contains the mark that ends it");
    }
    if (part.m_eEnd == LE_mark)
        part.m_strLiteral += part.m_vMarks.front();
}

void checkBetween(tCompile& compile, unsigned int index)
{
    const tPart& part = compile.part(index);
    if (part.m_strBetween.empty() || compile.draft(index).m_bSharesMark)
        return;
    for (const unsigned int member : part.m_vMembers)
    {
        const tPart& at = compile.part(member);
        if (part.m_eKind == PK_set && at.m_eKind == PK_array && at.m_strBetween.empty() &&
            member != part.m_vMembers.back())
            compile.refusePart(member, "An array in \"between\" comes last, or has a \"between\" of its own");
    }
    if (part.m_eChoice != CH_none)
        compile.refusePart(index, "Of alternatives only one is there, so nothing stands between them");
    const tFrame& frame = compile.m_tPlan.m_tFrame;
    if (part.m_bInRecord && ((frame.m_eKind == FR_mark && frame.m_strMark == part.m_strBetween) ||
                             (frame.m_eKind == FR_lines && part.m_strBetween.find('\n') != std::string::npos)))
        compile.refusePart(index, "The mark between the parts also ends the record");
    for (unsigned int at = part.m_uiParent; at != s_cuiNone; at = compile.part(at).m_uiParent)
    {
        if (compile.part(at).m_strBetween == part.m_strBetween)
            compile.refusePart(index, "The mark between the parts also stands between the parts around them");
        if (!compile.spend(1))
            return;
    }
}

}  // namespace

void findEnds(tCompile& compile)
{
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        checkBetween(compile, i);
        tPart& part = compile.part(i);
        if (part.m_eKind != PK_leaf)
            continue;
        findEnd(compile, i);
        setPadding(compile.draft(i), part.m_tItem);
        prepareItem(part.m_tItem);
        const CFields& node = *compile.draft(i).m_pNode;
        const tScalar value = scalar4(node, part.m_bLiteral ? secondKind(node) : VK_actual);
        setDefault(part, value);
        if (part.m_bLiteral && !compile.m_tMistakes.isFaulty(i))
            makeLiteral(compile, i, value);
    }
}

}  // namespace murv::detail

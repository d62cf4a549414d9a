// layout/compile/defaults.cpp - whether items can hold the values that the layout gives them.
//
// Such a value stands for one that the data lacks. It is filled up, where data may not be, but it must fit.
#include <algorithm>
#include <string>

#include "layout/compile/draft.h"
#include "layout/compile/scalars.h"
#include "layout/values/loss_words.h"
#include "layout/values/value_codec.h"

namespace murv::detail
{

namespace
{

/// Whether making may take the value: not where it is filled in. Null says that there is none; then the data must have
/// it, unless the item can say null.
bool isUsed(const tPart& leaf)
{
    return leaf.m_eKind == PK_leaf && !leaf.m_bLiteral && !leaf.m_bComputed && !leaf.m_bAsks &&
           leaf.m_eDefault != DT_null;
}

/// Makes the value in an item that is not much wider than it, so that padding takes no memory.
E_PacketFault makeDefault(const tPart& leaf, std::string& bytes)
{
    constexpr std::size_t roomForNumbers = 1000;
    tItem item = leaf.m_tItem;
    item.m_uiLength = static_cast<unsigned int>(
        std::min<std::size_t>(item.m_uiLength, roomForNumbers + 4 * leaf.m_strDefault.size()));
    const E_PacketFault fault = makeOwnValue(item, defaultOf(leaf), bytes);
    if (fault != PF_none && !isFinding(fault))
        return fault;
    if (item.m_uiLength != 0 && bytes.size() > item.m_uiLength)
        return PF_tooLong;
    std::string prefix;
    return item.m_ucPrefix != 0 ? makePrefix(item, bytes.size(), prefix) : PF_none;
}

/// Whether reading would end the value, or a part around it, at a mark in the bytes. That of a literal belongs to it.
bool holdsMark(tCompile& compile, unsigned int index, const std::string& bytes)
{
    const auto holds = [&bytes](const std::string& mark) { return bytes.find(mark) != std::string::npos; };
    const tFrame& frame = compile.m_tPlan.m_tFrame;
    const std::vector<std::string>& own = compile.part(index).m_vMarks;
    bool isHeld = (!compile.part(index).m_bLiteral && std::any_of(own.begin(), own.end(), holds)) ||
                  (frame.m_eKind == FR_lines && holds("\n")) || (frame.m_eKind == FR_mark && holds(frame.m_strMark));
    for (unsigned int at = compile.part(index).m_uiParent; at != s_cuiNone && !isHeld && compile.spend(1);
         at = compile.part(at).m_uiParent)
        isHeld = !compile.part(at).m_strBetween.empty() && holds(compile.part(at).m_strBetween);
    return isHeld;
}

}  // namespace

void checkDefaults(tCompile& compile)
{
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        const tPart& leaf = compile.part(i);
        std::string bytes;
        if (leaf.m_bLiteral && !compile.m_tMistakes.isFaulty(i) && holdsMark(compile, i, leaf.m_strLiteral))
            compile.refusePart(i, "The literal contains a mark at which reading would end it");
        if (!isUsed(leaf) || compile.m_tMistakes.isFaulty(i) ||
            !compile.spend(static_cast<unsigned int>(leaf.m_strDefault.size())))
            continue;
        E_PacketFault fault = makeDefault(leaf, bytes);
        if (fault == PF_none && holdsMark(compile, i, bytes))
            fault = PF_mark;
        if (fault == PF_none)
            continue;
        const char* const loss = fault == PF_lossy ? explainLoss(leaf.m_tItem, defaultOf(leaf)) : nullptr;
        compile.refusePart(
            i, std::string("The value does not fit its item: ") + (loss != nullptr ? loss : getFaultSentence(fault)));
    }
}

}  // namespace murv::detail

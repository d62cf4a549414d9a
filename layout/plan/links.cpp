// layout/plan/links.cpp - numbers about other parts: who needs them, and in which order.
#include "layout/plan/links.h"

#include <algorithm>

namespace murv::detail
{

void assignRegisters(tPlan& plan)
{
    plan.m_vRegister4Part.assign(plan.m_vParts.size(), s_cuiNone);
    plan.m_vChooses.assign(plan.m_vParts.size(), false);
    const auto keep = [&plan](const tValueOf& value) {
        if (value.m_uiPart != s_cuiNone && plan.m_vRegister4Part[value.m_uiPart] == s_cuiNone)
            plan.m_vRegister4Part[value.m_uiPart] = plan.m_uiRegisters++;
    };
    for (const tPart& part : plan.m_vParts)
    {
        for (const tTest& test : part.m_vIf)
            keep(test.m_tValue);
        keep(part.m_tChoice);
        if (part.m_tChoice.m_uiPart != s_cuiNone)
            plan.m_vChooses[part.m_tChoice.m_uiPart] = true;
        keep(part.m_tUntil.m_tValue);
    }
    for (const tLink& link : plan.m_vLinks)
    {
        keep(link.m_tNumber);
        if (link.m_eKind == LK_sum)
            keep({link.m_uiTarget, s_cuiNone});
    }
}

namespace
{

/// Whether a part may be absent while the field set around both it and its number is there.
bool mayBeAbsentIn(const tPlan& plan, unsigned int part, unsigned int set)
{
    for (unsigned int at = part; at != set && at != s_cuiNone; at = plan.m_vParts[at].m_uiParent)
    {
        const tPart& asked = plan.m_vParts[at];
        const tPart& around = plan.m_vParts[asked.m_uiParent == s_cuiNone ? at : asked.m_uiParent];
        if (asked.m_bOptional || !asked.m_vIf.empty() || asked.m_uiBitmap != s_cuiNone || around.m_eChoice != CH_none ||
            (around.m_eKind == PK_set && !around.m_strBetween.empty()))
            return true;
    }
    return false;
}

/// Lists a size or count, which is compared with its part, where both end: the part may not have come.
void listAbsence(tPlan& plan, unsigned int index)
{
    const tLink& link = plan.m_vLinks[index];
    if ((link.m_eKind != LK_size && link.m_eKind != LK_count) || !link.m_bNumberFirst)
        return;
    unsigned int target = link.m_uiTarget;
    if (link.m_eKind == LK_size)
    {
        const tSpan& span = plan.m_vSpans[link.m_uiSpan];
        target = span.m_uiFirst == span.m_uiLast ? span.m_uiFirst : plan.m_vParts[span.m_uiFirst].m_uiParent;
    }
    const unsigned int number = link.m_tNumber.m_uiPart;
    unsigned int set = target;
    while (set != s_cuiNone && (number < set || number >= plan.m_vParts[set].m_uiAfter))
        set = plan.m_vParts[set].m_uiParent;
    if (set != s_cuiNone && mayBeAbsentIn(plan, target, set))
        plan.m_vLinks4Base[set].push_back(index);
}

}  // namespace

void listLinks(tPlan& plan)
{
    plan.m_vLinks4Number.resize(plan.m_vParts.size());
    plan.m_vLinks4Counted.resize(plan.m_vParts.size());
    plan.m_vLinks4Base.resize(plan.m_vParts.size());
    plan.m_vLinks4Span.resize(plan.m_vSpans.size());
    for (unsigned int i = 0; i < plan.m_vLinks.size(); ++i)
    {
        const tLink& link = plan.m_vLinks[i];
        plan.m_vLinks4Number[link.m_tNumber.m_uiPart].push_back(i);
        if (link.m_uiSpan != s_cuiNone)
            plan.m_vLinks4Span[link.m_uiSpan].push_back(i);
        if (link.m_uiBase != s_cuiNone)
            plan.m_vLinks4Base[link.m_uiBase].push_back(i);
        if (link.m_eKind == LK_bits)
            plan.m_vLinks4Base[link.m_uiTarget].push_back(i);
        if (link.m_eKind == LK_sum || link.m_eKind == LK_elements || link.m_eKind == LK_count)
            plan.m_vLinks4Counted[link.m_uiTarget].push_back(i);
        listAbsence(plan, i);
        if (link.m_eKind != LK_records)
            continue;
        for (unsigned int part = link.m_uiTarget; part < plan.m_vParts[link.m_uiTarget].m_uiAfter; ++part)
        {
            if (plan.m_vParts[part].m_bRecord)
                plan.m_vLinks4Counted[part].push_back(i);
        }
    }
}

// Circles were refused before, so a total is put in order after all that it counts.
void orderLinks(tPlan& plan)
{
    plan.m_vOrder4Link.assign(plan.m_vLinks.size(), 0);
    std::vector<unsigned int> open;
    for (unsigned int first = 0; first < plan.m_vLinks.size(); ++first)
    {
        open.push_back(first);
        while (!open.empty())
        {
            const unsigned int link = open.back();
            unsigned int order = 1;
            bool isReady = true;
            if (plan.m_vLinks[link].m_eKind == LK_sum && plan.m_vOrder4Link[link] == 0)
            {
                for (const unsigned int counted : plan.m_vLinks4Number[plan.m_vLinks[link].m_uiTarget])
                {
                    order = std::max(order, plan.m_vOrder4Link[counted] + 1);
                    if (plan.m_vOrder4Link[counted] != 0 || open.size() > plan.m_vLinks.size())
                        continue;
                    open.push_back(counted);
                    isReady = false;
                }
            }
            if (!isReady)
                continue;
            plan.m_vOrder4Link[link] = std::max(plan.m_vOrder4Link[link], order);
            open.pop_back();
        }
    }
}

bool isComputed(const tPlan& plan, const tValueOf& value)
{
    const std::vector<unsigned int>& links = plan.m_vLinks4Number[value.m_uiPart];
    return std::any_of(links.begin(), links.end(),
                       [&](unsigned int link) { return plan.m_vLinks[link].m_tNumber.m_uiBits == value.m_uiBits; });
}

bool isSelfEvident(const tPlan& plan)
{
    const auto needsComputed = [&plan](const tTest& test) { return isComputed(plan, test.m_tValue); };
    return (plan.m_tFrame.m_eKind == FR_none || plan.m_tFrame.m_eKind == FR_prefixed) &&
           std::all_of(plan.m_vParts.begin(), plan.m_vParts.end(), [&](const tPart& part) {
               return !part.m_bOptional && part.m_strBetween.empty() && part.m_eChoice != CH_heads &&
                      (part.m_eEnd == LE_fixed || part.m_eEnd == LE_prefix) && part.m_uiBitmap == s_cuiNone &&
                      (part.m_eKind != PK_array || part.m_eArrayEnd == AE_count) &&
                      std::none_of(part.m_vIf.begin(), part.m_vIf.end(), needsComputed);
           });
}

}  // namespace murv::detail

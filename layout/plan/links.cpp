// layout/plan/links.cpp - registers, and the links of each part.
#include "layout/plan/links.h"

#include <algorithm>

namespace murv::detail
{

namespace
{

/// Gives a register to every leaf whose value is needed while a packet is read or made.
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
        if (link.m_eKind != LK_records)
            continue;
        for (unsigned int part = link.m_uiTarget; part < plan.m_vParts[link.m_uiTarget].m_uiAfter; ++part)
        {
            if (plan.m_vParts[part].m_bRecord)
                plan.m_vLinks4Counted[part].push_back(i);
        }
    }
}

/// Whether the part, or one around it up to an outer one, is there only sometimes.
bool mayLack(const tPlan& plan, unsigned int part, unsigned int outer)
{
    for (; part != outer; part = plan.m_vParts[part].m_uiParent)
    {
        const tPart& around = plan.m_vParts[plan.m_vParts[part].m_uiParent];
        if (mayBeAbsent(plan.m_vParts[part]) || around.m_eChoice != CH_none || !around.m_strBetween.empty())
            return true;
    }
    return false;
}

/// The innermost part around both that is no array.
unsigned int aroundBoth(const tPlan& plan, unsigned int a, unsigned int b)
{
    while (b < a || b >= plan.m_vParts[a].m_uiAfter || plan.m_vParts[a].m_eKind != PK_set)
        a = plan.m_vParts[a].m_uiParent;
    return a;
}

bool isInArray(const tPlan& plan, unsigned int part, unsigned int outer)
{
    for (; part != outer; part = plan.m_vParts[part].m_uiParent)
    {
        if (plan.m_vParts[part].m_eKind == PK_array)
            return true;
    }
    return false;
}

unsigned int recordAround(const tPlan& plan, unsigned int part)
{
    while (part != s_cuiNone && !plan.m_vParts[part].m_bRecord)
        part = plan.m_vParts[part].m_uiParent;
    return part;
}

/// Sizes and counts that are read before a part which may not come: they are compared when their record ends, or what
/// is around both.
void listLacking(tPlan& plan)
{
    plan.m_vMayLack.assign(plan.m_vLinks.size(), false);
    plan.m_vLinks4Record.resize(plan.m_vParts.size());
    for (unsigned int i = 0; i < plan.m_vLinks.size(); ++i)
    {
        const tLink& link = plan.m_vLinks[i];
        const unsigned int number = link.m_tNumber.m_uiPart;
        if (!(link.m_eKind == LK_size ? link.m_bNumberFirst : link.m_eKind == LK_count))
            continue;
        const unsigned int target = link.m_eKind == LK_size ? plan.m_vSpans[link.m_uiSpan].m_uiLast : link.m_uiTarget;
        const unsigned int record = recordAround(plan, number);
        const bool isInside = record == recordAround(plan, target);
        const unsigned int around = isInside ? record : aroundBoth(plan, number, target);
        if (!mayLack(plan, target, around) || (!isInside && isInArray(plan, number, around)))
            continue;
        plan.m_vMayLack[i] = true;
        (isInside ? plan.m_vLinks4Record : plan.m_vLinks4Base)[around].push_back(i);
    }
}

/// A total that counts numbers of other totals has a higher order than these. Circles were refused before, so a total
/// is put in order after all that it counts.
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

}  // namespace

void prepareLinks(tPlan& plan)
{
    assignRegisters(plan);
    listLinks(plan);
    listLacking(plan);
    orderLinks(plan);
}

}  // namespace murv::detail

// layout/plan/head_tables.cpp - tables of heads that consist of one byte each.
#include "layout/plan/head_tables.h"

#include <algorithm>

namespace murv::detail
{

namespace
{

/// The offset of the one byte that each of the heads consists of, or none.
unsigned int offsetOfHeads(const std::vector<tHead>& heads)
{
    unsigned int offset = s_cuiNone;
    for (const tHead& head : heads)
    {
        if (head.m_vBytes.size() != 1 || head.m_vBytes[0].m_strBytes.size() != 1)
            return s_cuiNone;
        if (offset != s_cuiNone && head.m_vBytes[0].m_uiOffset != offset)
            return s_cuiNone;
        offset = head.m_vBytes[0].m_uiOffset;
    }
    return offset;
}

unsigned int byteOf(const tHead& head)
{
    return static_cast<unsigned char>(head.m_vBytes[0].m_strBytes[0]);
}

/// A choice between alternatives that one byte tells apart is one look into a table. The byte may not be there; then
/// only an alternative without a head fits.
void makeByteTable(const tPlan& plan, tChoice& choice)
{
    const tPart& set = plan.m_vParts[choice.m_uiSet];
    std::vector<unsigned int> table(256, s_cuiNone);
    std::vector<tHead> all;
    for (unsigned int member = 0; member < set.m_vMembers.size(); ++member)
    {
        const std::vector<tHead>& heads = plan.m_vParts[set.m_vMembers[member]].m_vHeads;
        all.insert(all.end(), heads.begin(), heads.end());
    }
    const unsigned int offset = offsetOfHeads(all);
    if (offset == s_cuiNone)
        return;
    for (unsigned int member = 0; member < set.m_vMembers.size(); ++member)
    {
        const std::vector<tHead>& heads = plan.m_vParts[set.m_vMembers[member]].m_vHeads;
        for (const tHead& head : heads)
            table[byteOf(head)] = std::min(table[byteOf(head)], member);
        if (!heads.empty())
            continue;
        std::replace(table.begin(), table.end(), s_cuiNone, member);
        break;
    }
    choice.m_uiOffset = offset;
    choice.m_vMember4Byte = std::move(table);
}

/// So is the question whether another element of an array follows.
void makeHeadTable(tPlan& plan, unsigned int array)
{
    const unsigned int offset = offsetOfHeads(plan.m_vParts[array].m_vHeads);
    if (offset == s_cuiNone)
        return;
    tHeadTable& table = plan.m_vHeadTables[array];
    table.m_uiOffset = offset;
    table.m_vBegins.assign(256, false);
    for (const tHead& head : plan.m_vParts[array].m_vHeads)
        table.m_vBegins[byteOf(head)] = true;
}

}  // namespace

void makeHeadTables(tPlan& plan)
{
    plan.m_vHeadTables.resize(plan.m_vParts.size());
    plan.m_vEnds4Array.resize(plan.m_vParts.size());
    for (unsigned int part = 0; part < plan.m_vParts.size(); ++part)
    {
        if (plan.m_vParts[part].m_eArrayEnd == AE_heads)
            makeHeadTable(plan, part);
        if (plan.m_vParts[part].m_eArrayEnd == AE_mark)
            plan.m_vEnds4Array[part] = {tHead{{{0, plan.m_vParts[part].m_strEnds}}}};
    }
    for (tChoice& choice : plan.m_vChoices)
    {
        if (plan.m_vParts[choice.m_uiSet].m_eChoice == CH_heads)
            makeByteTable(plan, choice);
    }
}

}  // namespace murv::detail

// layout/compile/paths.cpp - steps from part to part by name.
#include "layout/compile/paths.h"

#include <algorithm>
#include <string_view>

#include "layout/compile/draft.h"
#include "layout/compile/suggestion.h"

namespace murv::detail
{

namespace
{
constexpr std::size_t s_cnFewMembers = 16;  // are compared one by one
}

unsigned int CPaths::member(unsigned int set, const tRuleStep& step)
{
    const std::vector<tPart>& parts = m_tCompile.m_tPlan.m_vParts;
    const std::vector<unsigned int>& members = parts[set].m_vMembers;
    const bool byID = step.m_strName.empty();
    if (members.size() <= s_cnFewMembers)
    {
        for (const unsigned int index : members)
        {
            if (byID ? parts[index].m_uiID == step.m_uiID : parts[index].m_strName == step.m_strName)
                return index;
        }
        return s_cuiNone;
    }
    const auto less = [&parts, byID](unsigned int a, unsigned int b) {
        return byID ? parts[a].m_uiID < parts[b].m_uiID : parts[a].m_strName < parts[b].m_strName;
    };
    std::vector<unsigned int>& sorted = (byID ? m_tByID : m_tByName)[set];
    if (sorted.empty())
    {
        sorted = members;
        std::stable_sort(sorted.begin(), sorted.end(), less);
    }
    const auto at = std::partition_point(sorted.begin(), sorted.end(), [&parts, &step, byID](unsigned int a) {
        return byID ? parts[a].m_uiID < step.m_uiID : parts[a].m_strName < step.m_strName;
    });
    if (at == sorted.end() || (byID ? parts[*at].m_uiID != step.m_uiID : parts[*at].m_strName != step.m_strName))
        return s_cuiNone;
    return *at;
}

unsigned int CPaths::setAround(unsigned int part) const
{
    const std::vector<tPart>& parts = m_tCompile.m_tPlan.m_vParts;
    do
        part = parts[part].m_uiParent;
    while (part != s_cuiNone && parts[part].m_eKind != PK_set);
    return part;
}

std::string CPaths::suggestMember(unsigned int set, const std::string& name, bool outwards) const
{
    constexpr std::size_t most = 1000;
    if (m_tCompile.m_tMistakes.isFull())
        return {};
    std::vector<std::string_view> names;
    for (; set != s_cuiNone && names.size() < most; set = outwards ? setAround(set) : s_cuiNone)
    {
        for (const unsigned int index : m_tCompile.m_tPlan.m_vParts[set].m_vMembers)
        {
            if (names.size() < most)
                names.emplace_back(m_tCompile.m_tPlan.m_vParts[index].m_strName);
        }
    }
    return suggest(name, names);
}

std::string CPaths::find(unsigned int set, const std::vector<tRuleStep>& path, tFound& found)
{
    if (path.empty())
    {
        found = {set, s_cuiNone, set, false};
        return set == s_cuiNone ? "There is no field set around it" : std::string();
    }
    for (unsigned int at = set; at != s_cuiNone && m_tCompile.spend(1); at = setAround(at))
    {
        const unsigned int index = member(at, path.front());
        if (index == s_cuiNone)
            continue;
        found = {index, s_cuiNone, at, false};
        return follow(path, found);
    }
    const std::string& name = path.front().m_strName;
    return "There is no part \"" + describeStep(path.front()) + "\" here or around" + suggestMember(set, name, true);
}

std::string CPaths::follow(const std::vector<tRuleStep>& path, tFound& found)
{
    const std::vector<tPart>& parts = m_tCompile.m_tPlan.m_vParts;
    for (std::size_t i = 1; i < path.size(); ++i)
    {
        while (parts[found.m_uiPart].m_eKind == PK_array && !parts[found.m_uiPart].m_vMembers.empty())
        {
            found.m_uiPart = parts[found.m_uiPart].m_vMembers.front();
            found.m_bCrossed = true;
        }
        const tPart& at = parts[found.m_uiPart];
        const std::vector<tBitField>& bits = at.m_tItem.m_vBits;
        if (at.m_eKind == PK_leaf && i + 1 == path.size() && !bits.empty())
        {
            const auto bit = std::find_if(bits.begin(), bits.end(), [&path, i](const tBitField& field) {
                return field.m_strName == path[i].m_strName;
            });
            if (bit == bits.end())
                return nameOf(at) + " has no bits \"" + describeStep(path[i]) + "\"";
            found.m_uiBits = static_cast<unsigned int>(bit - bits.begin());
            return {};
        }
        if (at.m_eKind != PK_set)
            return "The path goes through the leaf " + nameOf(at);
        const unsigned int next = member(found.m_uiPart, path[i]);
        if (next == s_cuiNone)
            return nameOf(at) + " has no part \"" + describeStep(path[i]) + "\"" +
                   suggestMember(found.m_uiPart, path[i].m_strName, false);
        found.m_uiPart = next;
    }
    return {};
}

}  // namespace murv::detail

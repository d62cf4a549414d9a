// layout/plan/members.cpp - the members of a field set by name and by ID.
#include "layout/plan/members.h"

#include <algorithm>

namespace murv::detail
{

unsigned int findMember(const tPlan& plan, const tPart& set, std::string_view name)
{
    const auto name4 = [&](unsigned int member) -> const std::string& {
        return plan.m_vParts[set.m_vMembers[member]].m_strName;
    };
    const auto found =
        std::lower_bound(set.m_vByName.begin(), set.m_vByName.end(), name,
                         [&](unsigned int member, std::string_view text) { return name4(member) < text; });
    return found != set.m_vByName.end() && name4(*found) == name ? *found : s_cuiNone;
}

unsigned int findMember(const tPlan& plan, const tPart& set, unsigned long long id)
{
    const auto id4 = [&](unsigned int member) { return plan.m_vParts[set.m_vMembers[member]].m_uiID; };
    const auto found =
        std::lower_bound(set.m_vByID.begin(), set.m_vByID.end(), id,
                         [&](unsigned int member, unsigned long long value) { return id4(member) < value; });
    return found != set.m_vByID.end() && id4(*found) == id ? *found : s_cuiNone;
}

void sortMembers(const tPlan& plan, tPart& set)
{
    const auto part4 = [&](unsigned int member) -> const tPart& { return plan.m_vParts[set.m_vMembers[member]]; };
    for (unsigned int member = 0; member < set.m_vMembers.size(); ++member)
    {
        if (part4(member).m_uiID != 0)
            set.m_vByID.push_back(member);
        if (!part4(member).m_strName.empty())
            set.m_vByName.push_back(member);
    }
    std::sort(set.m_vByID.begin(), set.m_vByID.end(),
              [&](unsigned int a, unsigned int b) { return part4(a).m_uiID < part4(b).m_uiID; });
    std::sort(set.m_vByName.begin(), set.m_vByName.end(),
              [&](unsigned int a, unsigned int b) { return part4(a).m_strName < part4(b).m_strName; });
}

}  // namespace murv::detail

// layout/plan/members.h - the members of a field set by name and by ID.
#pragma once

#include <string_view>

#include "layout/plan/plan.h"

namespace murv::detail
{

/// Index of the member of that name, or none. Cost: logarithmic.
unsigned int findMember(const tPlan& plan, const tPart& set, std::string_view name);

/// Index of the member with that ID, or none; 0 is no ID.
unsigned int findMember(const tPlan& plan, const tPart& set, unsigned long long id);

/// Sorts the members of a field set for these.
void sortMembers(const tPlan& plan, tPart& set);

}  // namespace murv::detail

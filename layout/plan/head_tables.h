// layout/plan/head_tables.h - tables in which one byte tells an alternative, or whether another element follows.
#pragma once

#include "layout/plan/plan.h"

namespace murv::detail
{

/// Fills the plan's tables of heads, from its parts and choices.
void makeHeadTables(tPlan& plan);

}  // namespace murv::detail

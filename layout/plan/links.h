// layout/plan/links.h - who looks at which values, and in which order numbers are filled in.
#pragma once

#include "layout/plan/plan.h"

namespace murv::detail
{

/// Fills the plan's tables of registers and links, from its parts and links.
void prepareLinks(tPlan& plan);

}  // namespace murv::detail

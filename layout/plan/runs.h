// layout/plan/runs.h - leaves of fixed width that lie side by side.
#pragma once

#include "layout/plan/plan.h"

namespace murv::detail
{

/// Appends a leaf to a run, and enters where it lies.
void appendToRun(tPlan& plan, unsigned int run, unsigned int part);

/// Finds the rows of a run that are made side by side.
void makeRows(tPlan& plan, tRun& run);

}  // namespace murv::detail

// layout/compile/compile.h - from a document to the parts of a plan, with every mistake at its place.
#pragma once

#include <vector>

#include "layout/plan/plan.h"
#include "murv/fields.h"
#include "murv/layout.h"

namespace murv::detail
{

/// Fills parts, links, spans and frame of a plan.
///
/// \return false when there are mistakes; the plan is of no use then
bool compileParts(const CFields& document, tPlan& plan, std::vector<tLayoutMistake>& mistakes);

}  // namespace murv::detail

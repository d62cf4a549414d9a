// layout/plan/links.h - what steps need to know of numbers about other parts.
#pragma once

#include "layout/plan/plan.h"

namespace murv::detail
{

/// Gives a register to every leaf whose value is needed while a packet is read or made.
void assignRegisters(tPlan& plan);

/// Lists the links by number, target, base and span.
void listLinks(tPlan& plan);

/// Puts totals in order: one that counts numbers of other totals comes after these.
void orderLinks(tPlan& plan);

/// Whether making fills a value in, or these bits of it.
bool isComputed(const tPlan& plan, const tValueOf& value);

/// Whether every end is a width, a length prefix, a size or a count, and every condition a value that was read. Then
/// what is made cannot be read in another way.
bool isSelfEvident(const tPlan& plan);

}  // namespace murv::detail

// packet/time_value.h - the number that a date or time keyword stands for.
#pragma once

#include "packet/keyword_table.h"

namespace murv::detail
{

/// Puts the parts of a reading together as one decimal number, in the order of the keyword's letters.
unsigned long long makeTimeValue(const tKeywordRow& row, const tClockReading& reading);

/// Whether every part of the number lies in its range, and the day in its month as far as that is known.
bool isTimeValue(const tKeywordRow& row, unsigned long long number);

/// The same for parts in any order, as they come from splitTimeName.
bool isTimeValue(const tTimeParts& parts, unsigned long long number);

}  // namespace murv::detail

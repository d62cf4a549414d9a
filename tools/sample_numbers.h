// tools/sample_numbers.h - random numbers for items: digits, binary numbers, small numbers in one.
#pragma once

#include "tools/sample_values.h"

namespace murv::tool
{

CFields makeSampleNumber(const tSamplePart& part, const tSampleStyle& style, CSampleRandom& random);

/// A decimal text in a range of valid values. \return empty when the range is none of numbers
std::string sampleInRange(const tSampleRange& range, std::size_t decimals, CSampleRandom& random);

}  // namespace murv::tool

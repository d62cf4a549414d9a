// layout/run/fault_words.h - faults and findings in words: path, expression, bytes, sentence.
#pragma once

#include <string>

#include "layout/run/scanner.h"

namespace murv::detail
{

/// The name of a part as paths write it: in quotes when it has characters that mean something there; `#7` for an ID,
/// and `(3)` for the third of a field set when there is neither.
std::string pathName(const tPart& part);

/// The path of a part, with the numbers of the elements around it; fewer numbers than arrays: of the layout alone.
std::string path4Part(const tPlan& plan, unsigned int part, const tElements& elements);

/// Puts a fault into words.
/// \param bytes  the bytes concerned, as far as they are at hand
tPacketFault describe(const tPlan& plan, const tScanFault& fault, std::string_view bytes);

/// Puts findings in the order of the input.
void sortFindings(std::vector<tScanFault>& findings);

/// The same bytes with stars where they are masked.
std::string masked(const tItem& item, std::string_view bytes);

}  // namespace murv::detail

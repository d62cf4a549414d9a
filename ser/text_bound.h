// ser/text_bound.h - how long the indented text of a node may become.
//
// A document has a largest size, and nothing may be written of one that would pass it. The bound is quick to find; only
// a tree that might pass it is measured.
#pragma once

#include <cstdint>

#include "murv/fields.h"

namespace murv::detail
{

/// What the layout engine writes for a node at most, without its members. Capped above the largest document, so that
/// sums of many nodes do not wrap.
/// \param indentation  of the node's lines, in bytes
std::uint64_t boundOfText(const CFields& node, std::uint64_t indentation);

}  // namespace murv::detail

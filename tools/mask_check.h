// tools/mask_check.h - finds stars that stand for a masked value.
//
// JSON and tables show stars for values that are nobody's business. Packing them would put stars into the packet.
#pragma once

#include "murv/layout.h"

namespace murv::tool
{

/// Finds the first masked leaf whose value in the data is a mask.
/// \param part   what the data are in the layout
/// \param fault  what to report of it
bool findMask(const CLayout& layout, unsigned int part, const CFields& data, tPacketFault& fault);

}  // namespace murv::tool

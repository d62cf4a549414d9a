// tools/layout_example.h - a packet made from a layout alone.
#pragma once

#include <string>

#include "murv/layout.h"

namespace murv::tool
{

struct tExample
{
    std::string m_strPacket;  // empty: none could be made
    std::string m_strFault;   // why
};

/// Makes a packet of the layout's own values: one element in each array, the first alternative of each choice; optional
/// parts as far as they can be there. Where that contradicts itself, fewer parts.
///
/// \param document  that the layout was compiled from: what leaves have that making does not fill in
tExample example4Layout(const CLayout& layout, const CFields& document);

}  // namespace murv::tool

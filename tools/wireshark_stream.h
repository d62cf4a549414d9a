// tools/wireshark_stream.h - whether a dissector can read the packets of a layout from a TCP stream.
//
// In a stream every record is read alone: segments come in any order when somebody clicks on packets, so a dissector
// cannot know the records before. And a stream has no end, so a record must say by itself where it ends.
#pragma once

#include <string>

#include "murv/fields.h"

namespace murv::tool
{

/// Why not, in a sentence that names part and rule; empty when it can.
/// \param description  of the layout; records get the member "beginning": the literals by which they are known
std::string whyNoStream(CFields& description);

}  // namespace murv::tool

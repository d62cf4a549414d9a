// packet/limits.h - the longest length that takes part in the arithmetic of packets.
#pragma once

namespace murv::detail
{

/// Results are signed 32-bit numbers; a length above this one counts as this one.
inline constexpr unsigned int s_cuiLongestItem = 0x7FFFFFFF;

}  // namespace murv::detail

// core/text/double_limits.h - the bounds of 64-bit integers as doubles.
//
// The largest integers themselves are no doubles: tests of range and conversions compare with the powers behind them.
#pragma once

namespace murv::detail
{

inline constexpr double s_cdTwoTo63 = 9223372036854775808.0;
inline constexpr double s_cdTwoTo64 = 18446744073709551616.0;

}  // namespace murv::detail

// packet/pei_rules.h - which packet expressions are accepted from outside.
//
// A packet expression that an application sets is stored as it is; one that comes from a file must pass these rules.
#pragma once

#include "murv/packet_expression.h"

namespace murv::detail
{

inline constexpr const char* s_cpPrefixTooBig = "Packet variable length must be little than 10";

/// Checks prefix size, option and keyword; external keywords are put to the CheckIdx callback of their kind.
///
/// \return null when all is well, else the message (static text)
const char* findPeiFault(const tPacketExpInfo& pei);

}  // namespace murv::detail

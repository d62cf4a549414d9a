// packet/pei_rules.h - rules about packet expressions that text, binary files and packets share.
//
// A packet expression that an application sets is stored as it is; one that comes from outside must be valid. Two
// keywords, "fix" and "valid", give a leaf a second value, and savers must choose.
#pragma once

#include "murv/fields.h"
#include "murv/packet_expression.h"

namespace murv::detail
{

inline constexpr const char* s_cpPrefixTooBig = "Packet variable length must be little than 10";

/// Checks prefix size, option and keyword; external keywords are put to the CheckIdx callback of their kind.
///
/// \return null when all is well, else the message (static text)
const char* findPeiFault(const tPacketExpInfo& pei);

/// Whether the expression says "fix" or "valid", the keywords whose index is a value kind.
inline bool isDualExpression(const tPacketExpInfo& pei) noexcept
{
    return pei.m_ucSkKind == 0 && (pei.m_usSkIndex == VK_fix || pei.m_usSkIndex == VK_valid);
}

/// Which value of a leaf is saved, and the expression that is saved with it.
struct tSavedValue
{
    E_ValueKind m_eKind;
    tPacketExpInfo m_tPEI;
};

/// Of a leaf with two values that differ, the second is saved, which is the one that packets carry, when the saver may
/// write second values; else the first, with an expression that does not say "fix" or "valid".
tSavedValue chooseSavedValue(const CFields& leaf, bool maySaveSecond);

}  // namespace murv::detail

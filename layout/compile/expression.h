// layout/compile/expression.h - packet expressions as texts, and what they say of an item.
#pragma once

#include <string>
#include <string_view>

#include "layout/values/item.h"
#include "murv/packet_expression.h"

namespace murv::detail
{

/// As in documents, without parentheses, such as "ANF10dec_2".
std::string describeExpression(const tPacketExpInfo& pei);

/// Reads form, runtime letter, "F" and a length, such as "BNF2". \return false for anything else
bool readFixedExpression(std::string_view text, tPacketExpInfo& pei);

bool isLiteralExpression(const tPacketExpInfo& pei);

/// Whether the keyword is one of an application's own.
bool hasOwnKeyword(const tPacketExpInfo& pei);

/// E_RulePlace of a leaf with that expression.
unsigned int placesOf(const tPacketExpInfo& pei);

/// Form, length, prefix and keyword, before any rule.
///
/// \return nothing, or the mistake as one sentence
std::string makeBareItem(const tPacketExpInfo& pei, tItem& item);

}  // namespace murv::detail

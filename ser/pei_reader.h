// ser/pei_reader.h - packet expressions from text.
//
// The text parser finds where an expression begins and ends; what it says is read here.
#pragma once

#include <string_view>

#include "murv/packet_expression.h"

namespace murv::detail
{

/// Reads a packet expression such as "ACF8YYYYMMDD", without parentheses and blanks.
///
/// For external keywords the GetIdx callbacks of the kinds 1 to 15 are called, in this order; what they throw passes.
/// \param loaderConfig  bits of E_LoaderConfigBit
/// \param out           the result; as it was when there is an error
/// \return null when all is well, else the message (static text)
const char* decodePei(std::string_view text, unsigned int loaderConfig, tPacketExpInfo& out);

}  // namespace murv::detail

// layout/values/digit_frame.h - what stands around the digits of a number in characters: padding, blanks, a tail.
//
// Decimal, octal and hexadecimal items have it in common, and it is the same on both ways.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "layout/values/item.h"
#include "murv/packet_fault.h"

namespace murv::detail
{

/// Whether zeros in front of the digits fill the item.
constexpr bool isZeroFilled(const tItem& item)
{
    return !item.m_bVaries && item.m_ePadding == PAD_zerosFront;
}

/// Whether a whole number of these digits may begin with a zero, or has to.
/// \return PF_none, or what is wrong with the digits
E_PacketFault checkZerosInFront(const tItem& item, std::string_view whole);

/// Finds sign and digits: takes code page, tail and blanks away.
///
/// \param digits   in ASCII; in the packet, or in the scratch, which has room for a presentation then
/// \param isNull   the item is blank, and this is null
E_PacketFault stripFrame(const tItem& item, std::string_view bytes, std::string_view& digits, bool& isNull,
                         std::string& scratch);

/// How many fill bytes a number has, for a form whose sign and digits need that many bytes.
E_PacketFault fitFrame(const tItem& item, std::size_t needed, std::size_t& fill);

/// Null as blanks, or no bytes; with the tail. PF_null when blanks are not null.
E_PacketFault makeBlank(const tItem& item, std::string& out);

/// Ends a number that was appended from a place on: code page and tail.
void finishFrame(const tItem& item, std::string& out, std::size_t from);

}  // namespace murv::detail

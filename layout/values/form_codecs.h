// layout/values/form_codecs.h - reading and making, form by form.
//
// Only the table of forms calls these. Each pair is in one source, named after the group of forms.
#pragma once

#include <string>
#include <string_view>

#include "layout/values/item.h"
#include "layout/values/scalar.h"
#include "murv/packet_fault.h"

namespace murv::detail
{

/// What the source of the value is, to makers of texts.
enum E_Origin : bool
{
    OR_data,
    OR_layout,  // the layout's own value: it is filled up, and may end in padding
};

using tReadForm = E_PacketFault (*)(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                                    std::string& scratch);

/// Appends; on a fault, what it has appended is removed by the caller.
using tMakeForm = E_PacketFault (*)(const tItem& item, const tScalar& value, E_Origin origin, std::string& out);

// text_values.cpp
E_PacketFault readText(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                       std::string& scratch);
E_PacketFault makeText(const tItem& item, const tScalar& value, E_Origin origin, std::string& out);
E_PacketFault readHexText(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                          std::string& scratch);
E_PacketFault makeHexText(const tItem& item, const tScalar& value, E_Origin origin, std::string& out);

// digit_values.cpp: sign in front, sign after the digits, sign in the last digit
E_PacketFault readDigitText(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                            std::string& scratch);
E_PacketFault makeDigitText(const tItem& item, const tScalar& value, E_Origin origin, std::string& out);

// radix_values.cpp: octal and hexadecimal digits
E_PacketFault readRadix(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                        std::string& scratch);
E_PacketFault makeRadix(const tItem& item, const tScalar& value, E_Origin origin, std::string& out);

// binary_values.cpp
E_PacketFault readBinary(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                         std::string& scratch);
E_PacketFault makeBinary(const tItem& item, const tScalar& value, E_Origin origin, std::string& out);
E_PacketFault readFloat(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                        std::string& scratch);
E_PacketFault makeFloat(const tItem& item, const tScalar& value, E_Origin origin, std::string& out);

// packed_values.cpp: two digits a byte, with and without a sign
E_PacketFault readPacked(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                         std::string& scratch);
E_PacketFault makePacked(const tItem& item, const tScalar& value, E_Origin origin, std::string& out);

}  // namespace murv::detail

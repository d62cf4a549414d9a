// tools/packet_leaf.h - what verbs know of the parts of a layout, looked up once.
//
// Visitors see numbers of parts; names, masks and small numbers in a number are kept here by these numbers.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "murv/layout.h"

namespace murv::tool
{

/// What JSON, tables and dumps call a part: its name, else #7 for an ID; empty for a part without either, and for the
/// elements of arrays.
std::string label4Part(const CLayout& layout, unsigned int part);

/// The path of a part in the layout, where elements have no numbers, from its path in the data.
std::string pathInLayout(std::string_view path);

/// Whether a part is the element of an array.
bool isElement(const CLayout& layout, unsigned int part);

/// Whether reading leaves a part out of the data: a literal without name and ID.
bool isLeftOut(const CLayout& layout, unsigned int part);

/// A small number in a number.
unsigned long long valueOfBits(const tLayoutBits& bits, unsigned long long number);

/// The value of a leaf as plain text: digits, or the bytes of a text. Null is empty.
void appendPlainValue(std::string& out, const tPacketValue& value);

/// Stars for a masked value, one for each byte of the item, but for the last that are shown.
std::string maskedValue(const tPacketValue& value, const tByteRange& place, unsigned int shown);

/// Whether a text is what a mask leaves of a value: stars, and nothing else but the last that are shown.
bool isMask(std::string_view text, unsigned int shown);

}  // namespace murv::tool

// layout/values/value_codec.h - values from bytes and bytes from values, strictly.
//
// What is read can be made again, byte for byte, and what is made is read back as the same value; all else is refused.
// Each form has one source in which reading and making stand side by side; the table of forms is in value_codec.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "layout/values/item.h"
#include "murv/packet_fault.h"

namespace murv::detail
{

/// How values are read, bit by bit.
enum E_ValueOption : unsigned int
{
    VO_none = 0,
    VO_unscaled = 1,  // numbers with decimals as integers, in units of the last decimal
};

/// To be called when an item is complete: sets what reading and making can know before. Without it they are slower.
void prepareItem(tItem& item);

/// A text without padding, which does not count in comparisons even where it belongs to the value.
std::string_view withoutPadding(const tItem& item, std::string_view text);

/// Reads the bytes of a value, without prefix and end mark.
///
/// \param bytes    of an item of fixed width, exactly that many
/// \param value    its text lies in `bytes` or in `scratch`
/// \param scratch  kept by the caller for its memory
/// \return PF_none; a finding, with the value set; or a fault
E_PacketFault readValue(const tItem& item, std::string_view bytes, unsigned int options, tScalar& value,
                        std::string& scratch);

/// Appends the bytes of a value, without prefix and end mark; a finding appends them, too.
///
/// \param value  takes integers, decimal text, and doubles whose shortest text fits, where the item is a number
/// \return PF_none, a finding, or a fault; after a fault nothing is appended. \throw std::bad_alloc, after a part was
E_PacketFault makeValue(const tItem& item, const tScalar& value, std::string& out);

/// The same for the value that the layout itself states. Whatever the rules, it is filled up when it is shorter than
/// the item, and may have padding of its own: blanks or zero bytes at the end, of a number zeros in front. Null is
/// an empty text.
E_PacketFault makeOwnValue(const tItem& item, const tScalar& value, std::string& out);

/// Whether the value is one of the valid ones; true without such a rule.
bool isValidValue(const tItem& item, const tScalar& value);

/// The first part of the bits, from that one on, whose value in a number is not valid; or their count.
std::size_t findInvalidBits(const tItem& item, unsigned long long number, std::size_t from);

/// Reads the length prefix that the bytes begin with.
///
/// \param bytes   at least as many as the prefix is wide
/// \param length  of the value bytes after it
/// \return PF_none; PF_digits, or PF_size when the length is less than nothing or above the item's most
E_PacketFault readPrefix(const tItem& item, std::string_view bytes, std::uint64_t& length);

/// Appends the prefix of a value of that many bytes. \return PF_tooLong when the prefix cannot say it
E_PacketFault makePrefix(const tItem& item, std::uint64_t length, std::string& out);

}  // namespace murv::detail

// packet/item_read.h - one leaf's value from a packet item.
//
// An item is found first (where it ends, where its value lies) and then read. Nothing after the given bytes is
// touched, whatever the packet claims.
#pragma once

#include <cstdint>
#include <string_view>

#include "murv/fields.h"

namespace murv::detail
{

/// The bytes from the start of an item to the end of the packet.
using tRemaining = std::string_view;

/// Total length of a variable item, at most 0x7FFFFFFF, as its prefix says; 0 when that is less than the prefix
/// itself. The prefix lies within `item`.
std::int64_t variableTotal(const tPacketExpInfo& pei, const char* item);

/// Makes value bytes (or, of a variable binary number, the bytes from its prefix on) the value of their leaf.
/// \return false, with nothing changed, when they are no number but should be
bool storeItem(CFields& leaf, std::string_view bytes);

/// The same for items that storeUsual does not take; it has the rules for all.
bool storeOther(CFields& leaf, std::string_view bytes);

/// Reads an item of `length` bytes into its leaf.
///
/// \param store  false: only measure
/// \return bytes that remain; negative: bytes that are missing, or -1 for an unreadable number
inline std::int64_t readFixed(CFields& leaf, unsigned int length, tRemaining item, bool store)
{
    const auto rest = static_cast<std::int64_t>(item.size());
    if (store && length != 0 && length <= item.size() && !storeItem(leaf, {item.data(), length}))
        return -1;
    return rest - length;
}

/// The same for a variable item; when stored, the leaf records the total length.
std::int64_t readVariable(CFields& leaf, tRemaining item, bool store);

/// The value bytes of an item, without its prefix.
///
/// \param length  of an item that has no prefix
/// \return false when the item does not lie within the packet
bool findValue(const tPacketExpInfo& pei, unsigned int length, tRemaining item, std::string_view& value);

/// Reads an item that lies within the packet as parsing would, into a node with the leaf's packet expression.
/// \return false when it cannot be read
bool readValue(CFields& result, unsigned int length, tRemaining item);

/// Reads a length from value bytes: decimal text, of which what follows the digits does not count, or a big-endian
/// integer. \return false for a negative one, and when there is none.
bool readSize(E_PacketExpCode form, std::string_view value, unsigned int& size);

/// Reads a whole number from value bytes that hold nothing else. \return false when they do.
bool readWhole(E_PacketExpCode form, std::string_view value, unsigned long long& number);

}  // namespace murv::detail

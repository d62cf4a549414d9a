// tools/hex_text.h - bytes as hexadecimal digits, and back.
//
// People give packets so, and what is no text is shown so.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace murv::tool
{

/// Appends two capital digits a byte, with `between` between the bytes.
void appendHex(std::string& out, std::string_view bytes, std::string_view between = {});

/// Reads digits, two a byte. Between bytes there may be blanks, line ends, commas, colons and dashes, and "0x" before
/// each.
///
/// \param fault  the offset of what is no digit, or of a digit without a second one
/// \return false when there is one
bool bytes4Hex(std::string_view text, std::string& bytes, std::size_t& fault);

/// An offset as people see it: 0x and at least as many digits.
std::string hex4Offset(std::uint64_t offset, std::size_t digits = 2);

}  // namespace murv::tool

// tools/base64.h - bytes as base64 (RFC 4648, with padding), and back.
//
// Half as long as hexadecimal digits, and what most programs expect where JSON holds bytes.
#pragma once

#include <string>
#include <string_view>

namespace murv::tool
{

/// Appends four characters for each three bytes.
void appendBase64(std::string& out, std::string_view bytes);

/// Reads them, strictly: whole groups, padding only at the end, no bits that say nothing.
/// \return false for any other text
bool bytes4Base64(std::string_view text, std::string& bytes);

}  // namespace murv::tool

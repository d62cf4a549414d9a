// tools/lua_text.h - data as Lua source text.
//
// Texts come from layouts, which may be hostile: in the quotes stands nothing that could end them, and nothing that
// changes how an editor shows the lines.
#pragma once

#include <string>
#include <string_view>

#include "murv/fields.h"

namespace murv::tool
{

/// A text in quotes, which Lua reads back byte for byte.
std::string lua4Text(std::string_view text);

/// A node as a table or a value. What does not fit on a line has one member on each.
/// \param indent  blanks before the line on which it begins
/// Integers that a double does not hold are digits in quotes.
std::string lua4Node(const CFields& node, unsigned int indent);

/// The key of a member with its equals sign, such as `name = ` or `["a b"] = `.
std::string lua4Key(std::string_view name);

}  // namespace murv::tool

// everyday/member_edit.h - adds and arranges members, for all functions that change trees.
#pragma once

#include <string_view>

#include "murv/fields.h"

namespace murv::detail
{

inline constexpr const char* s_cpNameSize = "a name has 1 to 255 bytes";

bool isMemberName(std::string_view name);

/// Moves a value into a new member at the end; a container without a vector, or a null node, is made one. When memory
/// runs out, nothing has changed.
/// \param name  of a member of a field set; empty for an element
CFields& appendValue(CFields& container, std::string_view name, CFields&& value);

}  // namespace murv::detail

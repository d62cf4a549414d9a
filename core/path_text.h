// core/path_text.h - how paths of nodes are written.
//
// Messages of savers and the paths that applications ask for are the same text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "murv/fields.h"

namespace murv::detail
{

/// Appends a name, in quotes unless it is plain: letters, digits, "_" and "-".
void appendPathName(std::string& path, std::string_view name);

/// Whether a look-up of the member's name leads to it: it has one, and no member before it has the same.
bool isFoundByName(const CFields& container, const CFields& member);

/// Appends the step from a container to its member at that index, with a dot where one is needed.
void appendPathStep(std::string& path, const CFields& container, std::uint32_t index);

}  // namespace murv::detail

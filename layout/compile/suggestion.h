// layout/compile/suggestion.h - the end of a message about a name that does not exist.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "layout/plan/nearest_name.h"

namespace murv::detail
{

/// `; did you mean "NAME"?`, or nothing when no name is near.
inline std::string suggest(std::string_view written, const std::vector<std::string_view>& names)
{
    const std::string_view name = nearestName(written, names);
    return name.empty() ? std::string() : "; did you mean \"" + std::string(name) + "\"?";
}

}  // namespace murv::detail

// layout/plan/nearest_name.h - the name that someone may have meant.
#pragma once

#include <string_view>
#include <vector>

namespace murv::detail
{

/// The name that differs least from a mistyped one: by at most a third of its letters, added, dropped, changed or
/// exchanged with the next. Empty when none is near. Names above 64 bytes are not compared.
std::string_view nearestName(std::string_view mistyped, const std::vector<std::string_view>& names);

}  // namespace murv::detail

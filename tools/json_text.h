// tools/json_text.h - JSON for other programs: diagnostics, statistics, values.
#pragma once

#include <string>
#include <string_view>

#include "murv/fields.h"

namespace murv::tool
{

/// The text as a JSON string. JSON holds characters, not bytes: a byte that is part of none becomes U+FFFD. Characters
/// that a terminal would act on are escaped.
std::string json4Text(std::string_view text);

/// The node's value as JSON on one line.
///
/// Field sets become objects in which a member without a name has the key "", arrays and scalars what they are. Doubles
/// have the fewest digits that read back the same; a NaN, which JSON does not have, becomes null.
std::string json4Value(const CFields& node);

}  // namespace murv::tool

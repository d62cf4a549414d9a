// tools/json_text.h - JSON for other programs: diagnostics, statistics, values.
//
// Documents hold bytes and JSON holds characters; what has no place in JSON is decided here, once.
#pragma once

#include <string>
#include <string_view>

#include "murv/fields.h"

namespace murv::tool
{

/// The text as a JSON string. A byte that is part of no well-formed UTF-8 becomes U+FFFD. Characters
/// that a terminal would act on are escaped.
std::string json4Text(std::string_view text);

/// The node's value as JSON on one line.
///
/// Field sets become objects in which a member without a name has the key "", arrays and scalars what they are. Doubles
/// have the fewest digits that read back the same; a NaN, which JSON does not have, becomes null.
std::string json4Value(const CFields& node);

}  // namespace murv::tool

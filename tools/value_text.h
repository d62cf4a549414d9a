// tools/value_text.h - nodes as text on one line, for people to look at.
#pragma once

#include <string>

#include "murv/fields.h"

namespace murv::tool
{

/// The node as documents write it on one line, without its name and without comments: `#7 8080`, `{"a"=1}`. What text
/// cannot hold, such as NaN, is written as JSON.
std::string lineText4Node(const CFields& node);

/// The same of its value alone: without ID and packet expression.
std::string lineText4Value(const CFields& node);

}  // namespace murv::tool

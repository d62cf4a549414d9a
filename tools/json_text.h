// tools/json_text.h - JSON strings and numbers: for diagnostics, statistics, values.
//
// Documents hold bytes and JSON holds characters; what has no place in JSON is decided here, once.
#pragma once

#include <string>
#include <string_view>

namespace murv::tool
{

/// The text as a JSON string. A byte that is part of no well-formed UTF-8 becomes U+FFFD. Characters
/// that a terminal would act on are escaped.
std::string json4Text(std::string_view text);

/// Appends the same.
void appendJsonText(std::string& out, std::string_view text);

/// Appends a value that may hold any bytes, so that reading gives them back: text as a JSON string, and what is not
/// UTF-8 as {"hex":"00FF"}.
void appendJsonBytes(std::string& out, std::string_view bytes);

/// Appends a double with the fewest digits that read back the same, always so that it is seen to be one: 25.0. The
/// others are the words NaN, Infinity and -Infinity.
void appendDouble(std::string& out, double value);

/// The same for JSON, where the words become texts.
void appendJsonDouble(std::string& out, double value);

}  // namespace murv::tool

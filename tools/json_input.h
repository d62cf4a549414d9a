// tools/json_input.h - files of JSON, for every verb that takes them besides documents.
#pragma once

#include <string_view>

#include "tools/input.h"
#include "tools/json_reader.h"

namespace murv::tool
{

/// Whether the name of a file says that it is JSON.
bool isJsonName(std::string_view path);

/// Makes a tree of JSON, and reports what is wrong at its place.
E_ExitCode loadJsonInput(const tInput& input, const tJsonReading& how, CDiagnostics& diagnostics, CFields& tree);

}  // namespace murv::tool

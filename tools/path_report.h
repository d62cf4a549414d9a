// tools/path_report.h - what verbs that take a PATH say when it is malformed, or leads to nothing.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "murv/path.h"
#include "tools/input.h"

namespace murv::tool
{

/// Reports what is wrong with a path, at its place. \return EC_done when nothing is
E_ExitCode checkPath(const std::string& text, const tNodePath& path, CDiagnostics& diagnostics);

/// Warns of each member on the way of a path whose name a later one has: loaders give the first one the value of the
/// last, so that a change would not be seen.
void warnOfRepeatedNames(const tNodePath& path, const tInput& input, const CFields& root, CDiagnostics& diagnostics);

/// The same for each member that a merge patch changes.
/// \param source  where the tree's offsets count; nothing when that is no text of the user's: paths are shown then
void warnOfRepeatedNames(const CFields& patch, const tInput& input, std::optional<std::string_view> source,
                         const CFields& root, CDiagnostics& diagnostics);

/// Reports that nothing is at a path, which is a true answer and no error. \return the code for that
E_ExitCode reportNothingAt(std::string_view path, const tInput& input, CDiagnostics& diagnostics);

}  // namespace murv::tool

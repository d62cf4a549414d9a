// tools/replace_file.h - files that get a new content as a whole or not at all.
//
// The new content is written to a file beside the old one, forced to the disk, and then given its name: whatever fails,
// and whenever, under that name stands either the old content or the new one.
#pragma once

#include <string>
#include <string_view>

#include "tools/diagnostics.h"
#include "tools/exit_code.h"
#include "tools/input.h"

namespace murv::tool
{

/// Refuses what is neither a file nor a directory, before opening it blocks or takes something out of it.
/// \return EC_done also when nothing is there: reading it tells more
E_ExitCode checkReplaceable(const std::string& path, CDiagnostics& diagnostics);

/// Replaces the content of a file that was read before.
///
/// Mode, owner, group and extended attributes are kept; where that is not allowed, and where nobody may write to the
/// file, it is left alone. A symbolic link stays, and what it leads to is replaced. So is a file left alone that has
/// changed since it was read.
E_ExitCode replaceFile(const tInput& input, std::string_view content, CDiagnostics& diagnostics);

/// Makes a file, or gives one that exists a new content, in the same manner. A symbolic link that leads to nothing gets
/// what it leads to. A pipe or a device takes the bytes, and so does what is open already, such as /dev/stdout.
E_ExitCode writeFile(const std::string& path, std::string_view content, CDiagnostics& diagnostics);

}  // namespace murv::tool

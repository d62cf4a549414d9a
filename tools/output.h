// tools/output.h - where results go.
//
// A result that did not arrive is a failure of the tool, so every write is looked at; and a file is replaced as a whole
// or not at all.
#pragma once

#include <string>
#include <string_view>

#include "tools/exit_code.h"
#include "tools/input.h"

namespace murv::tool
{

/// Makes sure that the three standard streams exist, so that no file is taken for one of them.
void holdStandardStreams();

/// \return 0, or the errno of the write that failed
int writeAll(int descriptor, std::string_view text);

/// The standard output stream.
class CStandardOutput
{
public:
    /// After a failure nothing more is written.
    void put(std::string_view text);
    /// Tells of a failure, unless the reader just went away.
    E_ExitCode finish(CDiagnostics& diagnostics) const;

private:
    int m_iError = 0;
};

/// Replaces the content of a file that was read before, keeping its mode, and its owner where allowed.
///
/// The new content is written beside it, forced to the disk, and then given the name of the file: whatever fails, and
/// whenever, under that name stands either the old content or the new one. A symbolic link stays, and what it leads to
/// is replaced. A file that has changed since it was read is left alone.
E_ExitCode replaceFile(const tInput& input, std::string_view content, CDiagnostics& diagnostics);

/// Makes a file, or gives one that exists a new content, in the same manner.
E_ExitCode writeFile(const std::string& path, std::string_view content, CDiagnostics& diagnostics);

}  // namespace murv::tool

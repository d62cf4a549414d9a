// tools/output.h - where results go.
//
// A result that did not arrive is a failure of the tool, so every write is looked at.
#pragma once

#include <string>
#include <string_view>

#include "tools/exit_code.h"

namespace murv::tool
{

class CDiagnostics;

/// Makes sure that the three standard streams exist, so that no file is taken for one of them.
void holdStandardStreams();

/// \return 0, or the errno of the write that failed
int writeAll(int descriptor, std::string_view text);

/// What the system says of an errno.
std::string text4Error(int error);

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

}  // namespace murv::tool

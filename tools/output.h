// tools/output.h - the standard output, and writing to any descriptor.
//
// A result that did not arrive is a failure of the tool, so every write is checked.
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

/// The system's text for an errno.
std::string text4Error(int error);

/// The standard output stream.
class CStandardOutput
{
public:
    /// After a failure nothing more is written.
    void put(std::string_view text);
    bool hasFailed() const
    {
        return m_iError != 0;
    }
    /// Reports a failure, but not that the reader of a pipe went away.
    E_ExitCode finish(CDiagnostics& diagnostics) const;

private:
    int m_iError = 0;
};

}  // namespace murv::tool

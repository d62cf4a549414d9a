// tools/replace_file.h - gives a file new content, all of it or none.
//
// The new content goes to a file beside the old one, is forced to the disk, and then takes the old one's name. Whatever
// fails, and whenever, the name leads either to the old content or to the new.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "tools/diagnostics.h"
#include "tools/exit_code.h"
#include "tools/input.h"
#include "tools/output.h"

namespace murv::tool
{

/// Refuses pipes, sockets and devices, before opening one blocks or takes something out of it.
/// \return EC_done also when nothing is there: reading it gives the better message
E_ExitCode checkReplaceable(const std::string& path, CDiagnostics& diagnostics);

/// Replaces the content of a file that was read before.
///
/// Mode, owner, group and extended attributes are kept. The file is left alone when they cannot be kept, when nobody
/// may write to it, and when it has changed since it was read. A symbolic link stays, and its target is replaced.
E_ExitCode replaceFile(const tInput& input, std::string_view content, CDiagnostics& diagnostics);

using tPutPiece = std::function<void(std::string_view)>;

/// The same for content that comes in pieces and that is read back before the file is replaced.
/// \param write    is called once, and gives the pieces to the function that it gets
/// \param isRight  whether what was written is what was meant
E_ExitCode replaceFile(const tInput& input, const std::function<void(const tPutPiece&)>& write,
                       const std::function<bool(std::string_view)>& isRight, CDiagnostics& diagnostics);

/// Makes a file, or replaces the content of one that exists, in the same manner. For a symbolic link that leads to
/// nothing, the target is made. A pipe or a device takes the bytes, and so does what is open already: /dev/stdout.
/// \param isForced  false for one of many files that can be made again: they need not be on the disk yet
E_ExitCode writeFile(const std::string& path, std::string_view content, CDiagnostics& diagnostics,
                     bool isForced = true);

/// The same for a result that comes in pieces: the name leads to the old content until finish().
class CResultFile
{
public:
    /// \param path  empty for the standard output
    CResultFile(std::string path, CStandardOutput& output);
    ~CResultFile();

    /// Makes what is needed to write. \return EC_done, or the code of a failure that was reported
    E_ExitCode open(CDiagnostics& diagnostics);
    /// After a failure nothing more is written. \return false then
    bool put(std::string_view content);
    /// Gives the file its content. Without it, an existing file stays as it was.
    E_ExitCode finish(CDiagnostics& diagnostics, bool isForced = true);
    bool isStandardOutput() const
    {
        return m_strPath.empty();
    }

private:
    struct tState;
    std::string m_strPath;
    CStandardOutput& m_tOutput;
    std::unique_ptr<tState> m_pState;
};

}  // namespace murv::tool

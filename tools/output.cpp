// tools/output.cpp - writing to descriptors and replacing files.
#include "tools/output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "tools/diagnostics.h"

namespace murv::tool
{

namespace
{
std::string text4Error(int error)
{
    return std::strerror(error);
}

/// The file that a path leads to through symbolic links; empty when there is none.
std::string resolved(const std::string& path)
{
    const std::unique_ptr<char, decltype(&std::free)> target(realpath(path.c_str(), nullptr), &std::free);
    return target == nullptr ? std::string() : std::string(target.get());
}

std::string directory4Path(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// A file beside the one to be replaced; removed again unless it took its name.
class CReplacement
{
public:
    explicit CReplacement(std::string target) : m_strTarget(std::move(target)), m_strPath(m_strTarget + ".XXXXXX")
    {
        m_iDescriptor = mkostemp(m_strPath.data(), O_CLOEXEC);
        m_bExists = m_iDescriptor >= 0;
    }
    CReplacement(const CReplacement&) = delete;
    CReplacement& operator=(const CReplacement&) = delete;
    ~CReplacement()
    {
        if (m_iDescriptor >= 0)
            close(m_iDescriptor);
        if (m_bExists)
            unlink(m_strPath.c_str());
    }

    bool isOpen() const
    {
        return m_bExists;
    }
    /// Writes a file that was not there before. \return as below
    int write(std::string_view content) const
    {
        if (const int error = writeAll(m_iDescriptor, content))
            return error;
        const mode_t mask = umask(0);
        umask(mask);
        return fchmod(m_iDescriptor, 0666 & ~mask) != 0 || fsync(m_iDescriptor) != 0 ? errno : 0;
    }
    /// \return 0, or the errno of what failed
    int write(std::string_view content, const struct stat& like) const
    {
        if (const int error = writeAll(m_iDescriptor, content))
            return error;
        // Another owner can be kept by root alone; the mode is set last, for a change of owner clears bits of it.
        if (fchown(m_iDescriptor, like.st_uid, like.st_gid) != 0 && errno != EPERM)
            return errno;
        if (fchmod(m_iDescriptor, like.st_mode & 07777) != 0 || fsync(m_iDescriptor) != 0)
            return errno;
        return 0;
    }
    int takeName()
    {
        if (rename(m_strPath.c_str(), m_strTarget.c_str()) != 0)
            return errno;
        m_bExists = false;
        // The name is safe once its directory is; where that cannot be forced, the content is whole all the same.
        const int directory = open(directory4Path(m_strTarget).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (directory >= 0)
        {
            fsync(directory);
            close(directory);
        }
        return 0;
    }

private:
    std::string m_strTarget;
    std::string m_strPath;
    int m_iDescriptor = -1;
    bool m_bExists = false;
};
}  // namespace

void holdStandardStreams()
{
    // Opened the wrong way round on purpose: using a stream that was closed still fails.
    constexpr int modes[] = {O_WRONLY, O_RDONLY, O_RDONLY};
    for (int descriptor = 0; descriptor < 3; ++descriptor)
    {
        if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF)
            open("/dev/null", modes[descriptor]);  // takes the lowest free number, which is this one
    }
}

int writeAll(int descriptor, std::string_view text)
{
    constexpr std::size_t most = std::size_t{1} << 30U;  // what one call takes is limited
    while (!text.empty())
    {
        const ssize_t written = ::write(descriptor, text.data(), text.size() < most ? text.size() : most);
        if (written >= 0)
            text.remove_prefix(static_cast<std::size_t>(written));
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

void CStandardOutput::put(std::string_view text)
{
    if (m_iError == 0)
        m_iError = writeAll(STDOUT_FILENO, text);
}

E_ExitCode CStandardOutput::finish(CDiagnostics& diagnostics) const
{
    if (m_iError == 0)
        return EC_done;
    if (m_iError != EPIPE)
        diagnostics.error("", "cannot write to the standard output: " + text4Error(m_iError));
    return EC_inputOutput;
}

E_ExitCode replaceFile(const tInput& input, std::string_view content, CDiagnostics& diagnostics)
{
    const auto fail = [&input, &diagnostics](const std::string& why) {
        diagnostics.error(input.m_strName, "not replaced: " + why);
        return EC_inputOutput;
    };
    const std::string target = resolved(input.m_strPath);
    if (target.empty())
        return fail(text4Error(errno));
    // The new name needs a writable directory only; a file that is read-only is meant to stay as it is.
    if (access(target.c_str(), W_OK) != 0)
        return fail(text4Error(errno));
    CReplacement replacement(target);
    if (!replacement.isOpen())
        return fail("cannot write beside it: " + text4Error(errno));
    struct stat now = {};
    if (stat(target.c_str(), &now) != 0)
        return fail(text4Error(errno));
    if (const int error = replacement.write(content, now))
        return fail(text4Error(error));
    if (stat(target.c_str(), &now) != 0)
        return fail(text4Error(errno));
    if (!input.m_tIdentity.isOf(now))
        return fail("it changed meanwhile");
    if (const int error = replacement.takeName())
        return fail(text4Error(error));
    return EC_done;
}

E_ExitCode writeFile(const std::string& path, std::string_view content, CDiagnostics& diagnostics)
{
    const auto fail = [&path, &diagnostics](int error) {
        diagnostics.error(path, "not written: " + text4Error(error));
        return EC_inputOutput;
    };
    const std::string there = resolved(path);
    struct stat file = {};
    const bool exists = !there.empty() && stat(there.c_str(), &file) == 0;
    if (exists && !S_ISREG(file.st_mode))
    {
        // A device or a pipe cannot be replaced; it takes the bytes.
        const int descriptor = open(there.c_str(), O_WRONLY | O_CLOEXEC);
        const int error = descriptor < 0 ? errno : writeAll(descriptor, content);
        if (descriptor >= 0)
            close(descriptor);
        return error == 0 ? EC_done : fail(error);
    }
    if (exists && access(there.c_str(), W_OK) != 0)
        return fail(errno);
    CReplacement replacement(exists ? there : path);
    if (!replacement.isOpen())
        return fail(errno);
    if (const int error = exists ? replacement.write(content, file) : replacement.write(content))
        return fail(error);
    if (const int error = replacement.takeName())
        return fail(error);
    return EC_done;
}

}  // namespace murv::tool

// tools/replace_file.cpp - finds the file that a path leads to, and puts a new one in its place.
#include "tools/replace_file.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "tools/file_attributes.h"
#include "tools/output.h"
#include "tools/temporary_file.h"

namespace murv::tool
{

namespace
{
/// What a path leads to through symbolic links. Their last one may lead to nothing.
struct tTarget
{
    std::string m_strPath;     // of the file itself: no symbolic link
    struct stat m_tFile = {};  // when it exists
    bool m_bExists = false;
    bool m_bDescriptor = false;  // named as something that is open already, such as /dev/stdout
};

/// The system shows what processes have open as links below /proc.
bool isDescriptor(const std::string& link)
{
    struct statfs place = {};
    return statfs((directory4Path(link) + ".").c_str(), &place) == 0 && place.f_type == PROC_SUPER_MAGIC;
}

/// Follows the links at the end of the path, as many as the system itself would. \return 0, or an errno
int followLinks(tTarget& target)
{
    constexpr int mostLinks = 40;
    std::string& path = target.m_strPath;
    for (int links = 0; links <= mostLinks; ++links)
    {
        target.m_bExists = lstat(path.c_str(), &target.m_tFile) == 0;
        if (!target.m_bExists)
            return errno == ENOENT ? 0 : errno;
        if (!S_ISLNK(target.m_tFile.st_mode))
            return 0;
        target.m_bDescriptor = target.m_bDescriptor || isDescriptor(path);
        char text[PATH_MAX];
        const ssize_t length = readlink(path.c_str(), text, sizeof text);
        if (length < 0)
            return errno;
        const std::string link(text, static_cast<std::size_t>(length));
        path = (link[0] == '/' ? std::string() : directory4Path(path)).append(link);
    }
    return ELOOP;
}

/// \return 0, or an errno; a file that is not there is no failure
int findTarget(const std::string& path, tTarget& target)
{
    // The system is asked first: it has rules of its own for links in directories that everybody may write to.
    struct stat file = {};
    if (stat(path.c_str(), &file) != 0 && errno != ENOENT)
        return errno;
    target.m_strPath = path;
    if (const int error = followLinks(target))
        return error;
    const bool isDirectory = target.m_strPath.empty() || target.m_strPath.back() == '/';
    return isDirectory && !target.m_bExists ? EISDIR : 0;
}

const char* kind4Mode(mode_t mode)
{
    return S_ISFIFO(mode) ? "pipe" : S_ISSOCK(mode) ? "socket" : "device";
}

/// Puts the new content in the place of a file that exists. \return empty, or what failed
/// \param readBefore  the file that was read and must not have changed since; null when nothing was read
std::string replace(const tTarget& target, std::string_view content, const tFileIdentity* readBefore)
{
    // The new name needs a writable directory only; a file that is read-only is meant to stay, even for root.
    if ((target.m_tFile.st_mode & 0222U) == 0)
        return "it is read-only";
    if (access(target.m_strPath.c_str(), W_OK) != 0)
        return text4Error(errno);
    CTemporaryFile file(target.m_strPath, 0600);
    if (file.error() != 0)
        return "cannot write beside it: " + text4Error(file.error());
    if (const int error = writeAll(file.descriptor(), content))
        return text4Error(error);
    if (std::string fault = keepAttributes(target.m_strPath, target.m_tFile, file.descriptor()); !fault.empty())
        return fault;
    struct stat now = {};
    if (readBefore != nullptr && stat(target.m_strPath.c_str(), &now) != 0)
        return text4Error(errno);
    if (readBefore != nullptr && !readBefore->isOf(now))
        return "it changed meanwhile";
    const int error = file.takeName();
    return error == 0 ? std::string() : text4Error(error);
}

/// \return empty, or what failed
std::string make(const std::string& path, std::string_view content)
{
    CTemporaryFile file(path, 0666);
    int error = file.error();
    if (error == ENOENT)
        return "the directory of the file does not exist";
    if (error == 0)
        error = writeAll(file.descriptor(), content);
    if (error == 0)
        error = file.takeName();
    return error == 0 ? std::string() : text4Error(error);
}

/// Appends the bytes to what cannot be replaced, such as a pipe. \return empty, or what failed
std::string feed(const std::string& path, std::string_view content)
{
    const int descriptor = open(path.c_str(), O_WRONLY | O_APPEND | O_NOCTTY | O_CLOEXEC);
    const int error = descriptor < 0 ? errno : writeAll(descriptor, content);
    if (descriptor >= 0)
        close(descriptor);
    return error == 0 ? std::string() : text4Error(error);
}

E_ExitCode report(const std::string& file, const std::string& what, const std::string& fault, CDiagnostics& diagnostics)
{
    if (fault.empty())
        return EC_done;
    return diagnostics.fail(file, what + ": " + fault, EC_inputOutput);
}
}  // namespace

E_ExitCode checkReplaceable(const std::string& path, CDiagnostics& diagnostics)
{
    struct stat file = {};
    if (stat(path.c_str(), &file) != 0 || S_ISREG(file.st_mode) || S_ISDIR(file.st_mode))
        return EC_done;
    return report(path, "not replaced", std::string("it is a ") + kind4Mode(file.st_mode), diagnostics);
}

E_ExitCode replaceFile(const tInput& input, std::string_view content, CDiagnostics& diagnostics)
{
    tTarget target;
    int error = findTarget(input.m_strPath, target);
    if (error == 0 && !target.m_bExists)
        error = ENOENT;
    const std::string fault = error == 0 ? replace(target, content, &input.m_tIdentity) : text4Error(error);
    return report(input.m_strName, "not replaced", fault, diagnostics);
}

E_ExitCode writeFile(const std::string& path, std::string_view content, CDiagnostics& diagnostics)
{
    tTarget target;
    std::string fault;
    if (const int error = findTarget(path, target))
        fault = text4Error(error);
    else if (target.m_bDescriptor || (target.m_bExists && !S_ISREG(target.m_tFile.st_mode)))
        fault = feed(path, content);
    else
        fault = target.m_bExists ? replace(target, content, nullptr) : make(target.m_strPath, content);
    return report(path, "not written", fault, diagnostics);
}

}  // namespace murv::tool

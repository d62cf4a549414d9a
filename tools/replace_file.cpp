// tools/replace_file.cpp - finds the file that a path leads to, and puts a new one in its place.
#include "tools/replace_file.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "tools/descriptor.h"
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

/// Whether a file that exists may be replaced. \return empty, or why not
std::string fault4Replacing(const tTarget& target)
{
    // The new name needs a writable directory only; a file that is read-only is meant to stay, even for root.
    if ((target.m_tFile.st_mode & 0222U) == 0)
        return "it is read-only";
    return access(target.m_strPath.c_str(), W_OK) == 0 ? std::string() : text4Error(errno);
}

/// Why the new file could not be made; empty when it was.
std::string fault4Making(const tTarget& target, const CTemporaryFile& file)
{
    if (file.error() == 0)
        return {};
    if (target.m_bExists)
        return "cannot write beside it: " + text4Error(file.error());
    return file.error() == ENOENT ? "the directory of the file does not exist" : text4Error(file.error());
}

/// Gives the new file what the old one has, and its name. \return empty, or what failed
/// \param readBefore  the file that was read and must not have changed since; null when nothing was read
std::string takePlace(const tTarget& target, CTemporaryFile& file, const tFileIdentity* readBefore, bool isForced)
{
    if (target.m_bExists)
    {
        if (std::string fault = keepAttributes(target.m_strPath, target.m_tFile, file.descriptor()); !fault.empty())
            return fault;
    }
    struct stat now = {};
    if (readBefore != nullptr && stat(target.m_strPath.c_str(), &now) != 0)
        return text4Error(errno);
    if (readBefore != nullptr && !readBefore->isOf(now))
        return "it changed meanwhile";
    const int error = file.takeName(isForced);
    return error == 0 ? std::string() : text4Error(error);
}

/// What is in a file, while one of these lives.
class CMappedFile
{
public:
    explicit CMappedFile(int descriptor)
    {
        struct stat file = {};
        if (fstat(descriptor, &file) != 0)
            m_iError = errno;
        if (m_iError != 0 || file.st_size == 0)
            return;
        m_nSize = static_cast<std::size_t>(file.st_size);
        m_pBytes = mmap(nullptr, m_nSize, PROT_READ, MAP_PRIVATE, descriptor, 0);
        m_iError = m_pBytes == MAP_FAILED ? errno : 0;
    }
    CMappedFile(const CMappedFile&) = delete;
    CMappedFile& operator=(const CMappedFile&) = delete;
    ~CMappedFile()
    {
        if (m_nSize != 0 && m_iError == 0)
            munmap(m_pBytes, m_nSize);
    }
    /// \return 0, or an errno
    int error() const
    {
        return m_iError;
    }
    std::string_view text() const
    {
        return {static_cast<const char*>(m_pBytes), m_nSize};
    }

private:
    int m_iError = 0;
    std::size_t m_nSize = 0;
    void* m_pBytes = nullptr;
};

/// New content of a file, in pieces.
struct tContent
{
    const std::function<void(const tPutPiece&)>& m_tWrite;
    const std::function<bool(std::string_view)>& m_tIsRight;
};

/// \return empty, or what failed
std::string writeContent(const tContent& content, int descriptor)
{
    int error = 0;
    content.m_tWrite([&](std::string_view piece) {
        if (error == 0)
            error = writeAll(descriptor, piece);
    });
    if (error != 0)
        return text4Error(error);
    const CMappedFile written(descriptor);
    if (written.error() != 0)
        return text4Error(written.error());
    return content.m_tIsRight(written.text()) ? std::string() : "the new text does not read back equal";
}

/// Puts the new content in the place of a file that exists. \return empty, or what failed
std::string replace(const tTarget& target, const tContent& content, const tFileIdentity& readBefore)
{
    if (std::string fault = fault4Replacing(target); !fault.empty())
        return fault;
    CTemporaryFile file(target.m_strPath, 0600);
    if (std::string fault = fault4Making(target, file); !fault.empty())
        return fault;
    if (std::string fault = writeContent(content, file.descriptor()); !fault.empty())
        return fault;
    return takePlace(target, file, &readBefore, true);
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
    return replaceFile(
        input, [content](const tPutPiece& put) { put(content); },
        [content](std::string_view written) { return written == content; }, diagnostics);
}

E_ExitCode replaceFile(const tInput& input, const std::function<void(const tPutPiece&)>& write,
                       const std::function<bool(std::string_view)>& isRight, CDiagnostics& diagnostics)
{
    tTarget target;
    int error = findTarget(input.m_strPath, target);
    if (error == 0 && !target.m_bExists)
        error = ENOENT;
    const std::string fault = error == 0 ? replace(target, {write, isRight}, input.m_tIdentity) : text4Error(error);
    return report(input.m_strName, "not replaced", fault, diagnostics);
}

E_ExitCode writeFile(const std::string& path, std::string_view content, CDiagnostics& diagnostics, bool isForced)
{
    CStandardOutput unused;
    CResultFile file(path, unused);
    if (const E_ExitCode code = file.open(diagnostics))
        return code;
    file.put(content);
    return file.finish(diagnostics, isForced);
}

struct CResultFile::tState
{
    tTarget m_tTarget;
    std::unique_ptr<CTemporaryFile> m_pFile;  // that takes the name; null for what cannot be replaced
    std::unique_ptr<CDescriptor> m_pOpen;     // that takes the bytes as they come
    std::string m_strFault;

    std::string open(const std::string& path);
    int descriptor() const
    {
        return m_pFile ? m_pFile->descriptor() : m_pOpen->get();
    }
};

std::string CResultFile::tState::open(const std::string& path)
{
    if (const int error = findTarget(path, m_tTarget))
        return text4Error(error);
    if (m_tTarget.m_bDescriptor || (m_tTarget.m_bExists && !S_ISREG(m_tTarget.m_tFile.st_mode)))
    {
        m_pOpen = std::make_unique<CDescriptor>(::open(path.c_str(), O_WRONLY | O_APPEND | O_NOCTTY | O_CLOEXEC));
        return m_pOpen->get() < 0 ? text4Error(errno) : std::string();
    }
    if (m_tTarget.m_bExists)
    {
        if (std::string fault = fault4Replacing(m_tTarget); !fault.empty())
            return fault;
    }
    m_pFile = std::make_unique<CTemporaryFile>(m_tTarget.m_strPath, m_tTarget.m_bExists ? 0600 : 0666);
    return fault4Making(m_tTarget, *m_pFile);
}

CResultFile::CResultFile(std::string path, CStandardOutput& output)
    : m_strPath(std::move(path)), m_tOutput(output), m_pState(std::make_unique<tState>())
{
}

CResultFile::~CResultFile() = default;

E_ExitCode CResultFile::open(CDiagnostics& diagnostics)
{
    if (isStandardOutput())
        return EC_done;
    return report(m_strPath, "not written", m_pState->open(m_strPath), diagnostics);
}

bool CResultFile::put(std::string_view content)
{
    if (isStandardOutput())
    {
        m_tOutput.put(content);
        return !m_tOutput.hasFailed();
    }
    if (!m_pState->m_strFault.empty())
        return false;
    if (const int error = writeAll(m_pState->descriptor(), content))
        m_pState->m_strFault = text4Error(error);
    return m_pState->m_strFault.empty();
}

E_ExitCode CResultFile::finish(CDiagnostics& diagnostics, bool isForced)
{
    if (isStandardOutput())
        return m_tOutput.finish(diagnostics);
    std::string& fault = m_pState->m_strFault;
    if (fault.empty() && m_pState->m_pFile)
        fault = takePlace(m_pState->m_tTarget, *m_pState->m_pFile, nullptr, isForced);
    return report(m_strPath, "not written", fault, diagnostics);
}

}  // namespace murv::tool

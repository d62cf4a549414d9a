// tools/temporary_file.cpp - makes, names and removes the file, also when a signal ends the tool.
#include "tools/temporary_file.h"

#include <fcntl.h>
#include <sys/random.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>

namespace murv::tool
{

namespace
{
constexpr int s_ciEndingSignals[] = {SIGHUP, SIGINT, SIGTERM};

/// Path of the file to remove when a signal ends the tool, or null. Changed only while these signals are held.
std::atomic<const char*> s_pLeftover = nullptr;
static_assert(std::atomic<const char*>::is_always_lock_free, "a signal handler reads it");

sigset_t endingSignals()
{
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : s_ciEndingSignals)
        sigaddset(&set, signal);
    return set;
}

/// While one lives, these signals wait.
class CSignalsHeld
{
public:
    CSignalsHeld()
    {
        const sigset_t held = endingSignals();
        sigprocmask(SIG_BLOCK, &held, &m_tBefore);
    }
    CSignalsHeld(const CSignalsHeld&) = delete;
    CSignalsHeld& operator=(const CSignalsHeld&) = delete;
    ~CSignalsHeld()
    {
        sigprocmask(SIG_SETMASK, &m_tBefore, nullptr);
    }

private:
    sigset_t m_tBefore = {};
};

/// Calls nothing but what is allowed in a signal handler.
void removeLeftover(int signal)
{
    if (const char* const path = s_pLeftover.load())
        unlink(path);
    // The default action is back and waits for the end of this handler, so the tool ends by this very signal.
    raise(signal);
}

void catchEndingSignals()
{
    static bool s_bCaught = false;
    if (s_bCaught)
        return;
    s_bCaught = true;
    struct sigaction catching = {};
    catching.sa_handler = &removeLeftover;
    catching.sa_mask = endingSignals();
    catching.sa_flags = static_cast<int>(SA_RESETHAND);
    for (const int signal : s_ciEndingSignals)
    {
        struct sigaction present = {};
        // What is ignored from the start, as under nohup, stays ignored.
        if (sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN)
            sigaction(signal, &catching, nullptr);
    }
}

/// A short name, because the name of the target may have the greatest length allowed. \return empty without randomness
std::string randomName()
{
    std::uint64_t number = 0;
    if (getentropy(&number, sizeof number) != 0)
        return {};
    char name[32];
    std::snprintf(name, sizeof name, ".murv-%016llx", static_cast<unsigned long long>(number));
    return name;
}
}  // namespace

CTemporaryFile::CTemporaryFile(const std::string& target, mode_t mode) : m_strTarget(target)
{
    const std::string name = randomName();
    if (name.empty())
    {
        m_iError = errno;
        return;
    }
    m_strPath = directory4Path(target) + name;
    catchEndingSignals();
    const CSignalsHeld held;
    m_iDescriptor = open(m_strPath.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    m_bExists = m_iDescriptor >= 0;
    m_iError = m_bExists ? 0 : errno;
    if (m_bExists)
        s_pLeftover = m_strPath.c_str();
}

CTemporaryFile::~CTemporaryFile()
{
    if (m_iDescriptor >= 0)
        close(m_iDescriptor);
    if (!m_bExists)
        return;
    const CSignalsHeld held;
    unlink(m_strPath.c_str());
    s_pLeftover = nullptr;
}

int CTemporaryFile::takeName(bool isForced)
{
    if (isForced && fsync(m_iDescriptor) != 0)
        return errno;
    {
        const CSignalsHeld held;
        if (rename(m_strPath.c_str(), m_strTarget.c_str()) != 0)
            return errno;
        m_bExists = false;
        s_pLeftover = nullptr;
    }
    if (!isForced)
        return 0;
    // The name is safe once its directory is; where that cannot be forced, the content is whole all the same.
    const int directory = open((directory4Path(m_strTarget) + ".").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0)
    {
        fsync(directory);
        close(directory);
    }
    return 0;
}

}  // namespace murv::tool

// tools/output.cpp - writes to descriptors, and keeps the first failure.
#include "tools/output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tools/diagnostics.h"

namespace murv::tool
{

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

std::string text4Error(int error)
{
    return std::strerror(error);
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

}  // namespace murv::tool

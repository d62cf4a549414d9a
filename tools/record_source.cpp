// tools/record_source.cpp - feeds a record reader from a descriptor.
#include "tools/record_source.h"

#include <sys/stat.h>

#include <cerrno>

#include "tools/output.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnPiece = std::size_t{256} << 10U;  // larger ones gain nothing: the cache holds them
}

CRecordSource::CRecordSource(const CLayout& layout) : m_tReader(layout), m_pPiece(new char[s_cnPiece])
{
}

E_ExitCode CRecordSource::open(const std::string& path, CDiagnostics& diagnostics)
{
    m_strName = path == "-" ? "<stdin>" : path;
    m_pFile = std::make_unique<CDescriptor>(path);
    struct stat file = {};
    int error = m_pFile->get() < 0 || fstat(m_pFile->get(), &file) != 0 ? errno : 0;
    if (error == 0 && S_ISDIR(file.st_mode))
        error = EISDIR;
    if (error != 0)
        return diagnostics.fail(m_strName, "cannot be read: " + text4Error(error), EC_inputOutput);
    // Results on the same terminal would run into the line that shows how far it is.
    const bool isShown = S_ISREG(file.st_mode) && isatty(STDOUT_FILENO) != 1;
    m_pProgress = std::make_unique<CProgress>(m_strName, isShown ? static_cast<std::size_t>(file.st_size) : 0);
    m_tReader.open();
    return EC_done;
}

E_ExitCode CRecordSource::readCode(CDiagnostics& diagnostics) const
{
    if (m_iError == 0)
        return EC_done;
    return diagnostics.fail(m_strName, "cannot be read: " + text4Error(m_iError), EC_inputOutput);
}

/// \return false after a failure
bool CRecordSource::readPiece()
{
    if (m_tBeforeWaiting)
        m_tBeforeWaiting();
    ssize_t got = 0;
    do
    {
        got = read(m_pFile->get(), m_pPiece.get(), s_cnPiece);
    } while (got < 0 && errno == EINTR);
    if (got < 0)
    {
        m_iError = errno;
        return false;
    }
    if (got == 0)
        m_tReader.end();
    else
        m_tReader.put({m_pPiece.get(), static_cast<std::size_t>(got)});
    m_nRead += static_cast<std::size_t>(got);
    m_pProgress->show("reading", m_nRead);
    return true;
}

template <typename tNext>
E_RecordResult CRecordSource::pump(const tNext& next)
{
    for (;;)
    {
        const E_RecordResult result = next();
        if (result == RR_fault)
            m_pProgress->hide();  // something will be said
        if (result != RR_more)
            return result;
        if (!readPiece())
            return RR_end;
    }
}

E_RecordResult CRecordSource::next(IPacketVisitor& visitor)
{
    return pump([this, &visitor] { return m_tReader.next(visitor); });
}

E_RecordResult CRecordSource::next(CFields& record)
{
    return pump([this, &record] { return m_tReader.next(record); });
}

E_RecordResult CRecordSource::next()
{
    return pump([this] { return m_tReader.next(); });
}

}  // namespace murv::tool

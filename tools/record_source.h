// tools/record_source.h - records of a file, or of what comes through a pipe, in constant memory.
//
// A record is handed on as soon as it is there, also from a pipe that stays open.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "murv/records.h"
#include "tools/descriptor.h"
#include "tools/diagnostics.h"
#include "tools/progress.h"

namespace murv::tool
{

class CRecordSource
{
public:
    explicit CRecordSource(const CLayout& layout);

    /// \param path  "-" for the standard input
    E_ExitCode open(const std::string& path, CDiagnostics& diagnostics);
    /// As shown.
    const std::string& name() const
    {
        return m_strName;
    }
    /// Called before each wait for bytes: whoever has results gives them out.
    void beforeWaiting(std::function<void()> action)
    {
        m_tBeforeWaiting = std::move(action);
    }

    /// The next record; never RR_more. RR_end also when reading has failed, see readCode().
    E_RecordResult next(IPacketVisitor& visitor);
    E_RecordResult next(CFields& record);
    E_RecordResult next();
    /// Reports why reading has failed. \return EC_done when it has not
    E_ExitCode readCode(CDiagnostics& diagnostics) const;

    CRecordReader& reader()
    {
        return m_tReader;
    }

private:
    template <typename tNext>
    E_RecordResult pump(const tNext& next);
    bool readPiece();

    CRecordReader m_tReader;
    std::string m_strName;
    std::unique_ptr<CDescriptor> m_pFile;
    std::unique_ptr<CProgress> m_pProgress;
    std::unique_ptr<char[]> m_pPiece;
    std::size_t m_nRead = 0;
    int m_iError = 0;
    std::function<void()> m_tBeforeWaiting;
};

}  // namespace murv::tool

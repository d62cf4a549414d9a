// tools/packet_report.h - faults and findings of packets, as diagnostics.
//
// People get place, path and sentence, and below them expression, rules and bytes; programs the same facts in JSON.
#pragma once

#include <cstdint>
#include <string>

#include "murv/packet_fault.h"
#include "tools/diagnostics.h"

namespace murv::tool
{

/// A fault as a diagnostic of a file.
tDiagnostic diagnostic4Fault(const std::string& file, const tPacketFault& fault);

/// The same as members of a JSON object, without braces: code, record, offset, and so on.
std::string json4Fault(const tPacketFault& fault);

/// The sentence of a fault; with how many bytes are missing, where that is known.
std::string message4Fault(const tPacketFault& fault);

/// Reports faults one after the other: not more than wanted, and one that goes on from record to record once.
class CPacketReport
{
public:
    CPacketReport(CDiagnostics& diagnostics, std::string file, std::uint64_t most)
        : m_tDiagnostics(diagnostics), m_strFile(std::move(file)), m_ullMost(most)
    {
    }

    void report(const tPacketFault& fault);
    /// Says that the fault which was reported last ends the reading.
    void sayStopped();
    /// Says how many were not shown; to be called after the last.
    void finish();

    std::uint64_t faults() const
    {
        return m_ullFaults;
    }
    std::uint64_t findings() const
    {
        return m_ullFindings;
    }

private:
    void sayRepeated();
    void note(const std::string& text);

    CDiagnostics& m_tDiagnostics;
    std::string m_strFile;
    std::uint64_t m_ullMost;
    std::uint64_t m_ullShown = 0;
    std::uint64_t m_ullHidden = 0;
    std::uint64_t m_ullFaults = 0;
    std::uint64_t m_ullFindings = 0;
    std::uint64_t m_ullRepeated = 0;  // like the last that was shown, in the records after it
    std::string m_strLast;            // what the last one was about
};

/// "1 record", "2 records".
std::string counted(std::uint64_t number, const char* noun);

}  // namespace murv::tool

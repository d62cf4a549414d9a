// tools/packet_report.cpp - puts faults into the form that compilers gave us.
#include "tools/packet_report.h"

#include <algorithm>

#include "tools/hex_text.h"
#include "tools/json_text.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnBytes4Line = 16;

/// Where in the item the fault shows itself, as far as that is certain: the first byte that is no digit.
std::size_t place4Fault(const tPacketFault& fault)
{
    const bool isDecimal =
        fault.m_strExpression.compare(0, 2, "AN") == 0 && fault.m_strRules.find_first_of("ohxzt") == std::string::npos;
    if (fault.m_eCode != PF_digits || !isDecimal || fault.m_strBytes.find('*') != std::string::npos)
        return 0;
    const std::size_t place = fault.m_strBytes.find_first_not_of("0123456789", fault.m_strBytes[0] == '-' ? 1 : 0);
    return place == std::string::npos ? 0 : place;
}

std::string shownBytes(std::string_view bytes)
{
    std::string shown;
    for (const char byte : bytes)
        shown += byte >= ' ' && byte < 0x7F ? byte : '.';
    return shown;
}

/// How many bytes at the beginning are stars because the value is masked.
std::size_t hiddenBytes(const tPacketFault& fault)
{
    const std::size_t stars = std::min(fault.m_strBytes.find_first_not_of('*'), fault.m_strBytes.size());
    const bool isMasked = fault.m_strRules.find("mask") != std::string::npos ||
                          (fault.m_strExpression.empty() && stars == fault.m_strBytes.size());
    return isMasked ? stars : 0;
}

/// One row of a dump, with the place of the fault marked when it is in the first row.
tExcerpt row4Bytes(std::string_view bytes, bool isOnly, std::size_t place, std::size_t hidden)
{
    tExcerpt row;
    row.m_strLine = "  ";
    appendHex(row.m_strLine, bytes, " ");
    for (std::size_t at = 0; at < std::min(hidden, bytes.size()); ++at)
        row.m_strLine.replace(2 + 3 * at, 2, "**");
    const std::size_t width = 3 * (isOnly ? bytes.size() : s_cnBytes4Line) - 1;
    row.m_strLine.resize(std::max(row.m_strLine.size(), width + 2), ' ');
    row.m_strLine += "  |" + shownBytes(bytes) + "|";
    if (isOnly)
    {
        row.m_strMarks = "  " + std::string(3 * bytes.size() - 1, '~');
        row.m_strMarks[2 + 3 * place] = row.m_strMarks[3 + 3 * place] = '^';
    }
    return row;
}

std::vector<tExcerpt> excerpts4Fault(const tPacketFault& fault)
{
    std::vector<tExcerpt> rows;
    std::string facts = fault.m_strExpression;
    if (!fault.m_strRules.empty())
        facts += (facts.empty() ? "" : "  ") + fault.m_strRules;
    if (!facts.empty())
        rows.push_back({"  " + escapedText(facts), ""});
    const std::string_view bytes = fault.m_strBytes;
    const bool isOnly = bytes.size() <= s_cnBytes4Line;
    const std::size_t hidden = hiddenBytes(fault);
    for (std::size_t at = 0; at < bytes.size(); at += s_cnBytes4Line)
        rows.push_back(
            row4Bytes(bytes.substr(at, s_cnBytes4Line), isOnly, place4Fault(fault), hidden - std::min(hidden, at)));
    if (!bytes.empty() && fault.m_ullLength > bytes.size())
        rows.push_back({"  ... " + std::to_string(fault.m_ullLength) + " bytes in all", ""});
    return rows;
}

/// What makes two faults the same in two records: path without the numbers of elements, reason and sentence.
std::string kind4Fault(const tPacketFault& fault)
{
    std::string kind = std::to_string(fault.m_eCode) + fault.m_strMessage + "\n";
    bool isNumber = false;
    for (const char character : fault.m_strPath)
    {
        isNumber = character == '[' || (isNumber && character != ']');
        if (!isNumber)
            kind += character;
    }
    return kind;
}
}  // namespace

std::string message4Fault(const tPacketFault& fault)
{
    return fault.m_eCode == PF_more && fault.m_ullMissing != 0
               ? fault.m_strMessage + "; at least " + counted(fault.m_ullMissing, "byte") + " more must follow"
               : fault.m_strMessage;
}

std::string counted(std::uint64_t number, const char* noun)
{
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

std::string json4Fault(const tPacketFault& fault)
{
    std::string out = "\"code\":" + json4Text(getFaultName(fault.m_eCode));
    if (fault.m_ullRecord != 0)
        out += ",\"record\":" + std::to_string(fault.m_ullRecord) +
               ",\"record_offset\":" + std::to_string(fault.m_ullRecordOffset);
    out += ",\"offset\":" + std::to_string(fault.m_ullOffset) + ",\"length\":" + std::to_string(fault.m_ullLength);
    if (fault.m_ullMissing != 0)
        out += ",\"missing\":" + std::to_string(fault.m_ullMissing);
    if (!fault.m_strExpression.empty())
        out += ",\"expression\":" + json4Text(fault.m_strExpression);
    if (!fault.m_strRules.empty())
        out += ",\"rules\":" + json4Text(fault.m_strRules);
    if (!fault.m_strBytes.empty())
    {
        out += ",\"bytes\":\"";
        appendHex(out, fault.m_strBytes);
        out += '"';
    }
    return out;
}

tDiagnostic diagnostic4Fault(const std::string& file, const tPacketFault& fault)
{
    tDiagnostic diagnostic;
    diagnostic.m_eSeverity = isFinding(fault.m_eCode) ? SV_warning : SV_error;
    diagnostic.m_strFile = file;
    if (fault.m_ullRecord != 0)
        diagnostic.m_strPlace = "record " + std::to_string(fault.m_ullRecord) + ", ";
    diagnostic.m_strPlace += "offset " + hex4Offset(fault.m_ullOffset);
    diagnostic.m_strSubject = fault.m_strPath;
    diagnostic.m_strMessage = message4Fault(fault);
    diagnostic.m_vExcerpt = excerpts4Fault(fault);
    diagnostic.m_strJson = json4Fault(fault);
    return diagnostic;
}

void CPacketReport::report(const tPacketFault& fault)
{
    ++(isFinding(fault.m_eCode) ? m_ullFindings : m_ullFaults);
    std::string kind = kind4Fault(fault);
    if (kind == m_strLast && !isFinding(fault.m_eCode))
    {
        ++m_ullRepeated;
        return;
    }
    sayRepeated();
    m_strLast = std::move(kind);
    if (m_ullShown == m_ullMost)
    {
        ++m_ullHidden;
        return;
    }
    ++m_ullShown;
    m_tDiagnostics.report(diagnostic4Fault(m_strFile, fault));
}

void CPacketReport::sayRepeated()
{
    if (m_ullRepeated != 0 && m_ullHidden == 0)
        note("the same in " + counted(m_ullRepeated, "record") + " after it");
    else if (m_ullHidden != 0)
        m_ullHidden += m_ullRepeated;
    m_ullRepeated = 0;
}

void CPacketReport::sayStopped()
{
    note("what follows cannot be read: nothing says where the next record begins");
}

void CPacketReport::finish()
{
    sayRepeated();
    if (m_ullHidden != 0)
        note(std::to_string(m_ullHidden) + " more like these are not shown (see --max-errors)");
    m_ullHidden = 0;
}

void CPacketReport::note(const std::string& text)
{
    tDiagnostic note;
    note.m_eSeverity = SV_note;
    note.m_strFile = m_strFile;
    note.m_strMessage = text;
    m_tDiagnostics.report(note);
}

}  // namespace murv::tool

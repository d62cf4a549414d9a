// layout/record_writer.cpp - one record at a time into a string.
//
// A scanner reads along: it knows which records may come next, and sees what reading would find.
#include <algorithm>

#include "layout/run/fault_words.h"
#include "layout/run/maker.h"
#include "layout/sinks.h"
#include "murv/records.h"

namespace murv
{

using namespace detail;

struct CRecordWriter::tState
{
    tState(const CLayout& layout, const tMakeOptions& options)
        : m_pPlan(layout.getPlan()),
          m_tOptions(options),
          m_tMaker(*m_pPlan),
          m_pScanner(std::make_unique<CScanner>(*m_pPlan))
    {
    }

    bool fail(const tScanFault& fault, std::string_view bytes);
    std::string_view endMark() const;
    void append(unsigned int part, std::string& out);
    bool readAlong(unsigned int part, std::unique_ptr<CScanner>& scanner);
    bool failInRecord(unsigned int part, const CScanner& scanner);
    E_Scan run(CScanner& scanner, bool over);
    void describeFindings(CScanner& scanner);

    std::shared_ptr<const tPlan> m_pPlan;
    tMakeOptions m_tOptions;
    CMaker m_tMaker;
    std::unique_ptr<CScanner> m_pScanner;
    std::string m_strRecord;
    std::uint64_t m_ullBase = 0;
    bool m_bLast = false;      // the last record ends with the input
    bool m_bOwesMark = false;  // the last record was written without its mark, which comes before the next one
    tScanFault m_tEmptyEnd;    // set when the last record has no bytes, so that the file cannot end without its mark
    tPacketFault m_tFault;
    std::vector<tPacketFault> m_vFindings;
};

bool CRecordWriter::tState::fail(const tScanFault& fault, std::string_view bytes)
{
    m_tFault = describe(*m_pPlan, fault, bytes);
    return false;
}

/// The mark after each record, where the last one is to lack it; else none.
std::string_view CRecordWriter::tState::endMark() const
{
    const tFrame& frame = m_pPlan->m_tFrame;
    if (!m_tOptions.m_bOpenEnd)
        return {};
    if (frame.m_eKind == FR_lines)
        return m_tOptions.m_bReturns ? "\r\n" : "\n";
    return frame.m_eKind == FR_mark ? std::string_view(frame.m_strMark) : std::string_view();
}

/// Appends the record. Nobody knows which is the last, so that a mark may come with the record after it.
void CRecordWriter::tState::append(unsigned int part, std::string& out)
{
    const std::string_view mark = endMark();
    const std::string_view record = std::string_view(m_strRecord).substr(0, m_strRecord.size() - mark.size());
    out.reserve(out.size() + mark.size() + record.size());
    out.append(m_bOwesMark ? mark : std::string_view()).append(record);
    m_bOwesMark = !mark.empty();
    m_tEmptyEnd.m_eCode = m_bOwesMark && record.empty() ? PF_ambiguous : PF_none;
    m_tEmptyEnd.m_uiPart = part;
    m_tEmptyEnd.m_ullOffset = m_tEmptyEnd.m_ullRecordOffset = m_ullBase;
    m_tEmptyEnd.m_pText = "A last record without bytes needs its mark";
}

void CRecordWriter::tState::describeFindings(CScanner& scanner)
{
    sortFindings(scanner.findings());
    for (const tScanFault& finding : scanner.findings())
    {
        const std::uint64_t at = finding.m_ullOffset - m_ullBase;
        const std::string_view bytes =
            finding.m_ullOffset < m_ullBase || at > m_strRecord.size()
                ? std::string_view()
                : std::string_view(m_strRecord)
                      .substr(static_cast<std::size_t>(at), static_cast<std::size_t>(finding.m_ullLength));
        m_vFindings.push_back(describe(*m_pPlan, finding, bytes));
    }
}

/// Reads what was made from where the scanner stands.
E_Scan CRecordWriter::tState::run(CScanner& scanner, bool over)
{
    scanner.trace().clear();
    scanner.findings().clear();
    scanner.show(m_strRecord.data(), m_ullBase, m_strRecord.size(), over);
    const E_Scan result = scanner.run();
    if (result != SC_done || !m_pPlan->m_vParts.front().m_bInRecord)
        return result;
    scanner.restart();
    return scanner.run();
}

/// Reads the record that was made: it must be the one that was meant, with each part where it was made.
bool CRecordWriter::tState::readAlong(unsigned int part, std::unique_ptr<CScanner>& scanner)
{
    E_Scan result = m_bLast ? SC_done : run(*scanner, false);
    if (result == SC_more)
    {
        scanner = std::make_unique<CScanner>(*m_pScanner);
        result = run(*scanner, true);
        m_bLast = true;
    }
    const tTraces& trace = scanner->trace();
    const auto isMeant = [part](const tTrace& at) { return at.m_eTrace == TR_record && at.m_uiIndex == part; };
    const auto begin = std::find_if(trace.begin(), trace.end(), isMeant);
    const bool isRead = result == SC_record || result == SC_fault;
    if (isRead && begin != trace.end() && !m_pPlan->m_bSelfEvident &&
        !m_tMaker.isReadSo(*scanner, static_cast<std::size_t>(begin - trace.begin()), m_ullBase))
        return failInRecord(part, *scanner);
    if (result == SC_record && begin != trace.end() && scanner->position() == m_ullBase + m_strRecord.size())
        return true;
    return fail({PF_ambiguous, part, m_ullBase, m_strRecord.size(), 0, 0, m_ullBase,
                 "Such a record cannot come here, or reading would take it for another", scanner->elements()},
                m_strRecord);
}

/// Reading has found another part than was made: says where, with the elements around the record.
bool CRecordWriter::tState::failInRecord(unsigned int part, const CScanner& scanner)
{
    tScanFault fault = m_tMaker.fault();
    if (fault.m_eCode == PF_ambiguous)
    {
        tElements elements = scanner.elements();
        std::size_t around = 0;
        for (unsigned int at = m_pPlan->m_vParts[part].m_uiParent; at != s_cuiNone;
             at = m_pPlan->m_vParts[at].m_uiParent)
            around += m_pPlan->m_vParts[at].m_eKind == PK_array ? 1 : 0;
        elements.resize(std::min(around, elements.size()));
        fault.m_vElements.insert(fault.m_vElements.begin(), elements.begin(), elements.end());
        fault.m_ullRecord = scanner.record();
        fault.m_ullRecordOffset = m_ullBase;
    }
    const auto at = static_cast<std::size_t>(fault.m_ullOffset - m_ullBase);
    return fail(fault, std::string_view(m_strRecord).substr(at, static_cast<std::size_t>(fault.m_ullLength)));
}

CRecordWriter::CRecordWriter(const CLayout& layout, const tMakeOptions& options)
{
    requireCompiled(layout, "murv::CRecordWriter::CRecordWriter");
    m_pState = std::make_unique<tState>(layout, options);
}

CRecordWriter::CRecordWriter(CRecordWriter&&) noexcept = default;
CRecordWriter& CRecordWriter::operator=(CRecordWriter&&) noexcept = default;
CRecordWriter::~CRecordWriter() = default;

bool CRecordWriter::write(unsigned int part, const CFields& record, std::string& out)
{
    tState& state = *m_pState;
    while (part < state.m_pPlan->m_vParts.size() && state.m_pPlan->m_vParts[part].m_eKind == PK_array)
        ++part;
    if (part >= state.m_pPlan->m_vParts.size() || !state.m_pPlan->m_vParts[part].m_bRecord)
        throwAt("murv::CRecordWriter::write", "The layout has no such record");
    state.m_tFault = tPacketFault();
    state.m_vFindings.clear();
    if (!state.m_tMaker.makeRecord(part, record, state.m_tOptions, state.m_strRecord))
    {
        state.fail(state.m_tMaker.fault(), state.m_tMaker.faultBytes());
        if (!state.m_tMaker.unknownName().empty())
            state.m_tFault.m_strMessage = state.m_tMaker.unknownWords();
        return false;
    }
    const bool wasLast = state.m_bLast;
    auto scanner = std::make_unique<CScanner>(*state.m_pScanner);
    // Nothing has happened until all has: memory may run out.
    try
    {
        if (state.readAlong(part, scanner))
        {
            state.describeFindings(*scanner);
            state.m_tEmptyEnd.m_ullRecord = scanner->record();
            scanner->getElements(state.m_tEmptyEnd.m_vElements);
            state.append(part, out);
            state.m_ullBase += state.m_strRecord.size();
            state.m_pScanner = std::move(scanner);
            return true;
        }
    }
    catch (...)
    {
        state.m_bLast = wasLast;
        throw;
    }
    state.m_bLast = wasLast;
    return false;
}

bool CRecordWriter::finish()
{
    tState& state = *m_pState;
    state.m_tFault = tPacketFault();
    state.m_vFindings.clear();
    if (state.m_tEmptyEnd.m_eCode != PF_none)
        return state.fail(state.m_tEmptyEnd, {});
    state.m_pScanner->findings().clear();
    state.m_pScanner->show(state.m_strRecord.data(), state.m_ullBase, 0, true);
    const bool isComplete = state.m_pScanner->isAtBegin() && state.m_pPlan->m_vParts.front().m_bInRecord;
    if (!isComplete && state.m_pScanner->run() != SC_done)
        return state.fail(state.m_pScanner->fault(), {});
    state.describeFindings(*state.m_pScanner);
    return true;
}

const tPacketFault& CRecordWriter::getFault() const
{
    return m_pState->m_tFault;
}

const std::vector<tPacketFault>& CRecordWriter::getFindings() const
{
    return m_pState->m_vFindings;
}

}  // namespace murv

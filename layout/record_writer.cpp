// layout/record_writer.cpp - one record at a time into a string.
//
// A scanner reads along: it knows which records may come next, and sees what reading would find.
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
    bool readAlong(unsigned int part);
    void describeFindings();

    std::shared_ptr<const tPlan> m_pPlan;
    tMakeOptions m_tOptions;
    CMaker m_tMaker;
    std::unique_ptr<CScanner> m_pScanner;
    std::string m_strRecord;
    std::uint64_t m_ullBase = 0;
    tPacketFault m_tFault;
    std::vector<tPacketFault> m_vFindings;
};

bool CRecordWriter::tState::fail(const tScanFault& fault, std::string_view bytes)
{
    m_tFault = describe(*m_pPlan, fault, bytes);
    return false;
}

void CRecordWriter::tState::describeFindings()
{
    for (const tScanFault& finding : m_pScanner->findings())
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

/// Reads the record that was made: it must be the one that was meant, to its end.
bool CRecordWriter::tState::readAlong(unsigned int part)
{
    auto before = std::make_unique<CScanner>(*m_pScanner);
    m_pScanner->trace().clear();
    m_pScanner->findings().clear();
    m_pScanner->show(m_strRecord.data(), m_ullBase, m_strRecord.size(), false);
    E_Scan result = m_pScanner->run();
    if (result == SC_done && m_pPlan->m_vParts.front().m_bInRecord)
    {
        m_pScanner->restart();
        result = m_pScanner->run();
    }
    bool isMeant = false;
    for (const tTrace& trace : m_pScanner->trace())
        isMeant = isMeant || (trace.m_eTrace == TR_record && trace.m_uiIndex == part);
    if (result == SC_record && isMeant && m_pScanner->position() == m_ullBase + m_strRecord.size())
    {
        describeFindings();
        m_ullBase += m_strRecord.size();
        return true;
    }
    const tElements elements = m_pScanner->elements();
    m_pScanner = std::move(before);
    return fail({PF_ambiguous, part, m_ullBase, m_strRecord.size(), 0, 0, m_ullBase,
                 "Such a record cannot come here, or reading would take it for another", elements},
                m_strRecord);
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
    if (part >= state.m_pPlan->m_vParts.size() || !state.m_pPlan->m_vParts[part].m_bRecord)
        throwAt("murv::CRecordWriter::write", "The layout has no such record");
    state.m_tFault = tPacketFault();
    state.m_vFindings.clear();
    if (!state.m_tMaker.makeRecord(part, record, state.m_tOptions, state.m_strRecord))
        return state.fail(state.m_tMaker.fault(), state.m_tMaker.faultBytes());
    if (!state.readAlong(part))
        return false;
    out.append(state.m_strRecord);
    return true;
}

bool CRecordWriter::finish()
{
    tState& state = *m_pState;
    state.m_tFault = tPacketFault();
    state.m_vFindings.clear();
    state.m_pScanner->findings().clear();
    state.m_pScanner->show(state.m_strRecord.data(), state.m_ullBase, 0, true);
    const bool isComplete = state.m_pScanner->isAtBegin() && state.m_pPlan->m_vParts.front().m_bInRecord;
    if (!isComplete && state.m_pScanner->run() != SC_done)
        return state.fail(state.m_pScanner->fault(), {});
    state.describeFindings();
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

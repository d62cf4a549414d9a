// layout/record_reader.cpp - one record at a time, from bytes that come in any pieces.
//
// The buffer holds the record at hand and what has come after it. The scanner stops where bytes are missing and goes on
// there, so that no byte is looked at twice however small the pieces are.
#include <istream>

#include "layout/run/fault_words.h"
#include "layout/run/trace_reader.h"
#include "layout/run/tree_sink.h"
#include "layout/sinks.h"
#include "murv/records.h"

namespace murv
{

using namespace detail;

namespace
{

constexpr std::size_t s_cnPiece = 65536;

}  // namespace

struct CRecordReader::tState
{
    tState(const CLayout& layout, const tRecordOptions& options)
        : m_pPlan(layout.getPlan()), m_tOptions(options), m_tScanner(*m_pPlan, true), m_tTree(*m_pPlan)
    {
    }

    void begin(std::string_view bytes, bool over);
    template <typename tSink>
    E_RecordResult next(tSink& sink);
    E_Scan scan();
    bool fill();
    void dropUsed();
    void addPiece(std::string_view piece);
    void show();
    template <typename tSink>
    E_RecordResult readValues(tSink& sink);
    template <typename tSink>
    E_RecordResult readPartly(tSink& sink);
    E_RecordResult wait(std::uint64_t missing);
    E_RecordResult finish();
    void setRecord(const tTrace& begin, std::uint64_t end);
    E_RecordResult fail(const tScanFault& fault);
    std::string_view bytesOf(const tScanFault& fault) const;
    void describeFindings();
    bool restarts() const
    {
        return m_pPlan->m_vParts.front().m_bInRecord;
    }

    std::shared_ptr<const tPlan> m_pPlan;
    tRecordOptions m_tOptions;
    CScanner m_tScanner;
    CTreeSink m_tTree;
    std::istream* m_pStream = nullptr;
    std::string m_strBuffer;     // of streams and pieces
    std::string_view m_strvAll;  // what is there, from m_ullBase on
    std::uint64_t m_ullBase = 0;
    bool m_bOver = false;
    bool m_bOwn = false;      // the bytes are in the buffer
    bool m_bTooLong = false;  // the record is longer than allowed
    bool m_bWaiting = false;  // within a record, for more bytes: what was found of it stays
    tRecordInfo m_tRecord;
    tElements m_vElements;
    tPacketFault m_tFault;
    std::vector<tPacketFault> m_vFindings;
    tRecordCounts m_tCounts;
};

void CRecordReader::tState::begin(std::string_view bytes, bool over)
{
    m_pStream = nullptr;
    m_bOwn = !over;
    m_bOver = over;
    m_strBuffer.clear();
    m_strvAll = bytes;
    m_ullBase = 0;
    m_tRecord = tRecordInfo();
    m_tCounts = tRecordCounts();
    m_tFault = tPacketFault();
    m_vFindings.clear();
    m_bTooLong = m_bWaiting = false;
    m_tScanner.reset();
    show();
    m_tScanner.restart();
}

void CRecordReader::tState::show()
{
    if (m_bOwn)
        m_strvAll = m_strBuffer;
    m_tScanner.show(m_strvAll.data(), m_ullBase, m_strvAll.size(), m_bOver);
}

/// Forgets the bytes before the place, when they are many enough to be worth the move.
void CRecordReader::tState::dropUsed()
{
    const std::uint64_t used = m_tScanner.position() - m_ullBase;
    if (!m_bOwn || used < s_cnPiece || used < m_strBuffer.size() / 2)
        return;
    m_strBuffer.erase(0, static_cast<std::size_t>(used));
    m_ullBase += used;
    show();
}

void CRecordReader::tState::addPiece(std::string_view piece)
{
    m_strBuffer.append(piece);
    show();
}

/// Reads a piece of the stream. \return false when there is none, and no stream
bool CRecordReader::tState::fill()
{
    if (m_pStream == nullptr || m_bOver)
        return false;
    const std::size_t before = m_strBuffer.size();
    m_strBuffer.resize(before + s_cnPiece);
    m_pStream->read(m_strBuffer.data() + before, static_cast<std::streamsize>(s_cnPiece));
    const auto got = static_cast<std::size_t>(m_pStream->gcount());
    m_strBuffer.resize(before + got);
    m_bOver = got < s_cnPiece;
    show();
    return true;
}

/// Runs to the end of the next record, or of the input.
E_Scan CRecordReader::tState::scan()
{
    for (;;)
    {
        const bool isEmpty = m_tScanner.position() == m_ullBase + m_strvAll.size();
        if (m_tScanner.isAtBegin() && isEmpty && restarts())
        {
            if (m_bOver)
                return SC_done;
            if (!fill())
                return SC_more;
            continue;
        }
        const E_Scan result = m_tScanner.run();
        if (result == SC_more)
        {
            m_bTooLong = m_tScanner.position() - m_ullBase + m_tOptions.m_ullLongest < m_strvAll.size();
            if (m_bTooLong)
                return SC_fault;
            if (!fill())
                return SC_more;
        }
        else if (result == SC_done && restarts())
            m_tScanner.restart();
        else
            return result;
    }
}

void CRecordReader::tState::setRecord(const tTrace& begin, std::uint64_t end)
{
    m_tScanner.getElements(m_vElements);
    m_tRecord.m_uiPart = begin.m_uiIndex;
    m_tRecord.m_ullNumber = m_tScanner.record();
    m_tRecord.m_ullOffset = begin.m_ullOffset;
    m_tRecord.m_ullLength = end - begin.m_ullOffset;
}

template <typename tSink>
E_RecordResult CRecordReader::tState::readValues(tSink& sink)
{
    const tTraces& trace = m_tScanner.trace();
    std::size_t first = 0;
    while (trace[first].m_eTrace != TR_record)
        ++first;
    setRecord(trace[first], m_tScanner.recordEnd());
    CTraceReader<tSink> values(*m_pPlan, m_tScanner, m_tOptions.m_bUnscaled ? VO_unscaled : VO_none, sink);
    const bool isRead = values.readRecord(trace, first, m_vElements, m_tRecord.m_ullNumber, m_tScanner.findings());
    describeFindings();
    if (!isRead)
        return fail(values.fault());
    ++m_tCounts.m_ullRecords;
    return RR_record;
}

/// The scanner has stopped at a fault: reads what is before it, where a value may be the first fault.
template <typename tSink>
E_RecordResult CRecordReader::tState::readPartly(tSink& sink)
{
    const tTraces& trace = m_tScanner.trace();
    std::size_t first = 0;
    while (first != trace.size() && trace[first].m_eTrace != TR_record)
        ++first;
    m_tRecord = tRecordInfo();
    bool isRead = true;
    CTraceReader<tSink> values(*m_pPlan, m_tScanner, m_tOptions.m_bUnscaled ? VO_unscaled : VO_none, sink);
    if (first != trace.size())
    {
        setRecord(trace[first], m_tScanner.position());
        isRead = values.readRecord(trace, first, m_vElements, m_tRecord.m_ullNumber, m_tScanner.findings());
    }
    describeFindings();
    return fail(isRead ? m_tScanner.fault() : values.fault());
}

E_RecordResult CRecordReader::tState::wait(std::uint64_t missing)
{
    m_bWaiting = true;
    m_tFault = tPacketFault();
    m_tFault.m_eCode = PF_more;
    m_tFault.m_ullOffset = m_ullBase + m_strvAll.size();
    m_tFault.m_ullMissing = missing;
    m_tFault.m_strMessage = getFaultSentence(PF_more);
    return RR_more;
}

template <typename tSink>
E_RecordResult CRecordReader::tState::next(tSink& sink)
{
    m_vFindings.clear();
    if (!m_bWaiting)
    {
        m_tScanner.findings().clear();
        m_tScanner.trace().clear();
        dropUsed();
    }
    m_bWaiting = false;
    const E_Scan result = scan();
    m_tCounts.m_ullBytes = m_tScanner.position();
    if (result == SC_record)
        return readValues(sink);
    if (result == SC_more)
        return wait(m_tScanner.missing());
    if (m_bTooLong)
        return fail({PF_limit, 0, m_tScanner.position(), 0, 0, 0, m_tScanner.position(), nullptr, {}});
    if (result == SC_fault)
        return readPartly(sink);
    return finish();
}

/// All parts were read: says so when the input is over, and not before.
E_RecordResult CRecordReader::tState::finish()
{
    while (!m_bOver && m_tScanner.position() == m_ullBase + m_strvAll.size())
    {
        if (!fill())
            return wait(0);
    }
    describeFindings();
    const std::uint64_t left = m_ullBase + m_strvAll.size() - m_tScanner.position();
    if (left != 0)
        return fail({PF_leftOver, 0, m_tScanner.position(), left, 0, 0, m_tScanner.position(), nullptr, {}});
    return RR_end;
}

std::string_view CRecordReader::tState::bytesOf(const tScanFault& fault) const
{
    if (fault.m_ullOffset < m_ullBase || fault.m_ullOffset - m_ullBase > m_strvAll.size())
        return {};
    return m_strvAll.substr(static_cast<std::size_t>(fault.m_ullOffset - m_ullBase),
                            static_cast<std::size_t>(fault.m_ullLength));
}

E_RecordResult CRecordReader::tState::fail(const tScanFault& fault)
{
    m_tFault = describe(*m_pPlan, fault, bytesOf(fault));
    return RR_fault;
}

void CRecordReader::tState::describeFindings()
{
    for (const tScanFault& finding : m_tScanner.findings())
        m_vFindings.push_back(describe(*m_pPlan, finding, bytesOf(finding)));
    m_tCounts.m_ullFindings += m_tScanner.findings().size();
}

CRecordReader::CRecordReader(const CLayout& layout, const tRecordOptions& options)
{
    requireCompiled(layout, "murv::CRecordReader::CRecordReader");
    m_pState = std::make_unique<tState>(layout, options);
}

CRecordReader::CRecordReader(CRecordReader&&) noexcept = default;
CRecordReader& CRecordReader::operator=(CRecordReader&&) noexcept = default;
CRecordReader::~CRecordReader() = default;

void CRecordReader::open(std::string_view bytes)
{
    m_pState->begin(bytes, true);
}

void CRecordReader::open(std::istream& stream)
{
    m_pState->begin({}, false);
    m_pState->m_pStream = &stream;
}

void CRecordReader::open()
{
    m_pState->begin({}, false);
}

void CRecordReader::put(std::string_view bytes)
{
    m_pState->addPiece(bytes);
}

void CRecordReader::end()
{
    m_pState->m_bOver = true;
    m_pState->show();
}

E_RecordResult CRecordReader::next(CFields& record)
{
    const CTreeFilling filling(m_pState->m_tTree, record);
    return m_pState->next(m_pState->m_tTree);
}

E_RecordResult CRecordReader::next(IPacketVisitor& visitor)
{
    CVisitorSink sink(visitor);
    return m_pState->next(sink);
}

E_RecordResult CRecordReader::next()
{
    CNoSink sink;
    return m_pState->next(sink);
}

bool CRecordReader::skip()
{
    tState& state = *m_pState;
    // A value that could not be read: the record itself is over.
    if (!state.m_tScanner.trace().empty() && state.m_tScanner.trace().back().m_eTrace == TR_recordEnd)
    {
        state.m_tScanner.distrustTotals();
        ++state.m_tCounts.m_ullDamaged;
        return true;
    }
    if (!state.m_tScanner.skipFrame())
        return false;
    ++state.m_tCounts.m_ullDamaged;
    return true;
}

const tRecordInfo& CRecordReader::getRecord() const
{
    return m_pState->m_tRecord;
}

std::string CRecordReader::getPath() const
{
    const tState& state = *m_pState;
    return state.m_tRecord.m_uiPart == CLayout::s_cuiNoPart
               ? std::string()
               : path4Part(*state.m_pPlan, state.m_tRecord.m_uiPart, state.m_vElements);
}

std::string_view CRecordReader::getBytes() const
{
    const tState& state = *m_pState;
    if (state.m_tRecord.m_uiPart == CLayout::s_cuiNoPart || state.m_tRecord.m_ullOffset < state.m_ullBase)
        return {};
    return state.m_strvAll.substr(static_cast<std::size_t>(state.m_tRecord.m_ullOffset - state.m_ullBase),
                                  static_cast<std::size_t>(state.m_tRecord.m_ullLength));
}

const tPacketFault& CRecordReader::getFault() const
{
    return m_pState->m_tFault;
}

const std::vector<tPacketFault>& CRecordReader::getFindings() const
{
    return m_pState->m_vFindings;
}

const tRecordCounts& CRecordReader::getCounts() const
{
    return m_pState->m_tCounts;
}

}  // namespace murv

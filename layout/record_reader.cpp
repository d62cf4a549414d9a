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
        m_tScanner.setLongest(options.m_ullLongest);
    }

    void begin(std::string_view bytes, bool over);
    template <typename tSink>
    E_RecordResult next(tSink& sink);
    template <typename tSink>
    E_RecordResult nextRecord(tSink& sink);
    E_Scan scan();
    bool isTooLong() const;
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
    E_RecordResult fail(E_PacketFault code, std::uint64_t offset, std::uint64_t length);
    void setDamaged();
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
    bool m_bOwn = false;         // the bytes are in the buffer
    bool m_bStands = false;      // at a fault that was not skipped
    bool m_bBroken = false;      // the stream failed
    bool m_bThrown = false;      // an exception left a call
    bool m_bRecordOver = false;  // the scanner has come to the end of the damaged record
    bool m_bWaiting = false;     // within a record, for more bytes: what was found of it stays
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
    m_bWaiting = m_bStands = m_bBroken = m_bThrown = m_bRecordOver = false;
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
    m_bBroken = m_pStream->bad();
    m_bOver = got < s_cnPiece && !m_bBroken;
    show();
    return !m_bBroken;
}

/// Whether the record that is not whole yet has more bytes than records may have; its mark or length comes on top.
bool CRecordReader::tState::isTooLong() const
{
    const tFrame& frame = m_pPlan->m_tFrame;
    const std::uint64_t begin = m_tScanner.isInRecord() ? m_tScanner.recordStart() : m_tScanner.position();
    const std::uint64_t around = frame.m_eKind == FR_none ? 0 : 1 + frame.m_strMark.size() + frame.m_tPrefix.m_uiLength;
    const std::uint64_t there = m_ullBase + m_strvAll.size() - begin;
    return there > around && there - around > m_tOptions.m_ullLongest;
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
            if (isTooLong() || !fill())
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
    m_tCounts.m_ullBytes = m_tScanner.position();
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
    bool isRead = true;
    CTraceReader<tSink> values(*m_pPlan, m_tScanner, m_tOptions.m_bUnscaled ? VO_unscaled : VO_none, sink);
    if (first != trace.size())
        isRead = values.readRecord(trace, first, m_tScanner.elements(), m_tScanner.record(), m_tScanner.findings());
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

/// A fault stays until it is skipped. An exception leaves nothing to go on with.
template <typename tSink>
E_RecordResult CRecordReader::tState::next(tSink& sink)
{
    if (m_bStands)
        return RR_fault;
    if (m_bThrown)
        return fail({PF_memory, 0, 0, 0, 0, 0, 0, "An exception has ended the last call; open the input anew", {}});
    m_bThrown = true;
    const E_RecordResult result = nextRecord(sink);
    m_bThrown = false;
    return result;
}

template <typename tSink>
E_RecordResult CRecordReader::tState::nextRecord(tSink& sink)
{
    m_vFindings.clear();
    if (!m_bWaiting)
    {
        m_tScanner.findings().clear();
        m_tScanner.trace().clear();
        dropUsed();
    }
    m_bWaiting = m_bRecordOver = false;
    const std::uint64_t before = m_tScanner.position();
    const E_Scan result = scan();
    if (result == SC_record && m_tScanner.position() == before && restarts())
    {
        // Nothing but parts that may be absent: there could be any number.
        fail(PF_leftOver, before, m_ullBase + m_strvAll.size() - before);
        m_tRecord.m_ullNumber = m_tScanner.record();
        return RR_fault;
    }
    m_bRecordOver = result == SC_record;
    if (m_bRecordOver)
        return readValues(sink);
    if (m_bBroken)
        return fail(PF_input, m_ullBase + m_strvAll.size(), 0);
    if (result == SC_more && isTooLong())
        return fail(PF_limit, m_tScanner.isInRecord() ? m_tScanner.recordStart() : m_tScanner.position(),
                    m_tOptions.m_ullLongest);
    if (result == SC_more)
        return wait(m_tScanner.missing());
    return result == SC_fault ? readPartly(sink) : finish();
}

/// All parts were read: says so when the input is over, and not before.
E_RecordResult CRecordReader::tState::finish()
{
    while (!m_bOver && m_tScanner.position() == m_ullBase + m_strvAll.size())
    {
        if (!fill())
            return m_bBroken ? fail(PF_input, m_tScanner.position(), 0) : wait(0);
    }
    describeFindings();
    const std::uint64_t left = m_ullBase + m_strvAll.size() - m_tScanner.position();
    return left != 0 ? fail(PF_leftOver, m_tScanner.position(), left) : RR_end;
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
    m_bStands = true;
    m_tFault = describe(*m_pPlan, fault, bytesOf(fault));
    if (!m_bRecordOver)
        setDamaged();
    return RR_fault;
}

E_RecordResult CRecordReader::tState::fail(E_PacketFault code, std::uint64_t offset, std::uint64_t length)
{
    return fail({code, 0, offset, length, 0, 0, offset, nullptr, {}});
}

/// The record at which the scanner stopped.
void CRecordReader::tState::setDamaged()
{
    const bool isIn = m_tScanner.isInRecord();
    const tByteRange place = m_tScanner.damaged();
    m_tRecord.m_uiPart = CLayout::s_cuiNoPart;
    for (const tTrace& trace : m_tScanner.trace())
    {
        if (isIn && trace.m_eTrace == TR_record)
            m_tRecord.m_uiPart = trace.m_uiIndex;
    }
    m_tScanner.getElements(m_vElements);
    m_tRecord.m_ullNumber = m_tScanner.record() + (isIn ? 0 : 1);
    m_tRecord.m_ullOffset = place.m_ullOffset;
    m_tRecord.m_ullLength = place.m_ullLength;
}

void CRecordReader::tState::describeFindings()
{
    sortFindings(m_tScanner.findings());
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
    if (!state.m_bStands || state.m_bBroken || state.m_bThrown)
        return false;
    // A value that could not be read: the record itself is over.
    if (state.m_bRecordOver)
        state.m_tScanner.distrustTotals();
    else if (!state.m_tScanner.skipFrame())
        return false;
    state.m_bStands = state.m_bRecordOver = false;
    ++state.m_tCounts.m_ullDamaged;
    state.m_tCounts.m_ullBytes = state.m_tScanner.position();
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
    if (state.m_tRecord.m_ullOffset < state.m_ullBase ||
        state.m_tRecord.m_ullOffset - state.m_ullBase > state.m_strvAll.size())
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

// layout/run/scan_frames.cpp - records, and how they lie in the input.
//
// Between records, choices look at the record that comes: its frame is opened before anybody knows which it is.
#include <algorithm>

#include "layout/run/scanner.h"
#include "layout/values/value_codec.h"

namespace murv::detail
{

/// Opens the frame of the next record. Without a record to come nothing is opened, and that is no fault.
E_Scan CScanner::openFrame(unsigned int part)
{
    const tFrame& frame = m_tPlan.m_tFrame;
    m_bFrameKnown = false;
    if (m_bFrameOpen)
        return SC_next;
    if (m_ullPos == m_ullEdge)
        return m_bOver ? SC_next : more(part, 1);
    switch (frame.m_eKind)
    {
    case FR_lines: return openLine(part, "\n");
    case FR_mark: return openLine(part, frame.m_strMark);
    case FR_fixed: return endFrameAt(part, m_ullPos, frame.m_uiLength);
    case FR_prefixed: return openPrefixed(part);
    case FR_none: break;
    }
    return SC_next;
}

E_Scan CScanner::openLine(unsigned int part, std::string_view mark)
{
    const tFrame& frame = m_tPlan.m_tFrame;
    const std::string_view there = bytes(m_ullPos, m_ullEdge - m_ullPos);
    const std::size_t found = there.find(mark, searchedSoFar());
    if (found == std::string_view::npos && !m_bOver)
    {
        m_ullSearched = std::max(m_ullSearched, m_ullEdge - std::min<std::uint64_t>(there.size(), mark.size() - 1));
        return more(part, 1);
    }
    const bool isEnded = found != std::string_view::npos;
    m_bOpenEnd = !isEnded;
    std::size_t length = isEnded ? found : there.size();
    m_ullFrameAfter = m_ullPos + length + (isEnded ? mark.size() : 0);
    if (frame.m_eKind == FR_lines)
    {
        const bool hasReturn = isEnded && length != 0 && there[length - 1] == '\r';
        length -= hasReturn ? 1 : 0;
        const unsigned char lineEnd = hasReturn ? 2 : 1;
        if (isEnded && m_ucLineEnd == 0)
            m_ucLineEnd = lineEnd;
        if (isEnded && m_ucLineEnd != lineEnd)
            find(PF_lineEnd, part, m_ullPos + length, lineEnd);
    }
    m_ullFrameBegin = m_ullPos;
    m_ullFrameEnd = m_ullPos + length;
    m_bFrameOpen = true;
    m_bFrameKnown = length > m_ullLongest || (frame.m_uiLength != 0 && length != frame.m_uiLength);
    if (!m_bFrameKnown)
        return SC_next;
    if (length > m_ullLongest)
        return stop(PF_limit, part, m_ullPos, length);
    return stop(PF_frame, part, m_ullPos, length,
                length < frame.m_uiLength ? "The line is shorter than the records are"
                                          : "The line is longer than the records are");
}

E_Scan CScanner::openPrefixed(unsigned int part)
{
    const tFrame& frame = m_tPlan.m_tFrame;
    const unsigned int width = frame.m_tPrefix.m_uiLength;
    if (!has(width))
        return lack(part, width);
    tScalar value;
    const E_PacketFault fault = readValue(frame.m_tPrefix, bytes(m_ullPos, width), VO_none, value, m_strScratch);
    if (fault != PF_none)
        return stop(PF_frame, part, m_ullPos, width, "The length before the record cannot be read");
    const auto plus = static_cast<unsigned long long>(frame.m_llPlus);
    const unsigned long long length = value.m_ullValue - plus;
    const bool isBelowZero = value.m_eType == DT_sint && value.m_llValue < 0;
    if (isBelowZero || (frame.m_llPlus > 0 && value.m_ullValue < plus) || length > s_cullUnknown / 2)
        return stop(PF_frame, part, m_ullPos, width, "The length before the record cannot be right");
    if (length > m_ullLongest)
        return stop(PF_limit, part, m_ullPos, width);
    return endFrameAt(part, m_ullPos + width, length);
}

E_Scan CScanner::endFrameAt(unsigned int part, std::uint64_t begin, std::uint64_t length)
{
    if (!has(begin - m_ullPos + length))
        return lack(part, begin - m_ullPos + length);
    m_ullFrameBegin = begin;
    m_ullFrameEnd = m_ullFrameAfter = begin + length;
    m_bFrameOpen = true;
    return SC_next;
}

E_Scan CScanner::onRecord(unsigned int part)
{
    if (m_tPlan.m_tFrame.m_eKind != FR_none)
    {
        if (const E_Scan result = openFrame(part))
            return result;
        if (!m_bFrameOpen)
            return lack(part, 1);
        pushLimit(m_ullFrameEnd, part);
        m_ullPos = m_ullFrameBegin;
    }
    m_bInRecord = true;
    if (m_bKeepsPlaces)
        keepPlace(m_tRecordPlace, m_uiStep);
    m_ullSearched = m_ullRecordStart = m_ullPos;
    ++m_ullRecord;
    add(TR_record, part, m_ullPos);
    for (const unsigned int link : m_tPlan.m_vLinks4Counted[part])
    {
        if (m_tPlan.m_vLinks[link].m_eKind == LK_records)
            ++m_vTotals[link].m_ullSum;
    }
    return SC_next;
}

E_Scan CScanner::onRecordEnd(unsigned int part)
{
    for (const unsigned int link : m_tPlan.m_vLinks4Record[part])
    {
        if (const E_Scan result = compareAbsent(link))
            return result;
    }
    m_ullRecordEnd = m_ullPos;
    if (m_ullPos - m_ullRecordStart > m_ullLongest)
        return stop(PF_limit, part, m_ullRecordStart, m_ullPos - m_ullRecordStart);
    if (m_bFrameOpen)
    {
        if (m_ullPos != m_ullFrameEnd)
            return stop(PF_frame, part, m_ullPos, m_ullFrameEnd - m_ullPos, "Bytes are left at the end of the record");
        popLimit();
        m_ullPos = m_ullFrameAfter;
        m_bFrameOpen = false;
    }
    m_bInRecord = false;
    m_ullSearched = m_ullPos;
    add(TR_recordEnd, part, m_ullPos);
    if (m_bKeepsPlaces)
        keepPlace(m_tLastGood, m_uiStep + 1);
    return SC_record;
}

void CScanner::keepPlace(tPlace& place, unsigned int step) const
{
    place.m_uiStep = step;
    place.m_vLoops = m_vLoops;
    place.m_vFirst = m_vFirst;
}

/// The place after the record at hand, as if it had been read.
CScanner::tPlace CScanner::afterRecord() const
{
    tPlace place = m_tRecordPlace;
    const unsigned int part = m_tPlan.m_vSteps[place.m_uiStep].m_uiA;
    while (m_tPlan.m_vSteps[place.m_uiStep].m_eStep != ST_recordEnd || m_tPlan.m_vSteps[place.m_uiStep].m_uiA != part)
        ++place.m_uiStep;
    ++place.m_uiStep;
    return place;
}

void CScanner::setPlace(const tPlace& place, std::uint64_t offset)
{
    m_uiStep = place.m_uiStep;
    m_vLoops = place.m_vLoops;
    m_vFirst = place.m_vFirst;
    m_vLimits.resize(1);
    m_ullPos = m_ullSearched = offset;
    m_bInRecord = m_bFrameOpen = m_bFrameKnown = false;
    setEdge();
}

/// Tries to read the next record from a place.
E_Scan CScanner::tryFrom(const tPlace& place)
{
    CScanner trial(*this);
    trial.m_bUndecided = false;
    const std::uint64_t searched = m_ullSearched;
    trial.setPlace(place, m_ullPos);
    trial.m_ullSearched = searched;
    const E_Scan result = trial.run();
    if (result == SC_more)
    {
        m_ullSearched = std::max(searched, trial.m_ullSearched);
        m_ullMissing = trial.m_ullMissing;
    }
    return result;
}

/// After a damaged record, the next one says which of two places to go on from: it must be there as a whole first, so
/// that it does not matter in which pieces it comes.
E_Scan CScanner::decide()
{
    const E_Scan first = tryFrom(m_tFirst);
    if (first == SC_more)
        return SC_more;
    m_bUndecided = false;
    setPlace(first != SC_fault || tryFrom(m_tSecond) == SC_fault ? m_tFirst : m_tSecond, m_ullPos);
    return SC_next;
}

void CScanner::distrustTotals()
{
    for (tTotal& total : m_vTotals)
    {
        total.m_vNumbers.clear();
        total.m_vElements.clear();
        total.m_bUnknown = true;
    }
    // Nor are numbers compared whose part the damaged record may have had.
    for (std::size_t i = 0; i < m_vNumbers.size(); ++i)
        m_vNumbers[i].m_bPresent = m_vNumbers[i].m_bPresent && !m_tPlan.m_vMayLack[i];
}

bool CScanner::skipFrame()
{
    if (!(m_bFrameOpen || m_bFrameKnown) || !m_bKeepsPlaces)
        return false;
    if (m_bFrameKnown && m_tPlan.m_vSteps[m_uiStep].m_eStep == ST_record)
    {
        keepPlace(m_tRecordPlace, m_uiStep);
        m_tLastGood = afterRecord();
    }
    distrustTotals();
    m_vTrace.clear();
    const std::uint64_t after = m_ullFrameAfter;
    // A record that was recognised counts as read; a line that nothing was due for counts as nothing.
    const bool isRecognised =
        m_bInRecord && !(m_tFault.m_eCode == PF_literal && m_tFault.m_ullOffset == m_ullRecordStart);
    m_tFirst = isRecognised ? afterRecord() : m_tLastGood;
    m_tSecond = isRecognised || !m_bInRecord ? m_tLastGood : afterRecord();
    m_ullRecord += m_bInRecord ? 0 : 1;
    setPlace(m_tFirst, after);
    m_bUndecided = m_tFirst.m_uiStep != m_tSecond.m_uiStep;
    return true;
}

}  // namespace murv::detail

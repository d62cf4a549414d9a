// layout/run/scanner.cpp - running the steps; items.
#include "layout/run/scanner.h"

#include <algorithm>
#include <cstring>

#include "layout/values/value_codec.h"

namespace murv::detail
{

namespace
{

constexpr std::uint64_t s_cullLongestItem = 0x7FFFFFFF;

}  // namespace

CScanner::CScanner(const tPlan& plan, bool keepsPlaces)
    : m_tPlan(plan),
      m_bKeepsPlaces(keepsPlaces),
      m_vMeasures(plan.m_vSpans.size()),
      m_vNumbers(plan.m_vLinks.size()),
      m_vTotals(plan.m_vLinks.size()),
      m_tKept(plan)
{
    reset();
}

void CScanner::reset()
{
    m_ullPos = m_ullBase = m_ullShown = 0;
    m_ullRecord = m_ullRecordStart = 0;
    m_ucLineEnd = 0;
    m_bOver = m_bOpenEnd = false;
    m_vFindings.clear();
    m_tFault.m_eCode = PF_none;
    restart();
}

void CScanner::restart()
{
    m_uiStep = 0;
    m_ullSearched = m_ullPos;
    m_bInRecord = m_bFrameOpen = m_bFrameKnown = m_bUndecided = false;
    m_vLimits.assign(1, {m_bOver ? m_ullShown : s_cullUnknown, 0});
    m_vLoops.clear();
    m_vFirst.clear();
    std::fill(m_vMeasures.begin(), m_vMeasures.end(), tMeasure());
    std::fill(m_vNumbers.begin(), m_vNumbers.end(), tNumber());
    for (tTotal& total : m_vTotals)
        total = tTotal();
    m_tKept.clearAll();
    m_vTrace.clear();
    setEdge();
}

void CScanner::show(const char* data, std::uint64_t base, std::uint64_t length, bool over)
{
    m_pData = data;
    m_ullBase = base;
    m_ullShown = base + length;
    m_bOver = over;
    m_vLimits.front().m_ullEnd = over ? m_ullShown : s_cullUnknown;
    for (std::size_t i = 1; i < m_vLimits.size() && isOfInput(i); ++i)
        m_vLimits[i].m_ullEnd = m_vLimits.front().m_ullEnd;
    setEdge();
}

void CScanner::setEdge()
{
    m_ullEdge = std::min(m_vLimits.back().m_ullEnd, m_ullShown);
}

E_Scan CScanner::run()
{
    if (m_bUndecided)
    {
        if (const E_Scan result = decide())
            return result;
    }
    for (;;)
    {
        const E_Scan result = step(m_tPlan.m_vSteps[m_uiStep]);
        if (result <= SC_again)
        {
            m_uiStep += result == SC_next ? 1 : 0;
            continue;
        }
        if (result == SC_record)
            ++m_uiStep;
        return result;
    }
}

E_Scan CScanner::step(const tStep& step)
{
    switch (step.m_eStep)
    {
    case ST_run: return onRun(step.m_uiA);
    case ST_item: return onItem(step.m_uiA);
    case ST_ask: return onAsk(step.m_uiA);
    case ST_open: return onOpen(step);
    case ST_close: return onClose(step.m_uiA);
    case ST_array: return onArray(step.m_uiA);
    case ST_next: return onNext(step);
    case ST_element: return onElement(step);
    case ST_arrayEnd: return onArrayEnd(step.m_uiA);
    case ST_when: return onWhen(step);
    case ST_choose: return onChoose(step.m_uiA);
    case ST_jump: m_uiStep = step.m_uiB; return SC_again;
    case ST_joint: return onJoint(step);
    case ST_cut: return onCut(step.m_uiA);
    case ST_uncut: return onUncut(step.m_uiA);
    case ST_span: return onSpan(step.m_uiA);
    case ST_spanEnd: return onSpanEnd(step.m_uiA);
    case ST_align: return onAlign(step.m_uiA);
    case ST_link: return onLink(step.m_uiA);
    case ST_total: return onTotal(step.m_uiA);
    case ST_reset: return onReset(step.m_uiA);
    case ST_record: return onRecord(step.m_uiA);
    case ST_recordEnd: return onRecordEnd(step.m_uiA);
    case ST_done: break;
    }
    return SC_done;
}

E_Scan CScanner::onRun(unsigned int index)
{
    const tRun& run = m_tPlan.m_vRuns[index];
    if (!has(run.m_uiLength))
        return lackInRun(run);
    const char* const begin = at(m_ullPos);
    for (const unsigned int literal : run.m_vLiterals)
    {
        const tRun::tField& field = run.m_vFields[literal];
        if (std::memcmp(begin + field.m_uiOffset, part4(field.m_uiPart).m_strLiteral.data(), field.m_uiLength) != 0)
            return otherLiteral(index, field);
    }
    for (const unsigned int kept : run.m_vKept)
    {
        const tRun::tField& field = run.m_vFields[kept];
        if (const E_Scan result = keep(field.m_uiPart, m_ullPos + field.m_uiOffset, field.m_uiLength))
            return result;
    }
    add(TR_run, index, m_ullPos, run.m_uiLength);
    m_ullPos += run.m_uiLength;
    return SC_next;
}

/// The bytes of a literal differ. What is before it in its run stays in the trace.
E_Scan CScanner::otherLiteral(unsigned int run, const tRun::tField& literal)
{
    if (literal.m_uiOffset != 0)
        add(TR_run, run, m_ullPos, literal.m_uiOffset);
    return stop(PF_literal, literal.m_uiPart, m_ullPos + literal.m_uiOffset, literal.m_uiLength);
}

/// The bytes end within a run: names the first item that is not whole. What is whole stays in the trace.
E_Scan CScanner::lackInRun(const tRun& run)
{
    const std::uint64_t there = m_ullEdge - m_ullPos;
    const auto isWhole = [there](const tRun::tField& field) { return field.m_uiOffset + field.m_uiLength <= there; };
    const auto cut = std::find_if_not(run.m_vFields.begin(), run.m_vFields.end(), isWhole);
    const E_Scan result = lack(cut->m_uiPart, run.m_uiLength);
    if (result != SC_fault)
        return result;
    const auto index = static_cast<unsigned int>(&run - m_tPlan.m_vRuns.data());
    add(TR_run, index, m_ullPos, cut->m_uiOffset);
    m_tFault.m_ullOffset = m_ullPos + cut->m_uiOffset;
    m_tFault.m_ullLength = there - cut->m_uiOffset;
    return result;
}

E_Scan CScanner::onItem(unsigned int part)
{
    const tPart& leaf = part4(part);
    tTrace item{TR_item, part, 0, 0};
    std::uint64_t after = 0;
    if (const E_Scan result = findValue(leaf, part, item, after))
        return result;
    if (leaf.m_tItem.m_uiLength != 0 && item.m_ullLength > leaf.m_tItem.m_uiLength)
        return stop(PF_size, part, item.m_ullOffset, item.m_ullLength, "The item is longer than it may be");
    if (leaf.m_bLiteral && bytes(m_ullPos, after - m_ullPos) != leaf.m_strLiteral)
        return stop(PF_literal, part, m_ullPos, after - m_ullPos);
    if (m_tPlan.m_vRegister4Part[part] != s_cuiNone)
    {
        if (const E_Scan result = keep(part, item.m_ullOffset, item.m_ullLength))
            return result;
    }
    m_vTrace.push_back(item);
    m_ullPos = m_ullSearched = after;
    return SC_next;
}

/// Finds the value of an item of varying width, and where the item ends.
E_Scan CScanner::findValue(const tPart& leaf, unsigned int part, tTrace& item, std::uint64_t& after)
{
    if (leaf.m_eEnd == LE_mark || leaf.m_eEnd == LE_before)
        return findMark(leaf, part, item, after);
    std::uint64_t begin = m_ullPos;
    std::uint64_t length = 0;
    if (leaf.m_eEnd == LE_prefix)
    {
        const unsigned int width = leaf.m_tItem.m_ucPrefix;
        if (!has(width))
            return lack(part, width);
        if (const E_PacketFault fault = readPrefix(leaf.m_tItem, bytes(m_ullPos, width), length))
            return stop(fault, part, m_ullPos, width, "The length prefix cannot be read");
        if (length > s_cullLongestItem)
            return stop(PF_size, part, m_ullPos, width, "The length prefix says more than an item may have");
        begin += width;
        if (!has(width + length))
            return lack(part, width + length);
    }
    else if (leaf.m_eEnd == LE_callback)
    {
        length = m_ullAsked;
        if (length > s_cullLongestItem)
            return stop(PF_size, part, m_ullPos, 0, "The callback gave more bytes than an item may have");
        if (!has(length))
            return lack(part, length);
    }
    else
    {
        const std::uint64_t end = m_vLimits.back().m_ullEnd;
        if (end == s_cullUnknown)
            return more(part, 1);
        if (end - m_ullPos < leaf.m_uiTail)
            return lack(part, leaf.m_uiTail);
        length = end - m_ullPos - leaf.m_uiTail;
    }
    item.m_ullOffset = begin;
    item.m_ullLength = length;
    after = begin + length;
    return SC_next;
}

/// Finds the first of the marks that end an item.
E_Scan CScanner::findMark(const tPart& leaf, unsigned int part, tTrace& item, std::uint64_t& after)
{
    const std::string_view there = bytes(m_ullPos, m_ullEdge - m_ullPos);
    const auto from = searchedSoFar();
    std::size_t found = std::string_view::npos;
    std::size_t longest = 0;
    for (const std::string& mark : leaf.m_vMarks)
    {
        const std::size_t room = found == std::string_view::npos ? there.size() : found + mark.size() - 1;
        found = std::min(found, there.substr(0, room).find(mark, from));
        longest = std::max(longest, mark.size());
    }
    const bool isEnded = m_ullEdge == m_vLimits.back().m_ullEnd;
    if (found == std::string_view::npos && !isEnded)
    {
        // A mark may have begun in the last bytes.
        m_ullSearched = std::max(m_ullSearched, m_ullEdge - std::min<std::uint64_t>(there.size(), longest - 1));
        return more(part, 1);
    }
    if (found == std::string_view::npos && leaf.m_eEnd == LE_mark)
        return isOfInput(m_vLimits.size() - 1)
                   ? more(part, 1)
                   : stop(PF_missing, part, m_ullPos, there.size(), "The mark after the item is missing");
    item.m_ullOffset = m_ullPos;
    item.m_ullLength = std::min(found, there.size());
    after = m_ullPos + item.m_ullLength + (leaf.m_eEnd == LE_mark ? leaf.m_vMarks.front().size() : 0);
    return SC_next;
}

E_Scan CScanner::onOpen(const tStep& step)
{
    const unsigned int part = step.m_uiA;
    if (!part4(part).m_strBetween.empty())
        m_vFirst.push_back(true);
    add(TR_open, part, m_ullPos);
    if (step.m_uiB == s_cuiNone || m_ullPos != m_vLimits.back().m_ullEnd)
        return SC_next;
    m_uiStep = step.m_uiB;
    return SC_again;
}

E_Scan CScanner::onClose(unsigned int part)
{
    if (!part4(part).m_strBetween.empty())
        m_vFirst.pop_back();
    add(TR_close, part, m_ullPos);
    return SC_next;
}

/// Reads a value that others look at.
E_Scan CScanner::keep(unsigned int part, std::uint64_t offset, std::uint64_t length)
{
    tScalar value;
    const E_PacketFault fault = readValue(part4(part).m_tItem, bytes(offset, length), VO_unscaled, value, m_strScratch);
    if (fault != PF_none && !isFinding(fault))
        return stop(fault, part, offset, length);
    m_tKept.set(part, value);
    if (!m_tPlan.m_vLinks4Counted[part].empty() && value.m_eType != DT_null)
        count(part, value.m_ullValue);
    return SC_next;
}

/// The place has fewer bytes than are wanted.
E_Scan CScanner::lack(unsigned int part, std::uint64_t wanted)
{
    const std::uint64_t end = m_vLimits.back().m_ullEnd;
    if (isOfInput(m_vLimits.size() - 1) || wanted <= end - m_ullPos)
        return more(part, wanted - (m_ullEdge - m_ullPos));
    const bool isFramed = m_bInRecord && end == m_ullFrameEnd && m_tPlan.m_tFrame.m_eKind != FR_none;
    return stop(isFramed ? PF_frame : PF_size, part, m_ullPos, end - m_ullPos,
                isFramed ? "The record ends within this part" : "The enclosing part ends within this part");
}

E_Scan CScanner::more(unsigned int part, std::uint64_t missing)
{
    if (!m_bOver)
    {
        m_ullMissing = missing;
        return SC_more;
    }
    stop(PF_more, part, m_ullPos, m_ullShown - std::min(m_ullPos, m_ullShown));
    m_tFault.m_ullMissing = missing;
    return SC_fault;
}

tElements CScanner::elements() const
{
    tElements elements;
    getElements(elements);
    return elements;
}

void CScanner::getElements(tElements& elements) const
{
    elements.clear();
    addElements(elements);
}

void CScanner::addElements(tElements& elements) const
{
    for (const tLoop& loop : m_vLoops)
        elements.push_back(loop.m_ullCount - (loop.m_ullCount == 0 ? 0 : 1));
}

tScanFault CScanner::makeFault(E_PacketFault code, unsigned int part, std::uint64_t offset, std::uint64_t length,
                               const char* text) const
{
    // Where records have frames, what lies between them is the next one.
    const std::uint64_t record = m_bInRecord || m_tPlan.m_tFrame.m_eKind == FR_none ? 0 : m_ullRecord + 1;
    return {
        code, part,      offset, length, 0, m_bInRecord ? m_ullRecord : record, m_bInRecord ? m_ullRecordStart : offset,
        text, elements()};
}

/// A fault or finding about a number that was read before.
tScanFault CScanner::makeFault(E_PacketFault code, const tLink& link, const tNumber& number, const char* text) const
{
    tScanFault fault = makeFault(code, link.m_tNumber.m_uiPart, number.m_ullOffset, number.m_ullLength, text);
    fault.m_ullRecord = number.m_ullRecord;
    fault.m_ullRecordOffset = number.m_ullRecordOffset;
    return fault;
}

E_Scan CScanner::stopAt(E_PacketFault code, const tLink& link, const tNumber& number, const char* text)
{
    m_tFault = makeFault(code, link, number, text);
    return SC_fault;
}

E_Scan CScanner::stop(E_PacketFault code, unsigned int part, std::uint64_t offset, std::uint64_t length,
                      const char* text)
{
    m_tFault = makeFault(code, part, offset, length, text);
    return SC_fault;
}

void CScanner::find(E_PacketFault code, unsigned int part, std::uint64_t offset, std::uint64_t length, const char* text)
{
    m_vFindings.push_back(makeFault(code, part, offset, length, text));
}

}  // namespace murv::detail

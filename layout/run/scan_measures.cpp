// layout/run/scan_measures.cpp - sizes, counts, bitmaps, checksums and totals while reading.
//
// A number that stands before its part rules: it is the limit in which the part is read. All others are compared, as
// soon as both the number and what it is about are known.
#include <algorithm>

#include "layout/run/scanner.h"
#include "layout/run/totals.h"
#include "layout/values/checksum.h"

namespace murv::detail
{

/// Whether a limit is only the end of the input.
bool CScanner::isOfInput(std::size_t limit) const
{
    while (limit != 0 && m_vLimits[limit].m_bOpen)
        --limit;
    return limit == 0;
}

void CScanner::pushLimit(std::uint64_t end, unsigned int part, bool isOpen)
{
    m_vLimits.push_back({end, part, isOpen});
    setEdge();
}

void CScanner::popLimit()
{
    m_vLimits.pop_back();
    setEdge();
}

/// The size in bytes that a number says. \return false when it cannot be one
bool CScanner::size4Number(const tLink& link, std::uint64_t& size) const
{
    unsigned long long number = 0;
    if (!m_tKept.getNumber(link.m_tNumber, number))
        return false;
    const auto plus = static_cast<unsigned long long>(link.m_llPlus);
    if (link.m_llPlus > 0 && number < plus)
        return false;
    size = number - plus;
    if (size > s_cullUnknown / 2 / link.m_ullDivisor)
        return false;
    size *= link.m_ullDivisor;
    return true;
}

E_Scan CScanner::onSpan(unsigned int index)
{
    const tSpan& span = m_tPlan.m_vSpans[index];
    tMeasure& measure = m_vMeasures[index];
    measure = tMeasure();
    measure.m_bBegun = true;
    measure.m_ullBegin = m_ullPos;
    if (span.m_uiSize == s_cuiNone)
        return SC_next;
    if (span.m_bSizeInside)
    {
        measure.m_bLimited = true;
        measure.m_nLimit = m_vLimits.size();
        pushLimit(m_vLimits.back().m_ullEnd, span.m_uiFirst, true);
        return SC_next;
    }
    std::uint64_t size = 0;
    const tLink& link = m_tPlan.m_vLinks[span.m_uiSize];
    tScalar value;
    if (!m_tKept.get(link.m_tNumber, value))
        return SC_next;
    if (!size4Number(link, size))
        return stopAt(PF_size, link, m_vNumbers[span.m_uiSize], "The number cannot be a size");
    measure.m_bLimited = true;
    measure.m_nLimit = m_vLimits.size();
    pushLimit(m_vLimits.back().m_ullEnd, span.m_uiFirst, true);
    const E_Scan result = limitTo(index, size, false);
    if (result == SC_more)
        popLimit();
    return result;
}

/// Sets the end of what is measured, which the limits opened since must not exceed.
E_Scan CScanner::limitTo(unsigned int span, std::uint64_t size, bool inside)
{
    const tMeasure& measure = m_vMeasures[span];
    const std::uint64_t end = measure.m_ullBegin + size;
    const std::uint64_t outer = m_vLimits[measure.m_nLimit].m_ullEnd;
    const unsigned int index = m_tPlan.m_vSpans[span].m_uiSize;
    const tLink& link = m_tPlan.m_vLinks[index];
    const unsigned int part = link.m_tNumber.m_uiPart;
    if (end < m_ullPos)
        return stopAt(PF_size, link, m_vNumbers[index], "The size is less than what was read of the part");
    if (end > outer)
        return isOfInput(measure.m_nLimit) && m_bOver
                   ? more(part, end - m_ullShown)
                   : stopAt(PF_size, link, m_vNumbers[index], "The size is more than the enclosing part has");
    if (end > m_ullShown)
        return more(part, end - m_ullShown);
    m_vLimits[measure.m_nLimit].m_bOpen = false;
    for (std::size_t i = measure.m_nLimit; i < m_vLimits.size(); ++i)
        m_vLimits[i].m_ullEnd = inside ? std::min(m_vLimits[i].m_ullEnd, end) : end;
    setEdge();
    return SC_next;
}

E_Scan CScanner::onSpanEnd(unsigned int index)
{
    tMeasure& measure = m_vMeasures[index];
    if (measure.m_bLimited)
    {
        const std::uint64_t end = m_vLimits.back().m_ullEnd;
        const bool isSized = m_vNumbers[m_tPlan.m_vSpans[index].m_uiSize].m_bPresent;
        if (isSized && m_ullPos != end)
            return stop(PF_leftOver, m_tPlan.m_vSpans[index].m_uiLast, m_ullPos, end - m_ullPos,
                        "Bytes are left inside the size of the part");
        popLimit();
    }
    measure.m_bEnded = true;
    measure.m_ullEnd = m_ullPos;
    for (const unsigned int i : m_tPlan.m_vLinks4Span[index])
    {
        const tLink& link = m_tPlan.m_vLinks[i];
        if (!link.m_bNumberFirst || !m_vNumbers[i].m_bPresent)
            continue;
        if (link.m_eKind == LK_check)
            compareCheck(link, m_vNumbers[i], measure);
        else if (const E_Scan result = compareSize(link, m_vNumbers[i], measure))
            return result;
        else
            m_vNumbers[i].m_bPresent = false;
    }
    return SC_next;
}

/// A number that was read, and compared with nothing, is about a part that was not there.
E_Scan CScanner::compareAbsent(unsigned int index)
{
    const tLink& link = m_tPlan.m_vLinks[index];
    const tNumber number = m_vNumbers[index];
    m_vNumbers[index].m_bPresent = false;
    if (!number.m_bPresent || number.m_ullValue == static_cast<unsigned long long>(std::max(link.m_llPlus, 0LL)))
        return SC_next;
    return stopAt(link.m_eKind == LK_size ? PF_size : PF_count, link, number,
                  "The number is about a part that is not there");
}

E_Scan CScanner::compareSize(const tLink& link, const tNumber& number, const tMeasure& measure)
{
    const std::uint64_t size = measure.m_bEnded ? measure.m_ullEnd - measure.m_ullBegin : 0;
    const unsigned long long wanted = size / link.m_ullDivisor + static_cast<unsigned long long>(link.m_llPlus);
    if (size % link.m_ullDivisor == 0 && number.m_ullValue == wanted)
        return SC_next;
    return stopAt(PF_size, link, number, "The size does not agree with the part");
}

void CScanner::compareCheck(const tLink& link, const tNumber& number, const tMeasure& measure)
{
    if (!measure.m_bEnded)
        return;
    const tPart& leaf = part4(link.m_tNumber.m_uiPart);
    const tChecked checked{bytes(measure.m_ullBegin, measure.m_ullEnd - measure.m_ullBegin),
                           number.m_ullOffset - measure.m_ullBegin, number.m_ullLength};
    if (checksum4(static_cast<E_Checksum>(link.m_ucChecksum), leaf.m_tItem, checked) != number.m_ullValue)
        m_vFindings.push_back(makeFault(PF_checksum, link, number, nullptr));
}

/// A number was read, which the last entry of the trace shows.
E_Scan CScanner::onLink(unsigned int index)
{
    const tLink& link = m_tPlan.m_vLinks[index];
    const tTrace& last = m_vTrace.back();
    tScalar value;
    tNumber& number = m_vNumbers[index];
    number.m_bPresent = m_tKept.get(link.m_tNumber, value);
    number.m_ullValue = value.m_ullValue;
    number.m_ullOffset = last.m_ullOffset;
    number.m_ullLength = last.m_ullLength;
    number.m_ullRecord = m_bInRecord ? m_ullRecord : 0;
    number.m_ullRecordOffset = m_bInRecord ? m_ullRecordStart : last.m_ullOffset;
    if (!number.m_bPresent)
        return SC_next;
    if (link.m_uiBase != s_cuiNone)
    {
        constexpr std::uint64_t mostShown = 64;
        const std::string_view shown = bytes(last.m_ullOffset, std::min(last.m_ullLength, mostShown));
        m_vTotals[index].m_vNumbers.push_back({number, std::string(shown)});
        addElements(m_vTotals[index].m_vElements);
        return SC_next;
    }
    if (link.m_uiSpan == s_cuiNone)
        return SC_next;
    const tMeasure& measure = m_vMeasures[link.m_uiSpan];
    if (!link.m_bNumberFirst)
    {
        if (link.m_eKind == LK_size)
            return compareSize(link, number, measure);
        compareCheck(link, number, measure);
        return SC_next;
    }
    if (!link.m_bRules || !measure.m_bBegun || !m_tPlan.m_vSpans[link.m_uiSpan].m_bSizeInside)
        return SC_next;
    std::uint64_t size = 0;
    if (!size4Number(link, size))
        return stopAt(PF_size, link, number, "The number cannot be a size");
    return limitTo(link.m_uiSpan, size, true);
}

/// Every number that counts an array must agree with its elements.
E_Scan CScanner::compareCounts(unsigned int part, std::uint64_t count)
{
    for (const unsigned int i : m_tPlan.m_vLinks4Counted[part])
    {
        const tLink& link = m_tPlan.m_vLinks[i];
        tNumber& number = m_vNumbers[i];
        if (link.m_eKind != LK_count || !number.m_bPresent)
            continue;
        number.m_bPresent = false;
        if (number.m_ullValue != count + static_cast<unsigned long long>(link.m_llPlus))
            return stopAt(PF_count, link, number, "The count does not agree with the elements");
    }
    return SC_next;
}

/// A leaf was read that totals count.
void CScanner::count(unsigned int part, unsigned long long amount)
{
    for (const unsigned int i : m_tPlan.m_vLinks4Counted[part])
    {
        if (m_tPlan.m_vLinks[i].m_eKind == LK_sum)
            m_vTotals[i].m_ullSum = addToTotal(total4Item(m_tPlan, m_tPlan.m_vLinks[i]), m_vTotals[i].m_ullSum, amount);
    }
}

E_Scan CScanner::onTotal(unsigned int part)
{
    for (const unsigned int i : m_tPlan.m_vLinks4Base[part])
    {
        const tLink& link = m_tPlan.m_vLinks[i];
        if (link.m_uiBase == s_cuiNone)
        {
            if (const E_Scan result = link.m_eKind == LK_bits ? checkBits(i) : compareAbsent(i))
                return result;
            continue;
        }
        compareTotal(link, m_vTotals[i]);
    }
    return SC_next;
}

void CScanner::compareTotal(const tLink& link, tTotal& total)
{
    const unsigned long long sum =
        addToTotal(total4Item(m_tPlan, link), total.m_ullSum, static_cast<unsigned long long>(link.m_llPlus));
    const std::size_t arrays = total.m_vNumbers.empty() ? 0 : total.m_vElements.size() / total.m_vNumbers.size();
    auto elements = total.m_vElements.begin();
    for (const tTotalNumber& number : total.m_vNumbers)
    {
        const auto first = elements;
        elements += static_cast<std::ptrdiff_t>(arrays);
        if (number.m_tNumber.m_ullValue == sum || total.m_bUnknown)
            continue;
        m_vFindings.push_back(makeFault(PF_total, link, number.m_tNumber, nullptr));
        m_vFindings.back().m_vElements.assign(first, elements);
        m_vFindings.back().m_strBytes = number.m_strBytes;
    }
    total.m_vElements.clear();
    total.m_vNumbers.clear();
    total.m_ullSum = 0;
    total.m_bUnknown = false;
}

/// Every bit that is set must have its part.
E_Scan CScanner::checkBits(unsigned int index)
{
    const tLink& link = m_tPlan.m_vLinks[index];
    tScalar bitmap;
    if (!m_tKept.get(link.m_tNumber, bitmap))
        return SC_next;
    const tNumber& number = m_vNumbers[index];
    std::vector<bool> known(bitmap.m_strvText.size() * 8);
    for (const unsigned int member : part4(link.m_uiTarget).m_vMembers)
    {
        const tPart& part = part4(member);
        if (part.m_uiBitmap == index && part.m_uiBit < known.size())
            known[part.m_uiBit] = true;
    }
    for (unsigned int bit = 0; bit < known.size(); ++bit)
    {
        if (!known[bit] && m_tKept.hasBit(link.m_tNumber, bit))
            return stopAt(PF_bit, link, number);
    }
    return SC_next;
}

E_Scan CScanner::onAlign(unsigned int part)
{
    const tPart& aligned = part4(part);
    const std::uint64_t skipped = skipTo(aligned.m_uiAlign, m_ullPos - m_ullRecordStart);
    if (!has(skipped))
        return lack(part, skipped);
    const std::string& fill = aligned.m_strAlignFill;
    for (std::uint64_t i = 0; i < skipped; ++i)
    {
        const char wanted = fill.empty() ? '\0' : fill[static_cast<std::size_t>(i % fill.size())];
        if (*at(m_ullPos + i) != wanted)
            return stop(PF_skipped, part, m_ullPos + i, 1);
    }
    if (skipped != 0)
        add(TR_skip, part, m_ullPos, skipped);
    m_ullPos += skipped;
    m_ullSearched = m_ullPos;
    return SC_next;
}

}  // namespace murv::detail

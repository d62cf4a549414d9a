// layout/run/scan_structure.cpp - arrays, alternatives, parts that may be absent, parts between marks.
#include <algorithm>
#include <cstring>

#include "layout/run/scanner.h"

namespace murv::detail
{

E_Scan CScanner::onArray(unsigned int part)
{
    const tPart& array = part4(part);
    tLoop loop;
    if (array.m_eArrayEnd == AE_count)
    {
        unsigned long long number = 0;
        const tLink& link = m_tPlan.m_vLinks[array.m_uiCount];
        if (m_tKept.getNumber(link.m_tNumber, number))
        {
            const long long plus = link.m_llPlus;
            loop.m_ullWanted = number - static_cast<unsigned long long>(plus);
            if (plus > 0 && number < static_cast<unsigned long long>(plus))
                return stop(PF_count, part, m_ullPos, 0, "The count is less than what it always includes");
            if (plus < 0 && loop.m_ullWanted < number)
                return stop(PF_count, part, m_ullPos, 0, "The count is more than any array has");
        }
    }
    m_vLoops.push_back(loop);
    add(TR_array, part, m_ullPos);
    return SC_next;
}

/// Whether nothing is left in the enclosing part.
E_Scan CScanner::isAtEnd(unsigned int part, bool& atEnd)
{
    const std::uint64_t end = m_vLimits.back().m_ullEnd;
    if (isOutside())
    {
        bool any = false;
        const E_Scan result = lookAhead(part, any);
        atEnd = !any;
        return result;
    }
    if (m_ullPos == m_ullEdge && m_ullEdge != end)
        return more(part, 1);
    atEnd = m_ullPos >= end;
    return SC_next;
}

/// Opens the frame of the next record, where records have frames. `any`: whether there is anything to look at.
E_Scan CScanner::lookAhead(unsigned int part, bool& any)
{
    const E_Scan result = openFrame(part);
    any = m_bFrameOpen;
    return result;
}

/// Whether one of the heads begins `skip` bytes after the place.
E_Scan CScanner::matchHeads(const std::vector<tHead>& heads, std::uint64_t skip, unsigned int part, bool& matches)
{
    std::uint64_t begin = m_ullPos + skip;
    std::uint64_t edge = m_ullEdge;
    bool isEnded = m_ullEdge == m_vLimits.back().m_ullEnd;
    matches = false;
    if (isOutside())
    {
        bool any = false;
        if (const E_Scan result = lookAhead(part, any))
            return result;
        if (!any)
            return SC_next;
        begin = m_ullFrameBegin;
        edge = m_ullFrameEnd;
        isEnded = true;
    }
    for (const tHead& head : heads)
    {
        bool fits = true;
        for (const tHead::tBytes& wanted : head.m_vBytes)
        {
            const std::uint64_t from = begin + wanted.m_uiOffset;
            const std::uint64_t there =
                from < edge ? std::min<std::uint64_t>(edge - from, wanted.m_strBytes.size()) : 0;
            fits = fits && (there == 0 ||
                            std::memcmp(at(from), wanted.m_strBytes.data(), static_cast<std::size_t>(there)) == 0);
            if (fits && there < wanted.m_strBytes.size())
            {
                if (!isEnded)
                    return more(part, from + wanted.m_strBytes.size() - std::max(edge, from));
                fits = false;
            }
        }
        matches = matches || fits;
    }
    return SC_next;
}

/// Skips the mark between two elements.
E_Scan CScanner::skipElementMark(const tPart& array, unsigned int part, bool& there)
{
    const std::string& mark = array.m_strBetween;
    if (!has(mark.size()))
        return lack(part, mark.size());
    there = bytes(m_ullPos, mark.size()) == mark;
    if (!there)
        return stop(PF_leftOver, part, m_ullPos, 1,
                    "Neither the mark between elements nor the end of the array follows");
    m_ullPos += mark.size();
    m_ullSearched = m_ullPos;
    return SC_next;
}

/// Whether the head of an element is there.
E_Scan CScanner::beginsElement(const tPart& array, unsigned int part, bool& there)
{
    const tHeadTable& table = m_tPlan.m_vHeadTables[part];
    const bool isFramed = isOutside();
    const std::uint64_t at = (isFramed ? m_ullFrameBegin : m_ullPos) + table.m_uiOffset;
    if (table.m_vBegins.empty() || at >= (isFramed ? m_ullFrameEnd : m_ullEdge))
        return matchHeads(array.m_vHeads, 0, part, there);
    there = table.m_vBegins[static_cast<unsigned char>(*this->at(at))];
    return SC_next;
}

/// Whether another element follows.
E_Scan CScanner::nextIsThere(const tPart& array, unsigned int part, bool& there)
{
    tLoop& loop = m_vLoops.back();
    bool atEnd = false;
    switch (array.m_eArrayEnd)
    {
    case AE_count: there = loop.m_ullCount < loop.m_ullWanted; return SC_next;
    case AE_until: there = !loop.m_bLast; return SC_next;
    case AE_heads:
        if (const E_Scan result = isAtEnd(part, atEnd); result != SC_next || atEnd)
            return result;
        return beginsElement(array, part, there);
    case AE_mark:
    {
        bool ends = false;
        if (const E_Scan result = matchHeads(m_tPlan.m_vEnds4Array[part], 0, part, ends))
            return result;
        there = !ends;
        return SC_next;
    }
    case AE_enclosing: break;
    }
    if (const E_Scan result = isAtEnd(part, atEnd))
        return result;
    if (!atEnd && array.m_uiTail != 0 && m_vLimits.back().m_ullEnd == s_cullUnknown)
        return more(part, 1);
    there = !atEnd && !(array.m_uiTail != 0 && m_vLimits.back().m_ullEnd - m_ullPos <= array.m_uiTail);
    return SC_next;
}

E_Scan CScanner::onNext(const tStep& step)
{
    const tPart& array = part4(step.m_uiA);
    tLoop& loop = m_vLoops.back();
    bool there = false;
    if (const E_Scan result = nextIsThere(array, step.m_uiA, there))
        return result;
    if (!there)
    {
        if (array.m_eArrayEnd == AE_mark)
            m_ullPos += array.m_strEnds.size();
        m_uiStep = step.m_uiB;
        return SC_again;
    }
    if (!array.m_strBetween.empty() && loop.m_ullCount != 0)
    {
        if (const E_Scan result = skipElementMark(array, step.m_uiA, there))
            return result;
    }
    ++loop.m_ullCount;
    add(TR_element, step.m_uiA, m_ullPos);
    for (const unsigned int link : m_tPlan.m_vLinks4Counted[step.m_uiA])
    {
        if (m_tPlan.m_vLinks[link].m_eKind == LK_elements)
            ++m_vTotals[link].m_ullSum;
    }
    return SC_next;
}

E_Scan CScanner::onElement(const tStep& step)
{
    const tPart& array = part4(step.m_uiA);
    if (array.m_eArrayEnd == AE_until)
        m_vLoops.back().m_bLast = m_tKept.holds(array.m_tUntil);
    m_uiStep = step.m_uiB;
    return SC_again;
}

E_Scan CScanner::onArrayEnd(unsigned int part)
{
    if (const E_Scan result = compareCounts(part, m_vLoops.back().m_ullCount))
        return result;
    m_vLoops.pop_back();
    add(TR_arrayEnd, part, m_ullPos);
    return SC_next;
}

E_Scan CScanner::onReset(unsigned int index)
{
    const tReset& reset = m_tPlan.m_vResets[index];
    for (const unsigned int kept : reset.m_vRegisters)
        m_tKept.clear(kept);
    for (const unsigned int span : reset.m_vSpans)
        m_vMeasures[span] = tMeasure();
    for (const unsigned int link : reset.m_vLinks)
    {
        const E_Scan result = m_tPlan.m_vMayLack[link] ? compareAbsent(link) : SC_next;
        if (result != SC_next)
            return result;
        m_vNumbers[link] = tNumber();
    }
    return SC_next;
}

/// Whether a part that may be absent is there.
E_Scan CScanner::isThere(unsigned int part, bool& there)
{
    const tPart& asked = part4(part);
    there = m_tKept.holdAll(asked.m_vIf);
    if (there && asked.m_uiBitmap != s_cuiNone)
        there = m_tKept.hasBit(m_tPlan.m_vLinks[asked.m_uiBitmap].m_tNumber, asked.m_uiBit);
    if (!there || !asked.m_bOptional)
        return SC_next;
    std::uint64_t size = 0;
    if (asked.m_uiSize != s_cuiNone && size4Number(m_tPlan.m_vLinks[asked.m_uiSize], size) && size == 0)
    {
        there = false;
        return SC_next;
    }
    const tPart& set = part4(asked.m_uiParent);
    const bool isAfterMark = !set.m_strBetween.empty() && set.m_eKind == PK_set && !m_vFirst.back();
    const std::uint64_t skip = isAfterMark ? set.m_strBetween.size() : 0;
    if (!asked.m_vHeads.empty())
        return matchHeads(asked.m_vHeads, skip, part, there);
    bool atEnd = false;
    if (const E_Scan result = isAtEnd(part, atEnd))
        return result;
    there = !atEnd;
    return SC_next;
}

E_Scan CScanner::onWhen(const tStep& step)
{
    bool there = false;
    if (const E_Scan result = isThere(step.m_uiA, there))
        return result;
    m_uiStep = there ? m_uiStep + 1 : step.m_uiB;
    return SC_again;
}

E_Scan CScanner::choose4Heads(const tChoice& choice, unsigned int& member)
{
    const std::vector<unsigned int>& members = part4(choice.m_uiSet).m_vMembers;
    if (isOutside())
    {
        bool any = false;
        if (const E_Scan result = lookAhead(choice.m_uiSet, any))
            return result;
    }
    const std::uint64_t byte = (isOutside() && m_bFrameOpen ? m_ullFrameBegin : m_ullPos) + choice.m_uiOffset;
    if (!choice.m_vMember4Byte.empty() && byte < (isOutside() && m_bFrameOpen ? m_ullFrameEnd : m_ullEdge))
    {
        member = choice.m_vMember4Byte[static_cast<unsigned char>(*at(byte))];
        return SC_next;
    }
    for (unsigned int i = 0; i < members.size(); ++i)
    {
        bool matches = part4(members[i]).m_vHeads.empty();
        if (!matches)
        {
            if (const E_Scan result = matchHeads(part4(members[i]).m_vHeads, 0, choice.m_uiSet, matches))
                return result;
        }
        if (matches)
        {
            member = i;
            break;
        }
    }
    return SC_next;
}

E_Scan CScanner::choose4Value(const tChoice& choice, unsigned int& member)
{
    const tPart& set = part4(choice.m_uiSet);
    member = set.m_uiElse;
    tScalar value;
    if (!m_tKept.get(set.m_tChoice, value))
        return SC_next;
    const unsigned int named = namedMember(m_tPlan, set, value);
    member = named == s_cuiNone ? set.m_uiElse : named;
    return SC_next;
}

E_Scan CScanner::onChoose(unsigned int index)
{
    const tChoice& choice = m_tPlan.m_vChoices[index];
    unsigned int member = s_cuiNone;
    const bool byValue = part4(choice.m_uiSet).m_eChoice == CH_value;
    if (const E_Scan result = byValue ? choose4Value(choice, member) : choose4Heads(choice, member))
        return result;
    if (member == s_cuiNone)
    {
        bool atEnd = false;
        if (const E_Scan result = isAtEnd(choice.m_uiSet, atEnd))
            return result;
        const std::uint64_t begin = isOutside() && m_bFrameOpen ? m_ullFrameBegin : m_ullPos;
        const std::uint64_t edge = isOutside() && m_bFrameOpen ? m_ullFrameEnd : m_ullEdge;
        return atEnd && !byValue ? lack(choice.m_uiSet, 1)
                                 : stop(PF_choice, choice.m_uiSet, begin, std::min<std::uint64_t>(edge - begin, 16));
    }
    m_uiStep = choice.m_vSteps[member];
    return SC_again;
}

/// Before a part between marks: its mark, or nothing more.
E_Scan CScanner::onJoint(const tStep& step)
{
    const tPart& set = part4(part4(step.m_uiA).m_uiParent);
    const bool isFirst = m_vFirst.back();
    bool atEnd = false;
    m_vFirst.back() = false;
    if (isFirst && !isBetweenMarks(m_tPlan, set))
        return SC_next;
    if (const E_Scan result = isAtEnd(step.m_uiA, atEnd))
    {
        m_vFirst.back() = isFirst;
        return result;
    }
    if (atEnd)
    {
        for (unsigned int i = part4(step.m_uiA).m_uiIndex; i < set.m_vMembers.size(); ++i)
        {
            if (part4(set.m_vMembers[i]).m_bRequired)
                return stop(PF_missing, set.m_vMembers[i], m_ullPos, 0);
        }
        m_uiStep = step.m_uiB;
        return SC_again;
    }
    if (isFirst)
        return SC_next;
    const std::string& mark = set.m_strBetween;
    if (!has(mark.size()))
        return lack(step.m_uiA, mark.size());
    if (bytes(m_ullPos, mark.size()) != mark)
        return stop(PF_leftOver, step.m_uiA, m_ullPos, mark.size(), "The mark before this part is missing");
    m_ullPos += mark.size();
    m_ullSearched = m_ullPos;
    return SC_next;
}

/// A part between marks has the bytes up to the next mark, or to the end of the enclosing part.
E_Scan CScanner::onCut(unsigned int part)
{
    const std::string& mark = part4(part4(part).m_uiParent).m_strBetween;
    const std::string_view there = bytes(m_ullPos, m_ullEdge - m_ullPos);
    const std::size_t found = there.find(mark, searchedSoFar());
    if (found == std::string_view::npos && m_ullEdge != m_vLimits.back().m_ullEnd)
    {
        m_ullSearched = std::max(m_ullSearched, m_ullEdge - std::min<std::uint64_t>(there.size(), mark.size() - 1));
        return more(part, 1);
    }
    pushLimit(m_ullPos + std::min(found, there.size()), part);
    m_ullSearched = m_ullPos;
    return SC_next;
}

E_Scan CScanner::onUncut(unsigned int part)
{
    const std::uint64_t end = m_vLimits.back().m_ullEnd;
    if (m_ullPos != end)
        return stop(PF_leftOver, part, m_ullPos, end - m_ullPos, "Bytes are left before the next mark");
    popLimit();
    return SC_next;
}

}  // namespace murv::detail

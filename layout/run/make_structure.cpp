// layout/run/make_structure.cpp - field sets, arrays, alternatives and records while making: the data decides.
#include <algorithm>

#include "core/field_access.h"
#include "layout/plan/members.h"
#include "layout/run/maker.h"
#include "layout/run/totals.h"
#include "layout/values/value_codec.h"

namespace murv::detail
{

E_Scan CMaker::onOpen(const tStep& step)
{
    const unsigned int part = step.m_uiA;
    const tPart& set = part4(part);
    tCursor cursor;
    cursor.m_uiPart = part;
    cursor.m_pNode = find(part);
    if (cursor.m_pNode != nullptr && tFieldAccess::type(*cursor.m_pNode) != DT_fields)
        return stop(PF_type, part, "The data has another kind of value where the layout has a field set");
    if (!set.m_strBetween.empty())
    {
        m_vMarks.push_back(&set.m_strBetween);
        // No bytes at all are a part between marks without members, and otherwise the first part without any.
        cursor.m_uiLast = isBetweenMarks(m_tPlan, set) ? 0 : 1;
        for (unsigned int i = 0; i < set.m_vMembers.size(); ++i)
        {
            if (part4(set.m_vMembers[i]).m_bRequired)
                cursor.m_uiLast = i + 1;
        }
        for (unsigned int i = 0; cursor.m_pNode != nullptr && i < cursor.m_pNode->getChildCount(); ++i)
        {
            const unsigned int member = findMember(set, (*cursor.m_pNode)[i]);
            cursor.m_uiLast = std::max(cursor.m_uiLast, member == s_cuiNone ? 0 : member + 1);
        }
    }
    if (cursor.m_pNode != nullptr)
        cursor.m_tNext = CMemberCursor(tFieldAccess::members(*cursor.m_pNode));
    m_vCursors.push_back(cursor);
    add(TR_open, part, m_pOut->size());
    if (step.m_uiB == s_cuiNone || cursor.m_pNode == nullptr || cursor.m_pNode->getChildCount() != 0)
        return SC_next;
    m_uiStep = step.m_uiB;
    return SC_again;
}

E_Scan CMaker::onClose(unsigned int part)
{
    const tCursor cursor = m_vCursors.back();
    if (cursor.m_pNode != nullptr && cursor.m_uiMatched != cursor.m_pNode->getChildCount())
        return refuseMembers(cursor);
    m_vCursors.pop_back();
    if (!part4(part).m_strBetween.empty())
        m_vMarks.pop_back();
    add(TR_close, part, m_pOut->size());
    return SC_next;
}

/// The member of a field set that a member of the data is for, or none.
unsigned int CMaker::findMember(const tPart& set, const CFields& member) const
{
    const std::string_view name = tFieldAccess::name(member);
    return name.empty() ? detail::findMember(m_tPlan, set, tFieldAccess::id(member) + 0ULL)
                        : detail::findMember(m_tPlan, set, name);
}

/// Says which member of the data was not used, and why.
E_Scan CMaker::refuseMembers(const tCursor& cursor)
{
    const tPart& set = part4(cursor.m_uiPart);
    std::vector<bool> seen(set.m_vMembers.size());
    for (unsigned int i = 0; i < cursor.m_pNode->getChildCount(); ++i)
    {
        const CFields& member = (*cursor.m_pNode)[i];
        const unsigned int found = findMember(set, member);
        if (found == s_cuiNone)
        {
            m_strUnknown.assign(tFieldAccess::name(member));
            return stop(PF_unknown, cursor.m_uiPart);
        }
        if (seen[found])
            return stop(PF_repeated, set.m_vMembers[found]);
        seen[found] = true;
    }
    return stop(PF_unwanted, cursor.m_uiPart);
}

E_Scan CMaker::onArray(unsigned int part)
{
    const tPart& array = part4(part);
    tCursor cursor;
    cursor.m_uiPart = part;
    cursor.m_pNode = find(part);
    if (cursor.m_pNode != nullptr && tFieldAccess::type(*cursor.m_pNode) != DT_array)
        return stop(PF_type, part, "The data has another kind of value where the layout has an array");
    if (array.m_eArrayEnd == AE_until && (cursor.m_pNode == nullptr || cursor.m_pNode->getChildCount() == 0))
        return stop(PF_missing, part, "The array needs a last element");
    if (!array.m_strBetween.empty())
        m_vMarks.push_back(&array.m_strBetween);
    if (cursor.m_pNode != nullptr)
        cursor.m_tNext = CMemberCursor(tFieldAccess::members(*cursor.m_pNode));
    m_vCursors.push_back(cursor);
    add(TR_array, part, m_pOut->size());
    return SC_next;
}

E_Scan CMaker::onNext(const tStep& step)
{
    const tPart& array = part4(step.m_uiA);
    tCursor& cursor = m_vCursors.back();
    m_uiFound = s_cuiNone;
    if (cursor.m_tNext.take() == nullptr)
    {
        if (array.m_eArrayEnd == AE_mark)
            m_pOut->append(array.m_strEnds);
        m_uiStep = step.m_uiB;
        return SC_again;
    }
    if (cursor.m_ullCount != 0)
        m_pOut->append(array.m_strBetween);
    ++cursor.m_ullCount;
    add(TR_element, step.m_uiA, m_pOut->size());
    for (const unsigned int link : m_tPlan.m_vLinks4Counted[step.m_uiA])
    {
        if (m_tPlan.m_vLinks[link].m_eKind == LK_elements)
            ++m_vTotals[link].m_ullSum;
    }
    return SC_next;
}

E_Scan CMaker::onElement(const tStep& step)
{
    const tPart& array = part4(step.m_uiA);
    const tCursor& cursor = m_vCursors.back();
    const bool isLast = cursor.m_ullCount == cursor.m_pNode->getChildCount();
    // What is filled in later cannot be judged yet; reading the packet again will do it.
    if (array.m_eArrayEnd == AE_until && !isMeant(array.m_tUntil) && m_tKept.holds(array.m_tUntil) != isLast)
        return stop(PF_count, step.m_uiA,
                    isLast ? "The last element is not the one that ends the array"
                           : "An element before the last one ends the array");
    m_uiStep = step.m_uiB;
    return SC_again;
}

E_Scan CMaker::onArrayEnd(unsigned int part)
{
    const std::uint64_t count = m_vCursors.back().m_ullCount;
    for (const unsigned int i : m_tPlan.m_vLinks4Counted[part])
    {
        const tLink& link = m_tPlan.m_vLinks[i];
        if (link.m_eKind != LK_count || m_vHole4Link[i] == s_cuiNone)
            continue;
        const std::uint64_t number = count + static_cast<std::uint64_t>(link.m_llPlus);
        if (number >> 63 != 0)
            return stopAtHole(PF_count, m_vHole4Link[i], "The array has fewer elements than this number can say");
        if (const E_Scan result = setNumber(link, m_vHole4Link[i], number))
            return result;
        if (const E_Scan result = fillForCallbacks(m_vHole4Link[i]))
            return result;
    }
    m_vCursors.pop_back();
    if (!part4(part).m_strBetween.empty())
        m_vMarks.pop_back();
    add(TR_arrayEnd, part, m_pOut->size());
    return SC_next;
}

/// Whether a condition can be judged while making: not when its value is filled in only later.
bool CMaker::isMeant(const tTest& test) const
{
    return isComputed(m_tPlan, test.m_tValue);
}

/// Whether the data has one of the parts whose bits are in a bitmap.
bool CMaker::hasBitOf(unsigned int link) const
{
    const tCursor& cursor = m_vCursors.back();
    const tPart& set = part4(cursor.m_uiPart);
    for (unsigned int i = 0; cursor.m_pNode != nullptr && i < cursor.m_pNode->getChildCount(); ++i)
    {
        const unsigned int member = findMember(set, (*cursor.m_pNode)[i]);
        if (member != s_cuiNone && part4(set.m_vMembers[member]).m_uiBitmap == link)
            return true;
    }
    return false;
}

E_Scan CMaker::onWhen(const tStep& step)
{
    const tPart& part = part4(step.m_uiA);
    const CFields* const node = find(step.m_uiA);
    bool there = std::all_of(part.m_vIf.begin(), part.m_vIf.end(),
                             [&](const tTest& test) { return isMeant(test) ? node != nullptr : m_tKept.holds(test); });
    if (!there && node != nullptr)
        return stop(PF_unwanted, step.m_uiA);
    if (part.m_bOptional)
        there = there && node != nullptr;
    if (part.m_uiBitmap != s_cuiNone)
    {
        there = there && node != nullptr;
        for (const unsigned int link : m_tPlan.m_vLinks4Number[step.m_uiA])
            there = there || (m_tPlan.m_vLinks[link].m_eKind == LK_bits && hasBitOf(link));
        if (there)
        {
            if (const E_Scan result = setBit(part.m_uiBitmap, part.m_uiBit))
                return result;
        }
    }
    m_uiStep = there ? m_uiStep + 1 : step.m_uiB;
    return SC_again;
}

E_Scan CMaker::onChoose(unsigned int index)
{
    const tChoice& choice = m_tPlan.m_vChoices[index];
    const tPart& set = part4(choice.m_uiSet);
    const CFields* const node = m_vCursors.back().m_pNode;
    if (node == nullptr || node->getChildCount() != 1)
        return stop(PF_choice, choice.m_uiSet, "The data must have exactly one of the alternatives");
    const unsigned int member = findMember(set, (*node)[0U]);
    if (member == s_cuiNone)
        return refuseMembers(m_vCursors.back());
    if (set.m_eChoice == CH_value)
    {
        if (const E_Scan result = agreeWithChoice(set, member))
            return result;
    }
    m_uiStep = choice.m_vSteps[member];
    return SC_again;
}

/// The value that chooses must name the alternative that the data has; when the data lacks the value it is filled in.
E_Scan CMaker::agreeWithChoice(const tPart& set, unsigned int member)
{
    const tPart& chosen = part4(set.m_vMembers[member]);
    const unsigned int hole = m_vHole4Part.empty() ? s_cuiNone : m_vHole4Part[set.m_tChoice.m_uiPart];
    if (hole != s_cuiNone && member != set.m_uiElse)
    {
        tHole& open = m_vHoles[hole];
        const bool byID = chosen.m_uiID != 0 && part4(open.m_uiPart).m_tItem.m_eForm > IF_hexText &&
                          !part4(open.m_uiPart).m_tItem.m_bExact;
        if (set.m_tChoice.m_uiBits != s_cuiNone)
        {
            tLink bits;
            bits.m_tNumber = set.m_tChoice;
            const E_Scan result = setNumber(bits, hole, chosen.m_uiID);
            return result == SC_next ? fillForCallbacks(hole) : result;
        }
        open.m_strText = byID ? std::string() : chosen.m_strName;
        open.m_tValue = makeScalar(false, byID ? chosen.m_uiID : 0);
        return fillForCallbacks(hole);
    }
    tScalar value;
    bool names = false;
    if (m_tKept.get(set.m_tChoice, value))
    {
        const unsigned int found = namedMember(m_tPlan, set, value);
        names = found == member || (found == s_cuiNone && member == set.m_uiElse);
    }
    else
        names = member == set.m_uiElse;
    return names ? SC_next
                 : stop(PF_choice, set.m_vMembers[member], "The value that chooses names another alternative");
}

/// Before a part between marks: the mark, as long as parts are to come.
E_Scan CMaker::onJoint(const tStep& step)
{
    tCursor& cursor = m_vCursors.back();
    const tPart& set = part4(cursor.m_uiPart);
    if (part4(step.m_uiA).m_uiIndex >= cursor.m_uiLast)
    {
        m_uiStep = step.m_uiB;
        return SC_again;
    }
    if (!cursor.m_bFirst)
        m_pOut->append(set.m_strBetween);
    cursor.m_bFirst = false;
    return SC_next;
}

E_Scan CMaker::onAlign(unsigned int part)
{
    const tPart& aligned = part4(part);
    const std::uint64_t skipped = skipTo(aligned.m_uiAlign, m_pOut->size() - m_ullRecordStart);
    const std::string& fill = aligned.m_strAlignFill;
    if (skipped != 0)
        add(TR_skip, part, m_pOut->size(), skipped);
    for (std::uint64_t i = 0; i < skipped; ++i)
        m_pOut->push_back(fill.empty() ? '\0' : fill[static_cast<std::size_t>(i % fill.size())]);
    return SC_next;
}

E_Scan CMaker::onRecord(unsigned int part)
{
    m_ullFrameStart = m_pOut->size();
    if (m_tPlan.m_tFrame.m_eKind == FR_prefixed)
        m_pOut->append(m_tPlan.m_tFrame.m_tPrefix.m_uiLength, '\0');
    m_ullRecordStart = m_pOut->size();
    m_strShown.clear();
    m_bInRecord = true;
    ++m_ullRecord;
    add(TR_record, part, m_pOut->size());
    for (const unsigned int link : m_tPlan.m_vLinks4Counted[part])
    {
        if (m_tPlan.m_vLinks[link].m_eKind == LK_records)
            ++m_vTotals[link].m_ullSum;
    }
    return SC_next;
}

E_Scan CMaker::onRecordEnd(unsigned int part)
{
    const tFrame& frame = m_tPlan.m_tFrame;
    const std::uint64_t length = m_pOut->size() - m_ullRecordStart;
    if (frame.m_uiLength != 0 && frame.m_eKind != FR_prefixed && length != frame.m_uiLength)
        return stop(PF_frame, part, "The record has another length than records of this layout", length);
    if (frame.m_eKind == FR_lines)
        m_pOut->append(m_tOptions.m_bReturns ? "\r\n" : "\n");
    else if (frame.m_eKind == FR_mark)
        m_pOut->append(frame.m_strMark);
    else if (frame.m_eKind == FR_prefixed)
    {
        m_strValue.clear();
        const tScalar number = makeScalar(false, length + static_cast<unsigned long long>(frame.m_llPlus));
        if (makeValue(frame.m_tPrefix, number, m_strValue) != PF_none)
            return stop(PF_frame, part, "The record is too long for the length before it", length);
        m_pOut->replace(static_cast<std::size_t>(m_ullFrameStart), m_strValue.size(), m_strValue);
    }
    m_bInRecord = false;
    add(TR_recordEnd, part, m_pOut->size());
    return SC_next;
}

}  // namespace murv::detail

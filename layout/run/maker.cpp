// layout/run/maker.cpp - running the steps while making; values.
#include "layout/run/maker.h"

#include <algorithm>

#include "core/field_access.h"
#include "layout/run/data_value.h"
#include "layout/values/loss_words.h"
#include "layout/values/value_codec.h"
#include "packet/time_value.h"

namespace murv::detail
{

namespace
{

constexpr unsigned int s_cuiMostPasses = 1000;  // more than layouts nest

bool holdsAny(std::string_view bytes, const std::vector<std::string>& marks)
{
    return std::any_of(marks.begin(), marks.end(),
                       [bytes](const std::string& mark) { return bytes.find(mark) != std::string_view::npos; });
}

}  // namespace

CMaker::CMaker(const tPlan& plan) : m_tPlan(plan), m_tKept(plan), m_tScanner(plan)
{
}

void CMaker::begin()
{
    m_pOut->clear();
    m_uiStep = 0;
    m_vCursors.clear();
    m_vMarks.clear();
    if (m_tPlan.m_tFrame.m_eKind == FR_mark)
        m_vMarks.push_back(&m_tPlan.m_tFrame.m_strMark);
    m_tKept.clearAll();
    if (!m_tPlan.m_vLinks.empty() || !m_tPlan.m_vChoices.empty())
        beginNumbers();
    m_vTrace.clear();
    m_vFindings.clear();
    m_strUnknown.clear();
    m_strShown.clear();
    m_ullRecord = m_ullRecordStart = m_ullFrameStart = 0;
    m_uiFound = s_cuiNone;
    m_bInRecord = m_bMoved = false;
}

void CMaker::beginNumbers()
{
    m_vHoles.clear();
    m_vHoleElements.clear();
    m_vHole4Link.assign(m_tPlan.m_vLinks.size(), s_cuiNone);
    m_vHole4Part.assign(m_tPlan.m_vParts.size(), s_cuiNone);
    m_vMeasures.assign(m_tPlan.m_vSpans.size(), tMeasure());
    m_vTotals.assign(m_tPlan.m_vLinks.size(), tTotal());
    m_vOpenTotals.clear();
    m_vOpenChecks.clear();
}

bool CMaker::make(const CFields& tree, const tMakeOptions& options, std::string& out)
{
    m_tOptions = options;
    m_pOut = &out;
    return makePasses(tree, 0, ST_done) && (m_tPlan.m_bSelfEvident || verify());
}

/// Makes everything again until no number needs another width than was guessed.
bool CMaker::makePasses(const CFields& tree, unsigned int from, E_Step last)
{
    m_vGuesses.clear();
    for (unsigned int pass = 0; pass < s_cuiMostPasses; ++pass)
    {
        begin();
        if (!makeOnce(tree, from, last))
            return false;
        if (!m_bMoved)
            return true;
        m_vGuesses.swap(m_vHoles);
    }
    stop(PF_ambiguous, 0, "The widths of numbers depend on each other without end");
    return false;
}

bool CMaker::makeRecord(unsigned int part, const CFields& record, const tMakeOptions& options, std::string& out)
{
    m_tOptions = options;
    m_pOut = &out;
    m_uiAlone = part;
    const bool isMade = makePasses(record, m_tPlan.m_vStep4Record[part], ST_recordEnd);
    m_uiAlone = s_cuiNone;
    return isMade;
}

/// Whether a number is filled in: one about other records is not when its record is made alone.
bool CMaker::isFilledIn(unsigned int part) const
{
    if (m_uiAlone == s_cuiNone)
        return true;
    const unsigned int after = part4(m_uiAlone).m_uiAfter;
    const auto isInside = [&](unsigned int other) { return other >= m_uiAlone && other < after; };
    return std::all_of(m_tPlan.m_vLinks4Number[part].begin(), m_tPlan.m_vLinks4Number[part].end(), [&](unsigned int i) {
        const tLink& link = m_tPlan.m_vLinks[i];
        const unsigned int about = link.m_uiSpan != s_cuiNone   ? m_tPlan.m_vSpans[link.m_uiSpan].m_uiFirst
                                   : link.m_uiBase != s_cuiNone ? link.m_uiBase
                                                                : link.m_uiTarget;
        return isInside(about);
    });
}

bool CMaker::makeOnce(const CFields& tree, unsigned int from, E_Step last)
{
    m_pRoot = &tree;
    m_uiStep = from;
    for (;;)
    {
        const bool isLast = m_tPlan.m_vSteps[m_uiStep].m_eStep == last;
        const E_Scan result = step(m_tPlan.m_vSteps[m_uiStep]);
        if (result == SC_fault)
            return false;
        if (isLast)
            break;
        m_uiStep += result == SC_next ? 1 : 0;
    }
    dropLastMark();
    if (m_vHoles.empty())
        return true;
    return fillTotals() == SC_next && fillHoles() == SC_next && fillChecks() == SC_next && testHoles() == SC_next &&
           agree() == SC_next;
}

/// Leaves the last record without its mark, when that is wanted.
void CMaker::dropLastMark()
{
    const tFrame& frame = m_tPlan.m_tFrame;
    const bool isMarked = frame.m_eKind == FR_lines || frame.m_eKind == FR_mark;
    if (!m_tOptions.m_bOpenEnd || !isMarked || m_pOut->empty() || m_uiAlone != s_cuiNone)
        return;
    const std::size_t end = m_pOut->size();
    const std::size_t mark = frame.m_eKind == FR_mark ? frame.m_strMark.size() : m_tOptions.m_bReturns ? 2 : 1;
    m_pOut->resize(end - mark);
    for (auto trace = m_vTrace.rbegin(); trace != m_vTrace.rend() && trace->m_ullOffset == end; ++trace)
        trace->m_ullOffset = m_pOut->size();
}

E_Scan CMaker::step(const tStep& step)
{
    switch (step.m_eStep)
    {
    case ST_run: return onRun(step.m_uiA);
    case ST_item: return makeLeaf(step.m_uiA);
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
    case ST_span: m_vMeasures[step.m_uiA] = {false, m_pOut->size(), 0}; return SC_next;
    case ST_spanEnd: return onSpanEnd(step.m_uiA);
    case ST_align: return onAlign(step.m_uiA);
    case ST_link: return onLink(step.m_uiA);
    case ST_total: return onTotal(step.m_uiA);
    case ST_reset: return onReset(step.m_uiA);
    case ST_record: return onRecord(step.m_uiA);
    case ST_recordEnd: return onRecordEnd(step.m_uiA);
    case ST_ask:
    case ST_cut:
    case ST_uncut: return SC_next;
    case ST_done: break;
    }
    return SC_done;
}

/// Whether a member of the data is for a part: by name, or by ID when it has no name.
static bool isFor(const CFields& member, const tPart& part)
{
    if (tFieldAccess::name(member).empty())
        return part.m_uiID != 0 && tFieldAccess::id(member) == part.m_uiID;
    return tFieldAccess::isNamed(member, part.m_strName.data(), static_cast<unsigned int>(part.m_strName.size()));
}

/// The member of the data for a part, or null. Members mostly stand in the order of the layout.
const CFields* CMaker::find(unsigned int part)
{
    if (part == m_uiFound)
        return m_pFound;
    m_uiFound = part;
    m_pFound = nullptr;
    if (m_vCursors.empty())
        return m_pFound = m_pRoot;
    tCursor& cursor = m_vCursors.back();
    if (cursor.m_pNode == nullptr)
        return nullptr;
    if (part4(cursor.m_uiPart).m_eKind == PK_array)
        return m_pFound = &cursor.m_tNext.taken();
    if (cursor.m_tNext.hasNext() && isFor(cursor.m_tNext.next(), part4(part)))
        m_pFound = cursor.m_tNext.take();
    else
        m_pFound = findOutOfOrder(cursor, part4(part));
    cursor.m_uiMatched += m_pFound != nullptr ? 1 : 0;
    return m_pFound;
}

const CFields* CMaker::findOutOfOrder(tCursor& cursor, const tPart& wanted) const
{
    if (cursor.m_uiMatched == cursor.m_pNode->getChildCount())
        return nullptr;
    const auto length = static_cast<unsigned int>(wanted.m_strName.size());
    const CFields* const named = length == 0 ? nullptr : cursor.m_pNode->findChildAt(wanted.m_strName.data(), length);
    if (named != nullptr || wanted.m_uiID == 0)
        return named;
    for (CMemberCursor members(tFieldAccess::members(*cursor.m_pNode)); const CFields* const member = members.take();)
    {
        if (isFor(*member, wanted))
            return member;
    }
    return nullptr;
}

E_Scan CMaker::makeLeaf(unsigned int part)
{
    const tPart& leaf = part4(part);
    const CFields* const node = leaf.m_bShown ? find(part) : nullptr;
    if (leaf.m_bLiteral)
        return makeLiteral(part, node);
    if (leaf.m_bAsks)
    {
        if (m_tPlan.m_vChooses[part])
            m_vHole4Part[part] = s_cuiNone;
        return makeAsked(part, node);
    }
    if ((leaf.m_bOpen && isFilledIn(part)) || (m_tPlan.m_vChooses[part] && node == nullptr))
        return makeHole(part);
    if (m_tPlan.m_vChooses[part])
        m_vHole4Part[part] = s_cuiNone;
    return makeValue4Leaf(part, node);
}

E_Scan CMaker::makeLiteral(unsigned int part, const CFields* node)
{
    const tPart& leaf = part4(part);
    const std::size_t begin = m_pOut->size();
    if (node != nullptr)
    {
        if (const E_Scan result = makeValue4Leaf(part, node))
            return result;
        if (m_pOut->compare(begin, std::string::npos, leaf.m_strLiteral) != 0)
            return stop(PF_literal, part, nullptr, m_pOut->size() - begin);
        return SC_next;
    }
    m_pOut->append(leaf.m_strLiteral);
    const std::size_t at = begin + leaf.m_tItem.m_ucPrefix;
    const std::size_t mark = leaf.m_eEnd == LE_mark ? leaf.m_vMarks.front().size() : 0;
    const std::size_t length = m_pOut->size() - at - mark;
    if (leaf.m_eEnd != LE_fixed)
        add(TR_item, part, at, length);
    return keep(part, {m_pOut->data() + at, length});
}

E_Scan CMaker::makeValue4Leaf(unsigned int part, const CFields* node)
{
    const tPart& leaf = part4(part);
    tScalar value;
    if (m_tOptions.m_bNow && leaf.m_tItem.m_pTime != nullptr && !leaf.m_tItem.m_bKeep)
        value = makeScalar(false, makeTimeValue(*leaf.m_tItem.m_pTime, readClock()));
    else if (node != nullptr)
    {
        if (const E_Scan result = takeScalar(part, *node, value))
            return result;
    }
    else if (leaf.m_bRequired || leaf.m_bOpen)
        return stop(PF_missing, part);
    else
        return putTested(part, defaultOf(leaf), true);
    return putTested(part, value, false);
}

/// Appends the item of a value that must be one of the valid ones.
E_Scan CMaker::putTested(unsigned int part, const tScalar& value, bool isOwn)
{
    const std::size_t begin = m_pOut->size();
    const E_Scan result = putValue(part, value, isOwn);
    if (result != SC_next || !part4(part).m_tItem.m_bTested)
        return result;
    unsigned int bits = s_cuiNone;
    return isValid(part, value, bits) ? SC_next : stop(PF_invalid, part, nullptr, m_pOut->size() - begin, bits);
}

/// Appends prefix and bytes of a value. The layout's own value may be padded where data may not.
E_PacketFault CMaker::appendValue(const tPart& leaf, const tScalar& value, bool isOwn, std::size_t& length)
{
    const auto make = isOwn ? makeOwnValue : makeValue;
    std::string& out = *m_pOut;
    const std::size_t begin = out.size();
    if (leaf.m_eEnd != LE_prefix)
    {
        const E_PacketFault fault = make(leaf.m_tItem, value, out);
        length = out.size() - begin;
        return fault;
    }
    m_strValue.clear();
    const E_PacketFault fault = make(leaf.m_tItem, value, m_strValue);
    length = m_strValue.size();
    if (fault != PF_none && !isFinding(fault))
        return fault;
    const E_PacketFault tooLong = makePrefix(leaf.m_tItem, length, out);
    out.append(m_strValue);
    return tooLong == PF_none ? fault : tooLong;
}

/// Appends the item of a value: prefix, bytes, mark.
E_Scan CMaker::putValue(unsigned int part, const tScalar& value, bool isOwn)
{
    const tPart& leaf = part4(part);
    std::string& out = *m_pOut;
    const std::size_t begin = out.size();
    std::size_t length = 0;
    const E_PacketFault fault = appendValue(leaf, value, isOwn, length);
    if (fault != PF_none && !isFinding(fault))
        return stopAtValue(fault, part, value);
    const std::size_t at = out.size() - length;
    if (leaf.m_tItem.m_uiLength != 0 && length > leaf.m_tItem.m_uiLength)
        return stop(PF_tooLong, part);
    if (fault != PF_none)
    {
        stop(fault, part, nullptr, length);
        m_vFindings.push_back(m_tFault);
    }
    if (leaf.m_eEnd != LE_fixed)
    {
        const std::string_view bytes = std::string_view(out).substr(begin);
        if (holdsMark(bytes) || holdsAny(bytes, leaf.m_vMarks))
            return stop(PF_mark, part, nullptr, bytes.size());
        add(TR_item, part, at, length);
    }
    if (leaf.m_eEnd == LE_mark)
        out.append(leaf.m_vMarks.front());
    return keep(part, {out.data() + at, length});
}

/// Whether reading would end a part at a mark in these bytes: of a line, or of the parts around it.
bool CMaker::holdsMark(std::string_view bytes) const
{
    if (m_tPlan.m_tFrame.m_eKind == FR_lines && bytes.find('\n') != std::string_view::npos)
        return true;
    return std::any_of(m_vMarks.begin(), m_vMarks.end(),
                       [bytes](const std::string* mark) { return bytes.find(*mark) != std::string_view::npos; });
}

/// Keeps a value that others look at, in the form in which reading gives it.
E_Scan CMaker::keep(unsigned int part, std::string_view bytes)
{
    if (m_tPlan.m_vRegister4Part[part] == s_cuiNone)
        return SC_next;
    tScalar value;
    const E_PacketFault fault = readValue(part4(part).m_tItem, bytes, VO_unscaled, value, m_strScratch);
    if (fault != PF_none && !isFinding(fault))
        return stop(PF_lossy, part);
    m_tKept.set(part, value);
    if (!m_tPlan.m_vLinks4Counted[part].empty() && value.m_eType != DT_null)
        count(part, value.m_ullValue);
    return SC_next;
}

tElements CMaker::elements() const
{
    tElements elements;
    addElements(elements);
    return elements;
}

void CMaker::addElements(tElements& elements) const
{
    for (const tCursor& cursor : m_vCursors)
    {
        if (part4(cursor.m_uiPart).m_eKind == PK_array)
            elements.push_back(cursor.m_ullCount == 0 ? 0 : cursor.m_ullCount - 1);
    }
}

E_Scan CMaker::stopAtValue(E_PacketFault code, unsigned int part, const tScalar& value)
{
    return stop(code, part, code == PF_lossy ? explainLoss(part4(part).m_tItem, value) : nullptr);
}

E_Scan CMaker::stop(E_PacketFault code, unsigned int part, const char* text, std::uint64_t length, unsigned int bits)
{
    const std::uint64_t offset = m_pOut->size() - length;
    m_tFault = {
        code, part,      offset, length, 0, m_bInRecord ? m_ullRecord : 0, m_bInRecord ? m_ullRecordStart : offset,
        text, elements()};
    m_tFault.m_uiBits = bits;
    return SC_fault;
}

std::string_view CMaker::faultBytes() const
{
    const std::string_view out = *m_pOut;
    if (m_tFault.m_ullOffset > out.size())
        return {};
    return out.substr(static_cast<std::size_t>(m_tFault.m_ullOffset), static_cast<std::size_t>(m_tFault.m_ullLength));
}

}  // namespace murv::detail

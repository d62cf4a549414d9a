// layout/plan/steps.cpp - the steps of a plan, from its parts.
//
// Parts stand in the order of the packet, so one pass over them enters and leaves each; jumps are completed when their
// part is left.
#include <algorithm>

#include "layout/plan/head_tables.h"
#include "layout/plan/links.h"
#include "layout/plan/members.h"
#include "layout/plan/plan.h"
#include "layout/plan/runs.h"

namespace murv::detail
{

namespace
{

class CStepMaker
{
public:
    explicit CStepMaker(tPlan& plan)
        : m_tPlan(plan), m_vSpansFrom(plan.m_vParts.size()), m_vSpansTo(plan.m_vParts.size())
    {
        for (unsigned int span = 0; span < plan.m_vSpans.size(); ++span)
        {
            m_vSpansFrom[plan.m_vSpans[span].m_uiFirst].push_back(span);
            m_vSpansTo[plan.m_vSpans[span].m_uiLast].push_back(span);
        }
    }
    void make();

private:
    /// What must be completed when a part is left.
    struct tOpen
    {
        explicit tOpen(unsigned int part) : m_uiPart(part)
        {
        }
        unsigned int m_uiPart;
        unsigned int m_uiWhen = s_cuiNone;
        unsigned int m_uiBegin = s_cuiNone;  // ST_open
        unsigned int m_uiNext = s_cuiNone;
        unsigned int m_uiChoice = s_cuiNone;
        std::vector<unsigned int> m_vToEnd;  // jumps to the end of the part
    };

    void enter(unsigned int part);
    void leave();
    void enterLeaf(unsigned int part);
    void enterSet(tOpen& open);
    void enterArray(tOpen& open);
    void leaveBody(const tOpen& open);
    void addToRun(unsigned int part);
    bool isPlain(unsigned int part) const;
    void beginMember(tOpen& open);
    void beginSpans(unsigned int part);
    void endSpans(unsigned int part);
    void addReset(unsigned int element);
    unsigned int add(E_Step step, unsigned int a, unsigned int b = s_cuiNone);
    unsigned int here();
    bool isBetween(unsigned int part) const;
    bool isCut(unsigned int part) const;
    bool isMeasuredAlways(unsigned int part) const;
    void endAbsent(const tOpen& open);

    tPlan& m_tPlan;
    std::vector<std::vector<unsigned int>> m_vSpansFrom;  // by part
    std::vector<std::vector<unsigned int>> m_vSpansTo;
    std::vector<tOpen> m_vOpen;
    bool m_bRunOpen = false;
};

/// The place of the next step, which some jump has as its target; so no earlier run takes more items.
unsigned int CStepMaker::here()
{
    m_bRunOpen = false;
    return static_cast<unsigned int>(m_tPlan.m_vSteps.size());
}

unsigned int CStepMaker::add(E_Step step, unsigned int a, unsigned int b)
{
    const unsigned int place = here();
    m_tPlan.m_vSteps.push_back({step, a, b});
    return place;
}

bool CStepMaker::isBetween(unsigned int part) const
{
    return isBetweenMarks(m_tPlan, m_tPlan.m_vParts[part]);
}

/// An array with the mark of the field set around it takes all the parts that are left, so nothing ends it.
bool CStepMaker::isCut(unsigned int part) const
{
    const tPart& member = m_tPlan.m_vParts[part];
    return isBetween(part) &&
           (member.m_eKind != PK_array || member.m_strBetween != m_tPlan.m_vParts[member.m_uiParent].m_strBetween);
}

/// Whether rows of parts that begin or end with this one begin and end also when it is not there.
bool CStepMaker::isMeasuredAlways(unsigned int part) const
{
    const tPart& measured = m_tPlan.m_vParts[part];
    return mayBeAbsent(measured) && measured.m_bInRecord && !measured.m_bRecord && !isBetween(part);
}

/// Whether a leaf is nothing but its fixed number of bytes.
bool CStepMaker::isPlain(unsigned int part) const
{
    const tPart& leaf = m_tPlan.m_vParts[part];
    return leaf.m_eEnd == LE_fixed && !leaf.m_bAsks && leaf.m_uiAlign == 0 && !leaf.m_bRecord && !mayBeAbsent(leaf) &&
           !isBetween(part) && m_tPlan.m_vLinks4Number[part].empty() && m_vSpansFrom[part].empty() &&
           m_vSpansTo[part].empty();
}

void CStepMaker::addToRun(unsigned int part)
{
    if (!m_bRunOpen)
    {
        add(ST_run, static_cast<unsigned int>(m_tPlan.m_vRuns.size()));
        m_tPlan.m_vRuns.emplace_back();
        m_bRunOpen = true;
    }
    appendToRun(m_tPlan, static_cast<unsigned int>(m_tPlan.m_vRuns.size() - 1), part);
}

void CStepMaker::enterLeaf(unsigned int part)
{
    if (m_tPlan.m_vParts[part].m_bAsks)
        add(ST_ask, part);
    if (m_tPlan.m_vParts[part].m_eEnd == LE_fixed)
    {
        if (!isPlain(part))
            m_bRunOpen = false;
        addToRun(part);
    }
    else
        add(ST_item, part);
    for (const unsigned int link : m_tPlan.m_vLinks4Number[part])
        add(ST_link, link);
}

void CStepMaker::enterSet(tOpen& open)
{
    open.m_uiBegin = add(ST_open, open.m_uiPart);
    const tPart& set = m_tPlan.m_vParts[open.m_uiPart];
    if (set.m_eChoice == CH_none)
        return;
    open.m_uiChoice = static_cast<unsigned int>(m_tPlan.m_vChoices.size());
    add(ST_choose, open.m_uiChoice);
    tChoice& choice = m_tPlan.m_vChoices.emplace_back();
    choice.m_uiSet = open.m_uiPart;
    choice.m_vSteps.assign(set.m_vMembers.size(), s_cuiNone);
}

void CStepMaker::enterArray(tOpen& open)
{
    add(ST_array, open.m_uiPart);
    open.m_uiNext = add(ST_next, open.m_uiPart);
    addReset(m_tPlan.m_vParts[open.m_uiPart].m_vMembers.front());
}

/// Arrays in the element are left out: only their own elements look at what is in these.
void CStepMaker::addReset(unsigned int element)
{
    tReset reset;
    const unsigned int after = m_tPlan.m_vParts[element].m_uiAfter;
    for (unsigned int part = element; part < after; ++part)
    {
        reset.m_vSpans.insert(reset.m_vSpans.end(), m_vSpansFrom[part].begin(), m_vSpansFrom[part].end());
        if (m_tPlan.m_vParts[part].m_eKind == PK_array)
        {
            part = m_tPlan.m_vParts[part].m_uiAfter - 1;
            continue;
        }
        if (m_tPlan.m_vRegister4Part[part] != s_cuiNone)
            reset.m_vRegisters.push_back(m_tPlan.m_vRegister4Part[part]);
        reset.m_vLinks.insert(reset.m_vLinks.end(), m_tPlan.m_vLinks4Number[part].begin(),
                              m_tPlan.m_vLinks4Number[part].end());
    }
    if (reset.m_vRegisters.empty() && reset.m_vSpans.empty() && reset.m_vLinks.empty())
        return;
    add(ST_reset, static_cast<unsigned int>(m_tPlan.m_vResets.size()));
    m_tPlan.m_vResets.push_back(std::move(reset));
}

/// The outermost of several spans begins first and ends last.
void CStepMaker::beginSpans(unsigned int part)
{
    std::vector<unsigned int>& spans = m_vSpansFrom[part];
    std::sort(spans.begin(), spans.end(), [this](unsigned int a, unsigned int b) {
        return m_tPlan.m_vSpans[a].m_uiLast > m_tPlan.m_vSpans[b].m_uiLast;
    });
    for (const unsigned int span : spans)
        add(ST_span, span);
}

void CStepMaker::endSpans(unsigned int part)
{
    std::vector<unsigned int>& spans = m_vSpansTo[part];
    std::sort(spans.begin(), spans.end(), [this](unsigned int a, unsigned int b) {
        return m_tPlan.m_vSpans[a].m_uiFirst > m_tPlan.m_vSpans[b].m_uiFirst;
    });
    for (const unsigned int span : spans)
        add(ST_spanEnd, span);
}

/// What comes before a part because of the field set or array around it.
void CStepMaker::beginMember(tOpen& open)
{
    const tPart& part = m_tPlan.m_vParts[open.m_uiPart];
    if (!m_vOpen.empty() && m_vOpen.back().m_uiChoice != s_cuiNone)
        m_tPlan.m_vChoices[m_vOpen.back().m_uiChoice].m_vSteps[part.m_uiIndex] = here();
    if (isMeasuredAlways(open.m_uiPart))
        beginSpans(open.m_uiPart);
    if (mayBeAbsent(part))
        open.m_uiWhen = add(ST_when, open.m_uiPart);
    if (!isBetween(open.m_uiPart))
        return;
    if (m_tPlan.m_vParts[part.m_uiParent].m_eKind == PK_set)
        m_vOpen.back().m_vToEnd.push_back(add(ST_joint, open.m_uiPart));
    if (isCut(open.m_uiPart))
        add(ST_cut, open.m_uiPart);
}

void CStepMaker::enter(unsigned int part)
{
    tOpen open(part);
    const tPart& entered = m_tPlan.m_vParts[part];
    if (entered.m_eKind == PK_leaf && isPlain(part) && (m_vOpen.empty() || m_vOpen.back().m_uiChoice == s_cuiNone))
    {
        addToRun(part);
        m_vOpen.push_back(std::move(open));
        return;
    }
    beginMember(open);
    if (entered.m_bRecord)
        m_tPlan.m_vStep4Record[part] = add(ST_record, part);
    if (!isMeasuredAlways(part))
        beginSpans(part);
    switch (entered.m_eKind)
    {
    case PK_leaf: enterLeaf(part); break;
    case PK_set: enterSet(open); break;
    case PK_array: enterArray(open); break;
    }
    m_vOpen.push_back(std::move(open));
}

/// Ends what enterSet and enterArray began.
void CStepMaker::leaveBody(const tOpen& open)
{
    const tPart& part = m_tPlan.m_vParts[open.m_uiPart];
    if (part.m_eKind == PK_array)
        m_tPlan.m_vSteps[open.m_uiNext].m_uiB = add(ST_element, open.m_uiPart, open.m_uiNext) + 1;
    if (part.m_eKind == PK_leaf)
        return;
    const unsigned int end = add(part.m_eKind == PK_array ? ST_arrayEnd : ST_close, open.m_uiPart);
    for (const unsigned int jump : open.m_vToEnd)
        m_tPlan.m_vSteps[jump].m_uiB = end;
    // Between marks, a field set without bytes has no members.
    if (open.m_uiBegin != s_cuiNone && part.m_strBetween.empty() && isCut(open.m_uiPart))
        m_tPlan.m_vSteps[open.m_uiBegin].m_uiB = end;
}

void CStepMaker::leave()
{
    tOpen open = std::move(m_vOpen.back());
    m_vOpen.pop_back();
    const tPart& part = m_tPlan.m_vParts[open.m_uiPart];
    leaveBody(open);
    endSpans(open.m_uiPart);
    if (part.m_uiAlign != 0)
        add(ST_align, open.m_uiPart);
    if (!m_tPlan.m_vLinks4Base[open.m_uiPart].empty())
        add(ST_total, open.m_uiPart);
    if (part.m_bRecord)
        add(ST_recordEnd, open.m_uiPart);
    if (isCut(open.m_uiPart))
        add(ST_uncut, open.m_uiPart);
    if (!m_vOpen.empty() && m_vOpen.back().m_uiChoice != s_cuiNone)
        m_vOpen.back().m_vToEnd.push_back(add(ST_jump, open.m_uiPart));
    if (open.m_uiWhen != s_cuiNone)
        endAbsent(open);
}

/// Where reading goes on when the part is not there.
void CStepMaker::endAbsent(const tOpen& open)
{
    if (!isMeasuredAlways(open.m_uiPart) || m_vSpansTo[open.m_uiPart].empty())
    {
        m_tPlan.m_vSteps[open.m_uiWhen].m_uiB = here();
        return;
    }
    const unsigned int jump = add(ST_jump, open.m_uiPart);
    m_tPlan.m_vSteps[open.m_uiWhen].m_uiB = here();
    endSpans(open.m_uiPart);
    m_tPlan.m_vSteps[jump].m_uiB = here();
}

void CStepMaker::make()
{
    m_tPlan.m_vPlace4Part.resize(m_tPlan.m_vParts.size());
    m_tPlan.m_vStep4Record.assign(m_tPlan.m_vParts.size(), s_cuiNone);
    for (unsigned int part = 0; part < m_tPlan.m_vParts.size(); ++part)
    {
        while (!m_vOpen.empty() && m_tPlan.m_vParts[m_vOpen.back().m_uiPart].m_uiAfter <= part)
            leave();
        enter(part);
    }
    while (!m_vOpen.empty())
        leave();
    add(ST_done, 0);
}

/// Whether every end is a width, a length prefix, a size or a count, and every condition a value that was read. Then
/// what is made cannot be read in another way.
bool isSelfEvident(const tPlan& plan)
{
    const auto isOpen = [&plan](const tTest& test) { return isComputed(plan, test.m_tValue); };
    return (plan.m_tFrame.m_eKind == FR_none || plan.m_tFrame.m_eKind == FR_prefixed) &&
           std::all_of(plan.m_vParts.begin(), plan.m_vParts.end(), [&](const tPart& part) {
               return !part.m_bOptional && !part.m_bAsks && part.m_strBetween.empty() && part.m_eChoice != CH_heads &&
                      (part.m_eEnd == LE_fixed || part.m_eEnd == LE_prefix) && part.m_uiBitmap == s_cuiNone &&
                      (part.m_eKind != PK_array || part.m_eArrayEnd == AE_count) &&
                      std::none_of(part.m_vIf.begin(), part.m_vIf.end(), isOpen);
           });
}

}  // namespace

void makeSteps(tPlan& plan)
{
    prepareLinks(plan);
    for (std::size_t i = 0; i < plan.m_vParts.size(); ++i)
    {
        tPart& part = plan.m_vParts[i];
        plan.m_bMasks = plan.m_bMasks || part.m_tItem.m_bMask;
        plan.m_bAsks = plan.m_bAsks || part.m_bAsks;
        part.m_bOpen = !plan.m_vLinks4Number[i].empty();
        part.m_bShown = !part.m_bLiteral || !part.m_strName.empty() || part.m_uiID != 0 ||
                        part.m_uiParent == s_cuiNone || plan.m_vParts[part.m_uiParent].m_eKind == PK_array;
        if (part.m_eKind == PK_set)
            sortMembers(plan, part);
    }
    CStepMaker(plan).make();
    for (tRun& run : plan.m_vRuns)
        makeRows(plan, run);
    plan.m_bSelfEvident = isSelfEvident(plan);
    makeHeadTables(plan);
}

}  // namespace murv::detail

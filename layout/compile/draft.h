// layout/compile/draft.h - what is known of a layout while it is compiled.
//
// A draft stands beside each part and is thrown away with the last step. Parts stand before their members, so most
// steps are a loop over the row of parts, forwards or backwards, and none recurses on the depth.
#pragma once

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "layout/compile/mistakes.h"
#include "layout/compile/paths.h"
#include "layout/compile/rule_table.h"
#include "layout/plan/plan.h"
#include "murv/fields.h"

namespace murv::detail
{

struct tCodePage;

inline constexpr unsigned int s_cuiMostLevels = 1000;
inline constexpr unsigned int s_cuiMostCopied = 100000;  // parts that "like" makes
inline constexpr unsigned long long s_cullVaries = 0xFFFFFFFFFFFFFFFF;

/// A part that "like" copies: the node that is copied, and the set that has rules about it.
struct tCopied
{
    const CFields* m_pNode = nullptr;
    const CFields* m_pSet = nullptr;  // null for the root
};

struct tDraft
{
    const CFields* m_pOwn = nullptr;   // the node of the part itself
    const CFields* m_pNode = nullptr;  // the node that has its members: another one after "like"
    std::vector<tCopied> m_vCopied;    // parts whose rules count here, too
    std::vector<tRule> m_vRules;
    unsigned int m_uiPlaces = 0;  // E_RulePlace: what it is
    unsigned int m_uiLevel = 0;

    bool m_bOrder = false;  // byte order is said here or around
    bool m_bLittle = false;
    const tCodePage* m_pPage = nullptr;
    bool m_bOwnPage = false;
    bool m_bRaw = false;
    bool m_bPadding = false;                // said by a rule
    bool m_bKeepAll = false;                // padding belongs to the value
    bool m_bToEnd = false;                  // leaves; arrays have it in their part
    bool m_bDelimited = false;              // a mark of "between" around it ends it
    bool m_bSharesMark = false;             // an array between the marks of the field set around it
    bool m_bSized = false;                  // a number that is read before its end says the size of it alone
    unsigned int m_uiSpanLast = s_cuiNone;  // the last of the innermost sized neighbours that it is one of

    unsigned long long m_ullWidth = s_cullVaries;  // bytes, when they are known
    unsigned long long m_ullLeast = 0;             // bytes at least
    unsigned long long m_ullWidthAfter = 0;        // of the neighbours after it that have a known width
    unsigned int m_uiVaryingAfter = 0;             // neighbours after it that have none
};

struct tCompile
{
    tCompile(const CFields& document, tPlan& plan, std::vector<tLayoutMistake>& mistakes)
        : m_tDocument(document), m_tPlan(plan), m_tMistakes(plan, mistakes), m_tPaths(*this)
    {
    }

    tPart& part(unsigned int index)
    {
        return m_tPlan.m_vParts[index];
    }
    tDraft& draft(unsigned int index)
    {
        return m_vDrafts[index];
    }
    unsigned int count() const
    {
        return static_cast<unsigned int>(m_vDrafts.size());
    }
    /// Reports a mistake of a rule.
    void refuse(unsigned int index, const tRule& rule, std::string message)
    {
        m_tMistakes.add(index, rule.m_uiPlace, std::move(message));
    }
    /// Reports what may follow from another mistake, at the leaf or field set itself.
    void refusePart(unsigned int index, std::string message)
    {
        m_tMistakes.addIfFirst(index, part(index).m_uiPlace, std::move(message));
    }
    /// Reports that an end is missing, unless a mistake in some rule explains it.
    void refuseEnd(unsigned int index, std::string message)
    {
        if (!m_bRuleLost)
            refusePart(index, std::move(message));
    }
    /// Does steps of work whose number is not linear in the layout. \return false when there were too many
    bool spend(unsigned int steps)
    {
        m_ullBudget = m_ullBudget < steps ? 0 : m_ullBudget - steps;
        return m_ullBudget != 0;
    }

    const CFields& m_tDocument;
    tPlan& m_tPlan;
    CMistakes m_tMistakes;
    CPaths m_tPaths;
    std::vector<tDraft> m_vDrafts;
    std::vector<unsigned int> m_vPlaces;                            // by link: of its rule, in the document
    std::unordered_map<unsigned long long, unsigned int> m_tSpans;  // by first and last part
    unsigned long long m_ullBudget = 20'000'000;
    bool m_bRuleLost = false;  // a rule could not be understood, so that some end may seem to be missing
    bool m_bTooBig = false;    // parts are missing, and nothing else is worth reporting
};

/// The rule of that name among those of a part, or null.
inline const tRule* findRule(const tDraft& draft, std::string_view name)
{
    for (const tRule& rule : draft.m_vRules)
    {
        if (rule.m_pRow->m_pName == name && rule.m_strBit.empty())
            return &rule;
    }
    return nullptr;
}

/// Whether the part is one of several of which one is there.
inline bool isAlternative(tCompile& compile, unsigned int part)
{
    const unsigned int parent = compile.part(part).m_uiParent;
    return parent != s_cuiNone && (findRule(compile.draft(parent), "one of") != nullptr ||
                                   findRule(compile.draft(parent), "one of by") != nullptr);
}

/// Whether the part is its own enclosing part: sized, between marks, or a record in a frame.
inline bool isBounded(tCompile& compile, unsigned int index)
{
    const tDraft& draft = compile.draft(index);
    const bool framed = compile.m_tPlan.m_tFrame.m_eKind != FR_none && compile.part(index).m_bRecord;
    return framed || draft.m_bSized || draft.m_bDelimited;
}

/// The name of a part in messages.
std::string nameOf(const tPart& part);

// The steps, in their order.

void buildParts(tCompile& compile);   // parts from the document, copies included
void attachRules(tCompile& compile);  // rules to their parts
void checkRules(tCompile& compile);   // what stands twice, in a wrong place, or contradicts
void makeItems(tCompile& compile);    // items from packet expressions
void compileRules(tCompile& compile, E_RulePhase phase);
void finishItems(tCompile& compile);    // what depends on several rules
void chooseRulers(tCompile& compile);   // which numbers rule and which agree
void findEnds(tCompile& compile);       // of leaves; then items are complete, and literals are made
void measureParts(tCompile& compile);   // widths
void checkWidths(tCompile& compile);    // elements without bytes, tails, frames, aligned parts
void findHeads(tCompile& compile);      // heads, and the ends of arrays that depend on them
void checkNumbers(tCompile& compile);   // overlaps and circles
void checkDefaults(tCompile& compile);  // values of the layout that their items cannot hold
void placeParts(tCompile& compile);     // offsets and bounds of lengths, of a layout without mistakes

}  // namespace murv::detail

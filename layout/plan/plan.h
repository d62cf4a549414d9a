// layout/plan/plan.h - a compiled layout: its parts, and the steps in which packets are read and made.
//
// Steps are small operations in one row, without recursion: running them needs no walk over the parts and no look-up of
// names. Reading and making run the same steps. A plan never changes, so threads share it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "layout/plan/part.h"

namespace murv::detail
{

enum E_Step : unsigned char
{
    ST_run,        // items of fixed width side by side: one test of bounds. A: run
    ST_item,       // one item of varying width. A: part
    ST_ask,        // before an item: the callback of its keyword is asked. A: part
    ST_open,       // a field set begins. A: part, B: between marks, its ST_close, where one without bytes goes on
    ST_close,      // it ends. A: part
    ST_array,      // an array begins. A: part
    ST_next,       // its next element begins, or none does. A: part, B: step after the last element
    ST_element,    // an element has ended; tests "until". A: part, B: its ST_next
    ST_arrayEnd,   // an array ends. A: part
    ST_when,       // the part is there, or the step B is next. A: part
    ST_choose,     // one of several. A: choice
    ST_jump,       // B: the step that is next
    ST_joint,      // before a part between marks: the mark, or the end of the whole. A: part, B: step after the last
    ST_cut,        // the part begins: its end is found. A: part
    ST_uncut,      // it has ended, and all its bytes are used. A: part
    ST_span,       // what is measured begins. A: span
    ST_spanEnd,    // and ends. A: span
    ST_align,      // bytes are skipped. A: part
    ST_link,       // a number was read: it is compared with what was measured before. A: link
    ST_total,      // what is counted over ends: totals are compared. A: part
    ST_reset,      // an element begins: what is known of the values in it is forgotten. A: list
    ST_record,     // a record begins. A: part
    ST_recordEnd,  // and ends. A: part
    ST_done,
};

struct tStep
{
    E_Step m_eStep;
    unsigned int m_uiA = 0;
    unsigned int m_uiB = 0;
};

/// Leaves of fixed width that lie side by side in one field set.
struct tRun
{
    struct tField
    {
        unsigned int m_uiPart;
        unsigned int m_uiOffset;  // from the beginning of the run
        unsigned int m_uiLength;
        bool m_bPlain;  // making it is nothing but making its value
        // The forms in which its usual values are made, read, and seen to be right without being asked for.
        E_QuickForm m_eMake;
        E_QuickForm m_eRead;
        E_QuickForm m_eCheck;
        // A row of fields that are made side by side: those of it that are left, and their bytes.
        unsigned short m_usRow = 0;
        unsigned short m_usRowBytes = 0;
    };
    std::vector<tField> m_vFields;
    std::vector<unsigned int> m_vChecked;   // indexes of fields of which not any bytes are a value
    std::vector<unsigned int> m_vLiterals;  // indexes of fields that are literals
    std::vector<unsigned int> m_vKept;      // indexes of fields whose values are kept in registers
    unsigned int m_uiLength = 0;
};

/// Where a leaf of fixed width lies; without a run for other parts.
struct tPlaceInRun
{
    unsigned int m_uiRun = s_cuiNone;
    unsigned int m_uiOffset = 0;
    unsigned int m_uiLength = 0;
    E_QuickForm m_eQuick = QF_none;
};

/// The alternatives of a field set, each with the step at which it begins.
struct tChoice
{
    unsigned int m_uiSet = s_cuiNone;
    std::vector<unsigned int> m_vSteps;        // by member; the last step of each is ST_jump
    std::vector<unsigned int> m_vMember4Byte;  // CH_heads told apart by one byte: 256 entries; else empty
    unsigned int m_uiOffset = 0;               // of that byte
};

/// What is forgotten when an element begins.
struct tReset
{
    std::vector<unsigned int> m_vRegisters;
    std::vector<unsigned int> m_vSpans;
    std::vector<unsigned int> m_vLinks;
};

/// Which bytes at an offset begin a part, where one byte tells.
struct tHeadTable
{
    unsigned int m_uiOffset = 0;
    std::vector<bool> m_vBegins;  // by byte
};

struct tPlan
{
    std::vector<tPart> m_vParts;  // the first is the root
    std::vector<tLink> m_vLinks;
    std::vector<tSpan> m_vSpans;
    tFrame m_tFrame;
    std::string m_strComment;

    // Made from these by makeSteps().
    std::vector<tStep> m_vSteps;
    std::vector<tRun> m_vRuns;
    std::vector<tChoice> m_vChoices;
    std::vector<tReset> m_vResets;
    std::vector<unsigned int> m_vRegister4Part;  // by part: of its value, or none
    unsigned int m_uiRegisters = 0;
    std::vector<std::vector<unsigned int>> m_vLinks4Number;   // by part: links whose number it is
    std::vector<std::vector<unsigned int>> m_vLinks4Counted;  // by part: totals that count it
    std::vector<std::vector<unsigned int>> m_vLinks4Base;     // by part: totals that end with it
    std::vector<std::vector<unsigned int>> m_vLinks4Span;     // by span: links that measure it
    std::vector<bool> m_vMayLack;                             // by link: it rules a part that may be absent
    std::vector<std::vector<unsigned int>> m_vLinks4Record;   // by part: these links of the record
    std::vector<unsigned int> m_vOrder4Link;                  // by link: totals of lower order come first
    std::vector<unsigned int> m_vStep4Record;                 // by part: its ST_record, or none
    std::vector<tPlaceInRun> m_vPlace4Part;                   // by part: where a leaf of fixed width lies
    std::vector<tHeadTable> m_vHeadTables;                    // by array; without bytes where one byte does not tell
    std::vector<std::vector<tHead>> m_vEnds4Array;            // by array: its end mark, in the form of a head
    std::vector<bool> m_vChooses;                             // by part: an alternative is chosen by its value
    bool m_bMasks = false;                                    // some part is masked
    bool m_bAsks = false;                                     // some part has callbacks
    bool m_bSelfEvident = false;                              // what is made cannot be read in another way
};

/// Whether the part stands between marks.
inline bool isBetweenMarks(const tPlan& plan, const tPart& part)
{
    return part.m_uiParent != s_cuiNone && !plan.m_vParts[part.m_uiParent].m_strBetween.empty();
}

/// Makes the steps of a plan whose parts, links, spans and frame are complete.
void makeSteps(tPlan& plan);

/// Whether making fills in the value, or the part of its bits.
inline bool isComputed(const tPlan& plan, const tValueOf& value)
{
    const std::vector<unsigned int>& links = plan.m_vLinks4Number[value.m_uiPart];
    return std::any_of(links.begin(), links.end(), [&](unsigned int link) {
        const unsigned int bits = plan.m_vLinks[link].m_tNumber.m_uiBits;
        return bits == s_cuiNone || value.m_uiBits == s_cuiNone || bits == value.m_uiBits;
    });
}

}  // namespace murv::detail

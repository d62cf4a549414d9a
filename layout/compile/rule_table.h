// layout/compile/rule_table.h - the one table of rules and value words.
//
// A row says how a rule is written, where it may stand, what reads its arguments and what compiles it, and what the
// manual and messages say about it. A row with a keyword can also be said in a packet expression.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "layout/compile/rule_text.h"
#include "layout/plan/part.h"

namespace murv::detail
{

struct tCompile;
struct tRuleRow;

inline constexpr unsigned char s_cucWordKind = 15;  // of the external keywords that are value words

/// A rule of a part, read. Which members count is said by its row.
struct tRule
{
    const tRuleRow* m_pRow = nullptr;
    unsigned int m_uiPlace = 0;      // offset in the document
    bool m_bKeyword = false;         // said by a keyword of the packet expression
    std::string m_strWritten;        // as the layout says it
    std::string m_strBit;            // the part of bits that it is about; empty: the whole
    std::vector<tRuleStep> m_vPath;  // empty: "."
    tRuleStep m_tLast;               // end of a range of parts; NAME of "else"
    bool m_bLast = false;
    E_Comparison m_eComparison = CM_equal;
    std::vector<tConstant> m_vConstants;
    std::vector<tValidRange> m_vValid;
    std::vector<tBitField> m_vBits;     // without shifts
    std::vector<std::string> m_vTexts;  // quoted texts
    std::string m_strWord;
    bool m_bNumber = false;
    unsigned long long m_ullNumber = 0;
    unsigned long long m_ullDivisor = 1;
    long long m_llPlus = 0;
    unsigned char m_ucChecksum = 0;
};

/// Where a rule may stand.
enum E_RulePlace : unsigned int
{
    RP_root = 0x01,
    RP_set = 0x02,
    RP_array = 0x04,
    RP_ascii = 0x08,   // numbers in text
    RP_binary = 0x10,  // numbers in bytes
    RP_text = 0x20,
    RP_bytes = 0x40,
    RP_time = 0x80,  // leaves with a keyword of date or time, besides what else they are
    RP_bit = 0x100,

    RP_number = RP_ascii | RP_binary,
    RP_string = RP_text | RP_bytes,
    RP_leaf = RP_number | RP_string,
    RP_part = RP_set | RP_array | RP_leaf,
};

/// Rules of one group contradict each other.
enum E_RuleGroup : unsigned char
{
    RG_none,
    RG_order,
    RG_page,
    RG_form,
    RG_padding,
    RG_null,
    RG_frame,
    RG_end,
    RG_choice,
    RG_computed,
};

/// When a rule is compiled: rules that look other parts up come after those that say what parts are.
enum E_RulePhase : unsigned char
{
    PH_building,  // while parts are built
    PH_plain,
    PH_linked,
};

enum E_RuleTrait : unsigned char
{
    RT_none = 0,
    RT_word = 1,     // says what a value is; for an array of leaves it is about the elements
    RT_repeats = 2,  // may stand several times
};

/// What the option of a keyword means.
enum E_KeywordOption : unsigned char
{
    KO_never,
    KO_argument,  // the rule's number; there must be one
    KO_maybe,     // the rule's number; there may be one
    KO_decimals,  // the number of decimals; there may be one
};

struct tRuleRow
{
    const char* m_pName;
    const char* m_pForm;  // with its arguments, as the manual writes it
    unsigned int m_uiPlaces;
    const char* m_pPlaces;  // the same in words
    E_RuleGroup m_eGroup;
    E_RulePhase m_ePhase;
    unsigned char m_ucTraits;
    bool (*m_pRead)(CRuleText& text, tRule& rule);
    void (*m_pCompile)(tCompile& compile, unsigned int part, const tRule& rule);
    const char* m_pSentence;         // what it means, without a full stop
    unsigned short m_usKeyword = 0;  // index of the keyword, 0 for none; files hold it
    const char* m_pKeyword = nullptr;
    E_KeywordOption m_eOption = KO_never;
};

/// All rows; of two names of which one begins the other, the longer one comes first.
const tRuleRow* beginRules();
const tRuleRow* endRules();

/// The row of that name; there must be one.
const tRuleRow& ruleRow(std::string_view name);

/// The row of the keyword, or null.
const tRuleRow* findKeywordRow(unsigned int index);

/// Reads one rule.
///
/// \return nothing, or the mistake as one sentence
std::string readRule(std::string_view text, tRule& rule);

}  // namespace murv::detail

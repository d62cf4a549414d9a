// layout/compile/structure_rules.cpp - frames, ends, marks and presence: rules that name no other part.
#include "layout/compile/draft.h"
#include "layout/compile/expression.h"
#include "layout/compile/rule_compilers.h"

namespace murv::detail
{

namespace
{
constexpr unsigned long long s_cullMostLength = 0x7FFFFFFF;
constexpr unsigned long long s_cullMostAlign = 65536;
}  // namespace

void compileNothing(tCompile&, unsigned int, const tRule&)
{
}

void compileLines(tCompile& compile, unsigned int part, const tRule& rule)
{
    tFrame& frame = compile.m_tPlan.m_tFrame;
    frame.m_eKind = rule.m_vTexts.empty() ? FR_lines : FR_mark;
    frame.m_uiLength = static_cast<unsigned int>(rule.m_ullNumber);
    if (!rule.m_vTexts.empty())
        frame.m_strMark = rule.m_vTexts.front();
    if (rule.m_bNumber && (rule.m_ullNumber == 0 || rule.m_ullNumber > s_cullMostLength))
        compile.refuse(part, rule, "A line has 1 to 2147483647 bytes");
}

void compileFixed(tCompile& compile, unsigned int part, const tRule& rule)
{
    tFrame& frame = compile.m_tPlan.m_tFrame;
    frame.m_eKind = FR_fixed;
    frame.m_uiLength = static_cast<unsigned int>(rule.m_ullNumber);
    if (rule.m_ullNumber == 0 || rule.m_ullNumber > s_cullMostLength)
        compile.refuse(part, rule, "A record has 1 to 2147483647 bytes");
}

void compilePrefixed(tCompile& compile, unsigned int part, const tRule& rule)
{
    constexpr unsigned int most = 9;
    constexpr unsigned int widestBinary = 8;
    tFrame& frame = compile.m_tPlan.m_tFrame;
    tPacketExpInfo pei{};
    frame.m_eKind = FR_prefixed;
    frame.m_llPlus = rule.m_llPlus;
    const bool read = readFixedExpression(rule.m_strWord, pei) && pei.m_eRuntimeExp == REC_N;
    const unsigned int widest = pei.m_ePacketExp == PEC_B ? widestBinary : most;
    if (!read || pei.m_uiLength == 0 || pei.m_uiLength > widest)
    {
        compile.refuse(part, rule, "The length of a record is a number of fixed width, such as BNF2 or ANF4");
        return;
    }
    makeBareItem(pei, frame.m_tPrefix);
    frame.m_tPrefix.m_ePadding = pei.m_ePacketExp == PEC_B ? PAD_none : PAD_zerosFront;
}

void compileOneOf(tCompile& compile, unsigned int part, const tRule& rule)
{
    compile.part(part).m_eChoice = CH_heads;
    if (compile.part(part).m_vMembers.empty())
        compile.refuse(part, rule, "There is nothing to choose from");
}

void compileOptional(tCompile& compile, unsigned int part, const tRule& rule)
{
    compile.part(part).m_bOptional = true;
    if (isAlternative(compile, part))
        compile.refuse(part, rule, "One of several parts is there already by its choice, so it is not optional");
}

void compileEnds(tCompile& compile, unsigned int part, const tRule& rule)
{
    tPart& at = compile.part(part);
    if (at.m_eKind == PK_array)
        at.m_strEnds = rule.m_vTexts.front();
    else
    {
        at.m_vMarks = rule.m_vTexts;
        at.m_eEnd = LE_mark;
    }
}

void compileBefore(tCompile& compile, unsigned int part, const tRule& rule)
{
    compile.part(part).m_vMarks = rule.m_vTexts;
    compile.part(part).m_eEnd = LE_before;
}

void compileBetween(tCompile& compile, unsigned int part, const tRule& rule)
{
    tPart& at = compile.part(part);
    at.m_strBetween = rule.m_vTexts.front();
    for (const unsigned int member : at.m_vMembers)
        compile.draft(member).m_bDelimited = true;
    // An array that comes last takes the parts that are left, each between the same marks.
    const unsigned int last = at.m_vMembers.empty() ? part : at.m_vMembers.back();
    if (at.m_eKind != PK_set || compile.part(last).m_eKind != PK_array || compile.part(last).m_vMembers.empty() ||
        findRule(compile.draft(last), "between") != nullptr)
        return;
    compile.part(last).m_strBetween = at.m_strBetween;
    compile.draft(last).m_bSharesMark = true;
    compile.draft(compile.part(last).m_vMembers.front()).m_bDelimited = true;
}

void compileToEnd(tCompile& compile, unsigned int part, const tRule&)
{
    compile.part(part).m_bToEnd = compile.part(part).m_eKind == PK_array;
    compile.draft(part).m_bToEnd = true;
}

void compileAlign(tCompile& compile, unsigned int part, const tRule& rule)
{
    tPart& at = compile.part(part);
    at.m_uiAlign = static_cast<unsigned int>(rule.m_ullNumber);
    if (!rule.m_vTexts.empty())
        at.m_strAlignFill = rule.m_vTexts.front();
    if (rule.m_ullNumber < 2 || rule.m_ullNumber > s_cullMostAlign)
        compile.refuse(part, rule, "\"align\" takes a number from 2 to 65536");
    else if (!at.m_bInRecord)
        compile.refuse(part, rule, "\"align\" counts from the start of a record, and here is none");
}

void compileRequired(tCompile& compile, unsigned int part, const tRule&)
{
    compile.part(part).m_bRequired = true;
}

}  // namespace murv::detail

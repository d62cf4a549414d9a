// layout/compile/numbers.cpp - rules by which a number says something about other parts.
#include <algorithm>
#include <string>

#include "layout/compile/draft.h"
#include "layout/compile/rule_compilers.h"
#include "layout/values/checksum.h"

namespace murv::detail
{

namespace
{

bool isInside(const tCompile& compile, unsigned int inner, unsigned int outer)
{
    return inner >= outer && inner < compile.m_tPlan.m_vParts[outer].m_uiAfter;
}

/// The bits that a rule is about, or none. \return nothing, or the mistake
std::string findBits(tCompile& compile, unsigned int index, const tRule& rule, unsigned int& bits)
{
    const tPart& part = compile.part(index);
    bits = s_cuiNone;
    if (rule.m_strBit.empty())
        return part.m_tItem.m_vBits.empty() ? std::string() : nameOf(part) + " consists of bits; name one of them";
    for (unsigned int i = 0; i < part.m_tItem.m_vBits.size(); ++i)
    {
        if (part.m_tItem.m_vBits[i].m_strName == rule.m_strBit)
            bits = i;
    }
    return bits != s_cuiNone ? std::string() : nameOf(part) + " has no bits \"" + rule.m_strBit + "\"";
}

/// Makes the link of a rule, and finds where its path leads. \return nothing, or the mistake
std::string startLink(tCompile& compile, unsigned int index, const tRule& rule, tLink& link, tFound& found)
{
    link.m_ullDivisor = rule.m_ullDivisor;
    link.m_llPlus = rule.m_llPlus;
    link.m_tNumber.m_uiPart = index;
    std::string mistake = findBits(compile, index, rule, link.m_tNumber.m_uiBits);
    if (mistake.empty() && compile.part(index).m_bLiteral)
        mistake = "A literal is not computed";
    if (mistake.empty() && compile.part(index).m_bAsks)
        mistake = "The callback of its keyword fills " + nameOf(compile.part(index)) + " in, so no rule does";
    if (mistake.empty())
        mistake = compile.m_tPaths.find(compile.m_tPaths.setAround(index), rule.m_vPath, found);
    if (mistake.empty() && found.m_uiBits != s_cuiNone)
        mistake = "A part of bits cannot be measured or counted";
    if (mistake.empty() && found.m_uiPart == index && !rule.m_bLast)
        mistake = "The rule is about its own number";
    return mistake;
}

unsigned int addLink(tCompile& compile, const tRule& rule, const tLink& link)
{
    std::vector<tLink>& links = compile.m_tPlan.m_vLinks;
    links.push_back(link);
    compile.m_vPlaces.push_back(rule.m_uiPlace);
    if (link.m_tNumber.m_uiBits == s_cuiNone)
        compile.part(link.m_tNumber.m_uiPart).m_bComputed = true;
    return static_cast<unsigned int>(links.size() - 1);
}

/// Finds the end of "NAME..NAME". \return nothing, or the mistake
std::string findLast(tCompile& compile, const tRule& rule, unsigned int first, unsigned int& last)
{
    last = first;
    if (!rule.m_bLast)
        return {};
    const unsigned int set = compile.part(first).m_uiParent;
    if (set == s_cuiNone || compile.part(set).m_eKind != PK_set)
        return "Both ends of a row of parts stand in one field set";
    if (!compile.part(set).m_strBetween.empty())
        return "Parts between marks may be missing; name the part around them";
    last = compile.m_tPaths.member(set, rule.m_tLast);
    if (last == s_cuiNone)
        return "There is no part \"" + describeStep(rule.m_tLast) + "\" beside " + nameOf(compile.part(first)) +
               compile.m_tPaths.suggestMember(set, rule.m_tLast.m_strName, false);
    if (last < first)
        return nameOf(compile.part(last)) + " comes before " + nameOf(compile.part(first));
    return compile.part(set).m_eChoice == CH_none || first == last ? std::string()
                                                                   : "Of alternatives only one is there";
}

unsigned int spanOf(tCompile& compile, unsigned int first, unsigned int last)
{
    std::vector<tSpan>& spans = compile.m_tPlan.m_vSpans;
    const unsigned long long ends = (static_cast<unsigned long long>(first) << 32) | last;
    const auto [at, added] = compile.m_tSpans.emplace(ends, static_cast<unsigned int>(spans.size()));
    if (added)
    {
        spans.emplace_back();
        spans.back().m_uiFirst = first;
        spans.back().m_uiLast = last;
    }
    return at->second;
}

/// Whether an array lies between a part and a number inside of it.
bool repeatsInside(tCompile& compile, unsigned int number, unsigned int first, unsigned int last)
{
    if (number < first || number >= compile.part(last).m_uiAfter)
        return false;
    for (unsigned int at = compile.part(number).m_uiParent; at != s_cuiNone && at >= first;
         at = compile.part(at).m_uiParent)
    {
        if (compile.part(at).m_eKind == PK_array)
            return true;
    }
    return false;
}

/// The record around a part, or none.
unsigned int recordAround(tCompile& compile, unsigned int index)
{
    while (index != s_cuiNone && !compile.part(index).m_bRecord)
        index = compile.part(index).m_uiParent;
    return index;
}

/// What a size and a checksum have in common: a row of parts. \return nothing, or the mistake
std::string measure(tCompile& compile, unsigned int index, const tRule& rule, tLink& link)
{
    tFound found;
    unsigned int last = s_cuiNone;
    std::string mistake = startLink(compile, index, rule, link, found);
    if (mistake.empty() && found.m_bCrossed)
        mistake = "Only totals go into arrays, which have many elements";
    if (mistake.empty())
        mistake = findLast(compile, rule, found.m_uiPart, last);
    if (mistake.empty() && last == index && found.m_uiPart == index)
        mistake = "The rule is about its own number";
    if (mistake.empty() && repeatsInside(compile, index, found.m_uiPart, last))
        mistake = "The number stands in an array inside of what it measures";
    if (mistake.empty())
        link.m_uiSpan = spanOf(compile, found.m_uiPart, last);
    return mistake;
}

/// Marks and lengths of records belong to no part, so what has several records cannot be measured with them.
bool leavesRecord(tCompile& compile, unsigned int index, const tLink& link)
{
    const unsigned int record = recordAround(compile, index);
    return record == s_cuiNone || recordAround(compile, compile.m_tPlan.m_vSpans[link.m_uiSpan].m_uiFirst) != record;
}

/// The largest value of each kind of checksum, and how many hexadecimal digits that has.
unsigned long long largestCheck(unsigned char kind)
{
    switch (kind)
    {
    case CK_crc32:
    case CK_crc32Iscsi:
    case CK_sum32: return 0xFFFFFFFF;
    case CK_xor:
    case CK_sum8: return 0xFF;
    case CK_luhn:
    case CK_mod10: return 9;
    case CK_mod97: return 98;
    default: return 0xFFFF;
    }
}

/// Whether the number has room for every checksum of its kind.
bool holdsCheck(const tItem& item, unsigned char kind)
{
    const unsigned long long largest = largestCheck(kind);
    if (item.m_bVaries)
        return true;
    switch (item.m_eForm)
    {
    case IF_binary: return item.m_uiLength >= 8 || largest >> (8 * item.m_uiLength - (item.m_bSigned ? 1 : 0)) == 0;
    case IF_hex: return item.m_uiLength >= 16 || largest >> (4 * item.m_uiLength) == 0;
    case IF_digits: return std::to_string(largest).size() <= item.m_uiLength;
    default: return true;
    }
}

void addTotal(tCompile& compile, unsigned int index, const tRule& rule, E_Link kind)
{
    tLink link;
    tFound found;
    link.m_eKind = kind;
    std::string mistake = startLink(compile, index, rule, link, found);
    while (mistake.empty() && kind == LK_sum && compile.part(found.m_uiPart).m_eKind == PK_array &&
           !compile.part(found.m_uiPart).m_vMembers.empty())
        found.m_uiPart = compile.part(found.m_uiPart).m_vMembers.front();
    const tPart& target = compile.part(mistake.empty() ? found.m_uiPart : index);
    const tItem& item = target.m_tItem;
    const bool number = item.m_eForm != IF_text && item.m_eForm != IF_bytes && item.m_eForm != IF_hexText;
    const tItem& own = compile.part(index).m_tItem;
    if (mistake.empty() && kind == LK_sum && (target.m_eKind != PK_leaf || !number || !item.m_vBits.empty()))
        mistake = nameOf(target) + " is no number that could be added";
    if (mistake.empty() && kind == LK_sum && found.m_uiPart == index)
        mistake = "The rule is about its own number";
    if (mistake.empty() && kind == LK_sum &&
        (item.m_ucDecimals != own.m_ucDecimals || item.m_cPoint != 0 || own.m_cPoint != 0))
        mistake = nameOf(target) + " has other decimals than its sum, or a written point";
    if (mistake.empty() && kind == LK_sum && (item.m_eForm == IF_float || own.m_eForm == IF_float))
        mistake = "Sums of \"float\" numbers are not exact";
    if (!mistake.empty())
    {
        compile.refuse(index, rule, mistake);
        return;
    }
    link.m_uiTarget = found.m_uiPart;
    link.m_uiBase = found.m_uiSet;
    addLink(compile, rule, link);
}

std::string checkBitmap(tCompile& compile, unsigned int index, const tFound& found)
{
    const tItem& item = compile.part(index).m_tItem;
    if (found.m_bCrossed)
        return "Only totals go into arrays, which have many elements";
    if (compile.part(found.m_uiPart).m_eKind != PK_set || compile.part(found.m_uiPart).m_eChoice != CH_none)
        return nameOf(compile.part(found.m_uiPart)) + " is no field set of parts with IDs";
    if ((item.m_eForm != IF_bytes && item.m_eForm != IF_hexText) || item.m_bVaries || item.m_uiLength == 0)
        return "A bitmap consists of bytes of a fixed number, or of \"hex\" digits";
    return {};
}

/// Gives each part of a field set its bit.
void shareBits(tCompile& compile, unsigned int index, const tRule& rule, const tLink& link, unsigned int number)
{
    const tItem& item = compile.part(index).m_tItem;
    const unsigned long long bits = item.m_uiLength * (item.m_eForm == IF_hexText ? 4ULL : 8ULL);
    const std::vector<unsigned int>& members = compile.part(link.m_uiTarget).m_vMembers;
    if (!compile.spend(static_cast<unsigned int>(members.size())))
        return;
    for (const unsigned int member : members)
    {
        tPart& part = compile.part(member);
        if (part.m_uiID < link.m_uiFrom || part.m_uiID - link.m_uiFrom >= bits)
            continue;
        if (part.m_uiBitmap != s_cuiNone)
            compile.refuse(index, rule, "Another bitmap has a bit for " + nameOf(part) + " already");
        else if (isInside(compile, index, member))
            compile.refuse(index, rule, "A bit says whether its own bitmap is there");
        else if (member < index)
            compile.refuse(index, rule, nameOf(part) + " is read before its bit");
        else
        {
            part.m_uiBitmap = number;
            part.m_uiBit = part.m_uiID - link.m_uiFrom;
        }
    }
}

}  // namespace

void compileSize(tCompile& compile, unsigned int part, const tRule& rule)
{
    tLink link;
    link.m_eKind = LK_size;
    std::string mistake = measure(compile, part, rule, link);
    if (mistake.empty() && compile.m_tPlan.m_tFrame.m_eKind != FR_none && leavesRecord(compile, part, link))
        mistake = "A size stays within one record";
    if (mistake.empty())
        addLink(compile, rule, link);
    else
    {
        compile.m_bRuleLost = true;
        compile.refuse(part, rule, mistake);
    }
}

void compileChecksum(tCompile& compile, unsigned int part, const tRule& rule)
{
    tLink link;
    link.m_eKind = LK_check;
    link.m_ucChecksum = rule.m_ucChecksum;
    std::string mistake = measure(compile, part, rule, link);
    if (mistake.empty() && leavesRecord(compile, part, link))
        mistake = "A check stays within one record";
    if (mistake.empty() && !holdsCheck(compile.part(part).m_tItem, rule.m_ucChecksum))
        mistake = "The number is too narrow for the check";
    if (mistake.empty())
        addLink(compile, rule, link);
    else
        compile.refuse(part, rule, mistake);
}

void compileCount(tCompile& compile, unsigned int part, const tRule& rule)
{
    tLink link;
    tFound found;
    link.m_eKind = LK_count;
    std::string mistake = startLink(compile, part, rule, link, found);
    if (mistake.empty() && compile.part(found.m_uiPart).m_eKind != PK_array)
        mistake = nameOf(compile.part(found.m_uiPart)) + " is no array";
    if (!mistake.empty())
    {
        compile.m_bRuleLost = true;
        compile.refuse(part, rule, mistake);
        return;
    }
    // A number after its array, or one about many arrays, is a total.
    if (found.m_bCrossed || part >= found.m_uiPart)
    {
        link.m_eKind = LK_elements;
        link.m_uiBase = found.m_uiSet;
    }
    link.m_uiTarget = found.m_uiPart;
    addLink(compile, rule, link);
}

void compileBitmap(tCompile& compile, unsigned int part, const tRule& rule)
{
    tLink link;
    tFound found;
    link.m_eKind = LK_bits;
    link.m_uiFrom = static_cast<unsigned int>(rule.m_ullNumber);
    std::string mistake = startLink(compile, part, rule, link, found);
    if (mistake.empty())
        mistake = checkBitmap(compile, part, found);
    if (!mistake.empty())
    {
        compile.refuse(part, rule, mistake);
        return;
    }
    link.m_uiTarget = found.m_uiPart;
    shareBits(compile, part, rule, link, addLink(compile, rule, link));
}

void compileSum(tCompile& compile, unsigned int part, const tRule& rule)
{
    addTotal(compile, part, rule, LK_sum);
}

void compileRecords(tCompile& compile, unsigned int part, const tRule& rule)
{
    addTotal(compile, part, rule, LK_records);
}

void chooseRulers(tCompile& compile)
{
    std::vector<tLink>& links = compile.m_tPlan.m_vLinks;
    for (unsigned int i = 0; i < links.size(); ++i)
    {
        tLink& link = links[i];
        const unsigned int number = link.m_tNumber.m_uiPart;
        if (link.m_eKind == LK_bits || link.m_eKind == LK_count)
            link.m_bNumberFirst = true;
        if (link.m_eKind == LK_bits)
            link.m_bRules = true;
        if (link.m_eKind == LK_count && compile.part(link.m_uiTarget).m_uiCount == s_cuiNone)
        {
            link.m_bRules = true;
            compile.part(link.m_uiTarget).m_uiCount = i;
        }
        if (link.m_uiSpan == s_cuiNone)
            continue;
        tSpan& span = compile.m_tPlan.m_vSpans[link.m_uiSpan];
        const unsigned int after = compile.part(span.m_uiLast).m_uiAfter;
        link.m_bNumberFirst = number < after;
        if (link.m_eKind != LK_size || !link.m_bNumberFirst || span.m_uiSize != s_cuiNone)
            continue;
        link.m_bRules = true;
        span.m_uiSize = i;
        span.m_bSizeInside = number >= span.m_uiFirst;
        if (span.m_uiFirst == span.m_uiLast)
        {
            compile.draft(span.m_uiFirst).m_bSized = true;
            if (!span.m_bSizeInside)
                compile.part(span.m_uiFirst).m_uiSize = i;
        }
        const unsigned int set = compile.part(span.m_uiFirst).m_uiParent;
        for (unsigned int at = span.m_uiFirst; set != s_cuiNone && at < after && span.m_uiFirst != span.m_uiLast;
             at = compile.part(at).m_uiAfter)
        {
            unsigned int& last = compile.draft(at).m_uiSpanLast;
            last = std::min(last, span.m_uiLast);
            if (!compile.spend(1))
                return;
        }
    }
}

}  // namespace murv::detail

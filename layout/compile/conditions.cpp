// layout/compile/conditions.cpp - rules that look at a value that was read before: "if", "until" and "one of by".
#include <string>

#include "layout/compile/draft.h"
#include "layout/compile/rule_compilers.h"

namespace murv::detail
{

namespace
{

bool isInside(const tCompile& compile, unsigned int inner, unsigned int outer)
{
    return inner >= outer && inner < compile.m_tPlan.m_vParts[outer].m_uiAfter;
}

bool isNumber(const tItem& item)
{
    return item.m_eForm != IF_text && item.m_eForm != IF_bytes && item.m_eForm != IF_hexText;
}

/// Whether both are in different parts of which only one is there.
bool areAlternatives(tCompile& compile, unsigned int earlier, unsigned int later)
{
    unsigned int around = compile.part(earlier).m_uiParent;
    while (around != s_cuiNone && !isInside(compile, later, around))
        around = compile.part(around).m_uiParent;
    return around != s_cuiNone && compile.part(around).m_eChoice != CH_none;
}

/// Finds the value that a rule looks at. \return nothing, or the mistake
std::string findValue(tCompile& compile, unsigned int index, unsigned int set, const std::vector<tRuleStep>& path,
                      unsigned int readBefore, tValueOf& value)
{
    tFound found;
    std::string mistake = compile.m_tPaths.find(set, path, found);
    if (!mistake.empty())
        return mistake;
    const tPart& leaf = compile.part(found.m_uiPart);
    if (found.m_bCrossed)
        return "Only totals go into arrays, which have many elements";
    if (leaf.m_eKind != PK_leaf)
        return nameOf(leaf) + " is no leaf, so it has no value";
    if (found.m_uiPart >= readBefore)
        return nameOf(leaf) + " is read later";
    // Of the last element, "until" may ask for an alternative.
    if (!isInside(compile, found.m_uiPart, index) && areAlternatives(compile, found.m_uiPart, index))
        return nameOf(leaf) + " is in another alternative";
    if (!leaf.m_tItem.m_vBits.empty() && found.m_uiBits == s_cuiNone)
        return nameOf(leaf) + " consists of bits; name one of them";
    value = {found.m_uiPart, found.m_uiBits};
    return {};
}

/// Puts a decimal constant into units of the last decimal. \return false when it has more decimals, or is no number
bool scale(tConstant& constant, unsigned int decimals)
{
    const std::size_t point = constant.m_strText.find('.');
    std::string digits = constant.m_strText;
    std::size_t missing = decimals;
    if (point != std::string::npos)
    {
        const std::size_t fraction = digits.size() - point - 1;
        if (fraction == 0 || fraction > decimals)
            return false;
        missing -= fraction;
        digits.erase(point, 1);
    }
    const std::string text = constant.m_strText;
    constant = makeConstant(digits.append(missing, '0'));
    constant.m_strText = text;
    return constant.m_bNumber;
}

std::string makeTest(tCompile& compile, const tRule& rule, tTest& test)
{
    const tItem& item = compile.part(test.m_tValue.m_uiPart).m_tItem;
    test.m_eComparison = rule.m_eComparison;
    test.m_vConstants = rule.m_vConstants;
    const bool number = isNumber(item) && !item.m_bExact && item.m_cPoint == 0 && item.m_eForm != IF_float;
    if (rule.m_eComparison == CM_anyBit && !number)
        return "\"&\" looks at the bits of a number";
    for (tConstant& constant : test.m_vConstants)
    {
        if (!number)
            continue;
        if (item.m_bDecimals && !scale(constant, item.m_ucDecimals))
            constant.m_bNumber = false;
        if (!constant.m_bNumber)
            return "\"" + constant.m_strText + "\" is no value of the number " +
                   nameOf(compile.part(test.m_tValue.m_uiPart));
    }
    return {};
}

/// Whether the number can have that value.
bool canBe(const tItem& item, unsigned int bits, unsigned long long value)
{
    unsigned int width = 64;
    if (bits != s_cuiNone)
        width = item.m_vBits[bits].m_uiWidth;
    else if (item.m_eForm == IF_binary && item.m_uiLength < 8)
        width = item.m_uiLength * 8 - (item.m_bSigned ? 1 : 0);
    if (width < 64 && value >> width != 0)
        return false;
    const bool digits = item.m_eForm == IF_digits && item.m_uiLength != 0;
    return !digits || std::to_string(value).size() <= item.m_uiLength;
}

/// Whether a value chooses the alternative; shadowed by the IDs of the others when only its digits would.
bool canBeChosen(tCompile& compile, unsigned int set, unsigned int member)
{
    const tPart& choice = compile.part(set);
    const tPart& part = compile.part(member);
    const tItem& item = compile.part(choice.m_tChoice.m_uiPart).m_tItem;
    const unsigned int bits = choice.m_tChoice.m_uiBits;
    if (!isNumber(item) || item.m_bExact)
        return !part.m_strName.empty() && (item.m_uiLength == 0 || item.m_pPage != nullptr ||
                                           item.m_eForm == IF_hexText || part.m_strName.size() <= item.m_uiLength);
    if (part.m_uiID != 0 && canBe(item, bits, part.m_uiID))
        return true;
    const tConstant digits = makeConstant(part.m_strName);
    if (!digits.m_bNumber || digits.m_bNegative || std::to_string(digits.m_ullMagnitude) != part.m_strName)
        return digits.m_bNumber && digits.m_bNegative && item.m_eForm != IF_bcd;
    const unsigned long long most = 0x7FFFFFFF;
    const bool shadowed =
        digits.m_ullMagnitude != 0 && digits.m_ullMagnitude <= most &&
        compile.m_tPaths.member(set, {"", static_cast<unsigned int>(digits.m_ullMagnitude)}) != s_cuiNone;
    return !shadowed && canBe(item, bits, digits.m_ullMagnitude);
}

}  // namespace

void compileIf(tCompile& compile, unsigned int part, const tRule& rule)
{
    tTest test;
    const unsigned int set = compile.m_tPaths.setAround(part);
    std::string mistake;
    if (isAlternative(compile, part))
        mistake = "One of several parts is there by its choice, so it has no condition; put one around the choice";
    else
        mistake = findValue(compile, part, set, rule.m_vPath, part, test.m_tValue);
    if (mistake.empty())
        mistake = makeTest(compile, rule, test);
    if (!mistake.empty())
        compile.refuse(part, rule, mistake);
    else
        compile.part(part).m_vIf.push_back(test);
}

void compileUntil(tCompile& compile, unsigned int part, const tRule& rule)
{
    tPart& array = compile.part(part);
    if (array.m_vMembers.empty())
        return;
    const unsigned int element = array.m_vMembers.front();
    tTest test;
    std::string mistake;
    if (compile.part(element).m_eKind == PK_leaf && rule.m_vPath.empty())
        test.m_tValue = {element, s_cuiNone};
    else
    {
        const bool isSet = compile.part(element).m_eKind == PK_set;
        const unsigned int set = isSet ? element : compile.m_tPaths.setAround(element);
        mistake = findValue(compile, element, set, rule.m_vPath, array.m_uiAfter, test.m_tValue);
    }
    if (mistake.empty())
        mistake = makeTest(compile, rule, test);
    if (!mistake.empty())
        compile.refuse(part, rule, mistake);
    else
        compile.part(part).m_tUntil = test;
}

void compileOneOfBy(tCompile& compile, unsigned int part, const tRule& rule)
{
    compile.part(part).m_eChoice = CH_value;
    tValueOf value;
    const unsigned int set = compile.m_tPaths.setAround(part);
    std::string mistake = findValue(compile, part, set, rule.m_vPath, part, value);
    if (mistake.empty() && compile.part(part).m_vMembers.empty())
        mistake = "There is nothing to choose from";
    tPart& choice = compile.part(part);
    if (mistake.empty() && rule.m_bLast)
    {
        const unsigned int other = compile.m_tPaths.member(part, rule.m_tLast);
        if (other == s_cuiNone)
            mistake = "There is no part \"" + describeStep(rule.m_tLast) + "\" to choose" +
                      compile.m_tPaths.suggestMember(part, rule.m_tLast.m_strName, false);
        else
            choice.m_uiElse = compile.part(other).m_uiIndex;
    }
    if (!mistake.empty())
    {
        compile.refuse(part, rule, mistake);
        return;
    }
    choice.m_tChoice = value;
    for (const unsigned int member : choice.m_vMembers)
    {
        if (compile.part(member).m_uiIndex != choice.m_uiElse && !canBeChosen(compile, part, member))
            compile.refusePart(member, nameOf(compile.part(member)) + " is never chosen: no value of " +
                                           nameOf(compile.part(value.m_uiPart)) + " has its ID or name");
    }
}

}  // namespace murv::detail

// layout/compile/rule_arguments.cpp - reads the arguments of rules.
#include "layout/compile/rule_arguments.h"

#include "layout/values/checksum.h"

namespace murv::detail
{

namespace
{

constexpr unsigned long long s_cullMostPlus = 0x7FFFFFFF;

/// [+ N | - N]
bool readPlus(CRuleText& text, tRule& rule)
{
    unsigned long long number = 0;
    if (text.takeOperatorAndNumber('+', number))
        rule.m_llPlus = static_cast<long long>(number);
    else if (text.takeOperatorAndNumber('-', number))
        rule.m_llPlus = -static_cast<long long>(number);
    return number <= s_cullMostPlus;
}

/// "." or a path, and the end of a range
bool readPart(CRuleText& text, tRule& rule)
{
    if (!text.isAt("..") && text.takeCharacter('.'))
        return true;
    if (!text.takePath(rule.m_vPath))
        return false;
    rule.m_bLast = text.takeRangeMark();
    return !rule.m_bLast || text.takeStep(rule.m_tLast);
}

bool readSinglePart(CRuleText& text, tRule& rule)
{
    return readPart(text, rule) && !rule.m_bLast;
}

bool takeText(CRuleText& text, tRule& rule)
{
    rule.m_vTexts.emplace_back();
    return text.takeQuoted(rule.m_vTexts.back()) && !rule.m_vTexts.back().empty();
}

}  // namespace

bool readNothing(CRuleText&, tRule&)
{
    return true;
}

bool readNumber(CRuleText& text, tRule& rule)
{
    rule.m_bNumber = true;
    return text.takeNumber(rule.m_ullNumber);
}

bool readMaybeNumber(CRuleText& text, tRule& rule)
{
    return text.atEnd() || readNumber(text, rule);
}

bool readLines(CRuleText& text, tRule& rule)
{
    return text.atEnd() || (text.isAt("\"") ? takeText(text, rule) : readNumber(text, rule));
}

bool readPrefixed(CRuleText& text, tRule& rule)
{
    rule.m_strWord = text.takeWord();
    return !rule.m_strWord.empty() && readPlus(text, rule);
}

bool readChoice(CRuleText& text, tRule& rule)
{
    if (!text.takePath(rule.m_vPath))
        return false;
    rule.m_bLast = text.takeWords("else");
    return !rule.m_bLast || text.takeStep(rule.m_tLast);
}

bool readTest(CRuleText& text, tRule& rule)
{
    if (!readSinglePart(text, rule) || !text.takeComparison(rule.m_eComparison))
        return false;
    std::string value;
    do
    {
        if (!text.takeValue(value, false))
            return false;
        rule.m_vConstants.push_back(makeConstant(value));
    } while (text.takeCharacter('|'));
    return true;
}

bool readSize(CRuleText& text, tRule& rule)
{
    if (!readPart(text, rule))
        return false;
    text.takeOperatorAndNumber('/', rule.m_ullDivisor);
    return rule.m_ullDivisor != 0 && rule.m_ullDivisor <= s_cullMostPlus && readPlus(text, rule);
}

bool readCount(CRuleText& text, tRule& rule)
{
    return readSinglePart(text, rule) && readPlus(text, rule);
}

bool readBitmap(CRuleText& text, tRule& rule)
{
    rule.m_ullNumber = 1;
    if (!readSinglePart(text, rule))
        return false;
    return !text.takeWords("from") ||
           (text.takeNumber(rule.m_ullNumber) && rule.m_ullNumber != 0 && rule.m_ullNumber <= s_cullMostPlus);
}

bool readMark(CRuleText& text, tRule& rule)
{
    return takeText(text, rule);
}

bool readMarks(CRuleText& text, tRule& rule)
{
    do
    {
        if (!takeText(text, rule))
            return false;
    } while (text.takeCharacter('|'));
    return true;
}

bool readAlign(CRuleText& text, tRule& rule)
{
    return readNumber(text, rule) && (text.atEnd() || takeText(text, rule));
}

bool readPathOnly(CRuleText& text, tRule& rule)
{
    return text.takePath(rule.m_vPath);
}

bool readChecksum(CRuleText& text, tRule& rule)
{
    if (!text.takeWords("of"))
    {
        rule.m_strWord = text.takeWord();
        if (!text.takeWords("of"))
            return false;
    }
    E_Checksum kind = CK_crc16Arc;
    if (!findChecksum(rule.m_pRow->m_pName, rule.m_strWord, kind))
        return false;
    rule.m_ucChecksum = kind;
    return readPart(text, rule);
}

bool readValid(CRuleText& text, tRule& rule)
{
    if (text.takeWords("date"))
    {
        rule.m_strWord = text.takeWord();
        return !rule.m_strWord.empty();
    }
    do
    {
        tValidRange range;
        if (!text.takeValue(range.m_strLow, false))
            return false;
        range.m_strHigh = range.m_strLow;
        if (text.takeRangeMark() && !text.takeValue(range.m_strHigh, false))
            return false;
        rule.m_vValid.push_back(range);
    } while (text.takeCharacter('|'));
    return true;
}

bool readBitFields(CRuleText& text, tRule& rule)
{
    do
    {
        unsigned long long width = 0;
        tBitField field{};
        if (!text.takeNumber(width) || width == 0 || width > 64 || !text.takeValue(field.m_strName, true))
            return false;
        field.m_uiWidth = static_cast<unsigned int>(width);
        rule.m_vBits.push_back(field);
    } while (text.takeCharacter(','));
    return true;
}

bool readDecimals(CRuleText& text, tRule& rule)
{
    constexpr unsigned long long most = 18;
    if (text.isAt("\""))
        return takeText(text, rule) && rule.m_vTexts.back().size() == 1;
    return readNumber(text, rule) && rule.m_ullNumber <= most;
}

bool readMaybeTail(CRuleText& text, tRule& rule)
{
    return text.atEnd() || takeText(text, rule);
}

bool readHex(CRuleText& text, tRule& rule)
{
    if (text.takeWords("lower"))
        rule.m_strWord = "lower";
    return readMaybeTail(text, rule);
}

}  // namespace murv::detail

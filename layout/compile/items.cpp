// layout/compile/items.cpp - items from packet expressions, and what several rules together say of them.
#include <algorithm>
#include <limits>

#include "core/text/integer_text.h"
#include "layout/compile/draft.h"
#include "layout/compile/expression.h"
#include "layout/compile/rule_compilers.h"
#include "layout/compile/scalars.h"
#include "layout/values/value_codec.h"

namespace murv::detail
{

namespace
{

constexpr unsigned int s_cuiWidestBinary = 8;

/// The rules that a keyword stands for, in front of all others.
void addKeywordRules(tCompile& compile, unsigned int index, const tPacketExpInfo& pei)
{
    const tRuleRow* const row = findKeywordRow(pei.m_usSkIndex);
    if (row == nullptr)
    {
        compile.refusePart(index, "The packet expression has an unknown keyword");
        return;
    }
    std::vector<tRule>& rules = compile.draft(index).m_vRules;
    tRule rule;
    rule.m_pRow = row;
    rule.m_uiPlace = compile.part(index).m_uiPlace;
    rule.m_bKeyword = true;
    rule.m_strWritten = row->m_pKeyword;
    tRule decimals = rule;
    if (row->m_eOption == KO_decimals && pei.m_ucSkOption != 0)
    {
        decimals.m_pRow = &ruleRow("decimals");
        decimals.m_bNumber = true;
        decimals.m_ullNumber = pei.m_ucSkOption;
        rules.insert(rules.begin(), decimals);
    }
    else if (pei.m_ucSkOption != 0)
    {
        rule.m_bNumber = true;
        rule.m_ullNumber = pei.m_ucSkOption;
        rule.m_strWritten += (rule.m_strWritten.back() == '_' ? "" : "_") + std::to_string(pei.m_ucSkOption);
    }
    rules.insert(rules.begin(), rule);
}

void makeLeaf(tCompile& compile, unsigned int index)
{
    tPart& part = compile.part(index);
    const tPacketExpInfo pei = compile.draft(index).m_pNode->pkt_GetExp();
    part.m_tExpression = pei;
    part.m_bLiteral = isLiteralExpression(pei);
    part.m_bAsks = hasOwnKeyword(pei);
    part.m_pUser = compile.draft(index).m_pNode->pkt_GetOSA4User();
    compile.draft(index).m_uiPlaces = placesOf(pei);
    const std::string mistake = makeBareItem(pei, part.m_tItem);
    if (!mistake.empty())
        compile.refusePart(index, mistake);
    if (pei.m_ucSkKind == s_cucWordKind && pei.m_usSkIndex != 0)
        addKeywordRules(compile, index, pei);
}

void inherit(tCompile& compile, unsigned int index)
{
    const unsigned int parent = compile.part(index).m_uiParent;
    tDraft& draft = compile.draft(index);
    if (parent == s_cuiNone)
        return;
    const tDraft& around = compile.draft(parent);
    if (!draft.m_bOrder)
    {
        draft.m_bOrder = around.m_bOrder;
        draft.m_bLittle = around.m_bLittle;
    }
    if (draft.m_pPage == nullptr)
        draft.m_pPage = around.m_pPage;
}

/// Inherited pages are for text items alone; bytes become text by a word of their own.
void setPage(const tDraft& draft, tItem& item)
{
    if ((draft.m_uiPlaces & (RP_text | RP_ascii)) != 0)
        (draft.m_bRaw ? item.m_pPrefixPage : item.m_pPage) = draft.m_pPage;
    else if (draft.m_bOwnPage && item.m_eForm == IF_bytes)
    {
        item.m_eForm = IF_text;
        item.m_pPage = draft.m_pPage;
    }
}

bool isBinaryForm(E_ItemForm form)
{
    return form == IF_binary || form == IF_float || form == IF_packed || form == IF_bcd;
}

std::string checkBinary(const tItem& item)
{
    if (item.m_eForm == IF_binary && (item.m_uiLength == 0 || item.m_uiLength > s_cuiWidestBinary))
        return "A binary number has 1 to 8 bytes";
    if (item.m_eForm == IF_float && item.m_uiLength != 4 && item.m_uiLength != 8)
        return "\"float\" is for numbers of 4 or 8 bytes";
    if (isBinaryForm(item.m_eForm) && item.m_uiLength == 0)
        return "A packed number has a length";
    return {};
}

std::string checkWords(const tItem& item)
{
    const bool bits = !item.m_vBits.empty();
    const bool digits = item.m_eForm == IF_digits || item.m_eForm == IF_trailing;
    const bool takesSign = item.m_eForm == IF_binary || item.m_eForm == IF_packed || item.m_eForm == IF_zoned;
    const bool takesDecimals = digits || takesSign || item.m_eForm == IF_bcd;
    if (item.m_bSigned && (bits || !takesSign))
        return "\"signed\" is for binary, packed and zoned numbers";
    if (item.m_bDecimals && (bits || !takesDecimals))
        return "\"decimals\" is for numbers with decimal or binary digits, not for bits, octal, hex and float";
    if (item.m_bDecimals && item.m_cPoint != 0 && !digits)
        return "A written decimal point is for numbers in text";
    if (item.m_bExact && !digits)
        return "\"exact\" is for decimal digits";
    if (item.m_strTail.size() >= item.m_uiLength && !item.m_strTail.empty() && item.m_uiLength != 0)
        return "The bytes after the digits leave no room for digits";
    if (item.m_eForm == IF_trailing && item.m_uiLength == 1)
        return "A digit and its sign need 2 bytes";
    if (item.m_eForm == IF_hexText && item.m_uiLength % 2 != 0)
        return "\"hex\" takes two digits for each byte, so the length must be even";
    return {};
}

/// Constants that are compared with numbers are numbers.
std::string checkNumbers(const std::vector<tValidRange>& valid)
{
    for (const tValidRange& range : valid)
    {
        for (const std::string* const text : {&range.m_strLow, &range.m_strHigh})
        {
            if (text->empty() || text->find_first_not_of("0123456789.", text->front() == '-' ? 1 : 0) != text->npos)
                return "\"" + *text + "\" is no number";
        }
    }
    return {};
}

std::string checkValid(const tItem& item, unsigned int places)
{
    return (places & RP_number) == 0 || !item.m_vBits.empty() ? std::string() : checkNumbers(item.m_vValid);
}

/// Rules about values of parts of bits, which are known by now.
void setValidBits(tCompile& compile, unsigned int index)
{
    tPart& part = compile.part(index);
    for (const tRule& rule : compile.draft(index).m_vRules)
    {
        if (rule.m_strBit.empty() || rule.m_pRow->m_pCompile != compileValid)
            continue;
        const auto bits = std::find_if(part.m_tItem.m_vBits.begin(), part.m_tItem.m_vBits.end(),
                                       [&rule](const tBitField& field) { return field.m_strName == rule.m_strBit; });
        std::string mistake = checkNumbers(rule.m_vValid);
        if (bits == part.m_tItem.m_vBits.end())
            mistake = nameOf(part) + " has no bits \"" + rule.m_strBit + "\"";
        else if (!rule.m_strWord.empty())
            mistake = "A part of bits is no date";
        else
            bits->m_vValid = rule.m_vValid;
        if (!mistake.empty())
            compile.refuse(index, rule, mistake);
    }
}

void finishLeaf(tCompile& compile, unsigned int index)
{
    tPart& part = compile.part(index);
    tItem& item = part.m_tItem;
    const tDraft& draft = compile.draft(index);
    const bool ordered = isBinaryForm(item.m_eForm) || item.m_bBinaryPrefix;
    item.m_bLittle = ordered && draft.m_bLittle;
    setPage(draft, item);
    setValidBits(compile, index);
    for (const std::string& mistake : {checkBinary(item), checkWords(item), checkValid(item, draft.m_uiPlaces)})
    {
        if (!mistake.empty())
            compile.refusePart(index, mistake);
    }
    if (part.m_tExpression.m_ucSkKind == 0 && part.m_tExpression.m_usSkIndex == VK_valid && item.m_vValid.empty())
    {
        const std::string only = draft.m_pNode->asString(secondKind(*draft.m_pNode));
        item.m_vValid.push_back({only, only});
    }
}

/// The length before each record is written as the root says for its numbers.
void finishFrame(tCompile& compile)
{
    tItem& prefix = compile.m_tPlan.m_tFrame.m_tPrefix;
    const tDraft& root = compile.draft(0);
    prefix.m_bLittle = root.m_bLittle && prefix.m_eForm == IF_binary;
    prefix.m_pPage = prefix.m_eForm == IF_digits ? root.m_pPage : nullptr;
    prepareItem(prefix);
}

}  // namespace

void makeItems(tCompile& compile)
{
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        const E_PartKind kind = compile.part(i).m_eKind;
        if (kind == PK_leaf)
            makeLeaf(compile, i);
        else
            compile.draft(i).m_uiPlaces = i == 0 ? RP_root : kind == PK_set ? RP_set : RP_array;
    }
}

void compileRules(tCompile& compile, E_RulePhase phase)
{
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        // By index: compiling a rule does not add rules, but may look at those of others.
        for (std::size_t rule = 0; rule < compile.draft(i).m_vRules.size(); ++rule)
        {
            const tRule& at = compile.draft(i).m_vRules[rule];
            const unsigned int places = at.m_strBit.empty() ? compile.draft(i).m_uiPlaces : unsigned{RP_bit};
            if (at.m_pRow->m_ePhase == phase && (at.m_pRow->m_uiPlaces & places) != 0)
                at.m_pRow->m_pCompile(compile, i, at);
        }
    }
}

void finishItems(tCompile& compile)
{
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        inherit(compile, i);
        if (compile.part(i).m_eKind == PK_leaf)
            finishLeaf(compile, i);
    }
    finishFrame(compile);
}

}  // namespace murv::detail

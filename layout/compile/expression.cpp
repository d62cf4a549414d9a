// layout/compile/expression.cpp - what a packet expression alone says of an item.
#include "layout/compile/expression.h"

#include "layout/compile/rule_table.h"
#include "murv/fields.h"
#include "packet/keyword_table.h"

namespace murv::detail
{

namespace
{

constexpr unsigned int s_cuiWord = 8;  // bytes of the widest binary number

const tKeywordRow* internalKeyword(const tPacketExpInfo& pei)
{
    return pei.m_ucSkKind == 0 && pei.m_usSkIndex != 0 ? findKeyword(pei.m_usSkIndex) : nullptr;
}

std::string keywordText(const tPacketExpInfo& pei)
{
    if (pei.m_usSkIndex == 0)
        return {};
    const char* name = nullptr;
    if (const tKeywordRow* const row = internalKeyword(pei))
        name = row->m_pName;
    else if (const CFields::tGetTxtFP getText = CFields::getGetTxtFP4ESK(pei.m_ucSkKind))
        name = getText(pei.m_usSkIndex, pei.m_ucSkOption);
    std::string text = name == nullptr ? std::string() : name;
    return text.empty() || pei.m_ucSkOption == 0 ? text : text + std::to_string(pei.m_ucSkOption);
}

std::string makeTime(const tPacketExpInfo& pei, const tKeywordRow& row, tItem& item)
{
    item.m_pTime = &row;
    if (pei.m_ePacketExp == PEC_A && pei.m_eLengthExp == LEC_F && pei.m_uiLength != 0 &&
        pei.m_uiLength != row.name().size())
        return std::string(row.name()) + " has " + std::to_string(row.name().size()) + " digits, but the item has " +
               std::to_string(pei.m_uiLength) + " bytes";
    return {};
}

}  // namespace

std::string describeExpression(const tPacketExpInfo& pei)
{
    std::string text;
    text += pei.m_ePacketExp == PEC_B ? 'B' : 'A';
    text += pei.m_eRuntimeExp == REC_N ? 'N' : 'C';
    text += pei.m_eLengthExp == LEC_V ? 'V' : pei.m_eLengthExp == LEC_D ? 'D' : 'F';
    if (pei.m_eLengthExp != LEC_V)
        text += std::to_string(pei.m_uiLength);
    else if (pei.m_ucPrefixSize != 0)
        text += std::to_string(pei.m_ucPrefixSize) + (pei.m_cCalibration < 0 ? "" : "+") +
                std::to_string(pei.m_cCalibration);
    return text + keywordText(pei);
}

bool readFixedExpression(std::string_view text, tPacketExpInfo& pei)
{
    unsigned long long length = 0;
    pei = {};
    if (text.size() < 4 || (text[0] != 'A' && text[0] != 'B') || (text[1] != 'N' && text[1] != 'C') || text[2] != 'F')
        return false;
    CRuleText digits(text.substr(3));
    if (!digits.takeNumber(length) || !digits.atEnd() || length > 0xFFFFFFFF)
        return false;
    pei.m_ePacketExp = text[0] == 'B' ? PEC_B : PEC_A;
    pei.m_eRuntimeExp = text[1] == 'N' ? REC_N : REC_C;
    pei.m_uiLength = static_cast<unsigned int>(length);
    return true;
}

bool isLiteralExpression(const tPacketExpInfo& pei)
{
    return pei.m_ucSkKind == 0 && pei.m_usSkIndex == VK_fix;
}

bool hasOwnKeyword(const tPacketExpInfo& pei)
{
    return pei.m_usSkIndex != 0 && pei.m_ucSkKind != 0 && pei.m_ucSkKind != s_cucWordKind;
}

unsigned int placesOf(const tPacketExpInfo& pei)
{
    const bool binary = pei.m_ePacketExp == PEC_B;
    const tKeywordRow* const row = internalKeyword(pei);
    const unsigned int time = row != nullptr && row->m_eRole == KR_time ? unsigned{RP_time} : 0;
    if (pei.m_eRuntimeExp == REC_N)
        return time | (binary ? unsigned{RP_binary} : unsigned{RP_ascii});
    return time | (binary ? unsigned{RP_bytes} : unsigned{RP_text});
}

std::string makeBareItem(const tPacketExpInfo& pei, tItem& item)
{
    const bool binary = pei.m_ePacketExp == PEC_B;
    const bool number = pei.m_eRuntimeExp == REC_N;
    item.m_eForm = number ? (binary ? IF_binary : IF_digits) : (binary ? IF_bytes : IF_text);
    item.m_uiLength = pei.m_eLengthExp == LEC_V ? 0 : pei.m_uiLength;
    item.m_bVaries = pei.m_eLengthExp == LEC_V;
    item.m_ucPrefix = pei.m_eLengthExp == LEC_V ? pei.m_ucPrefixSize : 0;
    item.m_cCalibration = pei.m_cCalibration;
    item.m_bBinaryPrefix = binary && item.m_bVaries;
    const tKeywordRow* const row = internalKeyword(pei);
    if (row != nullptr && row->m_eRole == KR_size)
        return "Write \"size of PART\" about the number instead of \"" + keywordText(pei) + "\"";
    if (hasOwnKeyword(pei) && pei.m_eLengthExp == LEC_D)
        return "Write length code F and length 0, for which the callback gives the length, instead of D";
    if (hasOwnKeyword(pei) && CFields::getAllotPktFP4ESK(pei.m_ucSkKind) == nullptr &&
        CFields::getParsePktFP4ESK(pei.m_ucSkKind) == nullptr)
        return "The keyword of kind " + std::to_string(pei.m_ucSkKind) +
               " has no callbacks; register them before the layout is compiled";
    if (pei.m_eLengthExp != LEC_F && pei.m_eLengthExp != LEC_V)
        return "Write length code F, and \"size of PART\" about the number that says the size, instead of D";
    if (binary && number && item.m_bVaries)
        return "BNV does not come back; write BNF, or BCV for bytes, or \"size of PART\" about a number";
    if (item.m_bVaries && (item.m_ucPrefix == 0 || item.m_ucPrefix > 9))
        return "A length prefix has 1 to 9 digits or bytes";
    if (pei.m_ucSkKind == 0 && pei.m_usSkIndex != 0 && row == nullptr)
        return "The packet expression has an unknown keyword";
    if (row != nullptr && row->m_eRole == KR_time)
        return makeTime(pei, *row, item);
    static_assert(s_cuiWord == sizeof(unsigned long long));
    return {};
}

}  // namespace murv::detail

// packet/pei_rules.cpp - which packet expressions are valid, and which value is saved with them.
//
// One order of tests for files and text, so that both refuse the same with the same words.
#include "packet/pei_rules.h"

#include "core/field_access.h"
#include "packet/keyword_table.h"

namespace murv::detail
{

namespace
{

constexpr unsigned int s_cuiLargestDigit = 9;

const char* findExternalFault(const tPacketExpInfo& pei)
{
    const CFields::tCheckIdxFP check = CFields::getCheckIdxFP4ESK(pei.m_ucSkKind);
    if (check == nullptr)
        return "Not exist supporting-keyword kind";
    const int verdict = check(pei.m_usSkIndex, pei.m_ucSkOption);
    if (verdict == 0)
        return "Not exist supporting-keyword index";
    return verdict < 0 ? "Invalid index or option for supporting-keyword" : nullptr;
}

const char* findInternalFault(const tPacketExpInfo& pei)
{
    const tKeywordRow* const row = findKeyword(pei.m_usSkIndex);
    if (row == nullptr)
        return "Invalid internal supporting-keyword index";
    if (row->takesOption() && pei.m_ucSkOption == 0)
        return "Supporting-keyword option value must be bigger than 0";
    return nullptr;
}

}  // namespace

const char* findPeiFault(const tPacketExpInfo& pei)
{
    if (pei.m_ucPrefixSize > s_cuiLargestDigit)
        return s_cpPrefixTooBig;
    if (pei.m_ucSkOption > s_cuiLargestDigit)
        return "Supporting-keyword option value must be little than 10";
    if (pei.m_usSkIndex == 0)
        return nullptr;
    return pei.m_ucSkKind == 0 ? findInternalFault(pei) : findExternalFault(pei);
}

tSavedValue chooseSavedValue(const CFields& leaf, bool maySaveSecond)
{
    tSavedValue saved{VK_actual, tFieldAccess::pei(leaf)};
    if (!isDualExpression(saved.m_tPEI) || leaf.isEqualDualValue())
        return saved;
    if (maySaveSecond)
        saved.m_eKind = VK_fix;
    else
        saved.m_tPEI.m_usSkIndex = 0;
    return saved;
}

}  // namespace murv::detail

// layout/run/kept_values.cpp - kept values, and conditions about them.
#include "layout/run/kept_values.h"

#include <algorithm>

#include "layout/plan/members.h"
#include "layout/values/value_codec.h"

namespace murv::detail
{

namespace
{

/// -1, 0 or 1; the value is a number.
int compareNumber(const tScalar& value, const tConstant& constant)
{
    const bool negative = value.m_eType == DT_sint && value.m_llValue < 0;
    const unsigned long long magnitude = negative ? 0 - value.m_ullValue : value.m_ullValue;
    const bool constantNegative = constant.m_bNegative && constant.m_ullMagnitude != 0;
    if (negative != constantNegative)
        return negative ? -1 : 1;
    if (magnitude == constant.m_ullMagnitude)
        return 0;
    return (magnitude < constant.m_ullMagnitude) == negative ? 1 : -1;
}

bool isInteger(const tScalar& value)
{
    return value.m_eType == DT_sint || value.m_eType == DT_uint;
}

bool compares(const tItem& item, const tScalar& value, E_Comparison comparison, const tConstant& constant)
{
    const bool numbers = isInteger(value) && constant.m_bNumber;
    if (comparison == CM_anyBit)
        return numbers && (value.m_ullValue & constant.m_ullMagnitude) != 0;
    if (numbers == (value.m_eType == DT_codelist))  // a text against a number: unequal
        return comparison == CM_unequal;
    const int order = numbers
                          ? compareNumber(value, constant)
                          : withoutPadding(item, value.m_strvText).compare(withoutPadding(item, constant.m_strText));
    switch (comparison)
    {
    case CM_equal: return order == 0;
    case CM_unequal: return order != 0;
    case CM_less: return order < 0;
    case CM_greater: return order > 0;
    case CM_notGreater: return order <= 0;
    case CM_notLess: return order >= 0;
    case CM_anyBit: break;
    }
    return false;
}

}  // namespace

unsigned long long bitsOf(const tBitField& field, unsigned long long number)
{
    const unsigned long long mask = mask4Width(field.m_uiWidth);
    return (number >> field.m_uiShift) & mask;
}

unsigned int namedMember(const tPlan& plan, const tPart& set, const tScalar& value)
{
    if (value.m_eType == DT_codelist)
        return findMember(plan, set, withoutPadding(plan.m_vParts[set.m_tChoice.m_uiPart].m_tItem, value.m_strvText));
    const unsigned int member = findMember(plan, set, value.m_ullValue);
    if (member != s_cuiNone)
        return member;
    return findMember(plan, set,
                      std::string_view(value.m_eType == DT_sint ? std::to_string(value.m_llValue)
                                                                : std::to_string(value.m_ullValue)));
}

void CKeptValues::set(unsigned int part, const tScalar& value)
{
    tKept& kept = m_vKept[m_tPlan.m_vRegister4Part[part]];
    kept.m_bPresent = value.m_eType != DT_null;
    kept.m_tValue = value;
    if (value.m_eType == DT_codelist)
        kept.m_strText.assign(value.m_strvText);
}

void CKeptValues::clearAll()
{
    for (tKept& kept : m_vKept)
        kept.m_bPresent = false;
}

bool CKeptValues::get(const tValueOf& of, tScalar& value) const
{
    const tKept& kept = m_vKept[m_tPlan.m_vRegister4Part[of.m_uiPart]];
    if (!kept.m_bPresent)
        return false;
    value = kept.m_tValue;
    value.m_strvText = kept.m_strText;
    if (of.m_uiBits != s_cuiNone)
        value = makeScalar(false, bitsOf(m_tPlan.m_vParts[of.m_uiPart].m_tItem.m_vBits[of.m_uiBits], value.m_ullValue));
    return true;
}

bool CKeptValues::getNumber(const tValueOf& of, unsigned long long& number) const
{
    tScalar value;
    if (!get(of, value) || !isInteger(value) || (value.m_eType == DT_sint && value.m_llValue < 0))
        return false;
    number = value.m_ullValue;
    return true;
}

bool CKeptValues::holds(const tTest& test) const
{
    tScalar value;
    if (!get(test.m_tValue, value))
        return false;
    const tItem& item = m_tPlan.m_vParts[test.m_tValue.m_uiPart].m_tItem;
    // Unequal to several: unequal to each.
    if (test.m_eComparison == CM_unequal)
        return std::all_of(test.m_vConstants.begin(), test.m_vConstants.end(),
                           [&](const tConstant& constant) { return compares(item, value, CM_unequal, constant); });
    return std::any_of(test.m_vConstants.begin(), test.m_vConstants.end(),
                       [&](const tConstant& constant) { return compares(item, value, test.m_eComparison, constant); });
}

bool CKeptValues::holdAll(const std::vector<tTest>& tests) const
{
    return std::all_of(tests.begin(), tests.end(), [this](const tTest& test) { return holds(test); });
}

bool CKeptValues::hasBit(const tValueOf& bitmap, unsigned int bit) const
{
    tScalar value;
    if (!get(bitmap, value) || bit / 8 >= value.m_strvText.size())
        return false;
    return (static_cast<unsigned char>(value.m_strvText[bit / 8]) >> (7 - bit % 8) & 1) != 0;
}

}  // namespace murv::detail

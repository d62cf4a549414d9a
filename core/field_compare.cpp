// core/field_compare.cpp - equality and order of trees.
//
// Two trees are walked in step. Only types and first values count; the first pair that differs decides.

#include <cstring>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/memory/walk_stack.h"
#include "murv/fields.h"

namespace murv
{

using detail::tFieldAccess;

namespace
{
template <typename T>
int order(T a, T b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

std::uint32_t count(const CFieldVector* members)
{
    return members == nullptr ? 0 : members->count();
}

int orderCodes(const CFields& a, const CFields& b)
{
    const bool aNull = tFieldAccess::value(a).m_pData == nullptr;
    const bool bNull = tFieldAccess::value(b).m_pData == nullptr;
    if (aNull || bNull)
        return order(!aNull, !bNull);
    // Compares as unsigned bytes, then by length.
    const int result = tFieldAccess::codes(a).compare(tFieldAccess::codes(b));
    return order(result, 0);
}

/// How two nodes compare by their own types, values and member counts.
struct tOrder
{
    int m_iOrder;       // -1, 0 or 1; NaN is in no order with anything
    bool m_bUnordered;  // m_iOrder is 0, but the two are not equal: one is a NaN
};

tOrder orderNodes(const CFields& a, const CFields& b)
{
    const E_DataType type = tFieldAccess::type(a);
    if (type != tFieldAccess::type(b))
        return {order(type, tFieldAccess::type(b)), false};
    const uMultiValue& aValue = tFieldAccess::value(a);
    const uMultiValue& bValue = tFieldAccess::value(b);
    switch (type)
    {
    case DT_array:
    case DT_fields: return {order(count(aValue.m_pFV), count(bValue.m_pFV)), false};
    case DT_bool: return {order(aValue.m_bValue, bValue.m_bValue), false};
    case DT_sint: return {order(aValue.m_llValue, bValue.m_llValue), false};
    case DT_uint: return {order(aValue.m_ullValue, bValue.m_ullValue), false};
    case DT_double:
        return {order(aValue.m_dValue, bValue.m_dValue),
                aValue.m_dValue != aValue.m_dValue || bValue.m_dValue != bValue.m_dValue};
    case DT_codelist: return {orderCodes(a, b), false};
    default: return {0, false};
    }
}

/// \param stopAtNaN  for equality, where a NaN is a difference; for order it is none
tOrder orderTrees(const CFields& a, const CFields& b, bool stopAtNaN)
{
    struct tFrame
    {
        const CFieldVector* m_pA;
        const CFieldVector* m_pB;
        std::uint32_t m_uiIndex;
    };
    const auto decides = [stopAtNaN](const tOrder& found) {
        return found.m_iOrder != 0 || (stopAtNaN && found.m_bUnordered);
    };

    detail::CWalkStack<tFrame> stack;
    // Only for nodes that are equal so far, which have as many members each.
    const auto enter = [&stack](const CFieldVector* aMembers, const CFieldVector* bMembers) {
        if (aMembers != nullptr && bMembers != nullptr && aMembers->count() != 0)
            stack.push({aMembers, bMembers, 0});
    };

    tOrder found = orderNodes(a, b);
    if (decides(found))
        return found;
    enter(tFieldAccess::members(a), tFieldAccess::members(b));
    while (!stack.empty())
    {
        tFrame& frame = stack.top();
        if (frame.m_uiIndex == frame.m_pA->count())
        {
            stack.pop();
            continue;
        }
        const CFields& aMember = frame.m_pA->at(frame.m_uiIndex);
        const CFields& bMember = frame.m_pB->at(frame.m_uiIndex);
        ++frame.m_uiIndex;
        found = orderNodes(aMember, bMember);
        if (decides(found))
            return found;
        enter(tFieldAccess::members(aMember), tFieldAccess::members(bMember));
    }
    return {0, false};
}
}  // namespace

bool CFields::operator==(const CFields& b) const
{
    const tOrder found = orderTrees(*this, b, true);
    return found.m_iOrder == 0 && !found.m_bUnordered;
}

bool CFields::operator!=(const CFields& b) const
{
    return !(*this == b);
}

bool CFields::operator<(const CFields& b) const
{
    return compare(b) < 0;
}

bool CFields::operator>(const CFields& b) const
{
    return compare(b) > 0;
}

bool CFields::operator<=(const CFields& b) const
{
    return compare(b) <= 0;
}

bool CFields::operator>=(const CFields& b) const
{
    return compare(b) >= 0;
}

int CFields::compare(const CFields& b) const
{
    return orderTrees(*this, b, false).m_iOrder;
}

bool CFields::operator!() const
{
    return isNull();
}

}  // namespace murv

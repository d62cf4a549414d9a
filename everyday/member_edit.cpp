// everyday/member_edit.cpp - adds and arranges members.
#include "everyday/member_edit.h"

#include <new>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "murv/edit.h"

namespace murv::detail
{

bool isMemberName(std::string_view name)
{
    return !name.empty() && name.size() <= s_cuiLongestName;
}

CFields& appendValue(CFields& container, std::string_view name, CFields&& value)
{
    if (name.empty())
        value.clearName();
    else
        value.setName(name);
    if (tFieldAccess::members(container) == nullptr)
        makeContainer(container, name.empty() ? DT_array : DT_fields);
    CFields& member =
        name.empty() ? tFieldAccess::append(container) : tFieldAccess::appendMember(container, nullptr, 0, 0);
    tFieldAccess::take(member, value);
    return member;
}

void orderMembers(CFields& node, const std::vector<std::uint32_t>& order)
{
    const E_DataType type = tFieldAccess::type(node);
    if (order.empty())
        return makeContainer(node, type);
    if (order.size() > static_cast<std::size_t>(CFields::maxSint32))
        throw std::bad_alloc();  // no machine has members of 128 GB
    const CFieldVector& before = *tFieldAccess::members(node);
    tSlot fresh{type, false, {}};
    fresh.m_uValue.m_pFV = CFieldVector::make(static_cast<std::uint32_t>(order.size()));
    for (const std::uint32_t index : order)
        tFieldAccess::take(fresh.m_uValue.m_pFV->appendInPlace(), before.at(index));
    if (type == DT_fields)
        CFieldVector::indexNames(fresh.m_uValue.m_pFV);
    tFieldAccess::replaceValue(node, fresh);
}

}  // namespace murv::detail

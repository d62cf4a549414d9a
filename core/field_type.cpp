// core/field_type.cpp - tests of what a value is, and of what it can be read as.
#include "core/field_type.h"

#include <cmath>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/throw.h"
#include "murv/fields.h"

namespace murv
{

using detail::s_cdTwoTo63;
using detail::s_cdTwoTo64;
using detail::tFieldAccess;
using detail::tSlot;

namespace
{
bool isWhole(double value)
{
    double whole = 0;
    return std::modf(value, &whole) == 0.0;
}
}  // namespace

bool CFields::isNull(E_ValueKind vk) const
{
    return getDT(vk) == DT_null;
}

bool CFields::isBool(E_ValueKind vk) const
{
    return getDT(vk) == DT_bool;
}

bool CFields::isCodelist(E_ValueKind vk) const
{
    return getDT(vk) == DT_codelist;
}

bool CFields::isArray(E_ValueKind vk) const
{
    return getDT(vk) == DT_array;
}

bool CFields::isField(E_ValueKind vk) const
{
    return getDT(vk) == DT_fields;
}

bool CFields::isSint32(E_ValueKind vk) const
{
    const tSlot slot = tFieldAccess::slot(*this, vk);
    switch (slot.m_eType)
    {
    case DT_sint: return slot.m_uValue.m_llValue >= minSint32 && slot.m_uValue.m_llValue <= maxSint32;
    case DT_uint: return slot.m_uValue.m_ullValue <= static_cast<unsigned int>(maxSint32);
    case DT_double:
        return slot.m_uValue.m_dValue >= minSint32 && slot.m_uValue.m_dValue <= maxSint32 &&
               isWhole(slot.m_uValue.m_dValue);
    default: return false;
    }
}

bool CFields::isUint32(E_ValueKind vk) const
{
    const tSlot slot = tFieldAccess::slot(*this, vk);
    switch (slot.m_eType)
    {
    case DT_sint: return slot.m_uValue.m_llValue >= 0 && slot.m_uValue.m_llValue <= maxUint32;
    case DT_uint: return slot.m_uValue.m_ullValue <= maxUint32;
    case DT_double:
        return slot.m_uValue.m_dValue >= 0.0 && slot.m_uValue.m_dValue <= maxUint32 && isWhole(slot.m_uValue.m_dValue);
    default: return false;
    }
}

bool CFields::isSint64(E_ValueKind vk) const
{
    const tSlot slot = tFieldAccess::slot(*this, vk);
    switch (slot.m_eType)
    {
    case DT_sint: return true;
    case DT_uint: return slot.m_uValue.m_ullValue <= static_cast<unsigned long long>(maxSint64);
    case DT_double:
        return slot.m_uValue.m_dValue >= -s_cdTwoTo63 && slot.m_uValue.m_dValue < s_cdTwoTo63 &&
               isWhole(slot.m_uValue.m_dValue);
    default: return false;
    }
}

bool CFields::isUint64(E_ValueKind vk) const
{
    const tSlot slot = tFieldAccess::slot(*this, vk);
    switch (slot.m_eType)
    {
    case DT_sint: return slot.m_uValue.m_llValue >= 0;
    case DT_uint: return true;
    case DT_double:
        return slot.m_uValue.m_dValue >= 0.0 && slot.m_uValue.m_dValue < s_cdTwoTo64 && isWhole(slot.m_uValue.m_dValue);
    default: return false;
    }
}

bool CFields::isIntegral(E_ValueKind vk) const
{
    return isSint64(vk) || isUint64(vk);
}

bool CFields::isNumeric(E_ValueKind vk) const
{
    const E_DataType held = getDT(vk);
    return held == DT_sint || held == DT_uint || held == DT_double;
}

bool CFields::isDouble(E_ValueKind vk) const
{
    return isNumeric(vk);
}

bool CFields::isConvertible(E_DataType dt, E_ValueKind vk) const
{
    const tSlot slot = tFieldAccess::slot(*this, vk);
    const E_DataType held = slot.m_eType;
    const bool isSimple = isNumeric(vk) || held == DT_bool || held == DT_null;
    const auto isDoubleIn = [&slot](double low, double high) {
        return slot.m_eType == DT_double && slot.m_uValue.m_dValue >= low && slot.m_uValue.m_dValue <= high;
    };
    switch (dt)
    {
    case DT_null:
        if (isNumeric(vk))
            return asDouble(vk) == 0.0;
        if (held == DT_bool)
            return !slot.m_uValue.m_bValue;
        if (held == DT_codelist)
            return getRawBytes(vk) == 0;
        return held == DT_null || getChildCount() == 0;
    case DT_array:
    case DT_fields: return held == dt || held == DT_null;
    case DT_bool:
    case DT_double: return isSimple;
    case DT_sint: return isSint32(vk) || isDoubleIn(minSint32, maxSint32) || held == DT_bool || held == DT_null;
    case DT_uint: return isUint32(vk) || isDoubleIn(0.0, maxUint32) || held == DT_bool || held == DT_null;
    case DT_codelist: return isSimple || held == DT_codelist;
    }
    detail::throwAt("murv::CFields::isConvertible", "Unknown data type(%d)", static_cast<int>(dt));
}

}  // namespace murv

// core/field_value.cpp - the two value slots: types, setting, copying, swapping, assignment.

#include <cstring>
#include <utility>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/throw.h"
#include "core/tree_walk.h"
#include "murv/fields.h"

namespace murv
{

using detail::tFieldAccess;
using detail::throwAt;
using detail::tSlot;

namespace
{
constexpr const char* s_cpSetValue = "murv::CFields::setValue";

void requireKind(E_ValueKind vk)
{
    if (!CFields::isValidVK(vk))
        throwAt(s_cpSetValue, "Unknown value type(%d)", static_cast<int>(vk));
}

template <typename T>
bool setScalar(CFields& node, E_ValueKind vk, E_DataType type, T uMultiValue::*member, T value)
{
    requireKind(vk);
    tSlot slot{type, false, {}};
    slot.m_uValue.*member = value;
    tFieldAccess::replaceSlot(node, vk, slot);
    return true;
}

bool setCodes(CFields& node, E_ValueKind vk, const char* text, std::size_t length)
{
    if (text == nullptr)
        throwAt(s_cpSetValue, "Value paramter has NULL pointer");
    requireKind(vk);
    tSlot slot{DT_codelist, true, {}};
    slot.m_uValue.m_pData = detail::duplicatePrefixedStream(
        text, length > CFields::maxUint32 ? CFields::maxUint32 : static_cast<unsigned int>(length));
    tFieldAccess::replaceSlot(node, vk, slot);
    return true;
}

/// A node cannot change places with a node below it.
void requireApart(const CFields& a, const CFields& b)
{
    if (detail::holds(a, b) || detail::holds(b, a))
        detail::throwMismatch();
}

void swapFirst(CFields& a, CFields& b, bool withPacketExp)
{
    const tSlot first = tFieldAccess::slot(a, VK_actual);
    tFieldAccess::setSlot(a, VK_actual, tFieldAccess::slot(b, VK_actual));
    tFieldAccess::setSlot(b, VK_actual, first);
    if (!withPacketExp)
        return;
    std::swap(tFieldAccess::pei(a), tFieldAccess::pei(b));
    if (const void* const user = b.pkt_GetOSA4User())
    {
        const void* const own = a.pkt_GetOSA4User();
        tFieldAccess::sideRecord(b)->m_pOSA = own;
        tFieldAccess::sideRecord(a)->m_pOSA = user;
    }
}

/// The only step of an exchange that may run out of memory; it comes first.
void prepareSwap(CFields& a, CFields& b, bool userPointer, bool comments)
{
    if ((userPointer && b.pkt_GetOSA4User() != nullptr) || (comments && (a.isComment() || b.isComment())))
    {
        tFieldAccess::makeSideRecord(a);
        tFieldAccess::makeSideRecord(b);
    }
}
}  // namespace

bool CFields::isValidDT(unsigned int dt)
{
    return dt <= DT_codelist;
}

bool CFields::isValidVK(unsigned int vk)
{
    return vk <= VK_valid;
}

E_DataType CFields::getDT(E_ValueKind vk) const
{
    return tFieldAccess::type(*this, vk);
}

E_ValueKind CFields::getVK() const
{
    return tFieldAccess::kind(*this);
}

bool CFields::setVK(E_ValueKind vk)
{
    if (!isValidVK(vk))
        return false;
    if (vk == getVK())
        return true;
    if (vk == VK_actual)
    {
        tFieldAccess::dropSecond(*this);
        return true;
    }
    if (getDT(VK_fix) == DT_null)
    {
        if (tFieldAccess::isContainer(*this))
            return false;
        tFieldAccess::replaceSlot(*this, VK_fix, tFieldAccess::copySlot(tFieldAccess::slot(*this, VK_actual)));
    }
    tFieldAccess::setKind(*this, vk);
    return true;
}

const uMultiValue& CFields::getValueRef(E_ValueKind vk) const
{
    static const uMultiValue nothing;
    if (vk == VK_actual)
        return m_uActValue;
    const detail::tSideRecord* const record = tFieldAccess::sideRecord(*this);
    return record == nullptr ? nothing : record->m_tSecond.m_uValue;
}

const void* CFields::getValuePtr(E_ValueKind vk) const
{
    const E_DataType held = getDT(vk);
    const uMultiValue& value = getValueRef(vk);
    if (held == DT_codelist)
        return detail::view4Codes(tFieldAccess::slot(*this, vk).m_bOwned, value.m_pData).data();
    return held >= DT_bool ? &value : nullptr;
}

unsigned int CFields::getRawBytes(E_ValueKind vk) const
{
    const tSlot slot = tFieldAccess::slot(*this, vk);
    switch (slot.m_eType)
    {
    case DT_bool: return 1;
    case DT_sint:
    case DT_uint:
    case DT_double: return sizeof(uMultiValue);
    case DT_codelist: return static_cast<unsigned int>(detail::view4Codes(slot.m_bOwned, slot.m_uValue.m_pData).size());
    default: return 0;
    }
}

bool CFields::isEqualDualValue() const
{
    const tSlot first = tFieldAccess::slot(*this, VK_actual);
    const tSlot second = tFieldAccess::slot(*this, VK_fix);
    if (tFieldAccess::isContainer(first.m_eType) || first.m_eType != second.m_eType)
        return false;
    switch (first.m_eType)
    {
    case DT_bool: return first.m_uValue.m_bValue == second.m_uValue.m_bValue;
    case DT_sint:
    case DT_uint: return first.m_uValue.m_ullValue == second.m_uValue.m_ullValue;
    case DT_double: return first.m_uValue.m_dValue == second.m_uValue.m_dValue;
    case DT_codelist:
        if (first.m_uValue.m_pData == nullptr || second.m_uValue.m_pData == nullptr)
            return first.m_uValue.m_pData == second.m_uValue.m_pData;
        return detail::view4Codes(first.m_bOwned, first.m_uValue.m_pData) ==
               detail::view4Codes(second.m_bOwned, second.m_uValue.m_pData);
    default: return true;
    }
}

void CFields::clearValue(E_DataType dt, E_ValueKind vk, bool owned)
{
    const tSlot blank{dt, owned, {}};
    if (vk != VK_actual)
        tFieldAccess::replaceSlot(*this, VK_fix, blank);
    if (vk == VK_actual || vk == detail::s_ceBothKinds)
        tFieldAccess::replaceValue(*this, blank);
}

bool CFields::setValue(E_DataType dt, E_ValueKind vk)
{
    requireKind(vk);
    if (!isValidDT(dt))
    {
        clearValue(DT_null, vk, false);
        if (vk == VK_actual)
            throwAt(s_cpSetValue, "Unknown data type(%d)", static_cast<int>(dt));
        throwAt(s_cpSetValue, "Mismatched data type(%d) for value type(%d)", static_cast<int>(dt),
                static_cast<int>(vk));
    }
    const bool container = tFieldAccess::isContainer(dt);
    if (container && vk != VK_actual)
    {
        tFieldAccess::dropSecond(*this);
        return false;
    }
    clearValue(dt, vk, false);
    if (container)
        m_uActValue.m_pFV = CFieldVector::empty();
    return true;
}

bool CFields::setValue(bool value, E_ValueKind vk)
{
    return setScalar(*this, vk, DT_bool, &uMultiValue::m_ullValue, detail::boolValue(value).m_ullValue);
}

bool CFields::setValue(int value, E_ValueKind vk)
{
    return setScalar(*this, vk, DT_sint, &uMultiValue::m_llValue, static_cast<long long>(value));
}

bool CFields::setValue(unsigned int value, E_ValueKind vk)
{
    return setScalar(*this, vk, DT_uint, &uMultiValue::m_ullValue, static_cast<unsigned long long>(value));
}

bool CFields::setValue(long value, E_ValueKind vk)
{
    return setScalar(*this, vk, DT_sint, &uMultiValue::m_llValue, static_cast<long long>(value));
}

bool CFields::setValue(unsigned long value, E_ValueKind vk)
{
    return setScalar(*this, vk, DT_uint, &uMultiValue::m_ullValue, static_cast<unsigned long long>(value));
}

bool CFields::setValue(long long value, E_ValueKind vk)
{
    return setScalar(*this, vk, DT_sint, &uMultiValue::m_llValue, value);
}

bool CFields::setValue(unsigned long long value, E_ValueKind vk)
{
    return setScalar(*this, vk, DT_uint, &uMultiValue::m_ullValue, value);
}

bool CFields::setValue(double value, E_ValueKind vk)
{
    return setScalar(*this, vk, DT_double, &uMultiValue::m_dValue, value);
}

bool CFields::setValue(const char* text, E_ValueKind vk)
{
    return setCodes(*this, vk, text, text == nullptr ? 0 : std::strlen(text));
}

bool CFields::setValue(const char* text, unsigned int length, E_ValueKind vk)
{
    return setCodes(*this, vk, text, length);
}

bool CFields::setValue(const std::string& text, E_ValueKind vk)
{
    return setCodes(*this, vk, text.data(), text.size());
}

bool CFields::setValue(std::string_view text, E_ValueKind vk)
{
    // A view without data is an empty text, not a null pointer that somebody passed.
    return setCodes(*this, vk, text.data() == nullptr ? "" : text.data(), text.size());
}

bool CFields::setValue(const CStaticString& text, E_ValueKind vk)
{
    if (text.c_str() == nullptr)
        throwAt(s_cpSetValue, "Value paramter has NULL pointer");
    return setScalar(*this, vk, DT_codelist, &uMultiValue::m_pData, text.c_str());
}

bool CFields::setValue(const CFields& source)
{
    // The source may be this node, a part or a parent of it: copy all before anything is released.
    CFields copy;
    tFieldAccess::copyValues(copy, source);
    const bool refused = copy.getVK() != VK_actual && tFieldAccess::isContainer(copy);
    tFieldAccess::alignSecond(copy);
    tFieldAccess::takeValues(*this, copy);
    if (refused)
        tFieldAccess::dropSecond(*this);
    return !refused;
}

bool CFields::setField(const CFields& source)
{
    CFields copy(source);
    tFieldAccess::takeField(*this, copy);
    return true;
}

CFields& CFields::operator=(const CFields& source)
{
    CFields copy(source);
    tFieldAccess::takeAssigned(*this, copy);
    return *this;
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): a second value or a comment to hold may need memory
CFields& CFields::operator=(CFields&& source)
{
    if (&source == this)
        return *this;
    if (detail::holdsNear(source, *this))  // it cannot move into a part of itself, but its copy can
        return *this = static_cast<const CFields&>(source);
    if (detail::s_cbMovesAreChecked && detail::holds(source, *this))
        detail::throwMismatch();
    if (tFieldAccess::sideRecord(source) != nullptr)
        tFieldAccess::makeSideRecord(*this);  // while the source is still whole
    CFields moved(std::move(source));         // the source may be a part of this node
    tFieldAccess::takeAssigned(*this, moved);
    return *this;
}

// Assigning a value is setting it, whatever its type.
#define MURV_ASSIGN(tType)                   \
    CFields& CFields::operator=(tType value) \
    {                                        \
        setValue(value);                     \
        return *this;                        \
    }
MURV_ASSIGN(E_DataType)
MURV_ASSIGN(bool)
MURV_ASSIGN(int)
MURV_ASSIGN(unsigned int)
MURV_ASSIGN(long)
MURV_ASSIGN(unsigned long)
MURV_ASSIGN(long long)
MURV_ASSIGN(unsigned long long)
MURV_ASSIGN(double)
MURV_ASSIGN(const char*)
MURV_ASSIGN(const std::string&)
MURV_ASSIGN(std::string_view)
MURV_ASSIGN(const CStaticString&)
#undef MURV_ASSIGN

void CFields::swapValue(CFields& other, bool withPacketExp)
{
    if (&other == this)
        return;
    requireApart(*this, other);
    prepareSwap(*this, other, withPacketExp, false);
    swapFirst(*this, other, withPacketExp);
}

void CFields::swapField(CFields& other, bool withPacketExp)
{
    if (&other == this)
        return;
    requireApart(*this, other);
    prepareSwap(*this, other, withPacketExp, true);
    if (other.m_uiID != 0)
        std::swap(m_uiID, other.m_uiID);
    swapFirst(*this, other, withPacketExp);
    tFieldAccess::swapComments(*this, other);
    std::swap(m_iOffsetStart, other.m_iOffsetStart);
    std::swap(m_iOffsetEnd, other.m_iOffsetEnd);
    if (other.m_ucNameLen != 0)
        tFieldAccess::swapNames(*this, other);
}

}  // namespace murv

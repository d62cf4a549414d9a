// core/field_convert.cpp - reading a value as another type.
//
// Each accessor has one message for types that never convert and one per number type for values out of range. The range
// tests of integers look at the first value, whichever slot is read; those of doubles at the value itself.

#include <cfloat>
#include <limits>
#include <string_view>
#include <type_traits>

#include "core/field_access.h"
#include "core/field_type.h"
#include "core/throw.h"
#include "murv/fields.h"
#include "murv/text.h"

namespace murv
{

using detail::s_cdTwoTo63;
using detail::s_cdTwoTo64;
using detail::tFieldAccess;
using detail::throwAt;
using detail::tSlot;

namespace
{
float narrow(double value)
{
    // Halfway between the greatest float and the next power of two, where rounding turns to infinity.
    constexpr double edge = 0x1.ffffffp127;
    if (value >= edge)
        return std::numeric_limits<float>::infinity();
    if (value <= -edge)
        return -std::numeric_limits<float>::infinity();
    if (value > FLT_MAX)
        return FLT_MAX;
    return value < -FLT_MAX ? -FLT_MAX : static_cast<float>(value);
}

/// What an accessor of 32 bits says when it throws.
struct tComplaints
{
    const char* m_pFunction;
    const char* m_pSint;
    const char* m_pUint;
    const char* m_pDouble;
    const char* m_pOther;
};

constexpr tComplaints s_ctSint32 = {"murv::CFields::asSint32", "LSint out of Sint32 range", "LUint out of Sint32 range",
                                    "double out of Sint32 range", "Value is not convertible to Sint32."};
constexpr tComplaints s_ctUint32 = {"murv::CFields::asUint32", "LSint out of Uint32 range", "LUint out of Uint32 range",
                                    "double out of Uint32 range", "Value is not convertible to Uint32."};

/// \tparam s_pIsInRange  the range test of an integer
template <typename tInteger, bool (CFields::*s_pIsInRange)(E_ValueKind) const>
tInteger as32(const CFields& node, E_ValueKind vk, const tComplaints& complaints)
{
    using tRange = std::numeric_limits<tInteger>;
    const tSlot slot = tFieldAccess::slot(node, vk);
    switch (slot.m_eType)
    {
    case DT_null: return 0;
    case DT_bool: return slot.m_uValue.m_bValue ? 1 : 0;
    case DT_sint:
        if (!(node.*s_pIsInRange)(VK_actual))
            throwAt(complaints.m_pFunction, complaints.m_pSint);
        return static_cast<tInteger>(slot.m_uValue.m_llValue);
    case DT_uint:
        if (!(node.*s_pIsInRange)(VK_actual))
            throwAt(complaints.m_pFunction, complaints.m_pUint);
        return static_cast<tInteger>(slot.m_uValue.m_ullValue);
    case DT_double:
        if (!(slot.m_uValue.m_dValue >= tRange::min() && slot.m_uValue.m_dValue <= tRange::max()))
            throwAt(complaints.m_pFunction, complaints.m_pDouble);
        return static_cast<tInteger>(slot.m_uValue.m_dValue);
    default: throwAt(complaints.m_pFunction, complaints.m_pOther);
    }
}

template <typename tFloating>
tFloating asFloating(const CFields& node, E_ValueKind vk, const char* function, const char* complaint)
{
    const tSlot slot = tFieldAccess::slot(node, vk);
    switch (slot.m_eType)
    {
    case DT_null: return 0;
    case DT_bool: return slot.m_uValue.m_bValue ? 1 : 0;
    case DT_sint: return static_cast<tFloating>(slot.m_uValue.m_llValue);
    case DT_uint: return static_cast<tFloating>(slot.m_uValue.m_ullValue);
    case DT_double:
        if constexpr (std::is_same_v<tFloating, float>)
            return narrow(slot.m_uValue.m_dValue);
        else
            return slot.m_uValue.m_dValue;
    default: throwAt(function, complaint);
    }
}

/// \tparam s_pAs64  reads an integral number
template <typename tInteger, tInteger (CFields::*s_pAs64)(E_ValueKind) const>
bool to64(const CFields& node, E_ValueKind vk, tInteger& out)
{
    out = 0;
    if (node.isIntegral(vk))
    {
        out = (node.*s_pAs64)(vk);
        return true;
    }
    const char* text = nullptr;
    const unsigned int length = node.getCodePoint(&text, vk);
    return text != nullptr && aton64(text, length, out);
}
}  // namespace

bool CFields::asBool(E_ValueKind vk) const
{
    const tSlot slot = tFieldAccess::slot(*this, vk);
    switch (slot.m_eType)
    {
    case DT_null: return false;
    case DT_bool: return slot.m_uValue.m_bValue;
    case DT_sint:
    case DT_uint: return slot.m_uValue.m_ullValue != 0;
    case DT_double: return slot.m_uValue.m_dValue != 0.0;
    default: throwAt("murv::CFields::asBool", "CFields is not convertible to bool.");
    }
}

int CFields::asSint32(E_ValueKind vk) const
{
    return as32<int, &CFields::isSint32>(*this, vk, s_ctSint32);
}

unsigned int CFields::asUint32(E_ValueKind vk) const
{
    return as32<unsigned int, &CFields::isUint32>(*this, vk, s_ctUint32);
}

long long CFields::asSint64(E_ValueKind vk) const
{
    constexpr const char* function = "murv::CFields::asSint64";
    const tSlot slot = tFieldAccess::slot(*this, vk);
    switch (slot.m_eType)
    {
    case DT_null: return 0;
    case DT_bool: return slot.m_uValue.m_bValue ? 1 : 0;
    case DT_sint: return slot.m_uValue.m_llValue;
    case DT_uint:
        if (!isSint64(VK_actual))
            throwAt(function, "LUint out of Sint64 range");
        return static_cast<long long>(slot.m_uValue.m_ullValue);
    case DT_double:
        if (!(slot.m_uValue.m_dValue >= -s_cdTwoTo63 && slot.m_uValue.m_dValue <= s_cdTwoTo63))
            throwAt(function, "double out of Sint64 range");
        // The bound itself passes, but only the number below it fits.
        return slot.m_uValue.m_dValue == s_cdTwoTo63 ? maxSint64 : static_cast<long long>(slot.m_uValue.m_dValue);
    default: throwAt(function, "CFields is not convertible to Sint64.");
    }
}

unsigned long long CFields::asUint64(E_ValueKind vk) const
{
    constexpr const char* function = "murv::CFields::asUint64";
    constexpr unsigned long long topBit = 1ULL << 63;
    const tSlot slot = tFieldAccess::slot(*this, vk);
    switch (slot.m_eType)
    {
    case DT_null: return 0;
    case DT_bool: return slot.m_uValue.m_bValue ? 1 : 0;
    case DT_sint:
        if (!isUint64(VK_actual))
            throwAt(function, "LSint out of Uint64 range");
        return slot.m_uValue.m_ullValue;
    case DT_uint: return slot.m_uValue.m_ullValue;
    case DT_double:
        if (!(slot.m_uValue.m_dValue >= 0.0 && slot.m_uValue.m_dValue <= s_cdTwoTo64))
            throwAt(function, "double out of Uint64 range");
        if (slot.m_uValue.m_dValue >= s_cdTwoTo63)
            return static_cast<unsigned long long>(slot.m_uValue.m_dValue - s_cdTwoTo63) | topBit;
        return static_cast<unsigned long long>(slot.m_uValue.m_dValue);
    default: throwAt(function, "CFields is not convertible to Uint64.");
    }
}

long long CFields::asLSint(E_ValueKind vk) const
{
    return asSint64(vk);
}

unsigned long long CFields::asLUint(E_ValueKind vk) const
{
    return asUint64(vk);
}

float CFields::asFloat(E_ValueKind vk) const
{
    return asFloating<float>(*this, vk, "murv::CFields::asFloat", "CFields is not convertible to float.");
}

double CFields::asDouble(E_ValueKind vk) const
{
    return asFloating<double>(*this, vk, "murv::CFields::asDouble", "CFields is not convertible to double.");
}

std::string CFields::asString(E_ValueKind vk) const
{
    const tSlot slot = tFieldAccess::slot(*this, vk);
    switch (slot.m_eType)
    {
    case DT_null: return {};
    case DT_bool: return ToString(slot.m_uValue.m_bValue);
    case DT_sint: return ToString(slot.m_uValue.m_llValue);
    case DT_uint: return ToString(slot.m_uValue.m_ullValue);
    case DT_double: return ToString(slot.m_uValue.m_dValue);
    case DT_codelist: return std::string(detail::view4Codes(slot.m_bOwned, slot.m_uValue.m_pData));
    default: throwAt("murv::CFields::asString", "Type is not convertible to string");
    }
}

bool CFields::toSint64(long long& out, E_ValueKind vk) const
{
    return to64<long long, &CFields::asSint64>(*this, vk, out);
}

bool CFields::toSint64(long& out, E_ValueKind vk) const
{
    out = 0;
    long long wide = 0;
    const bool done = toSint64(wide, vk);
    out = static_cast<long>(wide);
    if (out == wide)
        return done;
    out = 0;  // a long of 32 bits cannot hold it
    return false;
}

bool CFields::toUint64(unsigned long long& out, E_ValueKind vk) const
{
    return to64<unsigned long long, &CFields::asUint64>(*this, vk, out);
}

bool CFields::toUint64(unsigned long& out, E_ValueKind vk) const
{
    out = 0;
    unsigned long long wide = 0;
    const bool done = toUint64(wide, vk);
    out = static_cast<unsigned long>(wide);
    if (out == wide)
        return done;
    out = 0;
    return false;
}

unsigned int CFields::getCodePoint(const char** data, E_ValueKind vk) const
{
    const tSlot slot = tFieldAccess::slot(*this, vk);
    if (slot.m_eType != DT_codelist || slot.m_uValue.m_pData == nullptr)
        return 0;
    const std::string_view codes = detail::view4Codes(slot.m_bOwned, slot.m_uValue.m_pData);
    if (data != nullptr)
        *data = codes.data();
    return static_cast<unsigned int>(codes.size());
}

bool CFields::resizeCodes(unsigned int length, unsigned char fill, E_ValueKind vk)
{
    tSlot slot = tFieldAccess::slot(*this, vk);
    if (slot.m_eType != DT_codelist || !slot.m_bOwned || slot.m_uValue.m_pData == nullptr)
        return false;
    slot.m_uValue.m_pData =
        detail::resizePrefixed(const_cast<char*>(slot.m_uValue.m_pData), length, fill, slot.m_bPooled);
    tFieldAccess::setSlot(*this, vk, slot);
    return true;
}

}  // namespace murv

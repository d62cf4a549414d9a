// core/fields.cpp - making nodes, and their ID, name and packet expression.
//
// The static nodes are ready before any code runs, so that static initialisers of other files may use them.
#include "murv/fields.h"

#include <cstring>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/throw.h"

namespace murv
{

using detail::tFieldAccess;

// Initialised at compile time and never destroyed, so that static objects of other files may use it at any time.
struct CFields::tImmortal
{
    union
    {
        CFields m_tNode;
    };
    constexpr tImmortal() : m_tNode(tConstantInit{})
    {
    }
    ~tImmortal()  // NOLINT(modernize-use-equals-default): a default one would be deleted
    {
    }
};

namespace
{
constinit const tPacketExpInfo s_ctNullPktExp{};
}

constinit CFields::tImmortal CFields::s_tNull;
constinit CFields::tImmortal CFields::s_tFreeNull;
constinit const CFields& CFields::null = CFields::s_tNull.m_tNode;
constinit const CFields& CFields::nullRef = CFields::s_tNull.m_tNode;
constinit CFields& CFields::freeNull = CFields::s_tFreeNull.m_tNode;
constinit const tPacketExpInfo& CFields::nullPktExp = s_ctNullPktExp;

CFields::CFields(E_DataType dt)
{
    setValue(dt, VK_actual);
}

CFields::CFields(bool value) noexcept
{
    tFieldAccess::setType(*this, DT_bool) = detail::boolValue(value);
}

CFields::CFields(int value) noexcept : CFields(static_cast<long long>(value))
{
}

CFields::CFields(unsigned int value) noexcept : CFields(static_cast<unsigned long long>(value))
{
}

CFields::CFields(long value) noexcept : CFields(static_cast<long long>(value))
{
}

CFields::CFields(unsigned long value) noexcept : CFields(static_cast<unsigned long long>(value))
{
}

CFields::CFields(long long value) noexcept
{
    tFieldAccess::setType(*this, DT_sint).m_llValue = value;
}

CFields::CFields(unsigned long long value) noexcept
{
    tFieldAccess::setType(*this, DT_uint).m_ullValue = value;
}

CFields::CFields(double value) noexcept
{
    tFieldAccess::setType(*this, DT_double).m_dValue = value;
}

CFields::CFields(const char* text)
{
    setValue(text, VK_actual);
}

CFields::CFields(const char* text, unsigned int length)
{
    setValue(text, length, VK_actual);
}

CFields::CFields(const std::string& text)
{
    setValue(std::string_view(text), VK_actual);
}

CFields::CFields(std::string_view text)
{
    setValue(text, VK_actual);
}

CFields::CFields(const CStaticString& text)
{
    setValue(text, VK_actual);
}

// Delegates, so that what was copied before memory ran out is released by the destructor.
CFields::CFields(const CFields& source) : CFields()
{
    tFieldAccess::copyInto(*this, source);
}

CFields::CFields(CFields&& source) noexcept
{
    tFieldAccess::take(*this, source);
}

CFields::~CFields()
{
    if (CFieldVector* const members = tFieldAccess::release(*this))
        CFieldVector::destroy(members);
}

unsigned int CFields::getID() const
{
    return m_uiID;
}

bool CFields::setID(unsigned int id)
{
    if (id > maxSint32)
        return false;
    m_uiID = id;
    return true;
}

const char* CFields::getName() const
{
    return tFieldAccess::name(*this).data();
}

unsigned int CFields::getNameLen() const
{
    return m_ucNameLen;
}

bool CFields::setName(const char* name)
{
    return name != nullptr && setName(std::string_view(name));
}

bool CFields::setName(const char* name, unsigned int length)
{
    if (name == nullptr || length < 1 || length > detail::s_cuiLongestName)
        return false;
    tFieldAccess::rename(*this, name, length);
    return true;
}

bool CFields::setName(const std::string& name)
{
    return setName(std::string_view(name));
}

bool CFields::setName(std::string_view name)
{
    return name.size() <= detail::s_cuiLongestName && setName(name.data(), static_cast<unsigned int>(name.size()));
}

void CFields::clearName()
{
    tFieldAccess::rename(*this, nullptr, 0);
}

tPacketExpInfo CFields::pkt_GetExp() const
{
    return m_tPEI;
}

void CFields::pkt_SetExp(const tPacketExpInfo& pei)
{
    m_tPEI = pei;
}

bool CFields::pkt_IsNullExp(const tPacketExpInfo& pei)
{
    return std::memcmp(&pei, &nullPktExp, sizeof pei) == 0;
}

void CFields::pkt_SetOSA4User(const void* data)
{
    if (data != nullptr || tFieldAccess::sideRecord(*this) != nullptr)
        tFieldAccess::makeSideRecord(*this).m_pOSA = data;
}

const void* CFields::pkt_GetOSA4User() const
{
    const detail::tSideRecord* const record = tFieldAccess::sideRecord(*this);
    return record == nullptr ? nullptr : record->m_pOSA;
}

tInnerSupportedArgs4ESK& CFields::pkt_GetISA4ESK()
{
    return tFieldAccess::makeSideRecord(*this).m_tISA;
}

}  // namespace murv

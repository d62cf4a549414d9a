// core/field_members.cpp - adding, counting, subscripting, iterating and removing members.

#include <cstring>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/throw.h"
#include "core/tree_walk.h"
#include "murv/fields.h"

namespace murv
{

using detail::tFieldAccess;
using detail::throwAt;
using detail::tPlace;

namespace
{
constexpr const char* s_cpNoVector = "m_tValue.m_tActValue.m_uMultiValue.m_pFV=NULL memory pointer";
constexpr const char* s_cpSubscript = "murv::CFields::operator []";

/// The members of a container; throws when there is no vector to add to or to look into.
CFieldVector& requireVector(const CFields& node, tPlace place)
{
    CFieldVector* const members = tFieldAccess::members(node);
    if (members == nullptr)
        throwAt(place, s_cpNoVector);
    return *members;
}

unsigned int length4Name(const char* name)
{
    return name == nullptr ? 0 : static_cast<unsigned int>(strnlen(name, CFields::maxSint32));
}

unsigned int length4Name(std::string_view name)
{
    return name.size() > CFields::maxSint32 ? CFields::maxSint32 : static_cast<unsigned int>(name.size());
}

/// Gets or adds a member of a field set, or appends to an array. All public forms call it.
CFields& addMember(CFields& node, tPlace place, const char* name, unsigned int nameLen, unsigned int id,
                   bool allowDuplicate)
{
    const bool named = name != nullptr && nameLen > 0;
    if (node.isNull())
        node.setValue(named ? DT_fields : DT_array);
    if (!tFieldAccess::isContainer(node))
        throwAt(place, "requires DT_fields or DT_array");
    requireVector(node, place);
    if (node.isArray())
        return tFieldAccess::append(node);
    if (!allowDuplicate)
    {
        if (CFields* const member = named ? node.findChildAt(name, nameLen) : nullptr)
            return *member;
        if (CFields* const found = id != 0 ? node.findID(id) : nullptr)
            return *found;
    }
    return tFieldAccess::appendMember(node, name, named ? nameLen : 0, id);
}

/// Appends a null node to an array; a null node becomes one.
CFields& appendElement(CFields& node)
{
    if (node.isNull())
        node.setValue(DT_array);
    if (!node.isArray())
        throwAt("murv::CFields::addArrayAt", "requires DT_array");
    requireVector(node, "murv::CFields::addArrayAt");
    return tFieldAccess::append(node);
}

/// Whether replacing the value of `holder` would destroy `node`.
bool owns(const CFields& holder, const CFields& node)
{
    return &holder == &node || detail::holds(holder, node);
}
}  // namespace

template <typename T>
CMemberIterator<T>::CMemberIterator(const CFields& parent, difference_type index) : m_pParent(&parent), m_iIndex(index)
{
    seek();
}

template <typename T>
void CMemberIterator<T>::seek()
{
    const CFieldVector* const members = m_pParent == nullptr ? nullptr : tFieldAccess::members(*m_pParent);
    const difference_type count = members == nullptr ? 0 : static_cast<difference_type>(members->count());
    m_pCurrent = m_pRunEnd = nullptr;
    if (m_iIndex < 0 || m_iIndex >= count)
        return;
    const CFieldVector::tRun run = members->run(static_cast<std::uint32_t>(m_iIndex));
    m_pCurrent = run.m_pBegin;
    m_pRunEnd = run.m_pEnd;
}

template class MURV_API CMemberIterator<CFields>;
template class MURV_API CMemberIterator<const CFields>;

CFields::iterator CFields::begin()
{
    return {*this, 0};
}

CFields::iterator CFields::end()
{
    return {*this, static_cast<std::ptrdiff_t>(detail::memberCount(*this))};
}

CFields::const_iterator CFields::begin() const
{
    return {*this, 0};
}

CFields::const_iterator CFields::end() const
{
    return {*this, static_cast<std::ptrdiff_t>(detail::memberCount(*this))};
}

CFields& CFields::addChildRef(const char* name, unsigned int id, bool allowDuplicate)
{
    return addMember(*this, "murv::CFields::addChildRef", name, length4Name(name), id, allowDuplicate);
}

CFields& CFields::addChildRef(const std::string& name, unsigned int id, bool allowDuplicate)
{
    return addChildRef(std::string_view(name), id, allowDuplicate);
}

CFields& CFields::addChildRef(std::string_view name, unsigned int id, bool allowDuplicate)
{
    return addMember(*this, "murv::CFields::addChildRef", name.data(), length4Name(name), id, allowDuplicate);
}

CFields* CFields::addChildPtr(const char* name, unsigned int id, bool allowDuplicate)
{
    return &addMember(*this, "murv::CFields::addChildPtr", name, length4Name(name), id, allowDuplicate);
}

CFields* CFields::addChildPtr(const std::string& name, unsigned int id, bool allowDuplicate)
{
    return addChildPtr(std::string_view(name), id, allowDuplicate);
}

CFields* CFields::addChildPtr(std::string_view name, unsigned int id, bool allowDuplicate)
{
    return &addMember(*this, "murv::CFields::addChildPtr", name.data(), length4Name(name), id, allowDuplicate);
}

CFields& CFields::addArrayAt(const CFields& value, bool valueOnly)
{
    // The value may be this array or lie in it: copy before the array changes.
    CFields copy;
    if (valueOnly)
        tFieldAccess::copyValues(copy, value);
    else
        tFieldAccess::copyInto(copy, value);
    CFields& member = appendElement(*this);
    tFieldAccess::take(member, copy);
    return member;
}

CFields& CFields::addArrayAt(CFields&& value)
{
    if (owns(value, *this))  // an array cannot move into itself, but its copy can
        return addArrayAt(static_cast<const CFields&>(value));
    CFields& member = appendElement(*this);
    tFieldAccess::take(member, value);
    return member;
}

unsigned int CFields::getChildCount() const
{
    return detail::memberCount(*this);
}

unsigned int CFields::getMemberCount(const CFields* start) const
{
    detail::CTreeWalk<> walk(start == nullptr ? *this : *start);
    walk.next();
    unsigned int count = 0;
    while (walk.next() != nullptr)
        ++count;
    return count;
}

bool CFields::emptyChild() const
{
    return getDT() <= DT_fields && getChildCount() == 0;
}

bool CFields::isValidChild(unsigned int index) const
{
    return index < getChildCount();
}

bool CFields::isValidChild(int index) const
{
    return index >= 0 && isValidChild(static_cast<unsigned int>(index));
}

const CFields& CFields::getChildAt(unsigned int index) const
{
    return isValidChild(index) ? tFieldAccess::members(*this)->at(index) : nullRef;
}

CFields& CFields::operator[](unsigned int index)
{
    if (!tFieldAccess::isContainer(*this))
        throwAt(s_cpSubscript, "requires DT_fields or DT_array");
    const CFieldVector& members = requireVector(*this, s_cpSubscript);
    if (index >= members.count())
        throwAt(s_cpSubscript, "found not a field for the index");
    return members.at(index);
}

CFields& CFields::operator[](int index)
{
    if (index < 0)
        throwAt(s_cpSubscript, "index cannot be negative");
    return (*this)[static_cast<unsigned int>(index)];
}

const CFields& CFields::operator[](unsigned int index) const
{
    if (!tFieldAccess::isContainer(*this))
        throwAt(s_cpSubscript, "requires DT_array or DT_fields");
    return getChildAt(index);
}

const CFields& CFields::operator[](int index) const
{
    if (index < 0)
        throwAt(s_cpSubscript, "index cannot be negative");
    return (*this)[static_cast<unsigned int>(index)];
}

bool CFields::removeChildAt(unsigned int index, CFields* out)
{
    if (!isValidChild(index))
        return false;
    if (out != nullptr)
    {
        const bool replaced = owns(*out, *this);
        out->setField(m_uActValue.m_pFV->at(index));
        if (replaced)
            return true;  // this container was destroyed with the former value of `out`
    }
    CFieldVector::erase(m_uActValue.m_pFV, index, index + 1);
    return true;
}

bool CFields::removeChildAt(int index, CFields* out)
{
    return index >= 0 && removeChildAt(static_cast<unsigned int>(index), out);
}

void CFields::removeChildAll()
{
    if (!tFieldAccess::isContainer(*this))
        return;
    m_iOffsetStart = 0;
    m_iOffsetEnd = 0;
    if (m_uActValue.m_pFV != nullptr)
    {
        detail::tSlot empty{getDT(), false, {}};
        empty.m_uValue.m_pFV = CFieldVector::empty();
        tFieldAccess::replaceValue(*this, empty);
    }
}

void CFields::removeAll(E_DataType dt)
{
    if (!isValidDT(dt))
        throwAt("murv::CFields::clearValue", "Unknown data type(%d)", static_cast<int>(dt));
    removeChildAll();
    clearValue(dt, dt == DT_null || tFieldAccess::isContainer(dt) ? VK_actual : detail::s_ceBothKinds, false);
    if (dt == DT_null || tFieldAccess::isContainer(dt))
        tFieldAccess::dropSecond(*this);
}

void CFields::resizeArray(unsigned int n)
{
    if (getDT() == DT_null)
        setValue(DT_array);
    if (getDT() != DT_array)
        throwAt("murv::CFields::resizeArray", "requires DT_array");
    const unsigned int count = getChildCount();
    if (n == 0)
        removeChildAll();
    else if (n > count)
        static_cast<void>((*this)[n - 1]);  // throws: arrays grow by adding only
    else if (n < count)
        CFieldVector::erase(m_uActValue.m_pFV, n, count);
}

}  // namespace murv

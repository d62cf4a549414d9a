// core/field_lookup.cpp - finding members and nodes by name and by ID.
//
// The first match is found: in index order among members, in pre-order in a whole subtree.

#include <cstring>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/tree_walk.h"
#include "murv/fields.h"

namespace murv
{

using detail::CNameIndex;
using detail::tFieldAccess;

namespace
{
bool isSearchable(std::string_view name)
{
    return !name.empty() && name.size() <= detail::s_cuiLongestName;
}

/// A text of unknown length as a view; null gives an empty one, which finds nothing.
std::string_view view(const char* name)
{
    return name == nullptr ? std::string_view() : std::string_view(name);
}

std::string_view view(const char* name, unsigned int length)
{
    return name == nullptr ? std::string_view() : std::string_view(name, length);
}

const CFields* findNamed(const CFields& node, std::string_view name)
{
    const CFieldVector* const members = tFieldAccess::members(node);
    if (!node.isField() || members == nullptr || !isSearchable(name))
        return nullptr;
    const std::uint32_t position = members->find(name.data(), static_cast<unsigned int>(name.size()));
    return position == CNameIndex::s_cuiNone ? nullptr : &members->at(position);
}

/// Position of the first direct member of that name, in field sets only.
int position4Name(const CFields& node, std::string_view name)
{
    const CFieldVector* const members = tFieldAccess::members(node);
    if (members == nullptr || !node.isField() || !isSearchable(name))
        return -1;
    const std::uint32_t position = members->find(name.data(), static_cast<unsigned int>(name.size()));
    return position == CNameIndex::s_cuiNone ? -1 : static_cast<int>(position);
}

int position4Id(const CFields& node, unsigned int id)
{
    const CFieldVector* const members = tFieldAccess::members(node);
    const std::uint32_t count = members == nullptr || id == 0 ? 0 : members->count();
    for (std::uint32_t i = 0; i < count; ++i)
    {
        if (tFieldAccess::id(members->at(i)) == id)
            return static_cast<int>(i);
    }
    return -1;
}

CFields& freeNullUnless(const CFields* found)
{
    return found == nullptr ? CFields::freeNull : const_cast<CFields&>(*found);
}

const CFields& nullRefUnless(const CFields* found)
{
    return found == nullptr ? CFields::nullRef : *found;
}
}  // namespace

const CFields* CFields::findChildAt(const char* name, unsigned int len) const
{
    return findNamed(*this, view(name, len));
}

CFields* CFields::findChildAt(const char* name, unsigned int len)
{
    return const_cast<CFields*>(findNamed(*this, view(name, len)));
}

bool CFields::isValidChild(const char* name, unsigned int len) const
{
    return findNamed(*this, view(name, len)) != nullptr;
}

bool CFields::isValidChild(const char* name) const
{
    return findNamed(*this, view(name)) != nullptr;
}

bool CFields::isValidChild(const std::string& name) const
{
    return findNamed(*this, name) != nullptr;
}

bool CFields::isValidChild(std::string_view name) const
{
    return findNamed(*this, name) != nullptr;
}

const CFields* CFields::findID(unsigned int id, const CFields* start) const
{
    if (id == 0 || id > maxSint32)
        return nullptr;
    detail::CTreeWalk<> walk(start == nullptr ? *this : *start);
    while (const CFields* const node = walk.next())
    {
        if (node->m_uiID == id)
            return node;
    }
    return nullptr;
}

CFields* CFields::findID(unsigned int id, const CFields* start)
{
    return const_cast<CFields*>(static_cast<const CFields*>(this)->findID(id, start));
}

int CFields::getChildIdx4ID(unsigned int id) const
{
    return position4Id(*this, id);
}

const char* CFields::getChildName4ID(unsigned int id) const
{
    const int position = position4Id(*this, id);
    return position < 0 ? "" : getChildAt(static_cast<unsigned int>(position)).getName();
}

int CFields::getChildIdx4Name(const char* name) const
{
    return position4Name(*this, view(name));
}

int CFields::getChildIdx4Name(const char* name, unsigned int length) const
{
    return position4Name(*this, view(name, length));
}

unsigned int CFields::getChildID4Name(const char* name) const
{
    const int position = position4Name(*this, view(name));
    return position < 0 ? 0 : getChildAt(static_cast<unsigned int>(position)).m_uiID;
}

unsigned int CFields::getChildID4Name(const char* name, unsigned int length) const
{
    const int position = position4Name(*this, view(name, length));
    return position < 0 ? 0 : getChildAt(static_cast<unsigned int>(position)).m_uiID;
}

bool CFields::setChildName4ID(unsigned int id, const char* name)
{
    const int position = name == nullptr ? -1 : position4Id(*this, id);
    return position >= 0 && tFieldAccess::members(*this)->at(static_cast<std::uint32_t>(position)).setName(name);
}

CFields CFields::copyChildAt(unsigned int index, const CFields& fallback) const
{
    const CFields& member = (*this)[index];
    return &member == &nullRef ? fallback : member;
}

CFields CFields::copyChildAt(int index, const CFields& fallback) const
{
    return copyChildAt(index < 0 ? maxUint32 : static_cast<unsigned int>(index), fallback);
}

CFields CFields::copyChildAt(const char* name, unsigned int len, const CFields& fallback) const
{
    const CFields* const member = findNamed(*this, view(name, len));
    return member == nullptr ? fallback : *member;
}

CFields CFields::copyChildAt(const char* name, const CFields& fallback) const
{
    return copyChildAt(view(name), fallback);
}

CFields CFields::copyChildAt(const std::string& name, const CFields& fallback) const
{
    return copyChildAt(std::string_view(name), fallback);
}

CFields CFields::copyChildAt(std::string_view name, const CFields& fallback) const
{
    const CFields* const member = findNamed(*this, name);
    return member == nullptr ? fallback : *member;
}

CFields& CFields::operator[](const char* name)
{
    return freeNullUnless(findNamed(*this, view(name)));
}

CFields& CFields::operator[](const std::string& name)
{
    return freeNullUnless(findNamed(*this, name));
}

CFields& CFields::operator[](std::string_view name)
{
    return freeNullUnless(findNamed(*this, name));
}

CFields& CFields::operator[](const CStaticString& name)
{
    return freeNullUnless(findNamed(*this, view(name.c_str())));
}

const CFields& CFields::operator[](const char* name) const
{
    return nullRefUnless(findNamed(*this, view(name)));
}

const CFields& CFields::operator[](const std::string& name) const
{
    return nullRefUnless(findNamed(*this, name));
}

const CFields& CFields::operator[](std::string_view name) const
{
    return nullRefUnless(findNamed(*this, name));
}

const CFields& CFields::operator[](const CStaticString& name) const
{
    return nullRefUnless(findNamed(*this, view(name.c_str())));
}

bool CFields::removeChildAt(const char* name, unsigned int len, CFields* out)
{
    return removeChildAt(view(name, len), out);
}

bool CFields::removeChildAt(const char* name, int len, CFields* out)
{
    return len > 0 && removeChildAt(view(name, static_cast<unsigned int>(len)), out);
}

bool CFields::removeChildAt(const char* name, CFields* out)
{
    return removeChildAt(view(name), out);
}

bool CFields::removeChildAt(const std::string& name, CFields* out)
{
    return removeChildAt(std::string_view(name), out);
}

bool CFields::removeChildAt(std::string_view name, CFields* out)
{
    const int position = position4Name(*this, name);
    return position >= 0 && removeChildAt(position, out);
}

}  // namespace murv

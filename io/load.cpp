// io/load.cpp - starting and ending a load, and members by name and ID.
#include "io/load.h"

#include <algorithm>

#include <new>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/tree_walk.h"
#include "io/ids/id_index.h"
#include "io/member_builder.h"

namespace murv::detail
{

tLoad::tLoad() = default;

tLoad::tLoad(const tLoad& other)
    : m_pDataBegin(other.m_pDataBegin),
      m_pDataEnd(other.m_pDataEnd),
      m_vStack(other.m_vStack),
      m_tErrors(other.m_tErrors),
      m_eFault(other.m_eFault)
{
}

tLoad& tLoad::operator=(const tLoad& other)
{
    if (this == &other)
        return *this;
    m_pDataBegin = other.m_pDataBegin;
    m_pDataEnd = other.m_pDataEnd;
    m_vStack = other.m_vStack;
    m_tErrors = other.m_tErrors;
    m_eFault = other.m_eFault;
    return *this;
}

tLoad::~tLoad() = default;

void tLoad::start(const char* data, unsigned int size, CFields& target, unsigned int config, bool comments)
{
    m_pDataBegin = data;
    m_pDataEnd = data + size;
    m_uiConfig = config;
    m_bComments = comments;
    m_vStack.clear();
    m_vStack.push_back(&target);
    m_iDepth = 0;
    m_eMember = MS_added;
    m_pBuilder = nullptr;
    m_tNodeStack.prepare(size);
    m_tNodeStack.pool().begin(this);
    if (m_pIdIndex != nullptr)
        m_pIdIndex->clear();
    m_pLastValueEnd = nullptr;
    m_pLastValueNode = nullptr;
}

void tLoad::finish()
{
    m_vStack.clear();
    m_tNodeStack.pool().close();
    m_pBuilder = nullptr;
    m_pLastValueEnd = nullptr;
    m_pLastValueNode = nullptr;
}

double tLoad::partDone() const noexcept
{
    const auto size = static_cast<double>(m_pDataEnd - m_pDataBegin);
    if (m_pBuilder == nullptr || size <= 0)
        return 0;
    int read = m_pBuilder->node().getOffsetStart();
    // The last member has no offsets yet, or it is read again.
    const std::uint32_t count = m_pBuilder->count();
    for (std::uint32_t i = count < 2 ? 0 : count - 2; i != count; ++i)
        read = std::max(read, m_pBuilder->at(i).getOffsetEnd());
    return static_cast<double>(read) / size;
}

void tLoad::forgetErrors()
{
    m_tErrors.clear();
    m_eFault = LF_none;
}

bool tLoad::addError(std::string_view message, std::ptrdiff_t start, std::ptrdiff_t end,
                     std::optional<std::ptrdiff_t> second)
{
    m_tErrors.add(message, start, end, second);
    if (m_eFault == LF_none)
        m_eFault = LF_text;
    return false;
}

void tLoad::noteException()
{
    try
    {
        throw;
    }
    catch (const std::bad_alloc&)
    {
        m_eFault = LF_memory;
    }
    catch (const CMemoryError&)
    {
        m_eFault = LF_memory;
    }
    catch (...)
    {
        if (m_eFault != LF_tooDeep)
            m_eFault = LF_callback;
    }
}

void tLoad::throwTooDeep(tPlace place)
{
    m_eFault = LF_tooDeep;
    throwAt(place, "Exceeded s_cnStackDepthLimit");
}

CFields* tLoad::addMember(std::string_view name, unsigned int id)
{
    m_eMember = MS_added;
    if (has(LCBC_DUPLICATE))
        return &m_pBuilder->append(name, id);
    if (CFields* const known = findKnown(name, id))
    {
        if (known == &m_pBuilder->node())
            return nullptr;  // a container cannot be its own member
        m_eMember = MS_reread;
        if (tFieldAccess::isContainer(*known))
            forgetBelow(*known);
        return known;
    }
    return id == 0 ? &m_pBuilder->append(name, id) : addWithId(name, id);
}

CFields* tLoad::addWithId(std::string_view name, unsigned int id)
{
    CMemberBuilder& builder = *m_pBuilder;
    builder.pin();
    CFields& member = builder.append(name, id);
    if (m_pIdIndex == nullptr)
        m_pIdIndex = std::make_unique<CIdIndex>();
    if (member.getID() == 0)
        return &member;
    m_tMemberPlace = m_pIdIndex->enter(id, member, {builder.makeNumber(*m_pIdIndex), builder.count() - 1});
    m_eMember = MS_placed;
    return &member;
}

/// The member or node below that has the name, or else the ID, and is to be read again, with its place; or null.
CFields* tLoad::findKnown(std::string_view name, unsigned int id)
{
    CMemberBuilder& builder = *m_pBuilder;
    const std::uint32_t position = name.empty() ? CNameIndex::s_cuiNone : builder.find(name);
    if (position != CNameIndex::s_cuiNone)
    {
        m_tMemberPlace = {builder.number(), position};
        return &builder.at(position);
    }
    if (id == 0 || builder.node().getID() == id)
        return id == 0 ? nullptr : &builder.node();
    if (m_pIdIndex == nullptr)
        return nullptr;
    const CIdIndex::tFound found = m_pIdIndex->find(id, builder.opened());
    m_tMemberPlace = found.m_tPlace;
    return found.m_pNode;
}

void tLoad::forgetBelow(const CFields& node)
{
    if (memberCount(node) == 0)
        return;
    if (m_pIdIndex != nullptr && m_tMemberPlace.m_uiContainer != s_cuiNoPlace)
        m_pIdIndex->forget(m_tMemberPlace);
    if (m_pLastValueNode == nullptr || !isBelow(node, *m_pLastValueNode))
        return;
    m_pLastValueNode = nullptr;
    m_pLastValueEnd = nullptr;
}

}  // namespace murv::detail

// io/loader_common.cpp - parse stack, error records and members by name and ID.
//
// Both loaders add members through here, so that repeated names and IDs mean the same in text and in binary data.
#include <algorithm>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/throw.h"
#include "core/tree_walk.h"
#include "io/ids/id_index.h"
#include "io/line_counter.h"
#include "io/member_builder.h"
#include "io/node_stack.h"
#include "murv/loader.h"

namespace murv
{

using detail::tFieldAccess;

ILoaderCommon::ILoaderCommon(unsigned int flags) : ILoaderBase(flags)
{
}

// What belongs to a load under way is not copied: between loads the stack is empty, and the positions refer to data
// that may be gone.
ILoaderCommon::ILoaderCommon(const ILoaderCommon& other)
    : ILoaderBase(other),
      m_vError(other.m_vError),
      m_vStack(other.m_vStack),
      m_pDataBegin(other.m_pDataBegin),
      m_pDataEnd(other.m_pDataEnd),
      m_pCursor(other.m_pCursor),
      m_strComment(other.m_strComment)
{
}

ILoaderCommon& ILoaderCommon::operator=(const ILoaderCommon& other)
{
    if (this == &other)
        return *this;
    ILoaderBase::operator=(other);
    m_vError = other.m_vError;
    m_vStack = other.m_vStack;
    m_pDataBegin = other.m_pDataBegin;
    m_pDataEnd = other.m_pDataEnd;
    m_pCursor = other.m_pCursor;
    m_strComment = other.m_strComment;
    return *this;
}

ILoaderCommon::~ILoaderCommon() = default;

bool ILoaderCommon::getStatus() const
{
    return m_vError.empty();
}

std::vector<tErrorRange> ILoaderCommon::getErrorRanges() const
{
    return getLoadErrors();
}

void ILoaderCommon::forgetErrors()
{
    ILoaderBase::forgetErrors();
    m_vError.clear();
}

void ILoaderCommon::startLoad(const char* data, unsigned int size, CFields& target, bool comments)
{
    forgetErrors();
    m_bComment = comments && m_tConfig.BC32_Check(LCBC_COMMENT);
    m_pDataBegin = m_pCursor = data;
    m_pDataEnd = data + size;
    m_pLastValueEnd = nullptr;
    m_pLastValueNode = nullptr;
    m_strComment.clear();
    m_vStack.clear();
    m_vStack.push_back(&target);
    m_iDepth = 0;
    m_bPeiAllowed = m_bPeiPending = false;
    m_eMember = MS_fresh;
    m_pBuilder = nullptr;
    if (m_pNodeStack == nullptr)
        m_pNodeStack = std::make_unique<detail::CNodeStack>();
    m_pNodeStack->prepare(size);
    if (m_pIdIndex != nullptr)
        m_pIdIndex->clear();
}

void ILoaderCommon::finishLoad(CFields& target, bool done)
{
    m_vStack.clear();
    if (m_pNodeStack != nullptr)
        m_pNodeStack->pool().close();
    m_pBuilder = nullptr;
    m_pLastValueNode = nullptr;
    m_pLastValueEnd = nullptr;
    m_strComment.clear();
    if (!done)
        target.removeChildAll();
}

void ILoaderCommon::noteException()
{
    try
    {
        throw;
    }
    catch (const std::bad_alloc&)
    {
        m_eFault = LF_memory;
    }
    catch (const detail::CMemoryError&)
    {
        m_eFault = LF_memory;
    }
    catch (...)
    {
        if (m_eFault != LF_tooDeep)
            m_eFault = LF_callback;
    }
}

CFields* ILoaderCommon::getStackTopField() const
{
    return m_vStack.back();
}

CFields* ILoaderCommon::addChild2StackTop(std::string_view name, unsigned int id)
{
    m_bPeiAllowed = true;
    m_eMember = MS_fresh;
    if (m_pBuilder == nullptr)  // an application's own loader opens none
    {
        CFields* const member = m_vStack.back()->addChildPtr(name, id, m_tConfig.BC32_Check(LCBC_DUPLICATE));
        return member == m_vStack.back() ? nullptr : member;
    }
    detail::CMemberBuilder& builder = *m_pBuilder;
    if (tFieldAccess::type(builder.node()) == DT_array)
        return &builder.appendElement();
    if (m_tConfig.BC32_Check(LCBC_DUPLICATE))
        return &builder.append(name, id);
    if (CFields* const known = findKnown(name, id))
    {
        if (known == &builder.node())
            return nullptr;  // a container cannot be its own member
        m_eMember = MS_reread;
        if (tFieldAccess::isContainer(*known))
            forgetBelow(*known);
        return known;
    }
    if (id == 0)
        return &builder.append(name, id);
    builder.pin();
    CFields& member = builder.append(name, id);
    if (m_pIdIndex == nullptr)
        m_pIdIndex = std::make_unique<detail::CIdIndex>();
    if (member.getID() == 0)
        return &member;
    keepPlace(m_pIdIndex->enter(id, member, {builder.makeSet(*m_pIdIndex), builder.count() - 1}));
    m_eMember = MS_placed;
    return &member;
}

CFields* ILoaderCommon::findKnown(std::string_view name, unsigned int id)
{
    detail::CMemberBuilder& builder = *m_pBuilder;
    const std::uint32_t position = name.empty() ? detail::CNameIndex::s_cuiNone : builder.find(name);
    if (position != detail::CNameIndex::s_cuiNone)
    {
        keepPlace({builder.set(), position});
        return &builder.at(position);
    }
    if (id == 0 || builder.node().getID() == id)
        return id == 0 ? nullptr : &builder.node();
    if (m_pIdIndex == nullptr)
        return nullptr;
    const detail::CIdIndex::tFound found = m_pIdIndex->find(id, builder.opened());
    keepPlace(found.m_tPlace);
    return found.m_pNode;
}

void ILoaderCommon::keepPlace(const detail::tNodePlace& place)
{
    m_uiMemberSet = place.m_uiContainer;
    m_uiMemberPosition = place.m_uiPosition;
}

void ILoaderCommon::forgetBelow(const CFields& node)
{
    if (detail::memberCount(node) == 0)
        return;
    if (m_pIdIndex != nullptr && m_uiMemberSet != detail::s_cuiNoPlace)
        m_pIdIndex->forget({m_uiMemberSet, m_uiMemberPosition});
    if (m_pLastValueNode == nullptr || !detail::isBelow(node, *m_pLastValueNode))
        return;
    m_pLastValueNode = nullptr;
    m_pLastValueEnd = nullptr;
}

CFields* ILoaderCommon::getLastField4Stack() const
{
    for (auto at = m_vStack.rbegin(); at != m_vStack.rend(); ++at)
    {
        if (*at == nullptr)
            continue;
        return detail::memberCount(**at) == 0 ? *at : &tFieldAccess::members(**at)->last();
    }
    return nullptr;
}

CFields* ILoaderCommon::getLastThirdField4Stack() const
{
    std::uint32_t back = 2;  // the members from last to first, then the node itself, then those of the entry below
    for (auto at = m_vStack.rbegin(); at != m_vStack.rend(); ++at)
    {
        if (*at == nullptr)
            continue;
        const std::uint32_t count = detail::memberCount(**at);
        if (count != 0 && back <= count)
            return &tFieldAccess::members(**at)->at(count - back);
        back -= count;
        if (back == 1)
            return *at;
        --back;
    }
    return nullptr;
}

CFields* ILoaderCommon::getLastCommentField4Stack() const
{
    for (auto at = m_vStack.rbegin(); at != m_vStack.rend(); ++at)
    {
        if (*at == nullptr)
            continue;
        for (std::uint32_t i = detail::memberCount(**at); i-- > 0;)
        {
            CFields& member = tFieldAccess::members(**at)->at(i);
            if (member.isComment())
                return &member;
        }
    }
    return nullptr;
}

bool ILoaderCommon::addRecord(std::string_view message, const tTokenInfo& token, const char* second)
{
    m_vError.push_back({token, std::string(message), second});
    if (m_eFault == LF_none)
        m_eFault = LF_text;
    return false;
}

bool ILoaderCommon::pushError(const CFields& node, const std::string& message)
{
    const std::ptrdiff_t size = m_pDataEnd - m_pDataBegin;
    if (node.getOffsetStart() > size || node.getOffsetEnd() > size)
        return false;
    addRecord(message, {TT_error, m_pDataBegin + node.getOffsetStart(), m_pDataBegin + node.getOffsetEnd()});
    return true;
}

bool ILoaderCommon::pushError(const CFields& node, const std::string& message, const CFields& second)
{
    if (second.getOffsetEnd() > m_pDataEnd - m_pDataBegin || !pushError(node, message))
        return false;
    m_vError.back().m_pSecond = m_pDataBegin + second.getOffsetStart();
    return true;
}

std::vector<tErrorRange> ILoaderCommon::getLoadErrors() const
{
    std::vector<tErrorRange> ranges;
    ranges.reserve(m_vError.size());
    for (const tErrorRecord& record : m_vError)
        ranges.push_back({static_cast<unsigned int>(record.m_tToken.m_pBegin - m_pDataBegin),
                          static_cast<unsigned int>(record.m_tToken.m_pEnd - m_pDataBegin), record.m_strMessage});
    return ranges;
}

std::vector<tErrorPlace> ILoaderCommon::getErrorPlaces() const
{
    const auto offset = [this](const char* position) { return static_cast<unsigned int>(position - m_pDataBegin); };
    const auto number = [](int count) { return static_cast<unsigned int>(std::max(count, 0)); };
    std::vector<tErrorPlace> places;
    places.reserve(m_vError.size());
    for (const tErrorRecord& record : m_vError)
    {
        tErrorPlace place{offset(record.m_tToken.m_pBegin),
                          offset(record.m_tToken.m_pEnd),
                          number(record.m_tLine.m_iLine),
                          number(record.m_tLine.m_iColumn),
                          record.m_strMessage,
                          std::nullopt};
        if (record.m_pSecond != nullptr)
            place.m_tSecond = {offset(record.m_pSecond), number(record.m_tSecondLine.m_iLine),
                               number(record.m_tSecondLine.m_iColumn)};
        places.push_back(std::move(place));
    }
    return places;
}

void ILoaderCommon::countLines()
{
    std::vector<std::pair<const char*, tLineColumn*>> places;
    for (tErrorRecord& record : m_vError)
    {
        places.emplace_back(record.m_tToken.m_pBegin, &record.m_tLine);
        if (record.m_pSecond != nullptr)
            places.emplace_back(record.m_pSecond, &record.m_tSecondLine);
    }
    std::sort(places.begin(), places.end());  // so that one walk over the data is enough
    detail::CLineCounter counter(m_pDataBegin);
    for (const auto& [position, place] : places)
        *place = {counter.line4(position), counter.column()};
}

std::string ILoaderCommon::words4Place(const char* position, const tLineColumn& place) const
{
    if (place.m_iLine != 0)
        return "Line " + std::to_string(place.m_iLine) + ", Column " + std::to_string(place.m_iColumn);
    if (position < m_pDataBegin)
        return {};
    return "Offset " + std::to_string(static_cast<unsigned int>(position - m_pDataBegin));
}

void ILoaderCommon::composeErrors(bool lines)
{
    clearError();
    if (lines)
        countLines();
    for (const tErrorRecord& record : m_vError)
    {
        std::string text =
            "* " + words4Place(record.m_tToken.m_pBegin, record.m_tLine) + "\n  " + record.m_strMessage + "\n";
        if (record.m_pSecond != nullptr)
            text += "See " + words4Place(record.m_pSecond, record.m_tSecondLine) + " for detail.\n";
        addErrMsg(text.c_str());
    }
}

}  // namespace murv

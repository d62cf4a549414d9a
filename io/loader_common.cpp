// io/loader_common.cpp - what the loaders of single rules share, as an application's own loader sees it.
//
// The state lies in tLoad; here is what only such loaders use: members added without a builder, looks back along the
// stack, and errors at the places of nodes.
#include "murv/loader_common.h"
#include "core/field_access.h"
#include "core/field_vector.h"
#include "io/load.h"

namespace murv
{

using detail::tFieldAccess;

ILoaderCommon::ILoaderCommon(unsigned int flags) : ILoaderBase(flags), m_pLoad(std::make_unique<detail::tLoad>())
{
}

ILoaderCommon::ILoaderCommon(const ILoaderCommon& other)
    : ILoaderBase(other), m_pLoad(std::make_unique<detail::tLoad>(*other.m_pLoad))
{
}

ILoaderCommon& ILoaderCommon::operator=(const ILoaderCommon& other)
{
    if (this == &other)
        return *this;
    ILoaderBase::operator=(other);
    *m_pLoad = *other.m_pLoad;
    return *this;
}

ILoaderCommon::~ILoaderCommon() = default;

bool ILoaderCommon::getStatus() const
{
    return m_pLoad->m_tErrors.isEmpty();
}

E_LoadFault ILoaderCommon::getLoadFault() const
{
    return m_eFault != LF_none ? m_eFault : m_pLoad->m_eFault;  // what kept the load from starting comes first
}

std::vector<tErrorRange> ILoaderCommon::getErrorRanges() const
{
    return getLoadErrors();
}

std::vector<tErrorRange> ILoaderCommon::getLoadErrors() const
{
    return m_pLoad->m_tErrors.ranges();
}

std::vector<tErrorPlace> ILoaderCommon::getErrorPlaces() const
{
    return m_pLoad->m_tErrors.places();
}

void ILoaderCommon::forgetErrors()
{
    ILoaderBase::forgetErrors();
    m_pLoad->forgetErrors();
}

void ILoaderCommon::startLoad(const char* data, unsigned int size, CFields& target, bool comments)
{
    forgetErrors();
    m_bComment = comments && m_tConfig.BC32_Check(LCBC_COMMENT);
    m_pLoad->start(data, size, target, getLCBC(), m_bComment);
}

void ILoaderCommon::finishLoad(CFields& target, bool done)
{
    m_pLoad->finish();
    if (!done)
        target.removeChildAll();
}

CFields* ILoaderCommon::getStackTopField() const
{
    return m_pLoad->m_vStack.back();
}

CFields* ILoaderCommon::addChild2StackTop(std::string_view name, unsigned int id)
{
    CFields* const top = getStackTopField();
    CFields* const member = top->addChildPtr(name, id, m_tConfig.BC32_Check(LCBC_DUPLICATE));
    return member == top ? nullptr : member;
}

CFields* ILoaderCommon::getLastField4Stack() const
{
    const std::vector<CFields*>& stack = m_pLoad->m_vStack;
    for (auto at = stack.rbegin(); at != stack.rend(); ++at)
    {
        if (*at == nullptr)
            continue;
        return detail::memberCount(**at) == 0 ? *at : &tFieldAccess::members(**at)->last();
    }
    return nullptr;
}

CFields* ILoaderCommon::getLastThirdField4Stack() const
{
    const std::vector<CFields*>& stack = m_pLoad->m_vStack;
    std::uint32_t back = 2;  // the members from last to first, then the node itself, then those of the entry below
    for (auto at = stack.rbegin(); at != stack.rend(); ++at)
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
    const std::vector<CFields*>& stack = m_pLoad->m_vStack;
    for (auto at = stack.rbegin(); at != stack.rend(); ++at)
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
    const char* const begin = m_pLoad->m_pDataBegin;
    std::optional<std::ptrdiff_t> secondOffset;
    if (second != nullptr)
        secondOffset = second - begin;
    return m_pLoad->addError(message, token.m_pBegin - begin, token.m_pEnd - begin, secondOffset);
}

bool ILoaderCommon::pushError(const CFields& node, const std::string& message)
{
    const std::ptrdiff_t size = m_pLoad->m_pDataEnd - m_pLoad->m_pDataBegin;
    if (node.getOffsetStart() > size || node.getOffsetEnd() > size)
        return false;
    m_pLoad->addError(message, node.getOffsetStart(), node.getOffsetEnd());
    return true;
}

bool ILoaderCommon::pushError(const CFields& node, const std::string& message, const CFields& second)
{
    const std::ptrdiff_t size = m_pLoad->m_pDataEnd - m_pLoad->m_pDataBegin;
    if (node.getOffsetStart() > size || node.getOffsetEnd() > size || second.getOffsetEnd() > size)
        return false;
    m_pLoad->addError(message, node.getOffsetStart(), node.getOffsetEnd(), second.getOffsetStart());
    return true;
}

void ILoaderCommon::composeErrors(bool lines)
{
    clearError();
    if (lines)
        m_pLoad->m_tErrors.countLines(m_pLoad->m_pDataBegin);
    m_pLoad->m_tErrors.appendTo(*this);
}

}  // namespace murv

// front/loaders.cpp - chooses the loader by what the data begins with.

#include <algorithm>
#include <iostream>
#include <string>

#include "core/error_table.h"
#include "core/throw.h"
#include "io/encoding_rule.h"
#include "murv/loader.h"

namespace murv
{

CLoaders::CLoaders(unsigned int flags) : ILoaderBase(flags), m_tText(flags), m_tBinary(flags)
{
}

CLoaders::CLoaders(const CLoaders& other) : ILoaderBase(other), m_tText(other.m_tText), m_tBinary(other.m_tBinary)
{
    follow(other);
}

CLoaders& CLoaders::operator=(const CLoaders& other)
{
    if (this == &other)
        return *this;
    ILoaderBase::operator=(other);
    m_tText = other.m_tText;
    m_tBinary = other.m_tBinary;
    follow(other);
    return *this;
}

void CLoaders::follow(const CLoaders& other)
{
    m_pLast = other.m_pLast == nullptr          ? nullptr
              : other.m_pLast == &other.m_tText ? static_cast<const ILoaderCommon*>(&m_tText)
                                                : &m_tBinary;
}

bool CLoaders::loadit(const char* data, unsigned int size, CFields& target, const char* password, bool comments)
{
    if (data == nullptr || size == 0)
        return false;
    forgetErrors();
    m_bComment = comments && m_tConfig.BC32_Check(LCBC_COMMENT);
    if (isTooBig(size, "murv::CLoaders::loadit", __LINE__))
        return false;
    // A file of the reserved rule 1, or one that names rule 0, goes to the text loader, which will say what it meets.
    // Lossless text may be as short as "5"; a binary file is longer.
    const bool isShortText = size < detail::s_cuiMagicSize && m_tConfig.BC32_Check(LCBC_LOSSLESS);
    const int rule = isShortText ? 0 : getER(data, size);
    if (rule < 0)
    {
        setUserError(detail::s_ciInvalidParameter, "[%s#%d] Unknown encoding rule(%d)", "murv::CLoaders::loadit",
                     __LINE__, rule);
        m_eFault = LF_encodingRule;
        return false;
    }
    return rule == 2 ? loadBy(m_tBinary, data, size, target, password, comments)
                     : loadBy(m_tText, data, size, target, password, comments);
}

void CLoaders::forgetErrors()
{
    ILoaderBase::forgetErrors();
    m_pLast = nullptr;
}

bool CLoaders::loadBy(ILoaderCommon& loader, const char* data, unsigned int size, CFields& target, const char* password,
                      bool comments)
{
    m_pLast = &loader;
    loader.setLCBC(m_tConfig);
    if (loader.loadit(data, size, target, password, comments))
        return true;
    m_eFault = LF_memory;  // should the message not find room
    CErrorBase::operator=(loader);
    m_eFault = loader.getLoadFault();
    return false;
}

bool CLoaders::getStatus() const
{
    return !isError();
}

std::vector<tErrorRange> CLoaders::getErrorRanges() const
{
    return m_pLast == nullptr ? std::vector<tErrorRange>() : m_pLast->getErrorRanges();
}

E_LoadFault CLoaders::getLoadFault() const
{
    return m_pLast == nullptr || m_eFault != LF_none ? m_eFault : m_pLast->getLoadFault();
}

std::vector<tErrorPlace> CLoaders::getErrorPlaces() const
{
    return m_pLast == nullptr ? std::vector<tErrorPlace>() : m_pLast->getErrorPlaces();
}

std::istream& operator>>(std::istream& in, CFields& target)
{
    CLoaders loader;
    if (loader.loading(in, target, ""))
        return in;
    constexpr std::size_t longestThrown = 255;
    std::string text = "[murv::operator >>#" + std::to_string(__LINE__) + "] " + loader.getLastErrMsg();
    std::cerr << text;
    if (text.back() != '\n')
        std::cerr << '\n';
    text.resize(std::min(text.size(), longestThrown));  // what does not fit was printed
    detail::throwLogicError("%s", text.c_str());
}

}  // namespace murv

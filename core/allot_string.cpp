// core/allot_string.cpp - short texts that are owned, borrowed or static.
//
// One function tests the arguments of all others. A copy is made before anything is freed, since the text may lie in
// the string itself.
#include "murv/strings.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "core/heap_text.h"

namespace murv
{

namespace
{
constexpr std::size_t s_cnLongest = 255;
constexpr unsigned int s_cuiPolicyBits = 3;

bool isAcceptable(const char* text, std::size_t length, CAllotString::E_DuplicationPolicy policy)
{
    return text != nullptr && length >= 1 && length <= s_cnLongest && policy <= CAllotString::DP_borrow;
}

unsigned int sai(unsigned int length, CAllotString::E_DuplicationPolicy policy)
{
    return (length << 2) | policy;
}
}  // namespace

CAllotString::CAllotString(const char* text)
{
    // One byte beyond the limit is enough to know that a text is too long.
    const std::size_t length = text == nullptr ? 0 : strnlen(text, s_cnLongest + 1);
    setData(text, static_cast<unsigned int>(length), DP_duplicate);
}

CAllotString::CAllotString(const char* text, unsigned int length, E_DuplicationPolicy policy)
{
    setData(text, length, policy);
}

CAllotString::CAllotString(const CAllotString& other)
{
    setData(other);
}

CAllotString::CAllotString(CAllotString&& other) noexcept
    : m_pData(std::exchange(other.m_pData, nullptr)), m_uiSAI(std::exchange(other.m_uiSAI, 0u))
{
}

CAllotString::~CAllotString()
{
    clear();
}

CAllotString& CAllotString::operator=(const CAllotString& other)
{
    if (this != &other)
        setData(other);
    return *this;
}

CAllotString& CAllotString::operator=(CAllotString&& other) noexcept
{
    if (this != &other)
    {
        clear();
        swap(other);
    }
    return *this;
}

void CAllotString::init()
{
    m_pData = nullptr;
    m_uiSAI = 0;
}

void CAllotString::clear()
{
    if (getDP() == DP_duplicate)
        std::free(const_cast<char*>(m_pData));
    init();
}

bool CAllotString::setData(const CAllotString& other)
{
    if (this == &other)
        return true;
    if (other.m_pData == nullptr || other.getDP() == DP_static)
    {
        clear();
        m_pData = other.m_pData;
        m_uiSAI = other.m_pData == nullptr ? other.m_uiSAI & s_cuiPolicyBits : other.m_uiSAI;
        return true;
    }
    const char* const copy = detail::duplicateStream(other.m_pData, other.getLength());
    clear();
    m_pData = copy;
    m_uiSAI = sai(other.getLength(), DP_duplicate);
    return true;
}

bool CAllotString::setData(const char* text, unsigned int length, E_DuplicationPolicy policy)
{
    if (!isAcceptable(text, length, policy))
        return false;
    // The copy comes first: the text may lie in this string.
    const char* const data = policy == DP_duplicate ? detail::duplicateStream(text, length) : text;
    clear();
    m_pData = data;
    m_uiSAI = sai(length, policy);
    return true;
}

const char* CAllotString::getData() const
{
    return m_pData;
}

unsigned int CAllotString::getLength() const
{
    return m_pData == nullptr ? 0 : m_uiSAI >> 2;
}

CAllotString::E_DuplicationPolicy CAllotString::getDP() const
{
    return static_cast<E_DuplicationPolicy>(m_uiSAI & s_cuiPolicyBits);
}

unsigned int CAllotString::getSAI() const
{
    return m_uiSAI;
}

bool CAllotString::isStaticString() const
{
    return m_pData != nullptr && getDP() == DP_static;
}

void CAllotString::swap(CAllotString& other) noexcept
{
    std::swap(m_pData, other.m_pData);
    std::swap(m_uiSAI, other.m_uiSAI);
}

bool CAllotString::operator<(const CAllotString& other) const
{
    if (m_pData == nullptr || other.m_pData == nullptr)
        return m_uiSAI < other.m_uiSAI;
    const int order = std::memcmp(m_pData, other.m_pData, std::min(getLength(), other.getLength()));
    return order != 0 ? order < 0 : getLength() < other.getLength();
}

bool CAllotString::operator==(const CAllotString& other) const
{
    if (m_pData == nullptr || other.m_pData == nullptr)
        return m_uiSAI == other.m_uiSAI;
    return getLength() == other.getLength() && std::memcmp(m_pData, other.m_pData, getLength()) == 0;
}

}  // namespace murv

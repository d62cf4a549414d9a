// core/error.cpp - the error state of working objects, and the exceptions of the tree.
//
// Messages are formatted into a buffer first, so that a message that does not fit changes nothing.
#include "murv/error.h"

#include <cerrno>
#include <cstdio>
#include <utility>

#include "core/error_table.h"

namespace murv
{

namespace
{
constexpr std::size_t s_cnMessageRoom = 512;
}

CErrorBase::~CErrorBase() = default;

CErrorBase& CErrorBase::operator=(const CErrorBase& other)
{
    m_iLastErrCode = other.m_iLastErrCode;
    if (this != &other)
        m_strLastErrMsg = other.m_strLastErrMsg;
    return *this;
}

bool CErrorBase::isError() const
{
    return m_iLastErrCode != 0 || !m_strLastErrMsg.empty();
}

int CErrorBase::getLastErrCode() const
{
    return m_iLastErrCode;
}

const std::string& CErrorBase::getLastErrMsg() const
{
    return m_strLastErrMsg;
}

void CErrorBase::addErrMsg(const char* text)
{
    if (text != nullptr)
        m_strLastErrMsg += text;
}

bool CErrorBase::setFixError(int code)
{
    for (const detail::tErrorRow& row : detail::s_ctErrors)
    {
        if (row.m_iCode != code)
            continue;
        m_strLastErrMsg = row.m_cText;
        m_iLastErrCode = code;
        return true;
    }
    return false;
}

bool CErrorBase::setUserError(int code, const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const bool done = setErrMsgVA(format, args);
    va_end(args);
    if (done)
        m_iLastErrCode = code;
    return done;
}

bool CErrorBase::setErrMsg(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    const bool done = setErrMsgVA(format, args);
    va_end(args);
    return done;
}

bool CErrorBase::setErrMsgVA(const char* format, va_list& args)
{
    if (format == nullptr)
        return false;
    char room[s_cnMessageRoom];
    const int before = errno;  // it belongs to the application
    const int length = std::vsnprintf(room, sizeof room, format, args);
    errno = before;
    if (length <= 0 || static_cast<std::size_t>(length) >= sizeof room)
        return false;
    m_strLastErrMsg.assign(room, static_cast<std::size_t>(length));
    return true;
}

void CErrorBase::clearError()
{
    m_iLastErrCode = 0;
    m_strLastErrMsg.clear();
}

CException::CException(std::string message) : m_strMessage(std::move(message))
{
}

CException::~CException() = default;

const char* CException::what() const noexcept
{
    return m_strMessage.c_str();
}

CLogicError::CLogicError(std::string message) : CException(std::move(message))
{
}

CLogicError::~CLogicError() = default;

}  // namespace murv

// murv/error.h - how failures are reported.
//
// Loaders and savers keep their last error as code and message; the value tree keeps none and throws on misuse. Both
// kinds of message begin "[function#line] ".
#ifndef MURV_ERROR_H
#define MURV_ERROR_H

#include <cstdarg>
#include <exception>
#include <string>

#include "murv/export.h"

namespace murv
{

/// Last error of a working object: a code of the error table (or the caller's own) and a message.
///
/// Belongs to one object and one thread. No operation throws, except that copying a message may run out of memory.
class MURV_API CErrorBase
{
public:
    /// No error: code 0 and an empty message.
    CErrorBase() = default;
    CErrorBase(const CErrorBase& other) = default;
    virtual ~CErrorBase();
    CErrorBase& operator=(const CErrorBase& other);

    /// True when the code is not 0 or the message is not empty.
    bool isError() const;
    int getLastErrCode() const;
    const std::string& getLastErrMsg() const;

    /// Appends to the message as it is; the code stays. Null does nothing.
    void addErrMsg(const char* text);

    /// Sets code and message from the fixed error table.
    /// \return false, with nothing changed, for a code that the table does not hold.
    bool setFixError(int code);

    /// Sets the code and a message of at most 511 characters, formatted as by printf.
    /// \return false, with nothing changed, when the text is empty, too long or not formattable.
    bool setUserError(int code, const char* format, ...);

    /// As setUserError, but leaves the code alone.
    bool setErrMsg(const char* format, ...);

    /// The core of the two above; `args` is used up.
    bool setErrMsgVA(const char* format, va_list& args) MURV_PRINTF(2, 0);

    /// Code 0, empty message.
    virtual void clearError();

private:
    int m_iLastErrCode = 0;
    std::string m_strLastErrMsg;
};

/// Base of what the library throws; what() is the message.
class MURV_API CException : public std::exception
{
public:
    explicit CException(std::string message);
    CException(const CException& other) = default;
    CException& operator=(const CException& other) = default;
    ~CException() override;
    const char* what() const noexcept override;

private:
    std::string m_strMessage;
};

/// Misuse of a node: a wrong type, an index that does not exist, a value that does not convert.
class MURV_API CLogicError : public CException
{
public:
    explicit CLogicError(std::string message);
    CLogicError(const CLogicError& other) = default;
    CLogicError& operator=(const CLogicError& other) = default;
    ~CLogicError() override;
};

}  // namespace murv

/// The one class of murv that has a global name, too.
using murv::CErrorBase;

#endif

// core/throw.h - exceptions of the value tree, with the place that throws.
//
// Every thrown message names the function and the line it comes from; the line is taken at the place of the call.
#pragma once

#include <cstdarg>
#include <string>

#include "murv/error.h"
#include "murv/export.h"

namespace murv::detail
{

/// Formats as printf into at most 255 characters; a null format, a failure or a longer text gives an empty string.
std::string formatString(const char* format, va_list args) MURV_PRINTF(1, 0);

/// Throws CLogicError with the formatted text. Ends the process when the text is empty: an error must say something.
[[noreturn]] void throwLogicError(const char* format, ...) MURV_PRINTF(1, 2);

/// The qualified name of the reporting function, and the line of the call.
struct tPlace
{
    const char* m_pFunction;
    int m_iLine;

    constexpr tPlace(const char* function, int line = __builtin_LINE()) : m_pFunction(function), m_iLine(line)
    {
    }
};

/// Throws "[function#line] text".
[[noreturn]] void throwAt(tPlace place, const char* text);

/// Throws "[function#line] text" with "%d" in the text replaced by `number`.
[[noreturn]] void throwAt(tPlace place, const char* text, int number);
[[noreturn]] void throwAt(tPlace place, const char* text, int number, int second);

/// What throwNoMemory throws, so that loaders can distinguish it from misuse.
class CMemoryError final : public CLogicError
{
public:
    using CLogicError::CLogicError;
};

/// Throws "[function#line] Failed to allocate string a_cpSrc buffer".
[[noreturn]] void throwNoMemory(tPlace place);

/// Throws the bare text of a broken invariant.
[[noreturn]] void throwMismatch();

}  // namespace murv::detail

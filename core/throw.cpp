// core/throw.cpp - exceptions of the value tree, with the place that throws.
//
// Texts are formatted in a buffer of fixed size, so that a message stays short whatever it quotes.
#include "core/throw.h"

#include <cstdio>
#include <cstdlib>

#include "murv/error.h"

namespace murv::detail
{

namespace
{
constexpr std::size_t s_cnFormatRoom = 256;

/// Puts the place before a text that may hold conversions of its own.
std::string prefixed(tPlace place, const char* text)
{
    std::string message = "[";
    message.append(place.m_pFunction).append("#").append(std::to_string(place.m_iLine)).append("] ").append(text);
    return message;
}
}  // namespace

std::string formatString(const char* format, va_list args)
{
    if (format == nullptr)
        return {};
    char room[s_cnFormatRoom];
    const int length = std::vsnprintf(room, sizeof room, format, args);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof room)
        return {};
    return {room, static_cast<std::size_t>(length)};
}

void throwLogicError(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    std::string text = formatString(format, args);
    va_end(args);
    if (text.empty())
        std::abort();
    throw CLogicError(std::move(text));
}

void throwAt(tPlace place, const char* text)
{
    throwLogicError("%s", prefixed(place, text).c_str());
}

void throwAt(tPlace place, const char* text, int number)
{
    throwLogicError(prefixed(place, text).c_str(), number);
}

void throwAt(tPlace place, const char* text, int number, int second)
{
    throwLogicError(prefixed(place, text).c_str(), number, second);
}

void throwNoMemory(tPlace place)
{
    throw CMemoryError(prefixed(place, "Failed to allocate string a_cpSrc buffer"));
}

void throwMismatch()
{
    throw CLogicError("mismatched condition");
}

}  // namespace murv::detail

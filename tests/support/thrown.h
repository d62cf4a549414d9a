// tests/support/thrown.h - what a misuse says.
//
// Messages carry the source line of the throwing code; tests compare everything else exactly.
#pragma once

#include <string>

#include "murv/error.h"

namespace murv::tests
{

/// "[function#123] text" as "[function#0] text"; other texts as they are.
inline std::string withoutLine(std::string message)
{
    const std::size_t mark = message.find('#');
    if (message.empty() || message[0] != '[' || mark == std::string::npos)
        return message;
    const std::size_t end = message.find_first_not_of("0123456789", mark + 1);
    if (end == mark + 1 || end == std::string::npos || message[end] != ']')
        return message;
    return message.replace(mark + 1, end - mark - 1, "0");
}

/// The message of the CLogicError that the action throws, with the line number replaced by 0.
template <typename tAction>
std::string thrown(tAction&& action)
{
    try
    {
        action();
    }
    catch (const CLogicError& error)
    {
        return withoutLine(error.what());
    }
    return "(nothing was thrown)";
}

}  // namespace murv::tests

// tests/tasks/message_of.h - what an exception of any library says.
#pragma once

#include <exception>
#include <string>

namespace murv::tests
{

/// The message of the exception that the action throws.
template <typename tAction>
std::string messageOf(tAction&& action)
{
    try
    {
        action();
    }
    catch (const std::exception& error)
    {
        return error.what();
    }
    return "(nothing was thrown)";
}

}  // namespace murv::tests

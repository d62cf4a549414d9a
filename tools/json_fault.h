// tools/json_fault.h - what is wrong with a JSON text, and where.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace murv::tool
{

struct tJsonFault
{
    std::size_t m_nOffset = 0;
    std::size_t m_nLength = 1;
    std::string m_strMessage;
};

/// What the parser said: without the place, which is `position` bytes into the text, and without its own name.
tJsonFault fault4Parser(std::size_t position, std::string_view message);

}  // namespace murv::tool

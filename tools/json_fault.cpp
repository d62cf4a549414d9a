// tools/json_fault.cpp - the parser's messages in the form of the tool's.
#include "tools/json_fault.h"

namespace murv::tool
{

tJsonFault fault4Parser(std::size_t position, std::string_view message)
{
    // "[json.exception.parse_error.101] parse error at line 1, column 5: syntax error while ...", or without a place
    for (const std::string_view end : {std::string_view("] "), std::string_view(": ")})
    {
        const std::size_t found = message.find(end);
        const bool isPrefix = end.front() == ']' ? message.substr(0, 1) == "[" : message.substr(0, 11) == "parse error";
        if (isPrefix && found != std::string_view::npos)
            message.remove_prefix(found + end.size());
    }
    return {position == 0 ? 0 : position - 1, 1, "no JSON: " + std::string(message)};
}

}  // namespace murv::tool

// tools/json_events.cpp - runs the parser of JSON.
#include "tools/json_events.h"

#include <algorithm>

namespace murv::tool
{

bool CJsonEvents::parse(std::string_view text)
{
    // The parser takes a byte of value 0 for the end, and would say nothing of what follows it.
    const std::size_t end = std::min(text.find('\0'), text.size());
    if (!nlohmann::json::sax_parse(text.substr(0, end), this))
        return false;
    if (end != text.size())
        m_tFault = {end, 1, "no JSON: a byte of value 0"};
    return end == text.size();
}

}  // namespace murv::tool

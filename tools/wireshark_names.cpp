// tools/wireshark_names.cpp - makes names fit.
#include "tools/wireshark_names.h"

#include <algorithm>

namespace murv::tool
{

namespace
{
bool isPlain(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
}
}  // namespace

std::string filterName(std::string_view name)
{
    std::string fitting;
    for (char c : name)
    {
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
        if (isPlain(c))
            fitting += c;
        else if (!fitting.empty() && fitting.back() != '_')
            fitting += '_';
    }
    while (!fitting.empty() && fitting.back() == '_')
        fitting.pop_back();
    return fitting.empty() ? "part" : fitting;
}

bool isProtocolName(std::string_view text)
{
    return !text.empty() && !(text[0] >= '0' && text[0] <= '9') &&
           std::all_of(text.begin(), text.end(), [](char c) { return isPlain(c) || c == '_'; });
}

std::string CFieldNames::take(const std::string& path)
{
    std::string name = path;
    for (unsigned int number = 2; !m_vTaken.insert(name).second; ++number)
        name = path + "_" + std::to_string(number);
    return name;
}

}  // namespace murv::tool

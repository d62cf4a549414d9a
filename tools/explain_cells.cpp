// tools/explain_cells.cpp - bytes as digits and characters, values without the quotes of their keys.
#include "tools/explain_cells.h"

#include <algorithm>

#include "tools/hex_text.h"
#include "tools/text_table.h"
#include "tools/utf8.h"

namespace murv::tool
{

std::string cutText(std::string_view text, std::size_t most)
{
    if (columns4Text(text) <= most)
        return std::string(text);
    std::size_t has = 0;
    std::size_t taken = 0;
    while (taken < text.size())
    {
        const std::size_t length = std::max<std::size_t>(utf8Length(text.substr(taken)), 1);
        has += columns4Text(text.substr(taken, length));
        if (has + 3 > most)
            break;
        taken += length;
    }
    return std::string(text.substr(0, taken)) + "...";
}

std::string shownValue(const tExplainRow& row, std::size_t most)
{
    std::string value = row.m_strValue;
    if (value.compare(0, 8, "{\"hex\":\"") == 0)
        return "0x" + cutText(value.substr(8, value.size() - 10), most - 2);
    if (!value.empty() && value[0] == '{')  // a number that consists of small ones
    {
        value.erase(std::remove(value.begin(), value.end(), '"'), value.end());
        std::string words;
        for (const char character : value.substr(1, value.size() - 2))
            words += character == ':' ? " " : character == ',' ? ", " : std::string(1, character);
        return words;
    }
    return cutText(value, most);
}

std::string hex4Bytes(const tExplainRow& row, std::size_t from, std::size_t count)
{
    std::string hex;
    for (std::size_t at = from; at < from + count; ++at)
    {
        hex += at == from ? "" : " ";
        if (!row.m_vHidden.empty() && row.m_vHidden[at])
            hex += "**";
        else
            appendHex(hex, std::string_view(row.m_strBytes).substr(at, 1));
    }
    return hex;
}

std::string shownBytes(std::string_view bytes)
{
    std::string shown;
    for (const char byte : bytes)
        shown += byte >= ' ' && byte < 0x7F ? byte : '.';
    return shown;
}

}  // namespace murv::tool

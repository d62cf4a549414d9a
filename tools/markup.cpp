// tools/markup.cpp - one pass over the characters.
#include "tools/markup.h"

#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
const char* entity4(char c)
{
    switch (c)
    {
    case '&': return "&amp;";
    case '<': return "&lt;";
    case '>': return "&gt;";
    case '"': return "&quot;";
    case '\'': return "&#39;";
    case '\n': return "\n";
    case '\t': return " ";
    default: return nullptr;
    }
}

/// Characters that XML does not take.
bool isForbidden(char32_t character)
{
    return isControl(character) || (character & 0xFFFE) == 0xFFFE;
}
}  // namespace

std::string markup4Text(std::string_view text)
{
    std::string markup;
    while (!text.empty())
    {
        const std::size_t length = utf8Length(text);
        const char* const entity = entity4(text.front());
        if (entity != nullptr)
            markup += entity;
        else if (length == 0 || isForbidden(codePoint(text.substr(0, length))))
            markup += "\xEF\xBF\xBD";
        else
            markup += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return markup;
}

}  // namespace murv::tool

// tests/support/json_to_text.h - a JSON document in the text notation.
//
// Blanks, line breaks and the spelling of numbers stay as they are, so that both forms of a document are of like size
// and shape. What changes is ":" to "=" and \u escapes to the bytes of their characters.
#pragma once

#include <cstdlib>
#include <string>
#include <string_view>

namespace murv::tests
{

inline void appendUtf8(std::string& text, unsigned int point)
{
    const auto put = [&text](unsigned int byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (point < 0x80)
    {
        // What must stay escaped is escaped in the notation's own way.
        static constexpr char hex[] = "0123456789ABCDEF";
        if (point < 32 || point == '"' || point == '\\')
            (((text += "\\x") += hex[point >> 4])) += hex[point & 15];
        else
            put(point);
        return;
    }
    if (point >= 0x10000)
    {
        put(0xF0 | point >> 18);
        put(0x80 | (point >> 12 & 63));
    }
    else if (point >= 0x800)
        put(0xE0 | point >> 12);
    if (point >= 0x800)
        put(0x80 | (point >> 6 & 63));
    else
        put(0xC0 | point >> 6);
    put(0x80 | (point & 63));
}

/// \param json  a well-formed document
inline std::string text4Json(std::string_view json)
{
    const auto unit4Escape = [json](std::size_t at) {
        return static_cast<unsigned int>(std::strtoul(std::string(json.substr(at + 2, 4)).c_str(), nullptr, 16));
    };
    std::string text;
    text.reserve(json.size());
    bool quoted = false;
    for (std::size_t i = 0; i < json.size(); ++i)
    {
        const char byte = json[i];
        if (byte == '"')
            quoted = !quoted;
        if (!quoted || byte != '\\')
        {
            text += !quoted && byte == ':' ? '=' : byte;
            continue;
        }
        if (json[i + 1] != 'u')
        {
            text += byte;
            text += json[++i];
            continue;
        }
        unsigned int point = unit4Escape(i);
        i += 5;
        if (point >= 0xD800 && point < 0xDC00 && json.substr(i + 1, 2) == "\\u")
        {
            point = 0x10000 + ((point & 1023) << 10) + (unit4Escape(i + 1) & 1023);
            i += 6;
        }
        appendUtf8(text, point);
    }
    return text;
}

}  // namespace murv::tests

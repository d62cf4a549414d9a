// tools/json_text.cpp - JSON strings and numbers.
#include "tools/json_text.h"

#include <array>
#include <charconv>
#include <cmath>

#include "tools/hex_text.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::array<bool, 256> makePlain()
{
    std::array<bool, 256> plain{};
    for (std::size_t byte = 0x20; byte < 0x7F; ++byte)
        plain[byte] = byte != '"' && byte != '\\';
    return plain;
}

constexpr std::array<bool, 256> s_ctPlain = makePlain();

/// Escapes a quote, a backslash or a control character. What a terminal would act on is escaped too, so that people can
/// look at JSON; programs read the same.
void appendEscaped(std::string& out, char32_t character)
{
    constexpr char digits[] = "0123456789abcdef";
    switch (character)
    {
    case '"': out += "\\\""; return;
    case '\\': out += "\\\\"; return;
    case '\b': out += "\\b"; return;
    case '\f': out += "\\f"; return;
    case '\n': out += "\\n"; return;
    case '\r': out += "\\r"; return;
    case '\t': out += "\\t"; return;
    default: break;
    }
    out += "\\u";
    for (const unsigned int shift : {12U, 8U, 4U, 0U})
        out += digits[character >> shift & 0xFU];
}

/// How many bytes at the beginning stand for themselves, whatever follows them.
std::size_t plainLength(std::string_view text)
{
    std::size_t length = 0;
    while (length < text.size() && s_ctPlain[static_cast<unsigned char>(text[length])])
        ++length;
    return length;
}
}  // namespace

std::string json4Text(std::string_view text)
{
    std::string out;
    appendJsonText(out, text);
    return out;
}

void appendJsonText(std::string& out, std::string_view text)
{
    out += '"';
    while (!text.empty())
    {
        const std::size_t plain = plainLength(text);
        out.append(text.data(), plain);
        text.remove_prefix(plain);
        if (text.empty())
            break;
        const std::size_t length = utf8Length(text);
        const char32_t character = length == 0 ? 0 : codePoint(text.substr(0, length));
        if (length == 0)
            out += "\xEF\xBF\xBD";
        else if (character == '"' || character == '\\' || isControl(character))
            appendEscaped(out, character);
        else
            out += text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    out += '"';
}

void appendJsonBytes(std::string& out, std::string_view bytes)
{
    if (plainLength(bytes) == bytes.size())
    {
        out += '"';
        out += bytes;
        out += '"';
        return;
    }
    if (isUtf8(bytes))
        return appendJsonText(out, bytes);
    out += "{\"hex\":\"";
    appendHex(out, bytes);
    out += "\"}";
}

void appendJsonDouble(std::string& out, double value)
{
    const char* const quote = std::isfinite(value) ? "" : "\"";
    out += quote;
    appendDouble(out, value);
    out += quote;
}

void appendDouble(std::string& out, double value)
{
    if (!std::isfinite(value))
    {
        out += std::isnan(value) ? "NaN" : value < 0 ? "-Infinity" : "Infinity";
        return;
    }
    char text[32];
    const std::to_chars_result result = std::to_chars(text, text + sizeof text, value);
    const std::string_view digits(text, static_cast<std::size_t>(result.ptr - text));
    out += digits;
    if (digits.find_first_of(".e") == std::string_view::npos)
        out += ".0";
}

}  // namespace murv::tool

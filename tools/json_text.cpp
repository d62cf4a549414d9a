// tools/json_text.cpp - JSON strings and values.
//
// The walk over a value keeps a stack of its own: the depth of a tree must not decide how deep the program recurses.
#include "tools/json_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <vector>

#include "murv/text.h"
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

std::string json4Double(double value)
{
    if (std::isnan(value))
        return "null";
    if (std::isinf(value))
        return ToString(value);
    char text[32];
    const std::to_chars_result result = std::to_chars(text, text + sizeof text, value);
    return {text, result.ptr};
}

std::string json4Scalar(const CFields& node)
{
    switch (node.getDT())
    {
    case DT_null: return "null";
    case DT_double: return json4Double(node.asDouble());
    case DT_codelist: return json4Text(node.asString());
    default: return node.asString();
    }
}

struct tOpen
{
    const CFields* m_pNode;
    unsigned int m_uiNext;
};
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

std::string json4Value(const CFields& node)
{
    std::string out;
    std::vector<tOpen> open;
    const CFields* next = &node;
    while (next != nullptr || !open.empty())
    {
        if (next != nullptr)
        {
            if (next->isField() || next->isArray())
            {
                out += next->isField() ? '{' : '[';
                open.push_back({next, 0});
            }
            else
            {
                out += json4Scalar(*next);
            }
        }
        next = nullptr;
        if (open.empty())
            continue;
        tOpen& top = open.back();
        const bool named = top.m_pNode->isField();
        if (top.m_uiNext == top.m_pNode->getChildCount())
        {
            out += named ? '}' : ']';
            open.pop_back();
            continue;
        }
        if (top.m_uiNext != 0)
            out += ',';
        next = &top.m_pNode->getChildAt(top.m_uiNext++);
        if (named)
            out += json4Text({next->getName(), next->getNameLen()}) + ":";
    }
    return out;
}

}  // namespace murv::tool

// tools/lua_text.cpp - quoting, and tables.
#include "tools/lua_text.h"

#include <algorithm>

#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnLine = 116;
constexpr long long s_cllMostExact = 1LL << 53;

constexpr std::string_view s_cstrvReserved[] = {"and",      "break",  "do",   "else", "elseif", "end",  "false", "for",
                                                "function", "goto",   "if",   "in",   "local",  "nil",  "not",   "or",
                                                "repeat",   "return", "then", "true", "until",  "while"};

bool isName(std::string_view text)
{
    const auto isPlain = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    };
    return !text.empty() && !(text[0] >= '0' && text[0] <= '9') && std::all_of(text.begin(), text.end(), isPlain) &&
           std::find(std::begin(s_cstrvReserved), std::end(s_cstrvReserved), text) == std::end(s_cstrvReserved);
}

std::string lua4Integer(const CFields& node)
{
    const std::string digits = node.asString();
    const bool isExact = node.getDT() == DT_sint
                             ? node.asSint64() <= s_cllMostExact && node.asSint64() >= -s_cllMostExact
                             : node.asUint64() <= static_cast<unsigned long long>(s_cllMostExact);
    return isExact ? digits : "\"" + digits + "\"";
}

std::string lua4Scalar(const CFields& node)
{
    switch (node.getDT())
    {
    case DT_null: return "nil";
    case DT_codelist: return lua4Text(node.asString());
    case DT_sint:
    case DT_uint: return lua4Integer(node);
    default: return node.asString();
    }
}
}  // namespace

std::string lua4Text(std::string_view text)
{
    std::string quoted = "\"";
    while (!text.empty())
    {
        const std::size_t length = utf8Length(text);
        const bool isHidden = length == 0 || isControl(codePoint(text.substr(0, length)));
        if (!isHidden)
            quoted.append(text[0] == '"' || text[0] == '\\' ? "\\" : "").append(text.substr(0, length));
        const std::size_t size = std::max<std::size_t>(length, 1);
        for (const char byte : text.substr(0, isHidden ? size : 0))
        {
            const std::string digits = std::to_string(static_cast<unsigned int>(static_cast<unsigned char>(byte)));
            quoted.append("\\").append(3 - digits.size(), '0').append(digits);
        }
        text.remove_prefix(size);
    }
    return quoted + "\"";
}

std::string lua4Key(std::string_view name)
{
    return isName(name) ? std::string(name) + " = " : "[" + lua4Text(name) + "] = ";
}

std::string lua4Node(const CFields& node, unsigned int indent)
{
    if (!node.isField() && !node.isArray())
        return lua4Scalar(node);
    std::vector<std::string> members;
    std::size_t width = 4;
    bool isFlat = true;
    for (unsigned int i = 0; i < node.getChildCount(); ++i)
    {
        const CFields& member = node.getChildAt(i);
        const std::string key = node.isField() ? lua4Key({member.getName(), member.getNameLen()}) : std::string();
        members.push_back(key + lua4Node(member, indent + 2));
        width += members.back().size() + 2;
        isFlat = isFlat && members.back().find('\n') == std::string::npos;
    }
    if (members.empty())
        return "{}";
    const bool isOneLine = isFlat && indent + width <= s_cnLine;
    const std::string blanks(indent + 2, ' ');
    std::string table = "{";
    for (std::size_t i = 0; i < members.size(); ++i)
        table += (isOneLine ? " " : "\n" + blanks) + members[i] + (i + 1 == members.size() && isOneLine ? "" : ",");
    return table + (isOneLine ? " }" : "\n" + std::string(indent, ' ') + "}");
}

}  // namespace murv::tool

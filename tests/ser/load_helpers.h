// tests/ser/load_helpers.h - one-line loads whose result is one line of text.
//
// The result is written in a notation of the tests' own, so that expectations do not lean on the savers.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "murv/loader.h"
#include "tests/core/text_helpers.h"

namespace murv::tests
{

inline constexpr unsigned int s_cuiUsual = LCBC_COMMENT | LCBC_EMPTY_NULL;

inline std::string showBytes(std::string_view bytes)
{
    std::string text;
    for (const char byte : bytes)
    {
        const auto code = static_cast<unsigned char>(byte);
        if (code >= 32 && code < 127)
            text += byte;
        else
            text += "\\" + std::to_string(code);
    }
    return text;
}

inline std::string showValue(const CFields& node, E_ValueKind vk = VK_actual)
{
    const char* data = nullptr;
    switch (node.getDT(vk))
    {
    case DT_null: return "null";
    case DT_bool: return node.asBool(vk) ? "true" : "false";
    case DT_sint: return node.asString(vk);
    case DT_uint: return node.asString(vk) + "u";
    case DT_double: return node.asString(vk) + "d";
    case DT_codelist:
    {
        const unsigned int length = node.getCodePoint(&data, vk);
        return data == nullptr ? "(no text)" : "\"" + showBytes({data, length}) + "\"";
    }
    default: return "?";
    }
}

/// `#7 name=value`, containers in their brackets; doubles end in d, unsigned numbers in u; comments stand after the
/// value as <0:before> <1:trailing> <2:after>; a second value that is in use as |value.
inline std::string show(const CFields& node)
{
    std::string text = node.getID() != 0 ? "#" + std::to_string(node.getID()) + " " : "";
    if (node.getNameLen() != 0)
        text += showBytes({node.getName(), node.getNameLen()}) + "=";
    if (node.isField() || node.isArray())
    {
        std::string members;
        for (const CFields& member : node)
            members += (members.empty() ? "" : ",") + show(member);
        text += node.isField() ? "{" + members + "}" : "[" + members + "]";
    }
    else
        text += showValue(node);
    if (node.getVK() != VK_actual)
        text += "|" + showValue(node, VK_fix);
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
    {
        if (node.hasComment(position))
            text += "<" + std::to_string(position) + ":" + showBytes(node.getCommentCopy(position)) + ">";
    }
    return text;
}

/// One load, from a block of exactly the text's size.
struct tLoad
{
    explicit tLoad(std::string_view text, unsigned int flags = s_cuiUsual, bool comments = true) : m_tLoader(flags)
    {
        load(text, comments);
    }
    void load(std::string_view text, bool comments = true)
    {
        const CExactText exact(text);
        m_bDone = m_tLoader.loadit(exact.begin(), static_cast<unsigned int>(exact.size()), m_tTree, nullptr, comments);
    }
    /// The tree, or the message of the failure.
    std::string result() const
    {
        return m_bDone ? show(m_tTree) : m_tLoader.getLastErrMsg();
    }

    CLoader4SER m_tLoader;
    CFields m_tTree;
    bool m_bDone = false;
};

inline std::string loaded(std::string_view text, unsigned int flags = s_cuiUsual)
{
    return tLoad(text, flags).result();
}

inline std::string loadedWithout(unsigned int flags, std::string_view text)
{
    return loaded(text, s_cuiUsual & ~flags);
}

/// The message of one error without a second place.
inline std::string errorAt(int line, int column, std::string_view message)
{
    return "* Line " + std::to_string(line) + ", Column " + std::to_string(column) + "\n  " + std::string(message) +
           "\n";
}

inline std::string errorAt(int line, int column, std::string_view message, int secondLine, int secondColumn)
{
    return errorAt(line, column, message) + "See Line " + std::to_string(secondLine) + ", Column " +
           std::to_string(secondColumn) + " for detail.\n";
}

inline std::string repeated(std::string_view text, std::size_t count)
{
    std::string all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

inline constexpr const char* s_cpNoValue = "Syntax error: value, field or array expected.";
inline constexpr const char* s_cpBadId = "Failed to loading for the #ID syntax";
inline constexpr const char* s_cpNoName = "Missing '}' or field member name";
inline constexpr const char* s_cpNotAdded = "This field not allow the duplication or a error occured";
inline constexpr const char* s_cpNoFieldsEnd = "Missing ',' or '}' in field declaration";
inline constexpr const char* s_cpNoComma = "Missing ','";
inline constexpr const char* s_cpNoArrayEnd = "Missing ',' or ']' in array declaration";

}  // namespace murv::tests

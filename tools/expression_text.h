// tools/expression_text.h - packet expressions as documents write them: ACF8YYYYMMDD, and back.
//
// They are written and read by the library's own saver and loader, so that they mean the same everywhere. A document
// has few that differ: each is looked at once.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

#include "murv/fields.h"

namespace murv::tool
{

class CExpressionTexts
{
public:
    /// The expression of a node, without parentheses.
    /// \param text  empty when it has none; valid until the next call
    /// \return null, or the name of what text cannot hold of it: words that end a sentence
    const char* text4Node(const CFields& node, std::string_view& text);

private:
    struct tText
    {
        std::string m_strText;
        const char* m_pLoss = nullptr;
    };
    static tText makeText(const CFields& node);

    std::unordered_map<std::string, tText> m_vTexts;  // by the bytes of type, value kind and expression
};

class CTextExpressions
{
public:
    /// Gives a scalar with its value the expression of that text, and the second value that belongs to it.
    /// \return false when the text is no expression
    bool set(CFields& scalar, const std::string& text);

private:
    struct tExpression
    {
        tPacketExpInfo m_tPei{};
        E_ValueKind m_eKind = VK_actual;
        bool m_bValid = false;
    };
    static tExpression read(const std::string& text);

    std::unordered_map<std::string, tExpression> m_vRead;
};

}  // namespace murv::tool

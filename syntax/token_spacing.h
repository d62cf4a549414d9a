// syntax/token_spacing.h - what stands between two tokens on one line.
#pragma once

#include "syntax/grammar_reader.h"

namespace murv::detail
{

/// A token as its neighbours see it.
struct tNeighbour
{
    E_SyntaxRole m_eRole;
    bool m_bFields;  // of a bracket: of a field set
};

/// Whether a blank stands between two tokens of one line: [1, 2] and { "a" = 1 } and #7 "b" = (ANF4) 5.
inline bool hasBlankBetween(const tNeighbour& left, const tNeighbour& right)
{
    if (right.m_eRole == SR_comma)
        return left.m_eRole == SR_comma;
    if (left.m_eRole == SR_open)
        return left.m_bFields && right.m_eRole != SR_close;
    return right.m_eRole != SR_close || right.m_bFields;
}

/// A token without the line end that belongs to a comment of one line.
inline std::string_view textWithoutLineEnd(const tTokenInfo& token)
{
    std::string_view text(token.m_pBegin, static_cast<std::size_t>(token.m_pEnd - token.m_pBegin));
    if (token.m_eType == TT_comment)
    {
        while (!text.empty() && (text.back() == '\n' || text.back() == '\r'))
            text.remove_suffix(1);
    }
    return text;
}

inline bool isLineComment(const tTokenInfo& token)
{
    return token.m_eType == TT_comment && token.m_pBegin[1] == '/';
}

}  // namespace murv::detail

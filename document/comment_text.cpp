// document/comment_text.cpp - walks over blanks and comments.
#include "document/comment_text.h"

#include "syntax/token_scanner.h"
#include "syntax/token_spacing.h"

namespace murv::detail
{

namespace
{

struct tLines
{
    std::size_t m_nCount = 0;
    const char* m_pLast = nullptr;  // where the last one begins
};

tLines countLines(const char* begin, const char* end)
{
    tLines lines;
    for (const char* at = findLineEnd(begin, end); at != end; at = findLineEnd(at, end))
    {
        lines.m_pLast = at;
        ++lines.m_nCount;
        at += *at == '\r' && at + 1 != end && at[1] == '\n' ? 2 : 1;
    }
    return lines;
}

}  // namespace

tCutBlanks cutBlanks(std::string_view text)
{
    tCutBlanks cut{{}, text};
    CTokenScanner scanner(text);
    const char* end = text.data();
    bool isAfterLine = false;
    for (;;)
    {
        const tTokenInfo token = scanner.next();
        const tLines lines = countLines(end, token.m_pBegin);
        if (lines.m_nCount + (isAfterLine ? 1 : 0) > 1)
        {
            const auto place = static_cast<std::size_t>(lines.m_pLast - text.data());
            cut = {text.substr(0, place), text.substr(place), cut.m_bComment, cut.m_bComment};
        }
        if (token.m_eType != TT_comment)
            return cut;
        cut.m_bComment = true;
        isAfterLine = isLineComment(token);
        end = token.m_pEnd;
    }
}

tLineBegin lastLineIn(std::string_view text)
{
    tLineBegin line;
    CTokenScanner scanner(text);
    const char* end = text.data();
    bool isAfterLine = false;
    for (;;)
    {
        const tTokenInfo token = scanner.next();
        const tLines lines = countLines(end, token.m_pBegin);
        if (lines.m_nCount != 0)
            end = lines.m_pLast + (*lines.m_pLast == '\r' && lines.m_pLast[1] == '\n' ? 2 : 1);
        if (lines.m_nCount != 0 || isAfterLine)
            line = {true, {end, static_cast<std::size_t>(token.m_pBegin - end)}};
        if (token.m_eType != TT_comment)
            return line;
        isAfterLine = isLineComment(token);
        end = token.m_pEnd;
    }
}

tCutComma cutComma(std::string_view text)
{
    CTokenScanner scanner(text);
    tTokenInfo token = scanner.next();
    while (token.m_eType == TT_comment)
        token = scanner.next();
    if (token.m_eType != TT_comma)
        return {text, {}, false};
    const auto place = static_cast<std::size_t>(token.m_pBegin - text.data());
    return {text.substr(0, place), text.substr(place + 1), true};
}

bool endsInLineComment(std::string_view text)
{
    CTokenScanner scanner(text);
    bool isLine = false;
    for (tTokenInfo token = scanner.next(); token.m_eType != TT_end; token = scanner.next())
        isLine = isLineComment(token);
    return isLine;
}

bool hasCommentOfLine(std::string_view text)
{
    CTokenScanner scanner(text);
    for (tTokenInfo token = scanner.next(); token.m_eType != TT_end; token = scanner.next())
    {
        const bool hasLine = findLineEnd(token.m_pBegin, token.m_pEnd) != token.m_pEnd;
        if (token.m_eType == TT_comment && (isLineComment(token) || hasLine))
            return true;
        std::string_view expression;
        if (token.m_eType == TT_peiBegin)
            scanner.takeExpression(token, expression);
    }
    return false;
}

}  // namespace murv::detail

// document/comment_text.cpp - walks over blanks and comments.
#include "document/comment_text.h"

#include <algorithm>

#include "syntax/token_scanner.h"
#include "syntax/token_spacing.h"

namespace murv::detail
{

namespace
{

/// The blanks before each comment, and after the last one. The line end of a comment of one line counts with the blanks
/// after it.
class CBlanks
{
public:
    explicit CBlanks(std::string_view text) : m_tScanner(text), m_pBegin(text.data()), m_tNext(m_tScanner.next())
    {
        readLines();
    }
    bool isBeforeComment() const
    {
        return m_tNext.m_eType == TT_comment;
    }
    void next()
    {
        m_pBegin = m_tNext.m_pBegin + textWithoutLineEnd(m_tNext).size();
        m_tNext = m_tScanner.next();
        readLines();
    }
    std::size_t countLineEnds() const
    {
        return m_nLineEnds;
    }
    std::string_view firstLineEnd() const
    {
        return m_strvFirst;
    }
    std::string_view lastLineEnd() const
    {
        return m_strvLast;
    }
    std::string_view afterLastLineEnd() const
    {
        const char* const begin = m_strvLast.data() + m_strvLast.size();
        return {begin, static_cast<std::size_t>(m_tNext.m_pBegin - begin)};
    }

private:
    void readLines();

    CTokenScanner m_tScanner;
    const char* m_pBegin;
    tTokenInfo m_tNext;
    std::size_t m_nLineEnds = 0;
    std::string_view m_strvFirst;
    std::string_view m_strvLast;
};

void CBlanks::readLines()
{
    m_nLineEnds = 0;
    const char* const end = m_tNext.m_pBegin;
    for (const char* at = findLineEnd(m_pBegin, end); at != end; at = findLineEnd(at, end))
    {
        const bool isPair = *at == '\r' && at + 1 != end && at[1] == '\n';
        m_strvLast = {at, isPair ? std::size_t{2} : std::size_t{1}};
        if (m_nLineEnds++ == 0)
            m_strvFirst = m_strvLast;
        at += m_strvLast.size();
    }
}

}  // namespace

tCutBlanks cutBlanks(std::string_view text)
{
    tCutBlanks cut{{}, text};
    for (CBlanks blanks(text);; blanks.next())
    {
        if (blanks.countLineEnds() > 1)
        {
            const auto place = static_cast<std::size_t>(blanks.lastLineEnd().data() - text.data());
            cut = {text.substr(0, place), text.substr(place), cut.m_bComment, cut.m_bComment};
        }
        if (!blanks.isBeforeComment())
            return cut;
        cut.m_bComment = true;
    }
}

tLineBegin lastLineIn(std::string_view text)
{
    tLineBegin line;
    for (CBlanks blanks(text);; blanks.next())
    {
        if (blanks.countLineEnds() != 0)
            line = {true, blanks.afterLastLineEnd()};
        if (!blanks.isBeforeComment())
            return line;
    }
}

std::string_view firstLineEndIn(std::string_view text)
{
    for (CBlanks blanks(text);; blanks.next())
    {
        if (blanks.countLineEnds() != 0)
            return blanks.firstLineEnd();
        if (!blanks.isBeforeComment())
            return {};
    }
}

std::string_view withoutBlanks(std::string_view text)
{
    return text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
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

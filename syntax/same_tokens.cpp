// syntax/same_tokens.cpp - compares two texts token by token.
#include "murv/syntax.h"
#include "syntax/token_scanner.h"
#include "syntax/token_spacing.h"

namespace murv
{

namespace
{

using namespace detail;

/// The tokens of a text that a layout keeps, one after the other.
class CKeptTokens
{
public:
    CKeptTokens(std::string_view text, const tTextLayout& layout) : m_tScanner(text), m_tLayout(layout)
    {
    }
    void next()
    {
        do
            scan();
        while ((m_tLayout.m_bCompact && m_tToken.m_eType == TT_comment) ||
               (!m_tLayout.m_bNullWord && m_tToken.m_eType == TT_null));
    }
    bool atEnd() const
    {
        return m_tToken.m_eType == TT_end || m_tToken.m_eType == TT_error;
    }
    std::string_view text() const
    {
        return m_strvText;
    }
    const char* begin() const
    {
        return m_tToken.m_pBegin;
    }

private:
    void scan()
    {
        m_tToken = m_tScanner.next();
        m_strvText = {};
        std::string_view expression;
        const bool isExpression = m_tToken.m_eType == TT_peiBegin;
        if (isExpression && m_tScanner.takeExpression(m_tToken, expression) != nullptr)
            m_tToken.m_eType = TT_error;
        if (m_tToken.m_eType != TT_error)
            m_strvText = isExpression && m_tLayout.m_bCompact ? expression : textWithoutLineEnd(m_tToken);
    }

    CTokenScanner m_tScanner;
    const tTextLayout& m_tLayout;
    tTokenInfo m_tToken{};
    std::string_view m_strvText;
};

/// What is left of a text from a place on, without the blanks that end it.
std::string_view restFrom(const char* place, std::string_view text)
{
    text.remove_prefix(static_cast<std::size_t>(place - text.data()));
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    return text.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

}  // namespace

bool haveSameTokens(std::string_view a, std::string_view b, const tTextLayout& layout)
{
    CKeptTokens left(a, layout);
    CKeptTokens right(b, layout);
    do
    {
        left.next();
        right.next();
        if (left.atEnd() || right.atEnd())
            return restFrom(left.begin(), a) == restFrom(right.begin(), b);
    } while (left.text() == right.text());
    return false;
}

}  // namespace murv

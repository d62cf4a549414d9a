// syntax/token_scanner.cpp - one token after the other.
#include "syntax/token_scanner.h"

namespace murv::detail
{

tTokenInfo CTokenScanner::next()
{
    m_pNext = skipBlanks(m_pNext, m_pEnd);
    tTokenInfo token{TT_end, m_pNext, m_pNext};
    if (m_pNext == m_pEnd)
        return token;
    token.m_eType = type4Byte(*m_pNext++);
    if (!takeRest(token.m_eType))
        token.m_eType = TT_error;
    token.m_pEnd = m_pNext;
    return token;
}

bool CTokenScanner::takeRest(E_TokenType type)
{
    bool clean = false;
    switch (type)
    {
    case TT_string: return takeString(m_pNext, m_pEnd, clean);
    case TT_number: takeNumber(m_pNext, m_pEnd); return true;
    case TT_true: return takeWord(m_pNext, m_pEnd, "rue");
    case TT_false: return takeWord(m_pNext, m_pEnd, "alse");
    case TT_null: return takeWord(m_pNext, m_pEnd, "ull");
    case TT_id: m_pNext = skipDigits(m_pNext, m_pEnd); return true;
    case TT_comment: return takeComment(m_pNext, m_pEnd);
    default: return true;
    }
}

const char* CTokenScanner::takeExpression(tTokenInfo& open, std::string_view& text)
{
    const char* const fault = takePeiText(m_pNext, m_pEnd, text);
    open.m_pEnd = m_pNext;
    return fault;
}

}  // namespace murv::detail

// ser/text_lexer.cpp - starting on a text, IDs, and errors.
#include "ser/text_lexer.h"

namespace murv::detail
{

CTextParser::CTextParser(tLoad& load)
    : m_tLoad(load),
      m_pBegin(load.m_pDataBegin),
      m_pEnd(load.m_pDataEnd),
      m_bTolerant(load.has(LCBC_COMMENT)),
      m_bEmptyNull(load.has(LCBC_EMPTY_NULL)),
      m_bDuplicates(load.has(LCBC_DUPLICATE)),
      m_bLossless(load.has(LCBC_LOSSLESS)),
      m_bComments(load.m_bComments),
      m_pLineChecked(load.m_pDataBegin)
{
}

unsigned int CTextParser::extractID(const tTokenInfo& token) const
{
    const char* const digits = token.m_pBegin + 1;
    unsigned long long id = 0;
    aton64(digits, static_cast<unsigned int>(token.m_pEnd - digits), id);
    return id > static_cast<unsigned int>(CFields::maxSint32) ? 0 : static_cast<unsigned int>(id);
}

bool CTextParser::addError(const char* message, const tTokenInfo& token, const char* second)
{
    std::optional<std::ptrdiff_t> secondOffset;
    if (second != nullptr)
        secondOffset = second - m_pBegin;
    return m_tLoad.addError(message, token.m_pBegin - m_pBegin, token.m_pEnd - m_pBegin, secondOffset);
}

bool CTextParser::addErrorAndRecover(const char*& p, const char* message, const tTokenInfo& token, E_TokenType until)
{
    addError(message, token);
    return recover4Error(p, until);
}

bool CTextParser::recover4Error(const char*& p, E_TokenType until)
{
    const std::size_t records = m_tLoad.m_tErrors.count();
    m_bPeiAllowed = false;
    tTokenInfo token;
    do
        loadToken(p, token);
    while (token.m_eType != until && token.m_eType != TT_end);
    m_tLoad.m_tErrors.cutTo(records);
    return false;
}

}  // namespace murv::detail

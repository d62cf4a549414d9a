// ser/text_lexer.h - the part of the lexer that every token of the general path goes through.
//
// Inline, as each place that reads a token needs other parts of it. Comments and packet expressions, which are long and
// rare, are in source files.
#pragma once

#include "core/field_access.h"
#include "packet/pei_rules.h"
#include "ser/text_parser.h"
#include "ser/token_text.h"

namespace murv::detail
{

inline void CTextParser::loadToken(const char*& p, tTokenInfo& token)
{
    skipSpaces(p);
    token.m_pBegin = p;
    if (p == m_pEnd)
    {
        token.m_eType = TT_end;
        token.m_pEnd = p;
        return;
    }
    token.m_eType = type4Byte(*p);
    ++p;
    bool valid = true;
    switch (token.m_eType)
    {
    case TT_fieldsBegin:
    case TT_fieldsEnd:
    case TT_arrayBegin:
    case TT_arrayEnd:
    case TT_comma: m_bPeiAllowed = false; break;
    case TT_peiBegin:
        if (m_bPeiAllowed)
            loadPEI(p, token);
        break;
    case TT_string: valid = takeString(p, m_pEnd, m_bClean); break;
    case TT_number: takeNumber(p, m_pEnd); break;
    case TT_true: valid = takeWord(p, m_pEnd, "rue"); break;
    case TT_false: valid = takeWord(p, m_pEnd, "alse"); break;
    case TT_null: valid = takeWord(p, m_pEnd, "ull"); break;
    case TT_id: p = skipDigits(p, m_pEnd); break;
    case TT_comment: valid = loadComment(p); break;
    default: break;
    }
    if (!valid)
        token.m_eType = TT_error;
    token.m_pEnd = p;
}

inline void CTextParser::skipCommentTokens(const char*& p, tTokenInfo& token)
{
    loadToken(p, token);
    if (m_bTolerant)
        skipComments(p, token);
}

inline void CTextParser::skipComments(const char*& p, tTokenInfo& token)
{
    while (token.m_eType == TT_comment)
        loadToken(p, token);
}

inline void CTextParser::startValue(CFields& node)
{
    m_bPeiAllowed = false;
    m_bPeiPending = false;
    if (tFieldAccess::sideRecord(node) != nullptr)
        tFieldAccess::dropSecond(node);
}

inline bool CTextParser::finishValue(CFields& node, const tTokenInfo& token)
{
    tFieldAccess::setOffsets(node, offset(token.m_pBegin), offset(token.m_pEnd));
    finishKind(node);
    return true;
}

// The keywords "fix" and "valid" give a node a second value, which begins as a copy of the one just read.
inline void CTextParser::finishKind(CFields& node)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(node);
    if (isDualExpression(pei))
        node.setVK(static_cast<E_ValueKind>(pei.m_usSkIndex));
}

inline bool CTextParser::setWord(CFields& node, const tTokenInfo& token, const tSlot& slot)
{
    startValue(node);
    tFieldAccess::replaceValue(node, slot);
    return finishValue(node, token);
}

inline void CTextParser::noteValue(CFields& node, const char* end)
{
    if (!m_bComments)
        return;
    m_tLoad.m_pLastValueEnd = end;
    m_tLoad.m_pLastValueNode = &node;
}

}  // namespace murv::detail

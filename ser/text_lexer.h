// ser/text_lexer.h - the part of the lexer that every token goes through.
//
// Inline, since reading and dispatching a token is most of what a load does; comments and errors, which are rare, are
// in the source file.
#pragma once

#include <array>
#include <cstring>

#include "core/byte_scan.h"
#include "core/field_access.h"
#include "core/number_scan.h"
#include "ser/text_parser.h"

namespace murv::detail
{

// What kind of token a byte begins. Bytes from 126 on begin none.
inline constexpr auto s_ctType4Byte = [] {
    std::array<unsigned char, 256> types{};
    for (unsigned char& type : types)
        type = TT_error;
    types[0] = TT_end;
    types['{'] = TT_fieldsBegin;
    types['}'] = TT_fieldsEnd;
    types['['] = TT_arrayBegin;
    types[']'] = TT_arrayEnd;
    types['('] = TT_peiBegin;
    types[')'] = TT_peiEnd;
    types['"'] = TT_string;
    types['-'] = TT_number;
    for (unsigned char digit = '0'; digit <= '9'; ++digit)
        types[digit] = TT_number;
    types['t'] = TT_true;
    types['f'] = TT_false;
    types['n'] = TT_null;
    types['#'] = TT_id;
    types['='] = TT_assign;
    types[','] = TT_comma;
    types['/'] = TT_comment;
    return types;
}();

/// Makes a number of a node without members.
inline void setNumber(CFields& node, const tScannedNumber& number)
{
    tFieldAccess::setType(node, number.m_eType).m_ullValue = number.m_uValue.m_ullValue;
}

inline E_TokenType type4Byte(char byte)
{
    return static_cast<E_TokenType>(s_ctType4Byte[static_cast<unsigned char>(byte)]);
}

inline void CTextParser::loadToken(tTokenInfo& token)
{
    skipSpaces();
    token.m_pBegin = m_pCursor;
    if (m_pCursor == m_pEnd)
    {
        token.m_eType = TT_end;
        token.m_pEnd = m_pCursor;
        return;
    }
    token.m_eType = type4Byte(*m_pCursor);
    ++m_pCursor;
    bool valid = true;
    switch (token.m_eType)
    {
    case TT_fieldsBegin:
    case TT_fieldsEnd:
    case TT_arrayBegin:
    case TT_arrayEnd:
    case TT_comma: m_tLoader.m_bPeiAllowed = false; break;
    case TT_peiBegin:
        if (m_tLoader.m_bPeiAllowed)
            loadPEI(token);
        break;
    case TT_string: valid = loadString(); break;
    case TT_number: loadNumber(); break;
    case TT_true: valid = matchMove("rue"); break;
    case TT_false: valid = matchMove("alse"); break;
    case TT_null: valid = matchMove("ull"); break;
    case TT_id: m_pCursor = skipDigits(m_pCursor, m_pEnd); break;
    case TT_comment: valid = loadComment(); break;
    default: break;
    }
    if (!valid)
        token.m_eType = TT_error;
    token.m_pEnd = m_pCursor;
}

inline void CTextParser::skipCommentTokens(tTokenInfo& token)
{
    loadToken(token);
    if (m_bTolerant)
        skipComments(token);
}

inline void CTextParser::skipComments(tTokenInfo& token)
{
    while (token.m_eType == TT_comment)
        loadToken(token);
}

inline void CTextParser::skipSpaces()
{
    m_pCursor = skipBlanks(m_pCursor, m_pEnd);
}

// Whether there are digits at all is not looked at here: a lone "-" and "1." are tokens, too.
inline void CTextParser::loadNumber()
{
    const char* at = skipDigits(m_pCursor, m_pEnd);
    if (at != m_pEnd && *at == '.')
        at = skipDigits(at + 1, m_pEnd);
    if (at != m_pEnd && (*at == 'e' || *at == 'E'))
    {
        ++at;
        if (at != m_pEnd && (*at == '+' || *at == '-'))
            ++at;
        at = skipDigits(at, m_pEnd);
    }
    m_pCursor = at;
}

inline bool CTextParser::loadString()
{
    const char* at = findStringStop(m_pCursor, m_pEnd);
    m_bClean = at != m_pEnd && *at == '"';
    while (at != m_pEnd && *at == '\\')
    {
        // The byte behind a backslash is skipped, too; escapes often follow each other.
        at = m_pEnd - at > 2 ? at + 2 : m_pEnd;
        if (at != m_pEnd && *at != '\\')
            at = findStringStop(at, m_pEnd);
    }
    if (at == m_pEnd)
    {
        m_pCursor = m_pEnd;
        return false;
    }
    m_pCursor = at + 1;
    return true;
}

inline void CTextParser::startValue(CFields& node)
{
    m_tLoader.m_bPeiAllowed = false;
    m_tLoader.m_bPeiPending = false;
    if (tFieldAccess::aside(node) != nullptr)
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
    if (pei.m_ucSkKind == 0 && (pei.m_usSkIndex == VK_fix || pei.m_usSkIndex == VK_valid))
        node.setVK(static_cast<E_ValueKind>(pei.m_usSkIndex));
}

inline bool CTextParser::setSimple(CFields& node, const tTokenInfo& token, const tSlot& slot)
{
    startValue(node);
    tFieldAccess::replaceValue(node, slot);
    return finishValue(node, token);
}

inline void CTextParser::loadFreshNumber(CFields& node)
{
    const char* const begin = m_pCursor;
    tScannedNumber number;
    m_pCursor = scanNumberToken(begin, m_pEnd, number);
    setNumber(node, number);
    tFieldAccess::setOffsets(node, offset(begin), offset(m_pCursor));
    noteValue(node);
}

// A comment that follows on the same line goes to this node.
inline void CTextParser::noteValue(CFields& node)
{
    if (!m_tLoader.m_bComment)
        return;
    m_tLoader.m_pLastValueEnd = m_pCursor;
    m_tLoader.m_pLastValueNode = &node;
}

}  // namespace murv::detail

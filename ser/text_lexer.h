// ser/text_lexer.h - the part of the lexer that every token goes through.
//
// Inline, since reading and dispatching a token is most of what a load does; comments and errors, which are rare, are
// in the source file.
#pragma once

#include <array>
#include <cstring>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/text/byte_scan.h"
#include "core/text/number_scan.h"
#include "ser/integer_mark.h"
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
    case TT_comma: m_bPeiAllowed = false; break;
    case TT_peiBegin:
        if (m_bPeiAllowed)
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
    m_bPeiAllowed = false;
    m_bPeiPending = false;
    if (tFieldAccess::aside(node) != nullptr)
        tFieldAccess::dropSecond(node);
}

inline void CTextParser::startContainer(CFields& node, E_DataType type, const tTokenInfo& token)
{
    startValue(node);
    makeContainer(node, type);
    tFieldAccess::setOffsetStart(node, offset(token.m_pBegin));
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

// The most frequent tokens are read with the place in the data at hand: in memory it would have to be waited for.

inline bool CTextParser::loadFreshNumber(const char*& p, CFields& node)
{
    if (*p == s_ccOtherInteger && m_bLossless) [[unlikely]]
        return false;  // it may be marked
    tScannedNumber number;
    const char* const end = scanNumberToken(p, m_pEnd, number);
    setNumber(node, number);
    finishFresh(p, node, end);
    return true;
}

inline bool CTextParser::loadFreshString(const char*& p, CFields& node)
{
    const char* const begin = p + 1;
    const char* const end = findStringStop(begin, m_pEnd);
    if (end == m_pEnd || *end != '"' || static_cast<std::size_t>(end - begin) > s_cuiLongestCodes)
        return false;
    const char* const codes = duplicatePrefixedStream(begin, static_cast<unsigned int>(end - begin));
    tFieldAccess::setType(node, DT_codelist, true).m_pData = codes;
    finishFresh(p, node, end + 1);
    return true;
}

inline bool CTextParser::loadFreshWord(const char*& p, CFields& node, std::string_view word, E_DataType type,
                                       bool value)
{
    if (static_cast<std::size_t>(m_pEnd - p) < word.size() || std::memcmp(p, word.data(), word.size()) != 0)
        return false;
    tFieldAccess::setType(node, type) = boolValue(value);
    finishFresh(p, node, p + word.size());
    return true;
}

inline bool CTextParser::loadFreshEmpty(const char* p, CFields& node)
{
    if (!m_bEmptyNull)
        return false;
    finishFresh(p, node, p);
    setEmptyOffsets(node, p);
    return true;
}

inline void CTextParser::finishFresh(const char*& p, CFields& node, const char* end)
{
    tFieldAccess::setOffsets(node, offset(p), offset(end));
    m_bPeiAllowed = false;
    noteValue(node, end);
    p = end;
}

// A comment that follows on the same line goes to this node.
inline void CTextParser::noteValue(CFields& node, const char* end)
{
    if (!m_bComments)
        return;
    m_tLoad.m_pLastValueEnd = end;
    m_tLoad.m_pLastValueNode = &node;
}

// The name of most members: no ID, no escape, and "=" at once behind it.
inline bool CTextParser::loadPlainName(const char*& p, tTokenInfo& token)
{
    if (p == m_pEnd || *p != '"')
        return false;
    const char* const begin = p + 1;
    const char* const end = findStringStop(begin, m_pEnd);
    if (end == m_pEnd || *end != '"')
        return false;
    const char* const assign = skipBlanks(end + 1, m_pEnd);
    if (assign == m_pEnd || *assign != '=')
        return false;
    token = {TT_string, p, end + 1};
    m_strName = {begin, static_cast<std::size_t>(end - begin)};
    p = assign + 1;
    return true;
}

// The value of most members: it begins at once, without comment or packet expression, and needs no look back. `member`
// was just made.
inline bool CTextParser::loadPlainValue(const char*& p, CFields& member)
{
    if (p == m_pEnd || !isPlain())
        return false;
    switch (type4Byte(*p))
    {
    case TT_number: return loadFreshNumber(p, member);
    case TT_string: return loadFreshString(p, member);
    case TT_true: return loadFreshWord(p, member, "true", DT_bool, true);
    case TT_false: return loadFreshWord(p, member, "false", DT_bool, false);
    case TT_null: return loadFreshWord(p, member, "null", DT_null, false);
    case TT_fieldsEnd:
    case TT_arrayEnd:
    case TT_comma: return loadFreshEmpty(p, member);
    default: return false;
    }
}

inline bool CTextParser::loadMemberValue(const char*& p, CFields& member, E_TokenType closing)
{
    p = skipBlanks(p, m_pEnd);
    return (m_tLoad.m_eMember != tLoad::MS_reread && loadPlainValue(p, member)) || loadOtherValue(p, member, closing);
}

// "," or the end, when one of them is the next byte that is no blank.
inline bool CTextParser::loadPlainSeparator(const char*& p, char end, bool& more) const
{
    const char* const at = skipBlanks(p, m_pEnd);
    if (at == m_pEnd || (*at != ',' && *at != end))
        return false;
    more = *at == ',';
    p = at + 1;
    return true;
}

}  // namespace murv::detail

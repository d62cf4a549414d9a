// ser/text_lexer.h - the part of the lexer that every token of the general path goes through.
//
// Inline, as each place that reads a token needs other parts of it. Comments and packet expressions, which are long and
// rare, are in source files.
#pragma once

#include <array>
#include <cstring>

#include "core/field_access.h"
#include "core/text/byte_scan.h"
#include "packet/pei_rules.h"
#include "ser/text_parser.h"

namespace murv::detail
{

/// Bytes that begin a kind of token.
struct tTokenRow
{
    std::string_view m_strvBytes;
    E_TokenType m_eType;
};

inline constexpr tTokenRow s_ctTokenRows[] = {
    {{"\0", 1}, TT_end}, {"{", TT_fieldsBegin}, {"}", TT_fieldsEnd}, {"[", TT_arrayBegin},       {"]", TT_arrayEnd},
    {"(", TT_peiBegin},  {")", TT_peiEnd},      {"\"", TT_string},   {"-0123456789", TT_number}, {"t", TT_true},
    {"f", TT_false},     {"n", TT_null},        {"#", TT_id},        {"=", TT_assign},           {",", TT_comma},
    {"/", TT_comment},
};

// What kind of token a byte begins; bytes that stand in no row begin none.
inline constexpr auto s_ctType4Byte = [] {
    std::array<unsigned char, 256> types{};
    for (unsigned char& type : types)
        type = TT_error;
    for (const tTokenRow& row : s_ctTokenRows)
    {
        for (const char byte : row.m_strvBytes)
            types[static_cast<unsigned char>(byte)] = static_cast<unsigned char>(row.m_eType);
    }
    return types;
}();

inline E_TokenType type4Byte(char byte)
{
    return static_cast<E_TokenType>(s_ctType4Byte[static_cast<unsigned char>(byte)]);
}

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
    case TT_string: valid = loadString(p); break;
    case TT_number: loadNumber(p); break;
    case TT_true: valid = takeWord(p, "rue"); break;
    case TT_false: valid = takeWord(p, "alse"); break;
    case TT_null: valid = takeWord(p, "ull"); break;
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

// Whether there are digits at all is not checked here: a lone "-" and "1." are tokens, too.
inline void CTextParser::loadNumber(const char*& p) const
{
    p = skipDigits(p, m_pEnd);
    if (p != m_pEnd && *p == '.')
        p = skipDigits(p + 1, m_pEnd);
    if (p != m_pEnd && (*p == 'e' || *p == 'E'))
    {
        ++p;
        if (p != m_pEnd && (*p == '+' || *p == '-'))
            ++p;
        p = skipDigits(p, m_pEnd);
    }
}

inline bool CTextParser::loadString(const char*& p)
{
    const char* at = findStringStop(p, m_pEnd);
    m_bClean = at != m_pEnd && *at == '"';
    while (at != m_pEnd && *at == '\\')
    {
        // The byte after a backslash is skipped, too; escapes often follow each other.
        at = m_pEnd - at > 2 ? at + 2 : m_pEnd;
        if (at != m_pEnd && *at != '\\')
            at = findStringStop(at, m_pEnd);
    }
    const bool isClosed = at != m_pEnd;
    p = isClosed ? at + 1 : at;
    return isClosed;
}

inline bool CTextParser::takeWord(const char*& p, std::string_view word) const
{
    if (static_cast<std::size_t>(m_pEnd - p) < word.size() || std::memcmp(p, word.data(), word.size()) != 0)
        return false;
    p += word.size();
    return true;
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

// syntax/grammar_reader.cpp - the grammar: what stands before values, values, containers.
#include "syntax/grammar_reader.h"

#include <algorithm>

#include "core/text/unescape.h"
#include "io/load_messages.h"
#include "murv/fields.h"
#include "murv/loader.h"
#include "murv/text.h"
#include "ser/pei_reader.h"
#include "ser/text_messages.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnLongestRootName = 255;
constexpr std::size_t s_cnDeepest = 1000;
constexpr const char* s_cpTooDeep = "More than 1000 levels of containers";

}  // namespace

CGrammarReader::CGrammarReader(std::string_view text, unsigned int config, ISyntaxSink& sink)
    : m_tScanner(text), m_pTextEnd(text.data() + text.size()), m_uiConfig(config), m_tSink(sink)
{
}

/// Moves on to the next token that is no comment. Comments on the way are passed on.
void CGrammarReader::fetch()
{
    m_bCommented = false;
    for (;;)
    {
        const bool isAhead = m_nAhead != m_vAhead.size();
        m_tToken = isAhead ? m_vAhead[m_nAhead++] : m_tScanner.next();
        if (m_tToken.m_eType != TT_comment)
            break;
        m_bCommented = true;
        m_tSink.token(SR_comment, m_tToken);
    }
    if (m_nAhead == m_vAhead.size())
    {
        m_vAhead.clear();
        m_nAhead = 0;
    }
}

void CGrammarReader::pass(E_SyntaxRole role)
{
    m_tSink.token(role, m_tToken);
    fetch();
}

bool CGrammarReader::fail(const char* message, const tTokenInfo& token, const char* second)
{
    m_tSink.mistake({message, token.m_pBegin, token.m_pEnd, second});
    return false;
}

void CGrammarReader::read()
{
    fetch();
    m_tSink.begin();
    const bool isBare = m_tToken.m_eType == TT_fieldsBegin;
    const E_Read root = isBare || readHead(true) ? readValue() : RD_failed;
    if (root == RD_failed)
    {
        m_tSink.end();
        return passRest();
    }
    if ((m_uiConfig & LCBC_ROOT_CONTAINER) != 0 && root != RD_opened)
        m_tSink.mistake({s_cpScalarRoot, m_pTextEnd, m_pTextEnd});
    if (root == RD_done)
        m_tSink.end();
    while (!m_vOpen.empty())
    {
        if (m_vOpen.back().m_bEmpty && isClosing(m_vOpen.back()))
            closeContainer();
        else
        {
            m_vOpen.back().m_bEmpty = false;
            m_tSink.begin();
            const E_Read member = readMember();
            if (member == RD_opened)
                continue;
            m_tSink.end();
            if (member == RD_failed && !recover())
                break;
        }
        finishMember();
    }
    passRest();
}

/// Everything after the root: comments are comments up to the first other token.
void CGrammarReader::passRest()
{
    if (m_tToken.m_eType == TT_end && m_tToken.m_pBegin == m_pTextEnd)
        return;
    m_tToken.m_pEnd = m_pTextEnd;
    m_tSink.token(SR_rest, m_tToken);
}

CGrammarReader::E_Read CGrammarReader::readMember()
{
    return m_vOpen.back().m_bArray || readHead(false) ? readValue() : RD_failed;
}

/// What may stand before a value: ID, name and "=".
bool CGrammarReader::readHead(bool isRoot)
{
    if (m_tToken.m_eType == TT_id && !readId())
        return false;
    switch (m_tToken.m_eType)
    {
    case TT_string:
    case TT_number: return !isAssigned() || readName(isRoot);
    case TT_assign: pass(SR_assign); return true;
    case TT_fieldsBegin:
    case TT_fieldsEnd:
    case TT_arrayBegin:
    case TT_peiBegin:
    case TT_comma:
    case TT_true:
    case TT_false:
    case TT_null: return true;
    default: return fail(s_cpNoName, m_tToken);
    }
}

bool CGrammarReader::readId()
{
    const char* const digits = m_tToken.m_pBegin + 1;
    unsigned long long id = 0;
    aton64(digits, static_cast<unsigned int>(m_tToken.m_pEnd - digits), id);
    if (id == 0 || id > static_cast<unsigned int>(CFields::maxSint32))
        return fail(s_cpBadTextId, m_tToken);
    pass(SR_id);
    return true;
}

/// Whether "=" follows the token at hand, also after comments. A colon in its place counts, as many write it so.
bool CGrammarReader::isAssigned()
{
    std::size_t at = m_nAhead;
    for (;; ++at)
    {
        if (at == m_vAhead.size())
            m_vAhead.push_back(m_tScanner.next());
        if (m_vAhead[at].m_eType != TT_comment)
            break;
    }
    const tTokenInfo& next = m_vAhead[at];
    const bool isColon = next.m_eType == TT_error && *next.m_pBegin == ':';
    return next.m_eType == TT_assign || (isColon && m_tToken.m_eType == TT_string && !m_vOpen.empty());
}

bool CGrammarReader::readName(bool isRoot)
{
    if (m_tToken.m_eType == TT_number && (m_uiConfig & LCBC_NUMBER_NAME) == 0)
        return fail(isRoot ? s_cpNoRootNumber : s_cpNoName, m_tToken);
    std::size_t length = 0;
    if (m_tToken.m_eType == TT_string && !checkString(m_tToken, length))
        return false;
    if (isRoot && length > s_cnLongestRootName)
        return fail(s_cpLongRootName, m_tToken);
    const bool isCommented = m_nAhead != m_vAhead.size() && m_vAhead[m_nAhead].m_eType == TT_comment;
    pass(SR_name);
    if (m_tToken.m_eType == TT_error && !m_bColonSeen)
    {
        m_bColonSeen = true;  // it is said once: whoever writes one colon writes all
        fail(isCommented ? s_cpNoComma : s_cpNoFieldsEnd, m_tToken);
    }
    pass(SR_assign);
    return true;
}

CGrammarReader::E_Read CGrammarReader::readValue()
{
    for (bool hasExpression = false;; hasExpression = true)
    {
        std::size_t length = 0;
        switch (m_tToken.m_eType)
        {
        case TT_fieldsBegin:
        case TT_arrayBegin: return openContainer();
        case TT_peiBegin:
            if (hasExpression)
            {
                fail("Duplicated '(' in packet expression", m_tToken);
                return RD_failed;
            }
            if (!readExpression())
                return RD_failed;
            break;
        case TT_fieldsEnd:
        case TT_arrayEnd:
        case TT_comma:
            m_pValueEnd = m_tToken.m_pBegin;
            m_bCommented = false;  // comments on the way stand before the value that is missing
            return RD_done;
        case TT_string:
            if (!checkString(m_tToken, length))
                return RD_failed;
            [[fallthrough]];
        case TT_number:
        case TT_true:
        case TT_false:
        case TT_null:
            m_pValueEnd = m_tToken.m_pEnd;
            pass(SR_scalar);
            return RD_done;
        default: fail(s_cpNoValue, m_tToken); return RD_failed;
        }
    }
}

bool CGrammarReader::readExpression()
{
    std::string_view text;
    const char* message = m_tScanner.takeExpression(m_tToken, text);
    if (message == s_cNoPeiEnd)
    {
        fail(message, m_tToken);
        while (m_tToken.m_eType != TT_end)
            pass(SR_skipped);
        return false;
    }
    tPacketExpInfo expression{};
    if (message == nullptr)
        message = decodePei(text, m_uiConfig, expression);
    if (message != nullptr)
        return fail(message, m_tToken);
    pass(SR_expression);
    return true;
}

/// Checks the escapes of a string. \param length  set: how many bytes it stands for
bool CGrammarReader::checkString(const tTokenInfo& token, std::size_t& length)
{
    const char* const begin = token.m_pBegin + 1;
    const char* const end = token.m_pEnd - 1;
    length = static_cast<std::size_t>(end - begin);
    if (findStringStop(begin, end) == end)
        return true;
    m_vScratch.resize(std::max(m_vScratch.size(), length));
    const E_UnicodeMode mode = (m_uiConfig & LCBC_UNICODE_UTF8) != 0 ? UM_codePoint : UM_bytes;
    const tUnescaped result = unescape(begin, end, mode, m_vScratch.data());
    if (result.m_eError != UE_none)
        return fail(s_cpUnescapeMessages[result.m_eError], token, result.m_pPlace);
    length = static_cast<std::size_t>(result.m_pEnd - m_vScratch.data());
    return true;
}

CGrammarReader::E_Read CGrammarReader::openContainer()
{
    const bool isArray = m_tToken.m_eType == TT_arrayBegin;
    if (m_vOpen.size() == s_cnDeepest)
        fail(s_cpTooDeep, m_tToken);
    m_vOpen.push_back({isArray});
    ++m_anOpen[isArray ? 1 : 0];
    pass(SR_open);
    return RD_opened;
}

bool CGrammarReader::isClosing(const tOpen& open) const
{
    return m_tToken.m_eType == (open.m_bArray ? TT_arrayEnd : TT_fieldsEnd);
}

void CGrammarReader::closeContainer()
{
    m_pValueEnd = m_tToken.m_pEnd;
    --m_anOpen[m_vOpen.back().m_bArray ? 1 : 0];
    m_vOpen.pop_back();
    pass(SR_close);
    m_tSink.end();
}

}  // namespace murv::detail

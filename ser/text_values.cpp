// ser/text_values.cpp - what a token's text is worth: numbers, strings, words and packet expressions.

#include <cstring>

#include "core/field_access.h"
#include "core/text/byte_scan.h"
#include "core/text/number_scan.h"
#include "core/text/unescape.h"
#include "murv/text.h"
#include "ser/pei_reader.h"
#include "ser/text_lexer.h"

namespace murv
{

namespace detail
{
namespace
{
/// Replaces the value of any node.
void replaceByNumber(CFields& node, const tScannedNumber& number)
{
    tSlot slot{number.m_eType, false, {}};
    if (number.m_eType == DT_double)
        slot.m_uValue.m_dValue = number.m_uValue.m_dValue;
    else if (number.m_eType == DT_uint)
        slot.m_uValue.m_ullValue = number.m_uValue.m_ullValue;
    else
        slot.m_uValue.m_llValue = number.m_uValue.m_llValue;
    tFieldAccess::replaceValue(node, slot);
}
}  // namespace

void setNumber(CFields& node, const char* text, unsigned int length)
{
    replaceByNumber(node, scanNumber(text, length));
}
}  // namespace detail

bool atonInField(const char* text, unsigned int length, CFields& node)
{
    detail::setNumber(node, text, length);
    return true;
}

namespace detail
{

bool CTextParser::decodeNumber(CFields& node, const tTokenInfo& token)
{
    startValue(node);
    tScannedNumber number = scanNumber(token.m_pBegin, static_cast<unsigned int>(token.m_pEnd - token.m_pBegin));
    if (m_bLossless)
        applyMark(number, token.m_pBegin, token.m_pEnd);
    replaceByNumber(node, number);
    return finishValue(node, token);
}

bool CTextParser::allotUnescapeString(CFields& node, const tTokenInfo& token)
{
    std::string_view bytes;
    if (!toUnescapeString(token, bytes))
        return false;
    if (bytes.size() > s_cuiLongestCodes)
        return addError(s_cpTooLongCodes, token);
    startValue(node);
    tSlot slot{DT_codelist, true, {}};
    slot.m_uValue.m_pData = duplicatePrefixedStream(bytes.data(), static_cast<unsigned int>(bytes.size()));
    tFieldAccess::replaceValue(node, slot);
    return finishValue(node, token);
}

bool CTextParser::toUnescapeString(const tTokenInfo& token, std::string_view& bytes)
{
    const std::string_view text(token.m_pBegin + 1, static_cast<std::size_t>(token.m_pEnd - token.m_pBegin) - 2);
    if (m_bClean)
    {
        bytes = text;
        return true;
    }
    if (m_vScratch.size() < text.size())
        m_vScratch.resize(text.size());
    const E_UnicodeMode mode = m_tLoad.has(LCBC_UNICODE_UTF8) ? UM_codePoint : UM_bytes;
    const tUnescaped result = unescape(text.data(), text.data() + text.size(), mode, m_vScratch.data());
    if (result.m_eError != UE_none)
        return addError(s_cpUnescapeMessages[result.m_eError], token, result.m_pPlace);
    bytes = {m_vScratch.data(), static_cast<std::size_t>(result.m_pEnd - m_vScratch.data())};
    return true;
}

bool CTextParser::loadPEI(tTokenInfo& token)
{
    const auto fail = [this, &token](const char* message) {
        m_bPeiPending = false;
        token.m_pEnd = m_pCursor;
        return addError(message, token);
    };
    CFields& node = top();
    if (m_bPeiPending)
        return fail("Duplicated '(' in packet expression");
    if (m_tLoad.m_vStack.size() > 1 && tFieldAccess::isContainer(node))
        return fail("Packet expression type has not field or array");
    node.setOffsetStart(offset(token.m_pBegin));
    skipSpaces();
    if (m_pCursor != m_pEnd && *m_pCursor == ')')
    {
        ++m_pCursor;
        return fail("This packet expression empty");
    }
    const char* const begin = m_pCursor;
    while (m_pCursor != m_pEnd && *m_pCursor != ')' && !tLineStop::isStop(static_cast<unsigned char>(*m_pCursor)) &&
           *m_pCursor != ' ' && *m_pCursor != '\t')
        ++m_pCursor;
    if (m_pCursor == m_pEnd)
        return fail("Found not ')' in packet expression");
    m_strPei = {begin, static_cast<std::size_t>(m_pCursor - begin)};
    if (m_strPei.size() < 4)
        return fail("The packet expression is too short");
    if (m_strPei.size() > 255)
        return fail("The packet expression is too long");
    // What stands between the expression and the ")" is a remark.
    const void* const close = std::memchr(m_pCursor, ')', static_cast<std::size_t>(m_pEnd - m_pCursor));
    if (close == nullptr)
    {
        fail("Missing ')' in packet expression");
        return recover4Error(TT_peiEnd);
    }
    m_pCursor = static_cast<const char*>(close) + 1;
    node.setOffsetEnd(offset(m_pCursor));
    m_bPeiPending = true;
    return true;
}

bool CTextParser::decodePEI(const tTokenInfo& token)
{
    if (!m_bPeiPending)
        return false;  // reading it has failed, and has been recorded
    tPacketExpInfo expression = {};
    if (const char* const message = decodePei(m_strPei, m_tLoad.m_uiConfig, expression))
        return addError(message, token);
    top().pkt_SetExp(expression);
    return true;
}

}  // namespace detail
}  // namespace murv

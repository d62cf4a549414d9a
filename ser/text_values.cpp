// ser/text_values.cpp - what the text of a token means: numbers, strings, words and packet expressions.
//
// The general path only; numbers and strings of the fast path are read where members are.

#include <cstring>

#include "core/field_access.h"
#include "core/text/byte_scan.h"
#include "core/text/number_scan.h"
#include "core/text/unescape.h"
#include "io/load_messages.h"
#include "ser/integer_mark.h"
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

bool CTextParser::loadScalar(const char* p, CFields& node, const tTokenInfo& token)
{
    tSlot slot;
    bool done = false;
    switch (token.m_eType)
    {
    case TT_string: done = allotUnescapeString(node, token); break;
    case TT_number: done = decodeNumber(node, token); break;
    case TT_true:
    case TT_false:
        slot.m_eType = DT_bool;
        slot.m_uValue = boolValue(token.m_eType == TT_true);
        done = setWord(node, token, slot);
        break;
    case TT_null: done = setWord(node, token, slot); break;
    default:
        tFieldAccess::setOffsets(node, offset(token.m_pBegin), offset(token.m_pEnd));
        return addError(s_cpNoValue, token);
    }
    noteValue(node, p);
    return done;
}

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
    slot.m_uValue.m_pData = duplicatePrefixedStream(m_tLoad.m_tNodeStack.pool(), bytes.data(),
                                                    static_cast<unsigned int>(bytes.size()), slot.m_bPooled);
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

// Whether it was read is in m_bPeiPending; an error is recorded.
void CTextParser::loadPEI(const char*& p, tTokenInfo& token)
{
    CFields& node = top();
    const char* fault = nullptr;
    if (m_bPeiPending)
        fault = "Duplicated '(' in packet expression";
    else if (m_tLoad.m_vStack.size() > 1 && tFieldAccess::isContainer(node))
        fault = "Packet expression type has not field or array";
    else
    {
        node.setOffsetStart(offset(token.m_pBegin));
        fault = takePeiText(p, m_pEnd, m_strPei);
    }
    m_bPeiPending = fault == nullptr;
    if (fault == nullptr)
    {
        node.setOffsetEnd(offset(p));
        return;
    }
    token.m_pEnd = p;
    addError(fault, token);
    if (fault == s_cNoPeiEnd)
        recover4Error(p, TT_peiEnd);
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

// ser/value_writer.cpp - values with a packet expression, and the value writer of the saver interface.
//
// Few nodes have a packet expression; what they need stays out of the inlined path. A node with the keyword "fix" or
// "valid" is saved by its second value, which is the one that its packets carry.
#include "ser/value_writer.h"

#include "core/error_table.h"
#include "core/field_type.h"
#include "packet/pei_rules.h"
#include "ser/integer_mark.h"

namespace murv
{

namespace detail
{

CValueWriter::CValueWriter(ISaver& saver)
    : m_tSaver(saver),
      m_bExpressions((saver.m_ucStyle & SAVE_PEI) != 0),
      m_bBlanks((saver.m_ucStyle & SAVE_SPACING) != 0 && (saver.m_ucStyle & SAVE_VALUE) != 0),
      m_bValues((saver.m_ucStyle & SAVE_VALUE) != 0),
      m_bNullWord(saver.BC32_Check(SCBC_NULL_WORD | SCBC_LOSSLESS)),
      m_bLossless(saver.BC32_Check(SCBC_LOSSLESS)),
      m_pQuote(m_bLossless ? writeQuotedCharacters : writeQuoted)
{
}

char CValueWriter::writeWhole(ITextSink& sink, const CFields& node, unsigned char& written)
{
    if (m_bExpressions && hasExpression(node))
        return writeExpressed(sink, node, written);
    return writeWholeValue(sink, tFieldAccess::slot(node, VK_actual), written);
}

char CValueWriter::writeWholeValue(ITextSink& sink, const tSlot& slot, unsigned char& written)
{
    constexpr std::size_t roomOfOthers = 2 + s_cnDoubleTextRoom;
    const bool isText = slot.m_eType == DT_codelist;
    const std::string_view codes = isText ? view4Codes(slot.m_bOwned, slot.m_uValue.m_pData) : std::string_view();
    char* const begin = sink.room(isText ? 1 + roomWhenQuoted(codes) : roomOfOthers);
    char* out = writeBlank(begin, written);
    if (m_bValues && isText)
    {
        out = writeQuotedCharacters(out, codes.data(), codes.size());
        written |= WRITTEN_VALUE;
    }
    else if (m_bValues)
        out = writeMarked(out, slot, written);
    sink.take(out);
    return out == begin ? '\0' : out[-1];
}

char* CValueWriter::writeMarked(char* out, const tSlot& slot, unsigned char& written)
{
    if (slot.m_eType == DT_double)
    {
        written |= WRITTEN_VALUE;
        return writeShortestDouble(out, slot.m_uValue.m_dValue);
    }
    const bool isMarked = slot.m_eType == DT_sint   ? slot.m_uValue.m_llValue > s_cllLastPlainSigned
                          : slot.m_eType == DT_uint ? slot.m_uValue.m_ullValue <= std::uint64_t{s_cllLastPlainSigned}
                                                    : false;
    if (isMarked)
        *out++ = s_ccOtherInteger;
    return writeOther(out, slot, written);
}

char CValueWriter::writeExpressed(ITextSink& sink, const CFields& node, unsigned char& written)
{
    const tSavedValue saved = chooseSavedValue(node, m_tSaver.BC32_Check(SCBC_SECOND_VALUE | SCBC_LOSSLESS));
    char last = '\0';
    if ((m_tSaver.m_ucStyle & SAVE_SPACING) != 0 && (written & (WRITTEN_ID | WRITTEN_NAME)) != 0)
    {
        last = ' ';
        sink.put(" ");
    }
    const std::string_view expression = m_tSaver.makePEI(tFieldAccess::type(node), saved.m_tPEI, written);
    if (!expression.empty())
    {
        last = expression.back();
        sink.put(expression);
    }
    const tSlot slot = tFieldAccess::slot(node, saved.m_eKind);
    const char lastOfValue = m_bLossless ? writeWholeValue(sink, slot, written) : writeValue(sink, slot, written);
    return lastOfValue == '\0' ? last : lastOfValue;
}

std::string_view CValueWriter::expressionText(const CFields& node)
{
    unsigned char written = 0;
    return m_tSaver.makePEI(tFieldAccess::type(node), tFieldAccess::pei(node), written);
}

void CValueWriter::reportUnknown(E_DataType type)
{
    m_tSaver.setUserError(s_ciInvalidParameter, "[%s#%d] Unknown data type(%d)", "murv::ISaver::makePEIandValue",
                          __LINE__, static_cast<int>(type));
}

}  // namespace detail

std::string ISaver::makePEIandValue(const CFields& node, unsigned char& written)
{
    m_strValue.clear();
    const E_DataType type = node.getDT();
    if (detail::tFieldAccess::isContainer(type))
    {
        setUserError(detail::s_ciInvalidParameter, "[%s#%d] '%s' data type was not supported",
                     "murv::ISaver::makePEIandValue", __LINE__, detail::s_cpTypeNames[type]);
        return {};
    }
    detail::tKeptBlock block;
    detail::CStringSink sink(block);
    detail::CValueWriter(*this).write(sink, node, written);
    m_strValue = sink.text();
    return m_strValue;
}

}  // namespace murv

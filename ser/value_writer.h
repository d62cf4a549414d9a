// ser/value_writer.h - one scalar as text: packet expression and value, with the blanks between them.
//
// All text savers write their values here, so that a value looks the same wherever it stands. Numbers and strings go
// straight into the sink's room.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "core/field_access.h"
#include "core/text/double_text.h"
#include "core/text/integer_text.h"
#include "core/text/quote.h"
#include "io/text_sink.h"
#include "murv/saver.h"

namespace murv::detail
{

/// What has been written for a member; the value writer asks it about separating blanks.
enum E_Written : unsigned char
{
    WRITTEN_ID = 2,
    WRITTEN_NAME = 4,
    WRITTEN_PEI = 8,
    WRITTEN_VALUE = 16,
};

/// Room that is enough for the quoted text. A long text is scanned first, as most need no escapes.
inline std::size_t roomWhenQuoted(std::string_view text)
{
    constexpr std::size_t shortText = 256;
    if (text.size() <= shortText)
        return quotedRoom(text.size());
    const char* const end = text.data() + text.size();
    const char* const escape = findEscape(text.data(), end);
    return text.size() + quotedRoom(static_cast<std::size_t>(end - escape));
}

/// Style and configuration are read once: a writer serves one saving.
class CValueWriter
{
public:
    /// \param saver  gives style and configuration, writes packet expressions and takes errors; outlives the writer
    explicit CValueWriter(ISaver& saver);

    /// The style of the saving under way.
    static unsigned char style(const ISaver& saver)
    {
        return saver.m_ucStyle;
    }
    /// The packet expression of a scalar, as it is written; valid until the next one. Empty when it cannot be.
    std::string_view expressionText(const CFields& node);
    /// Whether everything is written so that it reads back equal.
    bool isLossless() const
    {
        return m_bLossless;
    }
    /// Whether a digit would be the first byte written.
    bool beginsWithDigit(const CFields& node) const
    {
        const E_DataType type = tFieldAccess::type(node);
        if (!m_bValues || (m_bExpressions && hasExpression(node)) || type < DT_sint || type > DT_double)
            return false;
        const uMultiValue& value = tFieldAccess::value(node);
        return type == DT_double ? !std::signbit(value.m_dValue) : type == DT_uint || value.m_llValue >= 0;
    }
    /// A name in quotes; needs quotedRoom().
    char* writeName(char* out, std::string_view name) const
    {
        return m_pQuote(out, name.data(), name.size());
    }

    /// \param node     a scalar
    /// \param written  parts that stand before it already (E_Written); updated
    /// \return the last byte written, 0 when nothing was; a blank only when the value after it wrote nothing
    char write(ITextSink& sink, const CFields& node, unsigned char& written)
    {
        if (m_bLossless) [[unlikely]]
            return writeWhole(sink, node, written);
        if (m_bExpressions && hasExpression(node)) [[unlikely]]
            return writeExpressed(sink, node, written);
        return writeValue(sink, tFieldAccess::slot(node, VK_actual), written);
    }

private:
    static bool hasExpression(const CFields& node)
    {
        std::uint64_t first = 0;
        std::uint16_t rest = 0;
        const char* const bytes = reinterpret_cast<const char*>(&tFieldAccess::pei(node));
        std::memcpy(&first, bytes, sizeof first);
        std::memcpy(&rest, bytes + sizeof first, sizeof rest);
        static_assert(sizeof first + sizeof rest == sizeof(tPacketExpInfo));
        return (first | rest) != 0;
    }
    char writeValue(ITextSink& sink, const tSlot& slot, unsigned char& written)
    {
        constexpr std::size_t roomOfOthers = 1 + s_cnDoubleTextRoom;
        static_assert(s_cnDoubleTextRoom >= s_cnIntegerTextRoom);
        if (slot.m_eType == DT_codelist)
            return writeCodes(sink, view4Codes(slot.m_bOwned, slot.m_uValue.m_pData), written);
        char* const begin = sink.room(roomOfOthers);
        char* out = begin;
        if (slot.m_eType != DT_null || m_bNullWord)
            out = writeBlank(out, written);
        if (m_bValues)
            out = writeOther(out, slot, written);
        sink.take(out);
        return out == begin ? '\0' : out[-1];
    }
    char writeCodes(ITextSink& sink, std::string_view codes, unsigned char& written)
    {
        char* const begin = sink.room(1 + roomWhenQuoted(codes));
        char* out = writeBlank(begin, written);
        if (m_bValues && !codes.empty())
        {
            out = writeQuoted(out, codes.data(), codes.size());
            written |= WRITTEN_VALUE;
        }
        sink.take(out);
        return out == begin ? '\0' : out[-1];
    }
    char* writeBlank(char* out, unsigned char written) const
    {
        *out = ' ';
        return out + (m_bBlanks && (written & (WRITTEN_ID | WRITTEN_NAME | WRITTEN_PEI)) != 0 ? 1 : 0);
    }
    char* writeOther(char* out, const tSlot& slot, unsigned char& written)
    {
        switch (slot.m_eType)
        {
        case DT_null:
            if (!m_bNullWord)
                return out;
            out = copyWord(out, "null");
            break;
        case DT_bool: out = copyWord(out, slot.m_uValue.m_bValue ? "true" : "false"); break;
        case DT_sint: out = writeSigned(out, slot.m_uValue.m_llValue); break;
        case DT_uint: out = writeUnsigned(out, slot.m_uValue.m_ullValue); break;
        case DT_double: out = writeDouble(out, slot.m_uValue.m_dValue); break;
        default: reportUnknown(slot.m_eType); return out;
        }
        written |= WRITTEN_VALUE;
        return out;
    }
    static char* copyWord(char* out, std::string_view word)
    {
        std::memcpy(out, word.data(), word.size());
        return out + word.size();
    }
    /// A scalar of a lossless saving. Apart, so that others pay one test for it.
    char writeWhole(ITextSink& sink, const CFields& node, unsigned char& written);
    char writeWholeValue(ITextSink& sink, const tSlot& slot, unsigned char& written);
    char* writeMarked(char* out, const tSlot& slot, unsigned char& written);
    char writeExpressed(ITextSink& sink, const CFields& node, unsigned char& written);
    void reportUnknown(E_DataType type);

    ISaver& m_tSaver;
    bool m_bExpressions;  // packet expressions are saved
    bool m_bBlanks;       // blanks before values are saved
    bool m_bValues;
    bool m_bNullWord;
    bool m_bLossless;
    char* (*m_pQuote)(char*, const char*, std::size_t) noexcept;
};

}  // namespace murv::detail

// tools/packet_json.cpp - the events of reading as JSON.
#include "tools/packet_json.h"

#include <charconv>
#include <cstring>

#include "tools/json_text.h"
#include "tools/packet_leaf.h"

namespace murv::tool
{

namespace
{
template <typename tNumber>
void appendNumber(std::string& out, tNumber number)
{
    char digits[24];
    const std::to_chars_result result = std::to_chars(digits, digits + sizeof digits, number);
    out.append(digits, result.ptr);
}

void appendValue(std::string& out, const tPacketValue& value)
{
    double number = 0;
    switch (value.m_eType)
    {
    case DT_sint: return appendNumber(out, static_cast<long long>(value.m_ullBits));
    case DT_uint: return appendNumber(out, value.m_ullBits);
    case DT_double: std::memcpy(&number, &value.m_ullBits, sizeof number); return appendJsonDouble(out, number);
    case DT_codelist: return appendJsonBytes(out, value.m_strvText);
    default: out += "null"; return;
    }
}

void appendBits(std::string& out, const std::vector<tLayoutBits>& all, unsigned long long number)
{
    char separator = '{';
    for (const tLayoutBits& bits : all)
    {
        out += separator;
        appendJsonText(out, bits.m_strvName);
        out += ':';
        appendNumber(out, valueOfBits(bits, number));
        separator = ',';
    }
    out += '}';
}
}  // namespace

CPacketJsonParts::CPacketJsonParts(const CLayout& layout, bool unmask) : m_vPart(layout.getPartCount())
{
    for (unsigned int number = 0; number < m_vPart.size(); ++number)
    {
        tPart& part = m_vPart[number];
        const tLayoutPart seen = layout.getPart(number);
        const bool hasKey = number != 0 && !isElement(layout, number);
        part.m_strKey = hasKey ? json4Text(label4Part(layout, number)) + ":" : std::string();
        part.m_bLeftOut = isLeftOut(layout, number);
        part.m_bMasked = seen.m_bMasked && !unmask;
        part.m_uiShown = seen.m_uiShown;
        part.m_vBits = layout.getBits(number);
    }
}

/// Writes what stands before a value: comma and key.
void CPacketJson::putKey(const CPacketJsonParts::tPart& part)
{
    if (m_uiDepth == 0)
        return;
    const char last = m_strOut.back();
    if (last != '{' && last != '[')
        m_strOut += ',';
    m_strOut += part.m_strKey;
}

void CPacketJson::putRecord(unsigned int part, std::string_view json)
{
    putKey(m_tParts[part]);
    m_strOut += json;
}

void CPacketJson::onFields(unsigned int part)
{
    putKey(m_tParts[part]);
    m_strOut += '{';
    ++m_uiDepth;
}

void CPacketJson::onFieldsEnd(unsigned int)
{
    m_strOut += '}';
    --m_uiDepth;
}

void CPacketJson::onArray(unsigned int part)
{
    putKey(m_tParts[part]);
    m_strOut += '[';
    ++m_uiDepth;
}

void CPacketJson::onElement(unsigned int, std::uint64_t)
{
}

void CPacketJson::onArrayEnd(unsigned int)
{
    m_strOut += ']';
    --m_uiDepth;
}

void CPacketJson::onRecord(unsigned int, std::uint64_t, std::uint64_t)
{
}

void CPacketJson::onRecordEnd(unsigned int)
{
}

void CPacketJson::onLeaf(unsigned int number, const tPacketValue& value, const tByteRange& place)
{
    const CPacketJsonParts::tPart& part = m_tParts[number];
    if (part.m_bLeftOut)
        return;
    putKey(part);
    appendJsonLeaf(m_strOut, part, value, place);
}

void appendJsonLeaf(std::string& out, const CPacketJsonParts::tPart& part, const tPacketValue& value,
                    const tByteRange& place)
{
    if (part.m_bMasked && value.m_eType != DT_null)
        appendJsonBytes(out, maskedValue(value, place, part.m_uiShown));
    else if (!part.m_vBits.empty() && value.m_eType != DT_null)
        appendBits(out, part.m_vBits, value.m_ullBits);
    else
        appendValue(out, value);
}

}  // namespace murv::tool

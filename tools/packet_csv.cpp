// tools/packet_csv.cpp - the events of reading as rows.
#include "tools/packet_csv.h"

#include "tools/hex_text.h"
#include "tools/packet_leaf.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
/// A cell without a value is empty, and an empty text is "": readers can tell them apart.
void appendCell(std::string& cell, std::string_view text)
{
    if (!text.empty() && text.find_first_of(",\"\r\n") == std::string_view::npos)
    {
        cell += text;
        return;
    }
    cell += '"';
    for (const char byte : text)
        cell.append(byte == '"' ? 2 : 1, byte);
    cell += '"';
}

/// What is no UTF-8 has no place in such a file.
void appendBytes(std::string& cell, std::string_view bytes)
{
    if (isUtf8(bytes))
        return appendCell(cell, bytes);
    cell += "0x";
    appendHex(cell, bytes);
}
}  // namespace

CPacketCsv::CPacketCsv(const CLayout& layout, const CPacketJsonParts& parts, unsigned int record)
    : m_tParts(parts), m_uiRecord(record), m_vColumn4Part(layout.getPartCount(), s_cuiNone), m_tArray(parts, m_strArray)
{
    addColumns(layout, record);
    m_vCell.resize(m_vName.size());
}

/// The parts of a record follow it in the row of parts.
void CPacketCsv::addColumns(const CLayout& layout, unsigned int record)
{
    for (unsigned int part = record; part < layout.getPartCount(); ++part)
    {
        unsigned int around = part;
        bool isInArray = false;
        while (around != record && around != CLayout::s_cuiNoPart)
        {
            around = layout.getPart(around).m_uiParent;
            isInArray = isInArray || (around != CLayout::s_cuiNoPart && around != record &&
                                      layout.getPart(around).m_eKind == LP_array);
        }
        if (around == CLayout::s_cuiNoPart)
            break;
        if (isInArray || layout.getPart(part).m_eKind == LP_fields || m_tParts[part].m_bLeftOut)
            continue;
        m_vColumn4Part[part] = static_cast<unsigned int>(m_vName.size());
        const std::string name = part == record ? "value" : name4Part(layout, part);
        const bool isWhole = m_tParts[part].m_vBits.empty() || m_tParts[part].m_bMasked;
        if (isWhole)
            m_vName.push_back(name);
        else
            for (const tLayoutBits& bits : m_tParts[part].m_vBits)
                m_vName.push_back(name + "." + std::string(bits.m_strvName));
    }
}

std::string CPacketCsv::name4Part(const CLayout& layout, unsigned int part) const
{
    std::string name = label4Part(layout, part);
    for (unsigned int around = layout.getPart(part).m_uiParent; around != m_uiRecord;
         around = layout.getPart(around).m_uiParent)
        name.insert(0, label4Part(layout, around) + ".");
    return name;
}

std::string CPacketCsv::header() const
{
    std::string line;
    for (const std::string& name : m_vName)
    {
        line += &name == m_vName.data() ? "" : ",";
        appendCell(line, name);
    }
    return line + "\r\n";
}

void CPacketCsv::begin()
{
    m_bWanted = false;
    m_uiArrays = 0;
    for (std::string& cell : m_vCell)
        cell.clear();
}

void CPacketCsv::appendRow(std::string& out) const
{
    if (!m_bWanted)
        return;
    for (const std::string& cell : m_vCell)
    {
        if (&cell != m_vCell.data())
            out += ',';
        out += cell;
    }
    out += "\r\n";
}

void CPacketCsv::onRecord(unsigned int part, std::uint64_t, std::uint64_t)
{
    m_bWanted = part == m_uiRecord;
}

void CPacketCsv::onRecordEnd(unsigned int)
{
}

void CPacketCsv::onFields(unsigned int part)
{
    if (m_uiArrays != 0)
        m_tArray.onFields(part);
}

void CPacketCsv::onFieldsEnd(unsigned int part)
{
    if (m_uiArrays != 0)
        m_tArray.onFieldsEnd(part);
}

void CPacketCsv::onArray(unsigned int part)
{
    if (!m_bWanted)
        return;
    if (m_uiArrays++ == 0)
    {
        m_strArray.clear();
        m_tArray.begin();
    }
    m_tArray.onArray(part);
}

void CPacketCsv::onElement(unsigned int, std::uint64_t)
{
}

void CPacketCsv::onArrayEnd(unsigned int part)
{
    if (!m_bWanted)
        return;
    m_tArray.onArrayEnd(part);
    if (--m_uiArrays == 0)
        appendCell(m_vCell[m_vColumn4Part[part]], m_strArray);
}

void CPacketCsv::onLeaf(unsigned int part, const tPacketValue& value, const tByteRange& place)
{
    if (!m_bWanted)
        return;
    if (m_uiArrays != 0)
        return m_tArray.onLeaf(part, value, place);
    unsigned int column = m_vColumn4Part[part];
    if (column == s_cuiNone || value.m_eType == DT_null)
        return;
    const CPacketJsonParts::tPart& leaf = m_tParts[part];
    if (leaf.m_bMasked)
        return appendBytes(m_vCell[column], maskedValue(value, place, leaf.m_uiShown));
    if (value.m_eType == DT_codelist)
        return appendBytes(m_vCell[column], value.m_strvText);
    if (leaf.m_vBits.empty())
        return appendPlainValue(m_vCell[column], value);
    for (const tLayoutBits& bits : leaf.m_vBits)
        m_vCell[column++] += std::to_string(valueOfBits(bits, value.m_ullBits));
}

}  // namespace murv::tool

// tools/explain_text.cpp - columns: offset, bytes, their characters, part, value, expression and rules.
#include "tools/explain_text.h"

#include <algorithm>

#include "tools/explain_cells.h"
#include "tools/hex_text.h"
#include "tools/packet_report.h"
#include "tools/text_table.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnBytes4Line = 8;
constexpr std::size_t s_cnMostLines = 4;  // of one value
constexpr std::size_t s_cnMostPart = 32;
constexpr std::size_t s_cnMostValue = 32;
constexpr std::size_t s_cnBytesWidth = 3 * s_cnBytes4Line - 1;

constexpr const char* s_cpBold = "\x1b[1m";
constexpr const char* s_cpDim = "\x1b[2m";
constexpr const char* s_cpName = "\x1b[36m";
constexpr const char* s_cpValue = "\x1b[32m";
constexpr const char* s_cpError = "\x1b[1;31m";
constexpr const char* s_cpWarning = "\x1b[1;35m";
constexpr const char* s_cpPlain = "\x1b[0m";

std::string padded(std::string text, std::size_t width)
{
    const std::size_t has = columns4Text(text);
    return has < width ? text.append(width - has, ' ') : text;
}

std::string part4Row(const tExplainRow& row)
{
    const bool isOwn = row.m_eKind == ER_between || row.m_eKind == ER_unread;
    const std::string indent(2 * (std::max(row.m_uiDepth, 1U) - 1), ' ');
    const std::string name = shownText(row.m_strName);
    return indent + (isOwn ? "(" + name + ")" : cutText(name, s_cnMostPart));
}

}  // namespace

std::string CExplainText::coloured(const std::string& text, const char* colour) const
{
    return m_bColour && !text.empty() ? std::string(colour).append(text).append(s_cpPlain) : text;
}

CExplainText::tWidths CExplainText::measure(const tExplainRecord& record) const
{
    tWidths widths{4, 4, 0};
    for (const tExplainRow& row : record.m_vRow)
    {
        widths.m_nOffset = std::max(widths.m_nOffset, hex4Offset(row.m_ullOffset + row.m_ullLength).size() - 2);
        widths.m_nPart = std::max(widths.m_nPart, columns4Text(part4Row(row)));
        widths.m_nValue = std::max(widths.m_nValue, columns4Text(shownValue(row, s_cnMostValue)));
    }
    return widths;
}

std::string CExplainText::head4Record(const tExplainRecord& record) const
{
    std::string head = record.m_ullNumber == 0 ? "" : "record " + std::to_string(record.m_ullNumber);
    const std::string path = shownText(record.m_strPath);
    if (!path.empty())
        head += (head.empty() ? "" : ": ") + path;
    if (head.empty())
        head = "offset " + hex4Offset(record.m_ullOffset);
    const std::string place = counted(record.m_ullLength, "byte") + " at " + hex4Offset(record.m_ullOffset);
    return coloured(head, s_cpBold) +
           (head.empty()        ? ""
            : record.m_bDamaged ? ""
                                : ", " + place) +
           (record.m_bDamaged ? coloured(" - does not fit", s_cpError) : "") + "\n";
}

std::string CExplainText::begin()
{
    return {};
}

std::string CExplainText::end(const std::vector<tPacketFault>& findings)
{
    std::string text;
    for (const tPacketFault& finding : findings)
        text += text4Finding(finding);
    return text;
}

std::string CExplainText::record(const tExplainRecord& record)
{
    const tWidths widths = measure(record);
    std::string text = (m_bAny ? "\n" : "") + head4Record(record);
    m_bAny = true;
    for (const tExplainRow& row : record.m_vRow)
        text += lines4Row(row, widths);
    for (const tPacketFault& finding : record.m_vFinding)
        text += text4Finding(finding);
    return text;
}

std::string CExplainText::comment4Row(const tExplainRow& row, const tWidths& widths)
{
    if (row.m_uiPart == CLayout::s_cuiNoPart || row.m_strComment.empty())
        return {};
    if (m_vCommented.size() <= row.m_uiPart)
        m_vCommented.resize(row.m_uiPart + 1, false);
    if (m_vCommented[row.m_uiPart])
        return {};
    m_vCommented[row.m_uiPart] = true;
    const std::size_t indent =
        2 + widths.m_nOffset + 2 + s_cnBytesWidth + 2 + s_cnBytes4Line + 2 + 2 * (std::max(row.m_uiDepth, 1U) - 1);
    std::string lines;
    std::string_view rest = row.m_strComment;
    while (!rest.empty())
    {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        lines += std::string(indent, ' ') + coloured("// " + shownText(rest.substr(0, end)), s_cpDim) + "\n";
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return lines;
}

std::string CExplainText::lines4Row(const tExplainRow& row, const tWidths& widths)
{
    const bool isFailed = row.m_eKind == ER_failed;
    const bool isQuiet = row.m_eKind == ER_between || row.m_eKind == ER_unread;
    const bool isOpening = row.m_eKind <= ER_element;
    std::string lines = comment4Row(row, widths);
    const std::size_t size = row.m_strBytes.size();
    const std::size_t count = std::min((size + s_cnBytes4Line - 1) / s_cnBytes4Line, s_cnMostLines);
    for (std::size_t line = 0; line < std::max<std::size_t>(count, 1); ++line)
    {
        const std::size_t from = line * s_cnBytes4Line;
        const std::size_t here = std::min(s_cnBytes4Line, size - std::min(from, size));
        std::string offset = hex4Offset(row.m_ullOffset + from, widths.m_nOffset).substr(2);
        if (isOpening)
            offset.assign(widths.m_nOffset, ' ');
        const char* const colour = isFailed ? s_cpError : isQuiet ? s_cpDim : "";
        const bool isPlain = *colour == '\0';
        const std::string bytes =
            padded(hex4Bytes(row, from, here), s_cnBytesWidth) + "  " +
            padded(shownBytes(std::string_view(row.m_strBytes).substr(std::min(from, size), here)), s_cnBytes4Line);
        lines += "  " + coloured(offset, s_cpDim) + "  " + (isPlain ? bytes : coloured(bytes, colour));
        if (line == 0)
        {
            const std::string part = padded(part4Row(row), widths.m_nPart);
            const std::string value = padded(shownText(shownValue(row, s_cnMostValue)), widths.m_nValue);
            std::string rules = shownText(row.m_strExpression);
            if (!row.m_strRules.empty() && !isOpening)
                rules += (rules.empty() ? "" : "; ") + escapedText(row.m_strRules);
            lines += "  " +
                     coloured(part, isFailed  ? s_cpError
                                    : isQuiet ? s_cpDim
                                              : s_cpName) +
                     "  " + coloured(value, s_cpValue) + "  " + coloured(rules, s_cpDim);
        }
        lines.erase(lines.find_last_not_of(' ') + 1);
        lines += '\n';
    }
    if (size > count * s_cnBytes4Line)
        lines += std::string(4 + widths.m_nOffset, ' ') +
                 coloured("... " + counted(size - count * s_cnBytes4Line, "more byte"), s_cpDim) + "\n";
    return row.m_tFault ? lines + lines4Fault(row, widths) : lines;
}

std::string CExplainText::lines4Fault(const tExplainRow& row, const tWidths& widths) const
{
    const tPacketFault& fault = *row.m_tFault;
    const bool isWarning = isFinding(fault.m_eCode);
    const std::size_t marked = std::clamp<std::size_t>(row.m_strBytes.size(), 1, s_cnBytes4Line);
    return std::string(4 + widths.m_nOffset, ' ') +
           coloured(
               std::string(3 * marked - 1, '^') + " " + (isWarning ? "warning: " : "error: ") + message4Fault(fault),
               isWarning ? s_cpWarning : s_cpError) +
           "\n";
}

std::string CExplainText::text4Finding(const tPacketFault& finding) const
{
    return "  " + coloured("warning:", s_cpWarning) + " " + shownText(finding.m_strPath) + " at " +
           hex4Offset(finding.m_ullOffset) + ": " + message4Fault(finding) + "\n";
}

std::unique_ptr<IExplainOutput> makeExplainText(bool colour)
{
    return std::make_unique<CExplainText>(colour);
}

}  // namespace murv::tool

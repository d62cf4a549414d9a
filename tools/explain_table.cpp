// tools/explain_table.cpp - one row for each value, length, mark, and for what does not fit.
#include "tools/explain_table.h"

#include <algorithm>

#include "tools/explain_cells.h"
#include "tools/hex_text.h"
#include "tools/html_page.h"
#include "tools/markup.h"
#include "tools/packet_report.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnBytes4Line = 8;
constexpr std::size_t s_cnMostLines = 16;  // of one value
constexpr std::size_t s_cnMostValue = 200;

bool isOpening(const tExplainRow& row)
{
    return row.m_eKind <= ER_element;
}

/// Lines of bytes, as digits or as characters.
template <typename tShow>
std::string lines4Bytes(const tExplainRow& row, const tShow& show)
{
    std::string lines;
    const std::size_t size = std::min(row.m_strBytes.size(), s_cnBytes4Line * s_cnMostLines);
    for (std::size_t at = 0; at < size; at += s_cnBytes4Line)
        lines += (at == 0 ? "" : "\n") + show(at, std::min(s_cnBytes4Line, size - at));
    const std::string markup = markup4Text(lines);
    return row.m_eKind == ER_failed && !lines.empty() ? element("mark", markup) : markup;
}

std::string hex4Row(const tExplainRow& row)
{
    std::string markup = lines4Bytes(row, [&](std::size_t at, std::size_t count) { return hex4Bytes(row, at, count); });
    const std::size_t shown = std::min(row.m_strBytes.size(), s_cnBytes4Line * s_cnMostLines);
    if (shown < row.m_strBytes.size())
        markup += "\n... " + counted(row.m_strBytes.size() - shown, "more byte");
    return markup;
}

std::string text4Row(const tExplainRow& row)
{
    return lines4Bytes(row, [&](std::size_t at, std::size_t count) {
        return shownBytes(std::string_view(row.m_strBytes).substr(at, count));
    });
}

/// The path within the record: the last step stands out.
std::string part4Row(const tExplainRow& row, const std::string& base)
{
    if (row.m_eKind == ER_between || row.m_eKind == ER_unread)
        return "<span class=\"soft\">(" + markup4Text(row.m_strName) + ")</span>";
    std::string_view path = row.m_strPath;
    if (path.substr(0, base.size()) == base && path.size() > base.size() && !base.empty())
        path.remove_prefix(base.size() + (path[base.size()] == '.' ? 1 : 0));
    const bool hasName =
        path.size() > row.m_strName.size() && path.substr(path.size() - row.m_strName.size()) == row.m_strName;
    const std::size_t around = hasName ? path.size() - row.m_strName.size() : 0;
    const std::string soft = markup4Text(path.substr(0, around));
    return (soft.empty() ? "" : "<span class=\"soft\">" + soft + "</span>") + markup4Text(path.substr(around));
}

std::string value4Row(const tExplainRow& row)
{
    std::string markup = markup4Text(shownValue(row, s_cnMostValue));
    if (!row.m_tFault)
        return markup;
    const bool isWarning = isFinding(row.m_tFault->m_eCode);
    return markup + "<p class=\"" + (isWarning ? "warning" : "error") + "\"><strong>" +
           (isWarning ? "Warning" : "Error") + ":</strong> " + markup4Text(message4Fault(*row.m_tFault)) + "</p>";
}

std::string rules4Row(const tExplainRow& row)
{
    const std::string expression = row.m_strExpression.empty() ? "" : code(row.m_strExpression);
    const std::string rules = row.m_strRules.empty() ? "" : code(escapedText(row.m_strRules));
    return expression + (expression.empty() || rules.empty() ? "" : " ") + rules;
}
}  // namespace

/// Whether the part of a row had none in this record yet; notes that it has.
bool CExplainTable::isNew(const tExplainRow& row)
{
    if (row.m_uiPart == CLayout::s_cuiNoPart)
        return false;
    if (m_vSeen.size() <= row.m_uiPart)
        m_vSeen.resize(row.m_uiPart + 1, false);
    const bool wasSeen = m_vSeen[row.m_uiPart];
    m_vSeen[row.m_uiPart] = true;
    return !wasSeen;
}

std::string CExplainTable::place4(const tExplainRow& row) const
{
    if (isOpening(row))
        return {};
    return m_eColumns == CO_brief ? std::to_string(row.m_ullOffset) : hex4Offset(row.m_ullOffset, 4);
}

std::string CExplainTable::row4(const tExplainRow& row, const std::string& base)
{
    const bool isFirst = isNew(row);
    const bool hasWords = !row.m_strComment.empty() || !row.m_strRules.empty();
    if (isOpening(row) && (m_eColumns == CO_brief || !isFirst || !hasWords))
        return {};
    std::string markup = "<tr>" + cell("place bytes code", "Offset", place4(row)) +
                         cell("bytes lines code", "Bytes", hex4Row(row)) +
                         cell("bytes lines code", "Text", text4Row(row)) + "<th scope=\"row\">" + part4Row(row, base) +
                         "</th>" + cell("value", "Value", value4Row(row));
    if (m_eColumns == CO_all)
        markup += cell("rules", "Rules", rules4Row(row)) +
                  cell("comment", "Comment", isFirst ? paragraphs(row.m_strComment) : "");
    return markup + "</tr>\n";
}

std::string CExplainTable::table4Record(const tExplainRecord& record, const std::string& caption)
{
    m_vSeen.clear();
    const std::string id = "table" + std::to_string(++m_ullTables);
    std::string markup = "<div class=\"wide\" tabindex=\"0\" role=\"region\" aria-labelledby=\"" + id +
                         "\">\n<table class=\"dump\">\n<caption id=\"" + id + "\">" + caption + "</caption>\n";
    markup += m_eColumns == CO_all
                  ? headRow({"Offset", "Bytes", "Text", "Part", "Value", "Expression, rules", "Comment"})
                  : headRow({"Offset", "Bytes", "Text", "Part", "Value"});
    markup += "<tbody>\n";
    for (const tExplainRow& row : record.m_vRow)
        markup += row4(row, record.m_strPath);
    return markup + "</tbody>\n</table>\n</div>\n";
}

}  // namespace murv::tool

// tools/figure_text.cpp - box-drawing characters, two columns a bit.
#include "tools/figure_text.h"

#include <algorithm>

#include "tools/text_table.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::string_view s_cstrvKeys = "123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";

/// By the lines that meet: 1 from above, 2 from below, 4 from the left, 8 from the right.
constexpr const char* s_capJunctions[] = {" ",      "\u2502", "\u2502", "\u2502", "\u2500", "\u2518",
                                          "\u2510", "\u2524", "\u2500", "\u2514", "\u250C", "\u251C",
                                          "\u2500", "\u2534", "\u252C", "\u253C"};
constexpr const char* s_cpHorizontal = "\u2500";
constexpr const char* s_cpVertical = "\u2502";
constexpr const char* s_cpTorn = "~";

/// The field at a bit; -1 beyond the figure.
int fieldAt(const tFigure& figure, std::size_t row, int bit)
{
    if (row >= figure.m_vRows.size() || bit < 0 || bit >= static_cast<int>(s_cuiFigureBits))
        return -1;
    return figure.m_vRows[row].m_aiField[static_cast<std::size_t>(bit)];
}

bool isLineLeftOf(const tFigure& figure, std::size_t row, int bit)
{
    return fieldAt(figure, row, bit - 1) != fieldAt(figure, row, bit);
}

/// Row numbers wrap at the top: the row before the first is beyond the figure.
bool isLineAbove(const tFigure& figure, std::size_t row, int bit)
{
    return fieldAt(figure, row - 1, bit) != fieldAt(figure, row, bit);
}

std::string border(const tFigure& figure, std::size_t row)
{
    std::string line;
    for (int bit = 0; bit <= static_cast<int>(s_cuiFigureBits); ++bit)
    {
        const unsigned int lines =
            (isLineLeftOf(figure, row - 1, bit) ? 1U : 0U) | (isLineLeftOf(figure, row, bit) ? 2U : 0U) |
            (isLineAbove(figure, row, bit - 1) ? 4U : 0U) | (isLineAbove(figure, row, bit) ? 8U : 0U);
        line += s_capJunctions[lines];
        if (bit < static_cast<int>(s_cuiFigureBits))
            line += isLineAbove(figure, row, bit) ? s_cpHorizontal : " ";
    }
    return line;
}

std::string centered(const std::string& text, std::size_t columns)
{
    const std::size_t left = columns - std::min(columns, columns4Text(text));
    return std::string(left / 2, ' ') + text + std::string(left - left / 2, ' ');
}

/// What stands between bit `begin` of a row and the end of its segment.
std::string inside(const tFigure& figure, const tLabels& labels, const std::vector<tSegment>& segments,
                   const tSegment& at)
{
    const int field = fieldAt(figure, at.m_nRow, static_cast<int>(at.m_uiBegin));
    const std::size_t columns = 2 * (at.m_uiEnd - at.m_uiBegin) - 1;
    if (field < 0)
        return std::string(columns, ' ');
    const auto index = static_cast<std::size_t>(field);
    const tSegment& best = segments[index];
    if (best.m_nRow != at.m_nRow || best.m_uiBegin != at.m_uiBegin)
        return std::string(columns, ' ');
    const std::string length = labels.m_vWithLength[index] ? " (" + figure.m_vFields[index].m_strLength + ")" : "";
    return centered(labels.m_vNames[index] + length, columns);
}

std::string content(const tFigure& figure, const tLabels& labels, const std::vector<tSegment>& segments,
                    std::size_t row)
{
    const tFigureRow& at = figure.m_vRows[row];
    std::string line = at.m_bTorn ? s_cpTorn : isLineLeftOf(figure, row, 0) ? s_cpVertical : " ";
    for (unsigned int begin = 0; begin < s_cuiFigureBits;)
    {
        unsigned int end = begin;
        while (end < s_cuiFigureBits && at.m_aiField[end] == at.m_aiField[begin])
            ++end;
        line += inside(figure, labels, segments, {row, begin, end});
        const bool isTorn = end == s_cuiFigureBits && (at.m_bTorn || at.m_bTornEnd);
        line += isTorn ? s_cpTorn : isLineLeftOf(figure, row, static_cast<int>(end)) ? s_cpVertical : " ";
        begin = end;
    }
    return line;
}

std::string ruler(const std::string& margin)
{
    std::string tens;
    std::string ones;
    for (unsigned int bit = 0; bit < s_cuiFigureBits; ++bit)
    {
        tens += bit % 10 == 0 ? " " + std::to_string(bit / 10) : "  ";
        ones += " " + std::to_string(bit % 10);
    }
    tens.erase(tens.find_last_not_of(' ') + 1);
    return margin + tens + '\n' + margin + ones + '\n';
}

void putLine(std::string& text, std::string line)
{
    line.erase(line.find_last_not_of(' ') + 1);
    text += line + '\n';
}

std::string legend(const tFigure& figure, const tLabels& labels, const std::string& margin)
{
    std::string text;
    for (const tLabels::tKey& key : labels.m_vLegend)
    {
        const tFigureField& field = figure.m_vFields[static_cast<std::size_t>(key.m_iField)];
        putLine(text, margin + " " + key.m_strKey + "  " + shownText(field.m_strName) + " (" + field.m_strLength + ")");
    }
    const auto isOptional = [](const tFigureField& field) { return field.m_bOptional; };
    if (std::any_of(figure.m_vFields.begin(), figure.m_vFields.end(), isOptional))
        text += margin + " ?  may be absent\n";
    return text;
}
}  // namespace

tLabels labels4Figure(const tFigure& figure, const std::vector<tSegment>& segments, double columns4Bit,
                      double columnsBetween, bool sameLine)
{
    tLabels labels;
    std::size_t keys = 0;
    for (std::size_t i = 0; i < figure.m_vFields.size(); ++i)
    {
        const tFigureField& field = figure.m_vFields[i];
        const std::string mark = field.m_bOptional ? "?" : "";
        const double room = columns4Bit * (segments[i].m_uiEnd - segments[i].m_uiBegin) - columnsBetween;
        std::string label = shownText(field.m_strName) + mark;
        if (static_cast<double>(columns4Text(label)) > room)
            label = shownText(field.m_strShort) + mark;
        const bool isShown = static_cast<double>(columns4Text(label)) <= room;
        const bool isEmpty = segments[i].m_uiBegin == segments[i].m_uiEnd;
        if (!isShown && !isEmpty)
        {
            label = s_cstrvKeys.substr(std::min(keys, s_cstrvKeys.size() - 1), 1);
            label = keys < s_cstrvKeys.size() ? label : "*";
            labels.m_vLegend.push_back({label, static_cast<int>(i)});
            ++keys;
        }
        const std::size_t length = columns4Text(field.m_strLength);
        const std::size_t all = sameLine ? columns4Text(label) + length + 3 : length;
        labels.m_vWithLength.push_back(isShown && static_cast<double>(all) <= room);
        labels.m_vNames.push_back(label);
    }
    return labels;
}

std::string text4Figure(const tFigure& figure)
{
    const std::vector<tSegment> segments = labelSegments(figure);
    const tLabels labels = labels4Figure(figure, segments, 2, 1, true);
    std::size_t width = 0;
    for (const tFigureRow& row : figure.m_vRows)
        width = std::max(width, row.m_strOffset.size());
    const std::string margin(width + 2, ' ');
    std::string text = shownText(figure.m_strTitle) + " (" + figure.m_strNote + ")\n\n" + ruler(margin);
    for (std::size_t row = 0; row <= figure.m_vRows.size(); ++row)
    {
        putLine(text, margin + border(figure, row));
        if (row == figure.m_vRows.size())
            break;
        const std::string& offset = figure.m_vRows[row].m_strOffset;
        const std::string begin = std::string(width - offset.size(), ' ') + offset + "  ";
        putLine(text, begin + content(figure, labels, segments, row));
    }
    return text + legend(figure, labels, margin);
}

}  // namespace murv::tool

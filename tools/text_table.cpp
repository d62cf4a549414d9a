// tools/text_table.cpp - aligned text, CSV and Markdown from the same cells.
#include "tools/text_table.h"

#include <algorithm>

#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
struct tWidthRow
{
    char32_t m_cFirst;
    char32_t m_cLast;
    std::size_t m_nColumns;
};

/// Characters that take no column (they combine with the one before) or two; all others take one.
constexpr tWidthRow s_ctWidths[] = {
    {0x0300, 0x036F, 0}, {0x1100, 0x115F, 2},   {0x200B, 0x200D, 0},   {0x20D0, 0x20FF, 0}, {0x2E80, 0xA4CF, 2},
    {0xAC00, 0xD7A3, 2}, {0xF900, 0xFAFF, 2},   {0xFE00, 0xFE0F, 0},   {0xFE30, 0xFE6F, 2}, {0xFF00, 0xFF60, 2},
    {0xFFE0, 0xFFE6, 2}, {0x1F300, 0x1FAFF, 2}, {0x20000, 0x3FFFD, 2},
};

std::size_t columns4Character(char32_t character)
{
    for (const tWidthRow& row : s_ctWidths)
    {
        if (character >= row.m_cFirst && character <= row.m_cLast)
            return row.m_nColumns;
    }
    return 1;
}

std::string csvCell(const std::string& cell)
{
    if (cell.find_first_of(",\"\r\n") == std::string::npos)
        return cell;
    std::string quoted = "\"";
    for (const char c : cell)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

std::string markdownCell(const std::string& cell)
{
    constexpr std::string_view marks = "\\`*_[]|~";
    std::string text;
    for (const char c : shownText(onOneLine(cell)))
    {
        if (c == '<' || c == '&')
            text += c == '<' ? "&lt;" : "&amp;";
        else
            text.append(marks.find(c) == std::string_view::npos ? 0 : 1, '\\').push_back(c);
    }
    return text;
}
}  // namespace

std::size_t columns4Text(std::string_view text)
{
    std::size_t columns = 0;
    while (!text.empty())
    {
        const std::size_t length = utf8Length(text);
        columns += length == 0 ? 1 : columns4Character(codePoint(text.substr(0, length)));
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return columns;
}

std::string onOneLine(std::string_view text)
{
    std::string line;
    for (const char c : text)
    {
        const bool isBlank = c == ' ' || c == '\t' || c == '\n' || c == '\r';
        if (!isBlank)
            line += c;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    if (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

std::string alignedTable(const tTable& table)
{
    tTable shown = table;
    std::vector<std::size_t> widths;
    for (std::vector<std::string>& row : shown)
    {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i)
        {
            row[i] = shownText(onOneLine(row[i]));
            widths[i] = std::max(widths[i], columns4Text(row[i]));
        }
    }
    std::string text;
    for (const std::vector<std::string>& row : shown)
    {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line.append(row[i]).append(widths[i] + 2 - columns4Text(row[i]), ' ');
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + '\n';
    }
    return text;
}

std::string csvTable(const tTable& table)
{
    std::string text;
    for (const std::vector<std::string>& row : table)
    {
        for (std::size_t i = 0; i < row.size(); ++i)
            text.append(i == 0 ? "" : ",").append(csvCell(row[i]));
        text += '\n';
    }
    return text;
}

std::string markdownTable(const tTable& table)
{
    std::string text;
    for (const std::vector<std::string>& row : table)
    {
        for (const std::string& cell : row)
            text.append("| ").append(markdownCell(cell)).append(" ");
        text += "|\n";
        if (&row != &table.front())
            continue;
        for (std::size_t i = 0; i < row.size(); ++i)
            text += "|---";
        text += "|\n";
    }
    return text;
}

}  // namespace murv::tool

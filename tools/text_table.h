// tools/text_table.h - tables, for people and for other programs.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace murv::tool
{

using tTable = std::vector<std::vector<std::string>>;  // rows of cells, first the heading

/// Columns one below the other, two blanks between them. What a terminal would act on becomes "?".
std::string alignedTable(const tTable& table);

/// Comma-separated values by RFC 4180, lines ended by line feeds.
std::string csvTable(const tTable& table);

/// A table of Markdown in which cells are text: no character has a meaning there.
std::string markdownTable(const tTable& table);

/// Columns that a text takes on a terminal.
std::size_t columns4Text(std::string_view text);

/// Blanks and line ends as one blank each.
std::string onOneLine(std::string_view text);

}  // namespace murv::tool

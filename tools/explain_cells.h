// tools/explain_cells.h - bytes and values of rows, as all outputs for people show them.
#pragma once

#include <string>
#include <string_view>

#include "tools/explain_rows.h"

namespace murv::tool
{

/// Cuts a text to that number of columns.
std::string cutText(std::string_view text, std::size_t most);

/// A value as people read it: JSON without what only programs need, cut to that number of columns.
std::string shownValue(const tExplainRow& row, std::size_t most);

/// Some of the bytes of a row: hexadecimal digits with blanks between, and stars for what is masked.
std::string hex4Bytes(const tExplainRow& row, std::size_t from, std::size_t count);

/// Bytes as characters, with points for those that have none in ASCII.
std::string shownBytes(std::string_view bytes);

}  // namespace murv::tool

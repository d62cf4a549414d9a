// tools/markup.h - text from layouts and packets in HTML and SVG.
//
// Names, comments and values may hold anything; what they hold stays text.
#pragma once

#include <string>
#include <string_view>

namespace murv::tool
{

/// The text with the characters replaced that mean something in markup, in attributes too. Characters that markup
/// cannot hold, that change the direction of writing, and bytes that are no UTF-8 become U+FFFD. Line feeds stay.
std::string markup4Text(std::string_view text);

}  // namespace murv::tool

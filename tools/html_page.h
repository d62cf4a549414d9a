// tools/html_page.h - the frame, style and small pieces that HTML pages of the tool have in common.
//
// A page needs no other file and has no scripts: it is read, printed and sent. It follows the reader's choice of light
// or dark; tables become lists on small screens.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace murv::tool
{

/// A page up to the beginning of its body.
/// \param title  as text
/// \param style  more of it, as CSS
std::string pageBegin(std::string_view title, const std::string& style = {});

/// The end of a page.
/// \param source  what it was made from, as markup
std::string pageEnd(const std::string& source);

/// Markup between the tags of an element.
std::string element(const char* name, const std::string& markup);

/// Text as code.
std::string code(std::string_view text);

/// Text with paragraphs between empty lines.
std::string paragraphs(std::string_view text);

/// A cell that says on small screens, where there are no columns, what it is.
std::string cell(const char* classes, const char* label, const std::string& markup);

/// The heads of a table's columns.
std::string headRow(std::initializer_list<const char*> names);

}  // namespace murv::tool

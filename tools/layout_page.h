// tools/layout_page.h - the page that documents a layout.
#pragma once

#include <string>

#include "murv/layout.h"

namespace murv::tool
{

/// One HTML page that needs nothing beside it: purpose, structure, pictures and tables of each kind of record, rules in
/// words, and an example. Texts of the layout stay text.
///
/// \param document  that the layout was compiled from
/// \param name      of the layout, as people call it
std::string page4Layout(const CLayout& layout, const CFields& document, const std::string& name);

}  // namespace murv::tool

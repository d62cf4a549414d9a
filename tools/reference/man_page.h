// tools/reference/man_page.h - pages of section 1 of the manual, in mdoc.
#pragma once

#include <string>

#include "tools/reference/reference.h"

namespace murv::tool
{

/// The page of a verb, or of the program.
///
/// \param date  day of the release, as mdoc writes it: "January 31, 2024"
std::string manPage(const tReferenceVerb& program, const tReferenceVerb& verb, const std::string& date);

/// "murv-gen-samples": what the page of the verb is called.
std::string manName(const tReferenceVerb& verb);

}  // namespace murv::tool

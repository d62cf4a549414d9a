// tools/reference/completion.h - files by which shells complete calls of the program.
#pragma once

#include <string>

#include "tools/reference/reference.h"

namespace murv::tool
{

std::string bashCompletion(const tReferenceVerb& program);
std::string zshCompletion(const tReferenceVerb& program);
std::string fishCompletion(const tReferenceVerb& program);

/// The text between single quotes of a shell.
std::string shellQuoted(const std::string& text);

/// The names of the verbs below it.
std::vector<std::string> verbWords(const tReferenceVerb& verb);

/// What the value of the option or argument may be, as far as the program knows; VERB is one of the program's verbs.
std::vector<std::string> valueWords(const tReferenceVerb& program, const tReferenceOption& option);

}  // namespace murv::tool

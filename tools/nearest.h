// tools/nearest.h - suggests the word that somebody may have meant who mistyped it.
//
// For verbs and options: a wrong call names the nearest one.
#pragma once

#include <string>
#include <vector>

namespace murv::tool
{

/// The word that looks most like `typed`; the first of several, and an empty text when none is near.
std::string nearest(const std::string& typed, const std::vector<std::string>& words);

/// "; did you mean WORD?", or nothing when no word is near.
std::string hint4(const std::string& typed, const std::vector<std::string>& words);

}  // namespace murv::tool

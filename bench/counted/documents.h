// bench/counted/documents.h - the documents that counted runs load, save and copy.
//
// They are made by code from fixed numbers, so that a program makes the same ones in each call, and needs no files.
#pragma once

#include <string>

namespace murv_bench
{

/// Settings as people write them: nested sets, comments, short texts.
std::string makeConfig();

/// Very many small sets with the same names, numbers and short texts.
std::string makeCatalog();

/// Rings of pairs of doubles with up to 17 digits.
std::string makeCoordinates();

/// Messages with their authors: texts of very different lengths, escapes, bytes above 126.
std::string makeMessages();

}  // namespace murv_bench

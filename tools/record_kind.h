// tools/record_kind.h - kinds of records, as people name them.
//
// A kind is the path of a record in the layout. Where no other record ends so, the end of the path will do.
#pragma once

#include <string>

#include "murv/layout.h"

namespace murv::tool
{

/// The kind of a record: its path, "." for the whole.
std::string recordKind(const CLayout& layout, unsigned int record);

/// Finds the record of a kind. \return empty, or what is wrong, with the kinds that there are
std::string findRecordKind(const CLayout& layout, const std::string& kind, unsigned int& record);

}  // namespace murv::tool

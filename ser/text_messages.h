// ser/text_messages.h - what the text loader says of a document that breaks the grammar.
//
// Messages about numbers, strings and packet expressions stand where these are read.
#pragma once

namespace murv::detail
{

inline constexpr const char* s_cpBadTextId = "Failed to loading for the #ID syntax";
inline constexpr const char* s_cpNoName = "Missing '}' or field member name";
inline constexpr const char* s_cpNoRootNumber = "Missing field member name";
inline constexpr const char* s_cpLongRootName = "Failed to set the root field name";
inline constexpr const char* s_cpScalarRoot = "A valid MURV document must be either an DT_array or an DT_fields type.";
inline constexpr const char* s_cpNoFieldsEnd = "Missing ',' or '}' in field declaration";
inline constexpr const char* s_cpNoComma = "Missing ','";
inline constexpr const char* s_cpNoArrayEnd = "Missing ',' or ']' in array declaration";
inline constexpr const char* s_cpNoOpenMember = "Add a field for this syntax";

}  // namespace murv::detail

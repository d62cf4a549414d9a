// io/load_messages.h - what loaders say of documents, where text and binary data are wrong in the same way.
#pragma once

namespace murv::detail
{

inline constexpr const char* s_cpNoValue = "Syntax error: value, field or array expected.";
inline constexpr const char* s_cpNotAdded = "This field not allow the duplication or a error occured";
inline constexpr const char* s_cpBadLengthCode = "Mismatched syntax for packet E_LengthExpCode";

}  // namespace murv::detail

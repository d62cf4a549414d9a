// layout/compile/document.h - how a document says names and rules.
#pragma once

#include <string>
#include <string_view>

#include "murv/fields.h"

namespace murv::detail
{

struct tCompile;

inline std::string_view writtenName(const CFields& node)
{
    return {node.getName(), node.getNameLen()};
}

/// A member whose name begins with "@", but not with "@@", is a rule.
inline bool isRuleMember(const CFields& node)
{
    const std::string_view name = writtenName(node);
    return name.starts_with('@') && !name.starts_with("@@");
}

/// The name of a part in data: a doubled "@" stands for one.
inline std::string_view dataName(const CFields& node)
{
    const std::string_view name = writtenName(node);
    return name.starts_with("@@") ? name.substr(1) : name;
}

/// The text of a rule member; empty when it is no text.
inline std::string_view ruleText(const CFields& node)
{
    const char* data = nullptr;
    const unsigned int length = node.getCodePoint(&data);
    return length == 0 ? std::string_view() : std::string_view(data, length);
}

/// Follows the "like" of a new part as far as it goes, and notes in its draft whose members and rules it has.
///
/// \return whether the part is a copy
bool resolveCopies(tCompile& compile, unsigned int index);

}  // namespace murv::detail

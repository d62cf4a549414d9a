// syntax/format_member.h - lays out a text that becomes part of another one.
#pragma once

#include <string>
#include <string_view>

namespace murv::detail
{

/// The layout of the place that a text goes to.
struct tMemberLayout
{
    std::string_view m_strvLineEnd;
    std::string m_strIndent;      // of the line on which it begins
    std::string m_strUnit;        // of indentation
    bool m_bInline = false;       // it shares its line with its neighbours
    bool m_bOneLine = false;      // a container that fits stands on one line
    bool m_bOpensOnLine = false;  // brackets open on the line of the name
    bool m_bTight = false;        // no blanks around "="
};

/// \param text  as a saver wrote it, without mistakes. \return without a line end
std::string formatMember(std::string_view text, unsigned int config, const tMemberLayout& place);

}  // namespace murv::detail

// document/placement.h - how the neighbours of a member are laid out, so that it can be laid out alike.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "document/source_tree.h"
#include "syntax/format_member.h"

namespace murv::detail
{

/// What is the same in all of a document.
struct tDocumentLayout
{
    std::string_view m_strvLineEnd;
    std::string m_strUnit;  // of indentation

    /// Seen in a text that was just cut.
    static tDocumentLayout of(const CSourceTree& tree, std::string_view lineEnd);
};

bool hasLineEnd(std::string_view text);

/// The layout for a member that is to be the one at `index` of a container.
tMemberLayout layout4New(const CSourceTree& tree, std::uint32_t container, std::size_t index,
                         const tDocumentLayout& document);
/// The layout for a new value of a node. \param parent  its container; nothing for the root
tMemberLayout layout4Value(const CSourceTree& tree, std::uint32_t node, const std::uint32_t* parent,
                           const tDocumentLayout& document);

}  // namespace murv::detail

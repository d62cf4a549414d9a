// document/placement.h - how the neighbours of a member are laid out, so that it can be laid out alike.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "document/source_tree.h"
#include "syntax/format_member.h"

namespace murv::detail
{

/// What is the same in all of a document.
struct tDocumentLayout
{
    std::string m_strLineEnd;
    std::string m_strUnit;  // of indentation

    /// Seen in a text that was just cut.
    static tDocumentLayout of(const CSourceTree& tree);
};

bool hasLineEnd(std::string_view text);

/// The layout for a member that is to be the one at `index` of a container.
tMemberLayout layout4New(const CSourceTree& tree, std::uint32_t container, std::size_t index,
                         const tDocumentLayout& document);
/// The layout for a new value of the node at a place.
tMemberLayout layout4Value(const CSourceTree& tree, const tSourcePlace& place, const tDocumentLayout& document);

}  // namespace murv::detail

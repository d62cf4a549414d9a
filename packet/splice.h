// packet/splice.h - several parts of a packet replaced in one go.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace murv::detail
{

struct tReplacement
{
    std::size_t m_nOffset;  // in the text before anything is replaced
    std::size_t m_nOldLength;
    std::size_t m_nNewLength;
};

/// Replaces parts of a text.
///
/// \param replacements  in the order of the text, without overlap
/// \param fresh         the new parts, one after the other
/// Parts that keep their length are overwritten; from the first other one on, the text is written anew. So each
/// byte moves at most once, and those before that part never do. Throws std::bad_alloc.
void splice(std::string& text, const std::vector<tReplacement>& replacements, std::string_view fresh);

}  // namespace murv::detail

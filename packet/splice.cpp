// packet/splice.cpp - several parts of a packet replaced in one go.
#include "packet/splice.h"

namespace murv::detail
{

void splice(std::string& text, const std::vector<tReplacement>& replacements, std::string_view fresh)
{
    auto part = replacements.begin();
    const auto end = replacements.end();
    for (; part != end && part->m_nNewLength == part->m_nOldLength; ++part)
    {
        text.replace(part->m_nOffset, part->m_nOldLength, fresh.substr(0, part->m_nNewLength));
        fresh.remove_prefix(part->m_nNewLength);
    }
    if (part == end)
        return;
    const std::size_t first = part->m_nOffset;
    std::size_t taken = first;  // up to here the old text is in the new one
    std::string rest;
    for (; part != end; ++part)
    {
        rest.append(text, taken, part->m_nOffset - taken).append(fresh.substr(0, part->m_nNewLength));
        fresh.remove_prefix(part->m_nNewLength);
        taken = part->m_nOffset + part->m_nOldLength;
    }
    rest.append(text, taken, std::string::npos);
    text.replace(first, std::string::npos, rest);
}

}  // namespace murv::detail

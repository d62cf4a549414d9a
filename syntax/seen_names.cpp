// syntax/seen_names.cpp - one hash table for the names of all open containers.
#include "syntax/seen_names.h"

#include "core/name_index.h"

namespace murv::detail
{

namespace
{

// A container around has the same names often: its chains should be others.
constexpr std::uint32_t s_cuiLevelMix = 0x9E3779B1;  // 2^32 divided by the golden ratio, as a prime

}  // namespace

void CSeenNames::open()
{
    m_vOpen.push_back(static_cast<std::uint32_t>(m_vEntry.size()));
}

void CSeenNames::close()
{
    for (const std::uint32_t left = m_vOpen.back(); m_vEntry.size() != left; m_vEntry.pop_back())
        head4Hash(m_vEntry.back().m_uiHash) = m_vEntry.back().m_uiNext;
    m_vOpen.pop_back();
    m_strNames.resize(m_vEntry.empty() ? 0 : m_vEntry.back().m_uiName);
}

std::uint32_t CSeenNames::enter(std::string_view name, std::uint32_t place)
{
    const auto level = static_cast<std::uint32_t>(m_vOpen.size());
    const std::uint32_t hash = hash4Name(name.data(), static_cast<unsigned int>(name.size())) ^ level * s_cuiLevelMix;
    for (std::uint32_t at = head4Hash(hash); at != s_cuiNone; at = m_vEntry[at].m_uiNext)
    {
        const tEntry& entry = m_vEntry[at];
        if (entry.m_uiHash == hash && entry.m_uiLevel == level && name4Entry(at) == name)
            return entry.m_uiPlace;
    }
    if (m_vEntry.size() == m_vHead.size())
        grow();
    m_strNames += name;
    std::uint32_t& head = head4Hash(hash);
    m_vEntry.push_back({hash, head, place, static_cast<std::uint32_t>(m_strNames.size()), level});
    head = static_cast<std::uint32_t>(m_vEntry.size() - 1);
    return s_cuiNone;
}

std::string_view CSeenNames::name4Entry(std::uint32_t entry) const
{
    const std::uint32_t begin = entry == 0 ? 0 : m_vEntry[entry - 1].m_uiName;
    return std::string_view(m_strNames).substr(begin, m_vEntry[entry].m_uiName - begin);
}

/// Chains are made anew in the order of entry, so that the newest entry is first in each again.
void CSeenNames::grow()
{
    m_vHead.assign(2 * m_vHead.size(), s_cuiNone);
    for (std::uint32_t at = 0; at != m_vEntry.size(); ++at)
    {
        std::uint32_t& head = head4Hash(m_vEntry[at].m_uiHash);
        m_vEntry[at].m_uiNext = head;
        head = at;
    }
}

}  // namespace murv::detail

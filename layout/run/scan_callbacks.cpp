// layout/run/scan_callbacks.cpp - items whose keywords an application has registered, while reading.
#include <algorithm>

#include "layout/run/asked_leaf.h"
#include "layout/run/scanner.h"

namespace murv::detail
{

namespace
{

constexpr std::uint64_t s_cullMostShown = 0xFFFFFFFF;

}  // namespace

/// What a callback sees of the record at hand: to the end of the outermost part whose end is known, else all that has
/// come.
std::string_view CScanner::shownRecord() const
{
    std::uint64_t end = m_ullShown;
    for (std::size_t i = m_vLimits.size(); i-- > 1;)
        end = isOfInput(i) ? end : m_vLimits[i].m_ullEnd;
    return bytes(m_ullRecordStart, std::min(end - m_ullRecordStart, s_cullMostShown));
}

/// Asks before the item is read, wherever its end is. A refusal may be for want of bytes, so that it counts only when
/// no more can come.
E_Scan CScanner::onAsk(unsigned int part)
{
    const tPart& leaf = part4(part);
    const std::uint64_t offset = m_ullPos - m_ullRecordStart;
    if (offset > s_cullMostShown)
        return stop(PF_limit, part, m_ullPos, 0, "The item lies beyond what a callback can be shown");
    CAskedLeaf asked(leaf, defaultOf(leaf), leaf.m_pUser);
    if (!asked.askParsing(shownRecord(), static_cast<unsigned int>(offset)))
        return !m_bOver && isOfInput(m_vLimits.size() - 1) ? more(part, 1) : stop(PF_callback, part, m_ullPos, 0);
    if (const char* const complaint = asked.complaint())
        return stop(PF_callback, part, m_ullPos, 0, complaint);
    m_ullAsked = asked.length();
    return SC_next;
}

}  // namespace murv::detail

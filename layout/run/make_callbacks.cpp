// layout/run/make_callbacks.cpp - items whose keywords an application has registered, while making.
#include "layout/run/asked_leaf.h"
#include "layout/run/maker.h"
#include "layout/values/value_codec.h"

namespace murv::detail
{

namespace
{

bool isSame(const tScalar& a, const tScalar& b)
{
    if (a.m_eType != b.m_eType)
        return false;
    return a.m_eType == DT_codelist ? a.m_strvText == b.m_strvText
           : a.m_eType == DT_bool   ? a.m_bValue == b.m_bValue
                                    : a.m_eType == DT_null || a.m_ullValue == b.m_ullValue;
}

}  // namespace

/// The record as far as it was made, for callbacks: what has come since the last one is added.
const std::string& CMaker::shownRecord()
{
    m_strShown.append(*m_pOut, static_cast<std::size_t>(m_ullRecordStart) + m_strShown.size(), std::string::npos);
    return m_strShown;
}

/// Callbacks see numbers about other parts as soon as these are known. One that has another width than was guessed
/// moves all that follows, and then everything is made again.
E_Scan CMaker::fillForCallbacks(unsigned int hole)
{
    if (!m_tPlan.m_bAsks)
        return SC_next;
    const bool moved = m_bMoved;
    const E_Scan result = fillHole(hole);
    m_bMoved = moved;
    return result;
}

/// Shows callbacks what was filled in.
void CMaker::showFilled(std::uint64_t offset, std::string_view item)
{
    if (offset < m_ullRecordStart || offset - m_ullRecordStart + item.size() > m_strShown.size())
        return;
    m_strShown.replace(static_cast<std::size_t>(offset - m_ullRecordStart), item.size(), item);
}

E_Scan CMaker::makeAsked(unsigned int part, const CFields* node)
{
    const tPart& leaf = part4(part);
    tScalar before = defaultOf(leaf);
    if (node == nullptr && leaf.m_bRequired)
        return stop(PF_missing, part);
    if (node != nullptr)
    {
        if (const E_Scan result = takeScalar(part, *node, before))
            return result;
    }
    const void* const user = node != nullptr ? node->pkt_GetOSA4User() : nullptr;
    CAskedLeaf asked(leaf, before, user != nullptr ? user : leaf.m_pUser);
    if (!asked.askMaking(shownRecord()))
        return stop(PF_callback, part);
    if (const char* const complaint = asked.complaint())
        return stop(PF_callback, part, complaint);
    const std::size_t begin = m_pOut->size();
    const bool isOwn = node == nullptr && isSame(before, asked.value());
    if (const E_Scan result = putTested(part, asked.value(), isOwn))
        return result;
    const std::size_t length = m_pOut->size() - begin;
    if (leaf.m_eEnd == LE_callback && asked.length() != 0 && asked.length() != length)
        return stop(PF_callback, part, "The value has another length than the callback gave", length);
    return node != nullptr && m_tOptions.m_bAgree ? agreeWithCallback(part, before, begin) : SC_next;
}

/// The data must say what the callback has filled in.
E_Scan CMaker::agreeWithCallback(unsigned int part, const tScalar& value, std::size_t begin)
{
    const tPart& leaf = part4(part);
    m_strValue.clear();
    const E_PacketFault fault = makeValue(leaf.m_tItem, value, m_strValue);
    const std::size_t mark = leaf.m_eEnd == LE_mark ? leaf.m_vMarks.front().size() : 0;
    const std::string_view made = std::string_view(*m_pOut).substr(
        begin + leaf.m_tItem.m_ucPrefix, m_pOut->size() - begin - mark - leaf.m_tItem.m_ucPrefix);
    const bool agrees = (fault == PF_none || isFinding(fault)) && made == m_strValue;
    return agrees ? SC_next : stop(PF_callback, part, s_cpDiffers, m_pOut->size() - begin);
}

}  // namespace murv::detail

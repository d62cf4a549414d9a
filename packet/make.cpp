// packet/make.cpp - packets from trees.
//
// One pass over the leaves. Size items are laid out before their size is known; they wait in a list, and the first item
// of their number that follows fills them in.

#include <utility>
#include <vector>

#include "core/field_access.h"
#include "core/integer_text.h"
#include "core/throw.h"
#include "core/tree_walk.h"
#include "murv/fields.h"
#include "packet/item_make.h"
#include "packet/keyword_call.h"
#include "packet/limits.h"
#include "packet/memo.h"
#include "packet/time_value.h"

namespace murv
{

using detail::tFieldAccess;

namespace
{

constexpr const char* s_cpAllot = "murv::CFields::pkt_allotValue4SKI";

/// A size item in the packet that does not tell its size yet.
struct tWaitingItem
{
    CFields* m_pLeaf;
    std::size_t m_nOffset;
    std::size_t m_nLength;
    std::size_t m_nBefore;  // the one of the same number that waits too, counted from 1; 0 for none
};

class CPacketMaker
{
public:
    explicit CPacketMaker(bool keywords) : m_bKeywords(keywords)
    {
    }

    void makeLeaf(CFields& leaf)
    {
        const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
        if (!detail::hasLength(pei, !m_vMemo.empty()))
            return;
        if (m_bKeywords && pei.m_usSkIndex != 0)
            makeKeywordLeaf(leaf);
        else
            detail::makeItem(leaf, m_tPacket);
    }
    void makeTree(CFields& root)
    {
        detail::CTreeWalk<CFields> walk(root);
        while (CFields* const node = walk.next())
        {
            if (!tFieldAccess::isContainer(*node))
                makeLeaf(*node);
        }
    }
    std::string take()
    {
        return m_tPacket.take();
    }

private:
    void makeKeywordLeaf(CFields& leaf);
    bool allotExternal(CFields& leaf);
    void announceSize(CFields& leaf);
    void makeSized(CFields& leaf);
    void tellSize(unsigned int option, unsigned int size);
    void rewrite(const tWaitingItem& item, unsigned int size);

    bool m_bKeywords;
    detail::CPacketBuffer m_tPacket;
    detail::tMemoList m_vMemo;
    std::vector<tWaitingItem> m_vWaiting;
    std::size_t m_nLastWaiting[16] = {};  // of each option, counted from 1; 0 for none
};

void setNumber(CFields& leaf, unsigned long long number)
{
    detail::tSlot fresh{DT_uint, false, {}};
    fresh.m_uValue.m_ullValue = number;
    tFieldAccess::replaceValue(leaf, fresh);
}

/// Whether a size item can show the size: a fixed one in its length, a variable one when its prefix is not cut.
bool fitsSizeItem(const tPacketExpInfo& pei, unsigned int size)
{
    if (pei.m_eLengthExp == LEC_V)
    {
        const int total = pei.m_ucPrefixSize - pei.m_cCalibration + static_cast<int>(detail::digits4Unsigned(size));
        return pei.m_ePacketExp != PEC_A ||
               (total >= 0 && detail::digits4Unsigned(static_cast<unsigned int>(total)) <= pei.m_ucPrefixSize);
    }
    unsigned long long limit = 1;
    const unsigned long long base = pei.m_ePacketExp == PEC_A ? 10 : 256;
    for (unsigned int place = 0; place < pei.m_uiLength && limit <= size; ++place)
        limit *= base;
    return size < limit;
}

void CPacketMaker::makeKeywordLeaf(CFields& leaf)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    if (pei.m_ucSkKind != 0)
    {
        // The callback may have changed all of the node.
        if (allotExternal(leaf) && !tFieldAccess::isContainer(leaf) && detail::hasLength(pei, !m_vMemo.empty()))
            detail::makeItem(leaf, m_tPacket);
        return;
    }
    const detail::tKeywordRow* const row = detail::findKeyword(pei.m_usSkIndex);
    if (row == nullptr)
        detail::throwAt(s_cpAllot, "Unknown internal SKI(supporting keyword index)");
    if (row->m_eRole == detail::KR_size)
    {
        if (pei.m_eLengthExp == LEC_D)
            makeSized(leaf);
        else
            announceSize(leaf);
        return;
    }
    if (row->m_eRole == detail::KR_time)
        setNumber(leaf, detail::makeTimeValue(*row, detail::readClock()));
    detail::makeItem(leaf, m_tPacket);
}

bool CPacketMaker::allotExternal(CFields& leaf)
{
    return detail::callKeyword(CFields::getAllotPktFP4ESK(tFieldAccess::pei(leaf).m_ucSkKind), leaf,
                               {&m_tPacket.text(), 0, 0, &m_vMemo}, s_cpAllot,
                               "Found not allocation event for ESK(external supporting keyword)");
}

void CPacketMaker::announceSize(CFields& leaf)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    const std::size_t offset = m_tPacket.size();
    setNumber(leaf, 0);
    detail::makeItem(leaf, m_tPacket);
    std::size_t& last = m_nLastWaiting[pei.m_ucSkOption];
    m_vWaiting.push_back({&leaf, offset, m_tPacket.size() - offset, last});
    last = m_vWaiting.size();
    detail::addMemo(m_vMemo, {pei.m_ucSkOption, 0, 0, pei.m_usSkIndex, static_cast<unsigned int>(offset), 0});
}

void CPacketMaker::makeSized(CFields& leaf)
{
    tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    const unsigned int option = pei.m_ucSkOption;
    const tMemoFieldInfo* const record = detail::findMemo(m_vMemo, option);
    if (record != nullptr && record->m_bKnown)
        pei.m_uiLength = record->m_uiSize;
    else if (!m_vMemo.empty())
        pei.m_uiLength = detail::naturalLength(leaf, pei.m_ePacketExp);
    detail::makeItem(leaf, m_tPacket);
    if (m_nLastWaiting[option] != 0)
        tellSize(option, pei.m_uiLength);
}

void CPacketMaker::tellSize(unsigned int option, unsigned int size)
{
    for (std::size_t i = std::exchange(m_nLastWaiting[option], 0); i != 0;)
    {
        const tWaitingItem item = m_vWaiting[i - 1];
        rewrite(item, size);
        i = item.m_nBefore;
    }
    tMemoFieldInfo& record = *detail::findMemo(m_vMemo, option);
    record.m_bKnown = 1;
    record.m_uiSize = size;
}

void CPacketMaker::rewrite(const tWaitingItem& item, unsigned int size)
{
    if (!fitsSizeItem(tFieldAccess::pei(*item.m_pLeaf), size))
        detail::throwAt(s_cpAllot, "Size(%u) does not fit its size item", static_cast<int>(size));
    setNumber(*item.m_pLeaf, size);
    detail::CPacketBuffer fresh;
    detail::makeItem(*item.m_pLeaf, fresh);
    m_tPacket.text().replace(item.m_nOffset, item.m_nLength, fresh.text());
    if (fresh.size() == item.m_nLength)
        return;
    // A variable item of text has grown: what waits behind it has moved.
    for (tWaitingItem& other : m_vWaiting)
    {
        if (other.m_nOffset > item.m_nOffset)
            other.m_nOffset += fresh.size() - item.m_nLength;
    }
}

CFields& writable(const CFields& node)
{
    return const_cast<CFields&>(node);
}

}  // namespace

std::string CFields::pkt_Make4OneSelf(bool a_bSki) const
{
    CPacketMaker maker(a_bSki);
    if (!tFieldAccess::isContainer(*this))
        maker.makeLeaf(writable(*this));
    return maker.take();
}

std::string CFields::pkt_Make4Children(bool a_bSki, CFields* a_pRoot) const
{
    CPacketMaker maker(a_bSki);
    maker.makeTree(a_pRoot == nullptr ? writable(*this) : *a_pRoot);
    return maker.take();
}

}  // namespace murv

// packet/make.cpp - packets from trees.
//
// One pass over the leaves. Size items are laid out before their size is known; they wait in a list, and the first item
// of their number that follows fills them in.

#include <utility>
#include <vector>

#include "core/field_access.h"
#include "core/text/integer_text.h"
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

/// A size item in the packet that does not tell its size yet, or did not at first.
struct tWaitingItem
{
    CFields* m_pLeaf;
    std::size_t m_nOffset;
    std::size_t m_nLength;
    std::size_t m_nNext;  // the next one of the same number that waits too; s_cnNone for none
};

constexpr std::size_t s_cnNone = static_cast<std::size_t>(-1);

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
    void rewriteWaiting(std::size_t first, unsigned int size);

    /// The waiting items of one option, as positions in m_vWaiting.
    struct tChain
    {
        std::size_t m_nFirst = s_cnNone;
        std::size_t m_nLast = s_cnNone;
    };

    bool m_bKeywords;
    detail::CPacketBuffer m_tPacket;
    detail::tMemoList m_vMemo;
    std::vector<tWaitingItem> m_vWaiting;  // in the order of the packet
    tChain m_tChain[16];                   // by option
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
    tChain& chain = m_tChain[pei.m_ucSkOption];
    const std::size_t position = m_vWaiting.size();
    m_vWaiting.push_back({&leaf, offset, m_tPacket.size() - offset, s_cnNone});
    (chain.m_nFirst == s_cnNone ? chain.m_nFirst : m_vWaiting[chain.m_nLast].m_nNext) = position;
    chain.m_nLast = position;
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
    if (m_tChain[option].m_nFirst != s_cnNone)
        tellSize(option, pei.m_uiLength);
}

void CPacketMaker::tellSize(unsigned int option, unsigned int size)
{
    rewriteWaiting(std::exchange(m_tChain[option].m_nFirst, s_cnNone), size);
    tMemoFieldInfo& record = *detail::findMemo(m_vMemo, option);
    record.m_bKnown = 1;
    record.m_uiSize = size;
}

// Variable items of text grow, and what stands behind them moves. All of one number are told at once, so that no byte
// moves more often than there are numbers.
void CPacketMaker::rewriteWaiting(std::size_t first, unsigned int size)
{
    std::string& text = m_tPacket.text();
    std::string moved;                 // the new packet from the first item on whose length has changed
    std::size_t movedFrom = s_cnNone;  // where that begins
    std::size_t taken = 0;             // so far the old packet was taken over
    std::size_t growth = 0;
    std::size_t next = first;
    for (std::size_t i = first; i != m_vWaiting.size(); ++i)
    {
        tWaitingItem& item = m_vWaiting[i];
        const std::size_t offset = std::exchange(item.m_nOffset, item.m_nOffset + growth);
        if (i != next)
            continue;
        next = item.m_nNext;
        if (!fitsSizeItem(tFieldAccess::pei(*item.m_pLeaf), size))
            detail::throwAt(s_cpAllot, "Size(%u) does not fit its size item", static_cast<int>(size));
        setNumber(*item.m_pLeaf, size);
        detail::CPacketBuffer fresh;
        detail::makeItem(*item.m_pLeaf, fresh);
        if (movedFrom == s_cnNone && fresh.size() == item.m_nLength)
        {
            text.replace(offset, item.m_nLength, fresh.text());
            continue;
        }
        if (movedFrom == s_cnNone)
            movedFrom = offset;
        else
            moved.append(text, taken, offset - taken);
        moved += fresh.text();
        taken = offset + item.m_nLength;
        growth += fresh.size() - item.m_nLength;
        item.m_nLength = fresh.size();
    }
    if (movedFrom == s_cnNone)
        return;
    moved.append(text, taken, std::string::npos);
    text.replace(movedFrom, std::string::npos, moved);
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

// packet/check.cpp - checking values, and packets against the keywords of a tree.

#include <algorithm>
#include <climits>
#include <cstdint>

#include "core/field_access.h"
#include "core/tree_walk.h"
#include "murv/fields.h"
#include "packet/item_make.h"
#include "packet/item_read.h"
#include "packet/keyword_call.h"
#include "packet/limits.h"
#include "packet/pending_sizes.h"
#include "packet/time_value.h"

namespace murv
{

using detail::tFieldAccess;

namespace
{

bool hasEqualValues(const CFields& node, bool valid)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(node);
    const unsigned int asked = valid ? VK_valid : VK_fix;
    return tFieldAccess::isContainer(node) || pei.m_ucSkKind != 0 || pei.m_usSkIndex != asked ||
           node.isEqualDualValue();
}

class CPacketChecker
{
public:
    CPacketChecker(const char* data, unsigned int length) : m_pData(data), m_uiLength(length)
    {
    }

    bool checkLeaf(CFields& leaf);
    unsigned int checkTree(CFields& root);

private:
    detail::tRemaining item() const
    {
        if (m_pData == nullptr || m_ullOffset > m_uiLength)
            return {};
        return {m_pData + m_ullOffset, m_uiLength - static_cast<std::size_t>(m_ullOffset)};
    }
    bool checkKeyword(const CFields& leaf, unsigned int& length);
    bool isWithin(const CFields& leaf) const;
    bool checkExternal(CFields& leaf);
    bool checkInternal(const CFields& leaf, const detail::tKeywordRow& row, unsigned int length);
    bool checkDual(const CFields& leaf, unsigned int length) const;
    bool checkSize(const tPacketExpInfo& pei, std::string_view value);

    const char* m_pData;
    unsigned int m_uiLength;
    std::uint64_t m_ullOffset = 0;
    detail::tPendingSizes m_vSizes;
};

bool CPacketChecker::checkLeaf(CFields& leaf)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    unsigned int length = pei.m_uiLength;
    bool passed = true;
    if (pei.m_usSkIndex != 0 && pei.m_ucSkKind != 0)
    {
        passed = checkExternal(leaf);
        length = tFieldAccess::isContainer(leaf) ? 0 : pei.m_uiLength;
    }
    else if (pei.m_usSkIndex != 0 && detail::hasLength(pei, !m_vSizes.empty()))
        passed = checkKeyword(leaf, length);
    if (pei.m_eLengthExp <= LEC_D)  // making and parsing skip others
        m_ullOffset += std::min(length, detail::s_cuiLongestItem);
    return passed;
}

/// \param length  the leaf's own; a sized item gets the announced one
bool CPacketChecker::checkKeyword(const CFields& leaf, unsigned int& length)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    const detail::tKeywordRow* const row = detail::findKeyword(pei.m_usSkIndex);
    if (row == nullptr)
        return false;
    if (row->m_eRole == detail::KR_size && pei.m_eLengthExp == LEC_D)
    {
        if (const tMemoFieldInfo* const record = detail::findPendingSize(m_vSizes, pei.m_ucSkOption))
            length = record->m_uiSize;
    }
    return checkInternal(leaf, *row, length);
}

/// Whether a leaf's item, as far as its length is known, lies within the packet.
bool CPacketChecker::isWithin(const CFields& leaf) const
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    std::string_view value;
    if (!tFieldAccess::isContainer(leaf) && detail::hasLength(pei, !m_vSizes.empty()))
        return detail::findValue(pei, pei.m_uiLength, item(), value);
    return item().data() != nullptr;
}

// The callback may rely on an item whose length is known to lie within the packet; one that has none yet may get it
// from the callback, and is looked for then.
bool CPacketChecker::checkExternal(CFields& leaf)
{
    constexpr const char* s_cpCheck = "murv::CFields::pkt_detailCheckValue4SKI";
    constexpr const char* s_cpMissing = "Found not checking event for ESK(external supporting keyword)";
    const CFields::tCheckPktFP callback = CFields::getCheckPktFP4ESK(tFieldAccess::pei(leaf).m_ucSkKind);
    if (callback != nullptr && !isWithin(leaf))
        return false;
    return detail::callKeyword(callback, leaf, {m_pData, m_uiLength, static_cast<unsigned int>(m_ullOffset), &m_vSizes},
                               s_cpCheck, s_cpMissing) &&
           isWithin(leaf);
}

bool CPacketChecker::checkInternal(const CFields& leaf, const detail::tKeywordRow& row, unsigned int length)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    std::string_view value;
    unsigned long long number = 0;
    if (!detail::findValue(pei, length, item(), value))
        return false;
    switch (row.m_eRole)
    {
    case detail::KR_dual: return checkDual(leaf, length);
    case detail::KR_size: return checkSize(pei, value);
    case detail::KR_time: return detail::readWhole(pei.m_ePacketExp, value, number) && detail::isTimeValue(row, number);
    }
    return false;
}

bool CPacketChecker::checkDual(const CFields& leaf, unsigned int length) const
{
    CFields read;
    read.pkt_SetExp(tFieldAccess::pei(leaf));
    CFields expected;
    tFieldAccess::replaceValue(expected, tFieldAccess::copySlot(tFieldAccess::slot(leaf, VK_fix)));
    return detail::readValue(read, length, item()) && read == expected;
}

bool CPacketChecker::checkSize(const tPacketExpInfo& pei, std::string_view value)
{
    if (pei.m_eLengthExp == LEC_D)
        return true;
    unsigned int size = 0;
    if (!detail::readSize(pei.m_ePacketExp, value, size))
        return false;
    detail::setPendingSize(m_vSizes,
                           {pei.m_ucSkOption, 1, 0, pei.m_usSkIndex, static_cast<unsigned int>(m_ullOffset), size});
    return true;
}

unsigned int CPacketChecker::checkTree(CFields& root)
{
    unsigned int failed = 0;
    detail::CTreeWalk<CFields> walk(root);
    while (CFields* const node = walk.next())
    {
        if (!tFieldAccess::isContainer(*node) && !checkLeaf(*node))
            ++failed;
    }
    return failed;
}

}  // namespace

bool CFields::pkt_Check4OneSelf(bool valid) const
{
    return hasEqualValues(*this, valid);
}

bool CFields::pkt_Check4Children(bool valid, const CFields* a_pRoot) const
{
    detail::CTreeWalk<> walk(a_pRoot == nullptr ? *this : *a_pRoot);
    while (const CFields* const node = walk.next())
    {
        if (!hasEqualValues(*node, valid))
            return false;
    }
    return true;
}

bool CFields::pkt_DetailCheck4OneSelf(const char* data, unsigned int length)
{
    CPacketChecker checker(data, length);
    return tFieldAccess::isContainer(*this) || checker.checkLeaf(*this);
}

unsigned int CFields::pkt_DetailCheck4Children(const char* data, unsigned int length, CFields* a_pRoot)
{
    CPacketChecker checker(data, length);
    return checker.checkTree(a_pRoot == nullptr ? *this : *a_pRoot);
}

}  // namespace murv

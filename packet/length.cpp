// packet/length.cpp - how long items and packets are, before they are made.

#include <algorithm>

#include "core/field_access.h"
#include "core/tree_walk.h"
#include "murv/fields.h"
#include "packet/item_make.h"
#include "packet/limits.h"

namespace murv
{

using detail::s_cuiLongestItem;
using detail::tFieldAccess;

namespace
{

/// Twice the length, plus 1 when it may turn out to be another.
unsigned int lengthWord(const CFields& node, bool keywords)
{
    if (tFieldAccess::isContainer(node))
        return 0;
    const tPacketExpInfo& pei = tFieldAccess::pei(node);
    const unsigned int recorded = pei.m_uiLength;  // no reference may be bound to a packed field
    const unsigned int stated = std::min(recorded, s_cuiLongestItem);
    switch (pei.m_eLengthExp)
    {
    case LEC_F: return stated * 2;
    case LEC_V: return (stated != 0 ? stated : pei.m_ucPrefixSize) * 2 + 1;
    case LEC_D: return keywords ? 0 : stated * 2;
    }
    return 0;
}

}  // namespace

uPacketLengthExpression CFields::pkt_Len4OneSelf(bool a_bSki) const
{
    return {lengthWord(*this, a_bSki)};
}

uPacketLengthExpression CFields::pkt_Len4Children(bool a_bSki, const CFields* a_pRoot) const
{
    unsigned int sum = 0;
    unsigned int variable = 0;
    detail::CTreeWalk<> walk(a_pRoot == nullptr ? *this : *a_pRoot);
    while (const CFields* const node = walk.next())
    {
        const unsigned int word = lengthWord(*node, a_bSki);
        sum += word & ~1U;
        variable |= word & 1U;
    }
    return {sum | variable};
}

unsigned int CFields::pkt_Len4PEI() const
{
    return tFieldAccess::isContainer(*this) ? 0 : detail::naturalLength(*this, tFieldAccess::pei(*this).m_ePacketExp);
}

}  // namespace murv

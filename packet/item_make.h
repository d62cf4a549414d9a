// packet/item_make.h - one leaf's value as a packet item.
//
// An item is the bytes of the value, by form and type, and then a fit: cut or filled up to a fixed length, or put
// after a length prefix. What parsing would make of the item makes no difference here.
#pragma once

#include "murv/fields.h"
#include "packet/packet_buffer.h"
#include "packet/usual_make.h"

namespace murv::detail
{

/// What one item takes at least: no lengths that are not known yet, no prefix without width.
inline bool hasLength(const tPacketExpInfo& pei, bool anySizeKnown)
{
    switch (pei.m_eLengthExp)
    {
    case LEC_F: return pei.m_uiLength != 0;
    case LEC_V: return pei.m_ucPrefixSize != 0;
    case LEC_D: return pei.m_uiLength != 0 || anySizeKnown;
    }
    return false;
}

/// As makeItem, for leaves that makeUsual does not take; it has the rules for all.
void makeOtherItem(CFields& leaf, CPacketBuffer& packet);

/// Appends the item of a leaf; a variable item's total length is recorded in the leaf.
///
/// Throws CLogicError for a node that is no leaf, and std::bad_alloc.
inline void makeItem(CFields& leaf, CPacketBuffer& packet)
{
    if (const char* const end = makeUsual(leaf, packet.end()))
        packet.setEnd(end);
    else
        makeOtherItem(leaf, packet);
}

/// Bytes of a leaf's value in that form; throws CLogicError for a node that is no leaf.
unsigned int naturalLength(const CFields& leaf, E_PacketExpCode form);

}  // namespace murv::detail

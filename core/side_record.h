// core/side_record.h - the side record of a node: the parts that few nodes need.
//
// Most nodes have none; it is made when a second value, a comment, the user pointer or callback arguments are first
// stored. The node's pointer to it has a second use, which saves eight bytes a node: a member of a large field set must
// find the set when it is renamed, since the set's name index knows its name. Without a side record, the pointer holds
// the address of the set, marked by its lowest bit; with one, the side record holds that address.
#pragma once

#include <cstring>

#include "core/heap_text.h"
#include "murv/packet_expression.h"
#include "murv/types.h"

namespace murv::detail
{

/// Clears both values at once; the bits of VK_fix and VK_valid together.
inline constexpr auto s_ceBothKinds = static_cast<E_ValueKind>(VK_fix | VK_valid);

/// A value with its type; the node keeps its first one in its own words.
struct tSlot
{
    E_DataType m_eType = DT_null;
    bool m_bOwned = false;  // DT_codelist: the data is an owned block
    uMultiValue m_uValue;
    bool m_bPooled = false;  // of an owned block: it comes from a pool
};

/// A bool with all eight bytes set, so that a copy under another type is well defined.
inline uMultiValue boolValue(bool value)
{
    uMultiValue bytes;
    bytes.m_ullValue = 0;
    std::memcpy(&bytes.m_ullValue, &value, sizeof value);
    return bytes;
}

inline constexpr unsigned int s_cuiCommentCount = 3;

struct tSideRecord
{
    CFieldVector* m_pOwner = nullptr;  // set whose name index knows this node; not owned
    tSlot m_tSecond;
    CHeapString m_tComment[s_cuiCommentCount];
    bool m_bComment = false;       // a comment was set at some time
    const void* m_pOSA = nullptr;  // the application's; not owned
    tInnerSupportedArgs4ESK m_tISA{};
};

}  // namespace murv::detail

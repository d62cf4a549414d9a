// packet/pending_sizes.h - the sizes that are announced while one packet is made, parsed or checked.
//
// A size item ("sizedef_1") announces the length of a sized item ("sizeset_1"); the option pairs them. The last size
// item of each option counts, so that there are never more than sixteen records. Callbacks of external keywords are
// shown the list, which is why its record has a public name.
#pragma once

#include <vector>

#include "murv/packet_expression.h"

namespace murv
{

#pragma pack(push, 1)

struct tMemoFieldInfo
{
    unsigned char m_ucSkOption : 4;  // pairs the items
    unsigned char m_bKnown : 1;      // the size is known; while making it is not before the first sized item
    unsigned char m_ucReserved : 3;
    unsigned short m_usSkIndex;  // keyword of the size item
    unsigned int m_uiOffset;     // of the size item in the packet
    unsigned int m_uiSize;       // that it announces, in bytes
};

#pragma pack(pop)

static_assert(sizeof(tMemoFieldInfo) == 11, "a record is eleven bytes");

namespace detail
{

using tPendingSizes = std::vector<tMemoFieldInfo>;

inline tMemoFieldInfo* findPendingSize(tPendingSizes& sizes, unsigned int option)
{
    for (tMemoFieldInfo& record : sizes)
    {
        if (record.m_ucSkOption == option)
            return &record;
    }
    return nullptr;
}

/// Replaces an earlier record of the same option.
inline void setPendingSize(tPendingSizes& sizes, const tMemoFieldInfo& record)
{
    if (tMemoFieldInfo* const before = findPendingSize(sizes, record.m_ucSkOption))
        *before = record;
    else
        sizes.push_back(record);
}

}  // namespace detail
}  // namespace murv

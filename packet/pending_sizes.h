// packet/memo.h - what size keywords remember during the making, parsing or checking of one packet.
//
// A size item and the items whose length it tells are paired by their option. The list holds the last size item of each
// option, so it never has more than sixteen records.
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
    unsigned int m_uiSize;       // length that it tells, in bytes
};

#pragma pack(pop)

static_assert(sizeof(tMemoFieldInfo) == 11, "a memo record is eleven bytes");

namespace detail
{

using tMemoList = std::vector<tMemoFieldInfo>;

inline tMemoFieldInfo* findMemo(tMemoList& memo, unsigned int option)
{
    for (tMemoFieldInfo& record : memo)
    {
        if (record.m_ucSkOption == option)
            return &record;
    }
    return nullptr;
}

/// Takes the place of an earlier record of the same option.
inline void addMemo(tMemoList& memo, const tMemoFieldInfo& record)
{
    if (tMemoFieldInfo* const before = findMemo(memo, record.m_ucSkOption))
        *before = record;
    else
        memo.push_back(record);
}

}  // namespace detail
}  // namespace murv

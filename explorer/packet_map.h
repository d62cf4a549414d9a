// explorer/packet_map.h - a packet that was read: its values, where their bytes lie, and where a text says them.
//
// Tables of numbers, which JavaScript sees as they are: a packet of a megabyte may have a hundred thousand values.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "explorer/document.h"
#include "explorer/layout_map.h"
#include "murv/layout.h"

namespace murv::explorer
{

inline constexpr std::int32_t s_ciNone = -1;

/// A value. Each row of the tables is read by JavaScript as a row of 32-bit numbers, in this order.
struct tLeaf
{
    std::int32_t m_iPart;
    std::int32_t m_iOffset;  // in the packet
    std::int32_t m_iLength;
    std::int32_t m_iFrom;              // m_iOffset, or where a length before the value or its record begins
    std::int32_t m_iBegin = s_ciNone;  // of its member, in the text; none for what trees leave out
    std::int32_t m_iValue = s_ciNone;  // of the value itself
    std::int32_t m_iEnd = s_ciNone;
    std::int32_t m_iGroup = s_ciNone;  // the innermost group around it
    std::int32_t m_iIndex = s_ciNone;  // in an array
};

/// A field set or array of the tree.
struct tGroup
{
    std::int32_t m_iPart;
    std::int32_t m_iFirst;  // its leaves: from here
    std::int32_t m_iAfter;  // to here, without this one
    std::int32_t m_iBegin;
    std::int32_t m_iValue;
    std::int32_t m_iEnd;
    std::int32_t m_iGroup;
    std::int32_t m_iIndex;
};

/// A fault or finding, and the bytes after it that were not read.
struct tProblem
{
    tPacketFault m_tFault;
    std::uint64_t m_ullUnread = 0;
    std::uint64_t m_ullUnreadEnd = 0;
};

class CPacketMap
{
public:
    /// Reads a packet: leaves, problems, and a tree.
    void read(const CLayoutMap& layout, std::string_view bytes);
    /// The tree that was read, as text.
    std::string text() const;
    /// Ties leaves to a text that says the same tree, perhaps in another order and with less; makes the groups.
    void tie(const CLayoutMap& layout, std::string_view text, const tDocument& document);

    std::vector<tLeaf> m_vLeaves;
    std::vector<tGroup> m_vGroups;
    std::vector<std::int32_t> m_vLeafOrder;   // rows that the text has, by where they begin in it
    std::vector<std::int32_t> m_vGroupOrder;  // the same of groups
    std::vector<tProblem> m_vProblems;
    std::uint64_t m_ullMoreProblems = 0;  // that are not in the list
    tMakeOptions m_tMake;                 // gives the same line ends

private:
    void readRecords(const CLayout& layout, std::string_view bytes);
    void note(const tPacketFault& fault);

    CFields m_tTree;
};

}  // namespace murv::explorer

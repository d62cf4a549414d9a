// packet/parse.cpp - trees from packets.
//
// Every step results in the number of bytes that remain, or, below zero, of those that are missing. A walk carries that
// number from item to item and from level to level, on a stack of its own.

#include <algorithm>
#include <climits>
#include <cstdint>

#include "core/field_access.h"
#include "core/member_cursor.h"
#include "core/memory/walk_stack.h"
#include "murv/fields.h"
#include "packet/item_make.h"
#include "packet/item_read.h"
#include "packet/keyword_call.h"
#include "packet/keyword_table.h"
#include "packet/limits.h"
#include "packet/pending_sizes.h"
#include "packet/usual_read.h"

namespace murv
{

using detail::tFieldAccess;

namespace
{

int clampResult(std::int64_t result)
{
    return static_cast<int>(std::clamp<std::int64_t>(result, INT_MIN, INT_MAX));
}

class CPacketParser
{
public:
    CPacketParser(const char* data, unsigned int length, bool store)
        : m_pData(data), m_llLength(length), m_bStore(store)
    {
    }

    std::int64_t parseLeaf(CFields& leaf);
    std::int64_t parseTree(CFields& root);

private:
    /// The members of one container that are still to come, and the result so far.
    struct tFrame
    {
        detail::CMemberCursor m_tMembers;
        std::int64_t m_llResult;
    };

    std::int64_t remaining() const
    {
        return m_llLength - m_llOffset;
    }
    /// The rest of the packet as bytes; without any when there is no packet.
    detail::tRemaining item() const
    {
        if (m_pData == nullptr || m_llOffset > m_llLength)
            return {};
        return {m_pData + m_llOffset, static_cast<std::size_t>(remaining())};
    }
    bool prepare(CFields& leaf, unsigned int& length, bool& store);
    bool askExternal(CFields& leaf);
    void recordSize(const tPacketExpInfo& pei);
    std::int64_t readItem(CFields& leaf, unsigned int length, bool store);
    void merge(tFrame& frame, std::int64_t result);

    const char* m_pData;
    std::int64_t m_llLength;
    std::int64_t m_llOffset = 0;
    bool m_bStore;
    detail::tPendingSizes m_vSizes;
};

bool CPacketParser::askExternal(CFields& leaf)
{
    return detail::callKeyword(
        CFields::getParsePktFP4ESK(tFieldAccess::pei(leaf).m_ucSkKind), leaf,
        {m_pData, static_cast<unsigned int>(m_llLength), static_cast<unsigned int>(m_llOffset), &m_vSizes},
        "murv::CFields::pkt_parsePrepare4SKI", "Found not parsing event for ESK(external supporting keyword)");
}

void CPacketParser::recordSize(const tPacketExpInfo& pei)
{
    std::string_view value;
    unsigned int size = 0;
    if (detail::findValue(pei, pei.m_uiLength, item(), value) && detail::readSize(pei.m_ePacketExp, value, size))
        detail::setPendingSize(m_vSizes,
                               {pei.m_ucSkOption, 1, 0, pei.m_usSkIndex, static_cast<unsigned int>(m_llOffset), size});
}

/// Runs the leaf's keyword before its item is read.
/// \param length  the leaf's own; a sized item gets the announced one
/// \return false when the callback made the leaf a container
bool CPacketParser::prepare(CFields& leaf, unsigned int& length, bool& store)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    if (pei.m_ucSkKind != 0)
    {
        store = askExternal(leaf) && store;
        length = pei.m_uiLength;  // the callback may have given it
        return !tFieldAccess::isContainer(leaf);
    }
    if (!detail::hasLength(pei, !m_vSizes.empty()))
        return true;
    const detail::tKeywordRow* const row = detail::findKeyword(pei.m_usSkIndex);
    if (row == nullptr || row->m_eRole != detail::KR_size)
        return true;
    if (pei.m_eLengthExp != LEC_D)
        recordSize(pei);
    else if (const tMemoFieldInfo* const record = detail::findPendingSize(m_vSizes, pei.m_ucSkOption))
    {
        length = record->m_uiSize;
        if (store && record->m_uiSize == 0 && pei.m_eRuntimeExp == REC_C)
            leaf.setValue("", 0);
    }
    return true;
}

std::int64_t CPacketParser::parseLeaf(CFields& leaf)
{
    tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    if (pei.m_usSkIndex == 0)
        return readItem(leaf, pei.m_uiLength, m_bStore);
    unsigned int length = pei.m_uiLength;
    bool store = m_bStore;
    if (!prepare(leaf, length, store))
        return remaining();
    const std::int64_t result = readItem(leaf, length, store);
    if (pei.m_eLengthExp == LEC_D && store && result >= 0)
        pei.m_uiLength = length;
    return result;
}

std::int64_t CPacketParser::readItem(CFields& leaf, unsigned int length, bool store)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    const unsigned int lengthExp = pei.m_eLengthExp;
    if (lengthExp > LEC_D)
        return remaining();
    const std::int64_t rest = remaining();
    const detail::tRemaining bytes = item();
    const bool variable = lengthExp == LEC_V;
    const std::int64_t need = variable ? pei.m_ucPrefixSize : length;
    // The next item begins after the length that was recorded before, whatever this item's prefix says.
    m_llOffset += std::min(length, detail::s_cuiLongestItem);
    if (rest < 1 || (m_pData == nullptr && (store || variable)))
        return -need;
    if (need == 0)
        return rest;
    if (variable)
        return detail::readVariable(leaf, bytes, store);
    return m_pData == nullptr ? rest - need : detail::readFixed(leaf, length, bytes, store);
}

void CPacketParser::merge(tFrame& frame, std::int64_t result)
{
    if (result < 0)
    {
        m_llOffset = m_llLength;
        frame.m_llResult = clampResult(frame.m_llResult < 0 ? frame.m_llResult + result : result);
    }
    else if (result > remaining())
        frame.m_tMembers.stop();
    else
        frame.m_llResult = result;
}

/// Reads an item of fixed length that lies before `end`, as nearly all do.
/// \return false, with nothing changed, for all others, and when its number cannot be read
bool readUsual(CFields& leaf, const char* data, std::int64_t offset, std::int64_t end, bool store)
{
    const tPacketExpInfo& pei = tFieldAccess::pei(leaf);
    const std::int64_t length = pei.m_uiLength;
    const std::int64_t rest = end - offset;
    if (pei.m_usSkIndex != 0 || pei.m_eLengthExp != LEC_F || length > rest || length == 0)
        return false;
    if (!store)
        return true;
    const std::string_view bytes(data + offset, static_cast<std::size_t>(length));
    return detail::storeUsual(leaf, bytes, static_cast<std::size_t>(rest)) || detail::storeOther(leaf, bytes);
}

/// Where the next item begins stays in a register while leaves are usual.
std::int64_t CPacketParser::parseTree(CFields& root)
{
    if (!tFieldAccess::isContainer(root))
        return parseLeaf(root);
    // Items longer than the longest one may lie in larger packets, where the walk has a rule of its own for them.
    const bool maybeUsual = m_llLength <= detail::s_cuiLongestItem && (m_pData != nullptr || !m_bStore);
    const std::int64_t end = maybeUsual ? m_llLength : 0;
    std::int64_t offset = m_llOffset;
    tFrame frame = {detail::CMemberCursor(tFieldAccess::members(root)), remaining()};
    detail::CWalkStack<tFrame> outer;
    while (true)
    {
        while (CFields* const node = frame.m_tMembers.take())
        {
            if (tFieldAccess::isContainer(*node))
            {
                outer.push(frame);
                frame = {detail::CMemberCursor(tFieldAccess::members(*node)), m_llLength - offset};
            }
            else if (readUsual(*node, m_pData, offset, end, m_bStore))
            {
                offset += tFieldAccess::pei(*node).m_uiLength;
                frame.m_llResult = end - offset;
            }
            else
            {
                m_llOffset = offset;
                merge(frame, parseLeaf(*node));
                offset = m_llOffset;
            }
        }
        m_llOffset = offset;
        if (outer.empty())
            return frame.m_llResult;
        const std::int64_t result = frame.m_llResult;
        frame = outer.top();
        outer.pop();
        merge(frame, result);
        offset = m_llOffset;
    }
}

}  // namespace

int CFields::pkt_Parse4OneSelf(const char* data, unsigned int length, bool a_bSet)
{
    CPacketParser parser(data, length, a_bSet);
    return clampResult(tFieldAccess::isContainer(*this) ? std::int64_t{length} : parser.parseLeaf(*this));
}

int CFields::pkt_Parse4Children(const char* data, unsigned int length, bool a_bSet, CFields* a_pRoot)
{
    CPacketParser parser(data, length, a_bSet);
    return clampResult(parser.parseTree(a_pRoot == nullptr ? *this : *a_pRoot));
}

}  // namespace murv

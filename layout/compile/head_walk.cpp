// layout/compile/head_walk.cpp - walks rows of parts as far as their offsets are known.
#include "layout/compile/head_walk.h"

#include <algorithm>
#include <utility>

namespace murv::detail
{

bool covers(const tHead& head, const tHead& other)
{
    return std::all_of(head.m_vBytes.begin(), head.m_vBytes.end(), [&other](const tHead::tBytes& wanted) {
        return std::any_of(other.m_vBytes.begin(), other.m_vBytes.end(), [&wanted](const tHead::tBytes& bytes) {
            const std::size_t size = wanted.m_strBytes.size();
            const unsigned int begin = bytes.m_uiOffset;
            return wanted.m_uiOffset >= begin && wanted.m_uiOffset - begin + size <= bytes.m_strBytes.size() &&
                   bytes.m_strBytes.compare(wanted.m_uiOffset - begin, size, wanted.m_strBytes) == 0;
        });
    });
}

bool CHeadWalk::isAnything() const
{
    return std::any_of(m_vHeads.begin(), m_vHeads.end(), [](const tHead& head) { return head.m_vBytes.empty(); });
}

void CHeadWalk::start()
{
    m_vHeads.clear();
    m_vOrigins.clear();
    m_vContents.clear();
}

void CHeadWalk::collectPart(unsigned int index)
{
    start();
    m_vContents.push_back({index, m_tCompile.draft(index).m_bDelimited});
    run();
}

void CHeadWalk::run()
{
    while (!m_vContents.empty())
    {
        const tContent content = m_vContents.back();
        m_vContents.pop_back();
        if (!m_tCompile.spend(1))
            return;
        addContent(content);
    }
}

/// Parts that are there: of one of several each, of an array the element.
void CHeadWalk::addContent(const tContent& content)
{
    const tPart& part = m_tCompile.part(content.m_uiPart);
    if (part.m_eKind == PK_array || part.m_eChoice != CH_none)
    {
        const bool firstLeaf = content.m_bFirstLeaf || !part.m_strBetween.empty();
        for (auto member = part.m_vMembers.rbegin(); member != part.m_vMembers.rend(); ++member)
            m_vContents.push_back({*member, firstLeaf});
        m_tCompile.spend(static_cast<unsigned int>(part.m_vMembers.size()));
        return;
    }
    tRow row;
    row.m_bFirstLeaf = content.m_bFirstLeaf;
    if (!walk(row, content.m_uiPart, part.m_uiAfter, true) && row.m_uiOffset != 0)
        flush(row);
}

void CHeadWalk::addEndMark(const tPart& array, unsigned int index)
{
    if (array.m_strEnds.empty())
        return;
    tRow row;
    row.m_uiOrigin = index;
    append(row.m_tHead, 0, array.m_strEnds);
    flush(row);
}

void CHeadWalk::append(tHead& head, unsigned int offset, const std::string& bytes)
{
    if (bytes.empty())
        return;
    if (!head.m_vBytes.empty() && head.m_vBytes.back().m_uiOffset + head.m_vBytes.back().m_strBytes.size() == offset)
        head.m_vBytes.back().m_strBytes += bytes;
    else
        head.m_vBytes.push_back({offset, bytes});
}

void CHeadWalk::flush(tRow& row)
{
    m_tCompile.spend(1 + static_cast<unsigned int>(row.m_tHead.m_vBytes.size()));
    m_vHeads.push_back(std::move(row.m_tHead));
    m_vOrigins.push_back(row.m_uiOrigin);
}

/// Walks the parts of a row.
///
/// \param isThere  the first part is there, whatever its conditions
/// \return true when the head is complete; false at the end of the row
bool CHeadWalk::walk(tRow& row, unsigned int first, unsigned int end, bool isThere)
{
    for (unsigned int at = first; at < end;)
    {
        if (!m_tCompile.spend(1))
            return true;
        if (at >= row.m_uiStop && row.m_uiOffset != 0)
        {
            flush(row);
            return true;
        }
        const tPart& part = m_tCompile.part(at);
        const bool absent = mayBeAbsent(part) && !(isThere && at == first);
        if (row.m_uiOrigin == s_cuiNone)
            row.m_uiOrigin = at;
        if (absent || part.m_eKind == PK_array || part.m_eChoice != CH_none)
        {
            if (walkSpecial(row, at, absent))
                return true;
            at = part.m_uiAfter;
            continue;
        }
        if (part.m_eKind == PK_leaf && walkLeaf(row, at))
            return true;
        row.m_bFirstLeaf = row.m_bFirstLeaf || !part.m_strBetween.empty();
        if (part.m_bRecord || part.m_uiAlign != 0)
            row.m_uiStop = std::min(row.m_uiStop, part.m_uiAfter);
        ++at;
    }
    if (end < row.m_uiStop || row.m_uiOffset == 0)
        return false;
    flush(row);
    return true;
}

/// In front of a row, what may come first gives it heads; anywhere else it ends the head.
bool CHeadWalk::walkSpecial(tRow& row, unsigned int index, bool absent)
{
    if (row.m_uiOffset != 0)
    {
        flush(row);
        return true;
    }
    const tPart& part = m_tCompile.part(index);
    m_vContents.push_back({index, row.m_bFirstLeaf || m_tCompile.draft(index).m_bDelimited});
    addEndMark(part, index);
    row.m_uiOrigin = s_cuiNone;
    const bool present = !absent && part.m_eKind != PK_array && m_tCompile.draft(index).m_ullLeast != 0;
    return present || (part.m_eKind == PK_array && !part.m_strEnds.empty() && !absent);
}

bool CHeadWalk::walkLeaf(tRow& row, unsigned int index)
{
    const tPart& leaf = m_tCompile.part(index);
    const unsigned long long width = m_tCompile.draft(index).m_ullWidth;
    constexpr unsigned long long most = 0xFFFFFFF;
    if (leaf.m_bLiteral)
        append(row.m_tHead, row.m_uiOffset, leaf.m_strLiteral);
    // A width that varies is the largest number.
    const bool last = std::max<unsigned long long>(width, row.m_uiOffset) > most || row.m_bFirstLeaf ||
                      leaf.m_eEnd == LE_before || leaf.m_eEnd == LE_enclosing;
    if (!last)
        row.m_uiOffset += static_cast<unsigned int>(width);
    else
        flush(row);
    return last;
}

void CHeadWalk::collectFollowers(unsigned int index)
{
    start();
    tRow row;
    bool complete = false;
    for (unsigned int at = index; !complete && !isBounded(m_tCompile, at); at = m_tCompile.part(at).m_uiParent)
    {
        const unsigned int parent = m_tCompile.part(at).m_uiParent;
        if (parent == s_cuiNone)
            break;
        const tPart& around = m_tCompile.part(parent);
        if (around.m_eKind == PK_set && around.m_eChoice == CH_none)
            complete = followMembers(row, at, parent);
        else if (around.m_eKind == PK_array && row.m_uiOffset == 0)
        {
            m_vContents.push_back({at, false});
            addEndMark(around, parent);
        }
        else if (around.m_eKind == PK_array)
            break;
    }
    if (!complete && row.m_uiOffset != 0)
        flush(row);
    run();
}

/// The parts of a field set after one of them. \return whether nothing after the field set matters
bool CHeadWalk::followMembers(tRow& row, unsigned int at, unsigned int parent)
{
    const tPart& set = m_tCompile.part(parent);
    const unsigned int last = m_tCompile.draft(at).m_uiSpanLast;
    const unsigned int end = last == s_cuiNone ? set.m_uiAfter : m_tCompile.part(last).m_uiAfter;
    if (walk(row, m_tCompile.part(at).m_uiAfter, end, false))
        return true;
    const bool stops = last != s_cuiNone || ((set.m_bRecord || set.m_uiAlign != 0) && row.m_uiOffset != 0);
    if (stops && row.m_uiOffset != 0)
        flush(row);
    return stops;
}

}  // namespace murv::detail

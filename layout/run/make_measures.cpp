// layout/run/make_measures.cpp - numbers about other parts, filled in while making.
//
// Sizes, counts and bits are known when their part ends. Totals follow when everything is made, since they may count
// numbers that are filled in themselves; checksums come last, over the final bytes.
#include <algorithm>
#include <string>

#include "layout/run/maker.h"
#include "layout/run/totals.h"
#include "layout/values/value_codec.h"

namespace murv::detail
{

namespace
{

/// A number of units of the last decimal as decimal text.
std::string scaledText(std::uint64_t units, unsigned int decimals)
{
    const bool negative = units >> 63 != 0;
    std::string text = std::to_string(negative ? 0 - units : units);
    if (text.size() <= decimals)
        text.insert(0, decimals + 1 - text.size(), '0');
    if (decimals != 0)
        text.insert(text.size() - decimals, ".");
    return (negative ? "-" : "") + text;
}

}  // namespace

/// What a number has before it is known: parts of bits that are not filled in, or the layout's value of one that
/// chooses.
E_Scan CMaker::beginHole(unsigned int part, tHole& hole)
{
    const tPart& leaf = part4(part);
    hole.m_uiPart = part;
    hole.m_ullRecord = m_bInRecord ? m_ullRecord : 0;
    hole.m_ullRecordOffset = m_bInRecord ? m_ullRecordStart : m_pOut->size();
    hole.m_ullOffset = m_pOut->size();
    hole.m_nElements = m_vHoleElements.size();
    addElements(m_vHoleElements);
    hole.m_nArrays = m_vHoleElements.size() - hole.m_nElements;
    hole.m_pData = find(part);
    hole.m_tValue = leaf.m_bComputed ? makeScalar(false, 0) : defaultOf(leaf);
    if (hole.m_pData != nullptr && !leaf.m_tItem.m_vBits.empty())
        return takeScalar(part, *hole.m_pData, hole.m_tValue);
    hole.m_strText = hole.m_tValue.m_strvText;
    for (const unsigned int link : m_tPlan.m_vLinks4Number[part])
    {
        if (m_tPlan.m_vLinks[link].m_eKind == LK_bits)
            hole.m_strText.assign(
                leaf.m_tItem.m_eForm == IF_hexText ? leaf.m_tItem.m_uiLength / 2 : leaf.m_tItem.m_uiLength, '\0');
    }
    return SC_next;
}

/// Makes a number whose value is not known yet: with the value of the pass before, or with the layout's own.
E_Scan CMaker::makeHole(unsigned int part)
{
    const auto index = static_cast<unsigned int>(m_vHoles.size());
    tHole hole;
    if (const E_Scan result = beginHole(part, hole))
        return result;
    const bool isGuessed = index < m_vGuesses.size();
    const std::string text = isGuessed ? m_vGuesses[index].m_strText : hole.m_strText;
    tScalar first = isGuessed ? m_vGuesses[index].m_tValue : hole.m_tValue;
    if (!text.empty())
        first = makeScalar(text);
    const tPart& leaf = part4(part);
    const bool isOwn = !leaf.m_bComputed && (m_tPlan.m_vChooses[part] || !leaf.m_tItem.m_vBits.empty());
    if (const E_Scan result = putValue(part, first, isOwn && !isGuessed))
        return result;
    hole.m_ullLength = m_pOut->size() - hole.m_ullOffset;
    m_vHoles.push_back(std::move(hole));
    if (!m_vHole4Part.empty())
        m_vHole4Part[part] = index;
    return SC_next;
}

E_Scan CMaker::onReset(unsigned int index)
{
    const tReset& reset = m_tPlan.m_vResets[index];
    for (const unsigned int kept : reset.m_vRegisters)
        m_tKept.clear(kept);
    for (const unsigned int span : reset.m_vSpans)
        m_vMeasures[span] = tMeasure();
    for (const unsigned int link : reset.m_vLinks)
        m_vHole4Link[link] = s_cuiNone;
    return SC_next;
}

/// A number was made, which waits for what it is about - or that is known.
E_Scan CMaker::onLink(unsigned int index)
{
    const tLink& link = m_tPlan.m_vLinks[index];
    const auto hole = static_cast<unsigned int>(m_vHoles.size() - 1);
    if (!isFilledIn(link.m_tNumber.m_uiPart))
        return SC_next;
    m_vHole4Link[index] = hole;
    if (link.m_uiBase != s_cuiNone)
    {
        m_vTotals[index].m_vNumbers.push_back(hole);
        return SC_next;
    }
    if (link.m_eKind == LK_bits || link.m_eKind == LK_check)
    {
        const bool isAfter = link.m_eKind == LK_check && !link.m_bNumberFirst && m_vMeasures[link.m_uiSpan].m_bEnded;
        if (isAfter)
            m_vOpenChecks.push_back(
                {index, hole, m_vMeasures[link.m_uiSpan].m_ullBegin, m_vMeasures[link.m_uiSpan].m_ullEnd});
        return SC_next;
    }
    if (link.m_eKind == LK_size && !link.m_bNumberFirst && m_vMeasures[link.m_uiSpan].m_bEnded)
        return setSize(link, hole, m_vMeasures[link.m_uiSpan].m_ullEnd - m_vMeasures[link.m_uiSpan].m_ullBegin);
    // An absent part has size and count 0, unless it comes.
    return setNumber(link, hole, static_cast<std::uint64_t>(std::max(link.m_llPlus, 0LL)));
}

E_Scan CMaker::onSpanEnd(unsigned int index)
{
    tMeasure& measure = m_vMeasures[index];
    measure.m_bEnded = true;
    measure.m_ullEnd = m_pOut->size();
    for (const unsigned int i : m_tPlan.m_vLinks4Span[index])
    {
        const tLink& link = m_tPlan.m_vLinks[i];
        if (!link.m_bNumberFirst || m_vHole4Link[i] == s_cuiNone)
            continue;
        if (link.m_eKind == LK_check)
            m_vOpenChecks.push_back({i, m_vHole4Link[i], measure.m_ullBegin, measure.m_ullEnd});
        else if (const E_Scan result = setSize(link, m_vHole4Link[i], measure.m_ullEnd - measure.m_ullBegin))
            return result;
    }
    return SC_next;
}

E_Scan CMaker::setSize(const tLink& link, unsigned int hole, std::uint64_t size)
{
    if (size % link.m_ullDivisor != 0)
        return stopAtHole(PF_size, hole, "The size of the part is no whole number of the units of this number");
    const std::uint64_t number = size / link.m_ullDivisor + static_cast<std::uint64_t>(link.m_llPlus);
    if (number >> 63 != 0)
        return stopAtHole(PF_size, hole, "The size of the part is less than this number can say");
    const E_Scan result = setNumber(link, hole, number);
    return result == SC_next ? fillForCallbacks(hole) : result;
}

/// Sets a number, or the part of its bits that the link names.
E_Scan CMaker::setNumber(const tLink& link, unsigned int hole, std::uint64_t value)
{
    tHole& open = m_vHoles[hole];
    if (link.m_tNumber.m_uiBits == s_cuiNone)
    {
        open.m_tValue = makeScalar(false, value);
        return SC_next;
    }
    const tBitField& field = part4(open.m_uiPart).m_tItem.m_vBits[link.m_tNumber.m_uiBits];
    if (field.m_uiWidth < 64 && value >> field.m_uiWidth != 0)
        return stopAtHole(PF_tooLong, hole, nullptr, link.m_tNumber.m_uiBits);
    const std::uint64_t mask = std::uint64_t{mask4Width(field.m_uiWidth)} << field.m_uiShift;
    open.m_tValue = makeScalar(false, (open.m_tValue.m_ullValue & ~mask) | value << field.m_uiShift);
    return SC_next;
}

E_Scan CMaker::setBit(unsigned int link, unsigned int bit)
{
    const unsigned int hole = m_vHole4Link[link];
    if (hole == s_cuiNone || bit / 8 >= m_vHoles[hole].m_strText.size())
        return SC_next;
    char& byte = m_vHoles[hole].m_strText[bit / 8];
    byte = static_cast<char>(static_cast<unsigned char>(byte) | 0x80U >> bit % 8);
    return fillForCallbacks(hole);
}

/// A leaf was made that totals count.
void CMaker::count(unsigned int part, std::uint64_t amount)
{
    for (const unsigned int i : m_tPlan.m_vLinks4Counted[part])
    {
        if (m_tPlan.m_vLinks[i].m_eKind != LK_sum)
            continue;
        tTotal& total = m_vTotals[i];
        if (part4(part).m_bComputed)
            total.m_vParts.push_back(static_cast<unsigned int>(m_vHoles.size()));
        else
            total.m_ullSum = addToTotal(total4Item(m_tPlan, m_tPlan.m_vLinks[i]), total.m_ullSum, amount);
    }
}

E_Scan CMaker::onTotal(unsigned int part)
{
    for (const unsigned int i : m_tPlan.m_vLinks4Base[part])
    {
        if (m_tPlan.m_vLinks[i].m_uiBase == s_cuiNone)
            continue;
        m_vOpenTotals.push_back({i, std::move(m_vTotals[i])});
        m_vTotals[i] = tTotal();
    }
    return SC_next;
}

/// Fills totals in, those first that others count.
E_Scan CMaker::fillTotals()
{
    std::stable_sort(m_vOpenTotals.begin(), m_vOpenTotals.end(), [this](const tOpenTotal& a, const tOpenTotal& b) {
        return m_tPlan.m_vOrder4Link[a.m_uiLink] < m_tPlan.m_vOrder4Link[b.m_uiLink];
    });
    for (const tOpenTotal& open : m_vOpenTotals)
    {
        const tLink& link = m_tPlan.m_vLinks[open.m_uiLink];
        const std::uint64_t modulo = total4Item(m_tPlan, link);
        std::uint64_t sum = open.m_tTotal.m_ullSum;
        for (const unsigned int part : open.m_tTotal.m_vParts)
            sum = addToTotal(modulo, sum, m_vHoles[part].m_tValue.m_ullValue);
        sum = addToTotal(modulo, sum, static_cast<std::uint64_t>(link.m_llPlus));
        for (const unsigned int hole : open.m_tTotal.m_vNumbers)
        {
            if (const E_Scan result = setNumber(link, hole, sum))
                return result;
        }
    }
    return SC_next;
}

E_Scan CMaker::fillHoles()
{
    for (unsigned int hole = 0; hole < m_vHoles.size(); ++hole)
    {
        if (const E_Scan result = fillHole(hole))
            return result;
    }
    return SC_next;
}

/// What was filled in must be one of the valid values, too.
E_Scan CMaker::testHoles()
{
    for (unsigned int hole = 0; hole < m_vHoles.size() && !m_bMoved; ++hole)
    {
        unsigned int bits = s_cuiNone;
        std::string room;
        if (part4(m_vHoles[hole].m_uiPart).m_tItem.m_bTested &&
            !isValid(m_vHoles[hole].m_uiPart, value4Hole(hole, room), bits))
            return stopAtHole(PF_invalid, hole, nullptr, bits);
    }
    return SC_next;
}

/// The value that is known now. \param room  takes its text
tScalar CMaker::value4Hole(unsigned int hole, std::string& room) const
{
    const tHole& open = m_vHoles[hole];
    const tItem& item = part4(open.m_uiPart).m_tItem;
    room = open.m_strText;
    if (room.empty() && item.m_bDecimals)
        room = scaledText(open.m_tValue.m_ullValue, item.m_ucDecimals);
    return room.empty() ? open.m_tValue : makeScalar(room);
}

/// Puts the value that is known now where it belongs.
E_Scan CMaker::fillHole(unsigned int hole)
{
    tHole& open = m_vHoles[hole];
    const tPart& leaf = part4(open.m_uiPart);
    m_strValue.clear();
    std::string text;
    const E_PacketFault fault =
        (leaf.m_bComputed ? makeValue : makeOwnValue)(leaf.m_tItem, value4Hole(hole, text), m_strValue);
    if (fault != PF_none && !isFinding(fault))
        return stopAtHole(fault, hole);
    std::string item;
    if (leaf.m_eEnd == LE_prefix && makePrefix(leaf.m_tItem, m_strValue.size(), item) != PF_none)
        return stopAtHole(PF_tooLong, hole);
    item += m_strValue;
    if (leaf.m_eEnd == LE_mark)
        item += leaf.m_vMarks.front();
    if (item.size() != open.m_ullLength)
    {
        m_bMoved = true;
        return SC_next;
    }
    m_pOut->replace(static_cast<std::size_t>(open.m_ullOffset), item.size(), item);
    if (m_tPlan.m_bAsks)
        showFilled(open.m_ullOffset, item);
    return SC_next;
}

E_Scan CMaker::fillChecks()
{
    if (m_bMoved)
        return SC_next;
    for (const tOpenCheck& open : m_vOpenChecks)
    {
        const tLink& link = m_tPlan.m_vLinks[open.m_uiLink];
        tHole& hole = m_vHoles[open.m_uiHole];
        const tPart& leaf = part4(hole.m_uiPart);
        const tChecked checked{
            std::string_view(*m_pOut).substr(static_cast<std::size_t>(open.m_ullBegin),
                                             static_cast<std::size_t>(open.m_ullEnd - open.m_ullBegin)),
            hole.m_ullOffset + leaf.m_tItem.m_ucPrefix - open.m_ullBegin, hole.m_ullLength};
        const std::uint64_t sum = checksum4(static_cast<E_Checksum>(link.m_ucChecksum), leaf.m_tItem, checked);
        if (const E_Scan result = setNumber(link, open.m_uiHole, sum))
            return result;
        if (const E_Scan result = fillHole(open.m_uiHole))
            return result;
    }
    return SC_next;
}

E_Scan CMaker::stopAtHole(E_PacketFault code, unsigned int hole, const char* text, unsigned int bits)
{
    const tHole& open = m_vHoles[hole];
    const auto first = m_vHoleElements.begin() + static_cast<std::ptrdiff_t>(open.m_nElements);
    m_tFault = {code,
                open.m_uiPart,
                open.m_ullOffset,
                open.m_ullLength,
                0,
                open.m_ullRecord,
                open.m_ullRecordOffset,
                text,
                {first, first + static_cast<std::ptrdiff_t>(open.m_nArrays)}};
    m_tFault.m_uiBits = bits;
    return SC_fault;
}

}  // namespace murv::detail

// layout/compile/places.cpp - where parts lie and how long they may be, for those who describe a layout.
//
// Reading and making do not look at it. Lengths are bounds: every packet keeps them, but not each length between them
// need occur.
#include <algorithm>

#include "layout/compile/draft.h"

namespace murv::detail
{

namespace
{

unsigned long long add(unsigned long long a, unsigned long long b)
{
    return a > s_cullNoBound - b ? s_cullNoBound : a + b;
}

unsigned long long multiply(unsigned long long a, unsigned long long b)
{
    return b != 0 && a > s_cullNoBound / b ? s_cullNoBound : a * b;
}

/// The largest number that this number of digits can say.
unsigned long long largest(unsigned long long base, unsigned long long digits)
{
    unsigned long long numbers = 1;
    for (unsigned long long i = 0; i < digits && numbers != s_cullNoBound; ++i)
        numbers = multiply(numbers, base);
    return numbers == s_cullNoBound ? numbers : numbers - 1;
}

unsigned long long largestNumber(const tItem& item)
{
    constexpr unsigned int bitsOfByte = 8;
    const unsigned long long digits = item.m_uiLength - std::min<std::size_t>(item.m_uiLength, item.m_strTail.size());
    if (item.m_bVaries)
        return s_cullNoBound;
    switch (item.m_eForm)
    {
    case IF_binary: return largest(1U << bitsOfByte, digits);
    case IF_hex: return largest(16, digits);
    case IF_octal: return largest(8, digits);
    case IF_bcd: return largest(100, digits);
    case IF_packed: return largest(10, 2 * digits - 1);
    case IF_digits:
    case IF_zoned: return largest(10, digits);
    default: return s_cullNoBound;
    }
}

/// The most that a number can say of its target.
unsigned long long largestOf(tCompile& compile, const tLink& link)
{
    const tItem& item = compile.part(link.m_tNumber.m_uiPart).m_tItem;
    const unsigned int bits = link.m_tNumber.m_uiBits;
    unsigned long long number = bits == s_cuiNone ? largestNumber(item) : largest(2, item.m_vBits[bits].m_uiWidth);
    if (number == s_cullNoBound)
        return number;
    const auto plus = static_cast<unsigned long long>(link.m_llPlus);
    number = link.m_llPlus < 0 ? add(number, 0 - plus) : number - std::min(number, plus);
    return multiply(number, link.m_ullDivisor);
}

unsigned long long mostOfLeaf(const tPart& part, const tDraft& draft)
{
    const tItem& item = part.m_tItem;
    if (draft.m_ullWidth != s_cullVaries)
        return draft.m_ullWidth;
    const unsigned long long value = item.m_uiLength == 0 ? s_cullNoBound : item.m_uiLength;
    if (part.m_eEnd == LE_mark)
        return add(value, part.m_vMarks.front().size());
    if (part.m_eEnd != LE_prefix)
        return value;
    const unsigned long long number = largest(item.m_bBinaryPrefix ? 256 : 10, item.m_ucPrefix);
    const long long more = item.m_cCalibration;
    const unsigned long long whole = number == s_cullNoBound ? number
                                     : more < 0 ? number - std::min(number, static_cast<unsigned long long>(-more))
                                                : add(number, static_cast<unsigned long long>(more));
    return std::min(whole, add(value, item.m_ucPrefix));
}

/// Bytes that may be skipped after a part.
unsigned long long mostSkipped(const tPart& part)
{
    return part.m_uiAlign == 0 ? 0 : part.m_uiAlign - 1;
}

unsigned long long mostOfSet(tCompile& compile, const tPart& set)
{
    unsigned long long most = 0;
    for (const unsigned int member : set.m_vMembers)
    {
        const tPart& part = compile.part(member);
        const unsigned long long bytes = add(part.m_ullMost, mostSkipped(part));
        most = set.m_eChoice != CH_none ? std::max(most, bytes) : add(most, bytes);
    }
    const std::size_t marks = set.m_vMembers.empty() ? 0 : set.m_vMembers.size() - 1;
    return add(most, marks * set.m_strBetween.size());
}

unsigned long long mostOfArray(tCompile& compile, const tPart& array)
{
    if (array.m_eArrayEnd != AE_count)
        return s_cullNoBound;
    const tPart& element = compile.part(array.m_vMembers.front());
    const unsigned long long each = add(add(element.m_ullMost, mostSkipped(element)), array.m_strBetween.size());
    const unsigned long long count = largestOf(compile, compile.m_tPlan.m_vLinks[array.m_uiCount]);
    return add(multiply(each, count), array.m_strEnds.size());
}

/// By part: what numbers that say sizes leave it at most.
std::vector<unsigned long long> mostBySizes(tCompile& compile)
{
    std::vector<unsigned long long> most(compile.count(), s_cullNoBound);
    for (const tLink& link : compile.m_tPlan.m_vLinks)
    {
        if (link.m_eKind != LK_size)
            continue;
        const tSpan& span = compile.m_tPlan.m_vSpans[link.m_uiSpan];
        const unsigned long long largest = largestOf(compile, link);
        for (unsigned int i = span.m_uiFirst; i <= span.m_uiLast && compile.spend(1); i = compile.part(i).m_uiAfter)
            most[i] = std::min(most[i], largest);
    }
    return most;
}

void setLengths(tCompile& compile)
{
    const std::vector<unsigned long long> sized = mostBySizes(compile);
    const tFrame& frame = compile.m_tPlan.m_tFrame;
    for (unsigned int i = compile.count(); i-- > 0;)
    {
        tPart& part = compile.part(i);
        const unsigned long long own = part.m_eKind == PK_leaf    ? mostOfLeaf(part, compile.draft(i))
                                       : part.m_eKind == PK_array ? mostOfArray(compile, part)
                                                                  : mostOfSet(compile, part);
        part.m_ullMost = std::min(own, sized[i]);
        part.m_ullLeast = compile.draft(i).m_ullLeast;
        if (part.m_bRecord && frame.m_eKind != FR_prefixed && frame.m_uiLength != 0 && part.m_uiAlign == 0)
            part.m_ullLeast = part.m_ullMost = frame.m_uiLength;
    }
}

/// What the part around leaves to each of its members.
void boundMembers(tCompile& compile, unsigned int index)
{
    const tPart& part = compile.part(index);
    const bool isRow = part.m_eKind == PK_set && part.m_eChoice == CH_none && part.m_strBetween.empty();
    if (part.m_ullMost == s_cullNoBound)
        return;
    unsigned long long others = 0;
    for (const unsigned int member : part.m_vMembers)
        others = add(others, isRow && !mayBeAbsent(compile.part(member)) ? compile.part(member).m_ullLeast : 0);
    for (const unsigned int member : part.m_vMembers)
    {
        tPart& at = compile.part(member);
        const unsigned long long own = isRow && !mayBeAbsent(at) ? at.m_ullLeast : 0;
        const unsigned long long taken = std::min(others - own, part.m_ullMost);
        at.m_ullMost = std::max(at.m_ullLeast, std::min(at.m_ullMost, part.m_ullMost - taken));
    }
}

/// Places the members of a field set, one after the other as long as what is before has a fixed width.
void placeRow(tCompile& compile, unsigned int index)
{
    const tPart& set = compile.part(index);
    const bool inRecord = set.m_uiBase != s_cuiNone && compile.part(set.m_uiBase).m_bRecord;
    unsigned long long offset = set.m_ullOffset;
    bool isKnown = true;
    for (const unsigned int member : set.m_vMembers)
    {
        tPart& part = compile.part(member);
        const unsigned long long width = compile.draft(member).m_ullWidth;
        part.m_uiBase = isKnown ? set.m_uiBase : part.m_eKind == PK_leaf ? s_cuiNone : member;
        part.m_ullOffset = isKnown ? offset : 0;
        if (set.m_eChoice != CH_none)
            continue;
        isKnown = isKnown && width != s_cullVaries && !mayBeAbsent(part) && (part.m_uiAlign == 0 || inRecord);
        offset += isKnown ? width + set.m_strBetween.size() : 0;
        if (isKnown && part.m_uiAlign != 0)
            offset = (offset + part.m_uiAlign - 1) / part.m_uiAlign * part.m_uiAlign;
    }
}

}  // namespace

void placeParts(tCompile& compile)
{
    setLengths(compile);
    for (unsigned int i = 0; i < compile.count(); ++i)
    {
        tPart& part = compile.part(i);
        boundMembers(compile, i);
        if (!part.m_bInRecord)
            continue;
        const bool isElement = part.m_uiParent != s_cuiNone && compile.part(part.m_uiParent).m_eKind == PK_array;
        if (part.m_bRecord || isElement)
            part.m_uiBase = i;
        if (part.m_eKind == PK_set)
            placeRow(compile, i);
    }
}

}  // namespace murv::detail

// layout/layout_parts.cpp - the parts of a layout as they are seen from outside.
#include <algorithm>

#include "core/throw.h"
#include "layout/compile/rule_table.h"
#include "layout/compile/rule_text.h"
#include "layout/run/fault_words.h"
#include "murv/layout.h"

namespace murv
{

using namespace detail;

unsigned int CLayout::getPartCount() const
{
    return m_pPlan == nullptr ? 0 : static_cast<unsigned int>(m_pPlan->m_vParts.size());
}

tLayoutPart CLayout::getPart(unsigned int number) const
{
    if (number >= getPartCount())
        throwAt("murv::CLayout::getPart", "The layout has no such part");
    const tPart& part = m_pPlan->m_vParts[number];
    tLayoutPart seen{};
    seen.m_eKind = static_cast<E_LayoutPart>(part.m_eKind);
    seen.m_strvName = part.m_strName;
    seen.m_uiID = part.m_uiID;
    seen.m_uiParent = part.m_uiParent;
    seen.m_strvExpression = part.m_strExpression;
    seen.m_strvRules = part.m_strRules;
    seen.m_strvComment = part.m_strComment;
    seen.m_bRecord = part.m_bRecord;
    seen.m_bLiteral = part.m_bLiteral;
    seen.m_bComputed = part.m_bComputed;
    seen.m_bMasked = part.m_tItem.m_bMask;
    seen.m_uiShown = part.m_tItem.m_ucShown;
    seen.m_strvLiteral = part.m_strLiteral;
    seen.m_bChoice = part.m_eChoice != CH_none;
    seen.m_bOptional = mayBeAbsent(part);
    seen.m_uiBase = part.m_uiBase;
    seen.m_ullOffset = part.m_ullOffset;
    seen.m_ullLeast = part.m_ullLeast;
    seen.m_ullMost = part.m_ullMost;
    return seen;
}

std::vector<tLayoutBits> CLayout::getBits(unsigned int number) const
{
    if (number >= getPartCount())
        throwAt("murv::CLayout::getBits", "The layout has no such part");
    std::vector<tLayoutBits> seen;
    for (const tBitField& bits : m_pPlan->m_vParts[number].m_tItem.m_vBits)
        seen.push_back({bits.m_strName, bits.m_uiWidth, bits.m_uiShift});
    return seen;
}

std::vector<tLayoutRule> CLayout::getRules(unsigned int number) const
{
    if (number >= getPartCount())
        throwAt("murv::CLayout::getRules", "The layout has no such part");
    const tPart& part = m_pPlan->m_vParts[number];
    std::vector<tLayoutRule> seen;
    const tPacketExpInfo& pei = part.m_tExpression;
    const tRuleRow* const keyword = pei.m_ucSkKind == s_cucWordKind ? findKeywordRow(pei.m_usSkIndex) : nullptr;
    if (keyword != nullptr)
        seen.push_back({keyword->m_pKeyword, keyword->m_pSentence});
    std::vector<std::string_view> rules;
    if (!part.m_strRules.empty())
        splitRules(part.m_strRules, rules);
    for (const std::string_view text : rules)
    {
        tRule rule;
        readRule(text, rule);
        seen.push_back({text, rule.m_pRow->m_pSentence});
    }
    return seen;
}

std::string CLayout::getPath(unsigned int number) const
{
    if (number >= getPartCount())
        throwAt("murv::CLayout::getPath", "The layout has no such part");
    return path4Part(*m_pPlan, number, {});
}

/// Goes down the parts by the names that paths show, so that no path is taken apart.
unsigned int CLayout::findPart(std::string_view path) const
{
    unsigned int part = 0;
    for (bool isFound = isCompiled(); isFound;)
    {
        if (path.empty())
            return part;
        isFound = false;
        const tPart* open = &m_pPlan->m_vParts[part];
        // The element of an array has no name of its own.
        while (open->m_eKind == PK_array)
            open = &m_pPlan->m_vParts[open->m_vMembers.front()];
        for (const unsigned int member : open->m_vMembers)
        {
            const std::string name = pathName(m_pPlan->m_vParts[member]);
            if (path.compare(0, name.size(), name) != 0 || (path.size() != name.size() && path[name.size()] != '.'))
                continue;
            path.remove_prefix(std::min(path.size(), name.size() + 1));
            part = member;
            isFound = true;
            break;
        }
    }
    return s_cuiNoPart;
}

static_assert(static_cast<unsigned int>(PK_leaf) == LP_leaf && static_cast<unsigned int>(PK_set) == LP_fields &&
              static_cast<unsigned int>(PK_array) == LP_array && s_cuiNone == CLayout::s_cuiNoPart &&
              s_cullNoBound == CLayout::s_cullNoBound);

}  // namespace murv

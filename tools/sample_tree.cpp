// tools/sample_tree.cpp - which parts are there, how many elements arrays have, and the values of leaves.
#include "tools/sample_tree.h"

#include <algorithm>
#include <iterator>

namespace murv::tool
{

namespace
{
constexpr int s_ciTries = 64;  // for a value that must or must not end an array

bool asInteger(const std::string& text, long long& number)
{
    const std::size_t sign = text.substr(0, 1) == "-" ? 1 : 0;
    const bool isInteger =
        text.size() > sign && text.size() <= 18 && text.find_first_not_of("0123456789", sign) == std::string::npos;
    number = isInteger ? std::stoll(text) : 0;
    return isInteger;
}

/// How a value may stand to the constant.
enum E_Order : unsigned int
{
    OR_below = 1,
    OR_equal = 2,
    OR_above = 4,
};

// By E_SampleCompare, up to the last but one.
constexpr unsigned int s_cuiOrders[] = {
    OR_equal, OR_below | OR_above, OR_below | OR_equal, OR_equal | OR_above, OR_below, OR_above};
static_assert(std::size(s_cuiOrders) == SC_anyBit);

/// Compares as rules do: numbers as numbers, texts as texts.
bool compares(E_SampleCompare compare, const std::string& value, const std::string& constant)
{
    long long a = 0;
    long long b = 0;
    const bool isNumber = asInteger(value, a);
    const bool areNumbers = asInteger(constant, b) && isNumber;
    if (compare == SC_anyBit)
        return areNumbers && (static_cast<unsigned long long>(a) & static_cast<unsigned long long>(b)) != 0;
    const int order = areNumbers ? (a < b ? -1 : a > b ? 1 : 0) : value.compare(constant);
    const unsigned int bit = order < 0 ? OR_below : order > 0 ? OR_above : OR_equal;
    return (s_cuiOrders[compare] & bit) != 0;
}

bool holds(const tSampleCondition& condition, const CFields* value)
{
    if (value == nullptr || value->isNull() || value->isField())
        return false;
    const std::string text = value->asString();
    const auto fits = [&](const std::string& constant) { return compares(condition.m_eCompare, text, constant); };
    // "!=" must hold for all values that are named.
    return condition.m_eCompare == SC_differs ? std::all_of(condition.m_vValue.begin(), condition.m_vValue.end(), fits)
                                              : std::any_of(condition.m_vValue.begin(), condition.m_vValue.end(), fits);
}

const CFields* bitsOf(const CFields& value, const std::string& bits)
{
    return bits.empty() ? &value : value.findChildAt(bits.data(), static_cast<unsigned int>(bits.size()));
}

void setBits(CFields& value, const tSampleWish& wish, const CFields& wanted)
{
    CFields* const target =
        wish.m_strBits.empty()
            ? &value
            : value.findChildAt(wish.m_strBits.data(), static_cast<unsigned int>(wish.m_strBits.size()));
    if (target != nullptr)
        target->setValue(wanted);
}
}  // namespace

void CSampleTree::build(const tSampleStyle& style, CFields& tree)
{
    m_tStyle = style;
    m_vSeen.assign(m_tPlan.layout().getPartCount(), {});
    m_vMust.assign(m_vSeen.size(), {});
    m_vOpen.clear();
    tree = CFields();
    begin(0, tree);
    while (!m_vOpen.empty())
    {
        tOpen& open = m_vOpen.back();
        if (m_tPlan[open.m_uiPart].m_tPart.m_eKind == LP_array)
            fillArray(open);
        else
            fillSet(open);
    }
}

void CSampleTree::renew(unsigned int part, const tSampleStyle& style, CFields& node)
{
    node.setValue(value4Leaf(part, style));
}

/// Goes into a part that is there.
void CSampleTree::begin(unsigned int part, CFields& node)
{
    const tSamplePart& seen = m_tPlan[part];
    m_vSeen[part] = {true, nullptr};
    if (seen.m_tPart.m_eKind == LP_leaf)
        return makeLeaf(part, node);
    node.setValue(seen.m_tPart.m_eKind == LP_array ? DT_array : DT_fields);
    tOpen open{part, &node};
    open.m_eSize = m_tStyle.m_eSize;
    if (seen.m_tPart.m_eKind == LP_array)
    {
        const std::uint64_t most = std::max<std::uint64_t>(m_tStyle.m_ullElements, 1);
        const std::uint64_t several = std::min<std::uint64_t>(most, 2);
        open.m_ullElements = m_tRandom.chance(25) ? m_tRandom.below(2) : m_tRandom.between(several, most);
        if (m_tStyle.m_eSize == SZ_empty)
            open.m_ullElements = 0;
        if (seen.m_tUntil || m_tStyle.m_eSize == SZ_some)
            open.m_ullElements = std::max<std::uint64_t>(open.m_ullElements, 1);
    }
    else
        open.m_nNext = seen.m_tPart.m_bChoice ? alternative(part) : 0;
    m_vOpen.push_back(open);
}

/// The index of the member that a choice gets.
unsigned int CSampleTree::alternative(unsigned int set)
{
    const tSamplePart& seen = m_tPlan[set];
    const auto count = static_cast<unsigned int>(seen.m_vMembers.size());
    const CFields* const chooser = valueOf(seen.m_tChooser);
    if (chooser == nullptr || chooser->isNull())
        return static_cast<unsigned int>(m_tRandom.below(count));
    const std::string text = chooser->asString();
    unsigned int other = count;
    unsigned int named = count;
    for (unsigned int i = 0; i < count; ++i)
    {
        const tLayoutPart& member = m_tPlan[seen.m_vMembers[i]].m_tPart;
        if (!chooser->isCodelist() && member.m_uiID != 0 && std::to_string(member.m_uiID) == text)
            return i;
        if (member.m_strvName == text)
            named = std::min(named, i);
        if (member.m_strvName == seen.m_tRules.m_strElse)
            other = std::min(other, i);
    }
    return named != count ? named : other != count ? other : 0;
}

void CSampleTree::fillSet(tOpen& open)
{
    const tSamplePart& set = m_tPlan[open.m_uiPart];
    if (open.m_nNext >= set.m_vMembers.size())
        return close(open);
    const unsigned int member = set.m_vMembers[open.m_nNext];
    open.m_nNext = set.m_tPart.m_bChoice ? set.m_vMembers.size() : open.m_nNext + 1;
    if (set.m_tPart.m_bChoice || isWanted(member))
        add(open, member);
    else
        m_vSeen[member] = {};
}

/// Adds a member to a field set, unless the data needs none: literals and what making fills in.
void CSampleTree::add(const tOpen& around, unsigned int member)
{
    const tSamplePart& part = m_tPlan[member];
    const bool isFilledIn = part.m_tPart.m_bLiteral || part.m_tPart.m_bComputed;
    const bool isChosen = m_tPlan[around.m_uiPart].m_tPart.m_bChoice || part.m_tRules.m_bOptional;
    if (isFilledIn && !isChosen)
    {
        m_vSeen[member] = {true, nullptr};
        return;
    }
    CFields& node = around.m_pData->addChildRef(part.m_tPart.m_strvName, part.m_tPart.m_uiID, true);
    begin(member, node);
}

void CSampleTree::fillArray(tOpen& open)
{
    const tSamplePart& array = m_tPlan[open.m_uiPart];
    if (open.m_ullElement == open.m_ullElements)
        return close(open);
    ++open.m_ullElement;
    if (array.m_tUntil && array.m_tUntil->m_tTarget.m_uiPart != CLayout::s_cuiNoPart)
    {
        const bool isLast = open.m_ullElement == open.m_ullElements;
        const unsigned int target = array.m_tUntil->m_tTarget.m_uiPart;
        m_vMust[target] = {&*array.m_tUntil, isLast};
        // A size decides: the last element is the empty one.
        if (m_tPlan[target].m_tPart.m_bComputed)
            m_tStyle.m_eSize = isLast ? SZ_empty : SZ_some;
    }
    CFields& node = open.m_pData->addArrayAt(CFields());
    begin(array.m_vMembers.front(), node);
}

void CSampleTree::close(const tOpen& open)
{
    const tSamplePart& part = m_tPlan[open.m_uiPart];
    if (part.m_tUntil && part.m_tUntil->m_tTarget.m_uiPart != CLayout::s_cuiNoPart)
        m_vMust[part.m_tUntil->m_tTarget.m_uiPart] = {};
    m_tStyle.m_eSize = open.m_eSize;
    m_vOpen.pop_back();
}

bool CSampleTree::isWanted(unsigned int number)
{
    const tSamplePart& part = m_tPlan[number];
    if (!part.m_tPart.m_bOptional)
        return true;
    bool isSure = !part.m_vIf.empty() && !part.m_tRules.m_bOptional;
    for (const tSampleCondition& condition : part.m_vIf)
    {
        const E_Answer met = answer(condition);
        if (met == AN_no)
            return false;
        isSure = isSure && met == AN_yes;
    }
    if (isSure)
        return true;
    const bool isSmall = m_tStyle.m_eSize == SZ_empty;
    return !isSmall && m_tRandom.chance(m_tStyle.m_uiOptional);
}

/// Whether the part and all around it are there in the present element.
bool CSampleTree::isThere(unsigned int part) const
{
    while (part != 0 && m_vSeen[part].m_bThere)
        part = m_tPlan[part].m_tPart.m_uiParent;
    return part == 0;
}

const CFields* CSampleTree::valueOf(const tSampleTarget& target) const
{
    if (target.m_uiPart == CLayout::s_cuiNoPart || !isThere(target.m_uiPart))
        return nullptr;
    const CFields* const value = m_vSeen[target.m_uiPart].m_pValue;
    return value == nullptr ? nullptr : bitsOf(*value, target.m_strBits);
}

CSampleTree::E_Answer CSampleTree::answer(const tSampleCondition& condition) const
{
    if (condition.m_tTarget.m_uiPart == CLayout::s_cuiNoPart)
        return AN_unknown;
    if (!isThere(condition.m_tTarget.m_uiPart))
        return AN_no;
    const CFields* const value = valueOf(condition.m_tTarget);
    if (value == nullptr)
        return AN_unknown;
    return holds(condition, value) ? AN_yes : AN_no;
}

void CSampleTree::makeLeaf(unsigned int part, CFields& node)
{
    const bool isKnown = !m_tPlan[part].m_tPart.m_bComputed && !m_tPlan[part].m_tPart.m_bLiteral;
    node.setValue(value4Leaf(part, m_tStyle));
    m_vSeen[part].m_pValue = isKnown ? &node : nullptr;
}

/// Wishes come true in most cases.
void CSampleTree::grant(const tSamplePart& part, CFields& value)
{
    for (const tSampleWish& wish : part.m_vWishes)
    {
        if (!wish.m_vValue.empty() && (wish.m_bOnly || m_tRandom.chance(80)))
            setBits(value, wish, sampleValue4Text(part, m_tRandom.pick(wish.m_vValue)));
    }
}

CFields CSampleTree::value4Leaf(unsigned int number, const tSampleStyle& style)
{
    const tSamplePart& part = m_tPlan[number];
    if (part.m_tPart.m_bLiteral)
        return sampleLiteral(part, m_tRandom);
    const tMust must = number < m_vMust.size() ? m_vMust[number] : tMust();
    CFields value;
    for (int i = 0; i < s_ciTries; ++i)
    {
        value = makeSampleValue(part, m_tPlan.marks(), style, m_tRandom);
        grant(part, value);
        if (must.m_pCondition == nullptr)
            return value;
        const tSampleWish wanted{must.m_pCondition->m_tTarget.m_strBits, must.m_pCondition->m_vValue, true};
        if (must.m_bHolds && must.m_pCondition->m_eCompare != SC_differs)
            setBits(value, wanted, sampleValue4Text(part, m_tRandom.pick(wanted.m_vValue)));
        if (holds(*must.m_pCondition, bitsOf(value, wanted.m_strBits)) == must.m_bHolds)
            return value;
    }
    return value;
}

}  // namespace murv::tool

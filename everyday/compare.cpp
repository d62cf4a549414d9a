// everyday/compare.cpp - what differs between trees, and hashes.
//
// Differences keep the way to their container as a row of steps that they share, and compose a path when it is asked
// for: the paths of all differences in a deep tree would be far larger than the tree.
#include <cmath>
#include <cstring>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/path_text.h"
#include "core/tree_walk.h"
#include "murv/edit.h"

namespace murv
{

using detail::memberCount;
using detail::tFieldAccess;
using detail::tSlot;

/// Containers on the way to differences; each knows the one around it.
struct detail::tDiffSteps
{
    struct tStep
    {
        std::size_t m_nAround;  // s_cnNone for the root
        const CFields* m_pBefore;
        const CFields* m_pAfter;
        std::uint32_t m_uiIndex;  // in the container around it, of the first tree
    };
    std::vector<tStep> m_vStep;
};

namespace
{
constexpr std::size_t s_cnNone = static_cast<std::size_t>(-1);
constexpr std::uint32_t s_cuiNone = 0xFFFFFFFF;

bool isSameDouble(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

/// Types and scalar values; of containers the type alone.
bool isSameSlot(const tSlot& a, const tSlot& b)
{
    if (a.m_eType != b.m_eType)
        return false;
    switch (a.m_eType)
    {
    case DT_bool: return a.m_uValue.m_bValue == b.m_uValue.m_bValue;
    case DT_sint: return a.m_uValue.m_llValue == b.m_uValue.m_llValue;
    case DT_uint: return a.m_uValue.m_ullValue == b.m_uValue.m_ullValue;
    case DT_double: return isSameDouble(a.m_uValue.m_dValue, b.m_uValue.m_dValue);
    case DT_codelist:
        return detail::view4Codes(a.m_bOwned, a.m_uValue.m_pData) == detail::view4Codes(b.m_bOwned, b.m_uValue.m_pData);
    default: return true;
    }
}

bool isSameValue(const CFields& a, const CFields& b, E_ValueKind vk = VK_actual)
{
    return isSameSlot(tFieldAccess::slot(a, vk), tFieldAccess::slot(b, vk));
}

bool hasSameComments(const CFields& a, const CFields& b)
{
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
    {
        const unsigned int length = a.getCommentLen(position);
        if (a.hasComment(position) != b.hasComment(position) || length != b.getCommentLen(position))
            return false;
        if (length != 0 && std::memcmp(a.getCommentPtr(position), b.getCommentPtr(position), length) != 0)
            return false;
    }
    return true;
}

bool hasSameHead(const CFields& a, const CFields& b)
{
    return tFieldAccess::name(a) == tFieldAccess::name(b) && tFieldAccess::id(a) == tFieldAccess::id(b);
}

bool hasSameExpression(const CFields& a, const CFields& b)
{
    return std::memcmp(&tFieldAccess::pei(a), &tFieldAccess::pei(b), sizeof(tPacketExpInfo)) == 0 &&
           tFieldAccess::kind(a) == tFieldAccess::kind(b) &&
           (tFieldAccess::kind(a) == VK_actual || isSameValue(a, b, VK_fix));
}

bool isSameNode(const CFields& a, const CFields& b, unsigned int options)
{
    return hasSameHead(a, b) && isSameValue(a, b) && memberCount(a) == memberCount(b) &&
           ((options & ST_comments) == 0 || hasSameComments(a, b)) &&
           ((options & ST_expressions) == 0 || hasSameExpression(a, b));
}

/// Members of two containers that are compared with each other.
struct tPair
{
    std::uint32_t m_uiBefore;  // s_cuiNone for what only the second container has
    std::uint32_t m_uiAfter;
};

std::string_view nameAt(const CFields& container, std::uint32_t index)
{
    return tFieldAccess::name(tFieldAccess::members(container)->at(index));
}

bool hasSameNames(const CFields& a, const CFields& b)
{
    bool isSame = memberCount(a) == memberCount(b);
    for (std::uint32_t i = 0; isSame && i < memberCount(a); ++i)
        isSame = nameAt(a, i) == nameAt(b, i);
    return isSame;
}

std::vector<std::uint32_t> orderByName(const CFields& container)
{
    std::vector<std::uint32_t> order(memberCount(container));
    for (std::uint32_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return nameAt(container, a) < nameAt(container, b); });
    return order;
}

std::vector<tPair> pairByName(const CFields& a, const CFields& b)
{
    const std::vector<std::uint32_t> before = orderByName(a);
    const std::vector<std::uint32_t> after = orderByName(b);
    std::vector<tPair> pairs;
    for (std::size_t i = 0, j = 0; i < before.size() || j < after.size();)
    {
        int order = i == before.size() ? 1 : j == after.size() ? -1 : 0;
        if (order == 0)
            order = nameAt(a, before[i]).compare(nameAt(b, after[j]));
        pairs.push_back({order > 0 ? s_cuiNone : before[i], order < 0 ? s_cuiNone : after[j]});
        i += order <= 0 ? 1 : 0;
        j += order >= 0 ? 1 : 0;
    }
    std::sort(pairs.begin(), pairs.end(), [](const tPair& x, const tPair& y) {
        return x.m_uiBefore != y.m_uiBefore ? x.m_uiBefore < y.m_uiBefore : x.m_uiAfter < y.m_uiAfter;
    });
    return pairs;
}

class CDiffer
{
public:
    explicit CDiffer(unsigned int options) : m_uiOptions(options)
    {
    }

    std::vector<tDifference> run(const CFields& before, const CFields& after)
    {
        m_pSteps = std::make_shared<detail::tDiffSteps>();
        compare(&before, &after, 0);
        while (!m_vOpen.empty())
            step();
        return std::move(m_vFound);
    }

private:
    /// Two containers of one type whose members are being compared.
    struct tOpen
    {
        const CFields* m_pBefore;
        const CFields* m_pAfter;
        std::uint32_t m_uiIndex;  // of the first one in the container around it
        std::size_t m_nStep;      // its row; s_cnNone as long as there is no difference
        bool m_bByPosition;
        std::vector<tPair> m_vPair;  // unless by position
        std::uint32_t m_uiNext;
        std::uint32_t m_uiCount;
    };

    void compare(const CFields* before, const CFields* after, std::uint32_t index)
    {
        const bool isSame = before != nullptr && after != nullptr && isSameValue(*before, *after);
        if (!isSame || !hasSameParts(*before, *after))
            m_vFound.push_back({before, after, m_pSteps, rowOfContainer(), index});
        if (isSame && (memberCount(*before) != 0 || memberCount(*after) != 0))
            open(*before, *after, index);
    }

    /// What counts besides the values.
    bool hasSameParts(const CFields& before, const CFields& after) const
    {
        return ((m_uiOptions & DF_heads) == 0 || hasSameHead(before, after)) &&
               ((m_uiOptions & DF_comments) == 0 || hasSameComments(before, after)) &&
               ((m_uiOptions & DF_expressions) == 0 || hasSameExpression(before, after));
    }

    void open(const CFields& before, const CFields& after, std::uint32_t index)
    {
        tOpen fresh{&before, &after, index, s_cnNone, true, {}, 0, 0};
        fresh.m_uiCount = std::max(memberCount(before), memberCount(after));
        if (before.isField() && !hasSameNames(before, after))
        {
            fresh.m_bByPosition = false;
            fresh.m_vPair = pairByName(before, after);
            fresh.m_uiCount = static_cast<std::uint32_t>(fresh.m_vPair.size());
        }
        m_vOpen.push_back(std::move(fresh));
    }

    void step()
    {
        tOpen& top = m_vOpen.back();
        if (top.m_uiNext == top.m_uiCount)
        {
            m_vOpen.pop_back();
            return;
        }
        const std::uint32_t at = top.m_uiNext++;
        const tPair pair = top.m_bByPosition ? tPair{at, at} : top.m_vPair[at];
        const CFields* const before = memberAt(*top.m_pBefore, pair.m_uiBefore);
        compare(before, memberAt(*top.m_pAfter, pair.m_uiAfter), before == nullptr ? pair.m_uiAfter : pair.m_uiBefore);
    }

    static const CFields* memberAt(const CFields& container, std::uint32_t index)
    {
        return index < memberCount(container) ? &tFieldAccess::members(container)->at(index) : nullptr;
    }

    /// The row of the innermost container; it and those around it get one when they have none yet.
    std::size_t rowOfContainer()
    {
        std::size_t known = m_vOpen.size();
        while (known != 0 && m_vOpen[known - 1].m_nStep == s_cnNone)
            --known;
        for (; known < m_vOpen.size(); ++known)
        {
            const std::size_t around = known == 0 ? s_cnNone : m_vOpen[known - 1].m_nStep;
            tOpen& open = m_vOpen[known];
            open.m_nStep = m_pSteps->m_vStep.size();
            m_pSteps->m_vStep.push_back({around, open.m_pBefore, open.m_pAfter, open.m_uiIndex});
        }
        return m_vOpen.empty() ? s_cnNone : m_vOpen.back().m_nStep;
    }

    unsigned int m_uiOptions;
    std::shared_ptr<detail::tDiffSteps> m_pSteps;
    std::vector<tOpen> m_vOpen;
    std::vector<tDifference> m_vFound;
};

/// Mixes the bits of a word, so that each depends on all of them.
std::uint64_t mixed(std::uint64_t hash, std::uint64_t word)
{
    hash = (hash ^ word) * 0x9E3779B97F4A7C15ULL;
    return hash ^ (hash >> 29U);
}

std::uint64_t bits4Double(double value)
{
    std::uint64_t bits = 0;
    if (value != 0)  // 0.0 and -0.0 are equal
        std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

std::uint64_t word4Value(const CFields& node)
{
    const uMultiValue& value = tFieldAccess::value(node);
    switch (tFieldAccess::type(node))
    {
    case DT_array:
    case DT_fields: return memberCount(node);
    case DT_bool: return value.m_bValue ? 1 : 0;
    case DT_sint: return static_cast<std::uint64_t>(value.m_llValue);
    case DT_uint: return value.m_ullValue;
    case DT_double: return bits4Double(value.m_dValue);
    case DT_codelist: return std::hash<std::string_view>()(tFieldAccess::codes(node));
    default: return 0;
    }
}
}  // namespace

std::string tDifference::path() const
{
    if (m_nContainer == s_cnNone)
        return ".";
    std::vector<std::size_t> way;
    for (std::size_t at = m_nContainer; at != s_cnNone; at = m_pSteps->m_vStep[at].m_nAround)
        way.push_back(at);
    std::string path;
    for (std::size_t i = way.size() - 1; i != 0; --i)
        detail::appendPathStep(path, *m_pSteps->m_vStep[way[i]].m_pBefore, m_pSteps->m_vStep[way[i - 1]].m_uiIndex);
    const detail::tDiffSteps::tStep& last = m_pSteps->m_vStep[m_nContainer];
    detail::appendPathStep(path, m_pOld == nullptr ? *last.m_pAfter : *last.m_pBefore, m_uiIndex);
    return path;
}

std::vector<tDifference> diff(const CFields& before, const CFields& after, unsigned int options)
{
    return CDiffer(options).run(before, after);
}

bool sameTree(const CFields& a, const CFields& b, unsigned int options)
{
    detail::CTreeWalk<> walkA(a);
    detail::CTreeWalk<> walkB(b);
    // Nodes that are the same have as many members, so that the walks stay in step.
    while (const CFields* const node = walkA.next())
    {
        if (!isSameNode(*node, *walkB.next(), options))
            return false;
    }
    return true;
}

}  // namespace murv

std::size_t std::hash<murv::CFields>::operator()(const murv::CFields& tree) const
{
    std::uint64_t bits = 0;
    murv::detail::CTreeWalk<> walk(tree);
    while (const murv::CFields* const node = walk.next())
        bits = murv::mixed(murv::mixed(bits, murv::detail::tFieldAccess::type(*node)), murv::word4Value(*node));
    return static_cast<std::size_t>(bits ^ (bits >> 32U));
}

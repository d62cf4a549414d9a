// everyday/edit.cpp - inserting, sorting, merging and exchanging.
#include "murv/edit.h"

#include <numeric>
#include <unordered_set>
#include <utility>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/tree_walk.h"
#include "everyday/member_edit.h"
#include "murv/get.h"
#include "murv/walk.h"

namespace murv
{

using detail::tFieldAccess;

namespace
{
/// Why there can be no new member of that name at that index; null when there can.
const char* refusalOf(const CFields& node, std::size_t index, std::string_view name)
{
    if (node.isField() || (node.isNull() && !name.empty()))
    {
        if (!detail::isMemberName(name))
            return detail::s_cpNameSize;
    }
    else if (!node.isArray() && !node.isNull())
        return "the node is neither field set nor array";
    else if (!name.empty())
        return "an element has no name";
    return index > node.getChildCount() ? "the index is after the end" : nullptr;
}

bool isLessByName(const CFields& a, const CFields& b)
{
    return tFieldAccess::name(a) < tFieldAccess::name(b);
}

void sortByName(CFields& node)
{
    if (node.isField() && !std::is_sorted(node.begin(), node.end(), isLessByName))
        sortMembers(node, isLessByName);
}

/// A part of a target, and the field set that is merged into it.
struct tMerging
{
    CFields* m_pTarget;
    const CFields* m_pPatch;
    std::uint32_t m_uiNext;
};

void requireNames(const CFields& patch)
{
    walk(patch, [](const CFields& node, const CWalkPlace& place) {
        if (place.depth() != 0 && tFieldAccess::name(node).empty())
            throw CLogicError("Cannot merge: the member " + place.path() + " of the patch has no name");
        return node.isArray() ? WN_skip : WN_members;
    });
}

CFields valueOf(const CFields& node)
{
    CFields value;
    tFieldAccess::copyValues(value, node);
    return value;
}

/// Makes a target a field set without the members that the patch removes.
void prepareTarget(CFields& target, const CFields& patch)
{
    if (!target.isField() || tFieldAccess::members(target) == nullptr)
    {
        CFields none(DT_fields);
        tFieldAccess::takeValues(target, none);
    }
    std::unordered_set<std::string_view> removed;
    for (const CFields& member : patch)
    {
        if (member.isNull())
            removed.insert(tFieldAccess::name(member));
    }
    if (!removed.empty())
        eraseIf(target, [&](const CFields& member) { return removed.count(tFieldAccess::name(member)) != 0; });
}

void mergeFields(CFields& root, const CFields& patch)
{
    prepareTarget(root, patch);
    std::vector<tMerging> open = {{&root, &patch, 0}};
    while (!open.empty())
    {
        tMerging& top = open.back();
        if (top.m_uiNext == detail::memberCount(*top.m_pPatch))
        {
            open.pop_back();
            continue;
        }
        const CFields& change = tFieldAccess::members(*top.m_pPatch)->at(top.m_uiNext++);
        const std::string_view name = tFieldAccess::name(change);
        CFields* old = top.m_pTarget->findChildAt(name.data(), static_cast<unsigned int>(name.size()));
        if (change.isField())
        {
            if (old == nullptr)
                old = &detail::appendValue(*top.m_pTarget, name, CFields());
            prepareTarget(*old, change);
            open.push_back({old, &change, 0});
        }
        else if (change.isNull())
            continue;
        else if (old == nullptr)
            detail::appendValue(*top.m_pTarget, name, CFields(change));
        else
        {
            CFields value = valueOf(change);
            tFieldAccess::takeValues(*old, value);
        }
    }
}
}  // namespace

CFields& insertAt(CFields& node, std::size_t index, CNewValue value, std::string_view name)
{
    if (const char* const why = refusalOf(node, index, name))
        throw CLogicError(std::string("Cannot insert a member: ") + why);
    std::vector<std::uint32_t> order(node.getChildCount() + std::size_t{1});
    std::iota(order.begin(), order.end(), 0U);
    std::rotate(order.begin() + static_cast<std::ptrdiff_t>(index), order.end() - 1, order.end());
    CFields& last = detail::appendValue(node, name, value.take());
    if (index + 1 == order.size())
        return last;
    try
    {
        detail::orderMembers(node, order);
    }
    catch (...)
    {
        node.removeChildAt(node.getChildCount() - 1);
        throw;
    }
    return tFieldAccess::members(node)->at(static_cast<std::uint32_t>(index));
}

void sortMembers(CFields& node, bool deep)
{
    if (!deep)
        return sortByName(node);
    walk(node, [](CFields& member) { sortByName(member); });
}

void merge(CFields& target, const CFields& patch)
{
    // Nodes of one tree may lie in each other.
    const bool isApart = &target != &patch && !tFieldAccess::isMember(target) && !tFieldAccess::isMember(patch);
    const CFields copy = isApart ? CFields() : valueOf(patch);
    const CFields& change = isApart ? patch : copy;
    if (change.isField())
    {
        requireNames(change);
        return mergeFields(target, change);
    }
    CFields value = valueOf(change);
    tFieldAccess::takeValues(target, value);
}

void swap(CFields& a, CFields& b)
{
    if (&a == &b)
        return;
    const auto lies = detail::s_cbMovesAreChecked ? detail::holds : detail::holdsNear;
    if (lies(a, b) || lies(b, a))
        throw CLogicError("Cannot exchange a node with one below it");
    CFields held;
    tFieldAccess::take(held, a);
    tFieldAccess::take(a, b);
    tFieldAccess::take(b, held);
}

}  // namespace murv

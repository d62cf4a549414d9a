// murv/edit.h - changes to many members at once, and comparisons of whole trees.
//
// All of them cost linear time, or n log n where they sort, and go to any depth.
#ifndef MURV_EDIT_H
#define MURV_EDIT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "murv/export.h"
#include "murv/fields.h"
#include "murv/make.h"

namespace murv
{

namespace detail
{
/// Gives a container those of its members, in that order. \param order  indexes that all differ
MURV_API void orderMembers(CFields& node, const std::vector<std::uint32_t>& order);

struct tDiffSteps;
}  // namespace detail

/// Inserts a member before the one at `index`, or after the last. Costs a step for each member of the container;
/// references to its members end.
/// \param name  for a field set: 1 to 255 bytes; for an array: none
/// \return the new member
/// \throw CLogicError, with nothing changed, for scalars, an index after the end, or a name that does not fit; a null
///        node becomes an array, or with a name a field set
MURV_API CFields& insertAt(CFields& node, std::size_t index, CNewValue value, std::string_view name = {});

/// Removes the direct members for which the predicate, called once for each in order, is true. Linear, wherever they
/// are. References to members end when any is removed. When the predicate throws, nothing has changed.
/// \return how many were removed
template <typename tPredicate>
std::size_t eraseIf(CFields& node, tPredicate&& isErased)
{
    std::vector<std::uint32_t> kept;
    std::uint32_t index = 0;
    for (const CFields& member : static_cast<const CFields&>(node))
    {
        if (!isErased(member))
            kept.push_back(index);
        ++index;
    }
    const std::size_t erased = index - kept.size();
    if (erased != 0)
        detail::orderMembers(node, kept);
    return erased;
}

/// Sorts the members of a field set by name, bytes as unsigned numbers; members of one name keep their order. Arrays
/// stay. References to sorted members end. \param deep  also all field sets below, in arrays too
MURV_API void sortMembers(CFields& node, bool deep = false);

/// Sorts the direct members of a field set or an array by `isLess(const CFields&, const CFields&)`, stably.
template <typename tLess,
          std::enable_if_t<std::is_invocable_r_v<bool, tLess&, const CFields&, const CFields&>, int> = 0>
void sortMembers(CFields& node, tLess isLess)
{
    std::vector<const CFields*> members;
    std::vector<std::uint32_t> order;
    for (const CFields& member : static_cast<const CFields&>(node))
    {
        order.push_back(static_cast<std::uint32_t>(members.size()));
        members.push_back(&member);
    }
    std::stable_sort(order.begin(), order.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return isLess(*members[a], *members[b]); });
    if (!order.empty())
        detail::orderMembers(node, order);
}

/// Changes a tree by a merge patch (RFC 7386): members of the patch replace those of the same name, null removes them,
/// field sets are merged in turn, and what is no field set replaces all.
///
/// What is replaced keeps its name, ID and comments; new members are appended with all they have. Null removes every
/// member of that name, before others are set. The patch may come from the same tree. Linear.
/// \throw CLogicError, with nothing changed, when a member of a field set in the patch has no name. When memory runs
///        out, a part of the patch may have been applied.
MURV_API void merge(CFields& target, const CFields& patch);

/// One difference between two trees, which must outlive it unchanged.
struct tDifference
{
    const CFields* m_pOld;  ///< null for what the second tree has alone
    const CFields* m_pNew;  ///< null for what the first tree has alone

    /// Where it is, as pathOf says: in the first tree, or for what only the second has, in that. Composed at each call.
    MURV_API std::string path() const;

    std::shared_ptr<const detail::tDiffSteps> m_pSteps;  ///< for path
    std::size_t m_nContainer;                            ///< for path
    std::uint32_t m_uiIndex;                             ///< for path
};

/// What diff looks at besides types and values; bits.
enum E_Diff : unsigned int
{
    DF_values = 0,
    DF_heads = 1,  ///< IDs, and the names of the roots and of elements of arrays
    DF_comments = 2,
    DF_expressions = 4,  ///< packet expressions, second values and value kinds
    DF_all = 7,
};

/// What differs between two trees by type and value, in the order of the first one; nothing for equal trees.
///
/// Members of field sets are compared by name wherever they are, several of one name in their order; elements by index.
/// Containers of one type are compared member by member, anything else is one difference. NaN is equal to itself, and 1
/// differs from 1U and 1.0. Names and IDs of the roots, other IDs, comments and packet expressions count when the
/// options say so: then a container may be in the result for itself, before what differs in it.
/// \param options  bits of E_Diff
[[nodiscard]] MURV_API std::vector<tDifference> diff(const CFields& before, const CFields& after,
                                                     unsigned int options = DF_values);

/// What sameTree looks at besides names, IDs, types and values; bits.
enum E_SameTree : unsigned int
{
    ST_values = 0,
    ST_comments = 1,
    ST_expressions = 2,  ///< packet expressions, second values and value kinds
    ST_all = 3,
};

/// Whether two trees are the same in every node, the roots among them: names, IDs, types, values, and the order of
/// members. NaN is equal to itself. \param options  bits of E_SameTree
[[nodiscard]] MURV_API bool sameTree(const CFields& a, const CFields& b, unsigned int options = ST_values);

/// Exchanges two nodes with all they have: values, names, IDs, comments, packet expressions. Their places in their
/// containers stay. O(1). Neither may lie below the other; that is found as operator=(CFields&&) says, and then throws
/// CLogicError with nothing changed.
MURV_API void swap(CFields& a, CFields& b);

}  // namespace murv

/// Equal trees (operator==) have equal hashes. Linear, and the same in each run on a machine.
template <>
struct MURV_API std::hash<murv::CFields>
{
    std::size_t operator()(const murv::CFields& tree) const;
};

#endif

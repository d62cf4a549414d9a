// murv/walk.h - all nodes of a tree, and a node's value by its type.
//
//     walk(tree, [](CFields& node, std::size_t depth) { ... });
//     visit(node, [](long long number) { ... }, [](std::string_view text) { ... }, [](auto&&) { ... });
#ifndef MURV_WALK_H
#define MURV_WALK_H

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "murv/export.h"
#include "murv/fields.h"
#include "murv/get.h"
#include "murv/member_iterator.h"

namespace murv
{

/// How a walk goes on after a node.
enum E_WalkNext : unsigned int
{
    WN_members,  ///< with the members of the node, if it has any
    WN_skip,     ///< with what follows the node and its members
    WN_stop,     ///< not at all
};

namespace detail
{
/// A container on the way to a node, and the index of the member that the way goes on by.
struct tWalkLevel
{
    const CFields* m_pContainer;
    std::size_t m_nIndex;
};

/// The path from the outermost container, as pathOf gives it.
MURV_API std::string path4Levels(const std::vector<tWalkLevel>& levels);

/// The members that are left of each container on the way, and the way itself.
template <typename T>
struct tWalkState
{
    struct tRest
    {
        CMemberIterator<T> m_tNext;
        CMemberIterator<T> m_tEnd;
    };

    std::vector<tRest> m_vRest;
    std::vector<tWalkLevel> m_vLevel;
};
}  // namespace detail

/// Where a walk is: given to callbacks, and valid during the call.
class CWalkPlace
{
public:
    explicit CWalkPlace(const std::vector<detail::tWalkLevel>& levels) : m_vLevel(levels)
    {
    }
    CWalkPlace(const CWalkPlace&) = delete;
    CWalkPlace& operator=(const CWalkPlace&) = delete;

    /// Containers around the node; 0 for the root.
    std::size_t depth() const
    {
        return m_vLevel.size();
    }
    /// The container that the node is a member of; null for the root.
    const CFields* parent() const
    {
        return m_vLevel.empty() ? nullptr : m_vLevel.back().m_pContainer;
    }
    /// The index of the node in it; 0 for the root.
    std::size_t index() const
    {
        return m_vLevel.empty() ? 0 : m_vLevel.back().m_nIndex;
    }
    /// The path from the root of the walk, as pathOf gives it. Composed at each call: costs a look-up for each level.
    std::string path() const
    {
        return detail::path4Levels(m_vLevel);
    }

private:
    const std::vector<detail::tWalkLevel>& m_vLevel;
};

namespace detail
{
template <typename T, typename tCall>
decltype(auto) callWalker(tCall& call, T& node, const CWalkPlace& place)
{
    if constexpr (std::is_invocable_v<tCall&, T&, const CWalkPlace&>)
        return call(node, place);
    else if constexpr (std::is_invocable_v<tCall&, T&, std::size_t>)
        return call(node, place.depth());
    else
        return call(node);
}

template <typename T, typename tCall>
E_WalkNext next4Call(tCall& call, T& node, const CWalkPlace& place)
{
    using tResult = decltype(callWalker(call, node, place));
    static_assert(std::is_void_v<tResult> || std::is_same_v<std::decay_t<tResult>, E_WalkNext>,
                  "the callback of a walk returns nothing or an E_WalkNext");
    if constexpr (std::is_void_v<tResult>)
    {
        callWalker(call, node, place);
        return WN_members;
    }
    else
        return callWalker(call, node, place);
}

/// Goes to the next member of the innermost container that has one left. \return null at the end
template <typename T>
T* nextOfWalk(tWalkState<T>& state)
{
    while (!state.m_vRest.empty())
    {
        auto& [next, end] = state.m_vRest.back();
        if (next != end)
        {
            ++state.m_vLevel.back().m_nIndex;
            T& node = *next;
            ++next;
            return &node;
        }
        state.m_vRest.pop_back();
        state.m_vLevel.pop_back();
    }
    return nullptr;
}

template <typename T, typename tCall>
bool walkNodes(T& root, tCall& call)
{
    tWalkState<T> state;
    const CWalkPlace place(state.m_vLevel);
    for (T* node = &root; node != nullptr; node = nextOfWalk(state))
    {
        const E_WalkNext next = next4Call(call, *node, place);
        if (next == WN_stop)
            return false;
        if (next == WN_skip || node->getChildCount() == 0)
            continue;
        state.m_vRest.push_back({node->begin(), node->end()});
        state.m_vLevel.push_back({node, static_cast<std::size_t>(-1)});
    }
    return true;
}
}  // namespace detail

/// Calls back for each node of a tree, a container before its members, members in order. Trees may be of any depth.
///
/// \param call  takes the node, or the node and one thing more: its depth (std::size_t, 0 for the root), or where it is
///              (const CWalkPlace&). It returns nothing, or an E_WalkNext. It may change the node and give it other
///              members, which are then walked; it may not add or remove members of the containers around it.
/// \return whether the walk came to its end: false after WN_stop
/// Linear; throws what the callback throws, and std::bad_alloc on trees deeper than the memory allows.
template <typename tCall>
bool walk(const CFields& tree, tCall&& call)
{
    return detail::walkNodes(tree, call);
}
template <typename tCall>
bool walk(CFields& tree, tCall&& call)
{
    return detail::walkNodes(tree, call);
}

namespace detail
{
template <typename... tCalls>
struct tOverloads : tCalls...
{
    using tCalls::operator()...;
};
template <typename... tCalls>
tOverloads(tCalls...) -> tOverloads<tCalls...>;

template <typename T, typename tCall>
decltype(auto) visitNode(T& node, tCall&& call)
{
    const uMultiValue& value = node.getValueRef();
    switch (node.getDT())
    {
    case DT_bool: return call(bool{value.m_bValue});
    case DT_sint: return call(static_cast<long long>(value.m_llValue));
    case DT_uint: return call(static_cast<unsigned long long>(value.m_ullValue));
    case DT_double: return call(double{value.m_dValue});
    case DT_codelist: return call(textView(node));
    case DT_array:
    case DT_fields: return call(node);
    case DT_null: break;
    }
    return call(nullptr);
}
}  // namespace detail

/// Calls the function that takes the value of a node: std::nullptr_t, bool, long long, unsigned long long, double,
/// std::string_view, or for containers CFields& (const, if the node is).
///
/// The functions are overloads of each other, and together take all of these types: mostly a last one takes `auto&&`.
/// As with overloads, a function that takes another type of number is called with a converted one; the catch-all is
/// preferred to that. All return the same type. The view is valid as that of textView.
template <typename... tCalls>
decltype(auto) visit(const CFields& node, tCalls&&... calls)
{
    return detail::visitNode(node, detail::tOverloads{std::forward<tCalls>(calls)...});
}
template <typename... tCalls>
decltype(auto) visit(CFields& node, tCalls&&... calls)
{
    return detail::visitNode(node, detail::tOverloads{std::forward<tCalls>(calls)...});
}

}  // namespace murv

#endif

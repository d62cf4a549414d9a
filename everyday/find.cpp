// everyday/find.cpp - follows paths into a tree, to one node or to several, and finds the path of a node.
#include <algorithm>
#include <utility>

#include "core/field_access.h"
#include "core/field_vector.h"
#include "core/path_text.h"
#include "murv/path.h"

namespace murv
{

using detail::tFieldAccess;

namespace
{
const CFields* memberAt(const CFields& node, unsigned int index)
{
    return node.isValidChild(index) ? &node[index] : nullptr;
}

const CFields* memberNamed(const CFields& node, std::string_view name)
{
    if (name.size() > detail::s_cuiLongestName)
        return nullptr;
    return node.findChildAt(name.data(), static_cast<unsigned int>(name.size()));
}

const CFields* follow(const CFields& node, const tPathPart& step)
{
    switch (step.m_eStep)
    {
    case PS_name: return memberNamed(node, step.m_strName);
    case PS_id: return node.findID(step.m_uiNumber);
    case PS_fromEnd:
        return step.m_uiNumber > node.getChildCount() ? nullptr
                                                      : memberAt(node, node.getChildCount() - step.m_uiNumber);
    case PS_token: return node.isArray() ? memberAt(node, step.m_uiNumber) : memberNamed(node, step.m_strName);
    case PS_range: throw CPathError({}, "a range leads to several nodes", step.m_nEnd);
    case PS_index: break;
    }
    return memberAt(node, step.m_uiNumber);
}

/// Follows a path with ranges. Of each range on the way it keeps the members that are still to come.
class CFinder
{
public:
    explicit CFinder(const tNodePath& path) : m_vStep(path.m_vStep)
    {
    }

    std::vector<const CFields*> run(const CFields& root)
    {
        go(root, 0);
        while (!m_vOpen.empty())
        {
            tOpen& top = m_vOpen.back();
            if (top.m_uiNext < top.m_uiAfter)
                go(tFieldAccess::members(*top.m_pContainer)->at(top.m_uiNext++), top.m_nStep + 1);
            else
                m_vOpen.pop_back();
        }
        return std::move(m_vFound);
    }

    std::size_t taken() const
    {
        return m_nTaken;
    }

private:
    struct tOpen
    {
        const CFields* m_pContainer;
        std::size_t m_nStep;
        unsigned int m_uiNext;
        unsigned int m_uiAfter;
    };

    void go(const CFields& from, std::size_t step)
    {
        const CFields* node = &from;
        for (; node != nullptr && step < m_vStep.size(); ++step)
        {
            m_nTaken = std::max(m_nTaken, step);
            if (m_vStep[step].m_eStep == PS_range)
                return open(*node, step);
            node = follow(*node, m_vStep[step]);
        }
        if (node == nullptr)
            return;
        m_nTaken = m_vStep.size();
        m_vFound.push_back(node);
    }

    void open(const CFields& container, std::size_t step)
    {
        const unsigned int count = container.getChildCount();
        const auto place = [count](unsigned int number, bool isFromEnd) {
            const unsigned int inside = std::min(number, count);
            return isFromEnd ? count - inside : inside;
        };
        const tPathPart& range = m_vStep[step];
        m_vOpen.push_back({&container, step, place(range.m_uiNumber, range.m_bFirstFromEnd),
                           place(range.m_uiAfter, range.m_bAfterFromEnd)});
    }

    const std::vector<tPathPart>& m_vStep;
    std::vector<tOpen> m_vOpen;
    std::vector<const CFields*> m_vFound;
    std::size_t m_nTaken = 0;
};

std::vector<CFields*> mutable4Found(const std::vector<const CFields*>& found)
{
    std::vector<CFields*> nodes;
    nodes.reserve(found.size());
    for (const CFields* const node : found)
        nodes.push_back(const_cast<CFields*>(node));
    return nodes;
}

struct tLevel
{
    const CFields* m_pContainer;
    std::uint32_t m_uiIndex;
};

/// The members that lead from the root to a node. \return false when the node is not in the tree
bool findSteps(const CFields& root, const CFields& node, std::vector<tLevel>& levels)
{
    if (&root == &node)
        return true;
    if (!tFieldAccess::isMember(node))
        return false;
    const auto enter = [&levels](const CFields& container) {
        if (detail::memberCount(container) != 0)
            levels.push_back({&container, 0});
    };
    enter(root);
    while (!levels.empty())
    {
        const CFieldVector& members = *tFieldAccess::members(*levels.back().m_pContainer);
        const std::size_t depth = levels.size();
        const CFields& member = members.at(levels.back().m_uiIndex);
        if (&member == &node)
            return true;
        enter(member);
        if (levels.size() != depth)
            continue;
        while (!levels.empty() && ++levels.back().m_uiIndex == detail::memberCount(*levels.back().m_pContainer))
            levels.pop_back();
    }
    return false;
}
}  // namespace

const CFields* find(const CFields& root, const tNodePath& path, std::size_t* taken)
{
    if (path.m_pError != nullptr)
        throw CPathError({}, path.m_pError, path.m_nErrorAt);
    const CFields* node = &root;
    std::size_t steps = 0;
    for (; steps < path.m_vStep.size(); ++steps)
    {
        const CFields* const next = follow(*node, path.m_vStep[steps]);
        if (next == nullptr)
            break;
        node = next;
    }
    if (taken != nullptr)
        *taken = steps;
    return steps == path.m_vStep.size() ? node : nullptr;
}

CFields* find(CFields& root, const tNodePath& path, std::size_t* taken)
{
    return const_cast<CFields*>(find(static_cast<const CFields&>(root), path, taken));
}

const CFields* find(const CFields& root, std::string_view path)
{
    if (!path.empty() && path.find_first_of(".[]#\"/") == std::string_view::npos)
        return memberNamed(root, path);  // most are plain names
    const tNodePath steps = !path.empty() && path.front() == '/' ? parsePointer(path) : parsePath(path);
    if (steps.m_pError != nullptr)
        throw CPathError(path, steps.m_pError, steps.m_nErrorAt);
    return find(root, steps);
}

CFields* find(CFields& root, std::string_view path)
{
    return const_cast<CFields*>(find(static_cast<const CFields&>(root), path));
}

std::vector<const CFields*> findAll(const CFields& root, const tNodePath& path, std::size_t* taken)
{
    if (path.m_pError != nullptr)
        throw CPathError({}, path.m_pError, path.m_nErrorAt);
    CFinder finder(path);
    std::vector<const CFields*> found = finder.run(root);
    if (taken != nullptr)
        *taken = finder.taken();
    return found;
}

std::vector<CFields*> findAll(CFields& root, const tNodePath& path, std::size_t* taken)
{
    return mutable4Found(findAll(static_cast<const CFields&>(root), path, taken));
}

std::vector<const CFields*> findAll(const CFields& root, std::string_view path)
{
    const tNodePath steps =
        !path.empty() && path.front() == '/' ? parsePointer(path) : parsePath(path, PO_fromEnd | PO_several);
    if (steps.m_pError != nullptr)
        throw CPathError(path, steps.m_pError, steps.m_nErrorAt);
    return findAll(root, steps);
}

std::vector<CFields*> findAll(CFields& root, std::string_view path)
{
    return mutable4Found(findAll(static_cast<const CFields&>(root), path));
}

std::optional<std::string> pathOf(const CFields& root, const CFields& node)
{
    std::vector<tLevel> levels;
    if (!findSteps(root, node, levels))
        return std::nullopt;
    std::string path;
    for (const tLevel& level : levels)
        detail::appendPathStep(path, *level.m_pContainer, level.m_uiIndex);
    return levels.empty() ? "." : path;
}

std::optional<std::string> pointerOf(const CFields& root, const CFields& node)
{
    std::vector<tLevel> levels;
    if (!findSteps(root, node, levels))
        return std::nullopt;
    std::string pointer;
    for (const tLevel& level : levels)
    {
        const CFields& member = tFieldAccess::members(*level.m_pContainer)->at(level.m_uiIndex);
        if (level.m_pContainer->isArray())
            pointer.append("/").append(std::to_string(level.m_uiIndex));
        else if (detail::isFoundByName(*level.m_pContainer, member))
            pointer += pointerToken(tFieldAccess::name(member));
        else
            return std::nullopt;
    }
    return pointer;
}

}  // namespace murv

// everyday/make.cpp - puts written values into trees.
//
// What is missing on the way to a node is built apart and then put into its place, so that a failure changes nothing.
#include "murv/make.h"

#include "core/field_access.h"
#include "everyday/member_edit.h"
#include "murv/text.h"

namespace murv
{

using detail::appendValue;
using detail::isMemberName;
using detail::s_cpNameSize;
using detail::tFieldAccess;

namespace
{
[[noreturn]] void refuseMember(std::string_view name, const char* why)
{
    throw CLogicError("Cannot make the member " + ToQuotedEscapeString(name.substr(0, 200)) + ": " + why);
}

/// What a step needs that leads to a new member.
struct tNewStep
{
    bool m_bElement;
    const char* m_pError;  // why there can be none, or null
};

tNewStep newElement(const CFields& container, unsigned int index)
{
    if (!container.isNull() && !container.isArray())
        return {true, "an index adds to arrays only"};
    return {true, index == container.getChildCount() ? nullptr : "elements before it are missing"};
}

tNewStep newNamed(const CFields& container, std::string_view name)
{
    if (!container.isNull() && !container.isField())
        return {false, "a name adds to field sets only"};
    return {false, isMemberName(name) ? nullptr : s_cpNameSize};
}

tNewStep newStep(const CFields& container, const tPathPart& step)
{
    switch (step.m_eStep)
    {
    case PS_name: return newNamed(container, step.m_strName);
    case PS_index: return newElement(container, step.m_uiNumber);
    case PS_token: break;
    case PS_fromEnd: return {false, "there is no such element"};
    case PS_id: return {false, "there is no node with this ID"};
    case PS_range: return {false, "a range leads to several nodes"};
    }
    if (step.m_strName == "-" && !container.isField())
        return newElement(container, container.getChildCount());
    if (container.isArray() || (container.isNull() && step.m_uiNumber == 0))
        return newElement(container, step.m_uiNumber);
    return newNamed(container, step.m_strName);
}

/// The step that leads to a new member; throws when there can be none.
tNewStep requireStep(const CFields& container, const tNodePath& path, std::size_t at)
{
    const tNewStep step = newStep(container, path.m_vStep[at]);
    if (step.m_pError != nullptr)
        throw CLogicError("Cannot set the value, step " + std::to_string(at + 1) + " of the path: " + step.m_pError);
    return step;
}

std::string_view name4Step(const tNewStep& step, const tPathPart& part)
{
    return step.m_bElement ? std::string_view() : std::string_view(part.m_strName);
}

/// Fills a null node with all members that lead from it to the value. \return the node with the value
CFields& fillNull(CFields& node, const tNodePath& path, std::size_t at, CFields&& value)
{
    CFields* last = &node;
    for (; at < path.m_vStep.size(); ++at)
    {
        const tNewStep step = requireStep(*last, path, at);
        const bool isValue = at + 1 == path.m_vStep.size();
        last = &appendValue(*last, name4Step(step, path.m_vStep[at]), isValue ? std::move(value) : CFields());
    }
    return *last;
}
}  // namespace

CFields fields(std::initializer_list<tNewMember> members)
{
    CFields set(DT_fields);
    for (const tNewMember& member : members)
    {
        const std::string_view name = member.m_svName;
        if (!isMemberName(name))
            refuseMember(name, s_cpNameSize);
        if (set.isValidChild(name))
            refuseMember(name, "there is one of this name");
        appendValue(set, name, member.m_tValue.take());
    }
    return set;
}

CFields array(std::initializer_list<CNewValue> elements)
{
    CFields all(DT_array);
    for (const CNewValue& element : elements)
        appendValue(all, {}, element.take());
    return all;
}

CFields& set(CFields& node, const tNodePath& path, CNewValue value)
{
    std::size_t taken = 0;
    CFields fresh = value.take();
    if (CFields* const found = find(node, path, &taken))
    {
        tFieldAccess::takeValues(*found, fresh);
        return *found;
    }
    tNodePath way = path;
    way.m_vStep.resize(taken);
    CFields& last = *find(node, way);
    if (last.isNull())
    {
        CFields apart;
        CFields& end = fillNull(apart, path, taken, std::move(fresh));
        tFieldAccess::takeValues(last, apart);
        return end;
    }
    const tNewStep step = requireStep(last, path, taken);
    const std::string_view name = name4Step(step, path.m_vStep[taken]);
    if (taken + 1 == path.m_vStep.size())
        return appendValue(last, name, std::move(fresh));
    CFields apart;
    CFields& end = fillNull(apart, path, taken + 1, std::move(fresh));
    appendValue(last, name, std::move(apart));
    return end;
}

CFields& set(CFields& node, std::string_view path, CNewValue value)
{
    const tNodePath steps = !path.empty() && path.front() == '/' ? parsePointer(path) : parsePath(path);
    if (steps.m_pError != nullptr)
        throw CPathError(path, steps.m_pError, steps.m_nErrorAt);
    return set(node, steps, std::move(value));
}

CFields& append(CFields& node, CNewValue value)
{
    if (!node.isNull() && !node.isArray())
        throw CLogicError(std::string("Cannot append an element to a node of type ") + typeName(node));
    return appendValue(node, {}, value.take());
}

}  // namespace murv

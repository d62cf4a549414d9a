// layout/compile/mistakes.cpp - mistakes with their places and paths.
#include "layout/compile/mistakes.h"

#include <algorithm>
#include <utility>

namespace murv::detail
{

namespace
{
constexpr std::size_t s_cnMostMistakes = 100;  // a hostile layout could have millions, each with a long path
}

std::string path4(const tPlan& plan, unsigned int part)
{
    std::vector<std::string> names;
    for (; part != s_cuiNone; part = plan.m_vParts[part].m_uiParent)
    {
        const tPart& at = plan.m_vParts[part];
        if (!at.m_strName.empty())
            names.push_back(at.m_strName);
        else if (at.m_uiID != 0)
            names.push_back("#" + std::to_string(at.m_uiID));
    }
    std::string path;
    for (auto name = names.rbegin(); name != names.rend(); ++name)
    {
        if (!path.empty())
            path += '.';
        path += *name;
    }
    return path;
}

CMistakes::CMistakes(const tPlan& plan, std::vector<tLayoutMistake>& mistakes) : m_tPlan(plan), m_vMistakes(mistakes)
{
}

void CMistakes::add(unsigned int part, unsigned int place, std::string message)
{
    if (m_vFaulty.size() <= part)
        m_vFaulty.resize(std::max<std::size_t>(m_tPlan.m_vParts.size(), part + 1));
    m_vFaulty[part] = true;
    if (!isFull())
        // A node without a place has -1.
        m_vMistakes.push_back({place == s_cuiNone ? 0 : place, path4(m_tPlan, part), std::move(message)});
}

void CMistakes::addIfFirst(unsigned int part, unsigned int place, std::string message)
{
    if (!isFaulty(part))
        add(part, place, std::move(message));
}

bool CMistakes::isFaulty(unsigned int part) const
{
    return part < m_vFaulty.size() && m_vFaulty[part];
}

bool CMistakes::isFull() const
{
    return m_vMistakes.size() >= s_cnMostMistakes;
}

void CMistakes::sort()
{
    std::stable_sort(m_vMistakes.begin(), m_vMistakes.end(),
                     [](const tLayoutMistake& a, const tLayoutMistake& b) { return a.m_uiOffset < b.m_uiOffset; });
}

}  // namespace murv::detail

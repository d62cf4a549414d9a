// tools/sample_plan.cpp - parts with their rules, paths resolved, wishes collected.
#include "tools/sample_plan.h"

#include <algorithm>

#include "tools/packet_leaf.h"

namespace murv::tool
{

namespace
{
bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

tSampleExpression takenApart(std::string_view text)
{
    tSampleExpression expression;
    if (text.size() < 4)
        return expression;
    expression.m_cForm = text[0];
    expression.m_cType = text[1];
    expression.m_cLength = text[2];
    std::size_t at = 3;
    for (; at < text.size() && isDigit(text[at]); ++at)
        expression.m_ullWidth = expression.m_ullWidth * 10 + static_cast<unsigned char>(text[at] - '0');
    while (at < text.size() && (text[at] == '+' || text[at] == '-' || isDigit(text[at])))
        ++at;
    expression.m_strKeyword = text.substr(at);
    return expression;
}

/// A value beside the one that a comparison names, so that it is also seen to fail.
void addNeighbours(std::vector<std::string>& values, const tSampleCondition& condition)
{
    for (const std::string& value : condition.m_vValue)
    {
        values.push_back(value);
        const bool isNumber = !value.empty() && value.size() < 18 && std::all_of(value.begin(), value.end(), isDigit);
        if (!isNumber || condition.m_eCompare == SC_equal || condition.m_eCompare == SC_differs)
            continue;
        const long long number = std::stoll(value);
        values.push_back(std::to_string(number + 1));
        if (number > 0)
            values.push_back(std::to_string(number - 1));
    }
}
}  // namespace

CSamplePlan::CSamplePlan(const CLayout& layout) : m_tLayout(layout), m_vPart(layout.getPartCount())
{
    for (unsigned int number = 0; number < m_vPart.size(); ++number)
    {
        tSamplePart& part = m_vPart[number];
        part.m_tPart = layout.getPart(number);
        part.m_tRules = sampleRules(layout, number);
        part.m_vBits = layout.getBits(number);
        part.m_tExpression = takenApart(part.m_tPart.m_strvExpression);
        m_strMarks += part.m_tRules.m_strMarks;
        if (number == 0)
            continue;
        tSamplePart& around = m_vPart[part.m_tPart.m_uiParent];
        around.m_vMembers.push_back(number);
        const bool inherits = part.m_tPart.m_eKind != LP_leaf || part.m_tExpression.m_cForm == 'A';
        if (inherits && !part.has(s_cuiSamplePages))
            part.m_tRules.m_uiWords |= around.m_tRules.m_uiWords & s_cuiSamplePages;
    }
    for (unsigned int number = 0; number < m_vPart.size(); ++number)
        resolve(number);
}

/// The nearest field set around a part, in which paths of its rules begin.
unsigned int CSamplePlan::setAround(unsigned int part) const
{
    unsigned int at = m_vPart[part].m_tPart.m_uiParent;
    while (at != CLayout::s_cuiNoPart && m_vPart[at].m_tPart.m_eKind != LP_fields)
        at = m_vPart[at].m_tPart.m_uiParent;
    return at;
}

unsigned int CSamplePlan::memberOf(unsigned int set, const std::string& name) const
{
    for (const unsigned int member : m_vPart[set].m_vMembers)
    {
        const tLayoutPart& part = m_vPart[member].m_tPart;
        if (part.m_strvName == name || (part.m_strvName.empty() && label4Part(m_tLayout, member) == name))
            return member;
    }
    return CLayout::s_cuiNoPart;
}

/// The first set, from the scope outwards, that has the first name decides.
tSampleTarget CSamplePlan::find(unsigned int scope, const std::vector<std::string>& path) const
{
    tSampleTarget target;
    unsigned int at = CLayout::s_cuiNoPart;
    for (; scope != CLayout::s_cuiNoPart && at == CLayout::s_cuiNoPart && !path.empty(); scope = setAround(scope))
        at = memberOf(scope, path.front());
    if (at == CLayout::s_cuiNoPart)
        return target;
    for (std::size_t step = 1; step < path.size(); ++step)
    {
        if (m_vPart[at].m_tPart.m_eKind == LP_leaf)
        {
            target.m_strBits = path[step];
            break;
        }
        at = memberOf(at, path[step]);
        if (at == CLayout::s_cuiNoPart)
            return target;
    }
    target.m_uiPart = at;
    return target;
}

tSampleWish& CSamplePlan::wish(const tSampleTarget& target)
{
    std::vector<tSampleWish>& wishes = m_vPart[target.m_uiPart].m_vWishes;
    const auto found = std::find_if(wishes.begin(), wishes.end(),
                                    [&](const tSampleWish& wish) { return wish.m_strBits == target.m_strBits; });
    if (found != wishes.end())
        return *found;
    wishes.push_back({target.m_strBits, {}, false});
    return wishes.back();
}

tSampleCondition CSamplePlan::resolved(unsigned int scope, const tSampleTest& test)
{
    tSampleCondition condition;
    condition.m_tTarget = find(scope, test.m_vPath);
    condition.m_eCompare = test.m_eCompare;
    condition.m_vValue = test.m_vValue;
    if (condition.m_tTarget.m_uiPart != CLayout::s_cuiNoPart)
        addNeighbours(wish(condition.m_tTarget).m_vValue, condition);
    return condition;
}

/// IDs and names of the parts, one of which a value chooses.
void CSamplePlan::wishForAlternatives(unsigned int set)
{
    const tSamplePart& part = m_vPart[set];
    const bool isNumber = m_vPart[part.m_tChooser.m_uiPart].m_tExpression.m_cType == 'N';
    std::vector<std::string> values;
    for (const unsigned int member : part.m_vMembers)
    {
        const tLayoutPart& alternative = m_vPart[member].m_tPart;
        const std::string name(alternative.m_strvName);
        if (isNumber && alternative.m_uiID != 0)
            values.push_back(std::to_string(alternative.m_uiID));
        else if (name != part.m_tRules.m_strElse && (!isNumber || std::all_of(name.begin(), name.end(), isDigit)))
            values.push_back(name);
    }
    tSampleWish& wanted = wish(part.m_tChooser);
    wanted.m_vValue.insert(wanted.m_vValue.end(), values.begin(), values.end());
    wanted.m_bOnly = wanted.m_bOnly || part.m_tRules.m_strElse.empty();
}

void CSamplePlan::resolve(unsigned int number)
{
    const unsigned int scope = setAround(number);
    const tSampleRules rules = m_vPart[number].m_tRules;
    for (const tSampleTest& test : rules.m_vIf)
        m_vPart[number].m_vIf.push_back(resolved(scope, test));
    if (!rules.m_vChooser.empty())
    {
        m_vPart[number].m_tChooser = find(scope, rules.m_vChooser);
        if (m_vPart[number].m_tChooser.m_uiPart != CLayout::s_cuiNoPart)
            wishForAlternatives(number);
    }
    if (rules.m_vUntil.empty())
        return;
    const unsigned int element = m_vPart[number].m_vMembers.front();
    tSampleCondition until;
    if (!rules.m_vUntil.front().m_vPath.empty())
        until = resolved(element, rules.m_vUntil.front());
    else
    {
        until.m_tTarget.m_uiPart = element;
        until.m_eCompare = rules.m_vUntil.front().m_eCompare;
        until.m_vValue = rules.m_vUntil.front().m_vValue;
    }
    m_vPart[number].m_tUntil = std::move(until);
}

}  // namespace murv::tool

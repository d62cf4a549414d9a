// everyday/convert.cpp - what conversions of all types share.
#include "murv/convert.h"

#include <vector>

#include "everyday/member_edit.h"
#include "murv/path.h"

namespace murv::detail
{

namespace
{
constexpr std::size_t s_cnMostLevels = 1000;

std::string path4Spot(const tSpot& spot)
{
    std::vector<const tSpot*> way;
    for (const tSpot* at = &spot; at->m_pAround != nullptr; at = at->m_pAround)
        way.push_back(at);
    if (way.empty())
        return ".";
    std::string path;
    for (auto at = way.rbegin(); at != way.rend(); ++at)
    {
        if ((*at)->m_svName.empty())
            path += "[" + std::to_string((*at)->m_nIndex) + "]";
        else
            path += (path.empty() ? "" : ".") + pathName((*at)->m_svName);
    }
    return path;
}
}  // namespace

void throwAtSpot(const tSpot& spot, const CFields* node, const CFields& around, std::string_view wanted,
                 std::string_view source)
{
    throw CValueError(path4Spot(spot), node, around, wanted, source);
}

void requireLevel(const tSpot& spot)
{
    if (spot.m_nLevel > s_cnMostLevels)
        throw CLogicError("Cannot convert a tree of more than 1000 levels");
}

CFields& addMember(CFields& node, std::string_view name)
{
    if (!isMemberName(name))
        throw CLogicError(std::string("Cannot make the member ") + pathName(name.substr(0, 200)) + ": " + s_cpNameSize);
    return appendValue(node, name, CFields());
}

}  // namespace murv::detail

// everyday/walk.cpp - the path of the node that a walk has come to.
#include "murv/walk.h"

#include "core/path_text.h"

namespace murv
{

std::string detail::path4Levels(const std::vector<tWalkLevel>& levels)
{
    if (levels.empty())
        return ".";
    std::string path;
    for (const tWalkLevel& level : levels)
        appendPathStep(path, *level.m_pContainer, static_cast<std::uint32_t>(level.m_nIndex));
    return path;
}

}  // namespace murv

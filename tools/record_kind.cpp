// tools/record_kind.cpp - finds records by the ends of their paths.
#include "tools/record_kind.h"

#include <vector>

#include "tools/nearest.h"

namespace murv::tool
{

namespace
{
bool endsWith(const std::string& path, const std::string& end)
{
    return path.size() > end.size() && path.compare(path.size() - end.size(), end.size(), end) == 0 &&
           path[path.size() - end.size() - 1] == '.';
}
}  // namespace

std::string recordKind(const CLayout& layout, unsigned int record)
{
    const std::string path = layout.getPath(record);
    return path.empty() ? "." : path;
}

std::string findRecordKind(const CLayout& layout, const std::string& kind, unsigned int& record)
{
    std::vector<std::string> kinds;
    std::vector<unsigned int> near;
    for (unsigned int part = 0; part < layout.getPartCount(); ++part)
    {
        if (!layout.getPart(part).m_bRecord)
            continue;
        kinds.push_back(recordKind(layout, part));
        record = part;
        if (kinds.back() == kind)
            return {};
        if (endsWith(kinds.back(), kind))
            near.push_back(part);
    }
    if (near.size() == 1)
    {
        record = near.front();
        return {};
    }
    if (!near.empty())
        return "several kinds of records end with " + kind + ": " + recordKind(layout, near[0]) + ", " +
               recordKind(layout, near[1]);
    std::string all;
    for (const std::string& one : kinds)
        all += (all.empty() ? "" : ", ") + one;
    return "no record is of kind " + kind + hint4(kind, kinds) + " (kinds: " + all + ")";
}

}  // namespace murv::tool

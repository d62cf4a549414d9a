// tools/mask_check.cpp - walks data and layout side by side.
#include "tools/mask_check.h"

#include <algorithm>
#include <vector>

#include "tools/packet_leaf.h"

namespace murv::tool
{

namespace
{
struct tPlace
{
    unsigned int m_uiPart;
    const CFields* m_pNode;
    std::string m_strPath;
};

/// The member of the data that a part of the layout is about; null when it lacks it.
const CFields* member4Part(const CFields& data, const tLayoutPart& part)
{
    if (!data.isField())
        return nullptr;
    if (!part.m_strvName.empty())
        return data.findChildAt(part.m_strvName.data(), static_cast<unsigned int>(part.m_strvName.size()));
    for (const CFields& member : data)
    {
        if (part.m_uiID != 0 && member.getID() == part.m_uiID)
            return &member;
    }
    return nullptr;
}

/// Adds what is below a place, to be looked at.
void addMembers(const CLayout& layout, const tPlace& place, std::vector<tPlace>& open)
{
    for (unsigned int part = place.m_uiPart + 1; part < layout.getPartCount(); ++part)
    {
        const tLayoutPart seen = layout.getPart(part);
        if (seen.m_uiParent < place.m_uiPart)
            return;  // it is not below the place, and neither are those after it
        if (seen.m_uiParent != place.m_uiPart)
            continue;
        if (isElement(layout, part))
        {
            for (unsigned int i = 0; place.m_pNode->isArray() && i < place.m_pNode->getChildCount(); ++i)
                open.push_back({part, &place.m_pNode->getChildAt(i), place.m_strPath + "[" + std::to_string(i) + "]"});
            return;
        }
        const std::string path = place.m_strPath + (place.m_strPath.empty() ? "" : ".") + label4Part(layout, part);
        if (const CFields* const member = member4Part(*place.m_pNode, seen))
            open.push_back({part, member, path});
    }
}

bool hasMasks(const CLayout& layout)
{
    for (unsigned int part = 0; part < layout.getPartCount(); ++part)
    {
        if (layout.getPart(part).m_bMasked)
            return true;
    }
    return false;
}
}  // namespace

bool findMask(const CLayout& layout, unsigned int part, const CFields& data, tPacketFault& fault)
{
    if (!hasMasks(layout))
        return false;
    std::vector<tPlace> open{{part, &data, ""}};
    while (!open.empty())
    {
        const tPlace place = open.back();
        open.pop_back();
        const tLayoutPart seen = layout.getPart(place.m_uiPart);
        if (seen.m_bMasked && place.m_pNode->isCodelist() && isMask(place.m_pNode->asString(), seen.m_uiShown))
        {
            fault.m_eCode = PF_type;
            fault.m_strPath = place.m_strPath;
            fault.m_strExpression = seen.m_strvExpression;
            fault.m_strRules = seen.m_strvRules;
            fault.m_strMessage = "The stars of a mask stand here, not the value (see --unmask)";
            return true;
        }
        const std::size_t before = open.size();
        addMembers(layout, place, open);
        std::reverse(open.begin() + static_cast<std::ptrdiff_t>(before), open.end());  // the first is looked at next
    }
    return false;
}

}  // namespace murv::tool

// document/source_tree.cpp - puts a text together again.
#include "document/source_tree.h"

namespace murv::detail
{

std::string CSourceTree::text() const
{
    struct tOpen
    {
        const tSourceNode* m_pNode;
        std::size_t m_nNext;  // member
    };
    std::string text;
    std::vector<tOpen> open{{&m_vNode[s_cuiRoot], 0}};
    while (!open.empty())
    {
        tOpen& last = open.back();
        const tSourceNode& node = *last.m_pNode;
        if (last.m_nNext == 0)
            text.append(node.m_strvBefore).append(node.m_strvHead).append(node.m_strvValue);
        if (last.m_nNext != node.m_vMember.size())
        {
            open.push_back({&m_vNode[node.m_vMember[last.m_nNext++]], 0});
            continue;
        }
        text.append(node.m_strvInner).append(node.m_strvAfter);
        open.pop_back();
    }
    return text;
}

}  // namespace murv::detail

// tools/packet_tree.cpp - the parts around records, and a tree of all.
#include "tools/packet_tree.h"

#include <algorithm>
#include <utility>

#include "tools/packet_leaf.h"

namespace murv::tool
{

namespace
{
/// The numbers in brackets of a path; a quoted name may hold brackets, too.
std::vector<std::uint64_t> elements4Path(std::string_view path)
{
    std::vector<std::uint64_t> elements;
    bool isQuoted = false;
    for (std::size_t at = 0; at < path.size(); ++at)
    {
        if (path[at] == '\\')
            ++at;
        else if (path[at] == '"')
            isQuoted = !isQuoted;
        else if (path[at] == '[' && !isQuoted)
        {
            std::uint64_t number = 0;
            for (++at; at < path.size() && path[at] != ']'; ++at)
                number = 10 * number + static_cast<unsigned char>(path[at] - '0');
            elements.push_back(number);
        }
    }
    return elements;
}
}  // namespace

void CSurroundings::enter(unsigned int record, std::string_view path)
{
    std::vector<tOpen> around;
    for (unsigned int part = m_tLayout.getPart(record).m_uiParent; part != CLayout::s_cuiNoPart;
         part = m_tLayout.getPart(part).m_uiParent)
        around.push_back({part, 0});
    std::reverse(around.begin(), around.end());
    const std::vector<std::uint64_t> elements = elements4Path(path);
    std::size_t next = 0;
    for (tOpen& part : around)
        part.m_ullElement = isElement(m_tLayout, part.m_uiPart) && next < elements.size() ? elements[next++] : 0;
    std::size_t same = 0;
    while (same < around.size() && same < m_vOpen.size() && around[same].m_uiPart == m_vOpen[same].m_uiPart &&
           around[same].m_ullElement == m_vOpen[same].m_ullElement)
        ++same;
    closeTo(same);
    for (std::size_t i = same; i < around.size(); ++i)
        open(around[i]);
    m_bAny = true;
}

void CSurroundings::finish()
{
    if (!m_bAny)
        open({0, 0});
    closeTo(0);
}

void CSurroundings::open(const tOpen& part)
{
    if (m_tLayout.getPart(part.m_uiPart).m_eKind == LP_array)
        m_tFrame.onArray(part.m_uiPart);
    else
        m_tFrame.onFields(part.m_uiPart);
    m_vOpen.push_back(part);
}

void CSurroundings::closeTo(std::size_t left)
{
    for (; m_vOpen.size() > left; m_vOpen.pop_back())
    {
        const unsigned int part = m_vOpen.back().m_uiPart;
        if (m_tLayout.getPart(part).m_eKind == LP_array)
            m_tFrame.onArrayEnd(part);
        else
            m_tFrame.onFieldsEnd(part);
    }
}

CFields& CPacketTree::add(unsigned int part)
{
    if (m_vOpen.empty())
        return m_tRoot;
    CFields& parent = *m_vOpen.back();
    const tLayoutPart seen = m_tLayout.getPart(part);
    return parent.isArray() ? parent.addArrayAt(CFields()) : parent.addChildRef(seen.m_strvName, seen.m_uiID, true);
}

void CPacketTree::onFields(unsigned int part)
{
    CFields& node = add(part);
    node.setValue(DT_fields);
    m_vOpen.push_back(&node);
}

void CPacketTree::onFieldsEnd(unsigned int)
{
    m_vOpen.pop_back();
}

void CPacketTree::onArray(unsigned int part)
{
    CFields& node = add(part);
    node.setValue(DT_array);
    m_vOpen.push_back(&node);
}

void CPacketTree::onArrayEnd(unsigned int)
{
    m_vOpen.pop_back();
}

void CPacketTree::putRecord(unsigned int part, CFields&& record)
{
    CFields& node = add(part);
    node = std::move(record);
    const tLayoutPart seen = m_tLayout.getPart(part);
    if (!m_vOpen.empty() && !m_vOpen.back()->isArray())
    {
        node.setName(seen.m_strvName);
        node.setID(seen.m_uiID);
    }
}

}  // namespace murv::tool

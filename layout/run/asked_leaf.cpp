// layout/run/asked_leaf.cpp - running the callbacks of a leaf's keyword.
#include "layout/run/asked_leaf.h"

#include <cstring>

#include "core/field_access.h"
#include "layout/run/data_value.h"
#include "packet/keyword_call.h"
#include "packet/pending_sizes.h"

namespace murv::detail
{

CAskedLeaf::CAskedLeaf(const tPart& leaf, const tScalar& value, const void* user) : m_tLeaf(leaf)
{
    tSlot fresh{value.m_eType, false, {}};
    m_tNode.setName(std::string_view(leaf.m_strName));
    m_tNode.setID(leaf.m_uiID);
    m_tNode.pkt_SetExp(leaf.m_tExpression);
    if (user != nullptr)
        m_tNode.pkt_SetOSA4User(user);
    if (value.m_eType == DT_codelist)
    {
        m_tNode.setValue(value.m_strvText.data(), static_cast<unsigned int>(value.m_strvText.size()));
        return;
    }
    if (value.m_eType == DT_bool)
        fresh.m_uValue.m_bValue = value.m_bValue;
    else
        fresh.m_uValue.m_ullValue = value.m_ullValue;
    tFieldAccess::replaceValue(m_tNode, fresh);
}

bool CAskedLeaf::askMaking(const std::string& packet)
{
    tPendingSizes sizes;
    return callKeyword(CFields::getAllotPktFP4ESK(m_tLeaf.m_tExpression.m_ucSkKind), m_tNode, {&packet, 0, 0, &sizes},
                       "murv::CFields::pkt_allotValue4SKI",
                       "Found not allocation event for ESK(external supporting keyword)");
}

bool CAskedLeaf::askParsing(std::string_view packet, unsigned int offset)
{
    tPendingSizes sizes;
    return callKeyword(CFields::getParsePktFP4ESK(m_tLeaf.m_tExpression.m_ucSkKind), m_tNode,
                       {packet.data(), static_cast<unsigned int>(packet.size()), offset, &sizes},
                       "murv::CFields::pkt_parsePrepare4SKI",
                       "Found not parsing event for ESK(external supporting keyword)");
}

const char* CAskedLeaf::complaint() const
{
    tPacketExpInfo wanted = m_tLeaf.m_tExpression;
    const tPacketExpInfo& given = tFieldAccess::pei(m_tNode);
    if (tFieldAccess::isContainer(m_tNode))
        return "The callback made the value a container";
    if (m_tLeaf.m_eEnd != LE_callback && given.m_uiLength != wanted.m_uiLength)
        return "The callback gave a length that the layout states itself";
    wanted.m_uiLength = given.m_uiLength;
    return std::memcmp(&given, &wanted, sizeof wanted) == 0
               ? nullptr
               : "The callback changed more of the packet expression than its length";
}

tScalar CAskedLeaf::value() const
{
    return value4Data(m_tNode);
}

}  // namespace murv::detail

// layout/run/tree_sink.cpp - a tree from what is read.
#include "layout/run/tree_sink.h"

#include "core/heap_text.h"
#include "layout/run/kept_values.h"

namespace murv::detail
{

namespace
{

void setScalar(CFields& node, const tScalar& value)
{
    tSlot fresh{value.m_eType, value.m_eType == DT_codelist, {}};
    fresh.m_uValue.m_ullValue = value.m_ullValue;
    if (value.m_eType == DT_codelist)
        fresh.m_uValue.m_pData =
            duplicatePrefixedStream(value.m_strvText.data(), static_cast<unsigned int>(value.m_strvText.size()));
    tFieldAccess::replaceValue(node, fresh);
}

}  // namespace

void CTreeSink::begin(CFields& root)
{
    root.removeAll(DT_null);
    m_pRoot = &root;
    m_vOpen.clear();
}

CFields& CTreeSink::add(const tPart& part)
{
    if (m_vOpen.empty())
        return *m_pRoot;
    CFields& parent = *m_vOpen.back();
    if (tFieldAccess::type(parent) == DT_array)
        return tFieldAccess::append(parent);
    return tFieldAccess::appendMember(parent, part.m_strName.data(), static_cast<unsigned int>(part.m_strName.size()),
                                      part.m_uiID);
}

void CTreeSink::push(unsigned int part, E_DataType type)
{
    CFields& node = add(m_tPlan.m_vParts[part]);
    node.setValue(type);
    m_vOpen.push_back(&node);
}

void CTreeSink::setLeaf(CFields& node, const tItem& item, const tScalar& value)
{
    if (item.m_vBits.empty() || value.m_eType == DT_null)
    {
        setScalar(node, value);
        return;
    }
    node.setValue(DT_fields);
    for (const tBitField& field : item.m_vBits)
    {
        CFields& bits = tFieldAccess::appendMember(node, field.m_strName.data(),
                                                   static_cast<unsigned int>(field.m_strName.size()), 0);
        setScalar(bits, makeScalar(false, bitsOf(field, value.m_ullValue)));
    }
}

}  // namespace murv::detail

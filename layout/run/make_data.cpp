// layout/run/make_data.cpp - values from the nodes of the data.
#include "core/field_access.h"
#include "layout/run/maker.h"

namespace murv::detail
{

E_Scan CMaker::takeScalar(unsigned int part, const CFields& node, tScalar& value)
{
    if (tFieldAccess::isContainer(node))
    {
        if (tFieldAccess::type(node) == DT_fields && !part4(part).m_tItem.m_vBits.empty())
            return takeBits(part, node, value);
        return stop(PF_type, part, "The data has a container where the layout has a value");
    }
    value.m_eType = tFieldAccess::type(node);
    if (value.m_eType == DT_codelist)
        value.m_strvText = tFieldAccess::codes(node);
    else
        value.m_ullValue = tFieldAccess::value(node).m_ullValue;
    if (value.m_eType == DT_bool)
        value = makeScalar(false, tFieldAccess::value(node).m_bValue ? 1 : 0);
    return SC_next;
}

E_Scan CMaker::takeBits(unsigned int part, const CFields& node, tScalar& value)
{
    unsigned long long number = part4(part).m_ullDefault;  // which says the bits that the data lacks
    unsigned int matched = 0;
    for (const tBitField& field : part4(part).m_tItem.m_vBits)
    {
        const CFields* const member =
            node.findChildAt(field.m_strName.data(), static_cast<unsigned int>(field.m_strName.size()));
        if (member == nullptr)
            continue;
        ++matched;
        const unsigned long long mask = mask4Width(field.m_uiWidth);
        unsigned long long bits = 0;
        const bool isNumber = member->isUint64() && !member->isCodelist();
        if (isNumber)
            bits = member->asUint64();
        if (!isNumber || bits > mask)
            return stop(isNumber ? PF_tooLong : PF_type, part, "A part of the bits does not fit");
        number = (number & ~(mask << field.m_uiShift)) | bits << field.m_uiShift;
    }
    if (matched != node.getChildCount())
        return stop(PF_unknown, part, "The data has bits that the layout does not name");
    value = makeScalar(false, number);
    value.m_eType = DT_uint;
    return SC_next;
}

}  // namespace murv::detail

// layout/run/make_data.cpp - values as the data has them, and whether those that are filled in agree.
#include <algorithm>

#include "layout/run/data_value.h"
#include "layout/run/maker.h"
#include "layout/values/value_codec.h"

namespace murv::detail
{

namespace
{

/// What a number is that differs from the data.
E_PacketFault fault4Link(E_Link link)
{
    switch (link)
    {
    case LK_size: return PF_size;
    case LK_count: return PF_count;
    case LK_bits: return PF_bit;
    case LK_check: return PF_checksum;
    default: return PF_total;
    }
}

/// What is wrong with data that is no number of the width of its bits.
E_PacketFault code4Bits(const CFields& member)
{
    if (member.getDT() == DT_sint && member.asSint64() < 0)
        return PF_negative;
    return member.getDT() == DT_sint || member.getDT() == DT_uint ? PF_tooLong : PF_type;
}

}  // namespace

E_Scan CMaker::takeScalar(unsigned int part, const CFields& node, tScalar& value)
{
    if (tFieldAccess::isContainer(node))
    {
        if (tFieldAccess::type(node) == DT_fields && !part4(part).m_tItem.m_vBits.empty())
            return takeBits(part, node, value);
        return stop(PF_type, part, "The data has a container where the layout has a value");
    }
    value = value4Data(node);
    return SC_next;
}

E_Scan CMaker::takeBits(unsigned int part, const CFields& node, tScalar& value)
{
    unsigned long long number = part4(part).m_ullDefault;  // which says the bits that the data lacks
    unsigned int matched = 0;
    const std::vector<tBitField>& fields = part4(part).m_tItem.m_vBits;
    for (unsigned int i = 0; i < fields.size(); ++i)
    {
        const tBitField& field = fields[i];
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
            return stop(code4Bits(*member), part, nullptr, 0, i);
        number = (number & ~(mask << field.m_uiShift)) | bits << field.m_uiShift;
    }
    if (matched != node.getChildCount())
        return refuseBits(part, node);
    value = makeScalar(false, number);
    value.m_eType = DT_uint;
    return SC_next;
}

/// Says which part of the bits the layout does not have, or stands twice.
E_Scan CMaker::refuseBits(unsigned int part, const CFields& node)
{
    const std::vector<tBitField>& fields = part4(part).m_tItem.m_vBits;
    std::vector<bool> seen(fields.size());
    for (const CFields& member : node)
    {
        const std::string_view name = tFieldAccess::name(member);
        const auto known = std::find_if(fields.begin(), fields.end(),
                                        [name](const tBitField& field) { return field.m_strName == name; });
        const auto index = static_cast<std::size_t>(known - fields.begin());
        if (known == fields.end())
        {
            m_strUnknown.assign(name);
            return stop(PF_unknown, part);
        }
        if (seen[index])
            return stop(PF_repeated, part, nullptr, 0, static_cast<unsigned int>(index));
        seen[index] = true;
    }
    return stop(PF_repeated, part);
}

/// Whether a value is one of the valid ones. \param bits  the part of bits that is not, or none
bool CMaker::isValid(unsigned int part, const tScalar& value, unsigned int& bits) const
{
    const tItem& item = part4(part).m_tItem;
    const std::size_t invalid = findInvalidBits(item, value.m_ullValue, 0);
    bits = invalid < item.m_vBits.size() ? static_cast<unsigned int>(invalid) : s_cuiNone;
    return isValidValue(item, value) && bits == s_cuiNone;
}

/// Compares what was filled in with what the data says.
E_Scan CMaker::agree()
{
    if (!m_tOptions.m_bAgree || m_bMoved)
        return SC_next;
    for (unsigned int hole = 0; hole < m_vHoles.size(); ++hole)
    {
        for (const unsigned int link : m_tPlan.m_vLinks4Number[m_vHoles[hole].m_uiPart])
        {
            if (m_vHoles[hole].m_pData == nullptr || agrees(m_tPlan.m_vLinks[link], hole))
                continue;
            return stopAtHole(fault4Link(m_tPlan.m_vLinks[link].m_eKind), hole, s_cpDiffers);
        }
    }
    return SC_next;
}

bool CMaker::agrees(const tLink& link, unsigned int hole)
{
    const tHole& open = m_vHoles[hole];
    const tPart& leaf = part4(open.m_uiPart);
    const CFields& data = *open.m_pData;
    tScalar value;
    if (link.m_tNumber.m_uiBits != s_cuiNone && tFieldAccess::type(data) == DT_fields)
    {
        const std::string& name = leaf.m_tItem.m_vBits[link.m_tNumber.m_uiBits].m_strName;
        if (data.findChildAt(name.data(), static_cast<unsigned int>(name.size())) == nullptr)
            return true;
    }
    if (takeScalar(open.m_uiPart, data, value) != SC_next)
        return false;
    if (link.m_tNumber.m_uiBits != s_cuiNone)
    {
        const tBitField& field = leaf.m_tItem.m_vBits[link.m_tNumber.m_uiBits];
        return bitsOf(field, value.m_ullValue) == bitsOf(field, open.m_tValue.m_ullValue);
    }
    m_strValue.clear();
    const E_PacketFault fault = makeValue(leaf.m_tItem, value, m_strValue);
    const std::size_t begin = static_cast<std::size_t>(open.m_ullOffset) + leaf.m_tItem.m_ucPrefix;
    const std::size_t mark = leaf.m_eEnd == LE_mark ? leaf.m_vMarks.front().size() : 0;
    const std::size_t length = static_cast<std::size_t>(open.m_ullLength) - leaf.m_tItem.m_ucPrefix - mark;
    return (fault == PF_none || isFinding(fault)) && m_pOut->compare(begin, length, m_strValue) == 0;
}

}  // namespace murv::detail

// tools/layout_example.cpp - data for every part that can be there, made into a packet that can be read.
#include "tools/layout_example.h"

#include <algorithm>

#include "tools/packet_leaf.h"

namespace murv::tool
{

namespace
{
constexpr unsigned int s_cuiLargest = 20000;     // parts of a layout for which an example is made
constexpr std::size_t s_cnLongest = 64U << 20U;  // bytes of a value of the layout

/// What an example has beyond the least.
enum E_Richness
{
    RI_conditions,  // parts under conditions, too
    RI_optional,    // parts that say that they may be missing, and parts of bitmaps that have a value
    RI_elements,    // one element in each array
    RI_least,
};

bool hasRule(const CLayout& layout, unsigned int part, std::string_view begin)
{
    for (const tLayoutRule& rule : layout.getRules(part))
    {
        if (rule.m_strvRule.substr(0, begin.size()) == begin)
            return true;
    }
    return false;
}

/// Copies the value alone.
void setValue(CFields& node, const CFields& value)
{
    switch (value.getDT())
    {
    case DT_sint: node = value.asSint64(); break;
    case DT_uint: node = value.asUint64(); break;
    case DT_double: node = value.asDouble(); break;
    case DT_bool: node = value.asBool(); break;
    case DT_codelist: node = value.asString(); break;
    default: break;
    }
}

/// Builds the data: parts stand before their members, so one pass in their order will do.
class CDataMaker
{
public:
    CDataMaker(const CLayout& layout, const CFields& document, E_Richness richness)
        : m_tLayout(layout), m_eRichness(richness), m_vPlaces(layout.getPartCount())
    {
        m_vPlaces[0].m_pShown = &document;
        m_vPlaces[0].m_pData = &m_tData;
        m_tData = DT_fields;
        for (unsigned int part = 1; part < layout.getPartCount(); ++part)
            add(part);
    }
    const CFields& data() const
    {
        return m_tData;
    }

private:
    struct tPlace
    {
        CFields* m_pData = nullptr;         // null: the part is left out
        const CFields* m_pShown = nullptr;  // in the document; null for copies
        unsigned int m_uiNext = 0;          // member of the document that the next part is
        unsigned int m_uiMembers = 0;       // parts below it that were seen
    };

    /// The next member of the document that is a part.
    static const CFields* nextShown(tPlace& around)
    {
        const CFields* const shown = around.m_pShown;
        while (shown != nullptr && around.m_uiNext < shown->getChildCount())
        {
            const CFields& member = shown->getChildAt(around.m_uiNext++);
            const std::string_view name = member.getName() == nullptr ? "" : member.getName();
            if (shown->isArray() || name.substr(0, 1) != "@" || name.substr(0, 2) == "@@")
                return &member;
        }
        return nullptr;
    }

    bool isWanted(unsigned int number, const tLayoutPart& part, const tLayoutPart& parent, const tPlace& around,
                  const CFields* shown) const
    {
        if (parent.m_bChoice && around.m_uiMembers != 1)
            return false;
        if (part.m_eKind == LP_leaf)
        {
            const bool hasValue = shown != nullptr && !shown->isNull() && !shown->asString().empty();
            const bool isNeeded = parent.m_bChoice || parent.m_eKind == LP_array;
            const bool isOffered = m_eRichness <= RI_optional && part.m_bOptional && hasValue && !part.m_bComputed &&
                                   !part.m_bLiteral && !hasRule(m_tLayout, number, "if");
            return !isLeftOut(m_tLayout, number) && m_tLayout.getBits(number).empty() && (isNeeded || isOffered);
        }
        if (part.m_eKind == LP_array && m_eRichness == RI_least)
            return false;
        if (!part.m_bOptional)
            return true;
        return m_eRichness == RI_conditions || (m_eRichness == RI_optional && !hasRule(m_tLayout, number, "if"));
    }

    void add(unsigned int number)
    {
        const tLayoutPart part = m_tLayout.getPart(number);
        const tLayoutPart parent = m_tLayout.getPart(part.m_uiParent);
        tPlace& around = m_vPlaces[part.m_uiParent];
        tPlace& place = m_vPlaces[number];
        ++around.m_uiMembers;
        place.m_pShown = nextShown(around);
        if (around.m_pData == nullptr || !isWanted(number, part, parent, around, place.m_pShown))
            return;
        place.m_pData = parent.m_eKind == LP_array ? &around.m_pData->addArrayAt(CFields())
                                                   : &around.m_pData->addChildRef(part.m_strvName, part.m_uiID, true);
        if (part.m_eKind != LP_leaf)
            *place.m_pData = part.m_eKind == LP_array ? DT_array : DT_fields;
        else if (place.m_pShown != nullptr)
            setValue(*place.m_pData, *place.m_pShown);
    }

    const CLayout& m_tLayout;
    E_Richness m_eRichness;
    CFields m_tData;
    std::vector<tPlace> m_vPlaces;
};

/// Whether a value of the layout would make the example too large to show.
bool isTooLarge(const CLayout& layout)
{
    std::uint64_t bytes = 0;
    for (unsigned int part = 0; part < layout.getPartCount(); ++part)
    {
        const tLayoutPart seen = layout.getPart(part);
        bytes += seen.m_eKind == LP_leaf ? std::min<std::uint64_t>(seen.m_ullLeast, s_cnLongest) : 0;
    }
    return bytes >= s_cnLongest || layout.getPartCount() > s_cuiLargest;
}
}  // namespace

tExample example4Layout(const CLayout& layout, const CFields& document)
{
    tExample example;
    if (isTooLarge(layout))
    {
        example.m_strFault = "The layout is too large for an example.";
        return example;
    }
    for (const E_Richness richness : {RI_conditions, RI_optional, RI_elements, RI_least})
    {
        const CDataMaker data(layout, document, richness);
        CPacketMaker maker(layout);
        if (!maker.make(data.data(), example.m_strPacket))
        {
            example.m_strFault = maker.getFault().m_strPath + ": " + maker.getFault().m_strMessage + ".";
            continue;
        }
        if (CPacketReader(layout).check(example.m_strPacket) && !example.m_strPacket.empty())
            return example;
        example.m_strPacket.clear();
    }
    return example;
}

}  // namespace murv::tool

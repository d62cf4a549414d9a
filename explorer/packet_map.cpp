// explorer/packet_map.cpp - reads packets for their places, and walks tree and text side by side.
#include "explorer/packet_map.h"

#include <algorithm>

#include "murv/flags.h"
#include "murv/records.h"
#include "murv/saver.h"

namespace murv::explorer
{

namespace
{
constexpr std::size_t s_cnMostProblems = 500;

class CLeafCollector : public IPacketVisitor
{
public:
    CLeafCollector(const CLayout& layout, std::vector<tLeaf>& leaves) : m_tLayout(layout), m_vLeaves(leaves)
    {
    }
    /// \param end  of the record before, with its mark
    void begin(std::uint64_t end)
    {
        m_ullEnd = end;
        m_bFirst = true;
    }
    void onLeaf(unsigned int part, const tPacketValue&, const tByteRange& place) override
    {
        const std::string_view expression = m_tLayout.getPart(part).m_strvExpression;
        const bool hasLength = m_bFirst || (expression.size() > 2 && expression[2] == 'V');
        const std::uint64_t from = hasLength ? std::min(m_ullEnd, place.m_ullOffset) : place.m_ullOffset;
        m_vLeaves.push_back({static_cast<std::int32_t>(part), static_cast<std::int32_t>(place.m_ullOffset),
                             static_cast<std::int32_t>(place.m_ullLength), static_cast<std::int32_t>(from)});
        m_ullEnd = place.m_ullOffset + place.m_ullLength;
        m_bFirst = false;
    }

private:
    const CLayout& m_tLayout;
    std::vector<tLeaf>& m_vLeaves;
    std::uint64_t m_ullEnd = 0;  // of the last leaf
    bool m_bFirst = true;        // of its record
};

template <typename tRow>
std::vector<std::int32_t> orderByBegin(const std::vector<tRow>& rows)
{
    std::vector<std::int32_t> order;
    order.reserve(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        if (rows[i].m_iBegin != s_ciNone)
            order.push_back(static_cast<std::int32_t>(i));
    }
    const auto isBefore = [&rows](std::int32_t a, std::int32_t b) {
        return rows[static_cast<std::size_t>(a)].m_iBegin < rows[static_cast<std::size_t>(b)].m_iBegin;
    };
    if (!std::is_sorted(order.begin(), order.end(), isBefore))
        std::stable_sort(order.begin(), order.end(), isBefore);
    return order;
}

/// A node that was read, and the same node in the text, which may lack it.
struct tPair
{
    const CFields* m_pRead;
    const CFields* m_pText;
    unsigned int m_uiPart;
};

/// A pair whose members are being walked.
struct tOpen
{
    tPair m_tPair;
    std::int32_t m_iGroup;
    unsigned int m_uiNext = 0;  // index of the next member
    std::size_t m_nMember = 0;  // where to look first among the members of the part
    unsigned int m_uiLast = 0;  // the last of its parts that was there
};

class CTie
{
public:
    CTie(const CLayoutMap& layout, std::string_view text, const tDocument& document, std::vector<tLeaf>& leaves,
         std::vector<tGroup>& groups)
        : m_tLayout(layout), m_strvText(text), m_tDocument(document), m_vLeaves(leaves), m_vGroups(groups)
    {
    }

    void run(const CFields& read)
    {
        open({&read, &m_tDocument.m_tTree, 0}, s_ciNone, s_ciNone);
        while (!m_vOpen.empty())
            step();
    }

private:
    struct tRange
    {
        std::int32_t m_iBegin = s_ciNone;
        std::int32_t m_iValue = s_ciNone;
        std::int32_t m_iEnd = s_ciNone;
    };

    tRange range(const CFields* node) const
    {
        if (node == nullptr)
            return {};
        const CPlaces& places = m_tDocument.m_tPlaces;
        const auto at = [&places](std::size_t byte) { return static_cast<std::int32_t>(places.at(byte)); };
        return {at(memberBegin(m_strvText, *node)), at(static_cast<std::size_t>(node->getOffsetStart())),
                at(static_cast<std::size_t>(node->getOffsetEnd()))};
    }

    void open(const tPair& pair, std::int32_t around, std::int32_t index)
    {
        const tRange place = range(pair.m_pText);
        const auto first = static_cast<std::int32_t>(m_nLeaf);
        m_vGroups.push_back({static_cast<std::int32_t>(pair.m_uiPart), first, first, place.m_iBegin, place.m_iValue,
                             place.m_iEnd, around, index});
        m_vOpen.push_back({pair, static_cast<std::int32_t>(m_vGroups.size()) - 1});
    }

    void step()
    {
        tOpen& top = m_vOpen.back();
        if (top.m_uiNext == top.m_tPair.m_pRead->getChildCount())
        {
            passLeftOut(top, CLayout::s_cuiNoPart);
            m_vGroups[static_cast<std::size_t>(top.m_iGroup)].m_iAfter = static_cast<std::int32_t>(m_nLeaf);
            m_vOpen.pop_back();
            return;
        }
        const unsigned int at = top.m_uiNext++;
        const bool isArray = top.m_tPair.m_pRead->isArray();
        const std::int32_t index = isArray ? static_cast<std::int32_t>(at) : s_ciNone;
        const tPair member = member4(top, at, isArray);
        if (member.m_uiPart == CLayout::s_cuiNoPart)
            return;
        passLeftOut(top, member.m_uiPart);
        top.m_uiLast = member.m_uiPart;
        const bool isLeaf = m_tLayout.layout().getPart(member.m_uiPart).m_eKind == LP_leaf;
        if (isLeaf)
            leaf(member, top.m_iGroup, index);
        else
            open(member, top.m_iGroup, index);
    }

    tPair member4(tOpen& top, unsigned int at, bool isArray) const
    {
        const CFields& read = top.m_tPair.m_pRead->getChildAt(at);
        const CFields* const around = top.m_tPair.m_pText;
        const std::vector<unsigned int>& members = m_tLayout.members(top.m_tPair.m_uiPart);
        if (isArray)
        {
            const bool is = around != nullptr && around->isArray() && at < around->getChildCount();
            return {&read, is ? &around->getChildAt(at) : nullptr,
                    members.empty() ? CLayout::s_cuiNoPart : members.front()};
        }
        const std::string_view name(read.getName(), read.getNameLen());
        const unsigned int part = m_tLayout.findMember(top.m_tPair.m_uiPart, name, read.getID(), top.m_nMember);
        ++top.m_nMember;
        return {&read, inText(around, name, read.getID(), at), part};
    }

    /// The member of the text, which usually is at the same place.
    static const CFields* inText(const CFields* around, std::string_view name, unsigned int id, unsigned int hint)
    {
        if (around == nullptr || !around->isField())
            return nullptr;
        const auto is = [&](const CFields& node) {
            const std::string_view own(node.getName(), node.getNameLen());
            return name.empty() && own.empty() ? node.getID() == id : own == name;
        };
        if (hint < around->getChildCount() && is(around->getChildAt(hint)))
            return &around->getChildAt(hint);
        for (unsigned int i = 0; i < around->getChildCount(); ++i)
        {
            if (is(around->getChildAt(i)))
                return &around->getChildAt(i);
        }
        return nullptr;
    }

    unsigned int nextPart() const
    {
        return static_cast<unsigned int>(m_vLeaves[m_nLeaf].m_iPart);
    }

    /// Passes members of a group that trees leave out, up to a part.
    void passLeftOut(tOpen& group, unsigned int before)
    {
        const auto isMember = [&](unsigned int part) {
            return part > group.m_uiLast && part < before && m_tLayout.isLeftOut(part) &&
                   m_tLayout.layout().getPart(part).m_uiParent == group.m_tPair.m_uiPart;
        };
        while (m_nLeaf < m_vLeaves.size() && isMember(nextPart()))
        {
            group.m_uiLast = nextPart();
            m_vLeaves[m_nLeaf++].m_iGroup = group.m_iGroup;
        }
    }

    /// The next leaf, when it is of that part.
    void leaf(const tPair& pair, std::int32_t group, std::int32_t index)
    {
        if (m_nLeaf == m_vLeaves.size() || nextPart() != pair.m_uiPart)
            return;
        tLeaf& leaf = m_vLeaves[m_nLeaf++];
        const tRange place = range(pair.m_pText);
        leaf.m_iBegin = place.m_iBegin;
        leaf.m_iValue = place.m_iValue;
        leaf.m_iEnd = place.m_iEnd;
        leaf.m_iGroup = group;
        leaf.m_iIndex = index;
    }

    const CLayoutMap& m_tLayout;
    std::string_view m_strvText;
    const tDocument& m_tDocument;
    std::vector<tLeaf>& m_vLeaves;
    std::vector<tGroup>& m_vGroups;
    std::vector<tOpen> m_vOpen;
    std::size_t m_nLeaf = 0;
};
}  // namespace

void CPacketMap::note(const tPacketFault& fault)
{
    if (m_vProblems.size() < s_cnMostProblems)
        m_vProblems.push_back({fault});
    else
        ++m_ullMoreProblems;
}

/// Goes on after damaged records where their ends are known. What lies between a fault and the next record is unread.
void CPacketMap::readRecords(const CLayout& layout, std::string_view bytes)
{
    CRecordReader reader(layout);
    reader.open(bytes);
    CLeafCollector leaves(layout, m_vLeaves);
    std::size_t pending = m_vProblems.size();  // the last fault, when it is in the list
    bool isPending = false;
    bool goesOn = true;
    while (goesOn)
    {
        leaves.begin(reader.getCounts().m_ullBytes);
        const E_RecordResult result = reader.next(leaves);
        const bool hasBegun = result == RR_record || result == RR_fault;
        if (isPending && pending < m_vProblems.size())
            m_vProblems[pending].m_ullUnreadEnd = hasBegun && reader.getRecord().m_uiPart != CLayout::s_cuiNoPart
                                                      ? reader.getRecord().m_ullOffset
                                                      : bytes.size();
        for (const tPacketFault& finding : reader.getFindings())
            note(finding);
        isPending = result == RR_fault;
        if (!isPending)
        {
            goesOn = hasBegun;
            continue;
        }
        const tPacketFault& fault = reader.getFault();
        pending = m_vProblems.size();
        note(fault);
        if (pending < m_vProblems.size())
            m_vProblems[pending].m_ullUnread = fault.m_ullOffset + fault.m_ullLength;
        goesOn = reader.skip();
        if (!goesOn && pending < m_vProblems.size())
            m_vProblems[pending].m_ullUnreadEnd = bytes.size();
    }
}

void CPacketMap::read(const CLayoutMap& layout, std::string_view bytes)
{
    m_vLeaves.clear();
    m_vGroups.clear();
    m_vProblems.clear();
    m_ullMoreProblems = 0;
    readRecords(layout.layout(), bytes);
    CPacketReader reader(layout.layout());
    const bool isWhole = reader.read(bytes, m_tTree);
    m_tMake = reader.getMakeOptions();
    const bool isKnown = !m_vProblems.empty() && !isFinding(m_vProblems.back().m_tFault.m_eCode);
    if (!isWhole && !isKnown)
        note(reader.getFault());
}

std::string CPacketMap::text() const
{
    CSaver4SER_HFW saver;
    saver.setSCBC(SCBC_SECOND_VALUE | SCBC_LOSSLESS | SCBC_ONE_LINE_ARRAY | SCBC_FINAL_NEWLINE);
    return saver.saving(m_tTree);
}

void CPacketMap::tie(const CLayoutMap& layout, std::string_view text, const tDocument& document)
{
    m_vGroups.clear();
    CTie(layout, text, document, m_vLeaves, m_vGroups).run(m_tTree);
    m_vLeafOrder = orderByBegin(m_vLeaves);
    m_vGroupOrder = orderByBegin(m_vGroups);
}

}  // namespace murv::explorer

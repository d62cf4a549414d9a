// tools/sample_maker.cpp - builds data, makes it, mends what is refused, and reads the result.
#include "tools/sample_maker.h"

#include <algorithm>

#include "murv/path.h"
#include "tools/packet_leaf.h"

namespace murv::tool
{

namespace
{
constexpr unsigned int s_cuiTries = 60;      // for a sample
constexpr unsigned int s_cuiPlainFrom = 30;  // from this one on, plain values
constexpr unsigned int s_cuiEmptyFrom = 50;  // from this one on, as little as possible
constexpr unsigned int s_cuiMost = 200;      // values that are mended in a sample
constexpr unsigned int s_cuiWild = 3;        // times that a value may be as wild as before

tSampleStyle style4Try(unsigned int number, std::uint64_t elements, CSampleRandom& random)
{
    constexpr unsigned int shares[] = {10, 50, 50, 90};
    tSampleStyle style;
    style.m_uiOptional = shares[random.below(4)];
    style.m_ullElements = number < s_cuiPlainFrom ? elements : std::min<std::uint64_t>(elements, 2);
    style.m_bPlain = number >= s_cuiPlainFrom;
    style.m_eSize = number >= s_cuiEmptyFrom ? SZ_empty : SZ_any;
    return style;
}
}  // namespace

CSampleMaker::CSampleMaker(const CLayout& layout, std::uint64_t elements)
    : m_tPlan(layout), m_ullElements(elements), m_tMaker(layout), m_tReader(layout)
{
}

bool CSampleMaker::make(std::uint64_t seed, tSample& sample)
{
    sample.m_ullSeed = seed;
    CSampleRandom random(seed);
    for (unsigned int i = 0; i < s_cuiTries; ++i)
    {
        if (makeOnce(style4Try(i, m_ullElements, random), random, sample))
            return true;
    }
    return false;
}

bool CSampleMaker::makeOnce(const tSampleStyle& style, CSampleRandom& random, tSample& sample)
{
    CFields tree;
    CSampleTree builder(m_tPlan, random);
    builder.build(style, tree);
    std::string last;
    unsigned int again = 0;
    for (unsigned int i = 0; i < s_cuiMost; ++i)
    {
        const bool isMade = m_tMaker.make(tree, sample.m_strPacket);
        if (isMade && m_tMaker.getFindings().empty())
            return !sample.m_strPacket.empty() && verify(sample);
        m_tFault = isMade ? m_tMaker.getFindings().front() : m_tMaker.getFault();
        again = m_tFault.m_strPath == last ? again + 1 : 0;
        last = m_tFault.m_strPath;
        tSampleStyle calmer = style;
        calmer.m_bPlain = style.m_bPlain || again >= s_cuiWild;
        if (again > 4 * s_cuiWild || !mend(m_tFault, calmer, builder, tree))
            return false;
    }
    return false;
}

/// Changes the data where it was refused. \return false when that is not known
bool CSampleMaker::mend(const tPacketFault& fault, const tSampleStyle& style, CSampleTree& builder, CFields& tree) const
{
    const unsigned int part = m_tPlan.layout().findPart(pathInLayout(fault.m_strPath));
    tNodePath path = parsePath(fault.m_strPath, PO_none);
    if (part == CLayout::s_cuiNoPart || path.m_pError != nullptr || path.m_vStep.empty())
        return false;
    CFields* const node = find(tree, path);
    if (node == nullptr)
        return false;
    if (fault.m_eCode == PF_unwanted)
    {
        const std::string name(node->getName(), node->getNameLen());
        path.m_vStep.pop_back();
        CFields* const around = path.m_vStep.empty() ? &tree : find(tree, path);
        return around != nullptr && around->removeChildAt(name);
    }
    if (m_tPlan[part].m_tPart.m_eKind != LP_leaf || m_tPlan[part].m_tPart.m_bComputed)
        return false;
    builder.renew(part, style, *node);
    return true;
}

/// Reads the packet, and makes it again.
bool CSampleMaker::verify(tSample& sample)
{
    if (!m_tReader.read(sample.m_strPacket, sample.m_tTree))
    {
        m_tFault = m_tReader.getFault();
        return false;
    }
    if (!m_tReader.getFindings().empty())
    {
        m_tFault = m_tReader.getFindings().front();
        return false;
    }
    return m_tMaker.make(sample.m_tTree, m_strAgain) && m_strAgain == sample.m_strPacket;
}

}  // namespace murv::tool

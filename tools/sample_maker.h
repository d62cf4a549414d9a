// tools/sample_maker.h - packets that a layout accepts, with no finding.
#pragma once

#include <cstdint>
#include <string>

#include "murv/layout.h"
#include "tools/sample_tree.h"

namespace murv::tool
{

struct tSample
{
    std::uint64_t m_ullSeed = 0;
    std::string m_strPacket;
    CFields m_tTree;  // as reading gives it: all that was filled in is there
};

/// Makes samples. Each is read again, with no finding, and made again from what was read, byte for byte.
class CSampleMaker
{
public:
    /// \param elements  most elements of an array
    CSampleMaker(const CLayout& layout, std::uint64_t elements);

    /// The sample of a seed, which is the same on every machine.
    /// \return false when no data was found that the layout takes; see getFault()
    bool make(std::uint64_t seed, tSample& sample);
    /// Why the last try failed.
    const tPacketFault& getFault() const
    {
        return m_tFault;
    }
    const CSamplePlan& plan() const
    {
        return m_tPlan;
    }

private:
    bool makeOnce(const tSampleStyle& style, CSampleRandom& random, tSample& sample);
    bool mend(const tPacketFault& fault, const tSampleStyle& style, CSampleTree& builder, CFields& tree) const;
    bool verify(tSample& sample);

    CSamplePlan m_tPlan;
    std::uint64_t m_ullElements;
    CPacketMaker m_tMaker;
    CPacketReader m_tReader;
    std::string m_strAgain;
    tPacketFault m_tFault;
};

}  // namespace murv::tool

// tools/sample_damage.h - packets with one change that the codec refuses or finds.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/sample_maker.h"

namespace murv::tool
{

/// A packet that does not fit, and what reading says of it.
struct tDamagedSample
{
    const char* m_pChange = "";     // a word, from the table of changes
    std::uint64_t m_ullOffset = 0;  // of the change, in the packet
    std::string m_strPacket;
    tPacketFault m_tFault;                 // PF_none when there are findings only
    std::vector<tPacketFault> m_vFinding;  // in the order of the packet
};

/// Damages samples. Changes that reading does not notice are not kept.
class CSampleDamager
{
public:
    explicit CSampleDamager(const CSamplePlan& plan) : m_tPlan(plan), m_tReader(plan.layout())
    {
    }

    /// \return false when no change was noticed
    bool damage(const tSample& sample, tDamagedSample& damaged);

private:
    bool isNoticed(tDamagedSample& damaged);

    const CSamplePlan& m_tPlan;
    CPacketReader m_tReader;
};

}  // namespace murv::tool

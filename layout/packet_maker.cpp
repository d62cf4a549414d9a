// layout/packet_maker.cpp - making packets from trees.
#include "layout/run/fault_words.h"
#include "layout/run/maker.h"
#include "layout/sinks.h"
#include "murv/layout.h"

namespace murv
{

using namespace detail;

struct CPacketMaker::tState
{
    tState(const CLayout& layout, const tMakeOptions& options)
        : m_pPlan(layout.getPlan()), m_tOptions(options), m_tMaker(*m_pPlan)
    {
    }

    std::shared_ptr<const tPlan> m_pPlan;
    tMakeOptions m_tOptions;
    CMaker m_tMaker;
    tPacketFault m_tFault;
    std::vector<tPacketFault> m_vFindings;
};

CPacketMaker::CPacketMaker(const CLayout& layout, const tMakeOptions& options)
{
    requireCompiled(layout, "murv::CPacketMaker::CPacketMaker");
    m_pState = std::make_unique<tState>(layout, options);
}

CPacketMaker::CPacketMaker(CPacketMaker&&) noexcept = default;
CPacketMaker& CPacketMaker::operator=(CPacketMaker&&) noexcept = default;
CPacketMaker::~CPacketMaker() = default;

bool CPacketMaker::make(const CFields& tree, std::string& packet)
{
    tState& state = *m_pState;
    bool isMade = false;
    try
    {
        isMade = state.m_tMaker.make(tree, state.m_tOptions, packet);
    }
    catch (...)
    {
        packet.clear();
        throw;
    }
    if (state.m_tFault.m_eCode != PF_none)
        state.m_tFault = tPacketFault();
    state.m_vFindings.clear();
    for (const tScanFault& finding : state.m_tMaker.findings())
        state.m_vFindings.push_back(
            describe(*state.m_pPlan, finding,
                     std::string_view(packet).substr(static_cast<std::size_t>(finding.m_ullOffset),
                                                     static_cast<std::size_t>(finding.m_ullLength))));
    if (isMade)
        return true;
    state.m_tFault = describe(*state.m_pPlan, state.m_tMaker.fault(), state.m_tMaker.faultBytes());
    if (state.m_tFault.m_eCode == PF_unknown && !state.m_tMaker.unknownName().empty())
        state.m_tFault.m_strMessage = state.m_tMaker.unknownWords();
    packet.clear();
    return false;
}

const tPacketFault& CPacketMaker::getFault() const
{
    return m_pState->m_tFault;
}

const std::vector<tPacketFault>& CPacketMaker::getFindings() const
{
    return m_pState->m_vFindings;
}

}  // namespace murv

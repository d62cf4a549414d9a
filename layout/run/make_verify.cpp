// layout/run/make_verify.cpp - what was made is read again, where reading could take it for something else.
#include <algorithm>

#include "layout/run/maker.h"

namespace murv::detail
{

/// Reads the packet again: every part must be where it was made.
bool CMaker::verify()
{
    m_tScanner.reset();
    m_tScanner.show(m_pOut->data(), 0, m_pOut->size(), true);
    E_Scan result = SC_record;
    while (result == SC_record)
        result = m_tScanner.run();
    if (!isReadSo(m_tScanner, 0, 0))
        return false;
    if (result == SC_fault || m_tScanner.position() != m_pOut->size())
    {
        m_tFault = m_tScanner.fault();
        m_tFault.m_uiPart = result == SC_fault ? m_tFault.m_uiPart : 0;
        m_tFault.m_eCode = PF_ambiguous;
        m_tFault.m_pText = nullptr;
        return false;
    }
    return true;
}

bool CMaker::isReadSo(const CScanner& scanner, std::size_t from, std::uint64_t base)
{
    const tTraces& read = scanner.trace();
    const auto same = [base](const tTrace& a, const tTrace& b) {
        return a.m_eTrace == b.m_eTrace && a.m_uiIndex == b.m_uiIndex && a.m_ullOffset + base == b.m_ullOffset &&
               a.m_ullLength == b.m_ullLength;
    };
    const auto first = read.begin() + static_cast<std::ptrdiff_t>(from);
    const auto [made, found] = std::mismatch(m_vTrace.begin(), m_vTrace.end(), first, read.end(), same);
    if (made == m_vTrace.end() && found == read.end())
        return true;
    if (found == read.end() && scanner.fault().m_eCode == PF_callback)
    {
        m_tFault = scanner.fault();
        return false;
    }
    tTrace at{TR_open, 0, 0, 0};
    if (made != m_vTrace.end())
        at = *made;
    const unsigned int part =
        at.m_eTrace == TR_run ? m_tPlan.m_vRuns[at.m_uiIndex].m_vFields.front().m_uiPart : at.m_uiIndex;
    m_tFault = {PF_ambiguous, part, at.m_ullOffset + base, at.m_ullLength, 0, 0, 0, nullptr, {}};
    for (auto trace = m_vTrace.begin(); trace != made; ++trace)
    {
        if (trace->m_eTrace == TR_array)
            m_tFault.m_vElements.push_back(~std::uint64_t{0});
        else if (trace->m_eTrace == TR_element)
            ++m_tFault.m_vElements.back();
        else if (trace->m_eTrace == TR_arrayEnd)
            m_tFault.m_vElements.pop_back();
    }
    return false;
}

}  // namespace murv::detail

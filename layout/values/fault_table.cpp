// layout/values/fault_table.cpp - name, sentence and weight of a reason.
//
// A number without a row has no words; a caller may have cast it.
#include "layout/values/fault_table.h"

namespace murv
{

const char* getFaultName(E_PacketFault fault)
{
    return fault < std::size(detail::s_ctFaults) ? detail::s_ctFaults[fault].m_pName : "";
}

const char* getFaultSentence(E_PacketFault fault)
{
    return fault < std::size(detail::s_ctFaults) ? detail::s_ctFaults[fault].m_pSentence : "";
}

bool isFinding(E_PacketFault fault)
{
    return fault < std::size(detail::s_ctFaults) && detail::s_ctFaults[fault].m_bFinding;
}

}  // namespace murv

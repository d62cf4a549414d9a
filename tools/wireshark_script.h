// tools/wireshark_script.h - a dissector for Wireshark: tables of a layout, and the engine that reads by them.
//
// The engine is the same for all layouts; it is in tools/wireshark/ as Lua. What differs between layouts is data.
#pragma once

#include <string>

#include "murv/layout.h"

namespace murv::tool
{

struct tWiresharkOptions
{
    std::string m_strLayout;    // what the layout is called
    std::string m_strProtocol;  // what filters call it; a protocol name
    unsigned int m_uiPort = 0;  // 0: none
    bool m_bUdp = true;
    bool m_bTcp = true;
    bool m_bTcpAsked = false;  // a layout that cannot be read from streams is refused, not made for UDP only
};

/// \param script  the whole Lua file
/// \return why there can be none, as one sentence without a full stop; empty when there is one
std::string makeWiresharkScript(const CLayout& layout, tWiresharkOptions options, std::string& script);

}  // namespace murv::tool

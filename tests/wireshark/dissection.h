// tests/wireshark/dissection.h - what tshark shows of packets by a dissector that the tool wrote.
//
// Packets become a capture by text2pcap, and tshark writes what it shows as XML, one item a line.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace murv::tests
{

/// Whether tshark and text2pcap are there. Says so on the standard error stream when they are not.
bool hasTshark();

/// An item of the tree.
struct tShownItem
{
    std::string m_strField;  // filter name; empty for plain text
    std::string m_strLabel;
    std::string m_strValue;  // as filters know it
    std::uint64_t m_ullOffset = 0;
    std::uint64_t m_ullLength = 0;
    bool m_bOfBits = false;  // a small number in the item before it
    bool m_bFault = false;   // says what is wrong, and is no part of the packet
};

/// A place with a fault or a finding.
struct tShownPlace
{
    std::uint64_t m_ullOffset = 0;
    std::uint64_t m_ullLength = 0;

    bool operator==(const tShownPlace&) const = default;
};

struct tShownPacket
{
    std::vector<tShownItem> m_vItems;
    std::vector<tShownPlace> m_vFaults;
    std::vector<tShownPlace> m_vFindings;
};

struct tCaptureOptions
{
    bool m_bTcp = false;                    // each packet is a segment of one stream
    std::string m_strProtocol = "zz";       // that the dissector is made for; its port is 5000
    std::vector<std::string> m_vGenerate;   // more options of the tool
    std::string m_strFilter;                // only packets that it lets through
    std::string m_strShownProtocol = "zz";  // that is looked for in the result
};

/// Makes a dissector of a layout, by name or file, and shows packets by it. Fails the test on errors of Lua.
std::vector<tShownPacket> dissect(const std::string& layout, const std::vector<std::string>& packets,
                                  const tCaptureOptions& options = {});

}  // namespace murv::tests

// checksum_keyword.cpp - a keyword of one's own: a checksum over the packet before it.
//
// While a packet is made, the callback sees what was made so far and gives the checksum item its value. While a packet
// is checked, another callback sees the bytes and compares.

#include <cstring>
#include <iostream>
#include <string>
#include <string_view>

#include "murv/murv.h"

namespace
{

constexpr unsigned char s_cucKind = 1;       // of the 15 kinds that applications may use
constexpr unsigned short s_cusChecksum = 1;  // our only keyword of that kind
constexpr const char* s_cpChecksum = "checksum";

/// The sum of all bytes, in three decimal digits.
unsigned int checksumOf(std::string_view bytes)
{
    unsigned int sum = 0;
    for (const char byte : bytes)
        sum += static_cast<unsigned char>(byte);
    return sum % 1000;
}

/// Text to keyword: lets a definition say "(ANF3checksum)".
int getIndex(const char* text, unsigned char)
{
    return std::strcmp(text, s_cpChecksum) == 0 ? s_cusChecksum : 0;
}

/// Keyword to text: lets a saver write it again.
const char* getText(unsigned short index, unsigned char)
{
    return index == s_cusChecksum ? s_cpChecksum : nullptr;
}

/// Making: the node gets its value from the packet so far.
int make(unsigned short, unsigned char, murv::CFields& node)
{
    node = checksumOf(*node.pkt_GetISA4ESK().madePacket());
    return 1;
}

/// Parsing: nothing to prepare.
int prepare(unsigned short, unsigned char, murv::CFields&)
{
    return 1;
}

/// Checking: runs only when the item lies within the packet.
int check(unsigned short, unsigned char, murv::CFields& node)
{
    const murv::tInnerSupportedArgs4ESK& around = node.pkt_GetISA4ESK();
    const std::string_view packet(around.givenPacket(), around.m_uiPacketLen);
    const std::string_view item = packet.substr(around.m_uiOffset, node.pkt_GetExp().m_uiLength);
    unsigned long long stated = 0;
    return murv::aton64(item.data(), static_cast<unsigned int>(item.size()), stated) &&
                   stated == checksumOf(packet.substr(0, around.m_uiOffset))
               ? 1
               : 0;
}

constexpr const char* s_cpDefinition = R"({
  "kind" = (ACF2) "HB",
  "serial" = (ANF6) 42,
  "size" = (ANF3sizeset_1),
  "note" = (ACD0sizedef_1) "all is well",
  "check" = (ANF3checksum)
})";

unsigned int failed(murv::CFields& tree, const std::string& packet)
{
    return tree.pkt_DetailCheck4Children(packet.data(), static_cast<unsigned int>(packet.size()));
}

}  // namespace

int main()
{
    murv::CFields::setGetIdxFP4ESK(s_cucKind, &getIndex);
    murv::CFields::setGetTxtFP4ESK(s_cucKind, &getText);
    murv::CFields::setAllotPktFP4ESK(s_cucKind, &make);
    murv::CFields::setParsePktFP4ESK(s_cucKind, &prepare);
    murv::CFields::setCheckPktFP4ESK(s_cucKind, &check);

    murv::CFields tree;
    murv::CLoaders loader;
    if (!loader.loading(s_cpDefinition, tree))
    {
        std::cerr << loader.getLastErrMsg();
        return 1;
    }

    std::string packet = tree.pkt_Make4Children(true);
    std::cout << "packet:    " << packet << "\n";
    std::cout << "checksum:  " << tree["check"].asUint32() << "\n";
    std::cout << "failed:    " << failed(tree, packet) << "\n";

    murv::CFields received;
    loader.loading(s_cpDefinition, received);
    const int left = received.pkt_Parse4Children(packet.data(), static_cast<unsigned int>(packet.size()), true);
    std::cout << "bytes left " << left << ", note: " << received["note"].asString() << "\n";

    packet[4] = '7';  // a digit of the serial number goes wrong
    std::cout << "damaged:   " << packet << "\n";
    std::cout << "failed:    " << failed(tree, packet) << "\n";
    return 0;
}

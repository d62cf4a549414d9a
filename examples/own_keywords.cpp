// own_keywords.cpp - items of a layout that only an application understands: a number of seven bits a byte, whose end a
// callback finds, and a check that no rule knows.
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>

#include "murv/layout.h"
#include "murv/murv.h"

namespace
{

constexpr unsigned char s_cucKind = 1;                           // of the 14 kinds that applications may use in layouts
constexpr const char* s_cpNames[] = {"", "sevenBits", "adler"};  // by index
enum E_Keyword : unsigned short
{
    KW_sevenBits = 1,
    KW_adler = 2,
};

constexpr const char* s_cpLayout = R"({
  "@" = "layout 1",
  "kind" = (ACF2fix) "LG",
  "serial" = (BCF0sevenBits) "\x00",
  "text" = (ACV2+2) "",
  "check" = (BNF4adler) 0
})";

/// A check of 32 bits over all bytes.
unsigned int adlerOf(std::string_view bytes)
{
    unsigned int a = 1;
    unsigned int b = 0;
    for (const char byte : bytes)
    {
        a = (a + static_cast<unsigned char>(byte)) % 65521;
        b = (b + a) % 65521;
    }
    return b << 16 | a;
}

/// Text to keyword, and back.
int getIndex(const char* text, unsigned char)
{
    for (int index = KW_sevenBits; index <= KW_adler; ++index)
    {
        if (std::strcmp(text, s_cpNames[index]) == 0)
            return index;
    }
    return 0;
}

const char* getText(unsigned short index, unsigned char)
{
    return index <= KW_adler ? s_cpNames[index] : nullptr;
}

/// Making: the check gets its value from the record so far.
int make(unsigned short index, unsigned char, murv::CFields& node)
{
    if (index == KW_adler)
        node = adlerOf(*node.pkt_GetISA4ESK().madePacket());
    return 1;
}

/// Reading, before the item is read: finds where it ends, or compares. The item may end after the bytes that are there.
int parse(unsigned short index, unsigned char, murv::CFields& node)
{
    const murv::tInnerSupportedArgs4ESK& around = node.pkt_GetISA4ESK();
    const std::string_view record(around.givenPacket(), around.m_uiPacketLen);
    const std::string_view rest = record.substr(around.m_uiOffset);
    if (index == KW_sevenBits)
    {
        for (unsigned int i = 0; i < rest.size(); ++i)
        {
            if (static_cast<unsigned char>(rest[i]) >= 128)
                continue;
            murv::tPacketExpInfo pei = node.pkt_GetExp();
            pei.m_uiLength = i + 1;
            node.pkt_SetExp(pei);
            return 1;
        }
        return 0;
    }
    unsigned int check = 0;
    for (const char byte : rest.substr(0, 4))
        check = check << 8 | static_cast<unsigned char>(byte);
    return rest.size() >= 4 && check == adlerOf(record.substr(0, around.m_uiOffset)) ? 1 : 0;
}

/// What the item of seven bits a byte means; the codec gives its bytes.
unsigned int number4(std::string_view bytes)
{
    unsigned int number = 0;
    for (const char byte : bytes)
        number = number << 7 | (static_cast<unsigned char>(byte) & 127U);
    return number;
}

void show(const murv::CLayout& layout, const std::string& packet)
{
    murv::CPacketReader reader(layout);
    murv::CFields message;
    if (reader.read(packet, message))
        std::cout << number4(message["serial"].asString()) << ": " << message["text"].asString() << "\n";
    else
        std::cout << reader.getFault().m_strPath << ": " << reader.getFault().m_strMessage << "\n";
}

}  // namespace

int main()
{
    // Before the layout is loaded: its text names the keywords.
    murv::CFields::setGetIdxFP4ESK(s_cucKind, &getIndex);
    murv::CFields::setGetTxtFP4ESK(s_cucKind, &getText);
    murv::CFields::setAllotPktFP4ESK(s_cucKind, &make);
    murv::CFields::setParsePktFP4ESK(s_cucKind, &parse);

    murv::CLayout layout;
    if (!layout.compile(s_cpLayout))
    {
        std::cout << layout.getMistakes().front().m_strMessage << "\n";
        return 1;
    }
    murv::CFields message;
    message.addChildRef("serial") = "\x83\x07";
    message.addChildRef("text") = "all is well";
    std::string packet;
    murv::CPacketMaker maker(layout);
    if (!maker.make(message, packet))
    {
        std::cout << maker.getFault().m_strPath << ": " << maker.getFault().m_strMessage << "\n";
        return 1;
    }
    show(layout, packet);
    packet[7] = 'o';  // a letter goes wrong
    show(layout, packet);
    return 0;
}

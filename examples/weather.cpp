// weather.cpp - reads and makes the messages of a weather station by a layout, weather.murv.
//
// docs/layouts.md shows how the layout came about.
#include <cstdint>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

#include "murv/layout.h"
#include "murv/murv.h"

namespace
{

std::string contentOf(const std::string& path)
{
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// Reads a message and prints it, or says what is wrong with it.
bool show(const murv::CLayout& layout, std::string_view bytes)
{
    murv::CPacketReader reader(layout);
    murv::CFields message;
    if (!reader.read(bytes, message))
    {
        const murv::tPacketFault& fault = reader.getFault();
        std::cout << fault.m_strPath << " at byte " << fault.m_ullOffset << ": " << fault.m_strMessage << "\n";
        return false;
    }
    for (const murv::tPacketFault& finding : reader.getFindings())
        std::cout << finding.m_strPath << ": " << finding.m_strMessage << "\n";
    std::cout << message.toMURV(murv::ER_SER_PKT) << "\n";
    return true;
}

std::string makeMessage(const murv::CLayout& layout)
{
    murv::CFields message;
    message.addChildRef("station") = 1002;
    murv::CFields reading;
    reading.addChildRef("channel") = 1;
    reading.addChildRef("value").addChildRef("number") = -3.5;
    message.addChildRef("readings").addArrayAt(reading);
    message.addChildRef("name") = "Gate";
    std::string packet;
    murv::CPacketMaker maker(layout);
    if (!maker.make(message, packet))
        std::cout << maker.getFault().m_strPath << ": " << maker.getFault().m_strMessage << "\n";
    return packet;
}

/// Prints the numbers of a message, without making a tree of it.
void showNumbers(const murv::CLayout& layout, const std::string& packet)
{
    murv::CPacketView view(layout);
    const unsigned int readings = layout.findPart("readings");
    const unsigned int number = layout.findPart("readings.value.number");
    if (!view.open(packet))
        return;
    for (std::uint64_t i = 0; i < view.getCount(readings, view.getAll()); ++i)
    {
        const murv::CPacketView::tScope scope = view.getElement(readings, i, view.getAll());
        murv::tPacketValue value;
        if (view.getValue(number, scope, value) == murv::PF_none)
            std::cout << "reading " << i << ": " << value.m_strvText << "\n";
    }
}

}  // namespace

int main()
{
    murv::CLayout layout;
    if (!layout.compile(contentOf("weather.murv")))
    {
        for (const murv::tLayoutMistake& mistake : layout.getMistakes())
            std::cout << mistake.m_uiOffset << ": " << mistake.m_strMessage << "\n";
        return 1;
    }

    std::string packet = makeMessage(layout);
    std::cout << packet.size() << " bytes\n";
    show(layout, packet);
    showNumbers(layout, packet);

    packet[6] = '\x07';  // a byte of the station's number: only the checksum can tell
    show(layout, packet);
    packet[13] = '\x09';  // the kind of the first reading
    show(layout, packet);
    return 0;
}

// tests/layout/stock/captures_test.cpp - captures, and the messages in them, compared with what tcpdump prints of them.
#include <ctime>

#include "tests/layout/stock/stock_helpers.h"

namespace murv::tests
{

namespace
{

/// A datagram of a capture: when, and the bytes that UDP carried.
struct tDatagram
{
    std::string m_strTime;
    std::string m_strBytes;
};

std::string timeOf(const CFields& packet)
{
    const auto seconds = static_cast<std::time_t>(std::stoll(at(packet, "seconds")));
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    char text[64];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S.", &parts);
    const std::string micros = at(packet, "microseconds");
    return std::string(text, length) + std::string(6 - micros.size(), '0') + micros;
}

/// Takes Ethernet, IPv4 and UDP off.
std::string payload(const std::string& frame)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(frame[i]); };
    const std::size_t udp = 14 + (byte(14) & 15U) * 4U;
    const std::size_t length = byte(udp + 4) * 256U + byte(udp + 5);
    return frame.substr(udp + 8, length - 8);
}

std::vector<tDatagram> datagrams(const std::string& name)
{
    const CFields tree = thereAndBack(installed("pcap"), sample("captures/" + name));
    EXPECT_EQ(at(tree, "little.header.link type"), "1");
    std::vector<tDatagram> all;
    for (const CFields& packet : *nodeAt(tree, "little.packets"))
    {
        EXPECT_EQ(at(packet, "captured"), at(packet, "length"));
        all.push_back({timeOf(packet), payload(at(packet, "data"))});
    }
    return all;
}

/// What stands between two texts in a line; empty when they are not there.
std::string between(const std::string& line, const std::string& before, const std::string& after)
{
    const std::size_t begin = line.find(before);
    if (begin == std::string::npos)
        return {};
    const std::size_t from = begin + before.size();
    return line.substr(from, line.find(after, from) - from);
}

void expectHello(const CFields& message, const std::string& line)
{
    static const std::map<std::string, std::string> states = {{"initial", "0"}, {"learn", "1"},   {"listen", "2"},
                                                              {"speak", "4"},   {"standby", "8"}, {"active", "16"}};
    static const std::map<std::string, std::string> opcodes = {{"hello", "0"}, {"coup", "1"}, {"resign", "2"}};
    EXPECT_EQ(at(message, "opcode"), opcodes.at(between(line, "HSRPv0-", " ")));
    EXPECT_EQ(at(message, "body.state.state"), states.at(between(line, "state=", " ")));
    EXPECT_EQ(at(message, "body.state.group"), between(line, "group=", " "));
    EXPECT_EQ(at(message, "body.state.hello time"), between(line, "hellotime=", "s"));
    EXPECT_EQ(at(message, "body.state.hold time"), between(line, "holdtime=", "s"));
    EXPECT_EQ(at(message, "body.state.priority"), between(line, "priority=", " "));
    EXPECT_EQ(at(message, "body.state.authentication"), between(line, "auth=\"", "\""));
    const std::string address = "body.state.address.";
    EXPECT_EQ(at(message, address + "a") + "." + at(message, address + "b") + "." + at(message, address + "c") + "." +
                  at(message, address + "d"),
              between(line, "addr=", " "));
}

}  // namespace

TEST(Captures, routersAgreeByHSRP)
{
    const std::vector<tDatagram> packets = datagrams("HSRP_coup.pcap");
    const std::vector<std::string> lines = linesOf(sample("captures/hsrp_1-v.out"));
    ASSERT_EQ(lines.size(), 2 * packets.size());
    const CLayout layout = installed("hsrp");
    unsigned int advertisements = 0;
    for (std::size_t i = 0; i < packets.size(); ++i)
    {
        SCOPED_TRACE(lines[2 * i + 1]);
        EXPECT_NE(lines[2 * i].find(packets[i].m_strTime), std::string::npos) << packets[i].m_strTime;
        const CFields message = thereAndBack(layout, packets[i].m_strBytes);
        EXPECT_EQ(at(message, "version"), "0");
        if (lines[2 * i + 1].find("unknown (3)") == std::string::npos)
        {
            expectHello(message, lines[2 * i + 1]);
            continue;
        }
        // The other program does not know this kind, and shows its bytes as a hello that is cut off.
        ++advertisements;
        EXPECT_EQ(at(message, "body.advertisement.length"), "14");
        EXPECT_EQ(packets[i].m_strBytes.size(), 16u);
    }
    EXPECT_EQ(advertisements, 9u);
}

TEST(Captures, clocksAskByNTP)
{
    const std::vector<tDatagram> packets = datagrams("ntp.pcap");
    const std::vector<std::string> lines = linesOf(sample("captures/ntp.out"));
    ASSERT_EQ(lines.size(), packets.size());
    const CLayout layout = installed("ntp");
    for (std::size_t i = 0; i < packets.size(); ++i)
    {
        SCOPED_TRACE(lines[i]);
        EXPECT_NE(lines[i].find(packets[i].m_strTime), std::string::npos) << packets[i].m_strTime;
        const CFields message = thereAndBack(layout, packets[i].m_strBytes);
        EXPECT_EQ(at(message, "flags.version"), between(lines[i], "NTPv", ","));
        EXPECT_EQ(at(message, "flags.mode"), between(lines[i], ", ", ",") == "Client" ? "3" : "4");
        const std::size_t length = std::stoul(between(lines[i], "length ", "\n"));
        EXPECT_EQ(packets[i].m_strBytes.size(), length);
        EXPECT_EQ(nodeAt(message, "authentication") != nullptr, length > 48);
        if (length > 48)
        {
            EXPECT_EQ(at(message, "authentication.digest").size(), length - 52);
        }
    }
    // The first answer refuses, with the word of the protocol for it.
    EXPECT_EQ(at(reading(layout, packets[1].m_strBytes).m_tTree, "reference"), "STEP");
}

TEST(Captures, bothOrdersAndBothUnitsOfTime)
{
    // A header and a packet of one byte, made by hand from the description of the format.
    const std::string big = bytesOf(
        "A1B2C3D4 0002 0004 00000000 00000000 0000FFFF 00000001"
        "00000064 000003E8 00000001 00000040 AB");
    expectValues(thereAndBack(installed("pcap"), big), {{"big.packets.0.seconds", "100"},
                                                        {"big.packets.0.microseconds", "1000"},
                                                        {"big.packets.0.length", "64"},
                                                        {"big.packets.0.data", "\xAB"}});
    std::string nano = big;
    nano.replace(0, 4, bytesOf("A1B23C4D"));
    EXPECT_EQ(at(thereAndBack(installed("pcap"), nano), "big nano.packets.0.nanoseconds"), "1000");
    const std::string little = bytesOf("4D3CB2A1 0200 0400 00000000 00000000 FFFF0000 01000000");
    EXPECT_EQ(at(thereAndBack(installed("pcap"), little), "little nano.header.snap length"), "65535");
}

TEST(Captures, packetThatIsCutOffNeedsMore)
{
    const std::string bytes = sample("captures/ntp.pcap");
    const tReading result = reading(installed("pcap"), bytes.substr(0, bytes.size() - 10));
    EXPECT_EQ(result.m_tFault.m_eCode, PF_more);
    EXPECT_EQ(result.m_tFault.m_ullMissing, 10u);
}

}  // namespace murv::tests

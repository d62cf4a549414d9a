// tests/wireshark/dissection.cpp - runs the tool, text2pcap and tshark, and reads what comes out.
#include "tests/wireshark/dissection.h"

#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

#include "tests/support/subprocess.h"

namespace murv::tests
{

namespace
{

constexpr std::uint64_t s_cullUdpHeaders = 14 + 20 + 8;
constexpr std::uint64_t s_cullTcpHeaders = 14 + 20 + 20;

tRun run(const CTemporaryDirectory& directory, std::vector<std::string> command, const std::string& input = {})
{
    tSurroundings around;
    around.m_strDirectory = directory.path();
    around.m_strInput = input;
    around.m_vEnvironment = {"HOME=" + directory.path(), "LC_ALL=C.UTF-8",
                             "WIRESHARK_EXTCAP_DIR=" + directory.path()};  // looking for devices takes long
    command.insert(command.begin(), "/usr/bin/env");
    return runProgram(command, around);
}

/// Lines of an offset and bytes, as text2pcap reads them.
std::string hexDump(const std::vector<std::string>& packets)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string dump;
    for (const std::string& packet : packets)
    {
        dump += "000000";
        for (const char c : packet)
        {
            const auto byte = static_cast<unsigned char>(c);
            dump.append(1, ' ').append(1, digits[byte >> 4]).append(1, digits[byte & 15U]);
        }
        dump += "\n";
    }
    return dump;
}

std::string withoutEntities(const std::string& text)
{
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        const std::size_t end = text[at] == '&' ? text.find(';', at) : std::string::npos;
        if (end == std::string::npos)
        {
            plain += text[at];
            continue;
        }
        const std::string name = text.substr(at + 1, end - at - 1);
        plain += name == "lt"               ? '<'
                 : name == "gt"             ? '>'
                 : name == "quot"           ? '"'
                 : name == "amp"            ? '&'
                 : name.rfind("#x", 0) == 0 ? static_cast<char>(std::stoi(name.substr(2), nullptr, 16))
                                            : '?';
        at = end;
    }
    return plain;
}

std::string attribute(const std::string& line, const std::string& name)
{
    const std::string begin = " " + name + "=\"";
    const std::size_t at = line.find(begin);
    if (at == std::string::npos)
        return {};
    const std::size_t from = at + begin.size();
    return withoutEntities(line.substr(from, line.find('"', from) - from));
}

/// Reads the XML line by line: packets, protocols, and fields that may hold others.
class CPdmlReader
{
public:
    CPdmlReader(std::string protocol, std::uint64_t headers) : m_strProtocol(std::move(protocol)), m_ullHeaders(headers)
    {
    }

    std::vector<tShownPacket> read(const std::string& xml)
    {
        std::istringstream lines(xml);
        for (std::string line; std::getline(lines, line);)
            readLine(line);
        return std::move(m_vPackets);
    }

private:
    void readLine(const std::string& line)
    {
        if (line.find("<packet>") != std::string::npos)
            m_vPackets.emplace_back();
        else if (line.find("<proto ") != std::string::npos)
            m_bInside = attribute(line, "name") == m_strProtocol;
        else if (line.find("</field>") != std::string::npos && !m_vOpen.empty())
            m_vOpen.pop_back();
        else if (line.find("<field ") != std::string::npos && m_bInside)
            readField(line);
        EXPECT_EQ(line.find("Lua Error"), std::string::npos) << line;
    }

    void readField(const std::string& line)
    {
        tShownItem item;
        item.m_strField = attribute(line, "name");
        item.m_strLabel = attribute(line, "showname");
        item.m_strValue = attribute(line, "show");
        item.m_ullOffset = std::stoull(attribute(line, "pos")) - m_ullHeaders;
        item.m_ullLength = std::stoull(attribute(line, "size"));
        const std::string name = item.m_strField;
        const bool isFault = name == m_strProtocol + ".fault";
        if (isFault || name == m_strProtocol + ".finding")
            addPlace(isFault);
        else if (name.rfind("_ws.expert", 0) != 0)
        {
            if (name.rfind("_ws.", 0) == 0)
                item.m_strField.clear();
            item.m_bOfBits = item.m_strLabel.find(" = ") != std::string::npos &&
                             item.m_strLabel.find_first_not_of("01. ") == item.m_strLabel.find(" = ") + 1;
            m_vPackets.back().m_vItems.push_back(item);
        }
        if (line.find("/>") == std::string::npos)
            m_vOpen.push_back(m_vPackets.back().m_vItems.size());
    }

    /// The item around the expert information.
    void addPlace(bool isFault)
    {
        ASSERT_GE(m_vOpen.size(), 2U);
        tShownPacket& packet = m_vPackets.back();
        tShownItem& about = packet.m_vItems.at(m_vOpen[m_vOpen.size() - 2] - 1);
        about.m_bFault = isFault;
        (isFault ? packet.m_vFaults : packet.m_vFindings).push_back({about.m_ullOffset, about.m_ullLength});
    }

    std::string m_strProtocol;
    std::uint64_t m_ullHeaders;
    std::vector<tShownPacket> m_vPackets;
    std::vector<std::size_t> m_vOpen;  // of what is open: the items up to it, itself included
    bool m_bInside = false;
};

}  // namespace

bool hasTshark()
{
    const CTemporaryDirectory directory;
    if (run(directory, {"tshark", "--version"}).m_iExit == 0 && run(directory, {"text2pcap", "-v"}).m_iExit == 0)
        return true;
    std::cerr << "tshark is not installed (Debian: tshark): dissectors are not tested\n";
    return false;
}

std::vector<tShownPacket> dissect(const std::string& layout, const std::vector<std::string>& packets,
                                  const tCaptureOptions& options)
{
    const CTemporaryDirectory directory;
    std::vector<std::string> generate = {MURV_TOOL_PATH, "gen",    "wireshark",           layout, "--port",
                                         "5000",         "--name", options.m_strProtocol, "-o",   "it.lua"};
    generate.insert(generate.end(), options.m_vGenerate.begin(), options.m_vGenerate.end());
    const tRun generated = run(directory, generate);
    EXPECT_EQ(generated.m_iExit, 0) << generated.m_strError;
    const tRun captured = run(
        directory, {"text2pcap", "-q", options.m_bTcp ? "-T" : "-u", "40000,5000", "-", "it.pcap"}, hexDump(packets));
    EXPECT_EQ(captured.m_iExit, 0) << captured.m_strError;
    std::vector<std::string> show = {"tshark", "-n", "-X", "lua_script:it.lua", "-r", "it.pcap", "-T", "pdml"};
    if (!options.m_strFilter.empty())
        show.insert(show.end(), {"-Y", options.m_strFilter});
    const tRun shown = run(directory, show);
    EXPECT_EQ(shown.m_iExit, 0) << shown.m_strError;
    EXPECT_EQ(shown.m_strError.find("Lua:"), std::string::npos) << shown.m_strError;
    CPdmlReader reader(options.m_strShownProtocol, options.m_bTcp ? s_cullTcpHeaders : s_cullUdpHeaders);
    return reader.read(shown.m_strOutput);
}

}  // namespace murv::tests

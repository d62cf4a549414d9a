// tools/sample_output.cpp - one object a line; files with numbers of equal width, so that they sort.
#include "tools/sample_output.h"

#include <algorithm>
#include <filesystem>

#include "tools/json_text.h"
#include "tools/lossless.h"
#include "tools/packet_report.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnLeastDigits = 3;

std::string object4Fault(const tPacketFault& fault)
{
    return "{\"path\":" + json4Text(fault.m_strPath) + "," + json4Fault(fault) +
           ",\"message\":" + json4Text(message4Fault(fault)) + "}";
}
}  // namespace

std::string CSampleJson::tree4Packet(std::string_view packet)
{
    std::string text;
    CPacketJson json(m_tParts, text);
    return m_tReader.visit(packet, json) ? text : "null";
}

std::string json4Head(std::uint64_t number, std::uint64_t seed)
{
    return "{\"sample\":" + std::to_string(number) + ",\"seed\":" + std::to_string(seed);
}

std::string json4Damage(const tDamagedSample& damaged)
{
    std::string text = ",\"change\":" + json4Text(damaged.m_pChange) + ",\"at\":" + std::to_string(damaged.m_ullOffset);
    if (damaged.m_tFault.m_eCode != PF_none)
        text += ",\"fault\":" + object4Fault(damaged.m_tFault);
    if (damaged.m_vFinding.empty())
        return text;
    text += ",\"findings\":[";
    for (const tPacketFault& finding : damaged.m_vFinding)
        text += (text.back() == '[' ? "" : ",") + object4Fault(finding);
    return text + "]";
}

CSampleDirectory::CSampleDirectory(const CLayout& layout, std::string path, std::uint64_t count, bool asJson)
    : m_strPath(std::move(path)),
      m_nDigits(std::max(std::to_string(count).size(), s_cnLeastDigits)),
      m_bJson(asJson),
      m_tJson(layout)
{
    if (m_strPath.back() != '/')
        m_strPath += '/';
}

E_ExitCode CSampleDirectory::make(CDiagnostics& diagnostics) const
{
    std::error_code error;
    std::filesystem::create_directory(m_strPath.substr(0, m_strPath.size() - 1), error);
    if (std::filesystem::is_directory(m_strPath))
        return EC_done;
    return diagnostics.fail(m_strPath, "cannot be made: " + error.message(), EC_inputOutput);
}

std::string CSampleDirectory::name4Sample(std::uint64_t number) const
{
    const std::string digits = std::to_string(number);
    return "sample-" + std::string(m_nDigits - std::min(m_nDigits, digits.size()), '0') + digits;
}

void CSampleDirectory::addToIndex(std::uint64_t number, std::uint64_t seed, const std::string& more, std::size_t size)
{
    m_strIndex += json4Head(number, seed) + ",\"file\":" + json4Text(name4Sample(number) + ".bin") +
                  ",\"size\":" + std::to_string(size) + more + "}\n";
}

E_ExitCode CSampleDirectory::put(std::uint64_t number, tSample& sample, CDiagnostics& diagnostics)
{
    const std::string name = name4Sample(number);
    if (const E_ExitCode code = writeFile(m_strPath + name + ".bin", sample.m_strPacket, diagnostics, false))
        return code;
    const std::string file = name + (m_bJson ? ".json" : ".murv");
    std::string text;
    tLoss loss;
    if (m_bJson)
        text = m_tJson.tree4Packet(sample.m_strPacket) + "\n";
    else if (!writeText(sample.m_tTree, false, text, loss))
        return diagnostics.fail(m_strPath + file, loss.m_strMessage, EC_malformed);
    addToIndex(number, sample.m_ullSeed, ",\"tree\":" + json4Text(file), sample.m_strPacket.size());
    return writeFile(m_strPath + file, text, diagnostics, false);
}

E_ExitCode CSampleDirectory::put(std::uint64_t number, std::uint64_t seed, const tDamagedSample& damaged,
                                 CDiagnostics& diagnostics)
{
    addToIndex(number, seed, json4Damage(damaged), damaged.m_strPacket.size());
    return writeFile(m_strPath + name4Sample(number) + ".bin", damaged.m_strPacket, diagnostics, false);
}

E_ExitCode CSampleDirectory::finish(CDiagnostics& diagnostics) const
{
    return writeFile(m_strPath + "index.jsonl", m_strIndex, diagnostics);
}

}  // namespace murv::tool

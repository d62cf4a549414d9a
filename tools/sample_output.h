// tools/sample_output.h - what is written of a sample: JSON objects, and files in a directory.
#pragma once

#include <cstdint>
#include <string>

#include "tools/packet_json.h"
#include "tools/replace_file.h"
#include "tools/sample_damage.h"

namespace murv::tool
{

/// The JSON of a packet's tree. Nothing is masked, for all values are made up.
class CSampleJson
{
public:
    explicit CSampleJson(const CLayout& layout) : m_tParts(layout, true), m_tReader(layout)
    {
    }
    std::string tree4Packet(std::string_view packet);

private:
    CPacketJsonParts m_tParts;
    CPacketReader m_tReader;
};

/// The first members of an object about a sample: its number and seed.
std::string json4Head(std::uint64_t number, std::uint64_t seed);

/// Members that say what was changed, and what reading says of it; with a comma before each.
std::string json4Damage(const tDamagedSample& damaged);

/// A directory with a file for each sample, one for its tree, and an index of all.
class CSampleDirectory
{
public:
    /// \param count   of all samples
    /// \param asJson  trees as JSON, else as documents
    CSampleDirectory(const CLayout& layout, std::string path, std::uint64_t count, bool asJson);

    E_ExitCode make(CDiagnostics& diagnostics) const;
    E_ExitCode put(std::uint64_t number, tSample& sample, CDiagnostics& diagnostics);
    E_ExitCode put(std::uint64_t number, std::uint64_t seed, const tDamagedSample& damaged, CDiagnostics& diagnostics);
    /// Writes the index.
    E_ExitCode finish(CDiagnostics& diagnostics) const;

private:
    std::string name4Sample(std::uint64_t number) const;
    void addToIndex(std::uint64_t number, std::uint64_t seed, const std::string& more, std::size_t size);

    std::string m_strPath;
    std::size_t m_nDigits;
    bool m_bJson;
    CSampleJson m_tJson;
    std::string m_strIndex;
};

}  // namespace murv::tool

// tools/verb_gen_samples.cpp - murv gen samples: random packets for tests, good ones and damaged ones.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>

#include "murv/records.h"
#include "tools/file_option.h"
#include "tools/hex_text.h"
#include "tools/layout_input.h"
#include "tools/sample_output.h"
#include "tools/verb_gen.h"

namespace murv::tool
{

namespace
{
constexpr std::uint64_t s_cullMostSamples = 1'000'000'000;
constexpr std::uint64_t s_cullLargest = std::uint64_t{64} << 20U;  // bytes that each sample has at least
constexpr std::uint64_t s_cullTried = 8;                           // samples that show whether they make a stream
constexpr std::size_t s_cnMostWaiting = std::size_t{64} << 10U;    // of results that are not written yet

/// Whether files may follow one another in a stream, seen from a few of them.
bool isStream(const CLayout& layout, CSampleMaker& maker, std::uint64_t seed, std::uint64_t count)
{
    std::string stream;
    std::uint64_t records = 0;
    tSample sample;
    for (std::uint64_t i = 0; i < std::min(count, s_cullTried) && maker.make(seed + i, sample); ++i)
    {
        CRecordReader reader(layout);
        reader.open(sample.m_strPacket);
        while (reader.next() == RR_record)
            ++records;
        stream += sample.m_strPacket;
    }
    CRecordReader reader(layout);
    reader.open(stream);
    E_RecordResult result = RR_record;
    while (result == RR_record)
        result = reader.next();
    const tRecordCounts& counts = reader.getCounts();
    return result == RR_end && counts.m_ullFindings == 0 && counts.m_ullRecords == records;
}

class CGenSamplesVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        declareEitherLayout(verb, m_strLayout);
        verb.add_option("-n,--count", m_ullCount, "How many samples, up to 1000000000")
            ->type_name("N")
            ->capture_default_str();
        verb.add_option("--seed", m_ullSeed, "Of the first sample; the next one has the next seed")
            ->type_name("N")
            ->capture_default_str();
        verb.add_option("--elements", m_ullElements, "Most elements of an array")
            ->type_name("N")
            ->capture_default_str();
        verb.add_flag("--damaged", m_bDamaged, "Samples that do not fit, with what reading says of them");
        CLI::Option* const lines =
            verb.add_flag("--lines", m_bLines, "One JSON object a sample: number, seed, bytes, tree or fault");
        CLI::Option* const file =
            takeFile(verb.add_option("-o,--output", m_strOutput, "File for the result instead of the standard output"));
        takeDirectory(verb.add_option("-d,--directory", m_strDirectory,
                                      "Files there: each sample, its tree, and an index of all"))
            ->excludes(file)
            ->excludes(lines);
        verb.add_flag("--json", m_bJson, "Trees in the directory as JSON, diagnostics as JSON lines");
        verb.footer(
            "Each sample was read without finding and made again before it is written. A few hundred meet every\n"
            "alternative, condition and optional part of the layout.\n");
    }

    E_ExitCode run(tSession& session) override
    {
        CDiagnostics& diagnostics = session.m_tDiagnostics;
        diagnostics.setJson(m_bJson);
        if (const std::string fault = callFault(); !fault.empty())
            return diagnostics.fail("", fault, EC_wrongCall);
        tLoadedLayout loaded;
        if (const E_ExitCode code = readLayout(m_strLayout, diagnostics, loaded))
            return code;
        const CLayout& layout = loaded.m_tLayout;
        if (layout.getPart(0).m_ullLeast > s_cullLargest)
            return diagnostics.fail("", "no samples of more than 64 MiB are made", EC_unfit);
        CSampleMaker maker(layout, m_ullElements);
        if (!m_strDirectory.empty())
            return writeDirectory(layout, maker, diagnostics);
        const bool isOne = m_bLines || m_ullCount == 1;
        if (!isOne && !isStream(layout, maker, m_ullSeed, m_ullCount))
            return diagnostics.fail("", "files of this layout cannot follow one another; use --lines or --directory",
                                    EC_wrongCall);
        CResultFile result(m_strOutput, session.m_tOutput);
        if (const E_ExitCode code = result.open(diagnostics))
            return code;
        const E_ExitCode code = writeStream(layout, maker, result, diagnostics);
        return code != EC_done ? code : result.finish(diagnostics);
    }

private:
    std::string callFault() const
    {
        if (m_strLayout.empty())
            return "a layout is required";
        if (m_ullCount == 0 || m_ullCount > s_cullMostSamples)
            return "--count is a number from 1 to 1000000000";
        if (m_bDamaged && !m_bLines && m_strDirectory.empty())
            return "--damaged needs --lines or --directory, which say what was damaged";
        return {};
    }

    E_ExitCode tellFault(std::uint64_t seed, const CSampleMaker& maker, CDiagnostics& diagnostics) const
    {
        const tPacketFault& fault = maker.getFault();
        return diagnostics.fail("",
                                "no data was found that the layout takes (seed " + std::to_string(seed) + "); " +
                                    fault.m_strPath + ": " + fault.m_strMessage,
                                EC_unfit);
    }

    /// Makes sample after sample, damages them when asked, and hands them on.
    template <typename tPut>
    E_ExitCode forSamples(CSampleMaker& maker, CDiagnostics& diagnostics, const tPut& put) const
    {
        CSampleDamager damager(maker.plan());
        tSample sample;
        tDamagedSample damaged;
        for (std::uint64_t i = 0; i < m_ullCount; ++i)
        {
            if (!maker.make(m_ullSeed + i, sample))
                return tellFault(m_ullSeed + i, maker, diagnostics);
            if (m_bDamaged && !damager.damage(sample, damaged))
                return diagnostics.fail(
                    "", "no change of the sample of seed " + std::to_string(sample.m_ullSeed) + " is refused or found",
                    EC_unfit);
            bool goesOn = true;
            if (const E_ExitCode code = put(i + 1, sample, damaged, goesOn))
                return code;
            if (!goesOn)
                return EC_done;
        }
        return EC_done;
    }

    E_ExitCode writeDirectory(const CLayout& layout, CSampleMaker& maker, CDiagnostics& diagnostics) const
    {
        CSampleDirectory directory(layout, m_strDirectory, m_ullCount, m_bJson);
        if (const E_ExitCode code = directory.make(diagnostics))
            return code;
        const E_ExitCode code = forSamples(
            maker, diagnostics, [&](std::uint64_t number, tSample& sample, const tDamagedSample& damaged, bool&) {
                return m_bDamaged ? directory.put(number, sample.m_ullSeed, damaged, diagnostics)
                                  : directory.put(number, sample, diagnostics);
            });
        return code != EC_done ? code : directory.finish(diagnostics);
    }

    E_ExitCode writeStream(const CLayout& layout, CSampleMaker& maker, CResultFile& result,
                           CDiagnostics& diagnostics) const
    {
        CSampleJson json(layout);
        std::string out;
        const auto put = [&](std::uint64_t number, const tSample& sample, const tDamagedSample& damaged, bool& goesOn) {
            out += m_bLines ? line(number, sample, damaged, json) : sample.m_strPacket;
            if (out.size() < s_cnMostWaiting && number != m_ullCount)
                return EC_done;
            if (!m_bLines && result.isStandardOutput() && isatty(STDOUT_FILENO) == 1)
                return diagnostics.fail("", "packets are not for a terminal; use --output or --lines", EC_wrongCall);
            goesOn = result.put(out);
            out.clear();
            return EC_done;
        };
        return forSamples(maker, diagnostics, put);
    }

    std::string line(std::uint64_t number, const tSample& sample, const tDamagedSample& damaged,
                     CSampleJson& json) const
    {
        const std::string& packet = m_bDamaged ? damaged.m_strPacket : sample.m_strPacket;
        std::string text =
            json4Head(number, sample.m_ullSeed) + ",\"size\":" + std::to_string(packet.size()) + ",\"bytes\":\"";
        appendHex(text, packet);
        text += "\"" + (m_bDamaged ? json4Damage(damaged) : ",\"tree\":" + json.tree4Packet(packet));
        return text + "}\n";
    }

    std::string m_strLayout;
    std::string m_strOutput;
    std::string m_strDirectory;
    std::uint64_t m_ullCount = 1;
    std::uint64_t m_ullSeed = 1;
    std::uint64_t m_ullElements = 3;
    bool m_bDamaged = false;
    bool m_bLines = false;
    bool m_bJson = false;
};
}  // namespace

std::unique_ptr<IVerb> makeGenSamplesVerb()
{
    return std::make_unique<CGenSamplesVerb>();
}

}  // namespace murv::tool

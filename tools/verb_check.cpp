// tools/verb_check.cpp - murv check: accepts documents, layouts and packets, or shows every error.
//
// Packets are checked record by record, in constant memory; after a damaged record it goes on with the next.
#include "tools/verb.h"

#include <CLI/CLI.hpp>

#include "murv/flags.h"
#include "tools/files_verb.h"
#include "tools/json_text.h"
#include "tools/layout_input.h"
#include "tools/packet_report.h"
#include "tools/record_source.h"
#include "tools/utf8.h"
#include "tools/warning_options.h"

namespace murv::tool
{

namespace
{
/// What became of a file of records.
struct tOutcome
{
    tRecordCounts m_tCounts;
    std::uint64_t m_ullFaults = 0;
    std::uint64_t m_ullFindings = 0;
};

std::string summary4People(const tOutcome& outcome)
{
    const std::uint64_t records = outcome.m_tCounts.m_ullRecords;
    if (outcome.m_ullFaults == 0 && outcome.m_ullFindings == 0)
        return "accepted, " + counted(records, "record");
    const std::string findings =
        outcome.m_ullFindings == 0 ? std::string() : ", " + counted(outcome.m_ullFindings, "finding");
    if (outcome.m_ullFaults == 0)
        return counted(records, "record") + findings;
    return counted(outcome.m_ullFaults, "error") + findings + ", " + counted(records, "record") + " without error";
}

std::string summary4Programs(const tOutcome& outcome)
{
    const bool isAccepted = outcome.m_ullFaults == 0 && outcome.m_ullFindings == 0;
    return std::string(",\"accepted\":") + (isAccepted ? "true" : "false") +
           ",\"records\":" + std::to_string(outcome.m_tCounts.m_ullRecords) +
           ",\"errors\":" + std::to_string(outcome.m_ullFaults) +
           ",\"findings\":" + std::to_string(outcome.m_ullFindings) +
           ",\"bytes\":" + std::to_string(outcome.m_tCounts.m_ullBytes);
}

class CCheckVerb : public CFilesVerb
{
public:
    CCheckVerb()
        : CFilesVerb("Results and diagnostics as JSON lines", "Documents, or with -l packets; - for the standard input")
    {
    }

private:
    void declareOwn(CLI::App& verb) override
    {
        CLI::Option* const layout = declareLayout(verb, m_strLayout);
        m_tWarnings.declare(verb, layout);
        verb.add_option("--max-errors", m_ullMost, "Show no more than that of a file")
            ->type_name("N")
            ->capture_default_str();
        verb.add_flag("-q,--quiet", m_bQuiet, "Say nothing about files that are accepted");
        verb.footer(
            "With -l, the files are packets or files of records that the layout describes.\n"
            "Warnings do not change the exit code; with -Werror it is 1 when there are any.\n");
    }

public:
    E_ExitCode run(tSession& session) override
    {
        if (!m_tWarnings.isListWanted())
            return CFilesVerb::run(session);
        session.m_tOutput.put(CWarningOptions::list(isJson()));
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }

private:
    E_ExitCode begin(CDiagnostics& diagnostics) override
    {
        return m_strLayout.empty() ? EC_done : readLayout(m_strLayout, diagnostics, m_tLayout);
    }

    E_ExitCode runFile(const std::string& path, tSession& session) const override
    {
        return m_strLayout.empty() ? CFilesVerb::runFile(path, session) : checkPackets(path, session);
    }

    E_ExitCode runInput(const tInput& input, tSession& session) const override
    {
        std::size_t warnings = 0;
        const E_ExitCode code = checkDocument(input, session.m_tDiagnostics, warnings);
        if (isJson())
            session.m_tOutput.put("{\"file\":" + json4Text(input.m_strName) +
                                  ",\"accepted\":" + (code == EC_done ? "true" : "false") +
                                  (m_tWarnings.isUsed() ? ",\"warnings\":" + std::to_string(warnings) : "") + "}\n");
        else if (code == EC_done && !m_bQuiet)
            session.m_tOutput.put(shownText(input.m_strName) + ": accepted" +
                                  (warnings == 0 ? "" : ", " + counted(warnings, "warning")) + "\n");
        return code;
    }

    /// Without -W, the loader sees what it warns of; with it, the text is read once more.
    E_ExitCode checkDocument(const tInput& input, CDiagnostics& diagnostics, std::size_t& warnings) const
    {
        CFields tree;
        tLoadOptions options = loadOptions();
        options.m_nMostMistakes = static_cast<std::size_t>(m_ullMost);
        const std::optional<E_Severity> textAfter =
            m_tWarnings.isUsed() ? std::nullopt : std::optional<E_Severity>(SV_warning);
        if (const E_ExitCode code = loadInput(input, options, 0, textAfter, diagnostics, tree))
            return code;
        if (m_tWarnings.isUsed() && input.isText())
            warnings = m_tWarnings.report(input, options, isLayout(tree), diagnostics);
        const E_ExitCode code = warnings != 0 && m_tWarnings.areErrors() ? EC_no : EC_done;
        return isLayout(tree) ? graver(code, checkLayout(input, diagnostics)) : code;
    }

    /// Loads it once more: compiling wants to see repeated names.
    E_ExitCode checkLayout(const tInput& input, CDiagnostics& diagnostics) const
    {
        CFields document;
        CLayout layout;
        const std::optional<E_Severity> textAfter =
            m_tWarnings.isUsed() ? std::nullopt : std::optional<E_Severity>(SV_note);
        if (const E_ExitCode code = loadInput(input, loadOptions(), LCBC_DUPLICATE, textAfter, diagnostics, document))
            return code;
        return compileLayout(input, document, diagnostics, layout);
    }

    E_ExitCode checkPackets(const std::string& path, tSession& session) const
    {
        CDiagnostics& diagnostics = session.m_tDiagnostics;
        CRecordSource source(m_tLayout.m_tLayout);
        if (const E_ExitCode code = source.open(path, diagnostics))
            return code;
        CPacketReport report(diagnostics, source.name(), m_ullMost);
        bool isRead = true;
        while (isRead)
        {
            const E_RecordResult result = source.next();
            for (const tPacketFault& finding : source.reader().getFindings())
                report.report(finding);
            isRead = result == RR_record;
            if (result != RR_fault)
                continue;
            report.report(source.reader().getFault());
            isRead = source.reader().skip();
            if (!isRead)
                report.sayStopped();
        }
        report.finish();
        if (const E_ExitCode code = source.readCode(diagnostics))
            return code;
        return summarize(source, {source.reader().getCounts(), report.faults(), report.findings()}, session);
    }

    E_ExitCode summarize(const CRecordSource& source, const tOutcome& outcome, tSession& session) const
    {
        const E_ExitCode code = outcome.m_ullFaults != 0 ? EC_unfit : outcome.m_ullFindings != 0 ? EC_no : EC_done;
        if (isJson())
            session.m_tOutput.put("{\"file\":" + json4Text(source.name()) + summary4Programs(outcome) + "}\n");
        else if (code != EC_done || !m_bQuiet)
            session.m_tOutput.put(shownText(source.name()) + ": " + summary4People(outcome) + "\n");
        return code;
    }

    std::string m_strLayout;
    tLoadedLayout m_tLayout;
    CWarningOptions m_tWarnings;
    std::uint64_t m_ullMost = s_cnMostMistakes;
    bool m_bQuiet = false;
};
}  // namespace

std::unique_ptr<IVerb> makeCheckVerb()
{
    return std::make_unique<CCheckVerb>();
}

}  // namespace murv::tool

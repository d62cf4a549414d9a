// tools/verb_unpack.cpp - murv unpack: packets and files of records to documents, JSON and tables.
//
// --lines and --csv work record by record in constant memory and build no trees.
#include "tools/verb.h"

#include <fcntl.h>

#include <CLI/CLI.hpp>
#include <cerrno>

#include "tools/file_option.h"
#include "tools/json_text.h"
#include "tools/layout_input.h"
#include "tools/lossless.h"
#include "tools/packet_csv.h"
#include "tools/packet_json.h"
#include "tools/packet_report.h"
#include "tools/packet_tree.h"
#include "tools/record_kind.h"
#include "tools/record_source.h"
#include "tools/replace_file.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnMostWaiting = std::size_t{64} << 10U;  // of results that are not written yet

/// What becomes of faults while a file is unpacked.
class CFaultSink
{
public:
    /// \param collect  file for them as JSON lines; empty: they are shown
    CFaultSink(CDiagnostics& diagnostics, const std::string& name, std::uint64_t most, const std::string& collect)
        : m_tReport(diagnostics, name, most), m_strName(name), m_strCollect(collect)
    {
    }
    E_ExitCode open(CDiagnostics& diagnostics)
    {
        if (m_strCollect.empty())
            return EC_done;
        m_pFile = std::make_unique<CDescriptor>(
            ::open(m_strCollect.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_NOCTTY | O_CLOEXEC, 0666));
        m_iError = m_pFile->get() < 0 ? errno : 0;
        return fileCode(diagnostics);
    }
    void put(const tPacketFault& fault)
    {
        if (m_strCollect.empty())
            m_tReport.report(fault);
        else if (m_iError == 0)
            m_iError = writeAll(m_pFile->get(), json4Diagnostic(diagnostic4Fault(m_strName, fault)) + "\n");
        m_bAny = m_bAny || !isFinding(fault.m_eCode);
    }
    void put(const std::vector<tPacketFault>& findings)
    {
        for (const tPacketFault& finding : findings)
            put(finding);
    }
    /// \return EC_unfit when something did not fit
    E_ExitCode finish(CDiagnostics& diagnostics)
    {
        m_tReport.finish();
        return graver(fileCode(diagnostics), m_bAny ? EC_unfit : EC_done);
    }

private:
    E_ExitCode fileCode(CDiagnostics& diagnostics) const
    {
        return m_iError == 0 ? EC_done
                             : diagnostics.fail(m_strCollect, "not written: " + text4Error(m_iError), EC_inputOutput);
    }

    CPacketReport m_tReport;
    std::string m_strName;
    std::string m_strCollect;
    std::unique_ptr<CDescriptor> m_pFile;
    int m_iError = 0;
    bool m_bAny = false;
};

/// Records as JSON, each with its kind, number and offset before it.
class CJsonLines : public CPacketJson
{
public:
    CJsonLines(const CLayout& layout, const CPacketJsonParts& parts, std::string& out)
        : CPacketJson(parts, out), m_strOut(out), m_vHead(layout.getPartCount())
    {
        for (unsigned int part = 0; part < m_vHead.size(); ++part)
            m_vHead[part] = "{\"kind\":" + json4Text(recordKind(layout, part)) + ",\"number\":";
    }
    /// Ends the line, or takes back what there is of it.
    void end(bool isRecord)
    {
        if (isRecord)
            m_strOut += "}\n";
        else if (m_bBegun)
            m_strOut.resize(m_nBegin);
        m_bBegun = false;
    }
    void onRecord(unsigned int part, std::uint64_t number, std::uint64_t offset) override
    {
        m_nBegin = m_strOut.size();
        m_bBegun = true;
        m_strOut += m_vHead[part];
        m_strOut += std::to_string(number);
        m_strOut += ",\"offset\":";
        m_strOut += std::to_string(offset);
        m_strOut += ",\"data\":";
    }

private:
    std::string& m_strOut;
    std::vector<std::string> m_vHead;  // by part
    std::size_t m_nBegin = 0;          // of the record's line
    bool m_bBegun = false;
};

class CUnpackVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_option("FILE", m_strFile, "Packet or file of records; - or none for the standard input");
        declareLayout(verb, m_strLayout)->required();
        takeFile(verb.add_option("-o,--output", m_strOutput, "File for the result instead of the standard output"));
        CLI::Option* const json = verb.add_flag("--json", m_bJson, "One JSON value for all, diagnostics as JSON lines");
        CLI::Option* const lines = verb.add_flag("--lines", m_bLines, "One JSON object a record, in constant memory");
        verb.add_option("--csv", m_strKind, "A table of the records of one kind, in constant memory")
            ->type_name("KIND")
            ->excludes(json)
            ->excludes(lines);
        lines->excludes(json);
        verb.add_option("--on-fault", m_vOnFault, "stop, skip the record, or collect FILE: skip it, faults to FILE")
            ->type_name("stop|skip|collect")
            ->default_str("stop")
            ->expected(1, 2)
            ->allow_extra_args(false);
        verb.add_option("--max-errors", m_ullMost, "Show no more than that")->type_name("N")->capture_default_str();
        verb.add_flag("--unmask", m_bUnmask, "Show masked values in JSON and tables");
        verb.footer("KIND is the path of the records in the layout, or its last name; . for the whole.\n");
    }

    E_ExitCode run(tSession& session) override
    {
        CDiagnostics& diagnostics = session.m_tDiagnostics;
        diagnostics.setJson(m_bJson);
        if (const std::string fault = callFault(); !fault.empty())
            return diagnostics.fail("", fault, EC_wrongCall);
        tLoadedLayout layout;
        if (const E_ExitCode code = readLayout(m_strLayout, diagnostics, layout))
            return code;
        const CLayout& compiled = layout.m_tLayout;
        unsigned int kind = CLayout::s_cuiNoPart;
        if (!m_strKind.empty())
        {
            const std::string fault = findRecordKind(compiled, m_strKind, kind);
            if (!fault.empty())
                return diagnostics.fail("", fault, EC_wrongCall);
        }
        CResultFile result(m_strOutput, session.m_tOutput);
        const std::string name = m_strFile.empty() || m_strFile == "-" ? "<stdin>" : m_strFile;
        CFaultSink faults(diagnostics, name, m_ullMost, m_strCollect);
        if (const E_ExitCode code = faults.open(diagnostics))
            return code;
        if (const E_ExitCode code = result.open(diagnostics))
            return code;
        E_ExitCode code = EC_done;
        if (m_bLines || kind != CLayout::s_cuiNoPart)
            code = writeRecords(compiled, kind, result, faults, diagnostics);
        else
            code = writeWhole(compiled, result, faults, diagnostics);
        const E_ExitCode fit = faults.finish(diagnostics);
        if (code != EC_done || (fit == EC_unfit && m_bStop && !result.isStandardOutput()))
            return graver(code, fit);  // a file keeps what it had
        return graver(fit, result.finish(diagnostics));
    }

private:
    /// What is wrong with the call, as far as the options alone show. Sorts out the words of --on-fault: the second is
    /// a file for "collect" only, else it is FILE.
    std::string callFault()
    {
        const std::string word = m_vOnFault.empty() ? "stop" : m_vOnFault.front();
        if (word != "stop" && word != "skip" && word != "collect")
            return "--on-fault is stop, skip or collect FILE, not " + word;
        m_bStop = word == "stop";
        const bool hasSecond = m_vOnFault.size() == 2;
        if (word == "collect" && (!hasSecond || m_vOnFault.back().empty()))
            return "--on-fault collect needs the name of a file";
        if (word == "collect")
            m_strCollect = m_vOnFault.back();
        else if (hasSecond && !m_strFile.empty())
            return "unexpected argument " + m_strFile;
        else if (hasSecond)
            m_strFile = m_vOnFault.back();
        return file() == "-" && m_strLayout == "-" ? "the standard input cannot hold both layout and packets" : "";
    }

    const std::string& file() const
    {
        static const std::string standardInput = "-";
        return m_strFile.empty() ? standardInput : m_strFile;
    }

    /// Whether reading goes on after a fault; takes the fault.
    bool goesOn(CRecordReader& reader, CFaultSink& faults) const
    {
        faults.put(reader.getFault());
        return !m_bStop && reader.skip();
    }

    E_ExitCode writeRecords(const CLayout& layout, unsigned int kind, CResultFile& result, CFaultSink& faults,
                            CDiagnostics& diagnostics) const
    {
        const CPacketJsonParts parts(layout, m_bUnmask);
        CRecordSource source(layout);
        if (const E_ExitCode code = source.open(file(), diagnostics))
            return code;
        std::string out;
        bool isWritten = true;
        const auto flush = [&] {
            isWritten = result.put(out);
            out.clear();
        };
        source.beforeWaiting(flush);
        if (kind == CLayout::s_cuiNoPart)
            writeLines(layout, parts, source, out, flush, isWritten, faults);
        else
            writeTable(layout, parts, kind, source, out, flush, isWritten, faults);
        flush();
        return source.readCode(diagnostics);
    }

    template <typename tFlush>
    void writeLines(const CLayout& layout, const CPacketJsonParts& parts, CRecordSource& source, std::string& out,
                    const tFlush& flush, const bool& isWritten, CFaultSink& faults) const
    {
        CJsonLines lines(layout, parts, out);
        for (;;)
        {
            lines.begin();
            const E_RecordResult read = source.next(lines);
            faults.put(source.reader().getFindings());
            lines.end(read == RR_record);
            if (read == RR_end || (read == RR_fault && !goesOn(source.reader(), faults)))
                return;
            if (out.size() >= s_cnMostWaiting)
                flush();
            if (!isWritten)
                return;
        }
    }

    template <typename tFlush>
    void writeTable(const CLayout& layout, const CPacketJsonParts& parts, unsigned int kind, CRecordSource& source,
                    std::string& out, const tFlush& flush, const bool& isWritten, CFaultSink& faults) const
    {
        CPacketCsv table(layout, parts, kind);
        out += table.header();
        for (;;)
        {
            table.begin();
            const E_RecordResult read = source.next(table);
            faults.put(source.reader().getFindings());
            if (read == RR_end || (read == RR_fault && !goesOn(source.reader(), faults)))
                return;
            if (read == RR_record)
                table.appendRow(out);
            if (out.size() >= s_cnMostWaiting)
                flush();
            if (!isWritten)
                return;
        }
    }

    /// Documents and --json: all or nothing.
    E_ExitCode writeWhole(const CLayout& layout, CResultFile& result, CFaultSink& faults,
                          CDiagnostics& diagnostics) const
    {
        CFields tree;
        std::string text;
        E_ExitCode code = EC_done;
        bool isRead = false;
        if (layout.getPart(0).m_bRecord)
            code = readMessages(layout, tree, text, isRead, faults, diagnostics);
        else if (m_bStop)
            code = readFile(layout, tree, text, isRead, faults, diagnostics);
        else
            code = readRecords(layout, tree, text, isRead, faults, diagnostics);
        if (code != EC_done || !isRead)
            return code;
        if (m_bJson)
            text += '\n';
        tLoss loss;
        tInput input;
        input.m_strName = file() == "-" ? "<stdin>" : file();
        if (!m_bJson && !writeText(tree, false, text, loss))
            return reportLoss(input, loss, diagnostics);
        result.put(text);
        return EC_done;
    }

    /// A file as a whole, which must fit.
    E_ExitCode readFile(const CLayout& layout, CFields& tree, std::string& text, bool& isRead, CFaultSink& faults,
                        CDiagnostics& diagnostics) const
    {
        tInput input;
        if (const E_ExitCode code = readInput(file(), diagnostics, input))
            return code;
        if (input.m_bTooBig)
            return diagnostics.fail(input.m_strName, "is too big to be unpacked as a whole; use --lines or --csv",
                                    EC_inputOutput);
        CPacketReader reader(layout);
        const CPacketJsonParts parts(layout, m_bUnmask);
        CPacketJson json(parts, text);
        isRead = m_bJson ? reader.visit(input.text(), json) : reader.read(input.text(), tree);
        faults.put(reader.getFindings());
        if (!isRead)
            faults.put(reader.getFault());
        return EC_done;
    }

    /// Reads a record as what is wanted, and hands on its findings.
    E_RecordResult next(CRecordSource& source, CPacketJson& json, std::string& data, CFields& record,
                        CFaultSink& faults) const
    {
        data.clear();
        json.begin();
        const E_RecordResult read = m_bJson ? source.next(json) : source.next(record);
        faults.put(source.reader().getFindings());
        return read;
    }

    /// A file without its damaged records.
    E_ExitCode readRecords(const CLayout& layout, CFields& tree, std::string& text, bool& isRead, CFaultSink& faults,
                           CDiagnostics& diagnostics) const
    {
        CRecordSource source(layout);
        if (const E_ExitCode code = source.open(file(), diagnostics))
            return code;
        const CPacketJsonParts parts(layout, m_bUnmask);
        CPacketJson whole(parts, text);
        CPacketTree builder(layout, tree);
        CSurroundings around(layout, m_bJson ? static_cast<IRecordSurroundings&>(whole) : builder);
        std::string data;
        CPacketJson json(parts, data);
        for (;;)
        {
            CFields record;
            const E_RecordResult read = next(source, json, data, record, faults);
            if (read == RR_end || (read == RR_fault && !goesOn(source.reader(), faults)))
                break;
            if (read == RR_fault)
                continue;
            const unsigned int part = source.reader().getRecord().m_uiPart;
            around.enter(part, source.reader().getPath());
            if (m_bJson)
                whole.putRecord(part, data);
            else
                builder.putRecord(part, std::move(record));
        }
        around.finish();
        isRead = true;
        return source.readCode(diagnostics);
    }

    /// Messages one after the other: one gives itself, several give an array.
    E_ExitCode readMessages(const CLayout& layout, CFields& tree, std::string& text, bool& isRead, CFaultSink& faults,
                            CDiagnostics& diagnostics) const
    {
        CRecordSource source(layout);
        if (const E_ExitCode code = source.open(file(), diagnostics))
            return code;
        const CPacketJsonParts parts(layout, m_bUnmask);
        std::string data;
        CPacketJson json(parts, data);
        CFields all(DT_array);
        std::uint64_t count = 0;
        for (;;)
        {
            CFields record;
            const E_RecordResult read = next(source, json, data, record, faults);
            if (read == RR_fault && m_bStop)
                return goesOn(source.reader(), faults), EC_done;
            if (read == RR_end || (read == RR_fault && !goesOn(source.reader(), faults)))
                break;
            if (read == RR_fault)
                continue;
            ++count;
            if (m_bJson)
                text.append(text.empty() ? "" : ",").append(data);
            else
                all.addArrayAt(std::move(record));
        }
        if (m_bJson && count != 1)
            text = "[" + text + "]";
        if (!m_bJson && count == 1)
            tree = std::move(all[0]);
        else
            tree = std::move(all);
        isRead = true;
        return source.readCode(diagnostics);
    }

    std::string m_strFile;
    std::string m_strLayout;
    std::string m_strOutput;
    std::string m_strKind;
    std::string m_strCollect;
    std::vector<std::string> m_vOnFault;
    std::uint64_t m_ullMost = 20;
    bool m_bJson = false;
    bool m_bLines = false;
    bool m_bUnmask = false;
    bool m_bStop = true;
};
}  // namespace

std::unique_ptr<IVerb> makeUnpackVerb()
{
    return std::make_unique<CUnpackVerb>();
}

}  // namespace murv::tool

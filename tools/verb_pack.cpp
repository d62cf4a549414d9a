// tools/verb_pack.cpp - murv pack: documents and JSON to packets and files of records.
//
// It takes what unpack writes. A file of results appears only when all of it could be made.
#include "tools/verb.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iostream>

#include "murv/flags.h"
#include "murv/path.h"
#include "murv/records.h"
#include "tools/file_option.h"
#include "tools/json_tree.h"
#include "tools/layout_input.h"
#include "tools/mask_check.h"
#include "tools/packet_report.h"
#include "tools/replace_file.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnMostWaiting = std::size_t{64} << 10U;  // of results that are not written yet
constexpr std::uint64_t s_cullMostFindings = 20;

bool isBinary(std::string_view packet)
{
    return std::any_of(packet.begin(), packet.end(), [](char byte) {
        return static_cast<unsigned char>(byte) < 0x20 && byte != '\n' && byte != '\r' && byte != '\t';
    });
}

/// The node that a fault is about, or the nearest one around it.
const CFields& node4Fault(CFields& tree, const std::string& path)
{
    tNodePath steps = parsePath(path, PO_none);
    std::size_t taken = 0;
    if (path.empty() || steps.m_pError != nullptr)
        return tree;
    if (const CFields* const node = find(tree, steps, &taken))
        return *node;
    steps.m_vStep.resize(taken);
    const CFields* const node = find(tree, steps, &taken);
    return node == nullptr ? tree : *node;
}

class CPackVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_option("TREE", m_strFile, "Document, or JSON from unpack; - or none for the standard input");
        declareLayout(verb, m_strLayout)->required();
        takeFile(verb.add_option("-o,--output", m_strOutput, "File for the result instead of the standard output"));
        verb.add_flag("--lines", m_bLines, "TREE has one JSON object a record, as unpack can write them");
        verb.add_flag("--now", m_tOptions.m_bNow,
                      "Dates and times become the present one, but for those with \"keep\"");
        verb.add_flag("--agree", m_tOptions.m_bAgree, "What is filled in must agree with what TREE says");
        verb.add_flag("--crlf", m_tOptions.m_bReturns, "Lines end with carriage return and line feed");
        verb.add_flag("--no-final-newline", m_tOptions.m_bOpenEnd, "No line end after the last line");
        verb.add_flag("--unmask", m_bUnmask, "Take stars for a masked value as they are");
        verb.add_flag("--json", m_bJson, "Diagnostics as JSON lines");
        m_tLoad.declare(verb);
    }

    E_ExitCode run(tSession& session) override
    {
        CDiagnostics& diagnostics = session.m_tDiagnostics;
        diagnostics.setJson(m_bJson);
        if (m_strFile.empty())
            m_strFile = "-";
        if (m_strFile == "-" && m_strLayout == "-")
            return diagnostics.fail("", "the standard input cannot hold both layout and tree", EC_wrongCall);
        if (m_bLines && m_tOptions.m_bOpenEnd)
            return diagnostics.fail("", "--lines excludes --no-final-newline", EC_wrongCall);
        tLoadedLayout layout;
        if (const E_ExitCode code = readLayout(m_strLayout, diagnostics, layout))
            return code;
        CResultFile result(m_strOutput, session.m_tOutput);
        if (const E_ExitCode code = result.open(diagnostics))
            return code;
        const E_ExitCode code = m_bLines ? packLines(layout.m_tLayout, result, diagnostics)
                                         : packTree(layout.m_tLayout, result, diagnostics);
        return code != EC_done ? code : result.finish(diagnostics);
    }

private:
    E_ExitCode loadTree(const CLayout& layout, const tInput& input, bool isJson, CDiagnostics& diagnostics,
                        CFields& tree) const
    {
        if (!isJson)
            return loadInput(input, m_tLoad, LCBC_DUPLICATE, SV_error, diagnostics, tree);
        const CJsonKeys keys(layout);
        tJsonFault fault;
        if (loadJson(input.text(), keys, 0, tree, fault))
            return EC_done;
        tDiagnostic diagnostic;
        diagnostic.m_strFile = input.m_strName;
        diagnostic.m_strMessage = fault.m_strMessage;
        diagnostic.m_svSource = input.text();
        if (fault.m_nOffset != 0)
            diagnostic.m_tRange = {fault.m_nOffset, fault.m_nOffset + 1};
        diagnostics.report(diagnostic);
        return EC_malformed;
    }

    E_ExitCode packTree(const CLayout& layout, CResultFile& result, CDiagnostics& diagnostics) const
    {
        tInput input;
        CFields tree;
        if (const E_ExitCode code = readInput(m_strFile, diagnostics, input))
            return code;
        const bool isJson = input.isText() && looksLikeJson(input.text());
        if (const E_ExitCode code = loadTree(layout, input, isJson, diagnostics, tree))
            return code;
        std::string packet;
        CPacketReport report(diagnostics, input.m_strName, s_cullMostFindings);
        bool isMade = false;
        if (tree.isArray() && layout.getPart(0).m_bRecord)
            isMade = makeMessages(layout, tree, input, isJson, report, diagnostics, packet);
        else
            isMade = makeOne(layout, tree, input, isJson, report, diagnostics, packet);
        report.finish();
        return isMade ? put(packet, result, diagnostics) : EC_unfit;
    }

    bool makeOne(const CLayout& layout, CFields& tree, const tInput& input, bool isJson, CPacketReport& report,
                 CDiagnostics& diagnostics, std::string& packet) const
    {
        tPacketFault fault;
        CPacketMaker maker(layout, m_tOptions);
        if (!m_bUnmask && findMask(layout, 0, tree, fault))
            return tell(fault, tree, input, isJson, "", diagnostics);
        if (!maker.make(tree, packet))
            return tell(maker.getFault(), tree, input, isJson, "", diagnostics);
        for (const tPacketFault& finding : maker.getFindings())
            report.report(finding);
        return true;
    }

    /// One message after the other.
    bool makeMessages(const CLayout& layout, CFields& tree, const tInput& input, bool isJson, CPacketReport& report,
                      CDiagnostics& diagnostics, std::string& packet) const
    {
        CRecordWriter writer(layout, m_tOptions);
        for (unsigned int i = 0; i < tree.getChildCount(); ++i)
        {
            const std::string base = "[" + std::to_string(i) + "]";
            tPacketFault fault;
            CFields& message = tree[i];
            if (!m_bUnmask && findMask(layout, 0, message, fault))
                return tell(fault, message, input, isJson, base, diagnostics);
            if (!writer.write(0, message, packet))
                return tell(writer.getFault(), message, input, isJson, base, diagnostics);
            for (const tPacketFault& finding : writer.getFindings())
                report.report(finding);
        }
        return writer.finish() || tell(writer.getFault(), tree, input, isJson, "", diagnostics);
    }

    /// Reports a fault at its place in the tree. \return false
    static bool tell(const tPacketFault& fault, CFields& tree, const tInput& input, bool isJson,
                     const std::string& base, CDiagnostics& diagnostics)
    {
        tDiagnostic diagnostic = diagnostic4Fault(input.m_strName, fault);
        diagnostic.m_strPlace.clear();  // in the packet, which nobody sees
        diagnostic.m_strSubject = base + (base.empty() || fault.m_strPath.empty() ? "" : ".") + fault.m_strPath;
        if (input.isText() && !isJson)
        {
            const CFields& node = node4Fault(tree, fault.m_strPath);
            const auto begin = static_cast<std::size_t>(node.getOffsetStart());
            const auto end = static_cast<std::size_t>(node.getOffsetEnd());
            diagnostic.m_svSource = input.text();
            diagnostic.m_tRange = {begin, std::max(end, begin + 1)};
        }
        diagnostics.report(diagnostic);
        return false;
    }

    E_ExitCode put(std::string_view packet, CResultFile& result, CDiagnostics& diagnostics) const
    {
        if (result.isStandardOutput() && isatty(STDOUT_FILENO) == 1 && isBinary(packet))
            return diagnostics.fail("", "a binary result is not for a terminal; use --output", EC_wrongCall);
        result.put(packet);
        return EC_done;
    }

    E_ExitCode packLines(const CLayout& layout, CResultFile& result, CDiagnostics& diagnostics) const
    {
        std::ifstream file;
        if (m_strFile != "-")
            file.open(m_strFile, std::ios::binary);
        const std::string name = m_strFile == "-" ? "<stdin>" : m_strFile;
        std::istream& in = m_strFile == "-" ? std::cin : file;
        if (!in)
            return diagnostics.fail(name, "cannot be read: " + text4Error(errno), EC_inputOutput);
        CPacketReport report(diagnostics, name, s_cullMostFindings);
        const E_ExitCode code = packLines(layout, in, name, result, report, diagnostics);
        report.finish();
        return code;
    }

    E_ExitCode packLines(const CLayout& layout, std::istream& in, const std::string& name, CResultFile& result,
                         CPacketReport& report, CDiagnostics& diagnostics) const
    {
        const CJsonKeys keys(layout);
        CRecordWriter writer(layout, m_tOptions);
        std::string out;
        std::string line;
        errno = 0;
        for (std::uint64_t number = 1; std::getline(in, line); ++number)
        {
            if (line.find_first_not_of(" \t\r") == std::string::npos)
                continue;
            if (const E_ExitCode code = packLine(keys, writer, name, number, line, out, diagnostics))
                return flush(out, result, diagnostics), code;
            for (const tPacketFault& finding : writer.getFindings())
                report.report(finding);
            if (out.size() < s_cnMostWaiting)
                continue;
            if (const E_ExitCode code = flush(out, result, diagnostics))
                return code;
        }
        if (in.bad())
            return diagnostics.fail(name, "cannot be read: " + text4Error(errno), EC_inputOutput);
        const bool isComplete = writer.finish();
        for (const tPacketFault& finding : writer.getFindings())
            report.report(finding);
        if (const E_ExitCode code = flush(out, result, diagnostics))
            return code;
        if (isComplete)
            return EC_done;
        diagnostics.report(diagnostic4Fault(name, writer.getFault()));
        return EC_unfit;
    }

    E_ExitCode flush(std::string& out, CResultFile& result, CDiagnostics& diagnostics) const
    {
        const E_ExitCode code = put(out, result, diagnostics);
        out.clear();
        return code;
    }

    E_ExitCode packLine(const CJsonKeys& keys, CRecordWriter& writer, const std::string& name, std::uint64_t number,
                        const std::string& line, std::string& out, CDiagnostics& diagnostics) const
    {
        tDiagnostic diagnostic;
        unsigned int record = CLayout::s_cuiNoPart;
        CFields data;
        tJsonFault wrong;
        tPacketFault fault;
        const bool isRead = loadJsonRecord(line, keys, record, data, wrong);
        const bool isMasked = isRead && !m_bUnmask && findMask(keys.layout(), record, data, fault);
        if (isRead && !isMasked && writer.write(record, data, out))
            return EC_done;
        diagnostic.m_strFile = name;
        diagnostic.m_strMessage = wrong.m_strMessage;
        if (isRead)
            diagnostic = diagnostic4Fault(name, isMasked ? fault : writer.getFault());
        else if (wrong.m_nOffset != 0)
            diagnostic.m_vExcerpt = {excerpt4Range(line, {wrong.m_nOffset, wrong.m_nOffset + 1})};
        diagnostic.m_strPlace = std::to_string(number);
        diagnostics.report(diagnostic);
        return isRead ? EC_unfit : EC_malformed;
    }

    std::string m_strFile;
    std::string m_strLayout;
    std::string m_strOutput;
    tMakeOptions m_tOptions;
    tLoadOptions m_tLoad;
    bool m_bLines = false;
    bool m_bUnmask = false;
    bool m_bJson = false;
};
}  // namespace

std::unique_ptr<IVerb> makePackVerb()
{
    return std::make_unique<CPackVerb>();
}

}  // namespace murv::tool

// tools/verb_merge.cpp - murv merge: applies merge patches (RFC 7386) to a document.
//
// A text keeps every byte that the patches do not change. A binary file is turned into text first.
#include "tools/verb.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "murv/document.h"
#include "murv/flags.h"
#include "tools/file_option.h"
#include "tools/json_input.h"
#include "tools/lossless.h"
#include "tools/path_report.h"
#include "tools/replace_file.h"

namespace murv::tool
{

namespace
{
class CMergeVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_option("FILE", m_strFile, "Document to change; - for the standard input")->required();
        verb.add_option("PATCH", m_vPatch, "Merge patches, applied in turn: documents, or JSON as *.json")->required();
        CLI::Option* const output =
            takeFile(verb.add_option("-o,--output", m_strOutput, "File for the result instead of the standard output"));
        verb.add_flag("-i,--in-place", m_bInPlace, "Replace FILE, safely, when the patches change it")
            ->excludes(output);
        verb.add_flag("--json", m_bJson, "Diagnostics as JSON lines");
        m_tLoad.declare(verb);
    }

    E_ExitCode run(tSession& session) override
    {
        CDiagnostics& diagnostics = session.m_tDiagnostics;
        diagnostics.setJson(m_bJson);
        if (const char* const fault = callFault())
            return diagnostics.fail("", fault, EC_wrongCall);
        tInput input;
        CDocument document(m_tLoad.flags());
        if (const E_ExitCode code = load(diagnostics, input, document))
            return code;
        for (const std::string& patch : m_vPatch)
        {
            if (const E_ExitCode code = apply(patch, input, document, diagnostics))
                return code;
        }
        if (m_bInPlace)
            return document.text() == input.text() ? EC_done : replaceFile(input, document.text(), diagnostics);
        if (!m_strOutput.empty())
            return writeFile(m_strOutput, document.text(), diagnostics);
        session.m_tOutput.put(document.text());
        return session.m_tOutput.finish(diagnostics);
    }

private:
    const char* callFault() const
    {
        if (m_bInPlace && m_strFile == "-")
            return "the standard input cannot be replaced: --in-place needs a file";
        const auto inputs = std::count(m_vPatch.begin(), m_vPatch.end(), "-") + (m_strFile == "-" ? 1 : 0);
        return inputs > 1 ? "the standard input cannot hold several documents" : nullptr;
    }

    E_ExitCode load(CDiagnostics& diagnostics, tInput& input, CDocument& document) const
    {
        if (m_bInPlace)
        {
            if (const E_ExitCode code = checkReplaceable(m_strFile, diagnostics))
                return code;
        }
        if (const E_ExitCode code = readInput(m_strFile, diagnostics, input))
            return code;
        if (input.m_bTooBig)
            return reportTooBig(input, diagnostics);
        if (!input.isText())
            return loadBinary(input, document, diagnostics);
        return document.load(input.text()) ? EC_done : reportMistakes(input, m_tLoad, diagnostics);
    }

    E_ExitCode loadBinary(const tInput& input, CDocument& document, CDiagnostics& diagnostics) const
    {
        if (m_bInPlace)
            return diagnostics.fail(input.m_strName, "is binary; --in-place is for text", EC_malformed);
        CFields tree;
        if (const E_ExitCode code = loadInput(input, m_tLoad, LCBC_DUPLICATE, SV_error, diagnostics, tree))
            return code;
        std::string text;
        tLoss loss;
        if (!writeText(tree, false, text, loss))
            return reportLoss(input, loss, diagnostics);
        if (!document.load(text))
            return diagnostics.fail(input.m_strName, "its text does not read back", EC_internal);
        return EC_done;
    }

    E_ExitCode apply(const std::string& file, const tInput& input, CDocument& document, CDiagnostics& diagnostics) const
    {
        tInput change;
        CFields patch;
        if (const E_ExitCode code = readInput(file, diagnostics, change))
            return code;
        const E_ExitCode code = isJsonName(file)
                                    ? loadJsonInput(change, {}, diagnostics, patch)
                                    : loadInput(change, m_tLoad, LCBC_DUPLICATE, SV_warning, diagnostics, patch);
        if (code != EC_done)
            return code;
        const bool isAsRead = input.isText() && document.text() == input.text();
        warnOfRepeatedNames(patch, input, isAsRead ? std::optional(input.text()) : std::nullopt, document.tree(),
                            diagnostics);
        try
        {
            document.merge(patch);
        }
        catch (const CLogicError& error)
        {
            return diagnostics.fail(change.m_strName, withoutFunction(error.what()), EC_malformed);
        }
        return EC_done;
    }

    std::string m_strFile;
    std::vector<std::string> m_vPatch;
    std::string m_strOutput;
    tLoadOptions m_tLoad;
    bool m_bInPlace = false;
    bool m_bJson = false;
};
}  // namespace

std::unique_ptr<IVerb> makeMergeVerb()
{
    return std::make_unique<CMergeVerb>();
}

}  // namespace murv::tool

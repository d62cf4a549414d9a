// tools/edit_verb.cpp - reads a document, changes it, and writes or replaces it.
#include "tools/edit_verb.h"

#include <CLI/CLI.hpp>

#include "tools/path_report.h"
#include "tools/replace_file.h"

namespace murv::tool
{

void CEditVerb::declare(CLI::App& verb)
{
    verb.add_option("FILE", m_strFile, "Text document; - for the standard input")->required();
    verb.add_option("PATH", m_strPath, "Where: orders[3].price, \"quoted name\".x, #7 for the ID 7")->required();
    declareOwn(verb);
    verb.add_flag("-i,--in-place", m_bInPlace, "Replace FILE, safely, when it changes");
    verb.add_flag("--json", m_bJson, "Diagnostics as JSON lines");
    m_tLoad.declare(verb);
}

void CEditVerb::declareOwn(CLI::App&)
{
}

E_ExitCode CEditVerb::run(tSession& session)
{
    CDiagnostics& diagnostics = session.m_tDiagnostics;
    diagnostics.setJson(m_bJson);
    const tNodePath parsed = m_strPath.starts_with('/') ? parsePointer(m_strPath) : parsePath(m_strPath);
    if (const E_ExitCode code = checkPath(m_strPath, parsed, diagnostics))
        return code;
    if (m_bInPlace && m_strFile == "-")
        return diagnostics.fail("", "the standard input cannot be replaced: --in-place needs a file", EC_wrongCall);
    if (const E_ExitCode code = m_bInPlace ? checkReplaceable(m_strFile, diagnostics) : EC_done)
        return code;
    tInput input;
    if (const E_ExitCode code = readInput(m_strFile, diagnostics, input))
        return code;
    if (input.m_bTooBig)
        return reportTooBig(input, diagnostics);
    if (!input.isText())
        return diagnostics.fail(input.m_strName, "is no text; murv convert --to text makes one", EC_malformed);
    CDocument document(m_tLoad.flags());
    if (!document.load(input.text()))
        return reportMistakes(input, m_tLoad, diagnostics);
    warnOfRepeatedNames(parsed, input, document.tree(), diagnostics);
    try
    {
        if (const E_ExitCode code = change(input, document, diagnostics))
            return code;
    }
    catch (const CLogicError& error)
    {
        return diagnostics.fail(input.m_strName, error.what(), EC_no);
    }
    return write(input, document, session);
}

E_ExitCode CEditVerb::write(const tInput& input, const CDocument& document, tSession& session) const
{
    if (m_bInPlace)
        return document.text() == input.text() ? EC_done : replaceFile(input, document.text(), session.m_tDiagnostics);
    session.m_tOutput.put(document.text());
    return session.m_tOutput.finish(session.m_tDiagnostics);
}

}  // namespace murv::tool

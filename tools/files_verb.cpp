// tools/files_verb.cpp - runs a verb on one file after the other, and keeps the gravest code.
#include "tools/files_verb.h"

#include <CLI/CLI.hpp>

namespace murv::tool
{

CFilesVerb::CFilesVerb(const char* jsonHelp, const char* filesHelp) : m_pJsonHelp(jsonHelp), m_pFilesHelp(filesHelp)
{
}

void CFilesVerb::declare(CLI::App& verb)
{
    verb.add_option("FILE", m_vFile, m_pFilesHelp)->required();
    declareOwn(verb);
    verb.add_flag("--json", m_bJson, m_pJsonHelp);
    m_tLoad.declare(verb);
}

E_ExitCode CFilesVerb::run(tSession& session)
{
    session.m_tDiagnostics.setJson(m_bJson);
    if (const E_ExitCode code = begin(session.m_tDiagnostics))
        return code;
    E_ExitCode code = EC_done;
    for (const std::string& file : m_vFile)
        code = graver(code, runFile(file, session));
    return graver(code, session.m_tOutput.finish(session.m_tDiagnostics));
}

void CFilesVerb::declareOwn(CLI::App& /*verb*/)
{
}

E_ExitCode CFilesVerb::begin(CDiagnostics& /*diagnostics*/)
{
    return EC_done;
}

E_ExitCode CFilesVerb::beforeReading(const std::string& /*path*/, CDiagnostics& /*diagnostics*/) const
{
    return EC_done;
}

E_ExitCode CFilesVerb::runFile(const std::string& path, tSession& session) const
{
    if (const E_ExitCode code = beforeReading(path, session.m_tDiagnostics))
        return code;
    tInput input;
    if (const E_ExitCode code = readInput(path, session.m_tDiagnostics, input))
        return code;
    return runInput(input, session);
}

}  // namespace murv::tool

// tools/files_verb.cpp - the run over several documents.
#include "tools/files_verb.h"

#include <CLI/CLI.hpp>

namespace murv::tool
{

void CFilesVerb::declareFiles(CLI::App& verb, const char* aboutFiles, const char* aboutJson)
{
    verb.add_option("FILE", m_vFile, aboutFiles)->required();
    verb.add_flag("--json", m_bJson, aboutJson);
    m_tLoad.declare(verb);
}

E_ExitCode CFilesVerb::run(tSession& session)
{
    session.m_tDiagnostics.setJson(m_bJson);
    E_ExitCode code = EC_done;
    for (const std::string& file : m_vFile)
        code = graver(code, runFile(file, session));
    return graver(code, session.m_tOutput.finish(session.m_tDiagnostics));
}

}  // namespace murv::tool

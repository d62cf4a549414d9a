// tools/path_report.cpp - reports about the argument PATH.
#include "tools/path_report.h"

namespace murv::tool
{

E_ExitCode checkPath(const std::string& text, const tNodePath& path, CDiagnostics& diagnostics)
{
    if (path.m_pError == nullptr)
        return EC_done;
    return diagnostics.failAt("PATH", text, {path.m_nErrorAt, path.m_nErrorAt + 1}, path.m_pError, EC_wrongCall);
}

E_ExitCode reportNothingAt(std::string_view path, const tInput& input, CDiagnostics& diagnostics)
{
    tDiagnostic diagnostic;
    diagnostic.m_eSeverity = SV_note;
    diagnostic.m_strFile = input.m_strName;
    diagnostic.m_strMessage = "nothing at " + std::string(path);
    diagnostics.report(diagnostic);
    return EC_no;
}

}  // namespace murv::tool

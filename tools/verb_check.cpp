// tools/verb_check.cpp - murv check: accepts documents, or shows every error.
#include <CLI/CLI.hpp>

#include "tools/files_verb.h"
#include "tools/json_text.h"

namespace murv::tool
{

namespace
{
class CCheckVerb : public CFilesVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_flag("-q,--quiet", m_bQuiet, "Say nothing about documents that are accepted");
        declareFiles(verb, "Documents; - for the standard input", "Results and diagnostics as JSON lines");
    }

private:
    E_ExitCode runFile(const std::string& path, tSession& session) const override
    {
        tInput input;
        if (const E_ExitCode code = readInput(path, session.m_tDiagnostics, input))
            return code;
        CFields tree;
        const E_ExitCode code = loadInput(input, m_tLoad, 0, SV_warning, session.m_tDiagnostics, tree);
        if (m_bJson)
            session.m_tOutput.put("{\"file\":" + json4Text(input.m_strName) +
                                  ",\"accepted\":" + (code == EC_done ? "true" : "false") + "}\n");
        else if (code == EC_done && !m_bQuiet)
            session.m_tOutput.put(input.m_strName + ": accepted\n");
        return code;
    }

    bool m_bQuiet = false;
};
}  // namespace

std::unique_ptr<IVerb> makeCheckVerb()
{
    return std::make_unique<CCheckVerb>();
}

}  // namespace murv::tool

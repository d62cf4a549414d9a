// tools/verb_check.cpp - murv check: accepts documents, or shows every error.
#include <CLI/CLI.hpp>

#include "tools/input.h"
#include "tools/json_text.h"
#include "tools/verb.h"

namespace murv::tool
{

namespace
{
class CCheckVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_option("FILE", m_vFile, "Documents; - for the standard input")->required();
        verb.add_flag("-q,--quiet", m_bQuiet, "Say nothing about documents that are accepted");
        verb.add_flag("--json", m_bJson, "Results and diagnostics as JSON lines");
        m_tLoad.declare(verb);
    }

    E_ExitCode run(tSession& session) override
    {
        session.m_tDiagnostics.setJson(m_bJson);
        E_ExitCode code = EC_done;
        for (const std::string& file : m_vFile)
            code = graver(code, runFile(file, session));
        return graver(code, session.m_tOutput.finish(session.m_tDiagnostics));
    }

private:
    E_ExitCode runFile(const std::string& path, tSession& session) const
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

    std::vector<std::string> m_vFile;
    tLoadOptions m_tLoad;
    bool m_bQuiet = false;
    bool m_bJson = false;
};
}  // namespace

std::unique_ptr<IVerb> makeCheckVerb()
{
    return std::make_unique<CCheckVerb>();
}

}  // namespace murv::tool

// tools/verb_check.cpp - murv check: accepts documents, or shows every error.
#include "tools/verb.h"

#include <CLI/CLI.hpp>

#include "tools/files_verb.h"
#include "tools/json_text.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
class CCheckVerb : public CFilesVerb
{
public:
    CCheckVerb() : CFilesVerb("Results and diagnostics as JSON lines")
    {
    }

private:
    void declareOwn(CLI::App& verb) override
    {
        verb.add_flag("-q,--quiet", m_bQuiet, "Say nothing about documents that are accepted");
    }

    E_ExitCode runInput(const tInput& input, tSession& session) const override
    {
        CFields tree;
        const E_ExitCode code = loadInput(input, loadOptions(), 0, SV_warning, session.m_tDiagnostics, tree);
        if (isJson())
            session.m_tOutput.put("{\"file\":" + json4Text(input.m_strName) +
                                  ",\"accepted\":" + (code == EC_done ? "true" : "false") + "}\n");
        else if (code == EC_done && !m_bQuiet)
            session.m_tOutput.put(shownText(input.m_strName) + ": accepted\n");
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

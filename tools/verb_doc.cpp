// tools/verb_doc.cpp - murv doc: the page that documents a layout.
#include "tools/verb.h"

#include <CLI/CLI.hpp>
#include <filesystem>

#include "murv/flags.h"
#include "tools/layout_input.h"
#include "tools/layout_page.h"

namespace murv::tool
{

namespace
{
class CDocVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        declareLayoutArgument(verb, m_strLayout)->required();
        verb.footer("The page goes to the standard output. It needs no other file, and no scripts.\n");
    }

    E_ExitCode run(tSession& session) override
    {
        tLoadedLayout loaded;
        if (const E_ExitCode code = readLayout(m_strLayout, session.m_tDiagnostics, loaded))
            return code;
        CFields document;
        if (const E_ExitCode code =
                loadInput(loaded.m_tInput, {}, LCBC_DUPLICATE, SV_error, session.m_tDiagnostics, document))
            return code;
        const std::string name = std::filesystem::path(loaded.m_tInput.m_strName).stem().string();
        session.m_tOutput.put(page4Layout(loaded.m_tLayout, document, name));
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }

private:
    std::string m_strLayout;
};
}  // namespace

std::unique_ptr<IVerb> makeDocVerb()
{
    return std::make_unique<CDocVerb>();
}

}  // namespace murv::tool

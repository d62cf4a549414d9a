// tools/verb_gen_wireshark.cpp - murv gen wireshark: a dissector for the packets of a layout.
#include "tools/verb_gen.h"

#include <CLI/CLI.hpp>

#include "tools/layout_input.h"

namespace murv::tool
{

namespace
{
class CGenWiresharkVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        CLI::Option* const layout =
            verb.add_option("LAYOUT", m_strLayout, "Layout: a file, or the name of an installed one");
        declareLayout(verb, m_strLayout)->excludes(layout);
    }

    E_ExitCode run(tSession& session) override
    {
        if (m_strLayout.empty())
            return session.m_tDiagnostics.fail("", "a layout is required", EC_wrongCall);
        tLoadedLayout loaded;
        if (const E_ExitCode code = readLayout(m_strLayout, session.m_tDiagnostics, loaded))
            return code;
        return session.m_tDiagnostics.fail("", "dissectors are not written yet", EC_no);
    }

private:
    std::string m_strLayout;
};
}  // namespace

std::unique_ptr<IVerb> makeGenWiresharkVerb()
{
    return std::make_unique<CGenWiresharkVerb>();
}

}  // namespace murv::tool

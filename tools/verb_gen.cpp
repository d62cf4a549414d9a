// tools/verb_gen.cpp - murv gen: what is made from a layout, other than packets.
#include "tools/verb_gen.h"

#include <CLI/CLI.hpp>
#include <utility>
#include <vector>

namespace murv::tool
{

namespace
{
class CGenVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.require_subcommand(1);
        for (const tVerbRow& row : s_ctGenVerbs)
        {
            CLI::App* const app = verb.add_subcommand(row.m_pName, row.m_pSummary)->group("Verbs");
            m_vVerb.emplace_back(app, row.m_pMake());
            m_vVerb.back().second->declare(*app);
        }
    }

    E_ExitCode run(tSession& session) override
    {
        for (const auto& [app, verb] : m_vVerb)
        {
            if (app->parsed())
                return verb->run(session);
        }
        return EC_wrongCall;
    }

private:
    std::vector<std::pair<CLI::App*, std::unique_ptr<IVerb>>> m_vVerb;
};
}  // namespace

std::unique_ptr<IVerb> makeGenVerb()
{
    return std::make_unique<CGenVerb>();
}

}  // namespace murv::tool

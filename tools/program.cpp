// tools/program.cpp - declares the program, its verbs and their options.
#include "tools/program.h"

#include "tools/command_line.h"

namespace murv::tool
{

CProgram::CProgram() : m_tApp("Reads, checks and lays out murv documents.", "murv")
{
    m_tApp.formatter(std::make_shared<CHelpFormatter>());
    m_tApp.set_version_flag("--version", MURV_VERSION, "Print the version and exit");
    m_tApp.require_subcommand(1);
    for (const tVerbRow& row : s_ctVerbs)
    {
        CLI::App* const app = m_tApp.add_subcommand(row.m_pName, row.m_pSummary)->group("Verbs");
        m_vVerb.emplace_back(app, row.m_pMake());
        m_vVerb.back().second->declare(*app);
    }
}

IVerb* CProgram::calledVerb() const
{
    for (const auto& [app, verb] : m_vVerb)
    {
        if (app->parsed())
            return verb.get();
    }
    return nullptr;
}

}  // namespace murv::tool

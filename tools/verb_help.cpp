// tools/verb_help.cpp - murv help: the same text as --help, also for a verb that is named.
#include "tools/verb.h"

#include "tools/command_line.h"
#include "tools/nearest.h"

namespace murv::tool
{

namespace
{
class CHelpVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        m_pTool = verb.get_parent();
        verb.add_option("VERB", m_strVerb, "The verb to explain");
    }

    E_ExitCode run(tSession& session) override
    {
        if (m_strVerb.empty())
        {
            m_pTool->clear();  // else this would be the help of the verb that was called: help
            return put(m_pTool->help(), session);
        }
        for (const CLI::App* verb : m_pTool->get_subcommands({}))
        {
            if (verb->get_name() == m_strVerb)
                return put(verb->help(m_pTool->get_name()), session);
        }
        session.m_tDiagnostics.error("", "no verb is called " + m_strVerb + hint4(m_strVerb, verbNames()));
        return EC_wrongCall;
    }

private:
    static E_ExitCode put(const std::string& text, tSession& session)
    {
        session.m_tOutput.put(text);
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }

    CLI::App* m_pTool = nullptr;  // not owned
    std::string m_strVerb;
};
}  // namespace

std::unique_ptr<IVerb> makeHelpVerb()
{
    return std::make_unique<CHelpVerb>();
}

}  // namespace murv::tool

// tools/main.cpp - the command line: chooses the verb and turns whatever happens into an exit code.
#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <new>

#include "murv/layout.h"
#include "tools/command_line.h"
#include "tools/program.h"
#include "tools/utf8.h"
#include "tools/verb.h"

namespace murv::tool
{

namespace
{
/// What parsing the command line threw: a wish for help or the version, or a wrong call.
E_ExitCode answer(const CLI::App& tool, const CLI::ParseError& error, tSession& session)
{
    if (dynamic_cast<const CLI::CallForVersion*>(&error) != nullptr)
    {
        session.m_tOutput.put(std::string("murv ") + MURV_VERSION + "\n");
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }
    if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
    {
        session.m_tOutput.put(help4Call(tool));
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }
    session.m_tDiagnostics.error("", fault4Call(tool, error));
    return EC_wrongCall;
}

E_ExitCode runTool(int argc, char** argv)
{
    tSession session;
    CProgram program;
    try
    {
        program.app().parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        return answer(program.app(), error, session);
    }
    IVerb* const verb = program.calledVerb();
    return verb != nullptr ? verb->run(session) : EC_wrongCall;
}
}  // namespace

}  // namespace murv::tool

int main(int argc, char** argv)
{
    using namespace murv::tool;
    holdStandardStreams();
    // A reader that went away and a file that may not grow are seen when writing fails.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    try
    {
        murv::registerStandardKeywords();
        return runTool(argc, argv);
    }
    catch (const std::bad_alloc&)
    {
        writeAll(2, "murv: error: out of memory\n");
    }
    catch (const std::exception& error)
    {
        writeAll(2, "murv: internal error: " + shownText(error.what()) + "\n");
    }
    return EC_internal;
}

// tools/program.h - the command line as a whole: all verbs with their options.
//
// The program parses calls with it. The build makes the manual and the completions of shells from it, so they know what
// the program knows.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <utility>
#include <vector>

#include "tools/verb.h"

namespace murv::tool
{

class CProgram
{
public:
    CProgram();
    CProgram(const CProgram&) = delete;
    CProgram& operator=(const CProgram&) = delete;

    CLI::App& app()
    {
        return m_tApp;
    }
    const CLI::App& app() const
    {
        return m_tApp;
    }
    /// The verb that the parsed call names, owned by this object; or null.
    IVerb* calledVerb() const;

private:
    CLI::App m_tApp;
    std::vector<std::pair<CLI::App*, std::unique_ptr<IVerb>>> m_vVerb;
};

}  // namespace murv::tool

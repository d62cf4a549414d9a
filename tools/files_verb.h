// tools/files_verb.h - a verb that does the same with each of several documents.
//
// One file that fails does not keep the others from being looked at; the gravest exit code is that of the run.
#pragma once

#include <string>
#include <vector>

#include "tools/input.h"
#include "tools/verb.h"

namespace murv::tool
{

class CFilesVerb : public IVerb
{
public:
    E_ExitCode run(tSession& session) override;

protected:
    /// The options of all such verbs: files, --json, and those for loading.
    void declareFiles(CLI::App& verb, const char* aboutFiles, const char* aboutJson);
    virtual E_ExitCode runFile(const std::string& path, tSession& session) const = 0;

    tLoadOptions m_tLoad;
    bool m_bJson = false;

private:
    std::vector<std::string> m_vFile;
};

}  // namespace murv::tool

// tools/files_verb.h - what the verbs that take several files have in common.
//
// This class declares the list of files, --json and the options of loading, and has the loop over the files. So each of
// these verbs goes on after a file that fails, and ends with the gravest code. A verb adds what to do with one file.
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
    void declare(CLI::App& verb) final;
    E_ExitCode run(tSession& session) override;

protected:
    /// \param jsonHelp, filesHelp  what the help says of --json and of FILE; the texts are not copied
    explicit CFilesVerb(const char* jsonHelp, const char* filesHelp = "Documents; - for the standard input");

    const std::vector<std::string>& files() const
    {
        return m_vFile;
    }
    const tLoadOptions& loadOptions() const
    {
        return m_tLoad;
    }
    bool isJson() const
    {
        return m_bJson;
    }
    /// Reads a file whole and runs the verb on it.
    virtual E_ExitCode runFile(const std::string& path, tSession& session) const;

private:
    /// Declares the verb's own options; the help shows them after FILE and before the common ones.
    virtual void declareOwn(CLI::App& verb);
    /// Runs once, before the first file is read. \return EC_done to go on
    virtual E_ExitCode begin(CDiagnostics& diagnostics);
    /// Looks at a file before it is opened. \return EC_done to read it
    virtual E_ExitCode beforeReading(const std::string& path, CDiagnostics& diagnostics) const;
    virtual E_ExitCode runInput(const tInput& input, tSession& session) const = 0;

    const char* m_pJsonHelp;
    const char* m_pFilesHelp;
    std::vector<std::string> m_vFile;
    tLoadOptions m_tLoad;
    bool m_bJson = false;
};

}  // namespace murv::tool

// tools/edit_verb.h - what the verbs have in common that change one member of a document.
//
// Everything else in the text stays byte for byte.
#pragma once

#include <string>

#include "murv/document.h"
#include "tools/input.h"
#include "tools/verb.h"

namespace murv::tool
{

class CEditVerb : public IVerb
{
public:
    void declare(CLI::App& verb) final;
    E_ExitCode run(tSession& session) final;

protected:
    const std::string& path() const
    {
        return m_strPath;
    }

private:
    /// Declares what follows PATH.
    virtual void declareOwn(CLI::App& verb);
    /// Makes the change. CLogicError is reported.
    virtual E_ExitCode change(const tInput& input, CDocument& document, CDiagnostics& diagnostics) const = 0;

    E_ExitCode write(const tInput& input, const CDocument& document, tSession& session) const;

    std::string m_strFile;
    std::string m_strPath;
    tLoadOptions m_tLoad;
    bool m_bInPlace = false;
    bool m_bJson = false;
};

}  // namespace murv::tool

// tools/password.h - where the password of a binary file comes from.
//
// From a file or from the standard input; never from the arguments or the environment, which other users can see.
#pragma once

#include <string>

#include "tools/diagnostics.h"
#include "tools/exit_code.h"

namespace CLI
{
class App;
}

namespace murv::tool
{

struct tInput;

class CPasswordSource
{
public:
    void declare(CLI::App& verb);
    bool isGiven() const
    {
        return m_bStandardInput || !m_strFile.empty();
    }
    /// Reads the password once; a line end behind it is not part of it. It stays empty when none is given. Reports
    /// failures: a file that cannot be read, content that cannot be a password, a document on the same input.
    E_ExitCode read(const tInput& document, CDiagnostics& diagnostics, std::string& password) const;

private:
    std::string m_strFile;
    bool m_bStandardInput = false;
    mutable bool m_bRead = false;
    mutable std::string m_strPassword;
};

/// The password that a binary result gets: that of the document, another, or none.
class COutputPassword
{
public:
    void declare(CLI::App& verb);
    bool isGiven() const
    {
        return m_bNone || !m_strFile.empty();
    }
    /// \param password  that of the document; replaced when another is asked for
    E_ExitCode choose(CDiagnostics& diagnostics, std::string& password) const;

private:
    std::string m_strFile;
    bool m_bNone = false;
};

}  // namespace murv::tool

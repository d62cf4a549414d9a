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
class Option;
}  // namespace CLI

namespace murv::tool
{

struct tInput;

class CPasswordSource
{
public:
    /// Declares --password-file and --password-stdin, which exclude each other.
    /// \param prefix   put before "password" in the names of the options
    /// \param whose    names the password in the help
    /// \param instead  one more option that excludes both, or null
    void declare(CLI::App& verb, const std::string& prefix, const std::string& whose, CLI::Option* instead = nullptr);
    bool isGiven() const
    {
        return isStandardInput() || !m_strFile.empty();
    }
    bool isStandardInput() const
    {
        return m_bStandardInput || m_strFile == "-";
    }
    /// Reads the password once; a line end after it is not part of it. It stays empty when none is given. Reports
    /// failures: a file that cannot be read, content that cannot be a password, a document on the same input.
    E_ExitCode read(const tInput& document, CDiagnostics& diagnostics, std::string& password) const;

private:
    std::string m_strFile;
    bool m_bStandardInput = false;
    mutable bool m_bRead = false;
    mutable std::string m_strPassword;
};

}  // namespace murv::tool

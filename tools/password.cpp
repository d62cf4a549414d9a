// tools/password.cpp - reads passwords.
#include "tools/password.h"

#include <CLI/CLI.hpp>
#include <utility>

#include "tools/input.h"

namespace murv::tool
{

namespace
{
/// The whole input without a line end behind it.
E_ExitCode readPassword(const std::string& file, CDiagnostics& diagnostics, std::string& password)
{
    tInput input;
    if (const E_ExitCode code = readInput(file, diagnostics, input))
        return code;
    std::string text(input.text());
    if (!text.empty() && text.back() == '\n')
        text.pop_back();
    if (!text.empty() && text.back() == '\r')
        text.pop_back();
    if (text.empty() || text.find('\0') != std::string::npos)
    {
        diagnostics.error(input.m_strName, text.empty() ? "holds no password" : "a password has no byte of value 0");
        return EC_password;
    }
    password = std::move(text);
    return EC_done;
}
}  // namespace

void CPasswordSource::declare(CLI::App& verb)
{
    CLI::Option* const file =
        verb.add_option("--password-file", m_strFile, "File that holds the password of a binary file")
            ->type_name("FILE");
    verb.add_flag("--password-stdin", m_bStandardInput, "Read the password from the standard input")->excludes(file);
}

E_ExitCode CPasswordSource::read(const tInput& document, CDiagnostics& diagnostics, std::string& password) const
{
    if (m_bStandardInput && document.isStandardInput())
        return diagnostics.error("", "the standard input cannot hold both document and password"), EC_wrongCall;
    if (isGiven() && !m_bRead)
    {
        if (const E_ExitCode code = readPassword(m_bStandardInput ? "-" : m_strFile, diagnostics, m_strPassword))
            return code;
        m_bRead = true;
    }
    password = m_strPassword;
    return EC_done;
}

void COutputPassword::declare(CLI::App& verb)
{
    CLI::Option* const file =
        verb.add_option("--output-password-file", m_strFile, "File that holds another password for a binary result")
            ->type_name("FILE");
    verb.add_flag("--no-output-password", m_bNone, "Put no password on a binary result")->excludes(file);
}

E_ExitCode COutputPassword::choose(CDiagnostics& diagnostics, std::string& password) const
{
    if (m_bNone)
        password.clear();
    return m_strFile.empty() ? EC_done : readPassword(m_strFile, diagnostics, password);
}

}  // namespace murv::tool

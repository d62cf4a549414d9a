// tools/password.cpp - declares the options for passwords, and reads a password once.
#include "tools/password.h"

#include <CLI/CLI.hpp>

#include "tools/file_option.h"
#include "tools/input.h"

namespace murv::tool
{

void CPasswordSource::declare(CLI::App& verb, const std::string& prefix, const std::string& whose, CLI::Option* instead)
{
    CLI::Option* const file = takeFile(
        verb.add_option("--" + prefix + "password-file", m_strFile, "File that holds " + whose + " of a binary file"));
    CLI::Option* const input =
        verb.add_flag("--" + prefix + "password-stdin", m_bStandardInput, "Read " + whose + " from the standard input")
            ->excludes(file);
    if (instead != nullptr)
        instead->excludes(file)->excludes(input);
}

E_ExitCode CPasswordSource::read(const tInput& document, CDiagnostics& diagnostics, std::string& password) const
{
    if (isStandardInput() && document.isStandardInput())
        return diagnostics.fail("", "the standard input cannot hold both document and password", EC_wrongCall);
    if (isGiven() && !m_bRead)
    {
        tInput input;
        if (const E_ExitCode code = readInput(isStandardInput() ? "-" : m_strFile, diagnostics, input))
            return code;
        std::string text(input.text());
        if (!text.empty() && text.back() == '\n')
            text.pop_back();
        if (!text.empty() && text.back() == '\r')
            text.pop_back();
        if (text.empty() || text.find('\0') != std::string::npos)
            return diagnostics.fail(
                input.m_strName, text.empty() ? "holds no password" : "a password has no byte of value 0", EC_password);
        m_strPassword = std::move(text);
        m_bRead = true;
    }
    password = m_strPassword;
    return EC_done;
}

}  // namespace murv::tool

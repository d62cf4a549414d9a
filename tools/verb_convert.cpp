// tools/verb_convert.cpp - murv convert: text to binary files and back.
//
// Savings are lossless: the verb names what a text or a binary file cannot hold. It writes a result only after reading
// it back and finding the same tree.
#include "tools/verb.h"

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "murv/loader.h"
#include "murv/saver.h"
#include "tools/file_option.h"
#include "tools/input.h"
#include "tools/replace_file.h"
#include "tools/text_format.h"

namespace murv::tool
{

namespace
{
class CConvertVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_option("FILE", m_strFile, "Document, text or binary; - for the standard input")->required();
        verb.add_option("--to", m_strTo, "Encoding of the result")
            ->required()
            ->check(CLI::IsMember({"text", "compact", "binary"}));
        takeFile(verb.add_option("-o,--output", m_strOutput, "File for the result instead of the standard output"));
        verb.add_flag("--json", m_bJson, "Diagnostics as JSON lines");
        m_tLoad.declare(verb);
        CLI::Option* const without =
            verb.add_flag("--no-output-password", m_bNoOutputPassword, "Put no password on the result");
        m_tOutputPassword.declare(verb, "output-", "the new password", without);
        verb.footer(
            "A password opens a binary FILE, and is put on a binary result unless that is to have\n"
            "another one, or none.\n");
    }

    E_ExitCode run(tSession& session) override
    {
        session.m_tDiagnostics.setJson(m_bJson);
        if (const char* const fault = callFault())
            return session.m_tDiagnostics.fail("", fault, EC_wrongCall);
        tInput input;
        std::string result;
        if (const E_ExitCode code = readInput(m_strFile, session.m_tDiagnostics, input))
            return code;
        if (const E_ExitCode code = convert(input, session.m_tDiagnostics, result))
            return code;
        if (!m_strOutput.empty())
            return writeFile(m_strOutput, result, session.m_tDiagnostics);
        session.m_tOutput.put(result);
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }

private:
    bool isBinary() const
    {
        return m_strTo == "binary";
    }

    /// What is wrong with the call, as far as the options alone show; or null.
    const char* callFault() const
    {
        if (isBinary() && m_strOutput.empty() && isatty(STDOUT_FILENO) == 1)
            return "a binary result is not for a terminal; use --output";
        // Whoever asks for a password would take the text for protected.
        if (!isBinary() && m_tOutputPassword.isGiven())
            return "a password can be put on a binary result only";
        if (m_tLoad.m_tPassword.isStandardInput() && m_tOutputPassword.isStandardInput())
            return "the standard input cannot hold both passwords";
        return nullptr;
    }

    /// The password for the result: that of FILE, unless the options say otherwise.
    E_ExitCode readOutputPassword(const tInput& input, CDiagnostics& diagnostics, std::string& password) const
    {
        if (const E_ExitCode code = m_tLoad.m_tPassword.read(input, diagnostics, password))
            return code;
        if (m_bNoOutputPassword)
            password.clear();
        return m_tOutputPassword.isGiven() ? m_tOutputPassword.read(input, diagnostics, password) : EC_done;
    }

    E_ExitCode convert(const tInput& input, CDiagnostics& diagnostics, std::string& result) const
    {
        CFields tree;
        if (const E_ExitCode code = loadInput(input, m_tLoad, LCBC_DUPLICATE, SV_error, diagnostics, tree))
            return code;
        std::string password;
        if (const E_ExitCode code = readOutputPassword(input, diagnostics, password))
            return code;
        return isBinary() ? toBinary(input, tree, password, diagnostics, result)
                          : toText(input, tree, diagnostics, result);
    }

    E_ExitCode toBinary(const tInput& input, CFields& tree, const std::string& password, CDiagnostics& diagnostics,
                        std::string& result) const
    {
        if (input.isText())
        {
            CFields spent = tree;
            std::string unused;
            if (const E_ExitCode code = writeWhole(input, spent, {}, diagnostics, unused))
                return code;  // the tree lacks what the text has
        }
        tLoss loss;
        if (!writeBinary(tree, password, result, loss))
            return reportLoss(input, loss, diagnostics);
        CLoaders loader(LCBC_COMMENT | LCBC_DUPLICATE | LCBC_LOSSLESS);
        CFields again;
        if (!loader.loading(result, again, password.c_str()))
            return diagnostics.fail(input.m_strName, "a binary file cannot hold it: " + reason(loader), EC_malformed);
        if (isSameDocument(tree, again, true))
            return EC_done;
        return diagnostics.fail(input.m_strName, "not converted: the result does not read back equal", EC_internal);
    }

    static std::string reason(const CLoaders& loader)
    {
        const std::vector<tErrorPlace> errors = loader.getErrorPlaces();
        return errors.empty() ? withoutFunction(loader.getLastErrMsg()) : errors.front().m_strMessage;
    }

    /// Writes the text with all comments and remarks of FILE; text on one line has none.
    static E_ExitCode writeWhole(const tInput& input, CFields& tree, const tFormat& format, CDiagnostics& diagnostics,
                                 std::string& text)
    {
        tLoss loss;
        if (!writeText(tree, input.isText() ? input.text() : std::string_view(), format, text, loss))
            return reportLoss(input, loss, diagnostics);
        const bool isKept = format.m_bCompact || !input.isText() || keepsComments(input, text, diagnostics);
        return isKept ? EC_done : EC_malformed;
    }

    E_ExitCode toText(const tInput& input, CFields& tree, CDiagnostics& diagnostics, std::string& result) const
    {
        tFormat format;
        format.m_bCompact = m_strTo == "compact";
        const CFields before = tree;  // writing changes the values
        if (const E_ExitCode code = writeWhole(input, tree, format, diagnostics, result))
            return code;
        CLoader4SER loader(m_tLoad.flags() | LCBC_DUPLICATE);
        CFields again;
        if (loader.loading(result, again) && isSameDocument(before, again, !format.m_bCompact))
            return EC_done;
        return diagnostics.fail(input.m_strName, "text cannot hold it: the result does not read back equal",
                                EC_malformed);
    }

    std::string m_strFile;
    std::string m_strTo;
    std::string m_strOutput;
    tLoadOptions m_tLoad;
    CPasswordSource m_tOutputPassword;
    bool m_bNoOutputPassword = false;
    bool m_bJson = false;
};
}  // namespace

std::unique_ptr<IVerb> makeConvertVerb()
{
    return std::make_unique<CConvertVerb>();
}

}  // namespace murv::tool

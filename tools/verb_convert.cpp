// tools/verb_convert.cpp - murv convert: text to binary files and back, and to and from JSON.
//
// A text that becomes a text keeps its tokens. Else savings are lossless: the verb names what a text, a binary file or
// JSON cannot hold. It writes a result only after reading it back and finding the same document, except JSON, which it
// writes in pieces.
#include "tools/verb.h"

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "murv/loader.h"
#include "murv/syntax.h"
#include "tools/file_option.h"
#include "tools/input.h"
#include "tools/json_input.h"
#include "tools/json_writer.h"
#include "tools/lossless.h"
#include "tools/replace_file.h"
#include "tools/same_document.h"

namespace murv::tool
{

namespace
{
constexpr std::string_view s_svJson = "json";

class CConvertVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_option("FILE", m_strFile, "Document, text or binary, or JSON; - for the standard input")->required();
        verb.add_option("--to", m_strTo, "Encoding of the result")
            ->required()
            ->check(CLI::IsMember({"text", "compact", "binary", "json"}));
        verb.add_option("--from", m_strFrom, "What FILE is, instead of JSON for *.json and a document for others")
            ->check(CLI::IsMember({"document", "json"}));
        takeFile(verb.add_option("-o,--output", m_strOutput, "File for the result instead of the standard output"));
        verb.add_flag("--plain", m_bPlain,
                      "JSON has values alone: no IDs, comments, packet expressions; no \"$\" keys");
        verb.add_option("--bytes", m_strBytes, "How JSON holds strings that are not UTF-8, instead of an error")
            ->check(CLI::IsMember({"hex", "base64"}));
        verb.add_flag("--nearest", m_bNearest,
                      "Read numbers that JSON gives more exactly than a double as the nearest one");
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
        CFields tree;
        if (const E_ExitCode code = readInput(m_strFile, session.m_tDiagnostics, input))
            return code;
        if (const E_ExitCode code = isLaidOut(input) ? EC_done : load(input, session.m_tDiagnostics, tree))
            return code;
        if (m_strTo == s_svJson)
            return putJson(input, tree, session);
        if (const E_ExitCode code = convert(input, tree, session.m_tDiagnostics, result))
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

    bool isCompact() const
    {
        return m_strTo == "compact";
    }

    bool isFromJson() const
    {
        return m_strFrom.empty() ? isJsonName(m_strFile) : m_strFrom == s_svJson;
    }

    /// Whether FILE may have comments and remarks that its tree lacks.
    bool isFromText(const tInput& input) const
    {
        return input.isText() && !isFromJson();
    }

    /// Whether the result has the tokens of FILE.
    bool isLaidOut(const tInput& input) const
    {
        return isFromText(input) && !input.m_bTooBig && (m_strTo == "text" || isCompact());
    }

    /// What is wrong with the call, as far as the options alone show; or null.
    const char* callFault() const
    {
        if ((m_bPlain || !m_strBytes.empty()) && m_strTo != s_svJson && !isFromJson())
            return "--plain and --bytes are for JSON";
        if (m_bNearest && !isFromJson())
            return "--nearest is for numbers read from JSON";
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

    E_ExitCode load(const tInput& input, CDiagnostics& diagnostics, CFields& tree) const
    {
        if (!isFromJson())
            return loadInput(input, m_tLoad, LCBC_DUPLICATE, SV_error, diagnostics, tree);
        return loadJsonInput(input, {m_bPlain, !m_strBytes.empty(), m_bNearest}, diagnostics, tree);
    }

    E_ExitCode convert(const tInput& input, const CFields& tree, CDiagnostics& diagnostics, std::string& result) const
    {
        std::string password;
        if (const E_ExitCode code = readOutputPassword(input, diagnostics, password))
            return code;
        if (isBinary())
            return toBinary(input, tree, password, diagnostics, result);
        return isLaidOut(input) ? layOut(input, diagnostics, result) : toText(input, tree, diagnostics, result);
    }

    E_ExitCode putJson(const tInput& input, const CFields& tree, tSession& session) const
    {
        CDiagnostics& diagnostics = session.m_tDiagnostics;
        const tJsonStyle style = {m_bPlain ? JF_plain : JF_exact, m_strBytes.empty()    ? JB_none
                                                                  : m_strBytes == "hex" ? JB_hex
                                                                                        : JB_base64};
        if (!m_bPlain)
        {
            if (const E_ExitCode code = isFromText(input) ? checkComments(input, tree, diagnostics) : EC_done)
                return code;
        }
        tLoss loss;
        if (!checkJson(tree, style, loss))
            return reportLoss(input, loss, diagnostics);
        CResultFile result(m_strOutput, session.m_tOutput);
        if (const E_ExitCode code = result.open(diagnostics))
            return code;
        if (writeJson(
                tree, style, [&result](std::string_view piece) { return result.put(piece); }, loss))
            result.put("\n");
        return result.finish(diagnostics);
    }

    E_ExitCode toBinary(const tInput& input, const CFields& tree, const std::string& password,
                        CDiagnostics& diagnostics, std::string& result) const
    {
        if (const E_ExitCode code = isFromText(input) ? checkComments(input, tree, diagnostics) : EC_done)
            return code;
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

    /// A text that becomes a text keeps its tokens, and needs no tree.
    E_ExitCode layOut(const tInput& input, CDiagnostics& diagnostics, std::string& result) const
    {
        tTextLayout layout;
        layout.m_bCompact = isCompact();
        std::optional<std::string> text = formatText(input.text(), m_tLoad.flags() | LCBC_DUPLICATE, layout);
        if (text && haveSameTokens(input.text(), *text, layout))
        {
            result = std::move(*text);
            return EC_done;
        }
        CFields unused;
        if (const E_ExitCode code = load(input, diagnostics, unused))  // says why
            return code;
        return diagnostics.fail(input.m_strName, "not converted: the result does not read back equal", EC_internal);
    }

    E_ExitCode toText(const tInput& input, const CFields& tree, CDiagnostics& diagnostics, std::string& result) const
    {
        tLoss loss;
        if (!writeText(tree, isCompact(), result, loss))
            return reportLoss(input, loss, diagnostics);
        if (isTextOf(result, m_tLoad.flags(), tree, !isCompact()))
            return EC_done;
        return diagnostics.fail(input.m_strName, "text cannot hold it: the result does not read back equal",
                                EC_malformed);
    }

    std::string m_strFile;
    std::string m_strTo;
    std::string m_strFrom;
    std::string m_strBytes;
    std::string m_strOutput;
    tLoadOptions m_tLoad;
    CPasswordSource m_tOutputPassword;
    bool m_bNoOutputPassword = false;
    bool m_bPlain = false;
    bool m_bNearest = false;
    bool m_bJson = false;
};
}  // namespace

std::unique_ptr<IVerb> makeConvertVerb()
{
    return std::make_unique<CConvertVerb>();
}

}  // namespace murv::tool

// tools/verb_fmt.cpp - murv fmt: gives documents a new layout.
//
// It loses nothing that a document says. A comment or text that the result would lack is an error, and a file is
// replaced only after the new text was read back and gave the same tree.
#include "tools/verb.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "murv/flags.h"
#include "tools/files_verb.h"
#include "tools/json_text.h"
#include "tools/replace_file.h"
#include "tools/text_format.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
/// "tab", or a number of blanks. \return an empty text for anything else
std::string unit4Option(const std::string& option)
{
    constexpr std::size_t most = 16;
    if (option == "tab")
        return "\t";
    const bool number =
        !option.empty() && option.size() <= 2 && option.find_first_not_of("0123456789") == std::string::npos;
    const std::size_t width = number ? std::stoul(option) : 0;
    return width <= most ? std::string(width, ' ') : std::string();
}

class CFmtVerb : public CFilesVerb
{
public:
    CFmtVerb() : CFilesVerb("Diagnostics, and names of files that differ, as JSON lines")
    {
    }

private:
    void declareOwn(CLI::App& verb) override
    {
        CLI::Option* const inPlace =
            verb.add_flag("-i,--in-place", m_bInPlace, "Replace each file, safely, when its layout differs");
        verb.add_flag("-c,--check", m_bCheck, "Only name the files whose layout differs; exit 1 when any does")
            ->excludes(inPlace);
        verb.add_flag("--compact", m_tFormat.m_bCompact, "One line, without blanks and comments");
        verb.add_option("--indent", m_strIndent, "Blanks for each level, 1 to 16, or tab")
            ->default_str("2")
            ->type_name("N|tab")
            ->check([](const std::string& option) {
                return unit4Option(option).empty() ? "neither 1 to 16 nor tab" : std::string();
            });
        verb.add_flag("--no-one-line-arrays", m_bNoOneLineArrays, "Every element on a line of its own");
        verb.add_flag("--no-null-word", m_bNoNullWord, "Write null as nothing instead of \"null\"");
        verb.add_flag("--no-final-newline", m_bNoFinalNewline, "Do not end with a line feed");
        verb.footer(
            "Nothing but the layout changes: comments and values stay. What text cannot hold is an error at its place.\n"
            "--in-place reads the new text back and compares it before the file is replaced.\n");
    }

    E_ExitCode begin(CDiagnostics& diagnostics) override
    {
        m_tFormat.m_strIndentUnit = unit4Option(m_strIndent);
        m_tFormat.m_bOneLineArrays = !m_bNoOneLineArrays;
        m_tFormat.m_bNullWord = !m_bNoNullWord;
        m_tFormat.m_bFinalNewline = !m_bNoFinalNewline;
        return checkCall(diagnostics);
    }

    E_ExitCode checkCall(CDiagnostics& diagnostics) const
    {
        const bool toOutput = !m_bInPlace && !m_bCheck;
        if (toOutput && files().size() > 1)
            return diagnostics.fail("", "several files need --in-place or --check", EC_wrongCall);
        if (m_bInPlace && std::count(files().begin(), files().end(), "-") != 0)
            return diagnostics.fail("", "the standard input cannot be replaced: --in-place needs files", EC_wrongCall);
        return EC_done;
    }

    E_ExitCode beforeReading(const std::string& path, CDiagnostics& diagnostics) const override
    {
        return m_bInPlace ? checkReplaceable(path, diagnostics) : EC_done;
    }

    E_ExitCode runInput(const tInput& input, tSession& session) const override
    {
        std::string text;
        if (const E_ExitCode code = layOut(input, session.m_tDiagnostics, text))
            return code;
        const bool differs = text != input.text();
        if (m_bCheck)
        {
            if (differs)
                session.m_tOutput.put(isJson() ? "{\"file\":" + json4Text(input.m_strName) + ",\"differs\":true}\n"
                                               : shownText(input.m_strName) + "\n");
            return differs ? EC_no : EC_done;
        }
        if (m_bInPlace)
            return differs ? replace(input, text, session.m_tDiagnostics) : EC_done;
        session.m_tOutput.put(text);
        return EC_done;
    }

    E_ExitCode layOut(const tInput& input, CDiagnostics& diagnostics, std::string& text) const
    {
        CFields tree;
        // Members of equal names all stay: the program that loads the document chooses among them.
        if (const E_ExitCode code = loadInput(input, loadOptions(), LCBC_DUPLICATE, SV_error, diagnostics, tree))
            return code;
        tLoss loss;
        if (!writeText(tree, input.isText() ? input.text() : std::string_view(), m_tFormat, text, loss))
            return reportLoss(input, loss, diagnostics);
        if (m_tFormat.m_bCompact || !input.isText())
            return EC_done;
        return keepsComments(input, text, diagnostics) ? EC_done : EC_malformed;
    }

    E_ExitCode replace(const tInput& input, const std::string& text, CDiagnostics& diagnostics) const
    {
        if (!input.isText())
            return diagnostics.fail(input.m_strName, "is binary; --in-place is for text", EC_malformed);
        if (!readsBackEqual(input, text, diagnostics))
            return diagnostics.fail(input.m_strName, "not replaced: the new text does not read back equal",
                                    EC_internal);
        return replaceFile(input, text, diagnostics);
    }

    bool readsBackEqual(const tInput& input, const std::string& text, CDiagnostics& diagnostics) const
    {
        tInput again;
        again.m_strPath = again.m_strName = "the new text of " + input.m_strName;
        again.m_pBytes.reset(new char[text.size() + 1]);
        again.m_nSize = text.copy(again.m_pBytes.get(), text.size());
        CFields before;
        CFields after;
        return loadInput(input, loadOptions(), LCBC_DUPLICATE, SV_error, diagnostics, before) == EC_done &&
               loadInput(again, loadOptions(), LCBC_DUPLICATE, SV_error, diagnostics, after) == EC_done &&
               isSameDocument(before, after, false);
    }

    tFormat m_tFormat;
    std::string m_strIndent = "2";
    bool m_bInPlace = false;
    bool m_bCheck = false;
    bool m_bNoOneLineArrays = false;
    bool m_bNoNullWord = false;
    bool m_bNoFinalNewline = false;
};
}  // namespace

std::unique_ptr<IVerb> makeFmtVerb()
{
    return std::make_unique<CFmtVerb>();
}

}  // namespace murv::tool

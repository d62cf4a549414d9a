// tools/verb_fmt.cpp - murv fmt: gives documents a new layout.
//
// A text keeps every token as it stands, so nothing can be lost; the result is written as it is made, and takes no
// memory. A file is replaced only when the new text, read back, has the tokens of the old one. Binary files are loaded
// and saved as text.
#include "tools/verb.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>

#include "murv/flags.h"
#include "murv/syntax.h"
#include "tools/files_verb.h"
#include "tools/json_text.h"
#include "tools/lossless.h"
#include "tools/replace_file.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
/// Members of equal names all stay: the program that loads the document chooses among them.
constexpr unsigned int s_cuiFlags = LCBC_DUPLICATE;

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
        verb.add_flag("--compact", m_tLayout.m_bCompact, "One line, without blanks and comments");
        verb.add_option("--indent", m_strIndent, "Blanks for each level, 1 to 16, or tab")
            ->default_str("2")
            ->type_name("N|tab")
            ->check([](const std::string& option) {
                return unit4Option(option).empty() ? "neither 1 to 16 nor tab" : std::string();
            });
        verb.add_option("--width", m_tLayout.m_uiWidth, "Longest line of a container that stands on one line")
            ->capture_default_str()
            ->type_name("N")
            ->check(CLI::Range(1, 10000));
        verb.add_flag("--no-one-line-arrays", m_bNoOneLineArrays, "Every element on a line of its own");
        verb.add_flag("--no-null-word", m_bNoNullWord, "Write null as nothing instead of \"null\"");
        verb.add_flag("--no-final-newline", m_bNoFinalNewline, "Do not end with a line feed");
        verb.footer(
            "Nothing but the layout changes: comments and values stay. What text cannot hold is an error at its\n"
            "place. --in-place reads the new text back and compares it before the file is replaced.\n");
    }

    E_ExitCode begin(CDiagnostics& diagnostics) override
    {
        m_tLayout.m_strIndent = unit4Option(m_strIndent);
        m_tLayout.m_bOneLineArrays = !m_bNoOneLineArrays;
        m_tLayout.m_bNullWord = !m_bNoNullWord;
        m_tLayout.m_bFinalNewline = !m_bNoFinalNewline;
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
        if (input.m_bTooBig)
            return reportTooBig(input, session.m_tDiagnostics);
        if (!input.isText())
            return layOutTree(input, session);
        bool isText = false;
        bool isSame = true;
        if (m_bCheck || m_bInPlace)
            isText = compare(input, isSame);
        else
            isText = layOut(input.text(), [&](std::string_view piece) { session.m_tOutput.put(piece); });
        if (!isText)
            return reportMistakes(input, loadOptions(), session.m_tDiagnostics);
        if (isSame)
            return EC_done;
        return m_bInPlace ? replace(input, session.m_tDiagnostics) : tellDifference(input, session);
    }

    /// \return false when the text has mistakes
    bool layOut(std::string_view text, const tPutPiece& receive) const
    {
        return formatText(text, loadOptions().flags() | s_cuiFlags, m_tLayout, receive);
    }

    /// \param isSame  set: the text is laid out already. \return false when the text has mistakes
    bool compare(const tInput& input, bool& isSame) const
    {
        std::string_view left = input.text();
        const bool isText = layOut(input.text(), [&](std::string_view piece) {
            isSame = isSame && left.substr(0, piece.size()) == piece;
            left.remove_prefix(std::min(piece.size(), left.size()));
        });
        isSame = isSame && left.empty();
        return isText;
    }

    E_ExitCode tellDifference(const tInput& input, tSession& session) const
    {
        session.m_tOutput.put(isJson() ? "{\"file\":" + json4Text(input.m_strName) + ",\"differs\":true}\n"
                                       : shownText(input.m_strName) + "\n");
        return EC_no;
    }

    E_ExitCode replace(const tInput& input, CDiagnostics& diagnostics) const
    {
        const auto write = [&](const tPutPiece& put) { layOut(input.text(), put); };
        const auto isRight = [&](std::string_view text) { return haveSameTokens(input.text(), text, m_tLayout); };
        return replaceFile(input, write, isRight, diagnostics);
    }

    /// What is no text is loaded and saved as one.
    E_ExitCode layOutTree(const tInput& input, tSession& session) const
    {
        if (m_bInPlace)
            return session.m_tDiagnostics.fail(input.m_strName, "is binary; --in-place is for text", EC_malformed);
        CFields tree;
        if (const E_ExitCode code = loadInput(input, loadOptions(), s_cuiFlags, SV_error, session.m_tDiagnostics, tree))
            return code;
        std::string text;
        tLoss loss;
        if (!writeText(tree, m_tLayout.m_bCompact, text, loss))
            return reportLoss(input, loss, session.m_tDiagnostics);
        if (m_bCheck)
            return tellDifference(input, session);
        layOut(text, [&](std::string_view piece) { session.m_tOutput.put(piece); });
        return EC_done;
    }

    tTextLayout m_tLayout;
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

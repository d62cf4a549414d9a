// tools/reference/man_page.cpp - writes mdoc, section after section.
//
// The texts are those of --help; "-" is written as a minus sign, so that options can be found and copied.
#include "tools/reference/man_page.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "tools/environment.h"
#include "tools/exit_code.h"
#include "tools/verb_examples.h"

namespace murv::tool
{

namespace
{
/// The text as characters of mdoc.
std::string plain(const std::string& text)
{
    std::string result;
    for (const char letter : text)
    {
        if (letter == '\\')
            result += "\\e";
        else if (letter == '-')
            result += "\\-";
        else
            result += letter;
    }
    return result;
}

/// One line of text that no control character begins.
std::string textLine(const std::string& text)
{
    const bool isControl = !text.empty() && (text[0] == '.' || text[0] == '\'');
    return (isControl ? "\\&" : "") + plain(text) + "\n";
}

/// One argument of a macro: quoted, and never taken for a macro itself.
std::string argument(const std::string& text)
{
    std::string quoted;
    for (const char letter : plain(text))
        quoted += letter == '"' ? std::string("\"\"") : std::string(1, letter);
    return "\"\\&" + quoted + "\"";
}

/// Sentences, each on a line of its own, with a full stop at the end.
std::string sentences(std::string text)
{
    if (text.empty())
        return text;
    if (std::string(".:;?!").find(text.back()) == std::string::npos)
        text += '.';
    std::string lines;
    std::size_t begin = 0;
    for (std::size_t at = text.find(". "); at != std::string::npos; at = text.find(". ", at + 1))
    {
        if (at == begin || text[at - 1] == ' ')
            continue;  // a point that is meant
        lines += textLine(text.substr(begin, at + 1 - begin));
        begin = at + 2;
    }
    return lines + textLine(text.substr(begin));
}

/// As a sentence begins.
std::string capital(std::string text)
{
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text;
}

/// Paragraphs whose lines were broken for the terminal.
std::string paragraphs(const std::string& notes)
{
    std::string text;
    std::string paragraph;
    std::istringstream lines(notes + "\n\n");
    for (std::string line; std::getline(lines, line);)
    {
        if (!line.empty())
        {
            paragraph += (paragraph.empty() ? "" : " ") + line;
            continue;
        }
        if (!paragraph.empty())
            text += ".Pp\n" + sentences(paragraph);
        paragraph.clear();
    }
    return text;
}

/// The value of an option: words as they are typed, the rest as names.
std::string valueMacros(const tReferenceOption& option)
{
    std::string macros;
    std::istringstream names(option.m_strValue);
    for (std::string name; std::getline(names, name, '|');)
    {
        const bool isWord = std::find(option.m_vWord.begin(), option.m_vWord.end(), name) != option.m_vWord.end();
        macros += (macros.empty() ? "" : " | ") + std::string(isWord ? "Cm " : "Ar ") + name;
    }
    return macros;
}

std::string flags(const tReferenceOption& option)
{
    std::string macros;
    for (const std::string& name : option.m_vName)
        macros += (macros.empty() ? "" : " , ") + std::string("Fl ") + plain(name.substr(1));
    return macros + (option.m_strValue.empty() ? "" : " " + valueMacros(option));
}

std::string synopsisArgument(const tReferenceOption& one)
{
    return std::string(one.m_bRequired ? ".Ar " : ".Op Ar ") + one.m_vName[0] + (one.m_bMany ? " ...\n" : "\n");
}

std::string synopsis(const tReferenceVerb& verb)
{
    std::string text = ".Sh SYNOPSIS\n.Nm murv";
    text += (verb.m_strCall.empty() ? "" : " Cm " + verb.m_strCall) + "\n";
    for (const tReferenceOption& option : verb.m_vOption)
    {
        if (option.m_bRequired)
            text += "." + flags(option) + "\n";
    }
    text += ".Op Ar OPTIONS\n";
    for (const tReferenceOption& one : verb.m_vArgument)
        text += synopsisArgument(one);
    if (!verb.m_vVerb.empty())
        text += ".Ar VERB\n";
    return text;
}

/// An item of a list: what it means, and what else holds for it.
std::string item(const tReferenceOption& option, const std::string& head)
{
    std::string text = ".It " + head + "\n" + sentences(option.m_strMeaning);
    if (!option.m_strDefault.empty())
        text += "The default is " + plain(option.m_strDefault) + ".\n";
    if (option.m_bRequired && !option.m_vName[0].empty() && option.m_vName[0][0] == '-')
        text += "It is required.\n";
    if (!option.m_vExcluded.empty())
        text += "Not together with " + plain(joined(option.m_vExcluded, " or ")) + ".\n";
    return text;
}

std::string lists(const tReferenceVerb& verb)
{
    std::string text;
    if (!verb.m_vArgument.empty())
        text += ".Pp\nThe arguments are:\n.Bl -tag -width Ds\n";
    for (const tReferenceOption& one : verb.m_vArgument)
        text += item(one, "Ar " + one.m_vName[0]);
    text += verb.m_vArgument.empty() ? "" : ".El\n";
    text += ".Pp\nThe options are:\n.Bl -tag -width Ds\n";
    for (const tReferenceOption& option : verb.m_vOption)
        text += item(option, flags(option));
    text += ".El\n";
    if (verb.m_vVerb.empty())
        return text;
    text += ".Pp\nThe verbs are:\n.Bl -tag -width wireshark\n";
    for (const tReferenceVerb& below : verb.m_vVerb)
        text += ".It Cm " + below.m_strName + "\n" + sentences(below.m_strSummary) + "See\n.Xr " + manName(below) +
                " 1 .\n";
    return text + ".El\n";
}

std::string environment(const tReferenceVerb& verb)
{
    if (!verb.m_strCall.empty())
        return {};
    std::string text = ".Sh ENVIRONMENT\n.Bl -tag -width MURV_LAYOUTS\n";
    for (const tEnvironmentRow& row : s_ctEnvironment)
        text += std::string(".It Ev ") + row.m_pName + "\n" + sentences(capital(row.m_pMeaning));
    return text + ".El\n";
}

std::string exitStatus()
{
    std::string text = ".Sh EXIT STATUS\n.Bl -tag -width Ds\n";
    for (const tExitCodeRow& row : s_ctExitCodes)
        text += ".It " + std::to_string(row.m_eCode) + "\n" + sentences(capital(row.m_pMeaning));
    return text + ".El\n.Pp\n" + sentences(s_cpCodeOfSeveral);
}

std::string examples(const tReferenceVerb& program, const tReferenceVerb& verb)
{
    std::string text;
    for (const tVerbExample& row : s_ctVerbExamples)
    {
        // The program's page has the first example of each verb.
        const bool isFirst = &row == s_ctVerbExamples || std::string((&row)[-1].m_pVerb) != row.m_pVerb;
        if (verb.m_strCall == row.m_pVerb || (&verb == &program && isFirst))
            text += (text.empty() ? ".Sh EXAMPLES\n" : ".Pp\n") + sentences(capital(row.m_pMeaning) + ":") +
                    ".Pp\n.Dl " + argument(row.m_pCall) + "\n";
    }
    return text;
}

std::string seeAlso(const tReferenceVerb& program, const tReferenceVerb& verb)
{
    std::vector<std::string> pages;
    for (const tReferenceVerb* const other : flatVerbs(program))
    {
        const bool isBelow = !verb.m_strCall.empty() && other->m_strCall.rfind(verb.m_strCall + " ", 0) == 0;
        const bool isAbove = verb.m_strCall.rfind(other->m_strCall, 0) == 0;
        if (other != &verb && (&verb == &program || isBelow || isAbove))
            pages.push_back(".Xr " + manName(*other) + " 1");
    }
    std::sort(pages.begin(), pages.end());
    for (const char* const page : {"murv 3", "murv 5", "murv-layout 5"})
        pages.push_back(std::string(".Xr ") + page);
    return ".Sh SEE ALSO\n" + joined(pages, " ,\n") + "\n";
}
}  // namespace

std::string manName(const tReferenceVerb& verb)
{
    std::string name = verb.m_strCall.empty() ? "murv" : "murv-" + verb.m_strCall;
    std::replace(name.begin(), name.end(), ' ', '-');
    return name;
}

std::string manPage(const tReferenceVerb& program, const tReferenceVerb& verb, const std::string& date)
{
    std::string title = manName(verb);
    for (char& letter : title)
        letter = static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
    std::string what = verb.m_strSummary;
    what[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(what[0])));
    if (what.back() == '.')
        what.pop_back();
    return ".\\\" Made by the build from what --help says; see tools/reference.\n.Dd " + date + "\n.Dt " + title +
           " 1\n.Os\n.Sh NAME\n.Nm " + manName(verb) + "\n.Nd " + plain(what) + "\n" + synopsis(verb) +
           ".Sh DESCRIPTION\n" + sentences(verb.m_strSummary) + paragraphs(verb.m_strNotes) + lists(verb) +
           environment(verb) + exitStatus() + examples(program, verb) + seeAlso(program, verb);
}

}  // namespace murv::tool

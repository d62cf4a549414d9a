// tools/reference/reference.h - the program as data: what pages and completions say about it.
//
// It is read from the objects that parse calls, so that pages, completions and --help agree.
#pragma once

#include <string>
#include <vector>

#include "tools/program.h"

namespace murv::tool
{

/// What the value of an option or argument names; shells complete accordingly.
enum E_ValueKind
{
    VK_none,  // a flag has no value
    VK_free,  // numbers, paths in a document, and what else no shell knows
    VK_words,
    VK_file,
    VK_directory,
    VK_layout,  // the name of an installed layout, or a file
    VK_verb,
};

struct tReferenceOption
{
    std::vector<std::string> m_vName;  // "-o", "--output"; the one name of an argument, such as "FILE"
    std::string m_strValue;            // "N|tab"; empty for a flag
    E_ValueKind m_eKind = VK_none;
    std::vector<std::string> m_vWord;  // what the value may be, as far as that is known
    std::string m_strMeaning;
    std::string m_strDefault;
    bool m_bRequired = false;
    bool m_bMany = false;                  // an argument that may be repeated
    std::vector<std::string> m_vExcluded;  // longest names of what cannot be given with it, in order of declaration
};

struct tReferenceVerb
{
    std::string m_strCall;  // "gen samples"; empty for the program
    std::string m_strName;  // the last word of it; "murv" for the program
    std::string m_strSummary;
    std::string m_strNotes;  // paragraphs with an empty line between
    std::vector<tReferenceOption> m_vOption;
    std::vector<tReferenceOption> m_vArgument;
    std::vector<tReferenceVerb> m_vVerb;
};

tReferenceVerb reference4Program(const CProgram& program);

/// The verb and all verbs below it, each before its own verbs.
std::vector<const tReferenceVerb*> flatVerbs(const tReferenceVerb& verb);

/// The parts with a text between them.
std::string joined(const std::vector<std::string>& parts, const std::string& between);

/// The text with each character of `special` marked by `mark` before it.
std::string marked(const std::string& text, const std::string& special, char mark = '\\');

}  // namespace murv::tool

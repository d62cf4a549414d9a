// tools/reference/completion_fish.cpp - a line of "complete" for each option, under the condition of its verb.
#include "tools/reference/completion.h"

namespace murv::tool
{

namespace
{
constexpr const char* s_cpHead = R"fish(# Completes calls of murv in fish. Made by the build; see tools/reference.

# Whether the words before the cursor begin with these verbs.
function __murv_in
    set -l words (commandline -opc)
    set -e words[1]
    for verb in $argv
        test "$words[1]" = "$verb"; or return 1
        set -e words[1]
    end
end

# The same, and nothing but options follows.
function __murv_at
    __murv_in $argv; or return 1
    set -l words (commandline -opc)
    set -e words[1..(math 1 + (count $argv))]
    for word in $words
        string match -q -- '-*' $word; or return 1
    end
end

function __murv_layouts
    set -l words (commandline -opc)
    $words[1] layouts 2>/dev/null | string replace -r '  +' \t
end

complete -c murv -f
)fish";

std::string quoted(const std::string& text)
{
    return "'" + marked(text, "\\'") + "'";
}

std::string condition(const tReferenceVerb& verb)
{
    // Options of the program stand before the verb.
    return verb.m_strCall.empty() ? "__murv_at" : quoted("__murv_in " + verb.m_strCall);
}

/// What completes the value: words, names of layouts, and whether files do as well.
std::string action(const tReferenceVerb& program, const tReferenceOption& option)
{
    const std::vector<std::string> words = valueWords(program, option);
    if (!words.empty())
        return " -x -a " + quoted(joined(words, " "));
    switch (option.m_eKind)
    {
    case VK_layout: return " -F -a '(__murv_layouts)'";
    case VK_directory: return " -x -a '(__fish_complete_directories)'";
    case VK_file: return " -F";
    default: return " -x";
    }
}

std::string optionLine(const tReferenceVerb& program, const tReferenceVerb& verb, const tReferenceOption& option)
{
    std::string line = "complete -c murv -n " + condition(verb);
    for (const std::string& name : option.m_vName)
        line += name[1] == '-' ? " -l " + name.substr(2) : " -s " + name.substr(1);
    line += option.m_eKind == VK_none ? "" : " -r" + action(program, option);
    return line + " -d " + quoted(option.m_strMeaning) + "\n";
}

std::string verbLines(const tReferenceVerb& program, const tReferenceVerb& verb)
{
    std::string text = "\n";
    for (const tReferenceVerb& below : verb.m_vVerb)
        text += "complete -c murv -n " + quoted("__murv_at" + (verb.m_strCall.empty() ? "" : " " + verb.m_strCall)) +
                " -a " + below.m_strName + " -d " + quoted(below.m_strSummary) + "\n";
    for (const tReferenceOption& option : verb.m_vOption)
        text += optionLine(program, verb, option);
    for (const tReferenceOption& one : verb.m_vArgument)
    {
        if (one.m_eKind != VK_free)
            text += "complete -c murv -n " + condition(verb) + action(program, one) + "\n";
    }
    return text;
}
}  // namespace

std::string fishCompletion(const tReferenceVerb& program)
{
    std::string text = s_cpHead;
    for (const tReferenceVerb* const verb : flatVerbs(program))
        text += verbLines(program, *verb);
    return text;
}

}  // namespace murv::tool

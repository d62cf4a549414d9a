// tools/reference/completion_zsh.cpp - one function of _arguments for each verb.
#include "tools/reference/completion.h"

#include <algorithm>

namespace murv::tool
{

namespace
{
constexpr const char* s_cpHead = R"zsh(#compdef murv
# Completes calls of murv in zsh. Made by the build; see tools/reference.

# Names of installed layouts, and files. The function of a verb has one _ after _murv.
_murv__layouts()
{
    local -a names
    names=(${${(f)"$(_call_program layouts ${(q)murv} layouts)"}%%  *})
    _alternative 'layouts:installed layout:compadd -a names' 'files:file:_files'
}
)zsh";

std::string functionName(const tReferenceVerb& verb)
{
    std::string name = verb.m_strCall.empty() ? "_murv" : "_murv_" + verb.m_strCall;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

/// What completes the value.
std::string action(const tReferenceVerb& program, const tReferenceOption& option)
{
    const std::vector<std::string> words = valueWords(program, option);
    if (!words.empty())
        return "(" + joined(words, " ") + ")";
    switch (option.m_eKind)
    {
    case VK_layout: return "_murv__layouts";
    case VK_file: return "_files";
    case VK_directory: return "_files -/";
    default: return " ";
    }
}

std::string optionSpec(const tReferenceVerb& program, const tReferenceOption& option, const std::string& name)
{
    std::vector<std::string> excluded = option.m_vName;
    for (const std::string& other : option.m_vExcluded)
    {
        if (other[0] == '-')
            excluded.push_back(other);
    }
    // A long option also takes its value after "=", a short one in the same word.
    const bool isLong = name[1] == '-';
    const std::string value = option.m_eKind == VK_none ? "" : isLong ? "=" : "+";
    std::string spec =
        "(" + joined(excluded, " ") + ")" + name + value + "[" + marked(option.m_strMeaning, "[]:\\") + "]";
    if (option.m_eKind != VK_none)
        spec += ":" + marked(option.m_strValue, ":\\") + ":" + action(program, option);
    return shellQuoted(spec);
}

std::string argumentSpec(const tReferenceVerb& program, const tReferenceOption& one, std::size_t place)
{
    const std::string number = one.m_bMany ? "*" : std::to_string(place + 1);
    return shellQuoted(number + (one.m_bRequired || one.m_bMany ? ":" : "::") + one.m_vName[0] + ":" +
                       action(program, one));
}

/// After the options: which verb is it, and what does that one take?
std::string choice(const tReferenceVerb& verb)
{
    std::string text = "    case $state in\n    verb)\n        verbs=(\n";
    for (const tReferenceVerb& below : verb.m_vVerb)
        text += "            " + shellQuoted(below.m_strName + ":" + marked(below.m_strSummary, "\\:")) + "\n";
    text += "        )\n        _describe -t verbs verb verbs\n        ;;\n    rest)\n        case $words[1] in\n";
    for (const tReferenceVerb& below : verb.m_vVerb)
        text += "        " + below.m_strName + ") " + functionName(below) + " ;;\n";
    return text + "        esac\n        ;;\n    esac\n";
}

std::string function(const tReferenceVerb& program, const tReferenceVerb& verb)
{
    const bool hasVerbs = !verb.m_vVerb.empty();
    std::string text = "\n" + functionName(verb) + "()\n{\n";
    if (&verb == &program)
        text += "    local murv=$words[1]\n";
    if (hasVerbs)
        text += "    local context state state_descr line\n    typeset -A opt_args\n    local -a verbs\n";
    text += hasVerbs ? "    _arguments -C" : "    _arguments -s";
    for (const tReferenceOption& option : verb.m_vOption)
    {
        for (const std::string& name : option.m_vName)
            text += " \\\n        " + optionSpec(program, option, name);
    }
    for (std::size_t i = 0; i < verb.m_vArgument.size(); ++i)
        text += " \\\n        " + argumentSpec(program, verb.m_vArgument[i], i);
    if (hasVerbs)
        text += " \\\n        '1: :->verb' \\\n        '*:: :->rest'";
    return text + "\n" + (hasVerbs ? choice(verb) : "") + "}\n";
}
}  // namespace

std::string zshCompletion(const tReferenceVerb& program)
{
    std::string text = s_cpHead;
    for (const tReferenceVerb* const verb : flatVerbs(program))
        text += function(program, *verb);
    return text + "\n_murv \"$@\"\n";
}

}  // namespace murv::tool

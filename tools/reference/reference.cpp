// tools/reference/reference.cpp - asks the parser's objects for everything they know.
#include "tools/reference/reference.h"

#include <algorithm>

#include "tools/command_line.h"

namespace murv::tool
{

namespace
{
struct tKindRow
{
    const char* m_pValue;  // how options and arguments call their value
    E_ValueKind m_eKind;
};

// Any other name is taken for a file, as shells do by themselves.
constexpr tKindRow s_ctKinds[] = {
    {"DIR", VK_directory}, {"LAYOUT", VK_layout}, {"VERB", VK_verb}, {"HEX", VK_free},   {"KIND", VK_free},
    {"N", VK_free},        {"NAME", VK_free},     {"PATH", VK_free}, {"PARTS", VK_free}, {"VALUE", VK_free},
};

E_ValueKind kind4Value(const std::string& value, const std::vector<std::string>& words)
{
    if (value.empty())
        return VK_none;
    if (!words.empty())
        return VK_words;
    for (const tKindRow& row : s_ctKinds)
    {
        if (value == row.m_pValue)
            return row.m_eKind;
    }
    return VK_file;
}

/// "-o", "--output".
std::vector<std::string> names4Option(const CLI::Option& option)
{
    std::vector<std::string> names;
    for (const std::string& name : option.get_snames())
        names.push_back("-" + name);
    for (const std::string& name : option.get_lnames())
        names.push_back("--" + name);
    if (names.empty())
        names.push_back(option.get_name(true, false));
    return names;
}

tReferenceOption reference4Option(const CLI::App& app, const CLI::Option& option)
{
    tReferenceOption one;
    one.m_vName = names4Option(option);
    one.m_strValue = valueName(option);
    one.m_vWord = allowedWords(option);
    one.m_eKind = kind4Value(one.m_strValue, one.m_vWord);
    one.m_strMeaning = option.get_description();
    one.m_strDefault = option.get_default_str();
    one.m_bRequired = option.get_required();
    one.m_bMany = option.get_positional() && option.get_items_expected_max() > 1;
    const std::set<CLI::Option*> excluded = option.get_excludes();
    for (const CLI::Option* const other : app.get_options())
    {
        if (std::any_of(excluded.begin(), excluded.end(), [other](const CLI::Option* each) { return each == other; }))
            one.m_vExcluded.push_back(names4Option(*other).back());
    }
    return one;
}

tReferenceVerb reference4App(const CLI::App& app)
{
    tReferenceVerb verb;
    verb.m_strCall = callName(app);
    verb.m_strName = app.get_name();
    verb.m_strSummary = app.get_description();
    verb.m_strNotes = app.get_footer();
    for (const CLI::Option* const option : app.get_options())
        (option->get_positional() ? verb.m_vArgument : verb.m_vOption).push_back(reference4Option(app, *option));
    for (const CLI::App* const below : app.get_subcommands([](const CLI::App*) { return true; }))
        verb.m_vVerb.push_back(reference4App(*below));
    return verb;
}
}  // namespace

tReferenceVerb reference4Program(const CProgram& program)
{
    return reference4App(program.app());
}

std::vector<const tReferenceVerb*> flatVerbs(const tReferenceVerb& verb)
{
    std::vector<const tReferenceVerb*> verbs = {&verb};
    for (const tReferenceVerb& below : verb.m_vVerb)
    {
        const std::vector<const tReferenceVerb*> more = flatVerbs(below);
        verbs.insert(verbs.end(), more.begin(), more.end());
    }
    return verbs;
}

std::string joined(const std::vector<std::string>& parts, const std::string& between)
{
    std::string text;
    for (const std::string& part : parts)
        text += (text.empty() ? "" : between) + part;
    return text;
}

std::string marked(const std::string& text, const std::string& special, char mark)
{
    std::string result;
    for (const char letter : text)
    {
        if (special.find(letter) != std::string::npos)
            result += mark;
        result += letter;
    }
    return result;
}

}  // namespace murv::tool

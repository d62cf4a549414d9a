// tools/command_line.cpp - lays out the help, and finds the word that makes a call wrong.
#include "tools/command_line.h"

#include <algorithm>
#include <sstream>

#include "tools/environment.h"
#include "tools/nearest.h"
#include "tools/verb.h"
#include "tools/verb_examples.h"

namespace murv::tool
{

namespace
{
bool isOption(const std::string& word)
{
    return word.size() > 1 && word[0] == '-';
}

/// "--" and the long name, for each option that has one.
std::vector<std::string> optionNames(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::Option* const option : app.get_options())
    {
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    }
    return names;
}

/// What was called: the tool, and the verbs named one after the other.
std::vector<const CLI::App*> calledApps(const CLI::App& tool)
{
    std::vector<const CLI::App*> apps = {&tool};
    while (!apps.back()->get_subcommands().empty())
        apps.push_back(apps.back()->get_subcommands().front());
    return apps;
}

bool hasVerbs(const CLI::App& app)
{
    return !app.get_subcommands([](const CLI::App*) { return true; }).empty();
}

std::string whereToLook(const CLI::App& tool, const CLI::App& app)
{
    if (&app == &tool)
        return " (see murv --help)";
    if (app.get_parent() == &tool)
        return " (see murv help " + app.get_name() + ")";
    return " (see murv " + app.get_parent()->get_name() + " " + app.get_name() + " --help)";
}

std::string exitCodeHelp()
{
    std::string text = "Exit codes:\n";
    for (const tExitCodeRow& row : s_ctExitCodes)
    {
        const std::string number = std::to_string(row.m_eCode);
        text += "  " + number + std::string(4 - number.size(), ' ') + row.m_pMeaning + "\n";
    }
    return text + s_cpCodeOfSeveral + "\n";
}

std::string environmentHelp()
{
    std::string text = "Environment:\n";
    for (const tEnvironmentRow& row : s_ctEnvironment)
        text += std::string("  ") + row.m_pName + "\n      " + row.m_pMeaning + "\n";
    return text + "\n";
}

/// Each example, with its meaning below it; empty when the verb has none.
std::string examplesHelp(const std::string& call)
{
    std::string text;
    for (const tVerbExample& row : s_ctVerbExamples)
    {
        if (call == row.m_pVerb)
            text += std::string("  ") + row.m_pCall + "\n      " + row.m_pMeaning + "\n";
    }
    return text.empty() ? text : "Examples:\n" + text + "\n";
}

/// What is wrong with a word that nothing takes.
std::string fault4Word(const CLI::App& app, const std::string& word)
{
    if (isOption(word))
    {
        const std::string name = word.substr(0, word.find('='));
        return "no option is called " + name + hint4(name, optionNames(app));
    }
    if (!hasVerbs(app))
        return "unexpected argument " + word;
    std::vector<std::string> names;
    for (const CLI::App* const verb : app.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(verb->get_name());
    return "no verb is called " + word + hint4(word, names);
}
}  // namespace

CHelpFormatter::CHelpFormatter()
{
    label("SUBCOMMAND", "VERB");
    label("Positionals", "Arguments");
}

std::string CHelpFormatter::make_option_opts(const CLI::Option* option) const
{
    if (option->get_type_size() == 0 || option->get_positional())
        return {};
    const std::string value = option->get_default_str();
    return " " + valueName(*option) + (value.empty() ? "" : " (" + value + ")") +
           (option->get_required() ? " (required)" : "");
}

std::string CHelpFormatter::make_footer(const CLI::App* app) const
{
    const std::string notes = app->get_footer();
    return (notes.empty() ? "" : notes + "\n") + examplesHelp(callName(*app)) +
           (app->get_parent() == nullptr ? environmentHelp() : "") + exitCodeHelp();
}

std::string valueName(const CLI::Option& option)
{
    if (option.get_type_size() == 0)
        return {};
    if (option.get_positional())
        return option.get_name(true, false);
    // What is checked is part of the type's name: "TEXT:{a,b}" lists words, "N:UINT in [1 - 9]" says it twice.
    const std::string type = option.get_type_name();
    const std::size_t check = type.find(':');
    const std::size_t list = type.find('{');
    if (list == std::string::npos || type.back() != '}')
        return type.substr(0, check);
    std::string words = type.substr(list + 1, type.size() - list - 2);
    std::replace(words.begin(), words.end(), ',', '|');
    return words;
}

std::vector<std::string> allowedWords(const CLI::Option& option)
{
    std::vector<std::string> words;
    if (option.get_positional())
        return words;
    std::istringstream names(valueName(option));
    for (std::string name; std::getline(names, name, '|');)
    {
        if (std::none_of(name.begin(), name.end(), [](char letter) { return letter >= 'A' && letter <= 'Z'; }))
            words.push_back(name);
    }
    return words;
}

std::string callName(const CLI::App& app)
{
    if (app.get_parent() == nullptr)
        return {};
    const std::string before = callName(*app.get_parent());
    return before.empty() ? app.get_name() : before + " " + app.get_name();
}

std::vector<std::string> verbNames()
{
    std::vector<std::string> names;
    for (const tVerbRow& row : s_ctVerbs)
        names.emplace_back(row.m_pName);
    return names;
}

std::string help4Call(const CLI::App& tool)
{
    const std::vector<const CLI::App*> apps = calledApps(tool);
    std::string before;
    for (std::size_t i = 0; i + 1 < apps.size(); ++i)
        before += (i == 0 ? "" : " ") + apps[i]->get_name();
    return apps.back()->help(before);
}

std::string fault4Call(const CLI::App& tool, const CLI::ParseError& error)
{
    const std::vector<const CLI::App*> apps = calledApps(tool);
    for (const CLI::App* const app : apps)
    {
        const std::vector<std::string> left = app->remaining();
        if (!left.empty())
            return fault4Word(*app, left.front()) + whereToLook(tool, *app);
    }
    const CLI::App& last = *apps.back();
    return (hasVerbs(last) ? "a verb is required" : std::string(error.what())) + whereToLook(tool, last);
}

}  // namespace murv::tool

// tools/command_line.cpp - lays out the help, and finds the word that makes a call wrong.
#include "tools/command_line.h"

#include "tools/nearest.h"
#include "tools/verb.h"

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
    // A list of allowed words is part of the type's name: "TEXT:{a,b}" is shown as "a|b".
    std::string type = option->get_type_name();
    const std::size_t list = type.find(":{");
    if (list != std::string::npos && type.back() == '}')
    {
        type = type.substr(list + 2, type.size() - list - 3);
        for (char& letter : type)
            letter = letter == ',' ? '|' : letter;
    }
    const std::string value = option->get_default_str();
    return " " + type + (value.empty() ? "" : " (" + value + ")") + (option->get_required() ? " (required)" : "");
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

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

std::string whereToLook(const CLI::App& app, bool isVerb)
{
    return isVerb ? " (see murv help " + app.get_name() + ")" : " (see murv --help)";
}

/// What is wrong with a word that nothing takes.
std::string fault4Word(const CLI::App& app, bool isVerb, const std::string& word)
{
    if (isOption(word))
    {
        const std::string name = word.substr(0, word.find('='));
        return "no option is called " + name + hint4(name, optionNames(app));
    }
    return isVerb ? "unexpected argument " + word : "no verb is called " + word + hint4(word, verbNames());
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

std::string fault4Call(const CLI::App& tool, const CLI::ParseError& error)
{
    const std::vector<CLI::App*> verbs = tool.get_subcommands();
    const CLI::App& verb = verbs.empty() ? tool : *verbs.front();
    for (const CLI::App* const app : {&tool, &verb})
    {
        const std::vector<std::string> left = app->remaining();
        if (!left.empty())
            return fault4Word(*app, app != &tool, left.front()) + whereToLook(*app, app != &tool);
    }
    return (verbs.empty() ? "a verb is required" : std::string(error.what())) + whereToLook(verb, !verbs.empty());
}

}  // namespace murv::tool

// tools/command_line.h - how the command line explains itself: help, and what is wrong with a call.
//
// The parser's own help repeats an option next to each one that it excludes. Its own messages speak of subcommands and
// do not name the wrong word.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace murv::tool
{

/// Lays out the help of the tool and of its verbs.
class CHelpFormatter : public CLI::Formatter
{
public:
    CHelpFormatter();
    std::string make_option_opts(const CLI::Option* option) const override;
    std::string make_footer(const CLI::App* app) const override;
};

/// The name of an option's value, such as "FILE" or "text|compact|binary"; empty for a flag.
std::string valueName(const CLI::Option& option);

/// The words that an option's value may be: "tab" of "N|tab". What has capitals is a name for other values.
std::vector<std::string> allowedWords(const CLI::Option& option);

/// The words that call a verb, with blanks between, without the program's name: "gen samples". Empty for the program.
std::string callName(const CLI::App& app);

/// The names of all verbs.
std::vector<std::string> verbNames();

/// The help of what was called: the tool, a verb, or a verb of that verb.
std::string help4Call(const CLI::App& tool);

/// What is wrong with the call that the parser refused, on one line; it names the word, and one that is near.
std::string fault4Call(const CLI::App& tool, const CLI::ParseError& error);

}  // namespace murv::tool

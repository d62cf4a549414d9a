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
};

/// The names of all verbs.
std::vector<std::string> verbNames();

/// The help of what was called: the tool, a verb, or a verb of that verb.
std::string help4Call(const CLI::App& tool);

/// What is wrong with the call that the parser refused, on one line; it names the word, and one that is near.
std::string fault4Call(const CLI::App& tool, const CLI::ParseError& error);

}  // namespace murv::tool

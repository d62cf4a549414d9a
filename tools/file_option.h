// tools/file_option.h - options that name a file or a directory.
//
// An empty name is what a shell makes of a variable that is not set. It must not mean that there is no such option.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace murv::tool
{

/// Lets the option take the name of a file, but no empty one.
inline CLI::Option* takeFile(CLI::Option* option)
{
    return option->type_name("FILE")->check(
        [](const std::string& name) { return name.empty() ? "names no file" : std::string(); });
}

/// The same for a directory.
inline CLI::Option* takeDirectory(CLI::Option* option)
{
    return option->type_name("DIR")->check(
        [](const std::string& name) { return name.empty() ? "names no directory" : std::string(); });
}

}  // namespace murv::tool

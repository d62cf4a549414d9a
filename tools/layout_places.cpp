// tools/layout_places.cpp - looks for layouts, in the places of an installed tool and of one that was just built.
#include "tools/layout_places.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

#ifndef MURV_LAYOUT_DIRECTORY
#error "the build defines MURV_LAYOUT_DIRECTORY and MURV_LAYOUTS_BESIDE"
#endif

namespace murv::tool
{

namespace
{
namespace fs = std::filesystem;

constexpr const char* s_cpEnding = ".murv";

/// The directory of the running program; empty when the system does not say it.
fs::path programDirectory()
{
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::path() : program.parent_path();
}

/// The layouts of the sources, when the program runs where it was built: CMake's notes beside it say where they are.
std::string sourceLayouts(const fs::path& program)
{
    constexpr std::string_view entry = "murv_SOURCE_DIR:STATIC=";
    std::ifstream notes(program.parent_path() / "CMakeCache.txt");
    for (std::string line; std::getline(notes, line);)
    {
        if (line.rfind(entry, 0) == 0)
            return line.substr(entry.size()) + "/share/murv/layouts";
    }
    return {};
}

void addOf(const std::string& directory, std::vector<tInstalledLayout>& layouts)
{
    std::error_code error;
    for (fs::directory_iterator at(directory, error), end; !error && at != end; at.increment(error))
    {
        const fs::path& path = at->path();
        std::error_code ignored;
        const std::string name = path.stem().string();
        const auto isSame = [&name](const tInstalledLayout& other) { return other.m_strName == name; };
        if (path.extension() == s_cpEnding && at->is_regular_file(ignored) &&
            std::none_of(layouts.begin(), layouts.end(), isSame))
            layouts.push_back({name, path.string()});
    }
}

bool isFile(const std::string& path)
{
    std::error_code error;
    return fs::exists(path, error) && !fs::is_directory(path, error);
}
}  // namespace

std::vector<std::string> layoutDirectories()
{
    std::vector<std::string> directories;
    const auto add = [&directories](const std::string& directory) {
        if (!directory.empty() && std::find(directories.begin(), directories.end(), directory) == directories.end())
            directories.push_back(directory);
    };
    const char* const chosen = std::getenv("MURV_LAYOUTS");
    std::string_view rest = chosen == nullptr ? "" : chosen;
    while (!rest.empty())
    {
        const std::size_t end = std::min(rest.find(':'), rest.size());
        add(std::string(rest.substr(0, end)));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    const fs::path program = programDirectory();
    if (!program.empty())
    {
        add((program / MURV_LAYOUTS_BESIDE).lexically_normal().string());
        add(sourceLayouts(program));
    }
    add(MURV_LAYOUT_DIRECTORY);
    return directories;
}

std::vector<tInstalledLayout> installedLayouts()
{
    std::vector<tInstalledLayout> layouts;
    for (const std::string& directory : layoutDirectories())
        addOf(directory, layouts);
    std::sort(layouts.begin(), layouts.end(),
              [](const tInstalledLayout& a, const tInstalledLayout& b) { return a.m_strName < b.m_strName; });
    return layouts;
}

std::string findLayout(const std::string& nameOrFile)
{
    if (nameOrFile == "-" || nameOrFile.find('/') != std::string::npos || isFile(nameOrFile))
        return nameOrFile;
    for (const std::string& directory : layoutDirectories())
    {
        const std::string path = directory + "/" + nameOrFile + s_cpEnding;
        if (isFile(path))
            return path;
    }
    // With an ending it is the name of a file that is not there; opening it gives the message for that.
    return nameOrFile.find('.') != std::string::npos ? nameOrFile : std::string();
}

}  // namespace murv::tool

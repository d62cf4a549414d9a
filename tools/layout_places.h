// tools/layout_places.h - where layouts are found by name.
//
// -l ach stands for a file ach.murv in one of a few directories; the first that has it decides.
#pragma once

#include <string>
#include <vector>

namespace murv::tool
{

struct tInstalledLayout
{
    std::string m_strName;  // without ".murv"
    std::string m_strPath;
};

/// The directories, first the one that counts most: those of $MURV_LAYOUTS (with ":" between), the one beside the
/// running program's own directory, the one it was installed to, and the one of the sources it was built from.
std::vector<std::string> layoutDirectories();

/// All layouts in them, by name; of equal names the one that counts.
std::vector<tInstalledLayout> installedLayouts();

/// The file that somebody means: a file that exists, else an installed layout of that name.
/// \return empty when there is neither, and the text looks like a name
std::string findLayout(const std::string& nameOrFile);

}  // namespace murv::tool

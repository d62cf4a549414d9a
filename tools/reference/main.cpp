// tools/reference/main.cpp - writes the manual's section 1 and the completions; part of the build, not installed.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "tools/reference/completion.h"
#include "tools/reference/man_page.h"

namespace
{
using namespace murv::tool;
namespace fs = std::filesystem;

void writeFile(const fs::path& path, const std::string& text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path.string());
}

void writeAllFiles(const fs::path& directory, const std::string& date)
{
    const CProgram program;
    const tReferenceVerb reference = reference4Program(program);
    fs::create_directories(directory / "man1");
    for (const tReferenceVerb* const verb : flatVerbs(reference))
        writeFile(directory / "man1" / (manName(*verb) + ".1"), manPage(reference, *verb, date));
    // Called as each shell finds them by itself.
    fs::create_directories(directory / "completions");
    writeFile(directory / "completions/murv", bashCompletion(reference));
    writeFile(directory / "completions/_murv", zshCompletion(reference));
    writeFile(directory / "completions/murv.fish", fishCompletion(reference));
}
}  // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
    {
        std::cerr << "usage: murv_reference DIRECTORY DATE\n";
        return 2;
    }
    try
    {
        writeAllFiles(argv[1], argv[2]);
        return 0;
    }
    catch (const std::exception& error)
    {
        std::cerr << "murv_reference: " << error.what() << "\n";
        return 1;
    }
}

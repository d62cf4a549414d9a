// tools/verb_layouts.cpp - murv layouts: what -l finds by name.
#include "tools/verb.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <fstream>

#include "tools/json_text.h"
#include "tools/layout_places.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnMostWords = 96;  // bytes of a purpose that is shown on a line

/// Where the first sentence ends: at a full stop with a blank after it.
std::size_t endOfSentence(std::string_view words)
{
    for (std::size_t at = 0; at < words.size(); ++at)
    {
        if (words[at] == '.' && (at + 1 == words.size() || words[at + 1] == ' '))
            return at;
    }
    return words.size();
}

/// Cuts a long purpose between two words.
std::string cutWords(const std::string& words)
{
    if (words.size() <= s_cnMostWords)
        return words;
    const std::size_t blank = words.rfind(' ', s_cnMostWords - 4);
    return words.substr(0, blank == std::string::npos ? s_cnMostWords - 4 : blank) + " ...";
}

/// The first sentence of the comment that a layout begins with; empty when it begins with something else.
std::string purpose(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string words;
    std::string line;
    while (std::getline(file, line) && endOfSentence(words) == words.size())
    {
        const std::size_t first = line.find_first_not_of(" \t\r");
        const bool isComment = first != std::string::npos && (line[first] == '/' || line[first] == '*');
        if (!isComment && !(first == std::string::npos && words.empty()))
            break;
        const std::size_t begin = line.find_first_not_of(" \t\r/*");
        if (begin == std::string::npos)
            continue;
        const std::size_t end = line.find_last_not_of(" \t\r/*");
        words.append(words.empty() ? "" : " ").append(line, begin, end - begin + 1);
    }
    return words.substr(0, endOfSentence(words));
}

class CLayoutsVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_flag("--json", m_bJson, "One JSON object for each layout");
        verb.footer(
            "Layouts are files NAME.murv in the directories of the variable MURV_LAYOUTS, and in those\n"
            "that came with the tool.\n");
    }

    E_ExitCode run(tSession& session) override
    {
        session.m_tDiagnostics.setJson(m_bJson);
        const std::vector<tInstalledLayout> layouts = installedLayouts();
        if (layouts.empty())
            return noLayouts(session.m_tDiagnostics);
        std::size_t width = 0;
        for (const tInstalledLayout& layout : layouts)
            width = std::max(width, layout.m_strName.size());
        for (const tInstalledLayout& layout : layouts)
            session.m_tOutput.put(m_bJson ? json4Layout(layout) : line4Layout(layout, width));
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }

private:
    static E_ExitCode noLayouts(CDiagnostics& diagnostics)
    {
        std::string places;
        for (const std::string& directory : layoutDirectories())
            places += (places.empty() ? "" : ", ") + directory;
        return diagnostics.fail("", "no layouts are installed (looked in " + places + ")", EC_no);
    }

    static std::string line4Layout(const tInstalledLayout& layout, std::size_t width)
    {
        const std::string words = shownText(cutWords(purpose(layout.m_strPath)));
        const std::string name = shownText(layout.m_strName);
        return words.empty() ? name + "\n"
                             : name + std::string(width - layout.m_strName.size() + 2, ' ') + words + "\n";
    }

    static std::string json4Layout(const tInstalledLayout& layout)
    {
        return "{\"name\":" + json4Text(layout.m_strName) + ",\"file\":" + json4Text(layout.m_strPath) +
               ",\"purpose\":" + json4Text(purpose(layout.m_strPath)) + "}\n";
    }

    bool m_bJson = false;
};
}  // namespace

std::unique_ptr<IVerb> makeLayoutsVerb()
{
    return std::make_unique<CLayoutsVerb>();
}

}  // namespace murv::tool

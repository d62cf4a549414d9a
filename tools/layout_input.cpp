// tools/layout_input.cpp - from the name of a layout to the compiled layout.
#include "tools/layout_input.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstring>

#include "murv/flags.h"
#include "tools/layout_places.h"
#include "tools/nearest.h"

namespace murv::tool
{

namespace
{
constexpr const char* s_cpLayoutHelp = "Layout: a file, or the name of an installed one";

/// What a mistake is marked with: the token at its place.
tRange range4Mistake(std::string_view text, std::size_t offset)
{
    if (offset >= text.size())
        return {text.size(), text.size()};
    std::size_t end = offset + 1;
    if (text[offset] == '"')
    {
        while (end < text.size() && text[end] != '"')
            end += text[end] == '\\' ? 2 : 1;
        ++end;
    }
    return {offset, std::min(end, text.size())};
}

E_ExitCode loadAndCompile(CDiagnostics& diagnostics, tLoadedLayout& layout)
{
    CFields document;
    if (const E_ExitCode code = loadInput(layout.m_tInput, {}, LCBC_DUPLICATE, SV_error, diagnostics, document))
        return code;
    return compileLayout(layout.m_tInput, document, diagnostics, layout.m_tLayout);
}
}  // namespace

CLI::Option* declareLayout(CLI::App& verb, std::string& layout)
{
    return verb.add_option("-l,--layout", layout, s_cpLayoutHelp)->type_name("LAYOUT");
}

CLI::Option* declareLayoutArgument(CLI::App& verb, std::string& layout)
{
    return verb.add_option("LAYOUT", layout, s_cpLayoutHelp);
}

void declareEitherLayout(CLI::App& verb, std::string& layout)
{
    CLI::Option* const argument = declareLayoutArgument(verb, layout);
    declareLayout(verb, layout)->excludes(argument);
}

E_ExitCode readLayout(const std::string& nameOrFile, CDiagnostics& diagnostics, tLoadedLayout& layout)
{
    const std::string path = findLayout(nameOrFile);
    if (path.empty())
    {
        std::vector<std::string> names;
        for (const tInstalledLayout& installed : installedLayouts())
            names.push_back(installed.m_strName);
        return diagnostics.fail(
            "", "no layout is called " + nameOrFile + hint4(nameOrFile, names) + " (see murv layouts)", EC_wrongCall);
    }
    if (const E_ExitCode code = readInput(path, diagnostics, layout.m_tInput))
        return code;
    return loadAndCompile(diagnostics, layout);
}

E_ExitCode readLayoutText(const std::string& name, std::string_view text, CDiagnostics& diagnostics,
                          tLoadedLayout& layout)
{
    layout.m_tInput.m_strName = name;
    layout.m_tInput.m_nSize = text.size();
    layout.m_tInput.m_pBytes.reset(new char[text.size() + 1]);
    std::memcpy(layout.m_tInput.m_pBytes.get(), text.data(), text.size());
    return loadAndCompile(diagnostics, layout);
}

bool isLayout(const CFields& document)
{
    const CFields* const rules = document.isField() ? document.findChildAt("@", 1) : nullptr;
    if (rules == nullptr || !rules->isCodelist())
        return false;
    const std::string text = rules->asString();
    const std::size_t begin = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    const std::size_t end = std::min(text.find_first_of(" \t\r\n;", begin), text.size());
    return text.compare(begin, end - begin, "layout") == 0;
}

E_ExitCode compileLayout(const tInput& input, const CFields& document, CDiagnostics& diagnostics, CLayout& layout)
{
    if (layout.compile(document))
        return EC_done;
    for (const tLayoutMistake& mistake : layout.getMistakes())
    {
        tDiagnostic diagnostic;
        diagnostic.m_strFile = input.m_strName;
        diagnostic.m_strSubject = mistake.m_strPath;
        diagnostic.m_strMessage = mistake.m_strMessage;
        diagnostic.m_svSource = input.text();
        if (input.isText())
            diagnostic.m_tRange = range4Mistake(input.text(), mistake.m_uiOffset);
        diagnostics.report(diagnostic);
    }
    return EC_malformed;
}

}  // namespace murv::tool

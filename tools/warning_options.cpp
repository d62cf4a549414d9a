// tools/warning_options.cpp - the words of -W, and warnings as diagnostics.
#include "tools/warning_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "tools/json_text.h"
#include "tools/nearest.h"
#include "tools/text_table.h"

namespace murv::tool
{

namespace
{
constexpr unsigned int s_cuiFromTheStart = SU_textAfter;
constexpr unsigned int s_cuiOfPackets = SU_timeLength | SU_sizePartner | SU_zeroLength | SU_keywordOption;
constexpr const char* s_cpAll = "all";
constexpr const char* s_cpError = "error";

/// Takes "no-" off a word. \return whether it was there
bool takeNo(std::string& word)
{
    const bool isNo = word.rfind("no-", 0) == 0;
    word.erase(0, isNo ? 3 : 0);
    return isNo;
}

std::string fault4Word(std::string word)
{
    takeNo(word);
    std::vector<std::string> words = {s_cpAll, s_cpError};
    for (const tSuspicionKind& kind : getSuspicionKinds())
        words.emplace_back(kind.m_strvName);
    if (std::find(words.begin(), words.end(), word) != words.end())
        return {};
    return "no warning is called " + word + hint4(word, words);
}

/// The bits that a word without "no-" stands for.
unsigned int kinds4Word(const std::string& word)
{
    if (word == s_cpAll)
        return SU_all;
    for (const tSuspicionKind& kind : getSuspicionKinds())
    {
        if (word == kind.m_strvName)
            return kind.m_eKind;
    }
    return 0;
}

std::string name4Kind(E_Suspicion wanted)
{
    for (const tSuspicionKind& kind : getSuspicionKinds())
    {
        if (kind.m_eKind == wanted)
            return std::string(kind.m_strvName);
    }
    return {};
}

tDiagnostic diagnostic4Suspicion(const tInput& input, const tSuspicion& suspicion, bool isError)
{
    const tErrorPlace& place = suspicion.m_tPlace;
    const std::string name = name4Kind(suspicion.m_eKind);
    tDiagnostic diagnostic;
    diagnostic.m_eSeverity = isError ? SV_error : SV_warning;
    diagnostic.m_strFile = input.m_strName;
    diagnostic.m_strMessage = place.m_strMessage;
    diagnostic.m_strTag = (isError ? "-Werror, -W" : "-W") + name;
    diagnostic.m_strJson = "\"warning\":" + json4Text(name);
    diagnostic.m_svSource = input.text();
    diagnostic.m_tRange = {place.m_uiStart, place.m_uiEnd};
    if (!place.m_tSecond)
        return diagnostic;
    tDiagnostic note;
    note.m_eSeverity = SV_note;
    note.m_strFile = input.m_strName;
    note.m_strMessage = "first seen here";
    note.m_svSource = input.text();
    note.m_tRange = {place.m_tSecond->m_uiOffset, place.m_tSecond->m_uiOffset + 1};
    diagnostic.m_vNote.push_back(note);
    return diagnostic;
}
}  // namespace

void CWarningOptions::declare(CLI::App& verb, CLI::Option* layout)
{
    verb.add_option("-W,--warn", m_vWord, "Warn of that in documents: a name of the list, all, no-NAME, or error")
        ->type_name("NAME,...")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->take_all()
        ->excludes(layout)
        ->check([](const std::string& word) { return fault4Word(word); });
    verb.add_flag_callback(
        "--list-warnings",
        [this, &verb] {
            m_bList = true;
            verb.get_option("FILE")->required(false);
        },
        "Show what -W can warn of, and exit");
}

unsigned int CWarningOptions::kinds() const
{
    unsigned int kinds = s_cuiFromTheStart;
    for (std::string word : m_vWord)
    {
        const bool isNo = takeNo(word);
        kinds = isNo ? kinds & ~kinds4Word(word) : kinds | kinds4Word(word);
    }
    return kinds;
}

bool CWarningOptions::areErrors() const
{
    bool areErrors = false;
    for (std::string word : m_vWord)
    {
        const bool isNo = takeNo(word);
        areErrors = word == s_cpError ? !isNo : areErrors;
    }
    return areErrors;
}

std::size_t CWarningOptions::report(const tInput& input, const tLoadOptions& options, bool isLayout,
                                    CDiagnostics& diagnostics) const
{
    const std::vector<tSuspicion> found =
        findSuspicions(input.text(), options.flags(), kinds() & ~(isLayout ? s_cuiOfPackets : 0U));
    const std::size_t shown = std::min(found.size(), options.m_nMostMistakes);
    for (std::size_t i = 0; i != shown; ++i)
        diagnostics.report(diagnostic4Suspicion(input, found[i], areErrors()));
    if (const std::size_t left = found.size() - shown)
    {
        tDiagnostic note;
        note.m_eSeverity = SV_note;
        note.m_strFile = input.m_strName;
        note.m_strMessage =
            std::to_string(left) + (left == 1 ? " more warning is" : " more warnings are") + " not shown";
        diagnostics.report(note);
    }
    return found.size();
}

std::string CWarningOptions::list(bool json)
{
    std::string lines;
    tTable table = {{"NAME", "ON", "WARNS OF"}};
    for (const tSuspicionKind& kind : getSuspicionKinds())
    {
        const bool isOn = (s_cuiFromTheStart & kind.m_eKind) != 0;
        table.push_back({std::string(kind.m_strvName), isOn ? "yes" : "no", std::string(kind.m_strvDescription)});
        lines += "{\"name\":" + json4Text(kind.m_strvName) + ",\"on\":" + (isOn ? "true" : "false") +
                 ",\"description\":" + json4Text(kind.m_strvDescription) + "}\n";
    }
    return json ? lines : alignedTable(table);
}

}  // namespace murv::tool

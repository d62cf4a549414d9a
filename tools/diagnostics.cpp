// tools/diagnostics.cpp - diagnostics as text with marks and colour, and as JSON.
#include "tools/diagnostics.h"

#include <unistd.h>

#include <cstdlib>

#include "murv/load_error.h"
#include "tools/json_text.h"
#include "tools/output.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
struct tSeverityRow
{
    const char* m_pName;
    const char* m_pColour;
};

constexpr tSeverityRow s_ctSeverities[] = {
    {"error", "\x1b[1;31m"},
    {"warning", "\x1b[1;35m"},
    {"note", "\x1b[1;36m"},
};

constexpr const char* s_cpBold = "\x1b[1m";
constexpr const char* s_cpMarks = "\x1b[1;32m";
constexpr const char* s_cpPlain = "\x1b[0m";

bool hasText(const char* variable)
{
    const char* const value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool isDumbTerminal()
{
    const char* const terminal = std::getenv("TERM");
    return terminal != nullptr && std::string_view(terminal) == "dumb";
}

/// Where its range begins. \pre there is a range of a text
tDataPlace place4Diagnostic(const tDiagnostic& diagnostic)
{
    return place4Offset(diagnostic.m_svSource, static_cast<unsigned int>(diagnostic.m_tRange->m_nBegin));
}
}  // namespace

std::string json4Diagnostic(const tDiagnostic& diagnostic)
{
    std::string out = "{\"severity\":" + json4Text(s_ctSeverities[diagnostic.m_eSeverity].m_pName);
    if (!diagnostic.m_strFile.empty())
        out += ",\"file\":" + json4Text(diagnostic.m_strFile);
    if (diagnostic.m_tRange)
    {
        const tRange range = *diagnostic.m_tRange;
        if (diagnostic.m_bInBody)
        {
            out += ",\"counted_in\":\"body\"";
        }
        else
        {
            const tDataPlace place = place4Diagnostic(diagnostic);
            out += ",\"line\":" + std::to_string(place.m_uiLine) + ",\"column\":" + std::to_string(place.m_uiColumn);
        }
        out += ",\"begin\":" + std::to_string(range.m_nBegin) + ",\"end\":" + std::to_string(range.m_nEnd);
    }
    if (!diagnostic.m_strJson.empty())
        out += "," + diagnostic.m_strJson;
    if (!diagnostic.m_strSubject.empty())
        out += ",\"path\":" + json4Text(diagnostic.m_strSubject);
    out += ",\"message\":" + json4Text(diagnostic.m_strMessage);
    char separator = '[';
    for (const tDiagnostic& note : diagnostic.m_vNote)
    {
        out += separator == '[' ? ",\"notes\":[" : ",";
        out += json4Diagnostic(note);
        separator = ',';
    }
    return out + (separator == ',' ? "]}" : "}");
}

bool isColourWanted(int descriptor)
{
    return isatty(descriptor) == 1 && !hasText("NO_COLOR") && !isDumbTerminal();
}

CDiagnostics::CDiagnostics() : m_bColour(isColourWanted(STDERR_FILENO))
{
}

void CDiagnostics::setJson(bool json)
{
    m_bJson = json;
}

void CDiagnostics::report(const tDiagnostic& diagnostic)
{
    std::string text;
    if (m_bJson)
    {
        text = json4Diagnostic(diagnostic) + "\n";
    }
    else
    {
        text = rendered(diagnostic);
        for (const tDiagnostic& note : diagnostic.m_vNote)
            text += rendered(note);
    }
    writeAll(STDERR_FILENO, text);  // when this fails there is no place left to report it
}

void CDiagnostics::error(const std::string& file, const std::string& message)
{
    tDiagnostic diagnostic;
    diagnostic.m_strFile = file;
    diagnostic.m_strMessage = message;
    report(diagnostic);
}

E_ExitCode CDiagnostics::fail(const std::string& file, const std::string& message, E_ExitCode code)
{
    error(file, message);
    return code;
}

E_ExitCode CDiagnostics::failAt(const std::string& file, std::string_view source, tRange range,
                                const std::string& message, E_ExitCode code)
{
    tDiagnostic diagnostic;
    diagnostic.m_strFile = file;
    diagnostic.m_strMessage = message;
    diagnostic.m_svSource = source;
    diagnostic.m_tRange = range;
    report(diagnostic);
    return code;
}

std::string CDiagnostics::rendered(const tDiagnostic& diagnostic) const
{
    const tSeverityRow& severity = s_ctSeverities[diagnostic.m_eSeverity];
    std::string where = diagnostic.m_strFile.empty() ? std::string("murv") : shownText(diagnostic.m_strFile);
    const bool excerpted = diagnostic.m_tRange && !diagnostic.m_bInBody;
    if (excerpted)
    {
        const tDataPlace place = place4Diagnostic(diagnostic);
        where.append(1, ':').append(std::to_string(place.m_uiLine));
        where.append(1, ':').append(std::to_string(place.m_uiColumn));
    }
    if (!diagnostic.m_strPlace.empty())
        where += ":" + diagnostic.m_strPlace;
    const auto coloured = [this](const std::string& text, const char* colour) {
        return m_bColour ? std::string(colour).append(text).append(s_cpPlain) : text;
    };
    std::string out = coloured(where + ":", s_cpBold) + " " +
                      coloured(std::string(severity.m_pName) + ":", severity.m_pColour) + " " +
                      (diagnostic.m_strSubject.empty() ? "" : shownText(diagnostic.m_strSubject) + ": ") +
                      shownText(diagnostic.m_strMessage) +
                      (diagnostic.m_strTag.empty() ? "" : " [" + diagnostic.m_strTag + "]") + "\n";
    std::vector<tExcerpt> excerpts = diagnostic.m_vExcerpt;
    if (excerpted)
        excerpts.insert(excerpts.begin(), excerpt4Range(diagnostic.m_svSource, *diagnostic.m_tRange));
    for (const tExcerpt& excerpt : excerpts)
    {
        out += excerpt.m_strLine + "\n";
        if (!excerpt.m_strMarks.empty())
            out += coloured(excerpt.m_strMarks, s_cpMarks) + "\n";
    }
    return out;
}

std::string withoutFunction(std::string_view message)
{
    if (message.empty() || message[0] != '[')
        return std::string(message);
    // The function may be "operator []"; the mark is what follows its line number.
    const std::size_t line = message.find('#');
    const std::size_t end = line == std::string_view::npos ? line : message.find("] ", line);
    return std::string(end == std::string_view::npos ? message : message.substr(end + 2));
}

}  // namespace murv::tool

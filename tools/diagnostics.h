// tools/diagnostics.h - errors, warnings and notes, in one form for every verb.
//
// People get what compilers print: file:line:column, the line itself, a caret below it. Programs get the same facts as
// one JSON object a line. Both go to the standard error stream, so that results stay apart.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/exit_code.h"
#include "tools/source_text.h"

namespace murv::tool
{

enum E_Severity
{
    SV_error,
    SV_warning,
    SV_note,
};

/// One message. The source must live until the message has been reported. File and message may hold any bytes: people
/// see them as shownText() gives them.
struct tDiagnostic
{
    E_Severity m_eSeverity = SV_error;
    std::string m_strFile;             // empty: it concerns no file
    std::string m_strPlace;            // where in the file, when that is no place in a text: record and offset
    std::string m_strSubject;          // path of what the message is about; empty for none
    std::string m_strMessage;          // without line feed
    std::string m_strTag;              // stands after the message for people; programs have it in m_strJson
    std::string_view m_svSource;       // text that the range lies in
    std::optional<tRange> m_tRange;    // nothing: it concerns the file as a whole
    std::vector<tExcerpt> m_vExcerpt;  // instead of lines of the source; marks may be empty
    std::string m_strJson;             // further members for programs, such as `"record":3`
    bool m_bInBody = false;            // the range counts in the deciphered body of a binary file, which is not shown
    std::vector<tDiagnostic> m_vNote;  // further places
};

/// Whether colour is wanted: only on a terminal that is not "dumb", and never when NO_COLOR is set and not empty.
bool isColourWanted(int descriptor);

class CDiagnostics
{
public:
    CDiagnostics();

    void setJson(bool json);
    void report(const tDiagnostic& diagnostic);
    /// Reports an error that concerns a file as a whole, or no file when the name is empty.
    void error(const std::string& file, const std::string& message);
    /// The same for a function that ends with it: `return diagnostics.fail(...)`. \return the code
    E_ExitCode fail(const std::string& file, const std::string& message, E_ExitCode code);
    /// The same for an error at a place in a text.
    E_ExitCode failAt(const std::string& file, std::string_view source, tRange range, const std::string& message,
                      E_ExitCode code);

private:
    std::string rendered(const tDiagnostic& diagnostic) const;

    bool m_bJson = false;
    bool m_bColour = false;
};

/// The JSON object of a message, without line feed.
std::string json4Diagnostic(const tDiagnostic& diagnostic);

/// "[function#line] text" as "text": which line of the library noticed it does not help the user of the tool.
std::string withoutFunction(std::string_view message);

}  // namespace murv::tool

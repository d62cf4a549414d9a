// tools/verb.h - the table of verbs, and what main() knows of each.
//
// A verb declares its options, then runs once. A new verb is one source file and one row of the table.
#pragma once

#include <memory>

#include "tools/diagnostics.h"
#include "tools/exit_code.h"
#include "tools/output.h"

namespace CLI
{
class App;
}

namespace murv::tool
{

/// What all verbs write to.
struct tSession
{
    CDiagnostics m_tDiagnostics;
    CStandardOutput m_tOutput;
};

class IVerb
{
public:
    virtual ~IVerb() = default;
    /// Declares options; what they are stored in lives in this object.
    virtual void declare(CLI::App& verb) = 0;
    virtual E_ExitCode run(tSession& session) = 0;
};

std::unique_ptr<IVerb> makeCheckVerb();
std::unique_ptr<IVerb> makeConvertVerb();
std::unique_ptr<IVerb> makeDelVerb();
std::unique_ptr<IVerb> makeDiffVerb();
std::unique_ptr<IVerb> makeExplainVerb();
std::unique_ptr<IVerb> makeDocVerb();
std::unique_ptr<IVerb> makeFmtVerb();
std::unique_ptr<IVerb> makeGenVerb();
std::unique_ptr<IVerb> makeGetVerb();
std::unique_ptr<IVerb> makeHelpVerb();
std::unique_ptr<IVerb> makeInfoVerb();
std::unique_ptr<IVerb> makeLayoutVerb();
std::unique_ptr<IVerb> makeLayoutsVerb();
std::unique_ptr<IVerb> makeMergeVerb();
std::unique_ptr<IVerb> makePackVerb();
std::unique_ptr<IVerb> makePictureVerb();
std::unique_ptr<IVerb> makeSetVerb();
std::unique_ptr<IVerb> makeStatVerb();
std::unique_ptr<IVerb> makeUnpackVerb();

struct tVerbRow
{
    const char* m_pName;
    const char* m_pSummary;
    std::unique_ptr<IVerb> (*m_pMake)();
};

inline constexpr tVerbRow s_ctVerbs[] = {
    {"fmt", "Lay out documents anew; comments are kept", &makeFmtVerb},
    {"check", "Accept documents, or show every error", &makeCheckVerb},
    {"get", "Print values of a document", &makeGetVerb},
    {"set", "Set one value of a document, and keep the rest as it is", &makeSetVerb},
    {"del", "Remove one member of a document, and keep the rest as it is", &makeDelVerb},
    {"diff", "Show what two documents say differently", &makeDiffVerb},
    {"merge", "Change a document by merge patches", &makeMergeVerb},
    {"stat", "Count what documents hold", &makeStatVerb},
    {"convert", "Turn text into binary files or JSON, and back", &makeConvertVerb},
    {"info", "Show what a binary file says about itself", &makeInfoVerb},
    {"unpack", "Turn packets and files of records into documents, JSON or tables", &makeUnpackVerb},
    {"pack", "Turn documents and JSON into packets and files of records", &makePackVerb},
    {"explain", "Show every byte of a packet, and what it means", &makeExplainVerb},
    {"layout", "Show the parts of a layout: offsets, lengths, kinds, rules", &makeLayoutVerb},
    {"picture", "Draw the records of a layout, as SVG or text", &makePictureVerb},
    {"doc", "Document a layout as one HTML page", &makeDocVerb},
    {"gen", "Make programs for others from a layout", &makeGenVerb},
    {"layouts", "List the layouts that -l finds by name", &makeLayoutsVerb},
    {"help", "Show this help, or that of a verb", &makeHelpVerb},
};

}  // namespace murv::tool

// tools/verb_del.cpp - murv del: removes one member of a document, and keeps the rest as it is.
#include <CLI/CLI.hpp>

#include "tools/edit_verb.h"
#include "tools/path_report.h"

namespace murv::tool
{

namespace
{
class CDelVerb : public CEditVerb
{
private:
    void declareOwn(CLI::App& verb) override
    {
        verb.footer(
            "The comments that stand at the member go with it: on its line, and on the lines before it up to an\n"
            "empty one. Every other byte of the document stays.\n");
    }

    E_ExitCode change(const tInput& input, CDocument& document, CDiagnostics& diagnostics) const override
    {
        if (find(document.tree(), path()) == nullptr)
            return reportNothingAt(path(), input, diagnostics);
        document.remove(path());
        return EC_done;
    }
};
}  // namespace

std::unique_ptr<IVerb> makeDelVerb()
{
    return std::make_unique<CDelVerb>();
}

}  // namespace murv::tool

// tools/verb_get.cpp - murv get: finds one value by its path and prints it as text, as raw bytes or as JSON.
#include "tools/verb.h"

#include <CLI/CLI.hpp>

#include "murv/path.h"
#include "tools/input.h"
#include "tools/json_text.h"
#include "tools/text_format.h"

namespace murv::tool
{

namespace
{
class CGetVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_option("FILE", m_strFile, "Document; - for the standard input")->required();
        verb.add_option("PATH", m_strPath,
                        "Where the value is: orders[3].price, \"quoted name\".x, #7 for the ID 7, . for the root")
            ->required();
        CLI::Option* const raw = verb.add_flag(
            "-r,--raw", m_bRaw, "The value and nothing else: a string as its bytes, no line feed after it");
        verb.add_flag("--json", m_bJson, "The value as JSON, diagnostics as JSON lines")->excludes(raw);
        m_tLoad.declare(verb);
    }

    E_ExitCode run(tSession& session) override
    {
        session.m_tDiagnostics.setJson(m_bJson);
        const tNodePath path = parsePath(m_strPath, PO_none);
        if (path.m_pError != nullptr)
            return reportPath(path, session.m_tDiagnostics);
        tInput input;
        if (const E_ExitCode code = readInput(m_strFile, session.m_tDiagnostics, input))
            return code;
        CFields tree;
        if (const E_ExitCode code = loadInput(input, m_tLoad, 0, SV_warning, session.m_tDiagnostics, tree))
            return code;
        std::size_t taken = 0;
        CFields* const node = find(tree, path, &taken);
        if (node == nullptr)
            return reportMissing(input, path, taken, session.m_tDiagnostics);
        if (const E_ExitCode code = put(*node, input, session))
            return code;
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }

private:
    E_ExitCode reportPath(const tNodePath& path, CDiagnostics& diagnostics) const
    {
        tDiagnostic diagnostic;
        diagnostic.m_strFile = "PATH";
        diagnostic.m_strMessage = path.m_pError;
        diagnostic.m_svSource = m_strPath;
        diagnostic.m_tRange = {path.m_nErrorAt, path.m_nErrorAt + 1};
        diagnostics.report(diagnostic);
        return EC_wrongCall;
    }

    E_ExitCode reportMissing(const tInput& input, const tNodePath& path, std::size_t taken,
                             CDiagnostics& diagnostics) const
    {
        tDiagnostic diagnostic;
        diagnostic.m_eSeverity = SV_note;  // a true answer is no error
        diagnostic.m_strFile = input.m_strName;
        diagnostic.m_strMessage = "nothing at " + m_strPath.substr(0, path.m_vStep[taken].m_nEnd);
        diagnostics.report(diagnostic);
        return EC_no;
    }

    E_ExitCode put(CFields& node, const tInput& input, tSession& session) const
    {
        if (m_bJson)
        {
            session.m_tOutput.put(json4Value(node) + "\n");
            return EC_done;
        }
        if (m_bRaw && node.isCodelist())
        {
            session.m_tOutput.put(node.asString());
            return EC_done;
        }
        if (node.getDT() == DT_sint || node.getDT() == DT_uint)
        {
            // Programs read it: without the zero that tells lossless readers the type.
            session.m_tOutput.put(node.asString() + (m_bRaw ? "" : "\n"));
            return EC_done;
        }
        // The value alone: what belongs to the member (name, ID, packet expression, comments) is left out.
        CFields value;
        value.swapValue(node, false);
        value.setOffsetStart(node.getOffsetStart());
        value.setOffsetEnd(node.getOffsetEnd());
        value.setVK(VK_actual);
        tFormat format;
        format.m_bFinalNewline = !m_bRaw;
        std::string text;
        tLoss loss;
        if (!writeText(value, input.isText() ? input.text() : std::string_view(), format, text, loss))
            return reportLoss(input, loss, session.m_tDiagnostics);
        session.m_tOutput.put(text);
        return EC_done;
    }

    std::string m_strFile;
    std::string m_strPath;
    tLoadOptions m_tLoad;
    bool m_bRaw = false;
    bool m_bJson = false;
};
}  // namespace

std::unique_ptr<IVerb> makeGetVerb()
{
    return std::make_unique<CGetVerb>();
}

}  // namespace murv::tool

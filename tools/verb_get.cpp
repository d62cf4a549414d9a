// tools/verb_get.cpp - murv get: finds values by a path and prints them as text, as raw bytes or as JSON.
#include "tools/verb.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "murv/syntax.h"
#include "tools/json_text.h"
#include "tools/json_writer.h"
#include "tools/lossless.h"
#include "tools/path_report.h"
#include "tools/same_document.h"

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
                        "Where the value is: orders[3].price, \"quoted name\".x, #7 for the ID 7, . for the root; or "
                        "several: orders[*].price, items[2..5], *.port")
            ->required();
        CLI::Option* const raw = verb.add_flag(
            "-r,--raw", m_bRaw, "The value and nothing else: a string as its bytes, no line feed after a single one");
        verb.add_flag("--json", m_bJson, "The value as JSON, several as an array; diagnostics as JSON lines")
            ->excludes(raw);
        m_pDefault = verb.add_option("--default", m_strDefault, "Printed, with exit code 0, when nothing is found")
                         ->type_name("VALUE");
        m_tLoad.declare(verb);
    }

    E_ExitCode run(tSession& session) override
    {
        session.m_tDiagnostics.setJson(m_bJson);
        const tNodePath path = parsePath(m_strPath, PO_fromEnd | PO_several);
        if (const E_ExitCode code = checkPath(m_strPath, path, session.m_tDiagnostics))
            return code;
        tInput input;
        if (const E_ExitCode code = readInput(m_strFile, session.m_tDiagnostics, input))
            return code;
        CFields tree;
        if (const E_ExitCode code = loadInput(input, m_tLoad, 0, SV_warning, session.m_tDiagnostics, tree))
            return code;
        std::size_t taken = 0;
        const std::vector<CFields*> nodes = findAll(tree, path, &taken);
        std::string out;
        if (nodes.empty())
        {
            if (m_pDefault->count() == 0)
                return reportNothingAt(upTo(path, taken), input, session.m_tDiagnostics);
            out = default4Output();
        }
        else if (const E_ExitCode code = isMany(path) ? appendAll(nodes, input, session.m_tDiagnostics, out)
                                                      : appendOne(*nodes.front(), input, session.m_tDiagnostics, out))
            return code;
        session.m_tOutput.put(out);
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }

private:
    /// The path up to the first step that leads nowhere.
    std::string_view upTo(const tNodePath& path, std::size_t taken) const
    {
        return std::string_view(m_strPath).substr(0, path.m_vStep[taken].m_nEnd);
    }

    /// Whether the path may lead to several nodes: the form of the result must not depend on how many there are.
    static bool isMany(const tNodePath& path)
    {
        return std::any_of(path.m_vStep.begin(), path.m_vStep.end(),
                           [](const tPathPart& step) { return step.m_eStep == PS_range; });
    }

    std::string default4Output() const
    {
        if (m_bJson)
            return (nlohmann::json::accept(m_strDefault) ? m_strDefault : json4Text(m_strDefault)) + "\n";
        return m_strDefault + (m_bRaw ? "" : "\n");
    }

    E_ExitCode appendAll(const std::vector<CFields*>& nodes, const tInput& input, CDiagnostics& diagnostics,
                         std::string& out) const
    {
        char separator = '[';
        for (CFields* const node : nodes)
        {
            if (m_bJson)
            {
                out += std::exchange(separator, ',');
                out += json4Value(*node);
            }
            else if (const E_ExitCode code = appendValue(*node, input, true, diagnostics, out))
                return code;
            else if (m_bRaw)
                out += '\n';
        }
        out += m_bJson ? "]\n" : "";
        return EC_done;
    }

    E_ExitCode appendOne(CFields& node, const tInput& input, CDiagnostics& diagnostics, std::string& out) const
    {
        if (!m_bJson)
            return appendValue(node, input, false, diagnostics, out);
        out = json4Value(node) + "\n";
        return EC_done;
    }

    /// \param isOneLine  for one of several: containers have no line breaks and comments
    E_ExitCode appendValue(CFields& node, const tInput& input, bool isOneLine, CDiagnostics& diagnostics,
                           std::string& out) const
    {
        const bool isInteger = node.getDT() == DT_sint || node.getDT() == DT_uint;
        if (isInteger || (m_bRaw && node.isCodelist()))
        {
            // Programs read integers: without the zero that tells lossless readers the type.
            out += node.asString();
            out += m_bRaw ? "" : "\n";
            return EC_done;
        }
        // The value alone: what belongs to the member (name, ID, packet expression, comments) is left out.
        CFields value;
        value.swapValue(node, false);
        value.setOffsetStart(node.getOffsetStart());
        value.setOffsetEnd(node.getOffsetEnd());
        value.setVK(VK_actual);
        std::string saved;
        tLoss loss;
        std::string_view text = spelling(value, input);
        if (text.empty())
        {
            if (!writeText(value, isOneLine, saved, loss))
                return reportLoss(input, loss, diagnostics);
            text = saved;
        }
        tTextLayout layout;
        layout.m_bCompact = isOneLine;
        layout.m_bFinalNewline = !m_bRaw;
        if (formatText(text, m_tLoad.flags(), layout, [&out](std::string_view piece) { out += piece; }))
            return EC_done;
        return diagnostics.fail(input.m_strName, "a value does not read back", EC_internal);
    }

    /// The text of a value in its document; empty when there is none, or when what it says was changed by members of
    /// the same name or ID.
    std::string_view spelling(const CFields& value, const tInput& input) const
    {
        if (value.isNull() || !input.isText())
            return {};
        const auto begin = static_cast<std::size_t>(value.getOffsetStart());
        const auto end = static_cast<std::size_t>(value.getOffsetEnd());
        const std::string_view text = input.text().substr(begin, end - begin);
        return isTextOf(text, m_tLoad.flags(), value, false) ? text : std::string_view();
    }

    std::string m_strFile;
    std::string m_strPath;
    std::string m_strDefault;
    CLI::Option* m_pDefault = nullptr;
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

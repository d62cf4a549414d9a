// tools/verb_explain.cpp - murv explain: every byte of a packet, with what the layout says of it.
#include "tools/verb.h"

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "tools/explain_output.h"
#include "tools/hex_text.h"
#include "tools/layout_input.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
/// A layout for a try may lack the braces and the rule that every layout begins with.
std::string wholeLayout(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t\r\n");
    const bool isWhole = first == std::string::npos || text[first] == '{' || text[first] == '/';
    if (isWhole)
        return text;
    const bool hasRules = text.find("\"@\"") != std::string::npos;
    return std::string("{ ") + (hasRules ? "" : "\"@\" = \"layout 1\", ") + text + " }";
}

class CExplainVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        CLI::Option* const file =
            verb.add_option("FILE", m_strFile, "Packet or file of records; - or none for the standard input");
        CLI::Option* const layout = declareLayout(verb, m_strLayout);
        verb.add_option("-e,--layout-text", m_strLayoutText, "The layout itself, for a try")
            ->type_name("PARTS")
            ->excludes(layout);
        m_pHex = verb.add_option("-x,--hex", m_strHex, "The packet itself, as hexadecimal digits")
                     ->type_name("HEX")
                     ->excludes(file);
        verb.add_option("--record", m_ullRecord, "Only the record of that number, from 1")->type_name("N");
        verb.add_flag("--unmask", m_bUnmask, "Show masked values");
        CLI::Option* const json =
            verb.add_flag("--json", m_bJson, "One JSON object a record, diagnostics as JSON lines");
        verb.add_flag("--html", m_bHtml, "One HTML page, which needs no other file")->excludes(json);
        verb.footer("A layout for -e may lack its braces and the rule \"layout 1\".\n");
    }

    E_ExitCode run(tSession& session) override
    {
        CDiagnostics& diagnostics = session.m_tDiagnostics;
        diagnostics.setJson(m_bJson);
        if (m_strLayout.empty() && m_strLayoutText.empty())
            return diagnostics.fail("", "a layout is required: --layout or --layout-text", EC_wrongCall);
        if (m_strLayout == "-" && !isHex() && (m_strFile.empty() || m_strFile == "-"))
            return diagnostics.fail("", "the standard input cannot hold both layout and packet", EC_wrongCall);
        tLoadedLayout layout;
        const E_ExitCode code = m_strLayout.empty()
                                    ? readLayoutText("<layout>", wholeLayout(m_strLayoutText), diagnostics, layout)
                                    : readLayout(m_strLayout, diagnostics, layout);
        if (code != EC_done)
            return code;
        tInput input;
        std::string packet;
        if (const E_ExitCode got = readPacket(diagnostics, input, packet))
            return got;
        if (isHex())
            return explain(layout.m_tLayout, packet, "<hex>", session);
        return explain(layout.m_tLayout, input.text(), input.m_strName, session);
    }

private:
    /// Whether the packet is in the call; it may be empty.
    bool isHex() const
    {
        return m_pHex->count() != 0;
    }

    E_ExitCode readPacket(CDiagnostics& diagnostics, tInput& input, std::string& packet) const
    {
        if (!isHex())
        {
            if (const E_ExitCode code = readInput(m_strFile.empty() ? "-" : m_strFile, diagnostics, input))
                return code;
            if (!input.m_bTooBig)
                return EC_done;
            return diagnostics.fail(input.m_strName, "is too big to be explained", EC_inputOutput);
        }
        std::size_t place = 0;
        if (bytes4Hex(m_strHex, packet, place))
            return EC_done;
        return diagnostics.failAt("<hex>", m_strHex, {place, place + 1},
                                  "two hexadecimal digits are needed for each byte", EC_wrongCall);
    }

    std::unique_ptr<IExplainOutput> makeOutput(const CLayout& layout, std::string_view bytes,
                                               const std::string& input) const
    {
        if (m_bJson)
            return makeExplainJson();
        if (!m_bHtml)
            return makeExplainText(isColourWanted(STDOUT_FILENO));
        tExplainPage page;
        page.m_strInput = shownText(input);
        page.m_strLayout = m_strLayout.empty() ? "of the call" : shownText(m_strLayout);
        page.m_strvBytes = bytes;
        page.m_bSummary = m_ullRecord == 0;
        return makeExplainPage(layout, page);
    }

    E_ExitCode explain(const CLayout& layout, std::string_view bytes, const std::string& input, tSession& session) const
    {
        CExplainer explainer(layout, bytes, m_bUnmask);
        const std::unique_ptr<IExplainOutput> form = makeOutput(layout, bytes, input);
        tExplainRecord record;
        bool isShown = false;
        bool isDamaged = false;
        while (!session.m_tOutput.hasFailed() && explainer.next(record))
        {
            if (m_ullRecord != 0 && record.m_ullNumber != m_ullRecord)
                continue;
            session.m_tOutput.put((isShown ? "" : form->begin()) + form->record(record));
            isShown = true;
            isDamaged = isDamaged || record.m_bDamaged;
            if (m_ullRecord != 0)
                break;
        }
        if (m_ullRecord != 0 && !isShown)
            return session.m_tDiagnostics.fail("", "there is no record " + std::to_string(m_ullRecord), EC_no);
        const bool isWhole = m_ullRecord == 0;
        session.m_tOutput.put((isShown ? "" : form->begin()) +
                              form->end(isWhole ? explainer.lastFindings() : std::vector<tPacketFault>()));
        return graver(isDamaged ? EC_unfit : EC_done, session.m_tOutput.finish(session.m_tDiagnostics));
    }

    std::string m_strFile;
    std::string m_strLayout;
    std::string m_strLayoutText;
    std::string m_strHex;
    const CLI::Option* m_pHex = nullptr;
    std::uint64_t m_ullRecord = 0;
    bool m_bUnmask = false;
    bool m_bJson = false;
    bool m_bHtml = false;
};
}  // namespace

std::unique_ptr<IVerb> makeExplainVerb()
{
    return std::make_unique<CExplainVerb>();
}

}  // namespace murv::tool

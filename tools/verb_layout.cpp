// tools/verb_layout.cpp - murv layout: the offset table of a layout.
#include "tools/verb.h"

#include <CLI/CLI.hpp>

#include "tools/json_text.h"
#include "tools/layout_input.h"
#include "tools/layout_row.h"
#include "tools/text_table.h"

namespace murv::tool
{

namespace
{
tTable shortTable(const std::vector<tLayoutRow>& rows)
{
    tTable table = {{"path", "offset", "length", "kind", "expression", "rules", "comment"}};
    for (const tLayoutRow& row : rows)
        table.push_back({row.m_strPath, row.m_strOffset, row.m_strLength, row.m_strKind,
                         row.m_bBits ? std::string() : std::string(row.m_tPart.m_strvExpression), row.m_strRules,
                         row.m_strComment});
    return table;
}

std::string most4Row(const tLayoutRow& row)
{
    return row.m_tPart.m_ullMost == CLayout::s_cullNoBound ? std::string() : std::to_string(row.m_tPart.m_ullMost);
}

/// Every column holds one thing, so that programs need not take cells apart.
tTable fullTable(const std::vector<tLayoutRow>& rows)
{
    tTable table = {{"path", "offset", "from", "after", "length", "least", "most", "bits", "shift", "kind",
                     "expression", "rules", "comment"}};
    for (const tLayoutRow& row : rows)
    {
        const tLayoutPart& part = row.m_tPart;
        const std::string least = std::to_string(part.m_ullLeast);
        const bool isFixed = part.m_ullLeast == part.m_ullMost;
        table.push_back({row.m_strPath, row.m_strFrom.empty() ? "" : std::to_string(part.m_ullOffset), row.m_strFrom,
                         row.m_strAfter, row.m_bBits || !isFixed ? "" : least, row.m_bBits ? "" : least,
                         row.m_bBits ? "" : most4Row(row), row.m_bBits ? std::to_string(row.m_tBits.m_uiWidth) : "",
                         row.m_bBits ? std::to_string(row.m_tBits.m_uiShift) : "", row.m_strKind,
                         row.m_bBits ? std::string() : std::string(part.m_strvExpression), row.m_strRules,
                         row.m_strComment});
    }
    return table;
}

class CJsonLine
{
public:
    void add(const char* key, std::string_view json)
    {
        m_strLine.append(m_strLine.empty() ? "{\"" : ",\"").append(key).append("\":").append(json);
    }
    void addText(const char* key, std::string_view text)
    {
        add(key, json4Text(text));
    }
    void addFlag(const char* key, bool flag)
    {
        add(key, flag ? "true" : "false");
    }
    std::string line() const
    {
        return m_strLine + "}\n";
    }

private:
    std::string m_strLine;
};

std::string json4Bits(const CLayout& layout, unsigned int part)
{
    std::string json;
    for (const tLayoutBits& bits : layout.getBits(part))
        json += (json.empty() ? "{\"name\":" : ",{\"name\":") + json4Text(bits.m_strvName) +
                ",\"width\":" + std::to_string(bits.m_uiWidth) + ",\"shift\":" + std::to_string(bits.m_uiShift) + "}";
    return "[" + json + "]";
}

std::string json4Rules(const CLayout& layout, unsigned int part)
{
    std::string json;
    for (const tLayoutRule& rule : layout.getRules(part))
        json += (json.empty() ? "{\"rule\":" : ",{\"rule\":") + json4Text(rule.m_strvRule) +
                ",\"meaning\":" + json4Text(rule.m_strvSentence) + "}";
    return "[" + json + "]";
}

std::string json4Row(const CLayout& layout, const tLayoutRow& row)
{
    const tLayoutPart& part = row.m_tPart;
    const bool isBounded = part.m_ullMost != CLayout::s_cullNoBound;
    CJsonLine json;
    json.addText("path", row.m_strPath);
    json.addText("kind", row.m_strKind);
    json.add("id", part.m_uiID == 0 ? "null" : std::to_string(part.m_uiID));
    json.add("offset", row.m_strFrom.empty() ? "null" : std::to_string(part.m_ullOffset));
    json.add("from", row.m_strFrom.empty() ? "null" : json4Text(row.m_strFrom));
    json.add("after", row.m_strAfter.empty() ? "null" : json4Text(row.m_strAfter));
    json.add("least", std::to_string(part.m_ullLeast));
    json.add("most", isBounded ? std::to_string(part.m_ullMost) : "null");
    json.add("bits", json4Bits(layout, row.m_uiPart));
    json.addFlag("record", part.m_bRecord);
    json.addFlag("literal", part.m_bLiteral);
    json.addFlag("computed", part.m_bComputed);
    json.addFlag("optional", part.m_bOptional);
    json.addFlag("masked", part.m_bMasked);
    json.addText("expression", part.m_strvExpression);
    json.add("rules", json4Rules(layout, row.m_uiPart));
    json.addText("comment", row.m_strComment);
    return json.line();
}

class CLayoutVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        declareLayoutArgument(verb, m_strLayout)->required();
        CLI::Option* const json = verb.add_flag("--json", m_bJson, "One JSON object a part, diagnostics as JSON lines");
        CLI::Option* const csv = verb.add_flag("--csv", m_bCsv, "Comma-separated values, one thing a column");
        verb.add_flag("--markdown", m_bMarkdown, "A table of Markdown")->excludes(json)->excludes(csv);
        csv->excludes(json);
        verb.footer(
            "Offsets are bytes from the beginning of the record; +N counts from that of the element or field set\n"
            "around it. A length such as 2..101 has bounds; 13.. has no upper one.\n");
    }

    E_ExitCode run(tSession& session) override
    {
        session.m_tDiagnostics.setJson(m_bJson);
        tLoadedLayout layout;
        if (const E_ExitCode code = readLayout(m_strLayout, session.m_tDiagnostics, layout))
            return code;
        const std::vector<tLayoutRow> rows = rows4Layout(layout.m_tLayout);
        if (m_bJson)
        {
            for (const tLayoutRow& row : rows)
                session.m_tOutput.put(row.m_bBits ? std::string() : json4Row(layout.m_tLayout, row));
        }
        else if (m_bCsv)
            session.m_tOutput.put(csvTable(fullTable(rows)));
        else
            session.m_tOutput.put(m_bMarkdown ? markdownTable(shortTable(rows)) : alignedTable(shortTable(rows)));
        return session.m_tOutput.finish(session.m_tDiagnostics);
    }

private:
    std::string m_strLayout;
    bool m_bJson = false;
    bool m_bCsv = false;
    bool m_bMarkdown = false;
};
}  // namespace

std::unique_ptr<IVerb> makeLayoutVerb()
{
    return std::make_unique<CLayoutVerb>();
}

}  // namespace murv::tool

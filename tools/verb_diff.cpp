// tools/verb_diff.cpp - murv diff: what two documents say differently, whatever they look like.
#include "tools/verb.h"

#include <unistd.h>

#include <CLI/CLI.hpp>

#include "murv/edit.h"
#include "murv/flags.h"
#include "tools/expression_text.h"
#include "tools/hex_text.h"
#include "tools/input.h"
#include "tools/json_text.h"
#include "tools/json_writer.h"
#include "tools/utf8.h"
#include "tools/value_text.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnPiece = std::size_t{64} << 10U;
constexpr const char* s_cpNone = "none";

struct tChangeRow
{
    char m_cMark;
    const char* m_pName;
    const char* m_pColour;
};

constexpr tChangeRow s_ctAdded = {'+', "added", "\x1b[32m"};
constexpr tChangeRow s_ctRemoved = {'-', "removed", "\x1b[31m"};
constexpr tChangeRow s_ctChanged = {'~', "changed", "\x1b[33m"};
constexpr const char* s_cpPlain = "\x1b[0m";

/// What may differ between two nodes, in words and as a key.
struct tAspect
{
    const char* m_pWords;
    const char* m_pKey;
};

constexpr tAspect s_ctValue = {"", "value"};
constexpr tAspect s_ctName = {"name ", "name"};
constexpr tAspect s_ctId = {"ID ", "id"};
constexpr tAspect s_ctExpression = {"expression ", "expression"};

struct tCommentRow
{
    E_CommentPosition m_ePosition;
    tAspect m_tAspect;
};

constexpr tCommentRow s_ctComments[] = {
    {CP_before, {"comment ", "comment"}},
    {CP_trailing, {"comment on the line ", "comment_on_line"}},
    {CP_after, {"comment after it ", "comment_after"}},
};

/// Something that may be absent, as people and as programs read it.
struct tSide
{
    std::string m_strText = s_cpNone;
    std::string m_strJson = "null";
};

tSide side4Text(std::string_view text)
{
    return {lineText4Value(CFields(text)), json4Text(text)};
}

tSide side4Name(const CFields& node)
{
    return node.getNameLen() == 0 ? tSide() : side4Text({node.getName(), node.getNameLen()});
}

tSide side4Id(const CFields& node)
{
    const std::string id = std::to_string(node.getID());
    return node.getID() == 0 ? tSide() : tSide{id, id};
}

tSide side4Comment(const CFields& node, E_CommentPosition position)
{
    return node.hasComment(position) ? side4Text(node.getCommentCopy(position)) : tSide();
}

bool isContainer(const CFields& node)
{
    return node.isField() || node.isArray();
}

/// Whether the nodes themselves differ, not only what belongs to them or is in them.
bool hasOtherValue(const CFields& a, const CFields& b)
{
    return a.getDT() != b.getDT() || (!isContainer(a) && !diff(a, b).empty());
}

/// Writes differences as lines.
class CDifferences
{
public:
    CDifferences(CStandardOutput& output, bool isJson, bool hasComments)
        : m_tOutput(output),
          m_bJson(isJson),
          m_bComments(hasComments),
          m_bColour(!isJson && isColourWanted(STDOUT_FILENO))
    {
    }

    void put(const tDifference& difference)
    {
        m_strPath = difference.path();
        if (difference.m_pOld == nullptr)
            putLine(s_ctAdded, s_ctValue, tSide(), side4Node(*difference.m_pNew));
        else if (difference.m_pNew == nullptr)
            putLine(s_ctRemoved, s_ctValue, side4Node(*difference.m_pOld), tSide());
        else
            putChange(*difference.m_pOld, *difference.m_pNew);
        if (m_strOut.size() >= s_cnPiece)
            flush();
    }

    void flush()
    {
        m_tOutput.put(m_strOut);
        m_strOut.clear();
    }

private:
    tSide side4Node(const CFields& node) const
    {
        if (!m_bJson)
            return {lineText4Node(node), {}};
        CFields nameless = node;  // the path has the name
        nameless.clearName();
        return {{}, exactJson4Node(nameless, m_bComments)};
    }

    tSide side4Value(const CFields& node) const
    {
        if (!m_bJson)
            return {lineText4Value(node), {}};
        CFields value;
        value.setValue(node);
        value.setVK(VK_actual);
        return {{}, exactJson4Node(value, m_bComments)};
    }

    tSide side4Expression(const CFields& node)
    {
        const tPacketExpInfo pei = node.pkt_GetExp();
        if (CFields::pkt_IsNullExp(pei))
            return {};
        std::string_view text;
        std::string shown;
        if (m_tExpressions.text4Node(node, text) == nullptr)
            shown = text;
        else
            appendHex(shown, {reinterpret_cast<const char*>(&pei), sizeof pei});  // of no text
        return {"(" + shown + ")", json4Text(shown)};
    }

    void putChange(const CFields& a, const CFields& b)
    {
        if (std::string_view(a.getName(), a.getNameLen()) != std::string_view(b.getName(), b.getNameLen()))
            putLine(s_ctChanged, s_ctName, side4Name(a), side4Name(b));
        if (a.getID() != b.getID())
            putLine(s_ctChanged, s_ctId, side4Id(a), side4Id(b));
        const tSide before = side4Expression(a);
        const tSide after = side4Expression(b);
        if (before.m_strText != after.m_strText)
            putLine(s_ctChanged, s_ctExpression, before, after);
        for (const tCommentRow& row : s_ctComments)
        {
            if (m_bComments && (a.hasComment(row.m_ePosition) != b.hasComment(row.m_ePosition) ||
                                a.getCommentCopy(row.m_ePosition) != b.getCommentCopy(row.m_ePosition)))
                putLine(s_ctChanged, row.m_tAspect, side4Comment(a, row.m_ePosition), side4Comment(b, row.m_ePosition));
        }
        if (hasOtherValue(a, b))
            putLine(s_ctChanged, s_ctValue, side4Value(a), side4Value(b));
    }

    void putLine(const tChangeRow& change, const tAspect& what, const tSide& before, const tSide& after)
    {
        if (m_bJson)
            return putJson(change, what, before, after);
        m_strOut += m_bColour ? change.m_pColour : "";
        m_strOut.append(1, change.m_cMark).append(" ").append(shownText(m_strPath)).append(": ");
        m_strOut += what.m_pWords;
        if (change.m_cMark != s_ctAdded.m_cMark)
            m_strOut += before.m_strText;
        if (change.m_cMark == s_ctChanged.m_cMark)
            m_strOut += " -> ";
        if (change.m_cMark != s_ctRemoved.m_cMark)
            m_strOut += after.m_strText;
        m_strOut += m_bColour ? s_cpPlain : "";
        m_strOut += '\n';
    }

    void putJson(const tChangeRow& change, const tAspect& what, const tSide& before, const tSide& after)
    {
        m_strOut += "{\"path\":";
        appendJsonText(m_strOut, m_strPath);
        m_strOut.append(",\"change\":\"").append(change.m_pName).append("\"");
        if (change.m_cMark == s_ctChanged.m_cMark)
            m_strOut.append(",\"what\":\"").append(what.m_pKey).append("\"");
        if (change.m_cMark != s_ctAdded.m_cMark)
            m_strOut.append(",\"old\":").append(before.m_strJson);
        if (change.m_cMark != s_ctRemoved.m_cMark)
            m_strOut.append(",\"new\":").append(after.m_strJson);
        m_strOut += "}\n";
    }

    CStandardOutput& m_tOutput;
    bool m_bJson;
    bool m_bComments;
    bool m_bColour;
    CExpressionTexts m_tExpressions;
    std::string m_strPath;
    std::string m_strOut;
};

class CDiffVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_option("A", m_strBefore, "Document; - for the standard input")->required();
        verb.add_option("B", m_strAfter, "Document to compare it with; - for the standard input")->required();
        verb.add_flag("--comments", m_bComments, "Comments count, too");
        verb.add_flag("-q,--quiet", m_bQuiet, "Print nothing: the exit code says whether they differ");
        verb.add_flag("--json", m_bJson, "Differences, and diagnostics, as JSON lines");
        m_tLoad.declare(verb);
    }

    E_ExitCode run(tSession& session) override
    {
        CDiagnostics& diagnostics = session.m_tDiagnostics;
        diagnostics.setJson(m_bJson);
        if (m_strBefore == "-" && m_strAfter == "-")
            return diagnostics.fail("", "the standard input cannot hold both documents", EC_wrongCall);
        CFields before;
        CFields after;
        if (const E_ExitCode code = load(m_strBefore, diagnostics, before))
            return code;
        if (const E_ExitCode code = load(m_strAfter, diagnostics, after))
            return code;
        const std::vector<tDifference> found =
            diff(before, after, DF_heads | DF_expressions | (m_bComments ? DF_comments : 0U));
        CDifferences differences(session.m_tOutput, m_bJson, m_bComments);
        for (const tDifference& difference : found)
        {
            if (!m_bQuiet && !session.m_tOutput.hasFailed())
                differences.put(difference);
        }
        differences.flush();
        if (const E_ExitCode code = session.m_tOutput.finish(diagnostics))
            return code;
        return found.empty() ? EC_done : EC_no;
    }

private:
    E_ExitCode load(const std::string& file, CDiagnostics& diagnostics, CFields& tree) const
    {
        tInput input;
        if (const E_ExitCode code = readInput(file, diagnostics, input))
            return code;
        return loadInput(input, m_tLoad, LCBC_DUPLICATE, SV_warning, diagnostics, tree);
    }

    std::string m_strBefore;
    std::string m_strAfter;
    tLoadOptions m_tLoad;
    bool m_bComments = false;
    bool m_bQuiet = false;
    bool m_bJson = false;
};
}  // namespace

std::unique_ptr<IVerb> makeDiffVerb()
{
    return std::make_unique<CDiffVerb>();
}

}  // namespace murv::tool

// tools/verb_stat.cpp - murv stat: counts what documents hold.
#include "tools/verb.h"

#include <algorithm>
#include <array>

#include "tools/files_verb.h"
#include "tools/json_text.h"

namespace murv::tool
{

namespace
{
constexpr std::array<const char*, 8> s_cpTypeNames = {"null", "array", "fields", "bool",
                                                      "sint", "uint",  "double", "codelist"};
static_assert(s_cpTypeNames.size() == DT_codelist + 1, "one name for each type");

struct tCounts
{
    std::size_t m_nNodes = 0;
    std::size_t m_nDepth = 0;
    std::array<std::size_t, 8> m_nType{};
    std::size_t m_nNames = 0;
    std::size_t m_nIds = 0;
    std::size_t m_nExpressions = 0;
    std::size_t m_nComments = 0;
    std::size_t m_nStringBytes = 0;
};

void countNode(const CFields& node, std::size_t depth, tCounts& counts)
{
    ++counts.m_nNodes;
    ++counts.m_nType[node.getDT()];
    counts.m_nDepth = std::max(counts.m_nDepth, depth);
    counts.m_nNames += node.getNameLen() != 0 ? 1 : 0;
    counts.m_nIds += node.getID() != 0 ? 1 : 0;
    counts.m_nExpressions += CFields::pkt_IsNullExp(node.pkt_GetExp()) ? 0 : 1;
    counts.m_nStringBytes += node.isCodelist() ? node.getRawBytes() : 0;
    if (!node.isComment())
        return;
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
    {
        if (node.hasComment(position))
            counts.m_nComments += countComments({node.getCommentPtr(position), node.getCommentLen(position)});
    }
}

tCounts countTree(const CFields& root)
{
    tCounts counts;
    std::vector<std::pair<const CFields*, std::size_t>> open{{&root, 1}};
    while (!open.empty())
    {
        const auto [node, depth] = open.back();
        open.pop_back();
        countNode(*node, depth, counts);
        for (const CFields& member : *node)
            open.emplace_back(&member, depth + 1);
    }
    return counts;
}

struct tStatRow
{
    const char* m_pLabel;
    std::size_t m_nCount;
};

/// What is shown, in order; the same labels serve people and JSON.
std::vector<tStatRow> rows4Counts(const tCounts& counts, std::size_t bytes)
{
    std::vector<tStatRow> rows = {{"bytes", bytes}, {"depth", counts.m_nDepth}, {"nodes", counts.m_nNodes}};
    for (std::size_t type = 0; type < s_cpTypeNames.size(); ++type)
        rows.push_back({s_cpTypeNames[type], counts.m_nType[type]});
    rows.push_back({"names", counts.m_nNames});
    rows.push_back({"IDs", counts.m_nIds});
    rows.push_back({"packet expressions", counts.m_nExpressions});
    rows.push_back({"comments", counts.m_nComments});
    rows.push_back({"string bytes", counts.m_nStringBytes});
    return rows;
}

std::string shown4Row(const tStatRow& row)
{
    constexpr std::size_t width = 22;
    std::string line = "  ";
    line += row.m_pLabel;
    line.append(width > line.size() ? width - line.size() : 1, ' ');
    const std::string number = std::to_string(row.m_nCount);
    line.append(number.size() < 10 ? 10 - number.size() : 0, ' ');
    return line + number + "\n";
}

class CStatVerb : public CFilesVerb
{
public:
    CStatVerb() : CFilesVerb("One JSON object for each file, diagnostics as JSON lines")
    {
    }

private:
    E_ExitCode runInput(const tInput& input, tSession& session) const override
    {
        CFields tree;
        if (const E_ExitCode code = loadInput(input, loadOptions(), 0, SV_warning, session.m_tDiagnostics, tree))
            return code;
        put(input, rows4Counts(countTree(tree), input.m_nSize), session.m_tOutput);
        return EC_done;
    }

    void put(const tInput& input, const std::vector<tStatRow>& rows, CStandardOutput& output) const
    {
        const std::string encoding = input.isText() ? "text" : "binary";
        std::string out = isJson() ? "{\"file\":" + json4Text(input.m_strName) + ",\"encoding\":\"" + encoding + "\""
                                   : input.m_strName + " (" + encoding + ")\n";
        for (const tStatRow& row : rows)
            out += isJson() ? "," + json4Text(row.m_pLabel) + ":" + std::to_string(row.m_nCount) : shown4Row(row);
        output.put(out + (isJson() ? "}\n" : ""));
    }
};
}  // namespace

std::unique_ptr<IVerb> makeStatVerb()
{
    return std::make_unique<CStatVerb>();
}

}  // namespace murv::tool

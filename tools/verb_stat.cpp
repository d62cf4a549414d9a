// tools/verb_stat.cpp - murv stat: counts what documents hold.
#include "tools/verb.h"

#include <algorithm>
#include <array>

#include "tools/fact_sheet.h"
#include "tools/files_verb.h"
#include "tools/json_text.h"
#include "tools/node_walk.h"

namespace murv::tool
{

namespace
{
constexpr std::array<const char*, 8> s_cpTypeNames = {"null", "array", "fields", "bool",
                                                      "sint", "uint",  "double", "codelist"};
constexpr std::size_t s_cnNumberWidth = 10;  // numbers are right-aligned in such columns
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

CFactSheet facts4Tree(const CFields& root, std::size_t bytes)
{
    tCounts counts;
    forEachNode(root, [&counts](const CFields& node, std::size_t depth) { countNode(node, depth, counts); });
    CFactSheet facts(s_cnNumberWidth);
    facts.add("bytes", bytes);
    facts.add("depth", counts.m_nDepth);
    facts.add("nodes", counts.m_nNodes);
    for (std::size_t type = 0; type < s_cpTypeNames.size(); ++type)
        facts.add(s_cpTypeNames[type], counts.m_nType[type]);
    facts.add("names", counts.m_nNames);
    facts.add("IDs", counts.m_nIds);
    facts.add("packet expressions", counts.m_nExpressions);
    facts.add("comments", counts.m_nComments);
    facts.add("string bytes", counts.m_nStringBytes);
    return facts;
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
        const char* const encoding = input.isText() ? "text" : "binary";
        const CFactSheet facts = facts4Tree(tree, input.m_nSize);
        session.m_tOutput.put(
            isJson() ? facts.json("\"file\":" + json4Text(input.m_strName) + ",\"encoding\":" + json4Text(encoding))
                     : facts.text(input.m_strName + " (" + encoding + ")"));
        return EC_done;
    }
};
}  // namespace

std::unique_ptr<IVerb> makeStatVerb()
{
    return std::make_unique<CStatVerb>();
}

}  // namespace murv::tool

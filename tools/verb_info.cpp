// tools/verb_info.cpp - murv info: what a binary file says about itself, and what is in it.
//
// The header is shown even when the rest cannot be opened.
#include "tools/verb.h"

#include <algorithm>
#include <cstdio>

#include "murv/flags.h"
#include "tools/binary_header.h"
#include "tools/fact_sheet.h"
#include "tools/files_verb.h"
#include "tools/json_text.h"
#include "tools/node_walk.h"

namespace murv::tool
{

namespace
{
CFactSheet facts4Header(const tBinaryHeader& header, std::size_t fileBytes)
{
    const std::size_t afterHeader = fileBytes - header.m_nHeaderBytes;
    char text[11];
    std::snprintf(text, sizeof text, "0x%08X", header.m_uiVersion);
    CFactSheet facts(0);
    facts.add("bytes", fileBytes);
    facts.add("version", text);
    facts.add("byte order", header.m_bLittleEndian ? "little-endian" : "big-endian");
    facts.add("encryption", header.m_pCipher);
    facts.add("password block bytes", header.m_nPasswordBytes);
    facts.add("body bytes", afterHeader - std::min(afterHeader, header.m_nPasswordBytes));
    return facts;
}

void addTree(CFactSheet& facts, const CFields& root)
{
    std::size_t nodes = 0;
    std::size_t containers = 0;
    std::size_t deepest = 0;
    forEachNode(root, [&](const CFields& node, std::size_t depth) {
        ++nodes;
        containers += node.isArray() || node.isField() ? 1 : 0;
        deepest = std::max(deepest, depth);
    });
    facts.add("nodes", nodes);
    facts.add("containers", containers);
    facts.add("leaves", nodes - containers);
    facts.add("depth", deepest);
}

class CInfoVerb : public CFilesVerb
{
public:
    CInfoVerb()
        : CFilesVerb("One JSON object for each file, diagnostics as JSON lines",
                     "Binary files; - for the standard input")
    {
    }

private:
    E_ExitCode runInput(const tInput& input, tSession& session) const override
    {
        const std::optional<tBinaryHeader> header = binaryHeader4File(input.text());
        if (!header)
            return session.m_tDiagnostics.fail(input.m_strName, "is not a binary file", EC_malformed);
        CFactSheet facts = facts4Header(*header, input.m_nSize);
        CFields tree;
        const E_ExitCode code = loadInput(input, loadOptions(), LCBC_DUPLICATE, SV_error, session.m_tDiagnostics, tree);
        if (code == EC_done)
            addTree(facts, tree);
        session.m_tOutput.put(isJson() ? facts.json("\"file\":" + json4Text(input.m_strName))
                                       : facts.text(input.m_strName));
        return code;
    }
};
}  // namespace

std::unique_ptr<IVerb> makeInfoVerb()
{
    return std::make_unique<CInfoVerb>();
}

}  // namespace murv::tool

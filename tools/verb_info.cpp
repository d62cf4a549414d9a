// tools/verb_info.cpp - murv info: what a binary file says about itself, and what is in it.
//
// The header is shown even when the rest cannot be opened.
#include "tools/verb.h"

#include <algorithm>
#include <cstdio>

#include "ber/cipher.h"
#include "ber/layout.h"
#include "murv/flags.h"
#include "tools/files_verb.h"
#include "tools/json_text.h"

namespace murv::tool
{

namespace
{
/// One fact; the same labels serve people and JSON.
struct tFact
{
    const char* m_pLabel;
    std::string m_strValue;
    bool m_bNumber = true;
};

tFact number(const char* label, std::size_t value)
{
    return {label, std::to_string(value)};
}

std::vector<tFact> facts4Header(std::string_view file)
{
    const auto byte = [file](std::size_t offset) { return static_cast<unsigned char>(file[offset]); };
    const bool isLittle = (byte(detail::s_cuiFlagsOffset) & detail::s_cucLittleEndian) != 0;
    const auto version = detail::readNumber<std::uint32_t>(file.data() + detail::s_cnVersionOffset, isLittle);
    const unsigned int cipher = byte(detail::s_cnEncryptionOffset);
    const std::size_t passwordSize = byte(detail::s_cnPasswordSizeOffset);
    const std::size_t behindHeader = file.size() - detail::s_cnHeaderSize;
    char text[11];
    std::snprintf(text, sizeof text, "0x%08X", version);
    std::vector<tFact> facts = {number("bytes", file.size())};
    facts.push_back({"version", text, false});
    facts.push_back({"byte order", isLittle ? "little-endian" : "big-endian", false});
    facts.push_back({"encryption", detail::isValidCipher(cipher) ? detail::cipherName(cipher) : "unknown", false});
    facts.push_back(number("password block bytes", passwordSize));
    facts.push_back(number("body bytes", behindHeader - std::min(behindHeader, passwordSize)));
    return facts;
}

std::vector<tFact> facts4Tree(const CFields& root)
{
    std::size_t nodes = 0;
    std::size_t containers = 0;
    std::size_t depth = 0;
    std::vector<std::pair<const CFields*, std::size_t>> open{{&root, 1}};
    while (!open.empty())
    {
        const auto [node, level] = open.back();
        open.pop_back();
        ++nodes;
        containers += node->isArray() || node->isField() ? 1 : 0;
        depth = std::max(depth, level);
        for (const CFields& member : *node)
            open.emplace_back(&member, level + 1);
    }
    return {number("nodes", nodes), number("containers", containers), number("leaves", nodes - containers),
            number("depth", depth)};
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
        const std::string_view file = input.text();
        if (file.size() < detail::s_cnHeaderSize ||
            !detail::hasMurfMagic(file.data(), static_cast<unsigned int>(file.size())))
            return session.m_tDiagnostics.error(input.m_strName, "is not a binary file"), EC_malformed;
        std::vector<tFact> facts = facts4Header(file);
        CFields tree;
        const E_ExitCode code = loadInput(input, loadOptions(), LCBC_DUPLICATE, SV_error, session.m_tDiagnostics, tree);
        if (code == EC_done)
        {
            for (tFact& fact : facts4Tree(tree))
                facts.push_back(std::move(fact));
        }
        put(input, facts, session.m_tOutput);
        return code;
    }

    void put(const tInput& input, const std::vector<tFact>& facts, CStandardOutput& output) const
    {
        std::string out = isJson() ? "{\"file\":" + json4Text(input.m_strName) : input.m_strName + "\n";
        for (const tFact& fact : facts)
            out += isJson() ? "," + json4Text(fact.m_pLabel) + ":" +
                                  (fact.m_bNumber ? fact.m_strValue : json4Text(fact.m_strValue))
                            : shown4Fact(fact);
        output.put(out + (isJson() ? "}\n" : ""));
    }

    static std::string shown4Fact(const tFact& fact)
    {
        constexpr std::size_t width = 24;
        std::string line = "  ";
        line += fact.m_pLabel;
        line.append(width > line.size() ? width - line.size() : 1, ' ');
        return line + fact.m_strValue + "\n";
    }
};
}  // namespace

std::unique_ptr<IVerb> makeInfoVerb()
{
    return std::make_unique<CInfoVerb>();
}

}  // namespace murv::tool

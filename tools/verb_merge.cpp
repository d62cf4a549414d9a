// tools/verb_merge.cpp - murv merge: applies merge patches (RFC 7386) to a document.
//
// The tree is changed, and the text is written anew: comments and spellings of what stays are kept, and nothing is
// written before it was read back.
#include "tools/verb.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <bit>
#include <charconv>
#include <cstdint>

#include "murv/edit.h"
#include "murv/flags.h"
#include "murv/syntax.h"
#include "tools/file_option.h"
#include "tools/json_input.h"
#include "tools/node_walk.h"
#include "tools/replace_file.h"
#include "tools/whole_text.h"

namespace murv::tool
{

namespace
{
void forgetPlace(CFields& node)
{
    node.setOffsetStart(0);
    node.setOffsetEnd(0);
}

/// Forgets the places of doubles whose text says another value by now: it must not be taken for their spelling.
void forgetOldSpellings(CFields& tree, std::string_view source)
{
    forEachNode(tree, [source](CFields& node, std::size_t /*depth*/) {
        if (node.getDT() != DT_double)
            return;
        const auto begin = static_cast<std::size_t>(node.getOffsetStart());
        const auto end = static_cast<std::size_t>(node.getOffsetEnd());
        double value = 0;
        const bool isInside = begin < end && end <= source.size();
        const char* const last = source.data() + (isInside ? end : 0);
        const bool isNumber = isInside && std::from_chars(source.data() + begin, last, value).ptr == last;
        if (!isNumber || std::bit_cast<std::uint64_t>(value) != std::bit_cast<std::uint64_t>(node.asDouble()))
            forgetPlace(node);
    });
}

class CMergeVerb : public IVerb
{
public:
    void declare(CLI::App& verb) override
    {
        verb.add_option("FILE", m_strFile, "Document to change; - for the standard input")->required();
        verb.add_option("PATCH", m_vPatch, "Merge patches, applied in turn: documents, or JSON as *.json")->required();
        CLI::Option* const output =
            takeFile(verb.add_option("-o,--output", m_strOutput, "File for the result instead of the standard output"));
        verb.add_flag("-i,--in-place", m_bInPlace, "Replace FILE, safely, when the patches change it")
            ->excludes(output);
        verb.add_flag("--json", m_bJson, "Diagnostics as JSON lines");
        m_tLoad.declare(verb);
    }

    E_ExitCode run(tSession& session) override
    {
        CDiagnostics& diagnostics = session.m_tDiagnostics;
        diagnostics.setJson(m_bJson);
        if (const char* const fault = callFault())
            return diagnostics.fail("", fault, EC_wrongCall);
        tInput input;
        CFields tree;
        if (const E_ExitCode code = load(diagnostics, input, tree))
            return code;
        const CFields before = m_bInPlace ? tree : CFields();
        for (const std::string& patch : m_vPatch)
        {
            if (const E_ExitCode code = apply(patch, tree, diagnostics))
                return code;
        }
        if (m_bInPlace && sameTree(before, tree, ST_all))
            return EC_done;
        std::string text;
        if (const E_ExitCode code = write(input, tree, diagnostics, text))
            return code;
        if (m_bInPlace)
            return replaceFile(input, text, diagnostics);
        if (!m_strOutput.empty())
            return writeFile(m_strOutput, text, diagnostics);
        session.m_tOutput.put(text);
        return session.m_tOutput.finish(diagnostics);
    }

private:
    const char* callFault() const
    {
        if (m_bInPlace && m_strFile == "-")
            return "the standard input cannot be replaced: --in-place needs a file";
        const auto inputs = std::count(m_vPatch.begin(), m_vPatch.end(), "-") + (m_strFile == "-" ? 1 : 0);
        return inputs > 1 ? "the standard input cannot hold several documents" : nullptr;
    }

    static std::string_view sourceOf(const tInput& input)
    {
        return input.isText() ? input.text() : std::string_view();
    }

    E_ExitCode load(CDiagnostics& diagnostics, tInput& input, CFields& tree) const
    {
        if (m_bInPlace)
        {
            if (const E_ExitCode code = checkReplaceable(m_strFile, diagnostics))
                return code;
        }
        if (const E_ExitCode code = readInput(m_strFile, diagnostics, input))
            return code;
        if (m_bInPlace && !input.isText())
            return diagnostics.fail(input.m_strName, "is binary; --in-place is for text", EC_malformed);
        if (const E_ExitCode code = loadInput(input, m_tLoad, LCBC_DUPLICATE, SV_error, diagnostics, tree))
            return code;
        return checkWholeTree(input, sourceOf(input), tree, diagnostics);
    }

    E_ExitCode apply(const std::string& file, CFields& tree, CDiagnostics& diagnostics) const
    {
        tInput input;
        CFields patch;
        if (const E_ExitCode code = readInput(file, diagnostics, input))
            return code;
        const E_ExitCode code = isJsonName(file)
                                    ? loadJsonInput(input, {}, diagnostics, patch)
                                    : loadInput(input, m_tLoad, LCBC_DUPLICATE, SV_warning, diagnostics, patch);
        if (code != EC_done)
            return code;
        // Their places are not in the text that the result takes spellings from.
        forEachNode(patch, [](CFields& node, std::size_t /*depth*/) { forgetPlace(node); });
        try
        {
            merge(tree, patch);
        }
        catch (const CLogicError& error)
        {
            return diagnostics.fail(input.m_strName, withoutFunction(error.what()), EC_malformed);
        }
        return EC_done;
    }

    E_ExitCode write(const tInput& input, CFields& tree, CDiagnostics& diagnostics, std::string& text) const
    {
        const unsigned int flags = m_tLoad.flags() | LCBC_DUPLICATE;
        const CFields wanted = tree;  // writing changes the values
        forgetOldSpellings(tree, sourceOf(input));
        tLoss loss;
        if (!writeText(tree, sourceOf(input), {}, text, loss))
            return diagnostics.fail(input.m_strName, loss.m_strMessage, EC_malformed);
        while (text.size() > 1 && text.compare(text.size() - 2, 2, "\n\n") == 0)
            text.pop_back();  // a comment at the end has a line feed of its own
        if (std::optional<std::string> laidOut = formatText(text, flags, {}))
            text = std::move(*laidOut);
        if (isTextOf(text, flags, wanted, true))
            return EC_done;
        return diagnostics.fail(input.m_strName, "text cannot hold it: the result does not read back equal",
                                EC_malformed);
    }

    std::string m_strFile;
    std::vector<std::string> m_vPatch;
    std::string m_strOutput;
    tLoadOptions m_tLoad;
    bool m_bInPlace = false;
    bool m_bJson = false;
};
}  // namespace

std::unique_ptr<IVerb> makeMergeVerb()
{
    return std::make_unique<CMergeVerb>();
}

}  // namespace murv::tool

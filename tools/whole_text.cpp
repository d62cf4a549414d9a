// tools/whole_text.cpp - compares texts and trees with what they come from.
#include "tools/whole_text.h"

#include "murv/loader.h"

namespace murv::tool
{

E_ExitCode writeWholeText(const tInput& input, std::string_view source, CFields& tree, const tFormat& format,
                          CDiagnostics& diagnostics, std::string& text)
{
    tLoss loss;
    if (!writeText(tree, source, format, text, loss))
        return reportLoss(input, loss, diagnostics);
    const bool isKept = format.m_bCompact || source.empty() || keepsComments(input, text, diagnostics);
    return isKept ? EC_done : EC_malformed;
}

E_ExitCode checkWholeTree(const tInput& input, std::string_view source, const CFields& tree, CDiagnostics& diagnostics)
{
    if (source.empty())
        return EC_done;
    CFields spent = tree;
    std::string unused;
    return writeWholeText(input, source, spent, {}, diagnostics, unused);
}

bool isTextOf(std::string_view text, unsigned int flags, const CFields& tree, bool comments)
{
    CLoader4SER loader(flags | LCBC_DUPLICATE);
    CFields again;
    return loader.loading(text, again) && isSameDocument(tree, again, comments);
}

}  // namespace murv::tool

// tools/layout_input.h - loads and compiles layouts, for every verb that works by one.
//
// A layout is a document, so its faults are shown as those of documents are: at their places, with the line.
#pragma once

#include <string>

#include "murv/layout.h"
#include "tools/input.h"

namespace murv::tool
{

struct tLoadedLayout
{
    tInput m_tInput;
    CLayout m_tLayout;
};

/// Declares the option -l of the verb, which names a layout.
CLI::Option* declareLayout(CLI::App& verb, std::string& layout);
/// Declares the argument LAYOUT of the verb.
CLI::Option* declareLayoutArgument(CLI::App& verb, std::string& layout);
/// Declares both for one layout, of which users give one.
void declareEitherLayout(CLI::App& verb, std::string& layout);

/// Loads and compiles a layout by file or by installed name.
E_ExitCode readLayout(const std::string& nameOrFile, CDiagnostics& diagnostics, tLoadedLayout& layout);

/// The same for a text, which diagnostics call `name`.
E_ExitCode readLayoutText(const std::string& name, std::string_view text, CDiagnostics& diagnostics,
                          tLoadedLayout& layout);

/// Whether a document says that it is a layout: its root has the rule "layout".
bool isLayout(const CFields& document);

/// Compiles a document, and reports all its mistakes at their places.
E_ExitCode compileLayout(const tInput& input, const CFields& document, CDiagnostics& diagnostics, CLayout& layout);

}  // namespace murv::tool

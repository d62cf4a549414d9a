// tools/whole_text.h - text that lacks nothing of the document that it comes from.
//
// A tree may lack comments and remarks that its text had: these functions find that out before something is lost.
#pragma once

#include <string>
#include <string_view>

#include "tools/input.h"
#include "tools/text_format.h"

namespace murv::tool
{

/// Writes the text of a document, with all of its comments and remarks; text on one line has none.
///
/// \param source  the text that the tree was loaded from; empty when that was no text
/// \param tree    on return its values are unspecified
E_ExitCode writeWholeText(const tInput& input, std::string_view source, CFields& tree, const tFormat& format,
                          CDiagnostics& diagnostics, std::string& text);

/// Reports the first comment or remark of the source that its tree lacks.
E_ExitCode checkWholeTree(const tInput& input, std::string_view source, const CFields& tree, CDiagnostics& diagnostics);

/// Whether a text gives a tree back. \param flags  bits of E_LoaderConfigBit
bool isTextOf(std::string_view text, unsigned int flags, const CFields& tree, bool comments);

}  // namespace murv::tool

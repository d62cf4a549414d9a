// tools/same_document.h - whether a result says what its document says, before that is replaced or trusted.
#pragma once

#include <string_view>

#include "tools/input.h"

namespace murv::tool
{

/// Compares everything that a document states: values to the bit, types, names, IDs, packet expressions; and, where
/// they can be kept, comments.
bool isSameDocument(const CFields& a, const CFields& b, bool comments);

/// Whether a text gives a tree back. \param flags  bits of E_LoaderConfigBit
bool isTextOf(std::string_view text, unsigned int flags, const CFields& tree, bool comments);

/// Reports the first comment or remark of a text that the tree it was loaded to lacks.
E_ExitCode checkComments(const tInput& input, const CFields& tree, CDiagnostics& diagnostics);

}  // namespace murv::tool

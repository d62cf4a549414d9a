// tools/text_format.h - writes a document with a new layout, without changing what it says.
//
// A lossless saving writes every value so that it reads back equal. A text that a person wrote is more than its values:
// here doubles also keep their spelling, 1e3 or 1.50.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "murv/fields.h"
#include "tools/exit_code.h"
#include "tools/input.h"
#include "tools/source_text.h"

namespace murv::tool
{

struct tFormat
{
    bool m_bCompact = false;       // one line, without comments
    bool m_bOneLineArrays = true;  // short arrays of scalars go on one line
    bool m_bNullWord = true;       // null is written as "null" instead of nothing
    bool m_bFinalNewline = true;
    std::string m_strIndentUnit = "  ";
};

/// What a tree holds and a document cannot.
struct tLoss
{
    const CFields* m_pNode = nullptr;  // the node that would lose it; null when it is no node that is wrong
    std::string m_strMessage;          // empty when all can be written
};

/// Writes the text of a tree, so that it reads back equal.
///
/// \param tree    on return its values are unspecified; its structure is kept
/// \param source  the text that it was loaded from; empty when it was not loaded from text
/// \param loss    given the first thing that text cannot hold
/// \return false when there is such a thing
bool writeText(CFields& tree, std::string_view source, const tFormat& format, std::string& text, tLoss& loss);

/// The same as a binary file.
bool writeBinary(CFields& tree, const std::string& password, std::string& file, tLoss& loss);

/// Reports what a result would lack, at its place in the document. \return the exit code for that
E_ExitCode reportLoss(const tInput& input, const tLoss& loss, CDiagnostics& diagnostics);

/// Compares everything that a document states: values to the bit, types, names, IDs, packet expressions; and, where
/// they can be kept, comments.
bool isSameDocument(const CFields& a, const CFields& b, bool comments);

/// Reports the first comment or remark of a text document that the new text lacks. \return false when there is one
bool keepsComments(const tInput& input, std::string_view text, CDiagnostics& diagnostics);

}  // namespace murv::tool

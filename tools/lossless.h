// tools/lossless.h - saves trees as text and as binary files, so that they read back equal.
//
// What text or a binary file cannot hold is named, with the node that it belongs to.
#pragma once

#include <string>

#include "murv/fields.h"
#include "tools/exit_code.h"
#include "tools/input.h"

namespace murv::tool
{

/// What a tree holds and a document cannot.
struct tLoss
{
    const CFields* m_pNode = nullptr;  // the node that would lose it; null when it is no node that is wrong
    std::string m_strMessage;          // empty when all can be written
};

/// Writes a tree as text, which ends with a line feed.
///
/// \param isCompact  one line, without comments
/// \param loss       given the first thing that text cannot hold
/// \return false when there is such a thing
bool writeText(const CFields& tree, bool isCompact, std::string& text, tLoss& loss);

/// The same as a binary file.
bool writeBinary(const CFields& tree, const std::string& password, std::string& file, tLoss& loss);

/// Reports what a result would lack, at its place in the document. \return the exit code for that
E_ExitCode reportLoss(const tInput& input, const tLoss& loss, CDiagnostics& diagnostics);

}  // namespace murv::tool

// tools/json_writer.h - trees as JSON, in pieces.
//
// One writer for what people look at and for what programs read back; docs/tool.md has the form.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "murv/fields.h"
#include "tools/json_form.h"
#include "tools/lossless.h"

namespace murv::tool
{

struct tJsonStyle
{
    E_JsonForm m_eForm = JF_exact;
    E_JsonBytes m_eBytes = JB_none;
    bool m_bComments = true;   // else they are left out
    bool m_bTolerant = false;  // what JSON cannot hold is left out or replaced, instead of being an error
};

/// Takes pieces of a result. \return false when no more can be taken
using tTakePiece = std::function<bool(std::string_view)>;

/// Writes a tree as JSON on one line, without a line feed. Goes to any depth, and needs memory for the depth and a
/// piece of the result only.
///
/// \param loss  given the first thing that JSON cannot hold, with its path; none in JF_shown
/// \return false when there is such a thing, or when `take` refused
bool writeJson(const CFields& tree, const tJsonStyle& style, const tTakePiece& take, tLoss& loss);

/// What writeJson would find that JSON cannot hold.
/// \return false when there is such a thing
bool checkJson(const CFields& tree, const tJsonStyle& style, tLoss& loss);

/// The value of a node for people to look at: names and values alone. Bytes that are not UTF-8 become U+FFFD, NaN
/// becomes null, and a member without a name has the key "".
std::string json4Value(const CFields& node);

/// The node for programs that compare: exact, with bytes as hexadecimal digits. Packet expressions that documents have
/// no text for are left out.
std::string exactJson4Node(const CFields& node, bool withComments = true);

}  // namespace murv::tool

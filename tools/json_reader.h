// tools/json_reader.h - trees from any JSON, exactly.
//
// Numbers must be held as they are, names may not repeat, and nothing may nest deeper than in documents: what breaks a
// rule is an error with its place. What json_writer.h writes comes back equal.
#pragma once

#include <string_view>

#include "murv/fields.h"
#include "tools/json_fault.h"

namespace murv::tool
{

struct tJsonReading
{
    bool m_bPlain = false;    // keys that begin with "$" are names like others
    bool m_bBytes = false;    // but $hex and $base64 are still bytes
    bool m_bNearest = false;  // of a number that is none exactly, the nearest double
};

/// Reads one JSON value. Nodes get its places as their offsets.
/// \param tree  a null node; after an error it holds a part of the tree
/// \return false when the text is wrong
bool readJson(std::string_view text, const tJsonReading& how, CFields& tree, tJsonFault& fault);

}  // namespace murv::tool

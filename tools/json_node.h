// tools/json_node.h - nodes from JSON objects that stand for them.
#pragma once

#include <string>

#include "murv/fields.h"
#include "tools/expression_text.h"

namespace murv::tool
{

class CJsonNodes
{
public:
    /// Turns a field set for which isNodeObject() is true into the node that it stands for.
    /// \param fields  keeps its own name and offsets
    /// \return an empty text, or the mistake in it
    std::string turn(CFields& fields, bool isNamed);

private:
    std::string setPart(CFields& node, CFields& part, bool isNamed);

    CTextExpressions m_tExpressions;
};

/// Turns a field set {"$hex":"00FF"} or {"$base64":"AP8="} into its bytes; others stay. \return an empty text, or the
/// mistake in it
std::string turnBytes(CFields& fields);

}  // namespace murv::tool

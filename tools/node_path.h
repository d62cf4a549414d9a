// tools/node_path.h - paths that lead to a node: orders[3].price, #7, "quoted name".x
//
// A name stands for a member, a number in brackets for the member at that index, and "#" with a number for the node
// of that ID, which may lie deeper. "." alone is the root.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "murv/fields.h"

namespace murv::tool
{

enum E_StepKind
{
    SK_name,
    SK_index,
    SK_id,
};

struct tStep
{
    E_StepKind m_eKind;
    std::string m_strName;
    unsigned int m_uiNumber;
    std::size_t m_nEnd;  // where the step ends in the path
};

struct tNodePath
{
    std::vector<tStep> m_vStep;
    const char* m_pError = nullptr;  // what is wrong with it, or null
    std::size_t m_nErrorAt = 0;
};

tNodePath parseNodePath(std::string_view text);

/// Follows the path.
/// \param taken  how many steps led somewhere
/// \return the node, or null
CFields* findNode(CFields& root, const tNodePath& path, std::size_t& taken);

}  // namespace murv::tool

// tools/layout_example.h - a packet made from a layout alone, and what each of its bytes is.
#pragma once

#include <string>
#include <vector>

#include "murv/layout.h"

namespace murv::tool
{

/// A value of the example, or the beginning of a record.
struct tExampleLine
{
    unsigned int m_uiPart = 0;
    bool m_bRecord = false;
    std::uint64_t m_ullOffset = 0;
    std::string m_strBytes;  // hexadecimal; stars where the part is masked
    std::string m_strPath;   // such as readings[0].kind
    std::string m_strValue;  // stars where the part is masked
};

struct tExample
{
    std::uint64_t m_ullBytes = 0;
    std::vector<tExampleLine> m_vLines;  // empty: none could be made
    std::string m_strFault;              // why
};

/// Makes a packet of the layout's own values: one element in each array, the first alternative of each choice; optional
/// parts as far as they can be there. Where that contradicts itself, fewer parts.
///
/// \param document  that the layout was compiled from: what leaves have that making does not fill in
tExample example4Layout(const CLayout& layout, const CFields& document);

}  // namespace murv::tool

// tools/layout_row.h - what is said of each part of a layout: where it lies, how long it is, what it holds.
//
// The offset table, the pictures and the page show the same rows, so they say the same.
#pragma once

#include <string>
#include <vector>

#include "murv/layout.h"

namespace murv::tool
{

/// A part, or one of the small numbers that share a part by the rule "bits".
struct tLayoutRow
{
    tLayoutPart m_tPart;
    unsigned int m_uiPart = 0;
    std::string m_strPath;    // such as readings[].kind; "." for the root
    std::string m_strOffset;  // 12; +2 within an element; "after count"; empty outside records
    std::string m_strLength;  // 4, 2..101, 13.. or 3 bits
    std::string m_strKind;    // such as "number, computed"
    std::string m_strRules;
    std::string m_strComment;
    std::string m_strFrom;   // path of what the offset counts from; empty: the offset varies
    std::string m_strAfter;  // path of the neighbour before it, when the offset varies
    bool m_bBits = false;    // a small number
    tLayoutBits m_tBits{};
};

/// The paths of all parts of a layout, as faults show them, with [] for each array; findPart() takes them without [].
class CLayoutPaths
{
public:
    explicit CLayoutPaths(const CLayout& layout);

    const std::string& path(unsigned int part) const
    {
        return m_vPaths[part];
    }
    /// The last step of the path.
    std::string name(unsigned int part) const
    {
        return m_vPaths[part].substr(m_vNames[part]);
    }

private:
    std::vector<std::string> m_vPaths;
    std::vector<std::size_t> m_vNames;  // by part: where the last step begins
};

/// A rule as people see it: bytes that are no printable characters as the escapes of the notation.
std::string shownRule(std::string_view rule);

/// The bytes of a literal: quoted characters, or hexadecimal digits; long ones are cut, masked ones are stars.
std::string shownLiteral(const tLayoutPart& part);

/// "4", "2..101" or "13..".
std::string text4Length(std::uint64_t least, std::uint64_t most);

/// All members of a part, in order.
std::vector<unsigned int> membersOf(const CLayout& layout, unsigned int part);

/// The rows of some parts, with those of small numbers after the number that holds them.
std::vector<tLayoutRow> rows4Parts(const CLayout& layout, const CLayoutPaths& paths,
                                   const std::vector<unsigned int>& parts);

/// The rows of all parts.
std::vector<tLayoutRow> rows4Layout(const CLayout& layout);

}  // namespace murv::tool

// tools/layout_row.cpp - the parts of a layout in words.
#include "tools/layout_row.h"

#include <algorithm>

#include "tools/hex_text.h"
#include "tools/packet_leaf.h"
#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
bool isNone(unsigned int part)
{
    return part == CLayout::s_cuiNoPart;
}

const char* kind4Leaf(const tLayoutPart& part)
{
    const std::string_view letters = part.m_strvExpression.substr(0, 2);
    if (part.m_bLiteral)
        return "literal";
    return letters == "AC" ? "text" : letters == "AN" ? "number" : letters == "BC" ? "bytes" : "binary number";
}

std::string kind4Part(const tLayoutPart& part)
{
    std::string kind = part.m_eKind == LP_leaf    ? kind4Leaf(part)
                       : part.m_eKind == LP_array ? "array"
                       : part.m_bChoice           ? "one of"
                                                  : "fields";
    if (part.m_bRecord)
        kind = part.m_eKind == LP_fields && !part.m_bChoice ? "record" : kind + ", record";
    kind += part.m_bComputed ? ", computed" : "";
    kind += part.m_bOptional ? ", optional" : "";
    kind += part.m_bMasked ? ", masked" : "";
    return kind;
}

/// The neighbour before a part in the same field set, or none.
unsigned int neighbourBefore(const CLayout& layout, unsigned int part)
{
    const unsigned int parent = layout.getPart(part).m_uiParent;
    unsigned int at = part - 1;
    while (at != parent && layout.getPart(at).m_uiParent != parent)
        at = layout.getPart(at).m_uiParent;
    return at == parent ? CLayout::s_cuiNoPart : at;
}

void setPlace(const CLayout& layout, const CLayoutPaths& paths, tLayoutRow& row)
{
    const tLayoutPart& part = row.m_tPart;
    const bool isFixed = !isNone(part.m_uiBase) && (part.m_uiBase != row.m_uiPart || part.m_bRecord);
    if (isFixed)
    {
        row.m_strFrom = paths.path(part.m_uiBase);
        row.m_strOffset = (layout.getPart(part.m_uiBase).m_bRecord ? "" : "+") + std::to_string(part.m_ullOffset);
        return;
    }
    if (isNone(part.m_uiParent))
        return;
    if (isElement(layout, row.m_uiPart))
    {
        row.m_strOffset = isNone(part.m_uiBase) ? "" : "+0";
        row.m_strFrom = isNone(part.m_uiBase) ? "" : row.m_strPath;
        return;
    }
    const unsigned int before = neighbourBefore(layout, row.m_uiPart);
    if (isNone(before) || layout.getPart(part.m_uiParent).m_bChoice)
        return;
    row.m_strAfter = paths.path(before);
    row.m_strOffset = "after " + paths.name(before);
}

tLayoutRow row4Part(const CLayout& layout, const CLayoutPaths& paths, unsigned int part)
{
    tLayoutRow row;
    row.m_tPart = layout.getPart(part);
    row.m_uiPart = part;
    row.m_strPath = paths.path(part);
    row.m_strLength = text4Length(row.m_tPart.m_ullLeast, row.m_tPart.m_ullMost);
    row.m_strKind = kind4Part(row.m_tPart);
    row.m_strComment = row.m_tPart.m_strvComment;
    for (const tLayoutRule& rule : layout.getRules(part))
        row.m_strRules.append(row.m_strRules.empty() ? "" : "; ").append(shownRule(rule.m_strvRule));
    setPlace(layout, paths, row);
    return row;
}

tLayoutRow row4Bits(const tLayoutRow& number, const tLayoutBits& bits)
{
    tLayoutRow row = number;
    const unsigned int high = bits.m_uiShift + bits.m_uiWidth - 1;
    row.m_bBits = true;
    row.m_tBits = bits;
    row.m_strPath.append(".").append(bits.m_strvName);
    row.m_strLength = std::to_string(bits.m_uiWidth) + (bits.m_uiWidth == 1 ? " bit" : " bits");
    row.m_strKind = bits.m_uiWidth == 1 ? "bit " + std::to_string(high)
                                        : "bits " + std::to_string(high) + ".." + std::to_string(bits.m_uiShift);
    row.m_strRules.clear();
    row.m_strComment.clear();
    return row;
}
}  // namespace

std::string shownRule(std::string_view rule)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string shown;
    while (!rule.empty())
    {
        const std::size_t length = utf8Length(rule);
        const auto byte = static_cast<unsigned char>(rule.front());
        const bool isShown = length != 0 && !isControl(codePoint(rule.substr(0, length)));
        if (isShown)
            shown += rule.substr(0, length);
        else if (byte == '\n' || byte == '\r' || byte == '\t')
            shown += byte == '\n' ? "\\n" : byte == '\r' ? "\\r" : "\\t";
        else
            shown.append("\\x").append(1, digits[byte >> 4U]).append(1, digits[byte & 15U]);
        rule.remove_prefix(isShown ? length : 1);
    }
    return shown;
}

std::string shownLiteral(const tLayoutPart& part)
{
    constexpr std::size_t longest = 8;  // bytes that are shown
    std::string bytes(part.m_strvLiteral);
    if (part.m_bMasked)
        std::fill_n(bytes.begin(), bytes.size() - std::min<std::size_t>(bytes.size(), part.m_uiShown), '*');
    const bool isText = std::all_of(bytes.begin(), bytes.end(), [](char c) { return c >= ' ' && c <= '~'; });
    std::string text;
    if (isText)
        text = "\"" + bytes.substr(0, longest) + "\"";
    else
        appendHex(text, std::string_view(bytes).substr(0, longest));
    return text + (bytes.size() > longest ? "..." : "");
}

CLayoutPaths::CLayoutPaths(const CLayout& layout) : m_vPaths(layout.getPartCount()), m_vNames(m_vPaths.size())
{
    for (unsigned int part = 1; part < m_vPaths.size(); ++part)
    {
        const unsigned int parent = layout.getPart(part).m_uiParent;
        const std::string around = parent == 0 ? std::string() : m_vPaths[parent];
        if (isElement(layout, part))
        {
            m_vPaths[part] = around + "[]";
            m_vNames[part] = m_vNames[parent];
            continue;
        }
        const std::string path = layout.getPath(part);
        const std::size_t before = layout.getPath(parent).size();
        m_vNames[part] = around.empty() ? 0 : around.size() + 1;
        m_vPaths[part] = around + (around.empty() ? "" : ".") + path.substr(before == 0 ? 0 : before + 1);
    }
    m_vPaths.front() = ".";
}

std::string text4Length(std::uint64_t least, std::uint64_t most)
{
    if (least == most)
        return std::to_string(least);
    return std::to_string(least) + ".." + (most == CLayout::s_cullNoBound ? "" : std::to_string(most));
}

std::vector<unsigned int> membersOf(const CLayout& layout, unsigned int part)
{
    std::vector<unsigned int> members;
    for (unsigned int at = part + 1; at < layout.getPartCount(); ++at)
    {
        const unsigned int parent = layout.getPart(at).m_uiParent;
        if (parent < part)
            break;
        if (parent == part)
            members.push_back(at);
    }
    return members;
}

std::vector<tLayoutRow> rows4Parts(const CLayout& layout, const CLayoutPaths& paths,
                                   const std::vector<unsigned int>& parts)
{
    std::vector<tLayoutRow> rows;
    for (const unsigned int part : parts)
    {
        rows.push_back(row4Part(layout, paths, part));
        const tLayoutRow number = rows.back();
        for (const tLayoutBits& bits : layout.getBits(part))
            rows.push_back(row4Bits(number, bits));
    }
    return rows;
}

std::vector<tLayoutRow> rows4Layout(const CLayout& layout)
{
    std::vector<unsigned int> parts(layout.getPartCount());
    for (unsigned int part = 0; part < parts.size(); ++part)
        parts[part] = part;
    return rows4Parts(layout, CLayoutPaths(layout), parts);
}

}  // namespace murv::tool

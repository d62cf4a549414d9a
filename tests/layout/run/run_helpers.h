// tests/layout/run/run_helpers.h - layouts in short, and what reading and making give, as text.
//
// Trees stand as {"name"="text",#7=5,"list"=[1,2]}, in the notation itself; faults as `code at path @offset+length`.
#pragma once

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "murv/layout.h"
#include "murv/loader.h"

namespace murv::tests
{

/// A layout with these members, and more rules of the root.
inline CLayout layout4(const std::string& members, const std::string& rules = "")
{
    CLayout layout;
    const std::string text = "{ \"@\" = \"layout 1" + (rules.empty() ? "" : "; " + rules) + "\", " + members + " }";
    EXPECT_TRUE(layout.compile(text)) << text;
    for (const tLayoutMistake& mistake : layout.getMistakes())
        ADD_FAILURE() << mistake.m_strPath << ": " << mistake.m_strMessage;
    return layout;
}

/// The first mistake of such a layout; empty when it compiles.
inline std::string mistake4(const std::string& members, const std::string& rules = "")
{
    CLayout layout;
    if (layout.compile("{ \"@\" = \"layout 1" + (rules.empty() ? "" : "; " + rules) + "\", " + members + " }"))
        return "";
    return layout.getMistakes().front().m_strMessage;
}

/// Bytes that have zeros among them.
template <std::size_t n>
std::string bytes(const char (&text)[n])
{
    return {text, n - 1};
}

inline std::string quotedText(std::string_view text)
{
    constexpr const char* digits = "0123456789ABCDEF";
    std::string out = "\"";
    for (const char c : text)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            out.append("\\").push_back(c);
        else if (byte >= ' ' && byte < 127)
            out.push_back(c);
        else
            out.append("\\x").append({digits[byte >> 4], digits[byte & 15U]});
    }
    return out + "\"";
}

inline std::string text4Double(double number)
{
    // The fewest digits that read back the same; std::to_chars of libc++ 13 writes no doubles.
    char room[40];
    for (int digits = 1; digits <= 17; ++digits)
    {
        std::snprintf(room, sizeof room, "%.*g", digits, number);
        if (std::strtod(room, nullptr) == number)
            break;
    }
    return room;
}

inline std::string text4Tree(const CFields& node)
{
    if (node.isField() || node.isArray())
    {
        std::string text;
        for (const CFields& member : node)
        {
            text += text.empty() ? "" : ",";
            if (node.isField())
                text += member.getNameLen() != 0 ? quotedText({member.getName(), member.getNameLen()}) + "="
                                                 : "#" + std::to_string(member.getID()) + "=";
            text += text4Tree(member);
        }
        return node.isField() ? "{" + text + "}" : "[" + text + "]";
    }
    switch (node.getDT())
    {
    case DT_null: return "null";
    case DT_bool: return node.asBool() ? "true" : "false";
    case DT_sint: return std::to_string(node.asSint64());
    case DT_uint: return std::to_string(node.asUint64());
    case DT_double: return text4Double(node.asDouble());
    default: return quotedText(node.asString());
    }
}

/// A tree in the notation; empty containers stay empty, and repeated names stand twice.
inline CFields tree4(const std::string& text)
{
    CLoaders loader(LCBC_LOSSLESS | LCBC_DUPLICATE);
    CFields tree;
    EXPECT_TRUE(loader.loading(text, tree)) << text << "\n" << loader.getLastErrMsg();
    return tree;
}

/// `code at path @offset+length`
inline std::string place4(const tPacketFault& fault)
{
    return std::string(getFaultName(fault.m_eCode)) + " at " + fault.m_strPath + " @" +
           std::to_string(fault.m_ullOffset) + "+" + std::to_string(fault.m_ullLength);
}

inline std::string findings4(const std::vector<tPacketFault>& findings)
{
    std::string text;
    for (const tPacketFault& finding : findings)
        text += " ! " + place4(finding);
    return text;
}

/// The tree, or the fault; after either the findings.
inline std::string read(const CLayout& layout, std::string_view packet, const tReadOptions& options = {})
{
    CPacketReader reader(layout, options);
    CFields tree;
    const bool isRead = reader.read(packet, tree);
    EXPECT_EQ(isRead, reader.getFault().m_eCode == PF_none);
    return (isRead ? text4Tree(tree) : place4(reader.getFault())) + findings4(reader.getFindings());
}

/// `code at path: sentence` of a packet that is not read.
inline std::string refusal(const CLayout& layout, std::string_view packet)
{
    CPacketReader reader(layout);
    if (reader.check(packet))
        return "read";
    return place4(reader.getFault()) + ": " + reader.getFault().m_strMessage;
}

/// The packet, or `code at path`; after either the findings.
inline std::string make(const CLayout& layout, const std::string& tree, const tMakeOptions& options = {})
{
    CPacketMaker maker(layout, options);
    std::string packet = "old";
    const bool isMade = maker.make(tree4(tree), packet);
    EXPECT_EQ(isMade, maker.getFault().m_eCode == PF_none);
    EXPECT_TRUE(isMade || packet.empty());
    const tPacketFault& fault = maker.getFault();
    return (isMade ? packet : std::string(getFaultName(fault.m_eCode)) + " at " + fault.m_strPath) +
           findings4(maker.getFindings());
}

/// Why a packet is not made, in words.
inline std::string makingFault(const CLayout& layout, const std::string& tree, const tMakeOptions& options = {})
{
    CPacketMaker maker(layout, options);
    std::string packet;
    return maker.make(tree4(tree), packet) ? "made" : maker.getFault().m_strMessage;
}

/// The packet is read as this tree, without findings, and the tree makes the packet.
inline void expectBoth(const CLayout& layout, const std::string& packet, const std::string& tree)
{
    EXPECT_EQ(read(layout, packet), tree);
    EXPECT_EQ(make(layout, tree), packet);
}

}  // namespace murv::tests

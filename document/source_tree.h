// document/source_tree.h - a text cut into the bytes of its members.
//
// Put together again, the pieces are the text: nothing lies between them. So a change touches the pieces of one member.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace murv::detail
{

/// The bytes of a node, in their order. Its members stand between value and inner.
struct tSourceNode
{
    std::string_view m_strvBefore;  // blanks and comments before its first token
    std::string_view m_strvHead;    // ID, name, "=" and packet expression, up to where the value begins
    std::string_view m_strvValue;   // a scalar; or an opening bracket, with comments on its line
    std::string_view m_strvInner;   // of a container: from its last member to the end of its closing bracket
    std::string_view m_strvAfter;   // up to the comma, and comments after it on its line
    std::vector<std::uint32_t> m_vMember;

    bool isContainer() const
    {
        return !m_strvInner.empty();
    }
    /// Whether nothing at all stands for it; that is a null.
    bool isMissing() const
    {
        return m_strvHead.empty() && m_strvValue.empty();
    }
};

class CSourceTree
{
public:
    static constexpr std::uint32_t s_cuiRoot = 0;

    tSourceNode& operator[](std::uint32_t node)
    {
        return m_vNode[node];
    }
    const tSourceNode& operator[](std::uint32_t node) const
    {
        return m_vNode[node];
    }
    std::uint32_t add()
    {
        m_vNode.emplace_back();
        return static_cast<std::uint32_t>(m_vNode.size() - 1);
    }
    std::uint32_t size() const
    {
        return static_cast<std::uint32_t>(m_vNode.size());
    }
    /// Keeps a text for as long as the tree.
    std::string_view keep(std::string text)
    {
        m_nKept += text.size();
        return m_vText.emplace_back(std::move(text));
    }
    /// Bytes of all texts, also of those that are no longer part of any node.
    std::size_t keptBytes() const
    {
        return m_nKept;
    }
    std::string text() const;

private:
    std::vector<tSourceNode> m_vNode;
    std::deque<std::string> m_vText;
    std::size_t m_nKept = 0;
};

/// A node, and where it is.
struct tSourcePlace
{
    std::uint32_t m_uiNode = CSourceTree::s_cuiRoot;
    bool m_bRoot = true;
    std::uint32_t m_uiParent = 0;
    std::size_t m_nIndex = 0;  // in its parent
};

}  // namespace murv::detail

// document/source_edit.h - changes the bytes of single members.
//
// Each function first makes all texts that it needs, and then changes nodes without being able to fail. So when memory
// runs out, nothing has changed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "document/placement.h"
#include "document/source_tree.h"
#include "murv/fields.h"

namespace murv::detail
{

/// How a value is to be spelled.
struct tSpelling
{
    std::string_view m_strvNotation;  // empty: as savers write it
    std::size_t m_nLevels = 0;        // containers around it, which it is the only value of
};

class CSourceEdit
{
public:
    CSourceEdit(CSourceTree& tree, const tDocumentLayout& layout, unsigned int config)
        : m_tTree(tree), m_tLayout(layout), m_uiConfig(config)
    {
    }

    /// \param member  with all that it has. Throws CLogicError when no text can hold it
    void insertMember(std::uint32_t container, std::size_t index, const CFields& member,
                      const tSpelling& spelling = {});
    /// \param value  without name, ID, comments and packet expression
    void prepareValue(const tSourcePlace& place, const CFields& value, const tSpelling& spelling = {});
    void commitValue(const tSourcePlace& place) noexcept;
    void prepareRemoval(const tSourcePlace& place);
    void commitRemoval(const tSourcePlace& place) noexcept;
    void rename(const tSourcePlace& place, std::string_view name);
    /// \return the comment as it will stand in the text
    std::string prepareComment(const tSourcePlace& place, std::string_view comment, E_CommentPosition position);
    void commitComment(const tSourcePlace& place) noexcept;

private:
    /// What changes of a node.
    struct tPrepared
    {
        tSourceNode m_tValue;
        std::string_view m_strvBefore;
        std::string_view m_strvHead;
        std::string_view m_strvAfter;
        // of a removal
        std::string_view m_strvNextBefore;
        std::string_view m_strvLastAfter;
        std::string_view m_strvInner;
        std::string_view m_strvOnlyValue;
    };

    std::uint32_t addText(const CFields& node, const tSpelling& spelling, tMemberLayout& layout);
    void prepareComma(const tSourceNode& container);
    std::string_view headForValue(const tSourceNode& node, const tSourceNode& value, const tMemberLayout& layout);
    std::string commentBefore(const tSourcePlace& place, std::string_view comment);
    std::string commentAfter(const tSourcePlace& place, std::string_view comment);
    std::string_view beforeSecond(const tSourceNode& node, std::string_view piece);
    std::string innerForFirst(const tSourceNode& container, const tMemberLayout& layout) const;
    std::string_view pieceBefore(const tSourcePlace& place) const;
    std::string_view afterPiece(std::string_view piece, const std::string& text);
    std::string beginOfLine(std::string_view before) const;
    void prepareNext(const tSourcePlace& place);
    void prepareLast(const tSourcePlace& place);
    bool isInline(const tSourcePlace& place) const;
    bool isLineAfter(const tSourcePlace& place) const;
    std::string_view line(const std::string& indentation)
    {
        return m_tTree.keep(m_tLayout.m_strLineEnd + indentation);
    }

    CSourceTree& m_tTree;
    const tDocumentLayout& m_tLayout;
    const unsigned int m_uiConfig;
    tPrepared m_tPrepared;
};

}  // namespace murv::detail

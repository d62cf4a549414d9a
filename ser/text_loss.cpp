// ser/text_loss.cpp - what text cannot hold.
//
// Packet expressions and comments are tried out: they are written and read back. So the rules cannot differ from what
// writer and reader do. Comments of one line, the usual ones, need no trial.
#include "ser/text_loss.h"

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "core/field_access.h"
#include "io/loss.h"
#include "io/text_sink.h"
#include "murv/loader.h"
#include "ser/pei_reader.h"
#include "ser/text_bound.h"
#include "ser/text_layout.h"
#include "ser/value_writer.h"

namespace murv::detail
{

namespace
{

constexpr const char* s_cpText = "text";

std::string_view comment4Node(const CFields& node, E_CommentPosition position)
{
    const char* const text = node.getCommentPtr(position);
    return text == nullptr ? std::string_view() : std::string_view(text);
}

bool isSameComments(const CFields& a, const CFields& b)
{
    for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
    {
        if (comment4Node(a, position) != comment4Node(b, position))
            return false;
    }
    return true;
}

/// One comment and nothing else, on one line.
bool isPlainComment(std::string_view text)
{
    if (text.find_first_of("\r\n") != text.npos)
        return false;
    return text.starts_with("//") || (text.starts_with("/*") && text.find("*/", 2) == text.size() - 2);
}

class CTextLoss
{
public:
    CTextLoss(ISaver& saver, unsigned char style, const CIndentation* indent, std::uint64_t* bound)
        : m_tSaver(saver), m_tValues(saver), m_ucStyle(style), m_pIndent(indent), m_pBound(bound)
    {
    }

    const char* operator()(const CFields& node, const tNodeLevel& level)
    {
        if (level.m_nLevel > s_cnMostLevels)
            return s_cpLossOfLevel;
        if (level.m_bElement && has(SAVE_NAME) && !tFieldAccess::name(node).empty())
            return "the name of an element of an array";
        if (level.m_bElement && has(SAVE_ID) && tFieldAccess::id(node) != 0)
            return "the ID of an element of an array";
        const char* loss = has(SAVE_VALUE) ? lossOfValue(node) : nullptr;
        if (loss == nullptr && has(SAVE_PEI))
            loss = lossOfExpression(node);
        if (loss == nullptr && m_pIndent != nullptr && has(SAVE_COMMENT) && has(SAVE_VALUE) && node.isComment())
            loss = lossOfComments(node, level);
        if (m_pIndent != nullptr && m_pBound != nullptr)
            *m_pBound += boundOfText(node, (level.m_nLevel - 1) * std::uint64_t{m_pIndent->unit()});
        return loss;
    }

private:
    bool has(E_SaveStyle part) const
    {
        return (m_ucStyle & part) != 0;
    }

    static const char* lossOfValue(const CFields& node)
    {
        if (tFieldAccess::type(node) != DT_double || std::isfinite(tFieldAccess::value(node).m_dValue))
            return nullptr;
        return std::isnan(tFieldAccess::value(node).m_dValue) ? "NaN" : "an infinite number";
    }

    const char* lossOfExpression(const CFields& node)
    {
        const bool isNull = CFields::pkt_IsNullExp(tFieldAccess::pei(node));
        if (!isNull && tFieldAccess::isContainer(node))
            return s_cpLossOfContainerPei;
        if (!isNull && !isExpressionHeld(node))
            return s_cpLossOfPei;
        return has(SAVE_VALUE) ? lossOfSecondValue(node) : nullptr;
    }

    bool isExpressionHeld(const CFields& node)
    {
        tPacketExpInfo wanted = tFieldAccess::pei(node);
        std::string_view text = m_tValues.expressionText(node);
        text = text.substr(1, text.size() - 2);
        constexpr std::size_t shortest = 4;
        constexpr std::size_t longest = 255;
        tPacketExpInfo read{};
        if (text.size() < shortest || text.size() > longest || text.find_first_of(" \t\r\n)") != text.npos ||
            decodePei(text, 0, read) != nullptr)
            return false;
        if (wanted.m_eLengthExp == LEC_D && !has(SAVE_VALUE))
            wanted.m_uiLength = 0;
        return std::memcmp(&read, &wanted, sizeof read) == 0;
    }

    const char* lossOfComments(const CFields& node, const tNodeLevel& level)
    {
        if (!level.isRoot() && !comment4Node(node, CP_after).empty())
            return "a comment after a node that is not the root";
        for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
        {
            const std::string_view text = comment4Node(node, position);
            if (!text.empty() && !isPlainComment(text))
                return isReadBack(node, level) ? nullptr : "this comment as it is";
        }
        return nullptr;
    }

    /// Writes a null with the comments of the node, at the root or a level below, and reads it.
    bool isReadBack(const CFields& node, const tNodeLevel& level)
    {
        CFields probe;
        CFields* bearer = &probe;
        if (!level.isRoot())
        {
            probe.setValue(DT_array);
            bearer = &probe.addArrayAt(CFields());
        }
        for (const E_CommentPosition position : {CP_before, CP_trailing, CP_after})
        {
            // A second line feed, for the comment would lose its own.
            const std::string_view text = comment4Node(node, position);
            if (!text.empty())
                bearer->setComment(std::string(text).append("\n"), position);
        }
        static constexpr tLayoutPlaces places = {"", ""};
        tKeptBlock block;
        CStringSink sink(block);
        CTextLayout(m_tSaver, places, sink, *m_pIndent).write(probe);
        CFields read;
        CLoader4SER loader(LCBC_COMMENT | LCBC_LOSSLESS);
        if (!loader.loading(sink.text(), read))
            return false;
        if (level.isRoot())
            return isSameComments(probe, read);
        return read.getChildCount() == 1 && isSameComments(*bearer, read.getChildAt(0)) && !read.isComment();
    }

    ISaver& m_tSaver;
    CValueWriter m_tValues;
    const unsigned char m_ucStyle;
    const CIndentation* const m_pIndent;
    std::uint64_t* const m_pBound;
};

}  // namespace

bool isTextWhole(ISaver& saver, const char* function, const CFields& root, const CIndentation* indent,
                 std::uint64_t* bound)
{
    std::vector<tPathStep> steps;
    const char* loss = nullptr;
    if (indent != nullptr && !indent->isBlank())
        loss = "an indentation that is not made of blanks and tabs";
    else
        loss = findLoss(root, CTextLoss(saver, CValueWriter::style(saver), indent, bound), steps);
    if (loss == nullptr)
        return true;
    reportLoss(saver, function, steps, s_cpText, loss);
    return false;
}

bool isTextLengthHeld(ISaver& saver, const char* function, unsigned long long length)
{
    if (length <= s_cnMostDocumentBytes)
        return true;
    reportLoss(saver, function, {}, s_cpText, "more than 2147483647 bytes");
    return false;
}

}  // namespace murv::detail

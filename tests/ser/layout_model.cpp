// tests/ser/layout_model.cpp - the plain models of the text layouts.
#include "tests/ser/layout_model.h"

#include "murv/text.h"

namespace murv::tests
{

namespace
{
std::string quotedName(const CFields& node)
{
    return ToQuotedEscapeString(node.getName(), node.getNameLen());
}
}  // namespace

std::string CValueModel::makeValue(const CFields& node, unsigned char& written)
{
    const auto saves = [&](unsigned int style) { return (m_ucStyle & style) != 0; };
    std::string text;
    E_ValueKind kind = VK_actual;
    tPacketExpInfo pei = node.pkt_GetExp();
    if (saves(SAVE_PEI) && !CFields::pkt_IsNullExp(pei))
    {
        if (saves(SAVE_SPACING) && (written & (2 | 4)) != 0)
            text += " ";
        if (pei.m_ucSkKind == 0 && (pei.m_usSkIndex == 1 || pei.m_usSkIndex == 2) && !node.isEqualDualValue())
        {
            if (BC32_Check(SCBC_SECOND_VALUE))
                kind = VK_fix;
            else
                pei.m_usSkIndex = 0;
        }
        text += makePEI(node.getDT(), pei, written);
    }
    const E_DataType type = node.getDT(kind);
    if (saves(SAVE_SPACING) && saves(SAVE_VALUE) && (written & (2 | 4 | 8)) != 0 &&
        (BC32_Check(SCBC_NULL_WORD) || type != DT_null))
        text += " ";
    return saves(SAVE_VALUE) ? text + makeBareValue(node, kind, written) : text;
}

std::string CValueModel::makeBareValue(const CFields& node, E_ValueKind kind, unsigned char& written)
{
    std::string text;
    const char* codes = nullptr;
    unsigned int length = 0;
    switch (node.getDT(kind))
    {
    case DT_null: text = BC32_Check(SCBC_NULL_WORD) ? "null" : ""; break;
    case DT_bool: text = ToString(node.asBool(kind)); break;
    case DT_sint: text = ToString(node.asSint64(kind)); break;
    case DT_uint: text = ToString(node.asUint64(kind)); break;
    case DT_double: text = ToString(node.asDouble(kind)); break;
    default: length = node.getCodePoint(&codes, kind); text = length == 0 ? "" : ToQuotedEscapeString(codes, length);
    }
    if (!text.empty())
        written |= 16;
    return text;
}

std::string CLayoutModel::saving(const CFields& root, unsigned char style)
{
    clearError();
    m_strText.clear();
    m_bOwnBlank = false;
    m_strIndent.clear();
    m_vMeasured.clear();
    m_bMeasuring = false;
    m_ucStyle = style;
    unsigned char flags = 0;
    writeCommentBefore(root);
    if (saves(SAVE_ID) && root.getID() != 0)
    {
        push("#" + std::to_string(root.getID()) + " ");
        flags |= 2;
    }
    if (saves(SAVE_NAME) && root.getNameLen() != 0)
    {
        push(quotedName(root));
        push(saves(SAVE_SPACING) ? " =" : "=");
        flags |= 4;
    }
    writeField(root, flags);
    writeCommentAfter(root);
    if (BC32_Check(SCBC_FINAL_NEWLINE))
        push("\n");
    return m_strText;
}

void CLayoutModel::push(std::string_view text)
{
    if (text.empty())
        return;
    m_strText += text;
    m_bOwnBlank = text.back() == ' ';
}

void CLayoutModel::pushComment(std::string_view text)
{
    if (text.empty())
        return;
    m_strText += text;
    m_bOwnBlank = false;
}

void CLayoutModel::pushValue(const std::string& text)
{
    if (m_bMeasuring)
        m_vMeasured.push_back(text);
    else
        push(text);
}

void CLayoutModel::writeIndent()
{
    if (!m_strText.empty())
    {
        if (m_bOwnBlank)
            return;
        if (m_strText.back() != '\n')
            push("\n");
    }
    pushIndent();
}

void CLayoutModel::writeField(const CFields& node, unsigned char& written)
{
    if (node.isArray())
        writeArray(node);
    else if (!node.isField())
        pushValue(makeValue(node, written));
    else if (node.getChildCount() == 0)
        pushValue("{}");
    else
        writeFields(node);
}

void CLayoutModel::writeFields(const CFields& node)
{
    writeWithIndent("{");
    indent();
    unsigned char flags = 0;
    for (unsigned int i = 0; i < node.getChildCount(); ++i)
    {
        const CFields& child = node[i];
        writeCommentBefore(child);
        if (saves(SAVE_ID) && child.getID() != 0)
        {
            writeWithIndent("#" + std::to_string(child.getID()) + " ");
            flags |= 2;
        }
        if (saves(SAVE_NAME) && child.getNameLen() != 0)
        {
            writeWithIndent(quotedName(child));
            push(saves(SAVE_SPACING) ? " =" : "=");
            flags |= 4;
        }
        else
            writeIndent();
        writeField(child, flags);
        if (i + 1 < node.getChildCount())
        {
            push(",");
            writeCommentAfter(child);
            continue;
        }
        writeCommentAfter(child);
        if ((flags & (2 | 4 | 8 | 16 | 32)) == 0)
            push("\n");
    }
    unindent();
    writeWithIndent("}");
}

void CLayoutModel::writeArray(const CFields& node)
{
    const unsigned int count = node.getChildCount();
    if (count == 0)
        return pushValue("[]");
    if (!isMultiLineArray(node))
    {
        push("[ ");
        for (unsigned int i = 0; i < count; ++i)
        {
            if (i != 0)
                push(saves(SAVE_SPACING) ? ", " : ",");
            push(m_vMeasured.at(i));
        }
        return push(" ]");
    }
    writeWithIndent("[");
    indent();
    const bool isMeasured = !m_vMeasured.empty();
    for (unsigned int i = 0; i < count; ++i)
    {
        unsigned char flags = 0;
        writeCommentBefore(node[i]);
        writeIndent();
        if (isMeasured)
            push(m_vMeasured.at(i));
        else
            writeField(node[i], flags);
        if (i + 1 < count)
        {
            push(",");
            writeCommentAfter(node[i]);
            continue;
        }
        writeCommentAfter(node[i]);
        if ((flags & (2 | 4 | 8 | 16 | 32)) == 0)
            push("\n");
    }
    unindent();
    writeIndent();
    push("]");
}

bool CLayoutModel::isMultiLineArray(const CFields& node)
{
    if (!BC32_Check(SCBC_ONE_LINE_ARRAY))
        return true;
    const unsigned int count = node.getChildCount();
    bool isCandidate = 3 * count >= 74;
    m_vMeasured.clear();
    for (unsigned int i = 0; i < count && !isCandidate; ++i)
        isCandidate = node[i].getChildCount() > 0;
    if (isCandidate)
        return true;
    m_bMeasuring = true;
    std::size_t length = 2 * std::size_t{count} + 2;
    bool isCommented = false;
    for (unsigned int i = 0; i < count; ++i)
    {
        unsigned char flags = 0;
        isCommented = isCommented || hasComment(node[i]);
        writeField(node[i], flags);
        length += m_vMeasured.at(i).size();
    }
    m_bMeasuring = false;
    return isCommented || length >= 74;
}

void CLayoutModel::writeCommentBefore(const CFields& node)
{
    const std::string comment = node.getCommentCopy(CP_before);
    if (!saves(SAVE_COMMENT) || comment.empty())
        return;
    writeIndent();
    for (std::size_t i = 0; i < comment.size(); ++i)
    {
        pushComment(std::string_view(comment).substr(i, 1));
        if (comment[i] == '\n' && i + 1 < comment.size() && comment[i + 1] == '/')
            writeIndent();
    }
    push("\n");
}

void CLayoutModel::writeCommentAfter(const CFields& node)
{
    const std::string trailing = node.getCommentCopy(CP_trailing);
    const std::string after = node.getCommentCopy(CP_after);
    if (!saves(SAVE_COMMENT))
        return;
    if (!trailing.empty())
    {
        push(" ");
        pushComment(trailing);
    }
    if (!after.empty())
    {
        push("\n");
        pushComment(after);
        push("\n");
    }
}

std::string CCompactModel::prefix(const CFields& node) const
{
    std::string text;
    if ((m_ucStyle & SAVE_ID) != 0 && node.getID() != 0)
        text += "#" + std::to_string(node.getID());
    if ((m_ucStyle & SAVE_NAME) != 0 && node.getNameLen() != 0)
        text += quotedName(node) + (m_bYaml ? "= " : "=");
    return text;
}

std::string CCompactModel::value(const CFields& node)
{
    unsigned char flags = 0;
    if (!node.isArray() && !node.isField())
        return makeValue(node, flags);
    std::string text = node.isArray() ? "[" : "{";
    for (unsigned int i = 0; i < node.getChildCount(); ++i)
        text += (i == 0 ? "" : ",") + (node.isField() ? prefix(node[i]) : "") + value(node[i]);
    return text + (node.isArray() ? "]" : "}");
}

}  // namespace murv::tests

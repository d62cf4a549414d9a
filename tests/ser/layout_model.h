// tests/ser/layout_model.h - the human-friendly layout in its plainest form: slow, recursive, on one std::string.
//
// The model decides by reading back the last character that it wrote, as the rule says; the engine decides by
// what it knows of the line. Comparing both on random trees shows that they mean the same.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "murv/saver.h"

namespace murv::tests
{

/// Values in the same plain way, text by text. The models of the layouts derive from it.
class CValueModel : public ISaver
{
public:
    using ISaver::ISaver;

    std::string makeValue(const CFields& node, unsigned char& written);

private:
    std::string makeBareValue(const CFields& node, E_ValueKind kind, unsigned char& written);
};

class CLayoutModel : public CValueModel
{
public:
    CLayoutModel(unsigned int scbc, std::string unit) : CValueModel(scbc), m_strUnit(std::move(unit))
    {
    }

    std::string saving(const CFields& root, unsigned char style);

private:
    bool saves(unsigned int style) const
    {
        return (m_ucStyle & style) != 0;
    }

    /// The saver's own text.
    void push(std::string_view text);
    void pushComment(std::string_view text);
    void pushIndent()
    {
        m_strText += m_strIndent;
        if (!m_strIndent.empty())
            m_bOwnBlank = true;
    }
    void pushValue(const std::string& text);
    void writeIndent();
    void writeWithIndent(std::string_view text)
    {
        writeIndent();
        push(text);
    }
    void indent()
    {
        m_strIndent += m_strUnit;
    }
    void unindent()
    {
        m_strIndent.resize(m_strIndent.size() - m_strUnit.size());
    }

    void writeField(const CFields& node, unsigned char& written);
    void writeFields(const CFields& node);
    void writeArray(const CFields& node);
    bool isMultiLineArray(const CFields& node);

    static bool hasComment(const CFields& node)
    {
        return node.hasComment(CP_before) || node.hasComment(CP_trailing) || node.hasComment(CP_after);
    }
    void writeCommentBefore(const CFields& node);
    void writeCommentAfter(const CFields& node);

    std::string m_strUnit;
    std::string m_strText;
    bool m_bOwnBlank = false;  // the last character is a blank of the saver's own, or indentation
    std::string m_strIndent;
    std::vector<std::string> m_vMeasured;
    bool m_bMeasuring = false;
};

/// The text on one line.
class CCompactModel : public CValueModel
{
public:
    CCompactModel(unsigned int scbc, bool yaml) : CValueModel(scbc), m_bYaml(yaml)
    {
    }

    std::string saving(const CFields& root, unsigned char style)
    {
        clearError();
        m_ucStyle = style & static_cast<unsigned char>(~SAVE_SPACING);
        return prefix(root) + value(root) + (BC32_Check(SCBC_FINAL_NEWLINE) ? "\n" : "");
    }

private:
    std::string prefix(const CFields& node) const;
    std::string value(const CFields& node);

    bool m_bYaml;
};

}  // namespace murv::tests

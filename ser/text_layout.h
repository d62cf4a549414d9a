// ser/text_layout.h - the layout of the human-friendly text.
//
// One engine writes it for all savers; they differ in the sink, in the indentation of a level and in the names under
// which errors are reported. It knows where on the line it stands, and walks without recursion.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "core/member_cursor.h"
#include "core/memory/walk_stack.h"
#include "io/text_sink.h"
#include "murv/saver.h"
#include "ser/indentation.h"
#include "ser/value_writer.h"

namespace murv::detail
{

/// The functions that a saver's errors are reported by.
struct tLayoutPlaces
{
    const char* m_pUnindent;
    const char* m_pWriteArray;
};

/// Serves one saving.
///
/// A value that wrote nothing leaves its line open: what follows, a closing brace for instance, stays on that line. So
/// do the indentation and an ID prefix. The text of a comment never leaves a line open, whatever it ends in.
class CTextLayout
{
public:
    /// \param saver   gives style and configuration and takes errors
    /// \param indent  of the first level on
    CTextLayout(ISaver& saver, const tLayoutPlaces& places, ITextSink& sink, const CIndentation& indent);

    /// Writes the document; stops early when the sink fails.
    void write(const CFields& root);

private:
    enum E_Line
    {
        LINE_begin,  // after a line feed, or nothing was written yet
        LINE_open,   // after indentation or a blank of our own: what follows stays here
        LINE_text,   // after anything else: what follows takes a line of its own
    };

    /// A container that is open, with at least one member.
    struct tFrame : CMemberCursor
    {
        bool m_bArray;
        unsigned char m_ucWritten = 0;  // of all members of a field set so far; of one member of an array

        tFrame() = default;
        explicit tFrame(const CFields& node)
            : CMemberCursor(tFieldAccess::members(node)), m_bArray(tFieldAccess::type(node) == DT_array)
        {
        }
    };

    void writeRoot(const CFields& root);
    void writeMembers(const CFields& root);
    void beginElement(const CFields& element);
    void beginField(const CFields& field, unsigned char& written);
    void endMember(const CFields& member, bool last, unsigned char written);
    bool startValue(const CFields& node, unsigned char& written);
    void writeScalar(const CFields& node, unsigned char& written);
    bool startFields(const CFields& node);
    bool startArray(const CFields& node);
    void openContainer(char bracket);
    void closeContainer(char bracket);

    void measure(const CFields& array, std::uint32_t count);
    bool mayStandOnOneLine(const CFields& array, std::uint32_t count) const;
    bool isWholeMeasure(std::uint32_t count);
    void writeOnOneLine(std::uint32_t count);
    void putEmpty(std::string_view brackets);
    void putBlankAfterName();
    void writeMeasuredLines(const CFields& array, std::uint32_t count);
    std::string_view measured(std::uint32_t index) const;

    bool hasCommentToWrite(const CFields& node) const
    {
        return m_bComments && tFieldAccess::sideRecord(node) != nullptr;
    }
    void writeCommentBefore(const CFields& node);
    void writeCommentsAfter(const CFields& node);

    std::size_t roomOfPrefix(const CFields& node) const;
    char* startLine(char* out);
    void startLine();
    char* writeId(char* out, unsigned int id, unsigned char& written);
    char* writeName(char* out, std::string_view name, unsigned char& written);
    void putText(std::string_view text);
    void putChar(char c);

    static constexpr std::size_t s_cnLineLimit = 74;
    static constexpr std::uint32_t s_cuiMeasureLimit = 25;  // elements that pass the line limit at three bytes each
    static_assert(3 * s_cuiMeasureLimit >= s_cnLineLimit && 3 * (s_cuiMeasureLimit - 1) < s_cnLineLimit);

    ISaver& m_tSaver;
    const tLayoutPlaces& m_tPlaces;
    ITextSink& m_tSink;
    CIndentation m_tIndent;
    CValueWriter m_tValues;
    const bool m_bSpacing;
    const bool m_bIds;
    const bool m_bNames;
    const bool m_bComments;
    const bool m_bOneLineArrays;
    E_Line m_eLine = LINE_begin;
    CWalkStack<tFrame> m_tOuter;  // open containers around the innermost one

    // Texts of the elements of the current array, when it was measured.
    tKeptBlock m_tMeasuredBlock;
    CStringSink m_tMeasured{m_tMeasuredBlock};
    std::size_t m_nMeasuredEnd[s_cuiMeasureLimit] = {};
    std::uint32_t m_uiMeasured = 0;
    bool m_bOneLine = false;
};

}  // namespace murv::detail

// ser/text_layout.cpp - the layout of the human-friendly text.
//
// The walk keeps the innermost container in a variable and the outer ones on a stack of its own. Short arrays are
// measured by writing their elements to a separate sink; what was measured is then written, on one line or on many.
#include "ser/text_layout.h"

#include "core/error_table.h"

namespace murv::detail
{

namespace
{

/// Whether a line of comments ends inside a block comment.
bool endsInside(std::string_view line, bool isInside)
{
    for (;;)
    {
        if (isInside)
        {
            const std::size_t end = line.find("*/");
            if (end == std::string_view::npos)
                return true;
            line.remove_prefix(end + 2);
        }
        const std::size_t begin = line.find('/');
        if (begin == std::string_view::npos || line.substr(begin, 2) != "/*")
            return false;
        line.remove_prefix(begin + 2);
        isInside = true;
    }
}

}  // namespace

CTextLayout::CTextLayout(ISaver& saver, const tLayoutPlaces& places, ITextSink& sink, const CIndentation& indent)
    : m_tSaver(saver),
      m_tPlaces(places),
      m_tSink(sink),
      m_tIndent(indent),
      m_tValues(saver),
      m_bSpacing((saver.m_ucStyle & SAVE_SPACING) != 0),
      m_bIds((saver.m_ucStyle & SAVE_ID) != 0),
      m_bNames((saver.m_ucStyle & SAVE_NAME) != 0),
      m_bComments((saver.m_ucStyle & SAVE_COMMENT) != 0),
      m_bOneLineArrays(saver.BC32_Check(SCBC_ONE_LINE_ARRAY))
{
}

/// Room for the begin of a line, an ID prefix, and a name with what follows it.
inline std::size_t CTextLayout::roomOfPrefix(const CFields& node) const
{
    constexpr std::size_t othersRoom = 16;  // "#", ten digits, " ", " ="
    return m_tIndent.room() + othersRoom + quotedRoom(tFieldAccess::name(node).size());
}

/// Begins a line, unless the current one is open.
inline char* CTextLayout::startLine(char* out)
{
    if (m_eLine == LINE_text)
        out = m_tIndent.writeLine(out);
    else if (m_eLine == LINE_begin)
        out = m_tIndent.write(out);
    m_eLine = LINE_open;
    return out;
}

inline void CTextLayout::startLine()
{
    m_tSink.take(startLine(m_tSink.room(m_tIndent.room())));
}

inline char* CTextLayout::writeId(char* out, unsigned int id, unsigned char& written)
{
    *out++ = '#';
    out = writeUnsigned(out, id);
    *out++ = ' ';
    m_eLine = LINE_open;
    written |= WRITTEN_ID;
    return out;
}

inline char* CTextLayout::writeName(char* out, std::string_view name, unsigned char& written)
{
    out = m_tValues.writeName(out, name);
    if (m_bSpacing)
        *out++ = ' ';
    *out++ = '=';
    m_eLine = LINE_text;
    written |= WRITTEN_NAME;
    return out;
}

inline void CTextLayout::putChar(char c)
{
    char* const out = m_tSink.room(1);
    *out = c;
    m_tSink.take(out + 1);
    m_eLine = c == '\n' ? LINE_begin : LINE_text;
}

void CTextLayout::write(const CFields& root)
{
    writeRoot(root);
    if (m_tSink.failed())
        return;
    if (hasCommentToWrite(root))
        writeCommentsAfter(root);
    // By default, what ends with a comment gets a second line feed, as ever.
    const bool isEnded = m_tSaver.BC32_Check(SCBC_LOSSLESS) && m_eLine == LINE_begin;
    if (m_tSaver.BC32_Check(SCBC_FINAL_NEWLINE) && !isEnded)
        putChar('\n');
}

void CTextLayout::writeRoot(const CFields& root)
{
    // The root's ID and name stand at the begin of the text or after a comment's line feed, where no line is due.
    unsigned char written = 0;
    beginField(root, written);
    if (startValue(root, written))
        writeMembers(root);
}

/// Writes the members of a container that was just opened, and closes it.
void CTextLayout::writeMembers(const CFields& root)
{
    tFrame frame(root);
    for (;;)
    {
        const CFields& member = *frame.take();
        unsigned char written = frame.m_bArray ? 0 : frame.m_ucWritten;
        if (frame.m_bArray)
            beginElement(member);
        else
            beginField(member, written);
        const bool isOpened = startValue(member, written);
        frame.m_ucWritten = written;
        if (m_tSink.failed())
            return;
        if (isOpened)
        {
            m_tOuter.push(frame);
            frame = tFrame(member);
            continue;
        }
        bool isLast = frame.atEnd();
        endMember(member, isLast, written);
        for (; isLast; isLast = frame.atEnd())
        {
            closeContainer(frame.m_bArray ? ']' : '}');
            if (m_tOuter.empty())
                return;
            frame = m_tOuter.top();
            m_tOuter.pop();
            endMember(frame.taken(), frame.atEnd(), frame.m_ucWritten);
        }
    }
}

inline void CTextLayout::beginElement(const CFields& element)
{
    if (hasCommentToWrite(element))
        writeCommentBefore(element);
    startLine();
}

inline void CTextLayout::beginField(const CFields& field, unsigned char& written)
{
    if (hasCommentToWrite(field))
        writeCommentBefore(field);
    char* out = m_tSink.room(roomOfPrefix(field));
    if (m_bIds && tFieldAccess::id(field) != 0)
        out = writeId(startLine(out), tFieldAccess::id(field), written);
    out = startLine(out);
    if (m_bNames && !tFieldAccess::name(field).empty())
        out = writeName(out, tFieldAccess::name(field), written);
    m_tSink.take(out);
}

/// \param written  what the last member's line break depends on: of all members in a field set
inline void CTextLayout::endMember(const CFields& member, bool last, unsigned char written)
{
    if (!last)
        putChar(',');
    if (hasCommentToWrite(member))
        writeCommentsAfter(member);
    if (last && written == 0)
        putChar('\n');
}

/// \return true when the node is a container whose members are to be written now, one a line
bool CTextLayout::startValue(const CFields& node, unsigned char& written)
{
    switch (tFieldAccess::type(node))
    {
    case DT_array: return startArray(node);
    case DT_fields: return startFields(node);
    default: writeScalar(node, written); return false;
    }
}

void CTextLayout::writeScalar(const CFields& node, unsigned char& written)
{
    const char last = m_tValues.write(m_tSink, node, written);
    if (last != '\0')
        m_eLine = last == ' ' ? LINE_open : LINE_text;
}

bool CTextLayout::startFields(const CFields& node)
{
    if (memberCount(node) == 0)
    {
        putEmpty("{}");
        return false;
    }
    openContainer('{');
    return true;
}

bool CTextLayout::startArray(const CFields& node)
{
    const std::uint32_t count = memberCount(node);
    if (count == 0)
    {
        putEmpty("[]");
        return false;
    }
    if (mayStandOnOneLine(node, count))
    {
        measure(node, count);
        if (!isWholeMeasure(count))
            return false;
        if (m_bOneLine)
            writeOnOneLine(count);
        else
            writeMeasuredLines(node, count);
        return false;
    }
    openContainer('[');
    return true;
}

void CTextLayout::openContainer(char bracket)
{
    char* out = startLine(m_tSink.room(m_tIndent.room() + 1));
    *out++ = bracket;
    m_tSink.take(out);
    m_eLine = LINE_text;
    m_tIndent.indent();
}

void CTextLayout::closeContainer(char bracket)
{
    if (!m_tIndent.unindent())
    {
        m_tSaver.setUserError(s_ciRuntimeError, "[%s#%d] m_strIndentString.size(%u) < m_strIndentUnit.size(%u)",
                              m_tPlaces.m_pUnindent, __LINE__, static_cast<unsigned int>(m_tIndent.size()),
                              static_cast<unsigned int>(m_tIndent.unit()));
    }
    char* out = startLine(m_tSink.room(m_tIndent.room() + 1));
    *out++ = bracket;
    m_tSink.take(out);
    m_eLine = LINE_text;
}

/// Whether measuring the elements makes sense: few, and no container with members among them.
bool CTextLayout::mayStandOnOneLine(const CFields& array, std::uint32_t count) const
{
    if (!m_bOneLineArrays || count >= s_cuiMeasureLimit)
        return false;
    bool isPlain = true;
    forEachMember(tFieldAccess::members(array),
                  [&](const CFields& element) { isPlain = isPlain && memberCount(element) == 0; });
    return isPlain;
}

/// Writes the elements to a separate sink, as if nothing stood before them, and decides whether they fit one line.
void CTextLayout::measure(const CFields& array, std::uint32_t count)
{
    bool isCommented = false;
    std::size_t length = 2 + 2 * std::size_t{count};
    m_tMeasured.clear();
    m_uiMeasured = 0;
    forEachMember(tFieldAccess::members(array), [&](const CFields& element) {
        isCommented = isCommented || element.hasComment(CP_before) || element.hasComment(CP_trailing) ||
                      element.hasComment(CP_after);
        const std::size_t before = m_tMeasured.size();
        unsigned char written = 0;
        switch (tFieldAccess::type(element))
        {
        case DT_array: m_tMeasured.put("[]"); break;
        case DT_fields: m_tMeasured.put("{}"); break;
        default: m_tValues.write(m_tMeasured, element, written);
        }
        m_nMeasuredEnd[m_uiMeasured++] = m_tMeasured.size();
        length += m_tMeasured.size() - before;
    });
    m_bOneLine = !isCommented && length < s_cnLineLimit;
}

bool CTextLayout::isWholeMeasure(std::uint32_t count)
{
    if (m_uiMeasured == count)
        return true;
    m_tSaver.setUserError(s_ciRuntimeError, "[%s#%d] Children number mismatched(vector=%u, size=%u)",
                          m_tPlaces.m_pWriteArray, __LINE__, m_uiMeasured, count);
    return false;
}

std::string_view CTextLayout::measured(std::uint32_t index) const
{
    const std::size_t begin = index == 0 ? 0 : m_nMeasuredEnd[index - 1];
    return m_tMeasured.text().substr(begin, m_nMeasuredEnd[index] - begin);
}

void CTextLayout::writeOnOneLine(std::uint32_t count)
{
    const std::string_view separator = m_bSpacing ? ", " : ",";
    const bool isLossless = m_tValues.isLossless();
    if (isLossless) [[unlikely]]
    {
        putBlankAfterName();
        putText("[");
    }
    else
        putText("[ ");
    for (std::uint32_t i = 0; i < count; ++i)
    {
        if (i != 0)
            m_tSink.put(separator);
        m_tSink.put(measured(i));
    }
    if (isLossless) [[unlikely]]
        m_tSink.put("]");
    else
        m_tSink.put(" ]");
}

void CTextLayout::putEmpty(std::string_view brackets)
{
    putBlankAfterName();
    putText(brackets);
}

/// Brackets touch the "=" before them, except in a lossless saving. Where no name was written the line is open.
void CTextLayout::putBlankAfterName()
{
    if (m_tValues.isLossless() && m_bSpacing && m_eLine == LINE_text)
        m_tSink.put(" ");
}

/// The elements were written as if nothing had been written for them, so the last one always gets its line break.
void CTextLayout::writeMeasuredLines(const CFields& array, std::uint32_t count)
{
    openContainer('[');
    std::uint32_t i = 0;
    forEachMember(tFieldAccess::members(array), [&](const CFields& element) {
        beginElement(element);
        m_tSink.put(measured(i));
        endMember(element, ++i == count, 0);
    });
    closeContainer(']');
}

void CTextLayout::writeCommentBefore(const CFields& node)
{
    const tSideRecord* const record = tFieldAccess::sideRecord(node);
    const char* const comment = record->m_tComment[CP_before].get();
    if (comment == nullptr || *comment == '\0')
        return;
    startLine();
    std::string_view rest = comment;
    bool isInside = false;  // of a block comment, whose lines stay as they are in a lossless saving
    for (std::size_t lineEnd = rest.find('\n'); lineEnd != std::string_view::npos; lineEnd = rest.find('\n'))
    {
        const std::string_view line = rest.substr(0, lineEnd + 1);
        isInside = m_tValues.isLossless() && endsInside(line, isInside);
        putText(line);
        rest.remove_prefix(lineEnd + 1);
        if (rest.starts_with('/') && !isInside)
        {
            m_eLine = LINE_begin;
            startLine();
        }
    }
    m_tSink.put(rest);
    putChar('\n');
}

void CTextLayout::writeCommentsAfter(const CFields& node)
{
    const tSideRecord* const record = tFieldAccess::sideRecord(node);
    const char* const trailing = record->m_tComment[CP_trailing].get();
    if (trailing != nullptr && *trailing != '\0')
    {
        m_tSink.put(" ");
        putText(trailing);
        if (std::string_view(trailing).ends_with('\n'))
            m_eLine = LINE_begin;
    }
    const char* const after = record->m_tComment[CP_after].get();
    if (after != nullptr && *after != '\0')
    {
        m_tSink.put("\n");
        m_tSink.put(after);
        putChar('\n');
    }
}

void CTextLayout::putText(std::string_view text)
{
    m_tSink.put(text);
    m_eLine = LINE_text;
}

}  // namespace murv::detail

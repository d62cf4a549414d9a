// ser/saver_pkt.cpp - text on one line.
//
// There is no layout, so this is a walk and the value writer that all text savers share.
#include <string>

#include "core/member_cursor.h"
#include "core/memory/walk_stack.h"
#include "core/text/integer_text.h"
#include "core/text/quote.h"
#include "io/text_sink.h"
#include "murv/saver.h"
#include "ser/text_loss.h"
#include "ser/value_writer.h"

namespace murv
{

namespace detail
{

namespace
{

/// Serves one saving.
class CCompactText
{
public:
    CCompactText(ISaver& saver, unsigned char style, bool yaml, ITextSink& sink)
        : m_tValues(saver),
          m_tSink(sink),
          m_bIds((style & SAVE_ID) != 0),
          m_bNames((style & SAVE_NAME) != 0),
          m_bYaml(yaml)
    {
    }

    void write(const CFields& root)
    {
        writePrefix(root, '\0');
        if (tFieldAccess::isContainer(root))
            writeContainers(root);
        else
            writeScalar(root);
    }

private:
    /// A container that is open.
    struct tFrame : CMemberCursor
    {
        bool m_bArray;
        bool m_bFirst = true;  // no member was written yet

        tFrame() = default;
        explicit tFrame(const CFields& node)
            : CMemberCursor(tFieldAccess::members(node)), m_bArray(tFieldAccess::type(node) == DT_array)
        {
        }
    };

    void writeContainers(const CFields& root)
    {
        tFrame frame(root);
        putChar(frame.m_bArray ? '[' : '{');
        for (;;)
        {
            const CFields* const member = frame.take();
            if (member == nullptr)
            {
                putChar(frame.m_bArray ? ']' : '}');
                if (m_tOuter.empty())
                    return;
                frame = m_tOuter.top();
                m_tOuter.pop();
                continue;
            }
            const char separator = frame.m_bFirst ? '\0' : ',';
            frame.m_bFirst = false;
            if (!frame.m_bArray)
                writePrefix(*member, separator);
            else if (separator != '\0')
                putChar(separator);
            if (!tFieldAccess::isContainer(*member))
            {
                writeScalar(*member);
                continue;
            }
            m_tOuter.push(frame);
            frame = tFrame(*member);
            putChar(frame.m_bArray ? '[' : '{');
        }
    }

    void writeScalar(const CFields& node)
    {
        unsigned char written = 0;
        m_tValues.write(m_tSink, node, written);
    }

    void writePrefix(const CFields& node, char separator)
    {
        constexpr std::size_t othersRoom = 16;  // ",", "#", ten digits, "= "
        const std::string_view name = tFieldAccess::name(node);
        char* out = m_tSink.room(othersRoom + quotedRoom(name.size()));
        if (separator != '\0')
            *out++ = separator;
        if (m_bIds && tFieldAccess::id(node) != 0)
        {
            *out++ = '#';
            out = writeUnsigned(out, tFieldAccess::id(node));
            if (m_tValues.isLossless() && !(m_bNames && !name.empty()) && m_tValues.beginsWithDigit(node))
                *out++ = ' ';
        }
        if (m_bNames && !name.empty())
        {
            out = m_tValues.writeName(out, name);
            *out++ = '=';
            if (m_bYaml)
                *out++ = ' ';
        }
        m_tSink.take(out);
    }

    void putChar(char c)
    {
        char* const out = m_tSink.room(1);
        *out = c;
        m_tSink.take(out + 1);
    }

    CValueWriter m_tValues;
    ITextSink& m_tSink;
    bool m_bIds;
    bool m_bNames;
    bool m_bYaml;
    CWalkStack<tFrame> m_tOuter;
};

}  // namespace

}  // namespace detail

CSaver4SER_PKT::CSaver4SER_PKT() = default;

void CSaver4SER_PKT::setCompatibilityYAML(bool compatible)
{
    m_bYaml = compatible;
}

std::string CSaver4SER_PKT::saving(const CFields& root, unsigned char style, const char* /*password*/)
{
    static constexpr const char* s_cpSaving = "murv::CSaver4SER_PKT::saving";
    clearError();
    m_ucStyle = static_cast<unsigned char>(style & ~SAVE_SPACING);
    const bool isLossless = BC32_Check(SCBC_LOSSLESS);
    if (isLossless && !detail::isTextWhole(*this, s_cpSaving, root, nullptr))
        return {};
    detail::CStringSink sink(m_tResult);
    detail::CCompactText(*this, m_ucStyle, m_bYaml, sink).write(root);
    if (BC32_Check(SCBC_FINAL_NEWLINE))
        sink.put("\n");
    if (isLossless && !detail::isTextLengthHeld(*this, s_cpSaving, sink.size()))
        return {};
    return std::string(sink.text());
}

}  // namespace murv

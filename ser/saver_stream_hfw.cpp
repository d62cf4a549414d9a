// ser/saver_stream_hfw.cpp - indented text for a stream.
//
// The layout engine before a stream sink, which gives whole slices to the stream and never formats.
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>

#include "core/error_table.h"
#include "io/loss.h"
#include "io/text_sink.h"
#include "murv/saver.h"
#include "ser/text_layout.h"
#include "ser/text_loss.h"

namespace murv
{

namespace
{

/// Makes the saver idle again, also when the stream throws.
class CStreamLease
{
public:
    CStreamLease(std::ostream*& place, std::ostream& os) : m_pPlace(place)
    {
        m_pPlace = &os;
    }
    CStreamLease(const CStreamLease&) = delete;
    CStreamLease& operator=(const CStreamLease&) = delete;
    ~CStreamLease()
    {
        m_pPlace = nullptr;
    }

private:
    std::ostream*& m_pPlace;
};

}  // namespace

CStreamSaver4SER_HFW::CStreamSaver4SER_HFW(std::string indentUnit) : m_strIndentUnit(std::move(indentUnit))
{
}

void CStreamSaver4SER_HFW::saving(std::ostream& os, const CFields& root, unsigned char style, const char* /*password*/)
{
    static constexpr const char* s_cpSaving = "murv::CStreamSaver4SER_HFW::saving";
    static constexpr detail::tLayoutPlaces places = {"murv::CStreamSaver4SER_HFW::unindent",
                                                     "murv::CStreamSaver4SER_HFW::writeArrayValue"};
    clearError();
    m_ucStyle = style;
    const bool isLossless = BC32_Check(SCBC_LOSSLESS);
    const detail::CIndentation indent(m_strIndentUnit, m_strIndentUnit.size());
    if (isLossless)
    {
        std::uint64_t bound = 0;
        if (!detail::isTextWhole(*this, s_cpSaving, root, &indent, &bound))
            return;
        detail::CCountingSink counter(m_tSlice, detail::s_cnMostDocumentBytes);
        if (bound > detail::s_cnMostDocumentBytes)  // rare: nothing may be written of a text that is longer
            detail::CTextLayout(*this, places, counter, indent).write(root);
        if (!detail::isTextLengthHeld(*this, s_cpSaving, counter.size()))
            return;
    }
    const CStreamLease lease(m_pStream, os);
    detail::CStreamSink sink(m_tSlice, os);
    detail::CTextLayout(*this, places, sink, indent).write(root);
    sink.flush();
    if (sink.failed())
        setUserError(detail::s_ciRuntimeError, "[%s#%d] Output stream failed", s_cpSaving, __LINE__);
}

}  // namespace murv

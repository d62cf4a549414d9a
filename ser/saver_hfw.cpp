// ser/saver_hfw.cpp - indented text as a string.
//
// The layout engine before a string sink.
#include <string>

#include "io/text_sink.h"
#include "murv/saver.h"
#include "ser/text_layout.h"
#include "ser/text_loss.h"

namespace murv
{

namespace
{
constexpr const char* s_cpSaving = "murv::CSaver4SER_HFW::saving";
constexpr detail::tLayoutPlaces s_ctPlaces = {"murv::CSaver4SER_HFW::unindent", "murv::CSaver4SER_HFW::writeArray"};
}  // namespace

CSaver4SER_HFW::CSaver4SER_HFW(unsigned int indentWidth) : m_uiIndentWidth(indentWidth)
{
}

std::string CSaver4SER_HFW::saving(const CFields& root, unsigned char style, const char* /*password*/)
{
    clearError();
    m_ucStyle = style;
    const bool isLossless = BC32_Check(SCBC_LOSSLESS);
    const detail::CIndentation indent(" ", m_uiIndentWidth);
    if (isLossless && !detail::isTextWhole(*this, s_cpSaving, root, &indent))
        return {};
    detail::CStringSink sink(m_tResult);
    detail::CTextLayout(*this, s_ctPlaces, sink, indent).write(root);
    if (isLossless && !detail::isTextLengthHeld(*this, s_cpSaving, sink.size()))
        return {};
    return std::string(sink.text());
}

}  // namespace murv

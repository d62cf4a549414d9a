// ser/saver_hfw.cpp - indented text as a string.
//
// The layout engine before a string sink.
#include <string>

#include "io/base/text_sink.h"
#include "murv/saver.h"
#include "ser/text_layout.h"

namespace murv
{

CSaver4SER_HFW::CSaver4SER_HFW(unsigned int indentWidth) : m_uiIndentWidth(indentWidth)
{
}

std::string CSaver4SER_HFW::saving(const CFields& root, unsigned char style, const char* /*password*/)
{
    static constexpr detail::tLayoutPlaces places = {"murv::CSaver4SER_HFW::unindent",
                                                     "murv::CSaver4SER_HFW::writeArray"};
    clearError();
    m_ucStyle = style;
    detail::CStringSink sink(m_tResult);
    detail::CTextLayout(*this, places, sink, detail::CIndentation(" ", m_uiIndentWidth)).write(root);
    return std::string(sink.text());
}

}  // namespace murv

// io/line_counter.cpp - lines and columns of places in a text.
//
// A place between a carriage return and its line feed begins a line of its own; for the places after it the two are
// still one line break.
#include "io/line_counter.h"

#include <algorithm>

#include "core/text/byte_scan.h"
#include "murv/load_error.h"

namespace murv
{

namespace detail
{

int CLineCounter::line4(const char* position)
{
    while (m_pScanned < position)
    {
        m_pScanned = findLineEnd(m_pScanned, position);
        if (m_pScanned == position)
            break;
        const bool carriageReturn = *m_pScanned == '\r';
        if (carriageReturn && m_pScanned + 1 == position)
        {
            m_iColumn = 1;
            return m_iLine + 1;
        }
        m_pScanned += carriageReturn && m_pScanned[1] == '\n' ? 2 : 1;
        m_pLine = m_pScanned;
        ++m_iLine;
    }
    m_iColumn = static_cast<int>(position - m_pLine) + 1;
    return m_iLine;
}

}  // namespace detail

tDataPlace place4Offset(std::string_view text, unsigned int offset) noexcept
{
    const std::size_t reached = std::min<std::size_t>(offset, text.size());
    detail::CLineCounter counter(text.data());
    const int line = counter.line4(text.data() + reached);
    return {static_cast<unsigned int>(reached), static_cast<unsigned int>(line),
            static_cast<unsigned int>(counter.column())};
}

}  // namespace murv

// io/line_counter.cpp - lines and columns of places in a text.
//
// A place between a carriage return and its line feed begins a line of its own; for the places after it the two are
// still one line break.
#include "io/line_counter.h"

#include "core/text/byte_scan.h"

namespace murv::detail
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

}  // namespace murv::detail

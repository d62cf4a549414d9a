// io/line_counter.h - lines and columns of places in a text.
//
// The counter continues where it stopped, so that all errors of a load cost one walk over the data.
#pragma once

namespace murv::detail
{

/// Counts from 1; a line ends with a line feed, a carriage return, or both, and columns count bytes.
class CLineCounter
{
public:
    explicit CLineCounter(const char* begin) : m_pScanned(begin), m_pLine(begin)
    {
    }
    /// The line of a place; places must come in order.
    int line4(const char* position);
    /// The column of the last place.
    int column() const
    {
        return m_iColumn;
    }

private:
    const char* m_pScanned;
    const char* m_pLine;  // begin of the line that was reached
    int m_iLine = 1;
    int m_iColumn = 1;
};

}  // namespace murv::detail

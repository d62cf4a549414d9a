// ser/indentation.h - the white space at the begin of a line.
//
// Line feed and indentation are kept as one text that begins every line. It is longer than needed, so that a line
// begins with a copy of whole blocks.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

namespace murv::detail
{

class CIndentation
{
public:
    /// \param pattern  what indentation consists of; outlives this object
    /// \param unit     bytes of it that a level takes, a multiple of its length
    CIndentation(std::string_view pattern, std::size_t unit) : m_strPattern(pattern), m_nUnit(unit)
    {
    }

    void indent()
    {
        m_nSize += m_nUnit;
        if (m_nSize + s_cnBlock >= m_strLine.size())
            grow();
    }
    /// \return false, with nothing changed, when less than a level is left
    bool unindent()
    {
        if (m_nSize < m_nUnit)
            return false;
        m_nSize -= m_nUnit;
        return true;
    }
    std::size_t size() const
    {
        return m_nSize;
    }
    std::size_t unit() const
    {
        return m_nUnit;
    }
    /// Whether readers take it for blanks that mean nothing.
    bool isBlank() const
    {
        return m_strPattern.find_first_not_of(" \t") == std::string_view::npos;
    }

    /// Bytes of room that both ways of writing need.
    std::size_t room() const
    {
        return 1 + m_nSize + s_cnBlock;
    }
    /// Line feed and indentation.
    char* writeLine(char* out) const
    {
        return copy(out, m_strLine.data(), 1 + m_nSize);
    }
    char* write(char* out) const
    {
        return copy(out, m_strLine.data() + 1, m_nSize);
    }

private:
    static constexpr std::size_t s_cnBlock = 32;

    static char* copy(char* out, const char* from, std::size_t size)
    {
        std::memcpy(out, from, s_cnBlock);
        if (size > s_cnBlock)
            std::memcpy(out + s_cnBlock, from + s_cnBlock, size - s_cnBlock);
        return out + size;
    }
    void grow()
    {
        const std::size_t enough = 2 * (m_nSize + s_cnBlock);
        m_strLine.resize(1);
        while (m_strLine.size() < enough)
            m_strLine += m_strPattern;
    }

    std::string m_strLine = std::string("\n").append(s_cnBlock, ' ');  // of the deepest level so far, and more
    std::string_view m_strPattern;                                     // not owned
    std::size_t m_nUnit;
    std::size_t m_nSize = 0;
};

}  // namespace murv::detail

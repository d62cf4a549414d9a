// explorer/document.cpp - loading, and the way back from a value to the name before it.
#include "explorer/document.h"

#include <algorithm>

#include "murv/error.h"
#include "murv/loader.h"
#include "murv/syntax.h"

namespace murv::explorer
{

namespace
{
constexpr std::size_t s_cnBlock = 64;

/// Units of UTF-16 for the character that begins with a byte; 0 for the bytes after the first.
std::uint32_t unitsOf(char c)
{
    const auto byte = static_cast<unsigned char>(c);
    return (byte & 0xC0U) == 0x80U ? 0 : byte >= 0xF0U ? 2 : 1;
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

/// Goes back over what a member says before its value. Each step moves to the left, or leaves the place as it is.
class CBackwards
{
public:
    CBackwards(std::string_view text, std::size_t at) : m_strvText(text), m_nAt(at)
    {
    }
    std::size_t at() const
    {
        return m_nAt;
    }
    void blanks()
    {
        while (m_nAt > 0 && isBlank(m_strvText[m_nAt - 1]))
            --m_nAt;
    }
    bool one(char c)
    {
        const bool is = m_nAt > 0 && m_strvText[m_nAt - 1] == c;
        m_nAt -= is ? 1 : 0;
        return is;
    }
    /// What ends with one character and begins with another, on one line.
    bool between(char first, char last)
    {
        if (m_nAt == 0 || m_strvText[m_nAt - 1] != last)
            return false;
        for (std::size_t begin = m_nAt - 1; begin-- > 0 && m_strvText[begin] != '\n';)
        {
            if (m_strvText[begin] == first && !isEscaped(begin))
            {
                m_nAt = begin;
                return true;
            }
        }
        return false;
    }
    bool id()
    {
        std::size_t begin = m_nAt;
        while (begin > 0 && m_strvText[begin - 1] >= '0' && m_strvText[begin - 1] <= '9')
            --begin;
        if (begin == m_nAt || begin == 0 || m_strvText[begin - 1] != '#')
            return false;
        m_nAt = begin - 1;
        return true;
    }

private:
    bool isEscaped(std::size_t at) const
    {
        std::size_t slashes = 0;
        while (slashes < at && m_strvText[at - 1 - slashes] == '\\')
            ++slashes;
        return slashes % 2 != 0;
    }

    std::string_view m_strvText;
    std::size_t m_nAt;
};
}  // namespace

CPlaces::CPlaces(std::string_view text) : m_strvText(text)
{
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 128; };
    if (std::all_of(text.begin(), text.end(), isAscii))
        return;
    std::uint32_t units = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (i % s_cnBlock == 0)
            m_vUnits.push_back(units);
        units += unitsOf(text[i]);
    }
}

std::uint32_t CPlaces::at(std::size_t byte) const
{
    byte = std::min(byte, m_strvText.size());
    if (m_vUnits.empty())
        return static_cast<std::uint32_t>(byte);
    const std::size_t block = std::min(byte / s_cnBlock, m_vUnits.size() - 1);
    std::uint32_t units = m_vUnits[block];
    for (std::size_t i = block * s_cnBlock; i < byte; ++i)
        units += unitsOf(m_strvText[i]);
    return units;
}

void load(std::string_view text, unsigned int flags, tDocument& document)
{
    document.m_tTree = CFields();
    document.m_tPlaces = CPlaces(text);
    document.m_vErrors.clear();
    CLoader4SER loader(flags);
    std::string message;
    try
    {
        if (loader.loading(text, document.m_tTree))
            return;
        document.m_vErrors = findMistakes(text, flags);
        message = loader.getLastErrMsg();
    }
    catch (const CLogicError& error)
    {
        message = error.what();
    }
    if (document.m_vErrors.empty())
        document.m_vErrors.push_back({0, 0, 1, 1, message, {}});
}

std::size_t memberBegin(std::string_view text, const CFields& node)
{
    CBackwards back(text, static_cast<std::size_t>(node.getOffsetStart()));
    std::size_t begin = back.at();
    back.blanks();
    if (back.between('(', ')'))
    {
        begin = back.at();
        back.blanks();
    }
    if (!back.one('='))
        return begin;
    back.blanks();
    if (back.between('"', '"'))
    {
        begin = back.at();
        back.blanks();
    }
    return back.id() ? back.at() : begin;
}

}  // namespace murv::explorer

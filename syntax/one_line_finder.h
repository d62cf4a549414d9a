// syntax/one_line_finder.h - finds the containers that stay on one line when a text is laid out, and its line ends.
//
// They stand on one line in the text already, and fit one in its new layout.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "murv/syntax.h"
#include "syntax/token_spacing.h"

namespace murv::detail
{

class COneLineFinder : public ISyntaxSink
{
public:
    /// \param text, layout  live as long as this object
    COneLineFinder(const char* text, const tTextLayout& layout) : m_pLast(text), m_tLayout(layout)
    {
    }
    COneLineFinder(const char* text, const tTextLayout&& layout) = delete;
    /// One bit for each container, in the order in which they are opened.
    std::vector<bool> takeResult()
    {
        return std::move(m_vOneLine);
    }
    /// The first line end that is no part of a token, other than of comments of one line.
    /// \return a line feed when there is none
    std::string_view findLineEndOfText(const char* textEnd);
    bool hasMistake() const
    {
        return m_bMistake;
    }

    void begin() override;
    void token(E_SyntaxRole role, const tTokenInfo& token) override;
    void end() override
    {
    }
    void mistake(const tMistake&) override
    {
        m_bMistake = true;
    }

private:
    struct tOpen
    {
        std::size_t m_nIndex;   // of its bit
        std::size_t m_nColumn;  // where its bracket would stand
        std::size_t m_nPlace;   // in the text if all of it were one line
        std::size_t m_nBreaks;  // before it
        bool m_bArray;
    };

    void noteBreak(const char* begin, const char* end, bool isLineEnd);
    void open(bool isArray);
    void close();

    const char* m_pLast;  // up to here line ends were looked for
    const tTextLayout& m_tLayout;
    std::string_view m_strvLineEnd;
    std::vector<bool> m_vOneLine;
    std::vector<tOpen> m_vOpen;
    tNeighbour m_tLeft{SR_comma, false};
    std::size_t m_nPlace = 0;
    std::size_t m_nMember = 0;  // place of the present member
    std::size_t m_nBreaks = 0;
    bool m_bMistake = false;
};

}  // namespace murv::detail

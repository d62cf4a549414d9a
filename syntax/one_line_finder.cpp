// syntax/one_line_finder.cpp - measures containers as if they stood on one line.
#include "syntax/one_line_finder.h"

#include "core/text/byte_scan.h"

namespace murv::detail
{

namespace
{

/// A saver puts containers on one line that are shorter than this, wherever they begin.
constexpr std::size_t s_cnShort = 74;

}  // namespace

void COneLineFinder::begin()
{
    m_nMember = m_nPlace;
}

void COneLineFinder::token(E_SyntaxRole role, const tTokenInfo& token)
{
    const bool isFields = token.m_eType == TT_fieldsBegin || token.m_eType == TT_fieldsEnd;
    const tNeighbour right{role, isFields};
    noteBreak(m_pLast, token.m_pBegin, true);
    m_nPlace += hasBlankBetween(m_tLeft, right) ? 1 : 0;
    if (role == SR_open)
        open(!isFields);
    m_nPlace += textWithoutLineEnd(token).size();
    noteBreak(token.m_pBegin, token.m_pEnd, isLineComment(token));
    if (role == SR_close)
        close();
    m_pLast = token.m_pEnd;
    m_tLeft = right;
}

void COneLineFinder::noteBreak(const char* begin, const char* end, bool isLineEnd)
{
    const char* const stop = findLineEnd(begin, end);
    if (stop == end)
        return;
    ++m_nBreaks;
    const bool isPair = *stop == '\r' && stop + 1 != end && stop[1] == '\n';
    if (isLineEnd && m_strvLineEnd.empty())
        m_strvLineEnd = {stop, isPair ? std::size_t{2} : std::size_t{1}};
}

std::string_view COneLineFinder::findLineEndOfText(const char* textEnd)
{
    noteBreak(m_pLast, textEnd, true);
    return m_strvLineEnd.empty() ? "\n" : m_strvLineEnd;
}

void COneLineFinder::open(bool isArray)
{
    const std::size_t column = m_vOpen.size() * m_tLayout.m_strIndent.size() + m_nPlace - m_nMember;
    m_vOpen.push_back({m_vOneLine.size(), column, m_nPlace, m_nBreaks, isArray});
    m_vOneLine.push_back(false);
}

void COneLineFinder::close()
{
    const tOpen open = m_vOpen.back();
    m_vOpen.pop_back();
    if (m_tLeft.m_eRole == SR_open)  // an empty one
    {
        m_vOneLine[open.m_nIndex] = true;
        return;
    }
    if (open.m_bArray && !m_tLayout.m_bOneLineArrays)
        ++m_nBreaks;  // so what is around it takes several lines, too
    const std::size_t length = m_nPlace - open.m_nPlace;
    const bool isWhole = m_vOpen.empty() && !open.m_bArray;  // the members of a document stand on lines of their own
    const bool fits = length < s_cnShort || open.m_nColumn + length < m_tLayout.m_uiWidth;
    m_vOneLine[open.m_nIndex] = !isWhole && fits && open.m_nBreaks == m_nBreaks;
}

}  // namespace murv::detail

// syntax/text_formatter.cpp - what stands between two tokens of a text that is laid out.
#include "syntax/text_formatter.h"

#include "core/text/byte_scan.h"

namespace murv::detail
{

namespace
{

constexpr std::size_t s_cnPiece = 16384;

/// A packet expression without blanks and remark.
std::string bareExpression(const tTokenInfo& token)
{
    const char* begin = token.m_pBegin + 1;
    std::string_view text;
    takePeiText(begin, token.m_pEnd, text);
    return '(' + std::string(text) + ')';
}

}  // namespace

CTextFormatter::CTextFormatter(std::string_view text, const tTextLayout& layout, std::vector<bool> oneLine,
                               std::string_view lineEnd, const tReceive& receive)
    : m_pTextEnd(text.data() + text.size()),
      m_tLayout(layout),
      m_tReceive(receive),
      m_vOneLine(std::move(oneLine)),
      m_strvLineEnd(lineEnd),
      m_pLeftEnd(text.data())
{
}

void CTextFormatter::begin()
{
    m_bMemberBegins = true;
    if (!m_vHeads.back().m_bFields)
        m_vHeads.back() = {};
}

void CTextFormatter::token(E_SyntaxRole role, const tTokenInfo& token)
{
    if (m_tLayout.m_bCompact && role == SR_comment)
        return;
    countGapLines(token.m_pBegin);
    const tNeighbour right{role, token.m_eType == TT_fieldsBegin || token.m_eType == TT_fieldsEnd};
    const bool opensInline = role == SR_open && (m_nInline != 0 || m_vOneLine[m_nContainers]);
    if (role == SR_close && m_nInline == 0)
        --m_nLevel;
    putBetween(between(right, token, opensInline));
    if (isDoubleBlank(role))
        put(" ");
    noteHead(right);
    if (role == SR_open)
    {
        ++m_nContainers;
        ++(opensInline ? m_nInline : m_nLevel);
    }
    else if (role == SR_close && m_nInline != 0)
        --m_nInline;
    if (role == SR_expression && m_tLayout.m_bCompact)
        put(bareExpression(token));
    else
        put(textWithoutLineEnd(token));
    m_bMemberBegins = m_bMemberBegins && role == SR_comment;
    m_bAfterLine = isLineComment(token);
    m_pLeftEnd = token.m_pEnd;
    m_tLeft = right;
    m_bStarted = true;
}

/// Notes what stands before values, as isDoubleBlank wants to know it.
void CTextFormatter::noteHead(const tNeighbour& token)
{
    switch (token.m_eRole)
    {
    case SR_id:
    case SR_name: m_vHeads.back().m_bNamed = true; break;
    case SR_expression: m_vHeads.back().m_bExpressed = true; break;
    case SR_open: m_vHeads.push_back({token.m_bFields}); break;
    case SR_close: m_vHeads.pop_back(); break;
    default: break;
    }
}

/// Savers put a blank before a value without a name, too, once any member of its field set has a name, ID or
/// expression. What they wrote is not to change.
bool CTextFormatter::isDoubleBlank(E_SyntaxRole role) const
{
    if (m_nInline != 0 || m_tLayout.m_bCompact || !(m_bMemberBegins || m_tLeft.m_eRole == SR_id))
        return false;
    const tHeads& heads = m_vHeads.back();
    return role == SR_scalar ? heads.m_bNamed || heads.m_bExpressed : role == SR_expression && heads.m_bNamed;
}

/// Counts line ends from the last token on. That of a comment is in its token.
void CTextFormatter::countGapLines(const char* end)
{
    m_nGapLines = m_bAfterLine ? 1 : 0;
    for (const char* at = findLineEnd(m_pLeftEnd, end); at != end; at = findLineEnd(at, end))
    {
        const bool isPair = *at == '\r' && at + 1 != end && at[1] == '\n';
        at += isPair ? 2 : 1;
        ++m_nGapLines;
    }
}

CTextFormatter::E_Between CTextFormatter::between(const tNeighbour& right, const tTokenInfo& token,
                                                  bool opensInline) const
{
    if (!m_bStarted)
        return BW_nothing;
    if (right.m_eRole == SR_rest)
        return m_nGapLines == 0 ? BW_blank : lineAfterGap();
    if (m_tLayout.m_bCompact)
    {
        const bool isRun = m_tLeft.m_eRole == SR_id && token.m_eType == TT_number && *token.m_pBegin != '-';
        return isRun ? BW_blank : BW_nothing;
    }
    if (m_nInline != 0)
        return hasBlankBetween(m_tLeft, right) ? BW_blank : BW_nothing;
    return betweenOnLines(right, token, opensInline);
}

CTextFormatter::E_Between CTextFormatter::betweenOnLines(const tNeighbour& right, const tTokenInfo& token,
                                                         bool opensInline) const
{
    if (right.m_eRole == SR_comment)
        return beforeComment(token);
    if (m_bMemberBegins && right.m_eRole != SR_close)
        return beforeMember(right);
    const bool isOpening = right.m_eRole == SR_open && !opensInline && !m_bOpensOnLine && m_tLeft.m_eRole != SR_id;
    const bool isClosing = right.m_eRole == SR_close && m_tLeft.m_eRole != SR_open;
    if (m_bAfterLine || isOpening || isClosing)
        return BW_line;
    return hasBlankBetween(m_tLeft, right) ? BW_blank : BW_nothing;
}

/// A comment stays on the line of what it follows, or begins the line of what follows it.
CTextFormatter::E_Between CTextFormatter::beforeComment(const tTokenInfo& comment) const
{
    if (m_nGapLines != 0)
        return lineAfterGap();
    if (m_tLeft.m_eRole == SR_comment && m_pLeftEnd == comment.m_pBegin)
        return BW_nothing;  // as savers write comments that were loaded so
    return leadsMember(comment) ? BW_line : BW_blank;
}

CTextFormatter::E_Between CTextFormatter::beforeMember(const tNeighbour& right) const
{
    const bool follows = m_tLeft.m_eRole == SR_comment && m_nGapLines == 0;
    if (follows && right.m_eRole != SR_comma)
        return BW_blank;
    return follows ? BW_nothing : lineAfterGap();
}

/// A new line; after an empty one when there is one in the text, but not at the beginning of a container.
CTextFormatter::E_Between CTextFormatter::lineAfterGap() const
{
    return m_nGapLines > 1 && m_tLeft.m_eRole != SR_open ? BW_emptyLine : BW_line;
}

/// Whether a comment after a comma or an opening bracket belongs to what comes next on its line.
bool CTextFormatter::leadsMember(const tTokenInfo& comment) const
{
    if ((m_tLeft.m_eRole != SR_comma && m_tLeft.m_eRole != SR_open) || isLineComment(comment))
        return false;
    const char* next = comment.m_pEnd;
    while (next != m_pTextEnd && (*next == ' ' || *next == '\t'))
        ++next;
    const std::string_view rest(next, static_cast<std::size_t>(m_pTextEnd - next));
    return !rest.empty() && std::string_view("\r\n}]").find(rest[0]) == std::string_view::npos &&
           !rest.starts_with("//");
}

void CTextFormatter::putBetween(E_Between between)
{
    if (between == BW_blank)
        put(" ");
    if (between == BW_emptyLine)
        put(m_strvLineEnd);
    if (between < BW_line)
        return;
    put(m_strvLineEnd);
    put(m_strvBase);
    for (std::size_t level = 0; level != m_nLevel; ++level)
        put(m_tLayout.m_strIndent);
}

void CTextFormatter::put(std::string_view text)
{
    m_strOut += text;
    if (m_strOut.size() < s_cnPiece)
        return;
    m_tReceive(m_strOut);
    m_strOut.clear();
}

void CTextFormatter::setPlace(const tMemberLayout& place)
{
    m_strvBase = place.m_strIndent;
    m_bOpensOnLine = place.m_bOpensOnLine;
    m_nInline = place.m_bInline || place.m_bOneLine ? 1 : 0;
}

void CTextFormatter::finishMember()
{
    if (!m_strOut.empty())
        m_tReceive(m_strOut);
}

void CTextFormatter::finish()
{
    const bool endsLine =
        m_pLeftEnd == m_pTextEnd && m_tLeft.m_eRole == SR_rest && (m_pTextEnd[-1] == '\n' || m_pTextEnd[-1] == '\r');
    if (m_tLayout.m_bFinalNewline && !endsLine)
        put(m_strvLineEnd);
    finishMember();
}

}  // namespace murv::detail

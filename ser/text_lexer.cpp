// ser/text_lexer.cpp - tokens, comments, places and error records.

#include "ser/text_lexer.h"

#include <algorithm>
#include <cstring>

#include "core/text/byte_scan.h"
#include "murv/text.h"

namespace murv::detail
{

CTextParser::CTextParser(tLoad& load)
    : m_tLoad(load),
      m_pBegin(load.m_pDataBegin),
      m_pEnd(load.m_pDataEnd),
      m_pCursor(load.m_pDataBegin),
      m_bTolerant(load.has(LCBC_COMMENT)),
      m_bEmptyNull(load.has(LCBC_EMPTY_NULL)),
      m_bLossless(load.has(LCBC_LOSSLESS)),
      m_bComments(load.m_bComments),
      m_pLineChecked(load.m_pDataBegin)
{
}

bool CTextParser::loadComment()
{
    const char* const begin = m_pCursor - 1;
    if (m_pCursor == m_pEnd)
        return false;
    const char second = *m_pCursor++;
    if (second != '/' && second != '*')
        return false;
    if (!(second == '/' ? loadCppStyleComment() : loadCStyleComment()))
        return false;
    if (m_bComments)
        addComment(begin, m_pCursor, position4Comment(begin));
    return true;
}

bool CTextParser::loadCStyleComment()
{
    for (;;)
    {
        const auto left = static_cast<std::size_t>(m_pEnd - m_pCursor);
        const void* const star = left == 0 ? nullptr : std::memchr(m_pCursor, '*', left);
        if (star == nullptr)
        {
            m_pCursor = m_pEnd;
            return false;
        }
        m_pCursor = static_cast<const char*>(star) + 1;
        if (m_pCursor != m_pEnd && *m_pCursor == '/')
        {
            ++m_pCursor;
            return true;
        }
    }
}

bool CTextParser::loadCppStyleComment()
{
    m_pCursor = findLineEnd(m_pCursor, m_pEnd);
    if (m_pCursor == m_pEnd)
        return true;
    const bool pair = *m_pCursor == '\r' && m_pCursor + 1 != m_pEnd && m_pCursor[1] == '\n';
    m_pCursor += pair ? 2 : 1;
    return true;
}

// A comment on the line of the last value belongs to that value, unless it is a block comment of several lines.
E_CommentPosition CTextParser::position4Comment(const char* begin)
{
    const char* const valueEnd = m_tLoad.m_pLastValueEnd;
    if (valueEnd == nullptr)
        return CP_before;
    // What was looked at for an earlier comment on this line is not looked at again.
    const char* const from = m_pLineChecked > valueEnd ? m_pLineChecked : valueEnd;
    if (from < begin)
    {
        const char* const lineEnd = findLineEnd(from, begin);
        m_pLineChecked = lineEnd;
        if (lineEnd != begin)
            return CP_before;
    }
    const bool block = begin[1] == '*';
    return block && findLineEnd(begin, m_pCursor) != m_pCursor ? CP_before : CP_trailing;
}

void CTextParser::addComment(const char* begin, const char* end, E_CommentPosition position)
{
    std::string own;
    std::string& text = position == CP_trailing ? own : m_strComment;
    const std::size_t length = text.size();
    if (length != 0 && text.back() != '\n')
        m_vCommentSeam.push_back(length);
    while (begin != end)
    {
        const char* const lineEnd = findLineEnd(begin, end);
        text.append(begin, lineEnd);
        if (lineEnd == end)
            break;
        text += '\n';
        begin = lineEnd + (*lineEnd == '\r' && lineEnd + 1 != end && lineEnd[1] == '\n' ? 2 : 1);
    }
    // A comment's text ends at a byte of zero: without its end it would swallow what is saved behind it.
    std::replace(text.begin() + static_cast<std::ptrdiff_t>(length), text.end(), '\0', ' ');
    if (position == CP_trailing)
        m_tLoad.m_pLastValueNode->setComment(own, CP_trailing);
}

// Every comment begins a line, as a saver writes them, so that the text is the same when it is loaded again.
void CTextParser::giveComments(CFields& node, bool more)
{
    std::string& pending = m_strComment;
    if (more || !m_vCommentSeam.empty())
    {
        std::string text = more ? node.getCommentCopy(CP_before) + '\n' : std::string();
        std::size_t taken = 0;
        for (const std::size_t seam : m_vCommentSeam)
        {
            text.append(pending, taken, seam - taken) += '\n';
            taken = seam;
        }
        pending.replace(0, taken, text);
        m_vCommentSeam.clear();
    }
    node.setComment(pending, CP_before);
    pending.clear();
}

bool CTextParser::matchMove(std::string_view text)
{
    if (static_cast<std::size_t>(m_pEnd - m_pCursor) < text.size() ||
        std::memcmp(m_pCursor, text.data(), text.size()) != 0)
        return false;
    m_pCursor += text.size();
    return true;
}

unsigned int CTextParser::extractID(const tTokenInfo& token) const
{
    const char* const digits = token.m_pBegin + 1;
    unsigned long long id = 0;
    aton64(digits, static_cast<unsigned int>(token.m_pEnd - digits), id);
    return id > static_cast<unsigned int>(CFields::maxSint32) ? 0 : static_cast<unsigned int>(id);
}

bool CTextParser::addError(const char* message, const tTokenInfo& token, const char* second)
{
    std::optional<std::ptrdiff_t> secondOffset;
    if (second != nullptr)
        secondOffset = second - m_pBegin;
    return m_tLoad.addError(message, token.m_pBegin - m_pBegin, token.m_pEnd - m_pBegin, secondOffset);
}

bool CTextParser::addErrorAndRecover(const char* message, const tTokenInfo& token, E_TokenType until)
{
    addError(message, token);
    return recover4Error(until);
}

bool CTextParser::recover4Error(E_TokenType until)
{
    // Of what is skipped, only comments are kept.
    const std::size_t records = m_tLoad.m_tErrors.count();
    m_bPeiAllowed = false;
    tTokenInfo token;
    do
        loadToken(token);
    while (token.m_eType != until && token.m_eType != TT_end);
    m_tLoad.m_tErrors.cutTo(records);
    return false;
}

}  // namespace murv::detail

// ser/text_comments.cpp - comments in text, and the nodes that they are given to.
//
// A comment on the line of a value goes to that value; any other waits for the next node, or for the document's end.

#include <algorithm>
#include <cstring>

#include "core/text/byte_scan.h"
#include "ser/text_parser.h"
#include "ser/token_text.h"

namespace murv::detail
{

// `p` is the byte after the first "/".
bool CTextParser::loadComment(const char*& p)
{
    const char* const begin = p - 1;
    if (!takeComment(p, m_pEnd))
        return false;
    if (m_bComments)
        addComment(begin, p, position4Comment(begin, p));
    return true;
}

// A comment on the line of the last value belongs to that value, unless it is a block comment of several lines.
E_CommentPosition CTextParser::position4Comment(const char* begin, const char* end)
{
    const char* const valueEnd = m_tLoad.m_pLastValueEnd;
    if (valueEnd == nullptr)
        return CP_before;
    // Bytes that an earlier comment on this line was checked up to hold no line end.
    const char* const from = m_pLineChecked > valueEnd ? m_pLineChecked : valueEnd;
    if (from < begin)
    {
        const char* const lineEnd = findLineEnd(from, begin);
        m_pLineChecked = lineEnd;
        if (lineEnd != begin)
            return CP_before;
    }
    const bool block = begin[1] == '*';
    return block && findLineEnd(begin, end) != end ? CP_before : CP_trailing;
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
    // A comment's text ends at a byte of zero: without its end it would swallow what is saved after it.
    std::replace(text.begin() + static_cast<std::ptrdiff_t>(length), text.end(), '\0', ' ');
    if (position == CP_trailing)
        m_tLoad.m_pLastValueNode->setComment(own, CP_trailing);
}

// Every comment begins a line, as a saver writes them, so that the text is the same when it is loaded again.
void CTextParser::giveComments(CFields& node, bool more)
{
    if (more || !m_vCommentSeam.empty())
    {
        std::string text = more ? node.getCommentCopy(CP_before) + '\n' : std::string();
        std::size_t taken = 0;
        for (const std::size_t seam : m_vCommentSeam)
        {
            text.append(m_strComment, taken, seam - taken) += '\n';
            taken = seam;
        }
        m_strComment.replace(0, taken, text);
        m_vCommentSeam.clear();
    }
    node.setComment(m_strComment, CP_before);
    m_strComment.clear();
}

}  // namespace murv::detail

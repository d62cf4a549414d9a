// core/field_comment.cpp - comments around a node.

#include <cstring>

#include "core/field_access.h"
#include "murv/fields.h"

namespace murv
{

using detail::tFieldAccess;

void CFields::setComment(const char* text, unsigned int len, E_CommentPosition pos)
{
    detail::tSideRecord& record = tFieldAccess::makeSideRecord(*this);
    record.m_bComment = true;
    if (text != nullptr && len > 0 && text[len - 1] == '\n')
        --len;
    record.m_tComment[pos].setComment(text, len);
}

void CFields::setComment(const char* text, E_CommentPosition pos)
{
    setComment(text, text == nullptr ? 0 : static_cast<unsigned int>(strnlen(text, maxSint32)), pos);
}

void CFields::setComment(const std::string& text, E_CommentPosition pos)
{
    setComment(std::string_view(text), pos);
}

void CFields::setComment(std::string_view text, E_CommentPosition pos)
{
    const std::size_t length = text.size() > maxSint32 ? maxSint32 : text.size();
    setComment(text.data() == nullptr ? "" : text.data(), static_cast<unsigned int>(length), pos);
}

std::string CFields::getCommentCopy(E_CommentPosition pos) const
{
    const char* const text = getCommentPtr(pos);
    return text == nullptr ? std::string() : std::string(text);
}

const char* CFields::getCommentPtr(E_CommentPosition pos) const
{
    const detail::tSideRecord* const record = tFieldAccess::sideRecord(*this);
    return record == nullptr ? nullptr : record->m_tComment[pos].get();
}

unsigned int CFields::getCommentLen(E_CommentPosition pos) const
{
    const char* const text = getCommentPtr(pos);
    return text == nullptr ? 0 : static_cast<unsigned int>(std::strlen(text));
}

bool CFields::hasComment(E_CommentPosition pos) const
{
    return getCommentPtr(pos) != nullptr;
}

bool CFields::isComment() const
{
    const detail::tSideRecord* const record = tFieldAccess::sideRecord(*this);
    return record != nullptr && record->m_bComment;
}

void CFields::setOffsetStart(int offset)
{
    m_iOffsetStart = offset;
}

int CFields::getOffsetStart() const
{
    return m_iOffsetStart;
}

void CFields::setOffsetEnd(int offset)
{
    m_iOffsetEnd = offset;
}

int CFields::getOffsetEnd() const
{
    return m_iOffsetEnd;
}

}  // namespace murv

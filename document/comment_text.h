// document/comment_text.h - comments and blanks between tokens.
#pragma once

#include <string>
#include <string_view>

namespace murv::detail
{

/// Blanks and comments, cut in two at their last empty line.
struct tCutBlanks
{
    std::string_view m_strvDetached;  // with the line end before the empty line
    std::string_view m_strvAttached;  // begins with a line end, if anything is detached
    bool m_bDetachedComment = false;  // a comment is in the detached part
    bool m_bComment = false;          // in any part
};

/// \param text  of blanks and comments only
tCutBlanks cutBlanks(std::string_view text);

/// The line that begins last in blanks and comments.
struct tLineBegin
{
    bool m_bThere = false;
    std::string_view m_strvIndentation;
};
/// Lines inside block comments do not count. \param text  may go on after the blanks and comments
tLineBegin lastLineIn(std::string_view text);

/// The line end that comes first in blanks and comments, not counting those inside block comments; empty when there is
/// none. \param text  may go on after the blanks and comments
std::string_view firstLineEndIn(std::string_view text);

/// A text from its first byte on that is no blank or tab.
std::string_view withoutBlanks(std::string_view text);

/// What stands after a comma, and before it. \param text  blanks and comments with at most one comma among them
struct tCutComma
{
    std::string_view m_strvBefore;
    std::string_view m_strvAfter;
    bool m_bComma;
};
tCutComma cutComma(std::string_view text);

/// Whether what follows must begin with a line end.
bool endsInLineComment(std::string_view text);

/// Whether a text that shares its line with others cannot: a comment ends a line, or holds one.
bool hasCommentOfLine(std::string_view text);

}  // namespace murv::detail

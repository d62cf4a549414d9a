// tools/source_text.h - excerpts and comments of a text document.
//
// As in the library's own messages, a line ends with a line feed, a carriage return, or both.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace murv::tool
{

/// A range of bytes.
struct tRange
{
    std::size_t m_nBegin;
    std::size_t m_nEnd;
};

/// What is printed to point at a place: one line of the source and, below it, the marks.
struct tExcerpt
{
    std::string m_strLine;
    std::string m_strMarks;
};

/// The line in which the range begins, with "^" at its begin and "~" up to its end.
///
/// Tabs stay tabs in both lines, and a character of several bytes counts once, so that the marks are below what they
/// mark. What a terminal would act on is shown as "?". A long line is cut around the place.
tExcerpt excerpt4Range(std::string_view text, tRange range);

/// A comment, or a remark in a packet expression.
struct tFoundComment
{
    tRange m_tRange;
    bool m_bRemark;
};

/// The comments of a document that has been loaded, and the remarks in its packet expressions, in order.
std::vector<tFoundComment> findComments(std::string_view text);

/// The number of comments in a text that holds nothing else.
std::size_t countComments(std::string_view text);

/// Skips blanks and comments.
/// \return the offset of what follows them; the size of the text when nothing does
std::size_t skipComments(std::string_view text, std::size_t offset);

}  // namespace murv::tool

// tools/source_text.cpp - cuts excerpts, and finds comments without taking strings for them.
#include "tools/source_text.h"

#include <algorithm>

#include "tools/utf8.h"

namespace murv::tool
{

namespace
{
constexpr std::size_t s_cnCellsBefore = 64;  // shown before the place
constexpr std::size_t s_cnCellsShown = 100;  // shown in all
constexpr std::size_t s_cnBytesAround = 4 * s_cnCellsShown;
constexpr std::string_view s_csvCut = "...";
constexpr std::string_view s_csvBlanks = " \t\r\n";

std::size_t findBreak(std::string_view text, std::size_t offset)
{
    return std::min(text.find_first_of("\r\n", offset), text.size());
}

/// The part of a line that may be shown around a place.
struct tLinePart
{
    tRange m_tRange;
    bool m_bCutBefore;  // the line begins earlier
    bool m_bCutAfter;   // the line ends later
};

/// Looks no further than what may be shown: a document may be one line of many megabytes.
tLinePart linePartAround(std::string_view text, std::size_t place)
{
    const std::size_t first = place - std::min(place, s_cnBytesAround + 1);  // one more may be the line break
    const std::size_t last = std::min(text.size(), place + s_cnBytesAround);
    const std::size_t breakBefore = text.substr(first, place - first).find_last_of("\r\n");
    const std::size_t lineEnd = findBreak(text.substr(0, last), place);
    tLinePart part{{first, lineEnd}, false, lineEnd == last && last < text.size()};
    if (breakBefore != std::string_view::npos)
        part.m_tRange.m_nBegin += breakBefore + 1;
    else
        part.m_bCutBefore = first != 0;
    while (part.m_bCutBefore && part.m_tRange.m_nBegin < place && isUtf8Inside(text[part.m_tRange.m_nBegin]))
        ++part.m_tRange.m_nBegin;
    return part;
}

/// One column of what is shown.
struct tCell
{
    std::size_t m_nOffset;
    std::string_view m_svShown;
};

std::vector<tCell> cells4Line(std::string_view text, tRange line)
{
    std::vector<tCell> cells;
    for (std::size_t at = line.m_nBegin; at < line.m_nEnd;)
    {
        const std::string_view rest = text.substr(at, line.m_nEnd - at);
        const std::size_t length = utf8Length(rest);
        const bool shown = length != 0 && (rest[0] == '\t' || !isControl(codePoint(rest.substr(0, length))));
        cells.push_back({at, shown ? rest.substr(0, length) : std::string_view("?")});
        at += length == 0 ? 1 : length;
    }
    return cells;
}

std::size_t endOfComment(std::string_view text, std::size_t begin)
{
    if (text[begin + 1] == '*')
    {
        const std::size_t end = text.find("*/", begin + 2);
        return end == std::string_view::npos ? text.size() : end + 2;
    }
    return findBreak(text, begin + 2);
}

bool beginsComment(std::string_view text, std::size_t at)
{
    return text[at] == '/' && at + 1 < text.size() && (text[at + 1] == '/' || text[at + 1] == '*');
}

std::size_t endOfString(std::string_view text, std::size_t begin)
{
    for (std::size_t at = begin + 1; at < text.size(); ++at)
    {
        if (text[at] == '\\')
            ++at;
        else if (text[at] == '"')
            return at + 1;
    }
    return text.size();
}

/// The remark in the packet expression that begins at `begin`; empty when there is none.
tRange remark4Expression(std::string_view text, std::size_t begin, std::size_t end)
{
    const std::size_t code = text.find_first_not_of(s_csvBlanks, begin + 1);
    const std::size_t blank = std::min(text.find_first_of(s_csvBlanks, code), end);
    const std::size_t remark = std::min(text.find_first_not_of(s_csvBlanks, blank), end);
    return {remark, end};
}
}  // namespace

tExcerpt excerpt4Range(std::string_view text, tRange range)
{
    const std::size_t begin = std::min(range.m_nBegin, text.size());
    const tLinePart line = linePartAround(text, begin);
    const std::vector<tCell> cells = cells4Line(text, line.m_tRange);
    std::size_t place = 0;
    while (place + 1 < cells.size() && cells[place + 1].m_nOffset <= begin)
        ++place;
    if (!cells.empty() && begin >= line.m_tRange.m_nEnd)
        place = cells.size();
    const std::size_t first = place > s_cnCellsBefore ? place - s_cnCellsBefore : 0;
    const std::size_t last = std::min(cells.size(), first + s_cnCellsShown);

    tExcerpt excerpt;
    const auto put = [&excerpt](std::string_view shown, char mark) {
        excerpt.m_strLine += shown;
        excerpt.m_strMarks += mark == ' ' && shown == "\t" ? '\t' : mark;
    };
    if (first != 0 || line.m_bCutBefore)
    {
        excerpt.m_strLine += s_csvCut;
        excerpt.m_strMarks.append(s_csvCut.size(), ' ');
    }
    for (std::size_t i = first; i < last; ++i)
        put(cells[i].m_svShown, i < place ? ' ' : i == place ? '^' : cells[i].m_nOffset < range.m_nEnd ? '~' : ' ');
    if (place >= last)
        excerpt.m_strMarks += '^';
    if (last != cells.size() || line.m_bCutAfter)
        excerpt.m_strLine += s_csvCut;
    excerpt.m_strMarks.erase(excerpt.m_strMarks.find_last_of("^~") + 1);
    return excerpt;
}

std::vector<tFoundComment> findComments(std::string_view text)
{
    std::vector<tFoundComment> found;
    if (text.find_first_of("/(") == std::string_view::npos)
        return found;
    for (std::size_t at = 0; (at = text.find_first_of("\"/(", at)) != std::string_view::npos;)
    {
        if (text[at] == '"')
        {
            at = endOfString(text, at);
        }
        else if (text[at] == '(')
        {
            const std::size_t end = std::min(text.find(')', at), text.size());
            const tRange remark = remark4Expression(text, at, end);
            if (remark.m_nBegin < remark.m_nEnd)
                found.push_back({remark, true});
            at = end;
        }
        else if (beginsComment(text, at))
        {
            const std::size_t end = endOfComment(text, at);
            found.push_back({{at, end}, false});
            at = end;
        }
        else
        {
            ++at;
        }
    }
    return found;
}

std::size_t countComments(std::string_view text)
{
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find('/', at)) != std::string_view::npos;)
    {
        const bool comment = beginsComment(text, at);
        count += comment ? 1 : 0;
        at = comment ? endOfComment(text, at) : at + 1;
    }
    return count;
}

std::size_t skipComments(std::string_view text, std::size_t offset)
{
    for (;;)
    {
        offset = std::min(text.find_first_not_of(s_csvBlanks, offset), text.size());
        if (offset == text.size() || !beginsComment(text, offset))
            return offset;
        offset = endOfComment(text, offset);
    }
}

}  // namespace murv::tool

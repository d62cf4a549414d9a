// syntax/format_text.cpp - lays a text out in two readings: one finds what fits a line, one writes.
#include "syntax/null_remover.h"
#include "syntax/one_line_finder.h"
#include "syntax/text_formatter.h"

namespace murv
{

using namespace detail;

bool formatText(std::string_view text, unsigned int config, const tTextLayout& layout,
                const std::function<void(std::string_view)>& receive)
{
    COneLineFinder finder(text.data(), layout);
    CGrammarReader(text, config, finder).read();
    if (finder.hasMistake())
        return false;
    const std::string_view lineEnd = finder.findLineEndOfText(text.data() + text.size());
    CTextFormatter formatter(text, layout, finder.takeResult(), lineEnd, receive);
    if (layout.m_bNullWord)
        CGrammarReader(text, config, formatter).read();
    else
    {
        CNullRemover remover(formatter, !layout.m_bCompact);
        CGrammarReader(text, config, remover).read();
        remover.finish();
    }
    formatter.finish();
    return true;
}

std::optional<std::string> formatText(std::string_view text, unsigned int config, const tTextLayout& layout)
{
    std::string result;
    if (!formatText(text, config, layout, [&result](std::string_view piece) { result += piece; }))
        return std::nullopt;
    return result;
}

std::string detail::formatMember(std::string_view text, unsigned int config, const tMemberLayout& place)
{
    std::string result;
    tTextLayout layout;
    layout.m_strIndent = place.m_strUnit;
    COneLineFinder finder(text.data(), layout);
    CGrammarReader(text, config, finder).read();
    const CTextFormatter::tReceive receive = [&result](std::string_view piece) { result += piece; };
    CTextFormatter formatter(text, layout, finder.takeResult(), place.m_strvLineEnd, receive);
    formatter.setPlace(place);
    CGrammarReader(text, config, formatter).read();
    formatter.finishMember();
    return result;
}

}  // namespace murv

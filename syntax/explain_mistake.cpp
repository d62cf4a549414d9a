// syntax/explain_mistake.cpp - what to write instead, for mistakes that many make.
#include <algorithm>

#include "io/load_messages.h"
#include "murv/syntax.h"
#include "ser/text_messages.h"
#include "syntax/token_scanner.h"

namespace murv
{

namespace
{

using namespace detail;

bool isWordByte(char byte)
{
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') || byte == '_';
}

/// A mistake and the text around it.
struct tContext
{
    std::string_view m_strvText;
    const tErrorPlace& m_tMistake;

    std::string_view rest() const
    {
        return m_strvText.substr(m_tMistake.m_uiStart);
    }
    bool beginsWord() const
    {
        const std::string_view here = rest();
        return !here.empty() && isWordByte(here[0]);
    }
};

/// Nothing but blanks and comments.
bool isEmpty(const tContext& at)
{
    if (!at.rest().empty())
        return false;
    CTokenScanner scanner(at.m_strvText);
    tTokenInfo token{};
    do
        token = scanner.next();
    while (token.m_eType == TT_comment);
    return token.m_eType == TT_end;
}

bool isMarkedUtf8(const tContext& at)
{
    return at.m_tMistake.m_uiStart == 0 && at.m_strvText.starts_with("\xEF\xBB\xBF");
}

/// With its mark, or two characters of ASCII without.
bool isUtf16(const tContext& at)
{
    const std::string_view text = at.m_strvText;
    if (at.m_tMistake.m_uiStart > 1)
        return false;
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
        return true;
    if (text.size() < 4)
        return false;
    const bool isLittle = text[0] != 0 && text[1] == 0 && text[2] != 0 && text[3] == 0;
    const bool isBig = text[0] == 0 && text[1] != 0 && text[2] == 0 && text[3] != 0;
    return isLittle || isBig;
}

/// After what may be a name; elements have none.
bool isColon(const tContext& at)
{
    if (!at.rest().starts_with(':') || at.m_tMistake.m_strMessage == s_cpNoArrayEnd)
        return false;
    const std::size_t last = at.m_strvText.substr(0, at.m_tMistake.m_uiStart).find_last_not_of(" \t\r\n");
    return last != std::string_view::npos && (at.m_strvText[last] == '"' || isWordByte(at.m_strvText[last]));
}

/// An ID has a digit there.
bool isHashComment(const tContext& at)
{
    const std::string_view rest = at.rest();
    return rest.starts_with('#') && (rest.size() == 1 || rest[1] < '0' || rest[1] > '9');
}

bool isSingleQuote(const tContext& at)
{
    return at.rest().starts_with('\'');
}

bool isTypographicQuote(const tContext& at)
{
    constexpr std::string_view quotes[] = {"\xE2\x80\x98", "\xE2\x80\x99", "\xE2\x80\x9C", "\xE2\x80\x9D",
                                           "\xE2\x80\x9E", "\xC2\xAB",     "\xC2\xBB"};
    for (const std::string_view quote : quotes)
    {
        if (at.rest().starts_with(quote))
            return true;
    }
    return false;
}

/// A word before "=" or ":". It may begin like the word true, false or null.
bool isBareName(const tContext& at)
{
    std::string_view rest = at.rest();
    if (!at.beginsWord())
        return false;
    std::size_t end = 0;
    while (end != rest.size() && (isWordByte(rest[end]) || rest[end] == '-' || rest[end] == '.'))
        ++end;
    rest.remove_prefix(end);
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
    return rest.starts_with('=') || rest.starts_with(':');
}

bool isBareText(const tContext& at)
{
    if (!at.beginsWord())
        return false;
    const unsigned int start = at.m_tMistake.m_uiStart;
    return at.m_tMistake.m_strMessage == s_cpNoValue || (start != 0 && isWordByte(at.m_strvText[start - 1]));
}

struct tExplanationRow
{
    bool (*m_pIsIt)(const tContext& at);
    const char* m_pNote;
};

/// The first that fits is given.
constexpr tExplanationRow s_ctExplanations[] = {
    {isEmpty, "the document is empty; the shortest ones are {} and []"},
    {isMarkedUtf8, "the text begins with a byte order mark (EF BB BF); save it as UTF-8 without one"},
    {isUtf16, "the text seems to be UTF-16; save it as UTF-8 without a byte order mark"},
    {isColon, "a member is written \"name\" = value, with = and not :"},
    {isHashComment, "a comment begins with // or stands between /* and */; # begins an ID, such as #7"},
    {isSingleQuote, "names and texts stand in double quotes: \"text\""},
    {isTypographicQuote, "names and texts stand in straight double quotes: \"text\""},
    {isBareName, "names stand in double quotes: \"name\" = value"},
    {isBareText, "texts stand in double quotes; the only words without quotes are true, false and null"},
};

}  // namespace

std::string_view explainMistake(std::string_view text, const tErrorPlace& mistake)
{
    if (mistake.m_uiStart > text.size())
        return {};
    for (const tExplanationRow& row : s_ctExplanations)
    {
        if (row.m_pIsIt({text, mistake}))
            return row.m_pNote;
    }
    return {};
}

}  // namespace murv
